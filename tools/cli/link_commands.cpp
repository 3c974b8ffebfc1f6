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

#include <QJsonDocument>
#include <QJsonObject>
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

// The figures of status and read-id: each line's caption, or with --json its key as
// info --json names the field.
class Figures {
public:
    explicit Figures(bool json) : json_(json) {}
    void Add(int caption, const char *key, const QString &text, const QJsonValue &value) {
        if (json_)
            object_.insert(QLatin1String(key), value);
        else
            Print(ResString(caption) + QStringLiteral(": ") + text);
    }
    ~Figures() {
        if (json_) std::fputs(QJsonDocument(object_).toJson(QJsonDocument::Indented).constData(), stdout);
    }

private:
    bool json_;
    QJsonObject object_;
};

int Status(const QString &port, bool json) {
    if (!Connect(port)) return kFailed;
    const auto &m = Link().MonitorSettings;
    const SessionStatus st = DecodeStatus(m[16], m[18]);
    Figures figures(json);
    figures.Add(4036, "MonitorText", st.text, st.text);
    if (json) figures.Add(0, "MonitorState", {}, st.monitorState);
    const int unit = m[5] & 7;
    const QString letter = unit >= 2 && unit <= 5 ? Shared().UnitLetters[size_t(unit)] : QString();
    const int step = FromBcd(uint8_t(m[6]));
    if (json) figures.Add(0, "DataStep", {}, step);
    figures.Add(4032, "DataStepUnit", QString::number(step) + QLatin1Char(' ') + letter, letter);
    uint8_t wire[5];
    const int from = (m[7] & 1) ? 8 : 0;
    for (int i = 0; i < 5; ++i) wire[i] = uint8_t(m[size_t(from + i)]);
    const double start = DecodeWireDate(wire);
    figures.Add(4033, "DataStart", GeneralDate(start), IsoDate(start));
    const int address = m[13] * 256 + m[14];
    const int count = address >= 96 ? CLng((address - 96) / 7.0) : 0;
    figures.Add(4031, "DataCount", QString::number(count), count);
    return kOk;
}

int ReadCodes(const QString &port, bool json) {
    if (!Connect(port) || !ReadID()) return kFailed;
    Figures figures(json);
    figures.Add(4025, "ShortID", Data().ShortID.trimmed(), Data().ShortID.trimmed());
    figures.Add(4026, "LongID", Data().LongID.trimmed(), Data().LongID.trimmed());
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
