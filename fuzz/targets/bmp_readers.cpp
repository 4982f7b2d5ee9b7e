// The two BMP readers, each held against a reference read of the same bytes in memory: null
// exactly when the file is refused, the out-parameters as documented, and every pixel where the
// file puts it.
#include "targets.h"

#include <qel.h>

#include <climits>
#include <cstring>
#include <vector>

namespace qel_fuzz {
namespace {

constexpr size_t kHeadersBytes = 54;

uint32_t u32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}
int64_t i32(const uint8_t* p) {
    const int64_t v = u32(p);
    return v > INT32_MAX ? v - (int64_t{1} << 32) : v;
}

struct Read {
    bool ok = false;
    int64_t width = 0;   // the out-parameters
    int64_t height = 0;
    std::vector<uint8_t> pixels;
};

// What a reader of `bytesPerPixel` must give for this file. The 8-bit reader needs every row's pad
// bytes; the 24-bit reader never fails on them, so the last row's may be missing.
Read reference(const uint8_t* d, size_t n, int bytesPerPixel) {
    Read r;
    if (n < kHeadersBytes) return r;
    const int64_t offset = u32(d + 10);
    if (offset < static_cast<int64_t>(kHeadersBytes)) return r;
    const int64_t storedHeight = i32(d + 22);
    const bool topDown = storedHeight < 0 && storedHeight != INT32_MIN;
    r.width = i32(d + 18);
    r.height = topDown ? -storedHeight : storedHeight;
    if (r.width <= 0 || r.height <= 0) return r;
    const int64_t rowBytes = r.width * bytesPerPixel;
    if (rowBytes > INT_MAX / r.height) return r;  // more than INT_MAX bytes (the product could overflow)
    const int64_t stride = (rowBytes + 3) / 4 * 4;
    const int64_t lastPad = bytesPerPixel == 1 ? stride - rowBytes : 0;
    if (static_cast<int64_t>(n) < offset + stride * (r.height - 1) + rowBytes + lastPad) return r;
    r.ok = true;
    r.pixels.resize(static_cast<size_t>(rowBytes * r.height));
    for (int64_t i = 0; i < r.height; ++i) {
        const int64_t row = topDown ? i : r.height - 1 - i;
        std::memcpy(&r.pixels[static_cast<size_t>(row * rowBytes)], d + offset + i * stride, static_cast<size_t>(rowBytes));
    }
    return r;
}

int checkReader(const char* target, const uint8_t* data, size_t size, int bytesPerPixel) {
    const std::string path = inputFile(target, data, size);
    int width = -1;
    int height = -1;
    unsigned char* image = bytesPerPixel == 1 ? QelRead8BitBmpFile2Img(path.c_str(), &width, &height)
                                              : QelRead24BitBmpFile2Img(path.c_str(), &width, &height);
    const Read want = reference(data, size, bytesPerPixel);
    expect(width == want.width && height == want.height, target,
           "out-parameters " + std::to_string(width) + " x " + std::to_string(height) + ", expected " +
               std::to_string(want.width) + " x " + std::to_string(want.height));
    expect((image != nullptr) == want.ok, target, want.ok ? "a readable file was refused" : "a refused file was read");
    if (image != nullptr) {
        expect(std::memcmp(image, want.pixels.data(), want.pixels.size()) == 0, target, "pixels differ from the file's");
        delete[] image;
    }
    return 0;
}

}  // namespace

int bmp8(const uint8_t* data, size_t size) { return checkReader("bmp8", data, size, 1); }
int bmp24(const uint8_t* data, size_t size) { return checkReader("bmp24", data, size, 3); }

}  // namespace qel_fuzz
