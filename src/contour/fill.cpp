// Filling the inside of a traced contour by scan lines derived from its chain code, and pasting
// the pixels a contour encloses from one image into another.
#include "qel/contour.h"

#include "contour/chain_walk.h"
#include "contour/fill.h"
#include "contour/trace.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace {

// Turn from the previous code to the current one in eighths of a full turn, counter-clockwise on
// screen positive. Right turns of two and three steps are not told apart from one step (−1), and
// a reversal counts +4; the orientation relies on the table exactly as it is.
constexpr int kTurn[8][8] = {
    {0, 1, 2, 3, 4, -1, -1, -1},  {-1, 0, 1, 2, 3, 4, -1, -2}, {-1, -1, 0, 1, 2, 3, 4, -1},
    {-1, -2, -1, 0, 1, 2, 3, 4},  {4, -1, -1, -1, 0, 1, 2, 3}, {3, 4, -1, -2, -1, 0, 1, 2},
    {2, 3, 4, -1, -1, -1, 0, 1},  {1, 2, 3, 4, -1, -2, -1, 0},
};

// Chains up to this many codes save their pixels on the stack.
constexpr int kStackSavedPixels = 4096;

// The values a fill writes into contour pixels while it works: base − 2 .. base + 2 for the sum of
// the vertical moves in and out of a pixel, and the marker for pixels where the contour goes down.
// None of them is the boundary or the fill value.
struct Markers {
    unsigned char base;
    unsigned char start;
};

Markers choose_markers(unsigned char boundary, unsigned char fill) {
    bool used[256] = {};
    used[boundary] = true;
    used[fill] = true;
    // The first five free values in a row (two used values leave one among the first eight).
    int base = 2;
    for (int v = 0, run = 0; v < 256; ++v) {
        run = used[v] ? 0 : run + 1;
        if (run == 5) {
            base = v - 2;
            break;
        }
    }
    for (int v = base - 2; v <= base + 2; ++v) used[v] = true;
    int start = 0;
    while (used[start]) ++start;
    return {static_cast<unsigned char>(base), static_cast<unsigned char>(start)};
}

template <class Bounds>
int fill_contour(unsigned char* image, int width, int x, int y, const unsigned char* chain, int n, bool include,
                 int boundaryValue, int fillValue, Bounds bounds) {
    if (n <= 0) return 0;  // no codes, no contour points
    const unsigned char boundary = static_cast<unsigned char>(boundaryValue);
    const unsigned char fill = static_cast<unsigned char>(fillValue);
    const Markers m = choose_markers(boundary, fill);

    // Calls f(pixel, j) on each of the n contour points j that lie inside the bounds: the start and
    // the points after codes 0..n−2 (the last code returns to the start).
    auto each_point = [&](auto&& f) {
        int j = 0;
        qel::walk_chain(x, y, chain, n - 1, [&](int px, int py) {
            const std::ptrdiff_t at = qel::pixel_index(px, py, width);
            if (bounds.contains(at)) f(at, j);
            ++j;
        });
    };

    unsigned char stackSaved[kStackSavedPixels];
    std::unique_ptr<unsigned char[]> heapSaved;
    unsigned char* saved = nullptr;
    if (!include) {
        if (n <= kStackSavedPixels) {
            saved = stackSaved;
        } else {
            // Without the block the contour is filled all the same and keeps its marker values.
            heapSaved.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(n)]);
            saved = heapSaved.get();
        }
        if (saved != nullptr) each_point([&](std::ptrdiff_t at, int j) { saved[j] = image[at]; });
    }

    each_point([&](std::ptrdiff_t at, int) { image[at] = m.base; });
    // Each point gains the vertical moves into it and out of it: +2 where the contour goes down
    // through it, −2 where it goes up, ±1 at the ends of a vertical stretch. A point passed twice
    // adds both passes.
    int turns = 0;
    qel::walk_chain_turns(x, y, chain, n, [&](int px, int py, int prev, int cur) {
        const std::ptrdiff_t at = qel::pixel_index(px, py, width);
        if (bounds.contains(at)) image[at] = static_cast<unsigned char>(image[at] + qel::kDy[prev] + qel::kDy[cur]);
        turns += kTurn[prev][cur];
    });
    const int s = turns / 8;

    const int up1 = m.base - 1, up2 = m.base - 2, down1 = m.base + 1, down2 = m.base + 2;
    each_point([&](std::ptrdiff_t at, int) {
        const int v = image[at];
        if (v == down1 || v == down2) image[at] = m.start;
        else if (v == up1 || v == up2) image[at] = boundary;
    });

    // From each point where the contour goes down, fill towards the inside (right for a contour
    // turning counter-clockwise on screen, left for clockwise) up to the next boundary pixel. A
    // chain that does not turn has no inside to walk to.
    const int step = s > 0 ? 1 : s < 0 ? -1 : 0;
    each_point([&](std::ptrdiff_t at, int) {
        if (image[at] != m.start) return;
        if (step != 0) {
            for (std::ptrdiff_t q = at + step; bounds.contains(q) && image[q] != boundary; q += step) image[q] = fill;
        }
        image[at] = boundary;
    });

    if (include) {
        each_point([&](std::ptrdiff_t at, int) { image[at] = fill; });
    } else if (saved != nullptr) {
        each_point([&](std::ptrdiff_t at, int j) { image[at] = saved[j]; });
    }
    return s;
}

}  // namespace

