#pragma once
// One command out, one reply in: written, awaited, collected, checked, dispatched.
#include <cstdint>
#include <functional>

namespace fm {
inline constexpr int kReplyTimeoutMs = 2000;

// Runs a transaction. Synchronous (waitForReply): true when a valid reply was
// accepted. Asynchronous: returns false at once; the port event or the time-out ends it.
bool SendCommand(uint8_t command, bool waitForReply, bool failAsTimeout, int timeoutMs);
// Collects, checks and dispatches the reply; true when it was accepted.
bool ReceiveCommand();
// Whole reply length to wait for; 0 for the bulk upload reply.
int GetCommandChars(int command);
// The port's receive event.
void SerialeOnComm();

// What became of a reply: taken, refused as bad (a failure), or declined (no failure).
enum class ReplyEnd { Accepted, Failed, Abandoned };
// Takes the checked reply in RxBuffer into the subsystem whose data it is.
using ReplyHandler = std::function<ReplyEnd()>;
// The subsystems above the link register the replies that are theirs, at start-up; a reply
// without a handler is accepted as it stands.
void SetReplyHandler(uint8_t command, ReplyHandler handler);
} // namespace fm
