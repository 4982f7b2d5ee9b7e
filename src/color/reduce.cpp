// Reduced copies of a rectangle: half-resolution red images and quarter-resolution BGR images of
// camera frames, and the quarter-resolution copy of an RGB rectangle.
//
// The camera members of one kind are one template over the format; which rectangles each format
// refuses is listed in RectRules (rect_sampling.h).
#include "qel/color.h"

#include "color/camera_layout.h"
#include "color/rect_sampling.h"
#include "color/rgb.h"

#include <cstring>

namespace {

using qel::CbYCrY;
using qel::RectArea;
using qel::RectRules;
using qel::Sampling;
using qel::Yuv420P;
using qel::Yuv420SP;
using qel::Yuv422P;

// Per 2 x 2 block of the rectangle, the red of its top-left pixel: (rect width / 2) x (rect height / 2).
template <class Layout>
void red_half(const Layout& frame, const RectArea& r, unsigned char* red) {
    qel::sample_rect(frame, r, Sampling::every_second(r), red, qel::PutRed());
}

template <class Format>
bool rect_to_red_half(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* red) {
    if (RectRules<Format>::refuses(width, height, r)) return false;
    red_half(Format::layout(frame, width, height), r, red);
    return true;
}

// BGR of pixels (x1 + 4i, y1 + 4j) up to (x2, y2).
template <class Format>
bool rect_to_bgr_quarter(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* rgb) {
    if (RectRules<Format>::refuses_quarter(width, height, r)) return false;
    qel::sample_rect(Format::layout(frame, width, height), r, Sampling::every_fourth(r), rgb, qel::PutBgr());
    return true;
}

}  // namespace

// ---- half-resolution red images ------------------------------------------------------------------

bool QelCopyYUV420PRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                      unsigned char* red) {
    return rect_to_red_half<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, red);
}

bool QelCopyYUV420SPRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                       unsigned char* red) {
    return rect_to_red_half<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, red);
}

// Rows are not checked: each has its own chroma, and still only every second row is kept.
bool QelCopyYUV422PRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                      unsigned char* red) {
    return rect_to_red_half<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, red);
}

// Nothing is refused: with an odd x1 each output takes the Y of pixel x1 + 2i and that pixel's own Cr.
void QelCopyCbYCrYRect2RedImgShrink2(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                     unsigned char* red) {
    red_half(CbYCrY::layout(static_cast<const unsigned char*>(frame), width, height), {x1, x2, y1, y2}, red);
}

// ---- quarter-resolution BGR images ---------------------------------------------------------------

bool QelCopyYUV420PScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                              unsigned char* rgb) {
    return rect_to_bgr_quarter<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

bool QelCopyYUV420SPScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                               unsigned char* rgb) {
    return rect_to_bgr_quarter<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

// Intended: this member wants the rectangle's width and height in whole multiples of 4, and
// checks x1 but not y1.
bool QelCopyYUV422PScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                              unsigned char* rgb) {
    return rect_to_bgr_quarter<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

// Rows y1, y1 + 4, ...; x1 is even, so every kept pixel is the Y0 of its pair.
bool QelCopyCbYCrYScale4Rect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                             unsigned char* rgb) {
    return rect_to_bgr_quarter<CbYCrY>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

void QelCopyRGBScale4Rect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                          unsigned char* out) {
    const RectArea r{x1, x2, y1, y2};
    qel::for_each_rgb_pixel(image, width, r, Sampling::every_fourth(r), [out](const unsigned char* p, size_t k) {
        std::memcpy(out + k * qel::kBytesPerRgbPixel, p, qel::kBytesPerRgbPixel);
    });
}
