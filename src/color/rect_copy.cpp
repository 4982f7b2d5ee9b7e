// Rectangle copies of grey, RGB and camera frames at full resolution: same format, grey (the Y
// samples), BGR and red images, plus the colour binarisation of an RGB rectangle.
//
// The camera members of one kind are one template over the format; which rectangles each format
// refuses is listed in RectRules (rect_sampling.h).
#include "qel/color.h"

#include "color/camera_layout.h"
#include "color/rect_sampling.h"
#include "color/rgb.h"

#include <cstdint>
#include <cstring>

namespace {

using qel::CbYCrY;
using qel::kBytesPerRgbPixel;
using qel::RectArea;
using qel::RectRules;
using qel::Sampling;
using qel::Yuv420P;
using qel::Yuv420SP;
using qel::Yuv422P;

// Grey weights of the RGB rectangle copies. They are intentionally applied to the bytes in the
// order red, green, blue although pixels are stored blue, green, red: 306 falls on byte 0 (blue)
// and 116 on byte 2 (red), unlike the whole-frame grey conversion. Callers depend on it.
constexpr int kRectGreyWeightByte0 = 306;
constexpr int kRectGreyWeightByte1 = 601;
constexpr int kRectGreyWeightByte2 = 116;
constexpr int kRectGreyShift = 10;

constexpr unsigned char kObject = 255;
constexpr unsigned char kBackground = 0;

// Copies rows row1 .. row1 + rows - 1 of a plane whose rows are `stride` bytes apart, `bytes` bytes
// from byte `byteX` of each row, packed into out. Returns the end of what it wrote.
unsigned char* copy_rect_bytes(const unsigned char* plane, std::ptrdiff_t stride, std::ptrdiff_t byteX,
                               std::ptrdiff_t bytes, int row1, int rows, unsigned char* out) {
    if (bytes <= 0) return out;
    for (int j = 0; j < rows; ++j, out += bytes)
        std::memcpy(out, plane + (row1 + j) * stride + byteX, static_cast<size_t>(bytes));
    return out;
}

// Copies a rectangle of an image with bytesPerPixel bytes per pixel (grey, CbYCrY, RGB).
void copy_rect(const unsigned char* image, int width, int bytesPerPixel, const RectArea& r, unsigned char* out) {
    if (r.empty()) return;
    copy_rect_bytes(image, static_cast<std::ptrdiff_t>(width) * bytesPerPixel,
                    static_cast<std::ptrdiff_t>(r.x1) * bytesPerPixel,
                    static_cast<std::ptrdiff_t>(r.width()) * bytesPerPixel, r.y1, r.height(), out);
}

template <class Layout>
void copy_red(const Layout& frame, const RectArea& r, unsigned char* red) {
    qel::sample_rect(frame, r, Sampling::every_pixel(r), red, qel::PutRed());
}

// ---- the camera members, one template per kind -----------------------------------------------------

template <class Format>
void rect_to_grey(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* grey) {
    qel::copy_luma(Format::layout(frame, width, height), r, grey);
}

template <class Format>
bool rect_to_bgr(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* rgb) {
    if (RectRules<Format>::refuses(width, height, r)) return false;
    qel::copy_bgr(Format::layout(frame, width, height), r, rgb);
    return true;
}

template <class Format>
bool rect_to_red(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* red) {
    if (RectRules<Format>::refuses(width, height, r)) return false;
    copy_red(Format::layout(frame, width, height), r, red);
    return true;
}

template <class Format>
bool rect_to_bgr_and_grey(const unsigned char* frame, int width, int height, const RectArea& r, unsigned char* rgb,
                          unsigned char* grey) {
    if (RectRules<Format>::refuses_two_outputs(width, height, r)) return false;
    const auto layout = Format::layout(frame, width, height);
    qel::copy_bgr(layout, r, rgb);
    qel::copy_luma(layout, r, grey);
    return true;
}

unsigned char rect_grey(const unsigned char* p) {
    return static_cast<unsigned char>(
        (p[0] * kRectGreyWeightByte0 + p[1] * kRectGreyWeightByte1 + p[2] * kRectGreyWeightByte2) >> kRectGreyShift);
}

int squared_distance(const unsigned char* p, const int colour[3]) {
    int d = 0;
    for (int b = 0; b < kBytesPerRgbPixel; ++b) d += (p[b] - colour[b]) * (p[b] - colour[b]);
    return d;
}

// Calls fn(pixel, k) for the k-th pixel of an RGB rectangle, row by row.
template <class Fn>
void for_each_rect_pixel(const unsigned char* image, int width, const RectArea& r, Fn fn) {
    qel::for_each_rgb_pixel(image, width, r, Sampling::every_pixel(r), fn);
}

}  // namespace

