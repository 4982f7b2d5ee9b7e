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
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(width) * qel::kBgr;
    qel::for_each_interior(rgb, width, height, qel::kBgr, [=](const unsigned char* p, int x, int y) {
        int best = 0;
        for (int c = 0; c < qel::kBgr; ++c) best = std::max(best, qel::clamped_sum(p + c, qel::kBgr, stride));
        dst[static_cast<std::ptrdiff_t>(y) * width + x] = static_cast<unsigned char>(best);
    });
    QelSetImageBoundary(dst, width, height, 0);
}

// The frame setter runs after the interior is written: its frame is partial, and it also clears
// byte width−1 of every row, which for width >= 4 lies inside an interior pixel. Intended.
void QelRobertRGBImage2RGBRobert(unsigned char* rgb, int width, int height, unsigned char* rgbDst) {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(width) * qel::kBgr;
    qel::for_each_interior(rgb, width, height, qel::kBgr, [=](const unsigned char* p, int x, int y) {
        unsigned char* out = rgbDst + y * stride + static_cast<std::ptrdiff_t>(x) * qel::kBgr;
        for (int c = 0; c < qel::kBgr; ++c) out[c] = static_cast<unsigned char>(qel::clamped_sum(p + c, qel::kBgr, stride));
    });
    QelSetRGBImageBoundary(rgbDst, width, height, 0);
}
