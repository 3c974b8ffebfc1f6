#include "realtime/live_intake.h"

namespace fm {
// Live mode arrives with the real-time viewer; until then a live reply is only accepted.
void SplitDataReadData() {}
} // namespace fm
