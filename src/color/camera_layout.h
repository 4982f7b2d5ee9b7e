// Where a camera frame keeps each pixel's Y, U (Cb) and V (Cr), for the four camera formats, and
// the one sampling loop that every rectangle copy and reduced copy of a camera frame runs.
//
// The formats differ only in where chroma lies and how many pixels share it, so each format is a
// small layout class whose row(y) hands out a CameraRow: pointers to the row's luma and chroma plus
// compile-time steps. Pixel x of the row then has Y at luma[x * LumaStep] and shares the chroma of
// its horizontal pair, at cb/cr[(x / 2) * ChromaStep]. Vertical sharing (4:2:0) is settled in row().
#ifndef QEL_SRC_COLOR_CAMERA_LAYOUT_H
#define QEL_SRC_COLOR_CAMERA_LAYOUT_H

#include "color/yuv.h"

#include <cstddef>

namespace qel {

template <int LumaStep, int ChromaStep>
struct CameraRow {
    static constexpr int kLumaStep = LumaStep;

    const unsigned char* luma;
    const unsigned char* cb;
    const unsigned char* cr;

    int y(int x) const { return luma[static_cast<std::ptrdiff_t>(x) * LumaStep]; }
    int u(int x) const { return cb[static_cast<std::ptrdiff_t>(x >> 1) * ChromaStep]; }
    int v(int x) const { return cr[static_cast<std::ptrdiff_t>(x >> 1) * ChromaStep]; }
};

inline std::ptrdiff_t plane_offset(int row, int rowLength) { return static_cast<std::ptrdiff_t>(row) * rowLength; }

// YUV 4:2:0 planar: Y plane, U plane of (width/2) x (height/2), V plane of the same size.
class Yuv420PLayout {
public:
    using Row = CameraRow<1, 1>;
    Yuv420PLayout(const unsigned char* frame, int width, int height)
        : luma_(frame), width_(width), chromaWidth_(width / 2),
          u_(frame + plane_offset(height, width)),
          v_(u_ + plane_offset(height / 2, width / 2)) {}
    Row row(int y) const {
        const std::ptrdiff_t c = plane_offset(y >> 1, chromaWidth_);
        return {luma_ + plane_offset(y, width_), u_ + c, v_ + c};
    }

private:
    const unsigned char* luma_;
    int width_;
    int chromaWidth_;
    const unsigned char* u_;
    const unsigned char* v_;
};

// YUV 4:2:0 semi-planar: Y plane, then (width/2) x (height/2) interleaved pairs U, V.
class Yuv420SPLayout {
public:
    using Row = CameraRow<1, 2>;
    Yuv420SPLayout(const unsigned char* frame, int width, int height)
        : luma_(frame), width_(width), chromaRowBytes_(2 * (width / 2)),
          uv_(frame + plane_offset(height, width)) {}
    Row row(int y) const {
        const unsigned char* c = uv_ + plane_offset(y >> 1, chromaRowBytes_);
        return {luma_ + plane_offset(y, width_), c, c + 1};
    }
    // Start of the interleaved chroma (U, V pairs); its rows are chroma_row_bytes() long.
    const unsigned char* chroma() const { return uv_; }
    int chroma_row_bytes() const { return chromaRowBytes_; }

private:
    const unsigned char* luma_;
    int width_;
    int chromaRowBytes_;
    const unsigned char* uv_;
};

// YUV 4:2:2 planar: Y plane, U plane of (width/2) x height, V plane of the same size.
class Yuv422PLayout {
public:
    using Row = CameraRow<1, 1>;
    Yuv422PLayout(const unsigned char* frame, int width, int height)
        : luma_(frame), width_(width), chromaWidth_(width / 2),
          u_(frame + plane_offset(height, width)),
          v_(u_ + plane_offset(height, width / 2)) {}
    Row row(int y) const {
        const std::ptrdiff_t c = plane_offset(y, chromaWidth_);
        return {luma_ + plane_offset(y, width_), u_ + c, v_ + c};
    }

private:
    const unsigned char* luma_;
    int width_;
    int chromaWidth_;
    const unsigned char* u_;
    const unsigned char* v_;
};

// Packed CbYCrY: each horizontal pixel pair is the 4 bytes Cb, Y0, Cr, Y1.
class CbYCrYLayout {
public:
    using Row = CameraRow<2, 4>;
    static constexpr int kBytesPerPixel = 2;
    CbYCrYLayout(const unsigned char* frame, int width, int /*height*/) : frame_(frame), width_(width) {}
    Row row(int y) const {
        const unsigned char* r = frame_ + plane_offset(y, kBytesPerPixel * width_);
        return {r + 1, r, r + 2};
    }

private:
    const unsigned char* frame_;
    int width_;
};

// A rectangle x1..x2, y1..y2 with both ends included.
struct RectArea {
    int x1, x2, y1, y2;
    int width() const { return x2 - x1 + 1; }
    int height() const { return y2 - y1 + 1; }
    bool empty() const { return width() <= 0 || height() <= 0; }
};

// Which pixels of a rectangle a copy keeps: `cols` x `rows` pixels, `step` apart in both
// directions, starting at the rectangle's top-left corner.
struct Sampling {
    int step;
    int cols;
    int rows;

    static Sampling every_pixel(const RectArea& r) { return {1, r.width(), r.height()}; }
    // Whole 2 x 2 blocks only: an odd last column or row of the rectangle is dropped.
    static Sampling every_second(const RectArea& r) { return {2, r.width() / 2, r.height() / 2}; }
    // Pixels (x1 + 4i, y1 + 4j) up to (x2, y2).
    static Sampling every_fourth(const RectArea& r) { return {4, (r.width() + 3) / 4, (r.height() + 3) / 4}; }
};

// Writes the clamped B, G, R of a pixel (3 bytes).
struct PutBgr {
    template <class Row>
    int operator()(const Row& row, int x, unsigned char* out) const {
        store_bgr_from_yuv(row.y(x), row.u(x), row.v(x), out);
        return 3;
    }
};

// Writes only the clamped R of a pixel (1 byte); blue and green are not evaluated.
struct PutRed {
    template <class Row>
    int operator()(const Row& row, int x, unsigned char* out) const {
        *out = static_cast<unsigned char>(red_from_yuv(row.y(x), row.v(x)));
        return 1;
    }
};

// The loop behind every camera rectangle copy: for each kept pixel, put(row, x, out) writes its
// bytes and returns how many it wrote; outputs are packed row after row.
template <class Layout, class Put>
unsigned char* sample_rect(const Layout& frame, const RectArea& r, Sampling s, unsigned char* out, Put put) {
    if (s.cols <= 0 || s.rows <= 0) return out;
    for (int j = 0, y = r.y1; j < s.rows; ++j, y += s.step) {
        const typename Layout::Row row = frame.row(y);
        for (int i = 0, x = r.x1; i < s.cols; ++i, x += s.step) out += put(row, x, out);
    }
    return out;
}

}  // namespace qel

#endif
