// Helpers shared by the drawing tests: the set of pixels a drawing changed, hand-written pixel
// sets built from runs, and canvases with guard bytes around the image.
#ifndef QEL_TESTS_DRAW_DRAW_TEST_HELPERS_H
#define QEL_TESTS_DRAW_DRAW_TEST_HELPERS_H

#include "support/test_images.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <set>
#include <utility>

namespace qel_test {

using Points = std::set<std::pair<int, int>>;  // (x, y)

// Pixels of a grey image (bytesPerPixel 1) or BGR image (3) that differ from `background` in
// any byte.
inline Points changed(const Bytes& image, int width, int height, int bytesPerPixel = 1,
                      unsigned char background = 0) {
    Points p;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < bytesPerPixel; ++c)
                if (image[(static_cast<size_t>(y) * width + x) * bytesPerPixel + c] != background) p.insert({x, y});
    return p;
}

// The three bytes (blue, green, red) of pixel number p of a BGR image.
inline Bytes bgr_at(const Bytes& image, size_t p) { return Bytes(image.begin() + 3 * p, image.begin() + 3 * p + 3); }

// Building expected sets: single points, column x over rows y1..y2, row y over columns x1..x2.
inline Points& add(Points& p, std::initializer_list<std::pair<int, int>> points) {
    p.insert(points.begin(), points.end());
    return p;
}
inline Points& add_column(Points& p, int x, int y1, int y2) {
    for (int y = y1; y <= y2; ++y) p.insert({x, y});
    return p;
}
inline Points& add_row(Points& p, int y, int x1, int x2) {
    for (int x = x1; x <= x2; ++x) p.insert({x, y});
    return p;
}

// An image with guard bytes on both sides, to show that nothing is written outside it.
class GuardedImage {
public:
    static constexpr size_t kGuard = 64;
    static constexpr unsigned char kGuardByte = 0xA5;

    // A width × height image (nothing when either is ≤ 0), every byte `fill`.
    GuardedImage(int width, int height, int bytesPerPixel, unsigned char fill = 0)
        : size_(width > 0 && height > 0 ? static_cast<size_t>(width) * height * bytesPerPixel : 0),
          bytes_(size_ + 2 * kGuard, kGuardByte) {
        std::fill(bytes_.begin() + kGuard, bytes_.begin() + kGuard + size_, fill);
    }
    unsigned char* data() { return bytes_.data() + kGuard; }
    bool guards_intact() const {
        for (size_t i = 0; i < kGuard; ++i)
            if (bytes_[i] != kGuardByte || bytes_[kGuard + size_ + i] != kGuardByte) return false;
        return true;
    }

private:
    size_t size_;
    Bytes bytes_;
};

}  // namespace qel_test

#endif
