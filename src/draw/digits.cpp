// Digits from the library's own ten-glyph table, at natural size with a transparent (grey) or
// black (RGB) background, and doubled with a painted background.
#include "qel/draw.h"

#include "draw/glyph.h"
#include "draw/raster.h"

#include <algorithm>
#include <cstdint>

namespace {

using qel::draw::BgrPen;
using qel::draw::GreyPen;

constexpr int kGlyphRows = 9;
constexpr int kGlyphCols = 8;

// The glyphs of '0' .. '9': one byte a row, the most significant bit the leftmost pixel. Strokes
// are two pixels wide in columns 1 .. 6, so neighbouring digits keep a gap even with spacing 0.
constexpr unsigned char kDigitGlyphs[10][kGlyphRows] = {
    {0b00111100,  // '0'
     0b01100110,
     0b01100110,
     0b01100110,
     0b01100110,
     0b01100110,
     0b01100110,
     0b01100110,
     0b00111100},
    {0b00011000,  // '1'
     0b00111000,
     0b01111000,
     0b00011000,
     0b00011000,
     0b00011000,
     0b00011000,
     0b00011000,
     0b01111110},
    {0b00111100,  // '2'
     0b01100110,
     0b00000110,
     0b00000110,
     0b00001100,
     0b00011000,
     0b00110000,
     0b01100000,
     0b01111110},
    {0b00111100,  // '3'
     0b01100110,
     0b00000110,
     0b00000110,
     0b00011100,
     0b00000110,
     0b00000110,
     0b01100110,
     0b00111100},
    {0b00001100,  // '4'
     0b00011100,
     0b00111100,
     0b01101100,
     0b01101100,
     0b01111110,
     0b00001100,
     0b00001100,
     0b00001100},
    {0b01111110,  // '5'
     0b01100000,
     0b01100000,
     0b01111100,
     0b00000110,
     0b00000110,
     0b00000110,
     0b01100110,
     0b00111100},
    {0b00011100,  // '6'
     0b00110000,
     0b01100000,
     0b01111100,
     0b01100110,
     0b01100110,
     0b01100110,
     0b01100110,
     0b00111100},
    {0b01111110,  // '7'
     0b00000110,
     0b00000110,
     0b00001100,
     0b00001100,
     0b00011000,
     0b00011000,
     0b00011000,
     0b00011000},
    {0b00111100,  // '8'
     0b01100110,
     0b01100110,
     0b01100110,
     0b00111100,
     0b01100110,
     0b01100110,
     0b01100110,
     0b00111100},
    {0b00111100,  // '9'
     0b01100110,
     0b01100110,
     0b01100110,
     0b00111110,
     0b00000110,
     0b00000110,
     0b00001100,
     0b00111000},
};

// Where a digit text may be drawn: the pen must not start, or move on, past these.
struct DigitLimits {
    int advance;    // pen step per digit, before the spacing
    int64_t lastX;  // the pen stops once x > lastX
    int64_t lastY;  // nothing is drawn when y > lastY
};

// The pen walk all four digit functions share; paint(glyph, x, y) draws one digit.
template <class Paint>
int write_digits(const char* text, int x, int y, int spacing, const DigitLimits& limits, Paint paint) {
    x = std::max(x, 0);
    y = std::max(y, 0);
    if (x > limits.lastX || y > limits.lastY || text == nullptr) return x;
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c < '0' || *c > '9') continue;  // other characters take no room
        paint(kDigitGlyphs[*c - '0'], x, y);
        x = qel::draw::narrow_coordinate(int64_t{x} + limits.advance + spacing);
        if (x > limits.lastX) break;
    }
    return x;
}

// Natural size: glyph pixel (c, r) at (x + c, y + r). Glyphs are cut off at the bottom row. The
// pen needs 9 columns although a glyph is 8 wide.
DigitLimits natural_limits(int width, int height, int lastRowMargin) {
    return {kGlyphCols, int64_t{width} - 9, int64_t{height} - lastRowMargin};
}

// Doubled: glyph pixel (c, r) covers columns x + 2c, x + 2c + 1 and rows y + 2r, y + 2r + 1. A digit
// paints 16 x 18 pixels, but the limits keep room for 17 columns and 21 rows.
DigitLimits doubled_limits(int width, int height) { return {2 * kGlyphCols, int64_t{width} - 17, int64_t{height} - 21}; }

template <class Pen>
int digits(int width, int height, int x, int y, int spacing, const DigitLimits& limits,
           int scale, const Pen& ink, const Pen* paper, const char* text) {
    return write_digits(text, x, y, spacing, limits, [&](const unsigned char* glyph, int gx, int gy) {
        qel::draw::draw_glyph(ink, paper, width, height, gx, gy, kGlyphRows, kGlyphCols, scale,
                              [glyph](int r, int c) { return ((glyph[r] >> (kGlyphCols - 1 - c)) & 1) != 0; });
    });
}

}  // namespace

int QelSetNumberString2GryImg(unsigned char* img, int width, int height, int x, int y, int spacing, int grey,
                              char* text) {
    const GreyPen ink(img, width, grey);
    const GreyPen* transparent = nullptr;
    return digits(width, height, x, y, spacing, natural_limits(width, height, 1), 1, ink, transparent, text);
}

int QelSetNumberString2RGBImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                              unsigned char c0, unsigned char c1, unsigned char c2, char* text) {
    // c0, c1, c2 go to bytes 0, 1, 2 of the pixel as they come: c0 is the blue byte, unlike the
    // red-first colours of every other drawing function. The background is painted black.
    const BgrPen ink(img, width, c2, c1, c0);
    const BgrPen black(img, width, 0, 0, 0);
    // The RGB form refuses to start in the bottom ten rows, where the grey form only needs y inside.
    return digits(width, height, x, y, spacing, natural_limits(width, height, 11), 1, ink, &black, text);
}

int QelSetNumberString20x16GryImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                                  int background, int foreground, char* text) {
    const GreyPen ink(img, width, foreground), paper(img, width, background);
    return digits(width, height, x, y, spacing, doubled_limits(width, height), 2, ink, &paper, text);
}

int QelSetNumberString20x16RGBImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                                  int backgroundR, int backgroundG, int backgroundB, int foregroundR, int foregroundG,
                                  int foregroundB, char* text) {
    const BgrPen ink(img, width, foregroundR, foregroundG, foregroundB);
    const BgrPen paper(img, width, backgroundR, backgroundG, backgroundB);
    return digits(width, height, x, y, spacing, doubled_limits(width, height), 2, ink, &paper, text);
}
