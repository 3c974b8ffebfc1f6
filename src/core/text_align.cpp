#include "core/text_align.h"

namespace fm {

QString Formatta(const QString &text, int width) {
    return width > text.size() ? QString(width - text.size(), QLatin1Char(' ')) + text : text;
}

}  // namespace fm
