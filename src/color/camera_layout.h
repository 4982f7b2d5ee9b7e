// Where a camera frame keeps each pixel's Y, U (Cb) and V (Cr), for the four camera formats. This is
// the one description of the formats: the conversions to RGB and the rectangle copies read through
// it, the conversions from RGB write through it.
//
// The formats differ only in where chroma lies and how many pixels share it. A format's layout
// hands out row(y): pointers to the row's luma and chroma plus compile-time steps. Pixel x of the
// row has its Y at luma[x * LumaStep] and shares the U and V of its horizontal pair x / 2, at
// cb/cr[(x / 2) * ChromaStep]. In the 4:2:0 formats two rows share one chroma row as well
// (ChromaRowShift 1), which row() settles.
//
// Byte is `const unsigned char` for reading a frame and `unsigned char` for writing one; the
// layout functions take it from the pointer they are given.
#ifndef QEL_SRC_COLOR_CAMERA_LAYOUT_H
#define QEL_SRC_COLOR_CAMERA_LAYOUT_H

#include <cstddef>

namespace qel {

template <class Byte, int LumaStep, int ChromaStep>
struct CameraRow {
    static constexpr int kLumaStep = LumaStep;

    Byte* luma;
    Byte* cb;
    Byte* cr;

    // The Y sample of pixel x, and the U and V samples of pixel pair `pair` (pixels 2 pair, 2 pair + 1).
    Byte& luma_at(int x) const { return luma[static_cast<std::ptrdiff_t>(x) * LumaStep]; }
    Byte& cb_at(int pair) const { return cb[static_cast<std::ptrdiff_t>(pair) * ChromaStep]; }
    Byte& cr_at(int pair) const { return cr[static_cast<std::ptrdiff_t>(pair) * ChromaStep]; }

    // Y, U and V of pixel x (U and V as stored, offset by 128).
    int y(int x) const { return luma_at(x); }
    int u(int x) const { return cb_at(x >> 1); }
    int v(int x) const { return cr_at(x >> 1); }
};

template <class Byte, int LumaStep, int ChromaStep, int ChromaRowShift>
struct CameraLayout {
    using Row = CameraRow<Byte, LumaStep, ChromaStep>;
    // 1 when two rows share a chroma row (4:2:0), 0 when every row has its own.
    static constexpr int kChromaRowShift = ChromaRowShift;

    Byte* luma;  // row 0's first Y sample
    std::ptrdiff_t lumaRowBytes;
    Byte* cb;  // chroma row 0's first U sample
    Byte* cr;  // chroma row 0's first V sample
    std::ptrdiff_t chromaRowBytes;

    Row row(int y) const {
        const std::ptrdiff_t chroma = static_cast<std::ptrdiff_t>(y >> ChromaRowShift) * chromaRowBytes;
        return {luma + static_cast<std::ptrdiff_t>(y) * lumaRowBytes, cb + chroma, cr + chroma};
    }
};

inline std::ptrdiff_t plane_bytes(int rows, int rowBytes) { return static_cast<std::ptrdiff_t>(rows) * rowBytes; }

// YUV 4:2:0 planar: Y plane, U plane of (width/2) x (height/2), V plane of the same size.
struct Yuv420P {
    template <class Byte>
    static CameraLayout<Byte, 1, 1, 1> layout(Byte* frame, int width, int height) {
        Byte* u = frame + plane_bytes(height, width);
        return {frame, width, u, u + plane_bytes(height / 2, width / 2), width / 2};
    }
};

// YUV 4:2:0 semi-planar: Y plane, then (width/2) x (height/2) interleaved pairs U, V.
struct Yuv420SP {
    template <class Byte>
    static CameraLayout<Byte, 1, 2, 1> layout(Byte* frame, int width, int height) {
        Byte* uv = frame + plane_bytes(height, width);
        return {frame, width, uv, uv + 1, 2 * (width / 2)};
    }
};

// YUV 4:2:2 planar: Y plane, U plane of (width/2) x height, V plane of the same size.
struct Yuv422P {
    template <class Byte>
    static CameraLayout<Byte, 1, 1, 0> layout(Byte* frame, int width, int height) {
        Byte* u = frame + plane_bytes(height, width);
        return {frame, width, u, u + plane_bytes(height, width / 2), width / 2};
    }
};

// Packed CbYCrY: each horizontal pixel pair is the 4 bytes Cb, Y0, Cr, Y1.
struct CbYCrY {
    static constexpr int kBytesPerPixel = 2;
    template <class Byte>
    static CameraLayout<Byte, 2, 4, 0> layout(Byte* frame, int width, int /*height*/) {
        const std::ptrdiff_t rowBytes = static_cast<std::ptrdiff_t>(width) * kBytesPerPixel;
        return {frame + 1, rowBytes, frame, frame + 2, rowBytes};
    }
};

}  // namespace qel

#endif
