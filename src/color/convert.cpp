// Whole-frame conversions between RGB (B, G, R bytes), grey and the four camera formats.
//
// Where each camera format keeps its samples is described once, in camera_layout.h. Camera frame to
// RGB or grey is the rectangle copy of the whole frame; RGB to a camera frame writes through the same
// layouts, one loop for all four: a horizontal pixel pair always shares chroma, and in the 4:2:0
// formats two rows do as well.
#include "qel/color.h"

#include "color/camera_layout.h"
#include "color/rect_sampling.h"
#include "color/rgb.h"
#include "color/yuv.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace {

using qel::CbYCrY;
using qel::is_odd;
using qel::kBytesPerRgbPixel;
using qel::pixel_count;
using qel::RectArea;
using qel::Yuv420P;
using qel::Yuv420SP;
using qel::Yuv422P;

constexpr int kPixelsPerPair = 2;

// Camera frame to B, G, R; width must be even, and height even where two rows share chroma.
template <class Format>
void camera_to_bgr(const unsigned char* frame, int width, int height, unsigned char* rgb) {
    qel::copy_bgr(Format::layout(frame, width, height), RectArea::whole(width, height), rgb);
}

template <class Format>
void camera_to_grey(const unsigned char* frame, int width, int height, unsigned char* grey) {
    qel::copy_luma(Format::layout(frame, width, height), RectArea::whole(width, height), grey);
}

// B, G, R to a camera frame; width must be even, and height even where two rows share chroma. The
// chroma of a block is the mean, by right shift, of its pixels' U and V, each already offset by 128
// and already truncated.
template <class Format>
void bgr_to_camera(const unsigned char* rgb, int width, int height, unsigned char* frame) {
    const auto layout = Format::layout(frame, width, height);
    using Layout = std::decay_t<decltype(layout)>;
    using Row = typename Layout::Row;
    constexpr int rowsPerChroma = 1 << Layout::kChromaRowShift;
    constexpr int meanShift = 1 + Layout::kChromaRowShift;  // 2 or 4 pixels share one U, V
    const int pairs = width / kPixelsPerPair;
    const std::ptrdiff_t rgbRowBytes = static_cast<std::ptrdiff_t>(width) * kBytesPerRgbPixel;
    for (int cy = 0; cy < height / rowsPerChroma; ++cy) {
        Row rows[rowsPerChroma];
        const unsigned char* rgbRows[rowsPerChroma];
        for (int r = 0; r < rowsPerChroma; ++r) {
            rows[r] = layout.row(cy * rowsPerChroma + r);
            rgbRows[r] = rgb + (cy * rowsPerChroma + r) * rgbRowBytes;
        }
        for (int i = 0; i < pairs; ++i) {
            int uSum = 0;
            int vSum = 0;
            for (int r = 0; r < rowsPerChroma; ++r) {
                for (int k = 0; k < kPixelsPerPair; ++k) {
                    const int x = kPixelsPerPair * i + k;
                    const unsigned char* px = rgbRows[r] + x * kBytesPerRgbPixel;
                    rows[r].luma_at(x) = static_cast<unsigned char>(qel::luma_from_bgr(px[0], px[1], px[2]));
                    uSum += qel::u_from_bgr(px[0], px[1], px[2]);
                    vSum += qel::v_from_bgr(px[0], px[1], px[2]);
                }
            }
            rows[0].cb_at(i) = static_cast<unsigned char>(uSum >> meanShift);
            rows[0].cr_at(i) = static_cast<unsigned char>(vSum >> meanShift);
        }
    }
}

}  // namespace

void QelRGB2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return qel::grey_from_bgr(b, g, r); });
}

void QelRGB2GryInvert(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return 255 - qel::grey_from_bgr(b, g, r); });
}

void QelRGBsDif2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return std::max({b, g, r}) - std::min({b, g, r}); });
}

// The same as QelExtractOneChannelFromRGB.
void QelSelectRGB2Gry(unsigned char* rgb, int width, int height, int channel, unsigned char* grey) {
    qel::extract_channel(rgb, pixel_count(width, height), channel, grey);
}

void QelCbYCrY2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<CbYCrY>(frame, width, height, grey);
}

void QelYUV420P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv420P>(frame, width, height, grey);
}

void QelYUV420SP2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv420SP>(frame, width, height, grey);
}

void QelYUV422P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    camera_to_grey<Yuv422P>(frame, width, height, grey);
}

bool QelCbYCrY2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width)) return false;
    camera_to_bgr<CbYCrY>(frame, width, height, rgb);
    return true;
}

bool QelYUV420P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr<Yuv420P>(frame, width, height, rgb);
    return true;
}

bool QelYUV420SP2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr<Yuv420SP>(frame, width, height, rgb);
    return true;
}

bool QelYUV422P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    // An odd height is accepted here though QelRGB2YUV422P refuses it: intended.
    if (is_odd(width)) return false;
    camera_to_bgr<Yuv422P>(frame, width, height, rgb);
    return true;
}

bool QelRGB2CbYCrY(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width)) return false;
    bgr_to_camera<CbYCrY>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV420P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv420P>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV420SP(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv420SP>(rgb, width, height, frame);
    return true;
}

bool QelRGB2YUV422P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    // Stricter than QelYUV422P2RGB, which accepts an odd height: intended.
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera<Yuv422P>(rgb, width, height, frame);
    return true;
}
