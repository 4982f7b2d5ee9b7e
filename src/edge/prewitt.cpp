// Prewitt family: four-pixel differences, box differences over fixed and caller-sized windows,
// and the four-direction box gradient.
#include "qel/edge.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace qel {
namespace {

constexpr int kMaxGrey = 255;
constexpr int kMarkFreeMax = 250;       // the 5×5 members keep 251..255 free for marks
constexpr int kFixedFrame = 2;          // frame of the four-pixel and 5×5 members
constexpr int kMaxWindowArea = 16129;   // window limit of the four-direction gradient

inline unsigned char clamp_to(int64_t v, int hi) { return static_cast<unsigned char>(v < hi ? v : hi); }

// Sets columns x0..x1 of rows y0..y1 (all clipped to the image) to 0.
void zero_block(unsigned char* dst, int width, int height, int x0, int x1, int y0, int y1) {
    x0 = std::max(x0, 0);
    x1 = std::min(x1, width - 1);
    y0 = std::max(y0, 0);
    y1 = std::min(y1, height - 1);
    if (x0 > x1) return;
    for (int y = y0; y <= y1; ++y) std::fill(dst + static_cast<std::ptrdiff_t>(y) * width + x0,
                                             dst + static_cast<std::ptrdiff_t>(y) * width + x1 + 1, 0);
}

// Sets rows y0..y1 (clipped to the image) to 0.
void zero_rows(unsigned char* dst, int width, int height, int y0, int y1) {
    zero_block(dst, width, height, 0, width - 1, y0, y1);
}

// Sets the outer `frame` rows and columns to 0.
void zero_frame(unsigned char* dst, int width, int height, int frame) {
    zero_rows(dst, width, height, 0, frame - 1);
    zero_rows(dst, width, height, height - frame, height - 1);
    zero_block(dst, width, height, 0, frame - 1, frame, height - frame - 1);
    zero_block(dst, width, height, width - frame, width - 1, frame, height - frame - 1);
}

// Half sizes of the two box differences (below 1 they count as 1), after clearing the row bands both
// members share: the top hy rows and rows height−hy−1 .. height−2. The bottom band starts one row
// early and the last row is never written; both offsets are intended and callers see them.
struct BoxHalves {
    int hx, hy;
};

BoxHalves clear_box_bands(unsigned char* dst, int width, int height, int halfX, int halfY) {
    const BoxHalves h{std::max(1, halfX), std::max(1, halfY)};
    zero_rows(dst, width, height, 0, h.hy - 1);
    zero_rows(dst, width, height, height - h.hy - 1, height - 2);
    return h;
}

// |p(x−2) + p(x−1) − p(x+1) − p(x+2)| of one row at column x.
inline int four_pixel_difference_in_row(const unsigned char* p, int x) {
    return std::abs(p[x - 2] + p[x - 1] - p[x + 1] - p[x + 2]);
}

// Same across rows: |p(x, y−2) + p(x, y−1) − p(x, y+1) − p(x, y+2)| with p pointing at (x, y).
inline int four_pixel_difference_in_column(const unsigned char* p, std::ptrdiff_t stride) {
    return std::abs(p[-2 * stride] + p[-stride] - p[stride] - p[2 * stride]);
}

void prewitt90_rect(const unsigned char* src, int width, int x0, int x1, int y0, int y1, unsigned char* dst) {
    for (int y = y0; y <= y1; ++y) {
        const unsigned char* row = src + static_cast<std::ptrdiff_t>(y) * width;
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = x0; x <= x1; ++x) out[x] = clamp_to(four_pixel_difference_in_row(row, x), kMaxGrey);
    }
}

// Weight profiles of a separable window, over offsets −h..h.
enum class Profile {
    kBox,    // every offset weighs +1
    kSplit,  // −h..−1 weigh +1, the centre 0, 1..h weigh −1
};