// ---- YUV 4:2:0 planar ----------------------------------------------------------------------------

void QelCopyYUV420PRect2Gry(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                            unsigned char* grey) {
    rect_to_grey<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, grey);
}

bool QelCopyYUV420PRect2RGB(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                            unsigned char* rgb) {
    return rect_to_bgr<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

bool QelCopyYUV420PRect2RedImg(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                               unsigned char* red) {
    return rect_to_red<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, red);
}

bool QelCopyYUV420PRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                        unsigned char* rgb, unsigned char* grey) {
    return rect_to_bgr_and_grey<Yuv420P>(frame, width, height, {x1, x2, y1, y2}, rgb, grey);
}

// ---- YUV 4:2:0 semi-planar -----------------------------------------------------------------------

void QelCopyYUV420SPRect2Gry(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                             unsigned char* grey) {
    rect_to_grey<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, grey);
}

bool QelCopyYUV420SPRect2RGB(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                             unsigned char* rgb) {
    return rect_to_bgr<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

bool QelCopyYUV420SPRect2RedImg(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                                unsigned char* red) {
    return rect_to_red<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, red);
}

bool QelCopyYUV420SPRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                         unsigned char* rgb, unsigned char* grey) {
    return rect_to_bgr_and_grey<Yuv420SP>(frame, width, height, {x1, x2, y1, y2}, rgb, grey);
}

bool QelCopyYUV420SPRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                         unsigned char* subFrame) {
    const RectArea r{x1, x2, y1, y2};
    if (RectRules<Yuv420SP>::refuses(width, height, r)) return false;
    if (r.empty()) return true;
    const auto layout = Yuv420SP::layout(frame, width, height);
    // The rectangle's Y rows, then chroma rows y1/2, y1/2 + 1, ...: rect width bytes of U, V pairs
    // from byte x1 (x1 is even, so the copy starts on a U).
    unsigned char* out = copy_rect_bytes(layout.luma, layout.lumaRowBytes, x1, r.width(), y1, r.height(), subFrame);
    copy_rect_bytes(layout.cb, layout.chromaRowBytes, x1, r.width(), y1 / 2, r.height() / 2, out);
    return true;
}

// ---- YUV 4:2:2 planar ----------------------------------------------------------------------------

void QelCopyYUV422PRect2Gry(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                            unsigned char* grey) {
    rect_to_grey<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, grey);
}

// Every row has its own chroma, so rows are not checked (the frame width is).
bool QelCopyYUV422PRect2RGB(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                            unsigned char* rgb) {
    return rect_to_bgr<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

bool QelCopyYUV422PRect2RedImg(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                               unsigned char* red) {
    return rect_to_red<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, red);
}

// Intended: the two-output copy also refuses an odd frame height, though rows are never shared.
bool QelCopyYUV422PRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                        unsigned char* rgb, unsigned char* grey) {
    return rect_to_bgr_and_grey<Yuv422P>(frame, width, height, {x1, x2, y1, y2}, rgb, grey);
}

// ---- CbYCrY --------------------------------------------------------------------------------------

void QelCopyCbYCrYRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                       unsigned char* subFrame) {
    copy_rect(frame, width, CbYCrY::kBytesPerPixel, {x1, x2, y1, y2}, subFrame);
}

void QelCopyCbYCrYRect2Gry(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                           unsigned char* grey) {
    rect_to_grey<CbYCrY>(frame, width, height, {x1, x2, y1, y2}, grey);
}

// Each row carries its own chroma, so only columns are checked.
bool QelCopyCbYCrYRect2RGB(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                           unsigned char* rgb) {
    return rect_to_bgr<CbYCrY>(frame, width, height, {x1, x2, y1, y2}, rgb);
}

bool QelCopyCbYCrYRect(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                       unsigned char* rgb, unsigned char* grey) {
    return rect_to_bgr_and_grey<CbYCrY>(frame, width, height, {x1, x2, y1, y2}, rgb, grey);
}

