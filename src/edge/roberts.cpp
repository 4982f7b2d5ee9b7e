// Roberts family: central differences dx = p(x+1, y) − p(x−1, y) and dy = p(x, y+1) − p(x, y−1)
// on grey and BGR images. QelRobert combines the two by maximum; the masked and colour members
// combine by clamped sum. The difference is intended.
#include "qel/edge.h"
#include "qel/io.h"

#include <algorithm>
#include <cstdlib>

namespace qel {
namespace {

constexpr int kMaxGrey = 255;
constexpr int kBgr = 3;  // bytes per colour pixel

// |dx| and |dy| of the sample at p, whose row neighbours are `step` bytes away and whose column
// neighbours are `stride` bytes away.
inline int abs_dx(const unsigned char* p, std::ptrdiff_t step) { return std::abs(p[step] - p[-step]); }
inline int abs_dy(const unsigned char* p, std::ptrdiff_t stride) { return std::abs(p[stride] - p[-stride]); }

inline int clamped_sum(const unsigned char* p, std::ptrdiff_t step, std::ptrdiff_t stride) {
    return std::min(abs_dx(p, step) + abs_dy(p, stride), kMaxGrey);
}

// Calls visit(sample pointer of (x, y), x, y) for every interior pixel.
template <class Visit>
void for_each_interior(const unsigned char* src, int width, int height, int channels, Visit visit) {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(width) * channels;
    for (int y = 1; y < height - 1; ++y) {
        const unsigned char* row = src + y * stride;
        for (int x = 1; x < width - 1; ++x) visit(row + static_cast<std::ptrdiff_t>(x) * channels, x, y);
    }
}

// Calls visit(pixel index y·width+x, g) for every interior BGR pixel, g holding the clamped sum of
// each of its three channels.
template <class Visit>
void for_each_bgr_interior(const unsigned char* rgb, int width, int height, Visit visit) {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(width) * kBgr;
    for_each_interior(rgb, width, height, kBgr, [=](const unsigned char* p, int x, int y) {
        int g[kBgr];
        for (int c = 0; c < kBgr; ++c) g[c] = clamped_sum(p + c, kBgr, stride);
        visit(static_cast<std::ptrdiff_t>(y) * width + x, g);
    });
}

}  // namespace
}  // namespace qel

void QelRobert(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::for_each_interior(src, width, height, 1, [=](const unsigned char* p, int x, int y) {
        dst[static_cast<std::ptrdiff_t>(y) * width + x] =
            static_cast<unsigned char>(std::max(qel::abs_dx(p, 1), qel::abs_dy(p, width)));
    });
    QelSetImageBoundary(dst, width, height, 0);
}

void QelRobertByMask(unsigned char* src, unsigned char* mask, int width, int height, unsigned char* dst) {
    qel::for_each_interior(src, width, height, 1, [=](const unsigned char* p, int x, int y) {
        const std::ptrdiff_t i = static_cast<std::ptrdiff_t>(y) * width + x;
        dst[i] = (mask == nullptr || mask[i] != 0) ? static_cast<unsigned char>(qel::clamped_sum(p, 1, width)) : 0;
    });
    QelSetImageBoundary(dst, width, height, 0);
}

void QelRobertRGBImage2GryRobert(unsigned char* rgb, int width, int height, unsigned char* dst) {
    qel::for_each_bgr_interior(rgb, width, height, [dst](std::ptrdiff_t i, const int* g) {
        dst[i] = static_cast<unsigned char>(std::max({g[0], g[1], g[2]}));
    });
    QelSetImageBoundary(dst, width, height, 0);
}

// The frame setter runs after the interior is written: its frame is partial, and it also clears
// byte width−1 of every row, which for width >= 4 lies inside an interior pixel. Intended.
void QelRobertRGBImage2RGBRobert(unsigned char* rgb, int width, int height, unsigned char* rgbDst) {
    qel::for_each_bgr_interior(rgb, width, height, [rgbDst](std::ptrdiff_t i, const int* g) {
        for (int c = 0; c < qel::kBgr; ++c) rgbDst[i * qel::kBgr + c] = static_cast<unsigned char>(g[c]);
    });
    QelSetRGBImageBoundary(rgbDst, width, height, 0);
}
