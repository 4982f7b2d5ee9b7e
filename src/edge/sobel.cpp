// Sobel family: 3×3 first-derivative responses, their direction-selective ("Just") variants and
// two profiles of vertical edges.
#include "qel/edge.h"
#include "qel/io.h"

#include <cstdint>
#include <cstdlib>

namespace qel {
namespace {

constexpr int kMaxGrey = 255;

inline unsigned char clamp255(int v) { return static_cast<unsigned char>(v < kMaxGrey ? v : kMaxGrey); }

// Calls visit(x, gx, gy) for every interior pixel x = 1..width−2 of row y (1 <= y <= height−2).
// gx = (TL + 2L + BL) − (TR + 2R + BR), gy = (TL + 2T + TR) − (BL + 2B + BR).
template <class Visit>
inline void sobel_row(const unsigned char* src, int width, int y, Visit visit) {
    const unsigned char* top = src + static_cast<std::ptrdiff_t>(y - 1) * width;
    const unsigned char* mid = top + width;
    const unsigned char* bot = mid + width;
    for (int x = 1; x < width - 1; ++x) {
        const int gx = (top[x - 1] + 2 * mid[x - 1] + bot[x - 1]) - (top[x + 1] + 2 * mid[x + 1] + bot[x + 1]);
        const int gy = (top[x - 1] + 2 * top[x] + top[x + 1]) - (bot[x - 1] + 2 * bot[x] + bot[x + 1]);
        visit(x, gx, gy);
    }
}

// Writes combine(|gx|, |gy|) at every interior pixel and 0 on the one-pixel frame.
template <class Combine>
void sobel_image(const unsigned char* src, int width, int height, unsigned char* dst, Combine combine) {
    for (int y = 1; y < height - 1; ++y) {
        unsigned char* out = dst + static_cast<std::ptrdiff_t>(y) * width;
        sobel_row(src, width, y, [out, combine](int x, int gx, int gy) { out[x] = combine(std::abs(gx), std::abs(gy)); });
    }
    QelSetImageBoundary(dst, width, height, 0);
}

}  // namespace
}  // namespace qel

void QelGryImgSobel(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::sobel_image(src, width, height, dst, [](int ax, int ay) { return qel::clamp255(ax + ay); });
}

void QelGryImgSobel0(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::sobel_image(src, width, height, dst, [](int, int ay) { return qel::clamp255(ay); });
}

void QelGryImgSobel90(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::sobel_image(src, width, height, dst, [](int ax, int) { return qel::clamp255(ax); });
}

// "Just": kept only where its own direction strictly dominates; ties give 0.
void QelGryImgSobel0Just(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::sobel_image(src, width, height, dst,
                     [](int ax, int ay) { return ay > ax ? qel::clamp255(ay) : static_cast<unsigned char>(0); });
}

void QelGryImgSobel90Just(unsigned char* src, int width, int height, unsigned char* dst) {
    qel::sobel_image(src, width, height, dst,
                     [](int ax, int ay) { return ax > ay ? qel::clamp255(ax) : static_cast<unsigned char>(0); });
}

// The column profile adds both magnitudes while the row profile below adds |gx| alone; the two
// differ on purpose. Sums are taken modulo 2^32 so that huge images wrap instead of overflowing.
void QelGryImgSobel90JustToPrjX(unsigned char* src, int width, int height, int* prjX) {
    if (width <= 0) return;
    for (int x = 0; x < width; ++x) prjX[x] = 0;
    for (int y = 1; y < height - 1; ++y) {
        qel::sobel_row(src, width, y, [prjX](int x, int gx, int gy) {
            const int ax = std::abs(gx), ay = std::abs(gy);
            if (ax > ay) prjX[x] = static_cast<int>(static_cast<uint32_t>(prjX[x]) + static_cast<uint32_t>(ax + ay));
        });
    }
    if (width >= 2) {
        prjX[0] = prjX[1];
        prjX[width - 1] = prjX[width - 2];
    }
}

void QelGryImgSobel90JustToPrjY(unsigned char* src, int width, int height, int* prjY) {
    if (height <= 0) return;
    for (int y = 1; y < height - 1; ++y) {
        uint32_t sum = 0;
        qel::sobel_row(src, width, y, [&sum](int, int gx, int gy) {
            const int ax = std::abs(gx);
            if (ax > std::abs(gy)) sum += static_cast<uint32_t>(ax);
        });
        prjY[y] = static_cast<int>(sum);
    }
    if (height >= 2) {
        prjY[0] = prjY[1];
        prjY[height - 1] = prjY[height - 2];
    }
}
