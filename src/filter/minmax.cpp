// Separable minimum and maximum filters of width 3 and 5 along rows or columns.
//
// The column filters are chains of sweeps along a line: a forward sweep makes every cell the
// extreme of itself and the cell before it, a backward sweep the extreme of itself and the cell
// after it. One
// forward-backward pair gives the 3-wide window, two pairs the 5-wide one; at the line ends the
// window is simply clipped. Each sweep remembers the value a cell had before its own update, so a
// sweep may write over its input and the filters may run in place (src == dst).
//
// The column filters treat the whole image as one line whose cells are entire rows (width bytes,
// one row apart), so all columns advance together with contiguous, vectorisable inner loops. The
// remembered previous cell is a per-call buffer instead of a process-wide scratch column: the
// filters are reentrant and the column height is not limited.
//
// Along a row the sweeps would carry a dependency from each pixel to the next, so the row filters
// take the extreme of the clipped window directly instead: the result is the same (the sweeps
// compute exactly the extreme over x−reach .. x+reach clipped to the row), and the interior loop
// has no dependency between pixels, so the compiler vectorises it. In place, the row is first
// copied to a per-call scratch row so that every window reads the original pixels.
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
// are filtered independently; `saved` has room for one cell.
struct Line {
    int count;
    ptrdiff_t step;
    int lanes;
};

// One sweep along the line, walking forward (kDir = +1, from the first cell) or backward (kDir = −1,
// from the last): every cell after the starting one becomes op(the cell before it in walking order,
// itself), taking that earlier cell as it was before its own update. In-place safe (in == out).
template <class Op, int kDir>
void sweep(const unsigned char* in, unsigned char* out, const Line& line, unsigned char* saved) {
    if (line.count <= 0) return;
    const int lanes = line.lanes;
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
template <class Op>
void extreme_along(const unsigned char* in, unsigned char* out, const Line& line, int reach,
                   unsigned char* saved) {
    for (int pair = 0; pair < reach; ++pair) {
        sweep<Op, +1>(pair == 0 ? in : out, out, line, saved);
        sweep<Op, -1>(out, out, line, saved);
    }
}

// Extreme over the window x−kReach .. x+kReach of one row, clipped to the row ends. `in` and `out`
// must not overlap.
template <class Op, int kReach>
void extreme_in_row(const unsigned char* in, unsigned char* out, int width) {
    // Ends, where the window is clipped (the whole row when it is shorter than one window).
    auto clipped = [&](int x) {
        const int first = std::max(0, x - kReach);
        const int last = std::min(width - 1, x + kReach);
        unsigned char v = in[first];
        for (int i = first + 1; i <= last; ++i) v = Op::apply(v, in[i]);
        out[x] = v;
    };
    const int interiorEnd = width - kReach;  // first column whose window passes the row end
    for (int x = 0; x < std::min(kReach, width); ++x) clipped(x);
    for (int x = kReach; x < interiorEnd; ++x) {
        unsigned char v = in[x - kReach];
        for (int d = 1 - kReach; d <= kReach; ++d) v = Op::apply(v, in[x + d]);
        out[x] = v;
    }
    for (int x = std::max(kReach, interiorEnd); x < width; ++x) clipped(x);
}

template <class Op, int kReach>
void filter_rows(const unsigned char* src, int width, int height, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    std::vector<unsigned char> copy(src == dst ? static_cast<size_t>(width) : 0);
    for (int y = 0; y < height; ++y) {
        const ptrdiff_t offset = static_cast<ptrdiff_t>(y) * width;
        const unsigned char* in = src + offset;
        if (src == dst) {
            std::copy(in, in + width, copy.data());
            in = copy.data();
        }
        extreme_in_row<Op, kReach>(in, dst + offset, width);
    }
}

template <class Op>
void filter_columns(const unsigned char* src, int width, int height, int reach, unsigned char* dst) {
    if (width <= 0 || height <= 0) return;
    const Line line{height, width, width};
    std::vector<unsigned char> saved(static_cast<size_t>(width));
    extreme_along<Op>(src, dst, line, reach, saved.data());
}

constexpr int kReach3 = 1;  // 3-wide window: one pixel either side
constexpr int kReach5 = 2;  // 5-wide window: two pixels either side

}  // namespace
}  // namespace qel

void QelGryImgMaxFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMax, qel::kReach3>(src, width, height, dst);
}
void QelGryImgMinFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMin, qel::kReach3>(src, width, height, dst);
}
void QelGryImgMaxFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMax, qel::kReach5>(src, width, height, dst);
}
void QelGryImgMinFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::filter_rows<qel::TakeMin, qel::kReach5>(src, width, height, dst);
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
