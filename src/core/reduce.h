// Whole-buffer reductions of bytes that several families share: how many equal a value, and the
// smallest and largest. SIMD where available (SSE2, AVX2), with the same results as the plain loops.
#ifndef QEL_SRC_CORE_REDUCE_H
#define QEL_SRC_CORE_REDUCE_H

#include <cstddef>

namespace qel {

// How many of the n bytes at p equal value.
size_t count_equal(const unsigned char* p, size_t n, unsigned char value);

// The smallest and the largest of the n bytes at p, folded into lo and hi (which the caller starts
// at 255 and 0, or at the values of earlier rows).
void fold_min_max(const unsigned char* p, size_t n, int& lo, int& hi);

}  // namespace qel

#endif
