#pragma once
// Column alignment shared by the table exports, the data list and the information panel.
#include <QString>

namespace fm {
// Blanks in front of text up to width; a longer text stays whole.
QString Formatta(const QString &text, int width);
}  // namespace fm