// Nothing is refused: every pixel takes the Cr of the pair it belongs to in the frame, whatever x1.
void QelCopyCbYCrYRect2RedImg(unsigned char* frame, int width, int height, int x1, int x2, int y1, int y2,
                              unsigned char* red) {
    const RectArea r{x1, x2, y1, y2};
    if (r.empty()) return;
    const auto layout = CbYCrY::layout(static_cast<const unsigned char*>(frame), width, height);
    // In a frame of odd width the last pixel of a row has no partner and so no Cr in its row; it
    // takes neutral chroma instead of reading into the next row (or past the frame).
    const bool lonePixel = qel::is_odd(width) && x2 == width - 1;
    if (!lonePixel) {
        copy_red(layout, r, red);
        return;
    }
    for (int y = y1; y <= y2; ++y) {
        const RectArea pairedPart{x1, x2 - 1, y, y};
        red = qel::sample_rect(layout, pairedPart, Sampling::every_pixel(pairedPart), red, qel::PutRed());
        *red++ = static_cast<unsigned char>(qel::red_from_yuv(layout.row(y).y(x2), qel::kChromaOffset));
    }
}

// ---- grey and RGB images -------------------------------------------------------------------------

void QelCopyGryRect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, unsigned char* out) {
    copy_rect(image, width, 1, {x1, x2, y1, y2}, out);
}

void QelCopyRGBRect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, unsigned char* out) {
    copy_rect(image, width, kBytesPerRgbPixel, {x1, x2, y1, y2}, out);
}

void QelCopyRGBRect(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, unsigned char* rgb,
                    unsigned char* grey) {
    QelCopyRGBRect(image, width, height, x1, x2, y1, y2, rgb);
    QelCopyRGBRect2Gry(image, width, height, x1, x2, y1, y2, grey);
}

void QelCopyRGBRect2Gry(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                        unsigned char* grey) {
    for_each_rect_pixel(image, width, {x1, x2, y1, y2}, [grey](const unsigned char* p, size_t k) { grey[k] = rect_grey(p); });
}

void QelCopyRGBRect2Gry(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                        unsigned char* red, unsigned char* green, unsigned char* blue) {
    for_each_rect_pixel(image, width, {x1, x2, y1, y2}, [=](const unsigned char* p, size_t k) {
        red[k] = p[2];
        green[k] = p[1];
        blue[k] = p[0];
    });
}

void QelSelectRGBRect2Gry(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2, int channel,
                          unsigned char* out) {
    for_each_rect_pixel(image, width, {x1, x2, y1, y2},
                       [=](const unsigned char* p, size_t k) { out[k] = p[channel]; });
}

void QelCopyRGB2GryBinImg(unsigned char* image, int width, int height, int x1, int x2, int y1, int y2,
                          bool objectIsBright, unsigned char* grey, unsigned char* binary, int* outWidth,
                          int* outHeight) {
    const RectArea r{x1, x2, y1, y2};
    if (r.empty()) {
        *outWidth = 0;
        *outHeight = 0;
        return;
    }
    QelCopyRGBRect2Gry(image, width, height, x1, x2, y1, y2, grey);
    const size_t count = static_cast<size_t>(r.width()) * static_cast<size_t>(r.height());
    int64_t greySum = 0;
    for (size_t k = 0; k < count; ++k) greySum += grey[k];
    const int64_t meanGrey = greySum / static_cast<int64_t>(count);

    // Class 0 is dark (grey <= mean), class 1 bright: per-byte sums and pixel counts.
    int64_t sums[2][kBytesPerRgbPixel] = {};
    int64_t pixels[2] = {};
    for_each_rect_pixel(image, width, r, [&](const unsigned char* p, size_t k) {
        const int cls = grey[k] > meanGrey ? 1 : 0;
        for (int b = 0; b < kBytesPerRgbPixel; ++b) sums[cls][b] += p[b];
        ++pixels[cls];
    });
    int means[2][kBytesPerRgbPixel];
    for (int cls = 0; cls < 2; ++cls) {
        const int64_t n = pixels[cls] == 0 ? 1 : pixels[cls];  // an empty class counts as one pixel
        for (int b = 0; b < kBytesPerRgbPixel; ++b) means[cls][b] = static_cast<int>(sums[cls][b] / n);
    }
    const int* objectColour = means[objectIsBright ? 1 : 0];
    const int* backgroundColour = means[objectIsBright ? 0 : 1];
    for_each_rect_pixel(image, width, r, [&](const unsigned char* p, size_t k) {
        binary[k] = squared_distance(p, objectColour) < squared_distance(p, backgroundColour) ? kObject : kBackground;
    });
    *outWidth = r.width();
    *outHeight = r.height();
}
