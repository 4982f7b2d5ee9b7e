// Separable minimum and maximum filters of width 3 and 5 along rows or columns.
//
// Each filter is a chain of sweeps along a line: a forward sweep makes every cell the extreme of
// itself and the cell before it, a backward sweep the extreme of itself and the cell after it. One
// forward-backward pair gives the 3-wide window, two pairs the 5-wide one; at the line ends the
// window is simply clipped. Each sweep remembers the value a cell had before its own update, so a
// sweep may write over its input and the filters may run in place (src == dst).
//
// Rows and columns share the same sweeps. A row is a line of single-byte cells one byte apart; the
// column filters treat the whole image as one line whose cells are entire rows (width bytes, one
// row apart), so all columns advance together with contiguous, vectorisable inner loops. The
// remembered previous cell is a per-call buffer instead of a process-wide scratch column: the
// filters are reentrant and the column height is not limited.
#include "qel/filter.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace qel {
namespace {

struct TakeMax {
    static unsigned char apply(unsigned char a, unsigned char b) { return a > b ? a : b; }
};
struct TakeMin {
    static unsigned char apply(unsigned char a, unsigned char b) { return a < b ? a : b; }
};

// A line of `count` cells; cell i starts at base + i·step and holds `lanes` contiguous bytes that
// are filtered independently. The sweeps take the cell width as kLanes when it is known at compile
// time (the single-byte cells of a row), else kAnyLanes; `saved` has room for one cell.
struct Line {
    int count;
    ptrdiff_t step;
    int lanes;
};
constexpr int kAnyLanes = 0;

// One sweep along the line, walking forward (kDir = +1, from the first cell) or backward (kDir = −1,
// from the last): every cell after the starting one becomes op(the cell before it in walking order,
// itself), taking that earlier cell as it was before its own update. In-place safe (in == out).
template <class Op, int kLanes, int kDir>
void sweep(const unsigned char* in, unsigned char* out, const Line& line, unsigned char* saved) {
    if (line.count <= 0) return;
    const int lanes = kLanes > 0 ? kLanes : line.lanes;
    const ptrdiff_t step = kDir * line.step;
    const ptrdiff_t start = kDir > 0 ? 0 : (line.count - 1) * line.step;
    const unsigned char* p = in + start;
    unsigned char* q = out + start;
    std::copy(p, p + lanes, saved);
    if (out != in) std::copy(p, p + lanes, q);
    for (int i = 1; i < line.count; ++i) {
        p += step;
        q += step;
        for (int j = 0; j < lanes; ++j) {
            const unsigned char v = p[j];
            q[j] = Op::apply(saved[j], v);
            saved[j] = v;
        }
    }
}

// The extreme over cells i−reach .. i+reach of one line, from `in` into `out`: each forward-backward
// pair of sweeps widens the window by one cell on either side.
template <class Op, int kLanes>
void extreme_along(const unsigned char* in, unsigned char* out, const Line& line, int reach,
                   unsigned char* saved) {
    for (int pair = 0; pair < reach; ++pair) {
        sweep<Op, kLanes, +1>(pair == 0 ? in : out, out, line, saved);
        sweep<Op, kLanes, -1>(out, out, line, saved);
    }
}

template <class Op>
void filter_rows(const unsigned char* src, int width, int height, int reach, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const Line line{width, 1, 1};
    unsigned char saved[1];
    for (int y = 0; y < height; ++y) {
        const ptrdiff_t offset = static_cast<ptrdiff_t>(y) * width;
        extreme_along<Op, 1>(src + offset, dst + offset, line, reach, saved);
    }
}

template <class Op>
void filter_columns(const unsigned char* src, int width, int height, int reach, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const Line line{height, width, width};
    std::vector<unsigned char> saved(static_cast<size_t>(width));
    extreme_along<Op, kAnyLanes>(src, dst, line, reach, saved.data());
}

constexpr int kReach3 = 1;  // 3-wide window: one pixel either side
constexpr int kReach5 = 2;  // 5-wide window: two pixels either side

}  // namespace
}  // namespace qel

void QelGryImgMaxFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMax>(src, width, height, qel::kReach3, dst);
}
void QelGryImgMinFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMin>(src, width, height, qel::kReach3, dst);
}
void QelGryImgMaxFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMax>(src, width, height, qel::kReach5, dst);
}
void QelGryImgMinFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMin>(src, width, height, qel::kReach5, dst);
}
void QelGryImgMaxFilter3xInCol(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_columns<qel::TakeMax>(src, width, height, qel::kReach3, dst);
}
void QelGryImgMinFilter3xInCol(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_columns<qel::TakeMin>(src, width, height, qel::kReach3, dst);
}
void QelGryImgMaxFilter5xInCol(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_columns<qel::TakeMax>(src, width, height, qel::kReach5, dst);
}
void QelGryImgMinFilter5xInCol(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_columns<qel::TakeMin>(src, width, height, qel::kReach5, dst);
}
