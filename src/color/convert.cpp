// Whole-frame conversions between RGB (B, G, R bytes), grey and the four camera formats.
//
// The camera formats differ only in where luma and chroma lie and how many pixels share one chroma
// pair, so each format is described by a CameraPlanes value and one loop per direction serves all
// four: a horizontal pixel pair always shares chroma; in the 4:2:0 formats two rows do as well.
#include "qel/color.h"

#include "color/yuv.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr int kBytesPerRgbPixel = 3;
constexpr int kPixelsPerPair = 2;

bool is_odd(int n) { return (n & 1) != 0; }

// width x height for positive sizes, else 0.
size_t pixel_count(int width, int height) {
    return width > 0 && height > 0 ? static_cast<size_t>(width) * static_cast<size_t>(height) : 0;
}

// Where a camera frame keeps its samples. Pixel x of row y has its Y at
// luma[y * lumaRowBytes + x * LumaStep]; its pair's U and V are at
// u/v[(y / RowsPerChroma) * chromaRowBytes + (x / 2) * ChromaStep]. The steps are compile-time so
// that the one loop per direction runs as fast for every format.
template <class Byte, int LumaStep, int ChromaStep, int RowsPerChroma>
struct CameraPlanes {
    static constexpr int kLumaStep = LumaStep;
    static constexpr int kChromaStep = ChromaStep;
    static constexpr int kRowsPerChroma = RowsPerChroma;  // 2 for 4:2:0, 1 for 4:2:2
    Byte* luma;
    ptrdiff_t lumaRowBytes;
    Byte* u;
    Byte* v;
    ptrdiff_t chromaRowBytes;
};

template <class Byte>
CameraPlanes<Byte, 1, 1, 2> yuv420p_planes(Byte* frame, int width, int height) {
    const ptrdiff_t lumaBytes = static_cast<ptrdiff_t>(width) * height;
    const ptrdiff_t chromaPlaneBytes = static_cast<ptrdiff_t>(width / 2) * (height / 2);
    return {frame, width, frame + lumaBytes, frame + lumaBytes + chromaPlaneBytes, width / 2};
}

template <class Byte>
CameraPlanes<Byte, 1, 2, 2> yuv420sp_planes(Byte* frame, int width, int height) {
    Byte* uv = frame + static_cast<ptrdiff_t>(width) * height;
    return {frame, width, uv, uv + 1, 2 * (width / 2)};
}

template <class Byte>
CameraPlanes<Byte, 1, 1, 1> yuv422p_planes(Byte* frame, int width, int height) {
    const ptrdiff_t lumaBytes = static_cast<ptrdiff_t>(width) * height;
    const ptrdiff_t chromaPlaneBytes = static_cast<ptrdiff_t>(width / 2) * height;
    return {frame, width, frame + lumaBytes, frame + lumaBytes + chromaPlaneBytes, width / 2};
}

// Packed Cb, Y0, Cr, Y1 per pixel pair.
template <class Byte>
CameraPlanes<Byte, 2, 4, 1> cbycry_planes(Byte* frame, int width, int /*height*/) {
    const ptrdiff_t rowBytes = 2 * static_cast<ptrdiff_t>(width);
    return {frame + 1, rowBytes, frame, frame + 2, rowBytes};
}

// Camera frame to B, G, R; width must be even, and height a multiple of kRowsPerChroma.
template <class Planes>
void camera_to_bgr(const Planes& p, int width, int height, unsigned char* rgb) {
    const int pairs = width / kPixelsPerPair;
    for (int y = 0; y < height; ++y) {
        const unsigned char* luma = p.luma + y * p.lumaRowBytes;
        const ptrdiff_t chromaRow = (y / Planes::kRowsPerChroma) * p.chromaRowBytes;
        const unsigned char* u = p.u + chromaRow;
        const unsigned char* v = p.v + chromaRow;
        unsigned char* out = rgb + static_cast<ptrdiff_t>(y) * width * kBytesPerRgbPixel;
        for (int i = 0; i < pairs; ++i) {
            const qel::ChromaTerms c = qel::chroma_terms(u[i * Planes::kChromaStep], v[i * Planes::kChromaStep]);
            qel::store_bgr_from_terms(luma[(2 * i) * Planes::kLumaStep], c, out);
            qel::store_bgr_from_terms(luma[(2 * i + 1) * Planes::kLumaStep], c, out + kBytesPerRgbPixel);
            out += kPixelsPerPair * kBytesPerRgbPixel;
        }
    }
}

