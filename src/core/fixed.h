// Fixed-point helpers shared by the families that average: a mean is taken as
// (sum × (2^24 / n)) >> 24 with the reciprocal truncated, so results can fall one below the exact mean.
#ifndef QEL_SRC_CORE_FIXED_H
#define QEL_SRC_CORE_FIXED_H

#include <cstdint>

namespace qel {

constexpr int kReciprocalShift = 24;
constexpr int32_t kReciprocalOne = 1 << kReciprocalShift;  // 16777216

// Truncated reciprocal 2^24 / n of a positive pixel count.
constexpr int32_t reciprocal(int32_t n) { return kReciprocalOne / n; }

// (sum × reciprocal) >> 24, computed in 64 bits so that large sums cannot overflow.
constexpr int mean_by_reciprocal(int64_t sum, int32_t recip) {
    return static_cast<int>((sum * recip) >> kReciprocalShift);
}

}  // namespace qel

#endif
