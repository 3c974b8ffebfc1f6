#include "realtime/live_record.h"

#include "core/regional.h"

namespace fm {
LiveRecord &Live() {
    static LiveRecord record;
    return record;
}

void LiveRecord::Grow() {
    const size_t n = size_t(RTCount) + 1;
    for (auto *v : {&RTX, &RTY, &RTZ}) v->resize(n);
    RTValue.resize(n);
}

double LiveRecord::SampleDate(int32_t i) const {
    return DateAdd(RTStepUnit, double(i - 1) * RTStep, RTStart);
}
}  // namespace fm
