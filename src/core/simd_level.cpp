// The run-time choice of the fast paths' instruction set.
#include "core/simd.h"
#include "core/simd_avx2.h"

#include <cstdlib>
#include <cstring>

namespace qel {
namespace simd {
namespace {

Level best_available() {
#if defined(QEL_SIMD_AVX2)
    // __builtin_cpu_supports also checks that the system saves the 256-bit (and 512-bit) registers.
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2")) return Level::sse2;
    const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                        __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vnni") &&
                        __builtin_cpu_supports("popcnt");
    return avx512 ? Level::avx512 : Level::avx2;
#elif defined(QEL_SIMD_SSE2)
    return Level::sse2;
#else
    return Level::portable;
#endif
}

// The level QEL_SIMD names, or `best` when it is unset, unknown or beyond `best`.
Level requested(Level best) {
    const char* name = std::getenv("QEL_SIMD");
    if (name == nullptr) return best;
    const struct {
        const char* name;
        Level level;
    } names[] = {
        {"portable", Level::portable}, {"sse2", Level::sse2}, {"avx2", Level::avx2}, {"avx512", Level::avx512}};
    for (const auto& n : names)
        if (std::strcmp(name, n.name) == 0) return n.level < best ? n.level : best;
    return best;
}

}  // namespace

Level level() {
    static const Level chosen = requested(best_available());
    return chosen;
}

}  // namespace simd
}  // namespace qel
