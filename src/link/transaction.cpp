#include "link/transaction.h"

#include "core/cp1252.h"
#include "core/data_set.h"
#include "core/fault.h"
#include "core/host.h"
#include "core/language.h"
#include "link/link_state.h"
#include "link/packet.h"
#include "link/serial_port.h"
#include "link/supervision.h"
#include "link/timers.h"

#include <QElapsedTimer>
#include <QList>

#include <array>

namespace fm {
namespace {
constexpr int kSilenceMs = 700;
constexpr int kSliceMs = 20;  // waits sleep on the port in slices this long
constexpr int kDrainAt = 10000;

using End = ReplyEnd;

std::array<ReplyHandler, 256> &Handlers() {
    static std::array<ReplyHandler, 256> handlers;
    return handlers;
}

End Handle(uint8_t command) {
    const ReplyHandler &handler = Handlers()[command];
    return handler ? handler() : End::Accepted;
}

void StatusBusy() { Host().SetCommStatus(6, ResString(3024)); }

bool IsIdle() { return Shared().CurrentCommand == QLatin1String("254"); }

// Fixed reception: until the expected length is there or the line has been silent.
void CollectFixed(int expected) {
    SerialPort &port = Seriale();
    int seen = port.InBufferCount();
    QElapsedTimer mark;
    mark.start();
    while (mark.elapsed() <= kSilenceMs && seen < expected) {
        port.WaitForInput(int(qMin<qint64>(kSliceMs, kSilenceMs + 1 - mark.elapsed())));
        if (port.InBufferCount() != seen) {
            seen = port.InBufferCount();
            mark.restart();
        }
    }
    RxBuffer() = port.Input();
    RxLength() = int32_t(RxBuffer().size());
}

// The whole frame's length as its header tells it, or 0 while the header is not in.
int FrameLength(const QByteArray &head) {
    if (head.size() < 3 || uint8_t(head.at(0)) != 0x3C) return 0;
    return uint8_t(head.at(1)) * 256 + uint8_t(head.at(2)) + 3;
}

// Bulk reception: drained piece by piece while it arrives, until the line is silent.
void CollectBulk() {
    SerialPort &port = Seriale();
    Host().WaitShow();
    Host().DoEvents();  // the one yield, so the wait window shows
    Host().SetBusy(true);
    QList<QByteArray> chunks;
    int drained = 0;  // bytes already moved into chunks
    int frame = 0;
    int seen = port.InBufferCount();
    QElapsedTimer mark, animation;
    mark.start();
    animation.start();
    while (mark.elapsed() <= kSilenceMs) {
        port.WaitForInput(kSliceMs);
        if (port.InBufferCount() != seen) {
            seen = port.InBufferCount();
            mark.restart();
        }
        if (frame == 0) frame = FrameLength(chunks.isEmpty() ? port.Peek(3) : chunks.first());
        if (port.InBufferCount() > kDrainAt) {
            chunks << port.Input();
            drained += int(chunks.last().size());
            seen = 0;
        }
        if (animation.elapsed() >= 100) {
            Host().WaitAnimate(10);
            Host().WaitShare(drained + port.InBufferCount(), frame);
            animation.restart();
        }
    }
    chunks << port.Input();
    RxBuffer() = chunks.size() == 1 ? chunks.first() : chunks.join();
    RxLength() = int32_t(RxBuffer().size());
    Host().WaitShare(RxLength(), FrameLength(RxBuffer()));
}

void EndUpload() {
    Host().SetPanelText(QString());
    Host().WaitHide();
    Host().SetBusy(false);
}

// The lamp's text for a failed reply says what went wrong with it.
constexpr int kNoReply = 3029, kInvalidReply = 3028, kRefused = 4340, kBadCrc = 4341, kMalformed = 4342,
              kOtherCommand = 4343, kLinkLost = 4344;

bool Finish(End end, int why = kInvalidReply) {
    SharedState &s = Shared();
    s.CurrentCommand = QStringLiteral("254");
    switch (end) {
    case End::Accepted:
        s.FailCount = 0;
        s.CommOpen = true;
        Host().SetCommStatus(5, ResString(3027));
        return true;
    case End::Abandoned:
        s.FailCount = 0;
        Host().SetCommStatus(5, ResString(3027));
        return false;
    case End::Failed:
        ++s.FailCount;
        if (s.FailCount >= 3) DropCommunication();
        Seriale().ClearInBuffer();
        Host().SetCommStatus(4, ResString(why));
        return false;
    }
    return false;
}

// Why a frame that failed its check is bad: a CRC that does not match a whole frame, or
// a frame cut, padded or shifted.
int BadFrameCause() {
    if (Seriale().Lost()) return kLinkLost;
    const QByteArray &rx = RxBuffer();
    const bool whole = RxLength() >= 5 && FrameLength(rx) == RxLength();
    return whole ? kBadCrc : kMalformed;
}

End Dispatch(int &why) {
    const QByteArray &rx = RxBuffer();
    const auto byte = [&](int i) { return uint8_t(rx.at(i)); };
    const auto fail = [&](int cause) {
        why = cause;
        return End::Failed;
    };
    if (byte(3) == 0xFF) return fail(kRefused);
    // A reply to another command is no reply to this one: an upload would take it
    // for an empty memory.
    if (byte(3) != Shared().CurrentCommand.toInt()) return fail(kOtherCommand);
    switch (byte(3)) {
        case 2:
            return Handle(2);
        case 4:
            if (RxLength() < 96) return fail(kMalformed);
            return Handle(4);
        case 7: {
            if (RxLength() != 70) return fail(kMalformed);
            const QString ids = FromCp1252(rx.constData() + 4, 64);  // as the upload reads them
            Data().SetShortID(ids.left(16).trimmed());
            Data().SetLongID(ids.mid(16, 48).trimmed());
            return End::Accepted;
    }
    case 10:
        if (RxLength() < 25) Raise(err::Subscript);
        for (int i = 0; i <= 18; ++i) Link().MonitorSettings[size_t(i)] = byte(4 + i);
        return End::Accepted;
    default: return End::Accepted;
    }
}
} // namespace

LinkState &Link() {
    static LinkState state;
    return state;
}

int GetCommandChars(int command) {
    switch (command) {
    case 1: return 10;
    case 2: return 13;
    case 3: return 7;
    case 4: return 0;
    case 7: return 70;
    case 9: return 11;
    case 10: return 25;
    default: return 7;
    }
}

bool ReceiveCommand() {
    const int expected = GetCommandChars(Shared().CurrentCommand.toInt());
    bool bulk = expected == 0;
    const bool ok = Trap("ReceiveCommand", false, [&] {
        if (bulk) CollectBulk();
        else CollectFixed(expected);
        const bool upload = RxLength() >= 4 && uint8_t(RxBuffer().at(3)) == 4;
        if (!AnalyzePacket()) {
            const int why = BadFrameCause();
            if (bulk || upload) EndUpload();
            bulk = false;
            return Finish(End::Failed, why);
        }
        int why = kInvalidReply;
        const End end = Dispatch(why);
        if (upload || bulk) EndUpload();
        bulk = false;
        return Finish(end, why);
    });
    // A fault inside leaves the wait window up: take it down.
    if (bulk) EndUpload();
    // Nor may it leave the command in flight: every later command would be dropped.
    if (!ok && !IsIdle()) Finish(End::Failed);
    return ok;
}

bool SendCommand(uint8_t command, bool waitForReply, bool failAsTimeout, int timeoutMs) {
    return Trap("SendCommand", false, [&] {
        SerialPort &port = Seriale();
        SharedState &s = Shared();
        if (!port.PortOpen()) {
            Host().MessBox(ResString(17), {}, -1, -1);
            return false;
        }
        if (!s.CommOpen && !InitCommunication()) return false;
        if (!IsIdle()) {
            // Dropped, not queued; live polling stops.
            KillTimer(s.LiveTimer);
            s.LiveTimer = 0;
            return false;
        }
        StatusBusy();
        port.ClearOutBuffer();
        port.ClearInBuffer();
        CreatePacket(command);
        const TCommandPacket &p = CommandPacket();
        port.Output(p.Frame());
        // The payload belongs to this command: the keep-alive and the polls that follow have none.
        CommandPacket().DataLength = 0;
        s.CurrentCommand = QString::number(command);
        if (waitForReply) {
            QElapsedTimer waited;
            waited.start();
            while (port.InBufferCount() == 0 && waited.elapsed() <= timeoutMs)
                port.WaitForInput(int(qMin<qint64>(kSliceMs, timeoutMs + 1 - waited.elapsed())));
            if (port.InBufferCount() == 0) {
                TimeoutFunction(port.Lost() ? kLinkLost : kNoReply);
                return false;
            }
            if (ReceiveCommand()) {
                s.CurrentCommand = QStringLiteral("254");
                s.FailCount = 0;
                Host().SetCommStatus(5, QStringLiteral("Last Command OK"));
                return true;
            }
            if (failAsTimeout) TimeoutFunction();
            return false;
        }
        if (s.TimeoutTimer > 0) Host().MessBox(QStringLiteral("Sovrapposizione Timer!!"), {}, -1, -1);
        const int period = command == 2 ? int(timeoutMs * 1.45 + 0.5) : timeoutMs;
        s.TimeoutTimer = SetTimer(period, [] { TimeoutFunction(); });
        if (s.TimeoutTimer == 0)
            Host().MessBox(QStringLiteral("problema con il timer di timeout ") + QString::number(s.TimeoutTimer), {}, -1, -1);
        port.SetRThreshold(1);
        return false;
    });
}

void SerialeOnComm() {
    TrapVoid("Seriale_OnComm", [] {
        SerialPort &port = Seriale();
        if (port.CommEvent() != comEvReceive) return;
        SharedState &s = Shared();
        if (IsIdle()) {
            port.ClearInBuffer();
            return;
        }
        KillTimer(s.TimeoutTimer);
        s.TimeoutTimer = 0;
        port.SetRThreshold(0);
        ReceiveCommand();
    });
}

void SetReplyHandler(uint8_t command, ReplyHandler handler) { Handlers()[command] = std::move(handler); }

} // namespace fm
