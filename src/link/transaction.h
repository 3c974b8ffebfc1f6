#pragma once
// One command out, one reply in: written, awaited, collected, checked, dispatched.
#include <cstdint>

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
// Connects the port event; done once at start-up.
void InstallLinkHandlers();
} // namespace fm
