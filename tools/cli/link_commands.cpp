#include "acquisition/upload.h"
#include "commands.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "core/regional.h"
#include "files/log_file.h"
#include "link/link_state.h"
#include "link/operations.h"
#include "link/serial_port.h"
#include "link/status_decoding.h"
#include "link/supervision.h"
#include "link/transaction.h"
#include "monitor/session_plan.h"
#include "shell/info_model.h"
#include "shell/link_handlers.h"

#include <cstdio>

namespace fm::cli {
namespace {
void Print(const QString &text) {
    std::fputs(qPrintable(text + QLatin1Char('\n')), stdout);
}

// The start steps as lines on the terminal.
class PrintedProgress : public StartProgress {
public:
    void Begin() override {}
    void SetState(int step) override {
        if (step > 0) Print(QStringLiteral("  ") + ResString(4053 + step - 1) + QStringLiteral(": OK"));
    }
    void MarkFailed(int step) override {
        std::fprintf(stderr, "  %s: %s\n", qPrintable(ResString(4053 + step)), qPrintable(ResString(3028)));
    }
    void WaitForClose() override {}
    void End(bool) override {}
};

bool Connect(const QString &port) {
    InstallLinkHandlers();
    Seriale().SetDeviceOverride(port);
    if (!SelectPort(0)) return false;
    return InitCommunication();
}

bool ParseDateArg(const QString &text, std::optional<double> &out) {
    if (text.isEmpty()) return true;
    double d = 0;
    if (!ParseDate(text, &d)) {
        std::fprintf(stderr, "fluxmere-cli: not a date: %s\n", qPrintable(text));
        return false;
    }
    out = d;
    return true;
}
}  // namespace

int Status(const QString &port) {
    if (!Connect(port)) return kFailed;
    const auto &m = Link().MonitorSettings;
    const SessionStatus st = DecodeStatus(m[16], m[18]);
    Print(ResString(4036) + QStringLiteral(": ") + st.text);
    const int unit = m[5] & 7;
    const QString letter = unit >= 2 && unit <= 5 ? Shared().UnitLetters[size_t(unit)] : QString();
    Print(ResString(4032) + QStringLiteral(": ") + QString::number(FromBcd(uint8_t(m[6]))) +
          QLatin1Char(' ') + letter);
    uint8_t wire[5];
    const int from = (m[7] & 1) ? 8 : 0;
    for (int i = 0; i < 5; ++i) wire[i] = uint8_t(m[size_t(from + i)]);
    Print(ResString(4033) + QStringLiteral(": ") + GeneralDate(DecodeWireDate(wire)));
    const int address = m[13] * 256 + m[14];
    Print(ResString(4031) + QStringLiteral(": ") +
          QString::number(address >= 96 ? CLng((address - 96) / 7.0) : 0));
    return kOk;
}

int ReadCodes(const QString &port) {
    if (!Connect(port) || !ReadID()) return kFailed;
    Print(ResString(4025) + QStringLiteral(": ") + Data().ShortID.trimmed());
    Print(ResString(4026) + QStringLiteral(": ") + Data().LongID.trimmed());
    return kOk;
}

int WriteCodes(const QString &port, const QString &shortId, const QString &longId) {
    if (shortId.size() > 16 || longId.size() > 48) {
        Host().MessBox(
            ResString(28) + (shortId.size() > 16 ? QStringLiteral("(Max 16)") : QStringLiteral("(Max 48)")),
            {}, -1, -1);
        return kFailed;
    }
    if (!Connect(port)) return kFailed;
    Data().SetShortID(shortId);
    Data().SetLongID(longId);
    return WriteID() ? kOk : kFailed;
}

int Program(const QString &port, const QString &step, const QString &unit, const QString &start,
            const QString &stop, const QString &clock) {
    SessionRequest r{step, unit, {}, {}, {}};
    if (!ParseDateArg(start, r.start) || !ParseDateArg(stop, r.stop) || !ParseDateArg(clock, r.clock))
        return kUsage;
    if (!Connect(port)) return kFailed;
    PrintedProgress progress;
    return ProgramSession(r, progress) ? kOk : kFailed;
}

int Stop(const QString &port) {
    if (!Connect(port) || !StopMonitor()) return kFailed;
    Shared().MonitorState = 0;
    Print(QStringLiteral("TERMINATO (STOP UTENTE)"));
    return kOk;
}

int Upload(const QString &port, const QString &out) {
    if (!Connect(port) || !UploadData()) return kFailed;
    Print(ResString(4031) + QStringLiteral(": ") + QString::number(Data().DataCount));
    if (!SaveFile(out)) {
        std::fprintf(stderr, "%s\n", qPrintable(ResString(8)));
        return kFailed;
    }
    return kOk;
}

}  // namespace fm::cli