// Writes min(|Σ v(r)·u(c)·p(x+c, y+r)|, clampMax) for rows y0..y1 and columns x0..x1, with u the
// horizontal profile over −hx..hx and v the vertical one over −hy..hy. Every window must lie
// inside the image. Column sums run down the image and a prefix sum runs along each row, so the
// cost does not grow with the window.
void separable_difference(const unsigned char* src, int width, int hx, Profile horizontal, int hy,
                          Profile vertical, int x0, int x1, int y0, int y1, int clampMax, unsigned char* dst) {
    if (x0 > x1 || y0 > y1) return;
    const int c0 = x0 - hx;
    const int n = x1 + hx - c0 + 1;
    std::vector<int64_t> column(static_cast<size_t>(n), 0);
    std::vector<int64_t> prefix(static_cast<size_t>(n) + 1, 0);
    auto row = [src, width, c0](int y) { return src + static_cast<std::ptrdiff_t>(y) * width + c0; };
    auto add_row = [&column, n](const unsigned char* p, int sign) {
        for (int i = 0; i < n; ++i) column[i] += sign * p[i];
    };

    for (int r = -hy; r <= hy; ++r) {
        const int weight = vertical == Profile::kBox ? 1 : (r < 0 ? 1 : (r > 0 ? -1 : 0));
        if (weight != 0) add_row(row(y0 + r), weight);
    }
    for (int y = y0; y <= y1; ++y) {
        if (y > y0) {
            if (vertical == Profile::kBox) {
                add_row(row(y + hy), 1);
                add_row(row(y - hy - 1), -1);
            } else {
                // upper band gains row y−1 and loses row y−1−hy; lower band gains y+hy, loses y
                add_row(row(y - 1), 1);
                add_row(row(y - 1 - hy), -1);
                add_row(row(y + hy), -1);
                add_row(row(y), 1);
            }
        }
        for (int i = 0; i < n; ++i) prefix[i + 1] = prefix[i] + column[i];
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = x0; x <= x1; ++x) {
            const int i = x - c0;
            const int64_t sum = horizontal == Profile::kBox
                                    ? prefix[i + hx + 1] - prefix[i - hx]
                                    : (prefix[i] - prefix[i - hx]) - (prefix[i + hx + 1] - prefix[i + 1]);
            out[x] = clamp_to(sum < 0 ? -sum : sum, clampMax);
        }
    }
}

// Weight masks of the four directional differences over a flat copy of the window (row stride
// w = 2·halfX+1). Positions are flat indices; the 45° and 135° splits are defined by column
// numbers that may run past the end of a window row when halfY > halfX, and then continue into
// the following rows of the flat window. Positions past the whole window hold 0 and are dropped.
struct DirectionMasks {
    std::vector<int> d0, d90, d45, d135;
};

DirectionMasks direction_masks(int halfX, int halfY) {
    const int w = 2 * halfX + 1;
    const int rows = 2 * halfY + 1;
    const int area = w * rows;
    DirectionMasks m;
    m.d0.assign(static_cast<size_t>(area), 0);
    m.d90.assign(static_cast<size_t>(area), 0);
    m.d45.assign(static_cast<size_t>(area), 0);
    m.d135.assign(static_cast<size_t>(area), 0);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < w; ++c) {
            const int k = r * w + c;
            m.d0[k] = r < halfY ? 1 : (r > halfY ? -1 : 0);
            m.d90[k] = c < halfX ? 1 : (c > halfX ? -1 : 0);
        }
    }
    // adds `sign` at flat positions r·w + c for c = c0..c1, dropping those past the window
    auto span = [w, area](std::vector<int>& mask, int r, int c0, int c1, int sign) {
        for (int c = c0; c <= c1; ++c) {
            const int k = r * w + c;
            if (k < area) mask[k] += sign;
        }
    };
    for (int r = 0; r < rows; ++r) {
        // 45°: split along the anti-diagonal, which itself is left out
        span(m.d45, r, 0, 2 * halfY - r - 1, 1);
        span(m.d45, r, 2 * halfY + 1 - r, 2 * halfX, -1);
        // 135°: split along the main diagonal, left out likewise
        span(m.d135, r, 0, r - 1, 1);
        span(m.d135, r, r + 1, 2 * halfX, -1);
    }
    return m;
}

}  // namespace
}  // namespace qel

void QelPrewitt90(unsigned char* src, int width, int height, unsigned char* dst) {
    using qel::kFixedFrame;
    qel::zero_frame(dst, width, height, kFixedFrame);
    qel::prewitt90_rect(src, width, kFixedFrame, width - kFixedFrame - 1, kFixedFrame, height - kFixedFrame - 1, dst);
}

void QelPrewitt90(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1, unsigned char* dst) {
    using qel::kFixedFrame;
    qel::prewitt90_rect(src, width, std::max(kFixedFrame, x0), std::min(width - kFixedFrame - 1, x1),
                        std::max(kFixedFrame, y0), std::min(height - kFixedFrame - 1, y1), dst);
}

