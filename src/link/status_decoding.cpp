#include "link/status_decoding.h"

#include "core/language.h"

namespace fm {

QString EndCodeText(int endCode) {
    switch (endCode) {
    case 0: return QStringLiteral("TERMINATO (NON VALIDO)");
    case 1: return QStringLiteral("TERMINATO (FINE MEMORIA)");
    case 2: return QStringLiteral("TERMINATO (FINE BATTERIA)");
    case 3: return QStringLiteral("TERMINATO (FINE MONITOR)");
    case 4: return QStringLiteral("TERMINATO (STOP UTENTE)");
    default: return QStringLiteral("TERMINATO (SCONOSCIUTO)");
    }
}

SessionStatus DecodeStatus(int bits, int endCode) {
    constexpr uint32_t green = 0xC0FFC0, red = 0xC0C0FF;
    if (!(bits & 1)) return {0, ResString(3011), green, true, false};
    // Bit 2 counts only once the session has started (bit 1).
    if (!(bits & 2)) return {1, QStringLiteral("IN ATTESA DI PARTENZA"), red, false, true};
    if (!(bits & 4)) return {1, ResString(3010), red, false, true};
    return {0, EndCodeText(endCode), green, true, false};
}

} // namespace fm
