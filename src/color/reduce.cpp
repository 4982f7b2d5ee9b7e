// Reduced copies of a rectangle: half-resolution red images and quarter-resolution BGR images of
// camera frames, and the quarter-resolution copy of an RGB rectangle.
#include "qel/color.h"

#include "color/camera_layout.h"

#include <cstring>

namespace {

using qel::CbYCrYLayout;
using qel::RectArea;
using qel::Sampling;
using qel::Yuv420PLayout;
using qel::Yuv420SPLayout;
using qel::Yuv422PLayout;

constexpr int kBytesPerRgbPixel = 3;
constexpr int kQuarterStep = 4;

bool odd(int v) { return v % 2 != 0; }
bool columns_odd(const RectArea& r) { return odd(r.x1) || odd(r.width()); }
bool rows_odd(const RectArea& r) { return odd(r.y1) || odd(r.height()); }

// Per 2 x 2 block of the rectangle, the red of its top-left pixel: (rect width / 2) x (rect height / 2).
template <class Layout>
void red_half(const Layout& frame, const RectArea& r, unsigned char* red) {
    qel::sample_rect(frame, r, Sampling::every_second(r), red, qel::PutRed());
}

// BGR of pixels (x1 + 4i, y1 + 4j) up to (x2, y2).
template <class Layout>
void bgr_quarter(const Layout& frame, const RectArea& r, unsigned char* rgb) {
    qel::sample_rect(frame, r, Sampling::every_fourth(r), rgb, qel::PutBgr());
}

}  // namespace

// ---- half-resolution red images ------------------------------------------------------------------

bool QelCopyYUV420PRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                      unsigned char* red) {
    const RectArea r{x1, x2, y1, y2};
    if (columns_odd(r) || rows_odd(r)) return false;
    red_half(Yuv420PLayout(frame, width, height), r, red);
    return true;
}

bool QelCopyYUV420SPRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                       unsigned char* red) {
    const RectArea r{x1, x2, y1, y2};
    if (columns_odd(r) || rows_odd(r)) return false;
    red_half(Yuv420SPLayout(frame, width, height), r, red);
    return true;
}

// Rows are not checked: each has its own chroma, and still only every second row is kept.
bool QelCopyYUV422PRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                      unsigned char* red) {
    const RectArea r{x1, x2, y1, y2};
    if (odd(width) || columns_odd(r)) return false;
    red_half(Yuv422PLayout(frame, width, height), r, red);
    return true;
}

// Nothing is refused: with an odd x1 each output takes the Y of pixel x1 + 2i and that pixel's own Cr.
void QelCopyCbYCrYRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                     unsigned char* red) {
    const RectArea r{x1, x2, y1, y2};
    red_half(CbYCrYLayout(frame, width, height), r, red);
}

// ---- quarter-resolution BGR images ---------------------------------------------------------------

bool QelCopyYUV420PScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                              unsigned char* rgb) {
    const RectArea r{x1, x2, y1, y2};
    if (odd(width) || odd(height) || columns_odd(r) || rows_odd(r)) return false;
    bgr_quarter(Yuv420PLayout(frame, width, height), r, rgb);
    return true;
}

bool QelCopyYUV420SPScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                               unsigned char* rgb) {
    const RectArea r{x1, x2, y1, y2};
    if (odd(width) || odd(height) || columns_odd(r) || rows_odd(r)) return false;
    bgr_quarter(Yuv420SPLayout(frame, width, height), r, rgb);
    return true;
}

// Intended: this member wants the rectangle's width and height in whole multiples of 4, and
// checks x1 but not y1.
bool QelCopyYUV422PScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                              unsigned char* rgb) {
    const RectArea r{x1, x2, y1, y2};
    if (odd(width) || odd(x1) || r.width() % kQuarterStep != 0 || r.height() % kQuarterStep != 0) return false;
    bgr_quarter(Yuv422PLayout(frame, width, height), r, rgb);
    return true;
}

// Rows y1, y1 + 4, ...; x1 is even, so every kept pixel is the Y0 of its pair.
bool QelCopyCbYCrYScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                             unsigned char* rgb) {
    const RectArea r{x1, x2, y1, y2};
    if (columns_odd(r)) return false;
    bgr_quarter(CbYCrYLayout(frame, width, height), r, rgb);
    return true;
}

void QelCopyRGBScale4Rect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                          unsigned char* out) {
    const RectArea r{x1, x2, y1, y2};
    if (r.empty()) return;
    for (int y = y1; y <= y2; y += kQuarterStep) {
        const unsigned char* row = image + static_cast<std::ptrdiff_t>(y) * width * kBytesPerRgbPixel;
        for (int x = x1; x <= x2; x += kQuarterStep, out += kBytesPerRgbPixel)
            std::memcpy(out, row + static_cast<std::ptrdiff_t>(x) * kBytesPerRgbPixel, kBytesPerRgbPixel);
    }
}