void QelGradient0ByPrewitt5x5(unsigned char* src, int width, int height, unsigned char* dst) {
    using qel::kFixedFrame;
    qel::zero_frame(dst, width, height, kFixedFrame);
    // two rows above against two rows below, over five columns; clamped at 250, not 255
    qel::separable_difference(src, width, kFixedFrame, qel::Profile::kBox, kFixedFrame, qel::Profile::kSplit,
                              kFixedFrame, width - kFixedFrame - 1, kFixedFrame, height - kFixedFrame - 1,
                              qel::kMarkFreeMax, dst);
}

void QelGradient5x5ByPrewitt0_90(unsigned char* src, int width, int height, unsigned char* dst) {
    using qel::kFixedFrame;
    qel::zero_frame(dst, width, height, kFixedFrame);
    for (int y = kFixedFrame; y < height - kFixedFrame; ++y) {
        const unsigned char* row = src + static_cast<std::ptrdiff_t>(y) * width;
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = kFixedFrame; x < width - kFixedFrame; ++x) {
            // each direction is clamped at 250 before the two are compared
            const int h = std::min(qel::four_pixel_difference_in_row(row, x), qel::kMarkFreeMax);
            const int v = std::min(qel::four_pixel_difference_in_column(row + x, static_cast<std::ptrdiff_t>(width)),
                                   qel::kMarkFreeMax);
            out[x] = static_cast<unsigned char>(std::max(h, v));
        }
    }
}

// The last computed column is width−hx−2: column width−hx−1 is cleared but never computed. Intended.
void QelGradientByPrewitt0(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    const auto [hx, hy] = qel::clear_box_bands(dst, width, height, halfX, halfY);
    const int y0 = hy, y1 = height - hy - 2;
    qel::zero_block(dst, width, height, 0, hx - 1, y0, y1);
    qel::zero_block(dst, width, height, width - hx, width - 1, y0, y1);
    qel::separable_difference(src, width, hx, qel::Profile::kBox, hy, qel::Profile::kSplit,
                              hx, width - hx - 2, y0, y1, qel::kMaxGrey, dst);
}

// The outer columns are written only inside the shared bands, and the computed columns are also
// cleared in the last hy rows.
void QelGradientByPrewitt90(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    const auto [hx, hy] = qel::clear_box_bands(dst, width, height, halfX, halfY);
    const int x0 = hx, x1 = width - hx - 2;
    qel::zero_block(dst, width, height, x0, x1, height - hy, height - 1);
    qel::separable_difference(src, width, hx, qel::Profile::kSplit, hy, qel::Profile::kBox,
                              x0, x1, hy, height - hy - 2, qel::kMaxGrey, dst);
}

void QelGradientByPrewitt(unsigned char* src, int width, int height, int halfX, int halfY, unsigned char* dst) {
    if (halfX < 0 || halfY < 0) return;
    const int64_t area = (2 * static_cast<int64_t>(halfX) + 1) * (2 * static_cast<int64_t>(halfY) + 1);
    if (area > qel::kMaxWindowArea) return;

    qel::zero_rows(dst, width, height, 0, halfY - 1);
    qel::zero_rows(dst, width, height, height - halfY, height - 1);

    const qel::DirectionMasks masks = qel::direction_masks(halfX, halfY);
    const int w = 2 * halfX + 1;
    // One 135° value carries from pixel to pixel over the whole call: where the first half of the
    // split does not outweigh the second, the previous pixel's value is kept. Starts at 0.
    int term135 = 0;
    for (int y = halfY; y < height - halfY; ++y) {
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        std::fill_n(out, std::min(halfX, width), 0);  // the right band is left as it was
        for (int x = halfX; x < width - halfX; ++x) {
            int s0 = 0, s90 = 0, s45 = 0, s135 = 0;
            const unsigned char* win = src + static_cast<std::ptrdiff_t>(y - halfY) * width + (x - halfX);
            for (int r = 0, k = 0; r <= 2 * halfY; ++r, win += width) {
                for (int c = 0; c < w; ++c, ++k) {
                    const int p = win[c];
                    s0 += masks.d0[k] * p;
                    s90 += masks.d90[k] * p;
                    s45 += masks.d45[k] * p;
                    s135 += masks.d135[k] * p;
                }
            }
            if (s135 > 0) term135 = s135;
            if (term135 >= qel::kMaxGrey) {
                out[x] = qel::kMaxGrey;
            } else {
                const int mean = (std::abs(s0) + std::abs(s90) + std::abs(s45) + term135) / 4;
                out[x] = qel::clamp_to(mean, qel::kMaxGrey);
            }
        }
    }
}
