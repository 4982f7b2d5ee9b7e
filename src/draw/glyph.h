// What the digit and font-text functions share: placing a one-bit glyph into an image, scaled by
// whole pixels, with everything outside the image skipped.
#ifndef QEL_SRC_DRAW_GLYPH_H
#define QEL_SRC_DRAW_GLYPH_H

#include "draw/raster.h"

#include <cstdint>

namespace qel::draw {

// Writes pixel (x, y) when it lies inside the image. Pen positions come from caller coordinates
// and spacings, so they may be far outside (or negative) and are taken in 64 bits.
template <class Pen>
void put_inside(const Pen& pen, int width, int height, int64_t x, int64_t y) {
    if (x >= 0 && x < width && y >= 0 && y < height) pen.put(static_cast<int>(x), static_cast<int>(y));
}

// A glyph of rows x cols pixels with its top-left corner at (x, y); bit(r, c) tells whether glyph
// pixel (c, r) is set. Every glyph pixel covers a scale x scale block. Set pixels are written
// with `ink`; clear ones with `*paper`, or left unchanged when paper is null.
template <class Pen, class Bit>
void draw_glyph(const Pen& ink, const Pen* paper, int width, int height, int64_t x, int64_t y, int rows,
                int cols, int scale, Bit bit) {
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) {
            const Pen* pen = bit(r, c) ? &ink : paper;
            if (pen == nullptr) continue;
            for (int dy = 0; dy < scale; ++dy)
                for (int dx = 0; dx < scale; ++dx)
                    put_inside(*pen, width, height, x + int64_t{scale} * c + dx, y + int64_t{scale} * r + dy);
        }
}

}  // namespace qel::draw

#endif