// B, G, R to a camera frame; width must be even, and height a multiple of kRowsPerChroma. The chroma
// of a block is the mean, by right shift, of its pixels' U and V, each already offset by 128 and
// already truncated.
template <class Planes>
void bgr_to_camera(const unsigned char* rgb, int width, int height, const Planes& p) {
    const int pairs = width / kPixelsPerPair;
    constexpr int rows = Planes::kRowsPerChroma;
    constexpr int meanShift = rows == 2 ? 2 : 1;  // 4 or 2 pixels share one chroma pair
    const ptrdiff_t rgbRowBytes = static_cast<ptrdiff_t>(width) * kBytesPerRgbPixel;
    for (int cy = 0; cy < height / rows; ++cy) {
        unsigned char* u = p.u + cy * p.chromaRowBytes;
        unsigned char* v = p.v + cy * p.chromaRowBytes;
        for (int i = 0; i < pairs; ++i) {
            int uSum = 0;
            int vSum = 0;
            for (int r = 0; r < rows; ++r) {
                const int y = cy * rows + r;
                const unsigned char* px = rgb + y * rgbRowBytes + (2 * i) * kBytesPerRgbPixel;
                unsigned char* luma = p.luma + y * p.lumaRowBytes + (2 * i) * Planes::kLumaStep;
                for (int k = 0; k < kPixelsPerPair; ++k, px += kBytesPerRgbPixel) {
                    luma[k * Planes::kLumaStep] = static_cast<unsigned char>(qel::luma_from_bgr(px[0], px[1], px[2]));
                    uSum += qel::u_from_bgr(px[0], px[1], px[2]);
                    vSum += qel::v_from_bgr(px[0], px[1], px[2]);
                }
            }
            u[i * Planes::kChromaStep] = static_cast<unsigned char>(uSum >> meanShift);
            v[i * Planes::kChromaStep] = static_cast<unsigned char>(vSum >> meanShift);
        }
    }
}

// Applies grey = f(B, G, R) to every pixel.
template <class F>
void rgb_to_grey(const unsigned char* rgb, int width, int height, unsigned char* grey, F f) {
    const size_t n = pixel_count(width, height);
    const unsigned char* p = rgb;
    for (size_t i = 0; i < n; ++i, p += kBytesPerRgbPixel) grey[i] = static_cast<unsigned char>(f(p[0], p[1], p[2]));
}

void copy_luma_plane(const unsigned char* frame, int width, int height, unsigned char* grey) {
    const size_t n = pixel_count(width, height);
    if (n > 0) std::memcpy(grey, frame, n);
}

}  // namespace

void QelRGB2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    rgb_to_grey(rgb, width, height, grey, [](int b, int g, int r) { return qel::grey_from_bgr(b, g, r); });
}

void QelRGB2GryInvert(unsigned char* rgb, int width, int height, unsigned char* grey) {
    rgb_to_grey(rgb, width, height, grey, [](int b, int g, int r) { return 255 - qel::grey_from_bgr(b, g, r); });
}

void QelRGBsDif2Gry(unsigned char* rgb, int width, int height, unsigned char* grey) {
    rgb_to_grey(rgb, width, height, grey,
                [](int b, int g, int r) { return std::max({b, g, r}) - std::min({b, g, r}); });
}

void QelSelectRGB2Gry(unsigned char* rgb, int width, int height, int channel, unsigned char* grey) {
    const size_t n = pixel_count(width, height);
    const unsigned char* p = rgb + channel;
    for (size_t i = 0; i < n; ++i, p += kBytesPerRgbPixel) grey[i] = *p;
}

void QelCbYCrY2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    const size_t n = pixel_count(width, height);
    for (size_t i = 0; i < n; ++i) grey[i] = frame[2 * i + 1];
}

void QelYUV420P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    copy_luma_plane(frame, width, height, grey);
}

void QelYUV420SP2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    copy_luma_plane(frame, width, height, grey);
}

void QelYUV422P2Gry(unsigned char* frame, int width, int height, unsigned char* grey) {
    copy_luma_plane(frame, width, height, grey);
}

bool QelCbYCrY2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width)) return false;
    camera_to_bgr(cbycry_planes<const unsigned char>(frame, width, height), width, height, rgb);
    return true;
}

bool QelYUV420P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr(yuv420p_planes<const unsigned char>(frame, width, height), width, height, rgb);
    return true;
}

bool QelYUV420SP2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    if (is_odd(width) || is_odd(height)) return false;
    camera_to_bgr(yuv420sp_planes<const unsigned char>(frame, width, height), width, height, rgb);
    return true;
}

bool QelYUV422P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb) {
    // An odd height is accepted here though QelRGB2YUV422P refuses it: intended.
    if (is_odd(width)) return false;
    camera_to_bgr(yuv422p_planes<const unsigned char>(frame, width, height), width, height, rgb);
    return true;
}

bool QelRGB2CbYCrY(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width)) return false;
    bgr_to_camera(rgb, width, height, cbycry_planes(frame, width, height));
    return true;
}

bool QelRGB2YUV420P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera(rgb, width, height, yuv420p_planes(frame, width, height));
    return true;
}

bool QelRGB2YUV420SP(unsigned char* rgb, int width, int height, unsigned char* frame) {
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera(rgb, width, height, yuv420sp_planes(frame, width, height));
    return true;
}

bool QelRGB2YUV422P(unsigned char* rgb, int width, int height, unsigned char* frame) {
    // Stricter than QelYUV422P2RGB, which accepts an odd height: intended.
    if (is_odd(width) || is_odd(height)) return false;
    bgr_to_camera(rgb, width, height, yuv422p_planes(frame, width, height));
    return true;
}
