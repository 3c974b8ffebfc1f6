#include "realtime/live_record.h"

namespace fm {
LiveRecord &Live() {
    static LiveRecord record;
    return record;
}
} // namespace fm