int qel::fill_contour_in_buffer(unsigned char* image, int width, std::ptrdiff_t size, int x, int y,
                                const unsigned char* chain, int n, bool includeContour, int boundaryValue,
                                int fillValue) {
    return fill_contour(image, width, x, y, chain, n, includeContour, boundaryValue, fillValue, InsideBuffer{size});
}

int QelFillingContour(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                      bool includeContour, int boundaryValue, int fillValue) {
    return fill_contour(image, width, x, y, chain, n, includeContour, boundaryValue, fillValue,
                        qel::AnywhereInImage{});
}

int QelPastePixels2ResImg(unsigned char* image, int width, int x, int y, unsigned char* chain, int n,
                          int boundaryValue, int fillValue, unsigned char* out, int value) {
    if (n <= 0) return 0;
    // The region is found by filling the contour into a scratch copy of its bounding box that
    // holds neither the boundary nor the fill value, so out's own contents do not matter.
    int left = 0, right = 0, top = 0, bottom = 0;
    QelContourRect(x, y, chain, n, &left, &right, &top, &bottom);
    const int boxWidth = right - left + 1;
    const int boxHeight = bottom - top + 1;
    if (boxWidth <= 0 || boxHeight <= 0) return 0;
    const std::size_t boxSize = static_cast<std::size_t>(boxWidth) * static_cast<std::size_t>(boxHeight);
    std::unique_ptr<unsigned char[]> box(new (std::nothrow) unsigned char[boxSize]);
    if (!box) return 0;
    const unsigned char fill = static_cast<unsigned char>(fillValue);
    const unsigned char boundary = static_cast<unsigned char>(boundaryValue);
    unsigned char clear = 0;
    while (clear == fill || clear == boundary) ++clear;
    std::memset(box.get(), clear, boxSize);
    qel::fill_contour_in_buffer(box.get(), boxWidth, static_cast<std::ptrdiff_t>(boxSize), x - left, y - top, chain,
                                n, true, boundaryValue, fillValue);

    int painted = 0;
    for (int j = 0; j < boxHeight; ++j) {
        const unsigned char* boxRow = box.get() + static_cast<std::ptrdiff_t>(j) * boxWidth;
        const std::ptrdiff_t row = qel::pixel_index(left, top + j, width);
        for (int i = 0; i < boxWidth; ++i) {
            if (boxRow[i] != fill) continue;
            out[row + i] = value < 0 ? image[row + i] : static_cast<unsigned char>(value);
            ++painted;
        }
    }
    return painted;
}
