#include "core/options.h"

#include "core/app_paths.h"
#include "core/cp1252.h"
#include "core/fault.h"
#include "core/language.h"
#include "core/safe_file.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <cstring>

namespace fm {
namespace {

class Writer {
public:
    explicit Writer(QByteArray &out) : out_(out) {}
    void u8(uint8_t v) { out_.append(char(v)); }
    void i16(int16_t v) { put(qToLittleEndian(v)); }
    void boolean(bool v) { i16(v ? -1 : 0); }
    void u32(uint32_t v) { put(qToLittleEndian(v)); }
    void i32(int32_t v) { put(qToLittleEndian(v)); }
    void f32(float v) {
        uint32_t bits;
        std::memcpy(&bits, &v, 4);
        u32(bits);
    }
    void text(const QString &v) {
        QByteArray bytes = ToCp1252(v.left(kOptionsTextSize));
        bytes.append(QByteArray(kOptionsTextSize - bytes.size(), ' '));
        out_.append(bytes);
    }

private:
    template <class T>
    void put(T v) { out_.append(reinterpret_cast<const char *>(&v), sizeof v); }
    QByteArray &out_;
};

class Reader {
public:
    explicit Reader(const QByteArray &in) : in_(in) {}
    uint8_t u8() { return take<uint8_t>(); }
    int16_t i16() { return qFromLittleEndian(take<int16_t>()); }
    bool boolean() { return i16() != 0; }
    uint32_t u32() { return qFromLittleEndian(take<uint32_t>()); }
    int32_t i32() { return qFromLittleEndian(take<int32_t>()); }
    float f32() {
        const uint32_t bits = u32();
        float v;
        std::memcpy(&v, &bits, 4);
        return v;
    }
    // A field cut short by the end of the file keeps what it has; a missing one is empty.
    QString text() {
        const qsizetype n = std::clamp<qsizetype>(in_.size() - pos_, 0, kOptionsTextSize);
        const QString v = FromCp1252(in_.constData() + pos_, n);
        pos_ += kOptionsTextSize;
        return n ? OptionText(v) : QString();
    }

private:
    template <class T>
    T take() {
        T v{};
        if (pos_ + qsizetype(sizeof v) <= in_.size()) std::memcpy(&v, in_.constData() + pos_, sizeof v);
        pos_ += sizeof v;
        return v;
    }
    const QByteArray &in_;
    qsizetype pos_ = 0;
};

} // namespace

QString OptionText(const QString &text) {
    QString v = text.left(kOptionsTextSize);
    return v + QString(kOptionsTextSize - v.size(), QLatin1Char(' '));
}

QByteArray OptionsRecord::ToBytes() const {
    QByteArray out;
    out.reserve(kOptionsRecordSize);
    Writer w(out);
    w.u8(ComPort);
    w.u8(Language);
    w.boolean(ConnectOnStart);
    for (uint32_t c : {ColorTrace1, ColorTrace2, ColorTrace3, ColorTrace4, ColorBackTe, ColorBars,
                       ColorBackSt, Reserved32, ColorDraw, Reserved40, ColorMeterLow, ColorMeterHigh})
        w.u32(c);
    w.i16(MainWindowState);
    // RecentFile(0) is zero-filled by the defaults and never used since: keep its bytes.
    if (RecentFile[0].isEmpty()) out.append(QByteArray(kOptionsTextSize, '\0'));
    else w.text(RecentFile[0]);
    for (int i = 1; i <= 4; ++i) w.text(RecentFile[size_t(i)]);
    w.text(LastPath);
    for (bool b : {InfoDocked, InfoShown, ShowWarnings, OpenGraphTe, OpenGraphSt, OpenSource, WarnOnDate})
        w.boolean(b);
    w.f32(Soglia);
    w.u32(ColorSoglia);
    w.i32(MemorySize);
    w.boolean(FirstRun);
    Q_ASSERT(out.size() == kOptionsRecordSize);
    return out;
}

OptionsRecord OptionsRecord::FromBytes(const QByteArray &bytes) {
    Reader r(bytes);
    OptionsRecord o;
    o.ComPort = r.u8();
    o.Language = r.u8();
    o.ConnectOnStart = r.boolean();
    for (uint32_t *c : {&o.ColorTrace1, &o.ColorTrace2, &o.ColorTrace3, &o.ColorTrace4, &o.ColorBackTe,
                        &o.ColorBars, &o.ColorBackSt, &o.Reserved32, &o.ColorDraw, &o.Reserved40,
                        &o.ColorMeterLow, &o.ColorMeterHigh})
        *c = r.u32();
    o.MainWindowState = r.i16();
    const QString slot0 = r.text();
    // A zero-filled slot 0 reads back as zero-filled.
    o.RecentFile[0] = slot0.trimmed().isEmpty() || slot0.startsWith(QChar(0)) ? QString() : slot0;
    for (int i = 1; i <= 4; ++i) o.RecentFile[size_t(i)] = r.text();
    o.LastPath = r.text();
    for (bool *b : {&o.InfoDocked, &o.InfoShown, &o.ShowWarnings, &o.OpenGraphTe, &o.OpenGraphSt,
                    &o.OpenSource, &o.WarnOnDate})
        *b = r.boolean();
    o.Soglia = r.f32();
    o.ColorSoglia = r.u32();
    o.MemorySize = r.i32();
    o.FirstRun = r.boolean();
    return o;
}

OptionsRecord OptionsRecord::Defaults() {
    OptionsRecord o;
    o.ComPort = 1;
    o.Language = 0;
    o.ConnectOnStart = false;
    o.ColorTrace1 = 0xFF0000;
    o.ColorTrace2 = 0x0000FF;
    o.ColorTrace3 = 0x00FFFF;
    o.ColorTrace4 = 0xFF00FF;
    o.ColorBackTe = 0xFFFFFF;
    o.ColorBars = 0x0000FF;
    o.ColorBackSt = 0xFFFFFF;
    o.ColorDraw = 0;
    o.Reserved40 = 255;
    o.ColorMeterLow = 0x00C000;
    o.ColorMeterHigh = 0x0000FF;
    o.MainWindowState = 0;
    for (int i = 1; i <= 4; ++i) o.RecentFile[size_t(i)] = OptionText(QString());
    o.LastPath = OptionText(QDir::toNativeSeparators(AppDir()));
    o.InfoDocked = o.InfoShown = o.ShowWarnings = o.OpenGraphTe = o.OpenSource = true;
    o.OpenGraphSt = o.WarnOnDate = false;
    o.Soglia = 0.2f;
    o.ColorSoglia = 0;
    o.MemorySize = 65536;
    o.FirstRun = true;
    return o;
}

OptionsRecord &Options() {
    static OptionsRecord options;
    return options;
}

bool ReadOptions() {
    return Trap("ReadOptions", false, [] {
        QFile file(OptionsPath());
        if (!file.exists()) {
            Options() = OptionsRecord::Defaults();
            // A first start speaks the language of the system; the options decide after.
            Options().Language = uint8_t(SystemLanguage());
            return true;
        }
        // A file that cannot be read leaves the start with the defaults rather than an
        // empty record (no port, black charts, no memory size).
        Options() = OptionsRecord::Defaults();
        if (!file.open(QIODevice::ReadOnly)) Raise(err::PermissionDenied, file.errorString());
        const QByteArray bytes = file.read(kOptionsRecordSize);
        if (file.error() != QFileDevice::NoError) Raise(err::DeviceIO, file.errorString());
        Options() = OptionsRecord::FromBytes(bytes);
        Options().FirstRun = false;
        return true;
    });
}

void SaveOptions() {
    TrapVoid("SaveOptions", [] {
        SafeFile file(OptionsPath());
        file.Open();
        file.Write(Options().ToBytes());
        file.Commit();
    });
}

} // namespace fm
