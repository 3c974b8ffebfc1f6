#pragma once
// Text files and the options record are in the Windows-1252 code page, so that they
// move between Fluxmere and machines of the older platform unchanged.
#include <QByteArray>
#include <QString>

namespace fm {
QString FromCp1252(const char *data, qsizetype size);
inline QString FromCp1252(const QByteArray &bytes) { return FromCp1252(bytes.constData(), bytes.size()); }
// Characters outside the code page become '?'.
QByteArray ToCp1252(const QString &text);
} // namespace fm
