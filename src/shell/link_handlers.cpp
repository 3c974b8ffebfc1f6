#include "shell/link_handlers.h"

#include "acquisition/upload.h"
#include "link/serial_port.h"
#include "link/transaction.h"
#include "realtime/live_intake.h"

namespace fm {

void InstallLinkHandlers() {
    Seriale().OnComm = [] { SerialeOnComm(); };
    SetReplyHandler(2, [] {
        SplitDataReadData();
        return ReplyEnd::Accepted;
    });
    // A refused upload is the user's answer, not a fault of the line.
    SetReplyHandler(4, [] { return SplitUploadData() ? ReplyEnd::Accepted : ReplyEnd::Abandoned; });
}

}  // namespace fm
