#pragma once
// Colours are kept as the options record stores them: 0x00BBGGRR.
#include <QColor>
#include <cstdint>

namespace fm {
inline QColor FromBgr(uint32_t c) {
    return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}
inline uint32_t ToBgr(const QColor &c) {
    return uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16;
}
}  // namespace fm
