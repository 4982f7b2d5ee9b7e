// Qel — drawing: marks, lines, arrows, crosses, rectangles, circles and polygons.
#ifndef QEL_DRAW_H
#define QEL_DRAW_H

#include "qel/base.h"

// ==== Drawing primitives ====
// Every function draws into a caller's image and never writes outside it: points and ranges are
// clamped or skipped at the border, each function in its own way as documented. Grey values and
// colour components are stored as their low byte. RGB functions take red, green, blue and store
// them blue, green, red. An image with a width or height of zero or less is left untouched.
// Lines given by an equation use doubles and truncate toward zero (rounding is written as +0.5
// and truncation, so negative values round the other way).

// ---- Lines between two points ----

/// Line from (x1, y1) to (x2, y2). End points outside the image are moved to the nearest border
/// point (clamped, not clipped). Vertical and horizontal lines fill their column or row between
/// the ends. Any other line is walked column by column in single precision, y = truncate(k·x + b)
/// with k = (y2 − y1)/(x2 − x1) and b = y2 − k·x2, each column filled from the previous row to the
/// new one; the column of the left end itself is not written, so (0, 0)–(3, 3) writes (1, 1),
/// (2, 2) and (3, 3) only.
QEL_API void QelGryLine(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int grey);

/// QelGryLine on an RGB image.
QEL_API void QelRGBLine(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int R, int G,
                        int B);

// ---- Lines given by an equation ----

/// Line a·x + b·y + c = 0 across the image. If |b| > |a|, for every column y = truncate(−(a·x + c)/b
/// + 0.5), set when inside; otherwise for every row x = truncate(−(b·y + c)/a + 0.5), set when
/// inside. a = b = 0 draws nothing.
QEL_API void QelDrawABCLineByColor(unsigned char* img, int width, int height, double a, double b, double c,
                                   int grey);

/// The same over columns xFrom..xTo only (when |b| > |a|) or rows yFrom..yTo only (otherwise);
/// the range used is ordered and clamped to the image first.
QEL_API void QelDrawABCLineByColor(unsigned char* img, int width, int height, int xFrom, int xTo, int yFrom,
                                   int yTo, double a, double b, double c, int grey);

/// As the 7-parameter QelDrawABCLineByColor, but each pixel hit is increased by 1, saturating at 255,
/// so crossing lines accumulate.
QEL_API void QelDrawABCLineByInc(unsigned char* img, int width, int height, double a, double b, double c);

/// KB line. flag 1: for every row x = truncate(k·y + b + 0.5); any other flag (0 by convention):
/// for every column y = truncate(k·x + b + 0.5); pixels outside the image are skipped.
QEL_API void QelDrawKBLine(unsigned char* img, int width, int height, int flag, double k, double b, int grey);

/// The KB line on an RGB image.
QEL_API void QelDrawKBLine(unsigned char* img, int width, int height, int flag, double k, double b, int R, int G,
                           int B);

/// Line x·cos(theta) + y·sin(theta) = rho, theta in degrees, origin (0, 0), pi 3.1415926. For
/// theta 45..125 inclusive, every column gets y = truncate((rho − x·cos)/sin); for any other theta
/// every row gets x = truncate((rho − y·sin)/cos); pixels outside the image are skipped.
QEL_API void QelDrawHoughLine(unsigned char* img, int width, int height, int rho, int theta, unsigned char grey);

/// Line through (x0, y0) at the given angle (degrees, 0 horizontal, y downward; not reduced
/// modulo anything). Angles 45..135 are walked by rows, x = truncate(y·t + x0 − y0·t) with
/// t = tan(90° − degrees), below (x0, y0) down to the last row and above it up to row 1; other
/// angles by columns, y = truncate(x·t + y0 − x0·t) with t = tan(degrees), up to the last column
/// and down to column 1. Row 0 (resp. column 0) and the pixel (x0, y0) are never drawn.
QEL_API void QelDrawDegreeLine(unsigned char* img, int width, int height, int x0, int y0, double degrees,
                               int grey);

// ---- Arrows ----
// The 7- and 9-parameter arrows have their tail at (x, y) and their tip length pixels away in
// the named direction: a two-pixel shaft (the second one column to the right for up and down,
// one row below for left and right) and a head from the tip back to the point half way, length/4
// to each side, doubled one pixel further in. Points outside the image are moved to its border.
// The 8-parameter arrows fill the box x1..x2, y1..y2: a base across the box, two sides running
// up to 10 pixels towards the tip, a bar 10 pixels wider than the box on each side (clamped to
// the image) and two head lines from the bar's ends to the tip at the middle of the far side.

/// Downward arrow, tip at (x, y + length).
QEL_API void QelDrawDownArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey);
/// Broad downward arrow: base (x1, y1)–(x2, y1), sides down to m = max(y1, y2 − 10), bar at row m
/// from max(x1 − 10, 0) to min(x2 + 10, width − 1), head lines meeting at ((x1 + x2)/2, y2).
QEL_API void QelDrawDownArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);
/// Downward arrow on an RGB image.
QEL_API void QelDrawDownArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G,
                              int B);

/// Upward arrow, tip at (x, y − length).
QEL_API void QelDrawUpArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey);
/// Broad upward arrow: the downward construction mirrored within the box (y → y1 + y2 − y): base
/// (x1, y2)–(x2, y2), sides up to m = min(y2, y1 + 10), bar at row m, head lines meeting at
/// ((x1 + x2)/2, y1).
QEL_API void QelDrawUpArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);
/// Upward arrow on an RGB image.
QEL_API void QelDrawUpArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G,
                            int B);

/// Leftward arrow, tip at (x − length, y).
QEL_API void QelDrawLeftArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey);
/// Broad leftward arrow: the rightward construction mirrored within the box (x → x1 + x2 − x):
/// base (x2, y1)–(x2, y2), sides left to m = min(x2, x1 + 10), bar in column m from
/// max(y1 − 10, 0) to min(y2 + 10, height − 1), head lines meeting at (x1, (y1 + y2)/2).
QEL_API void QelDrawLeftArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);
/// Leftward arrow on an RGB image.
QEL_API void QelDrawLeftArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G,
                              int B);

/// Rightward arrow, tip at (x + length, y).
QEL_API void QelDrawRightArrow(unsigned char* img, int width, int height, int x, int y, int length, int grey);
/// Broad rightward arrow: the downward construction with x and y exchanged: base (x1, y1)–(x1, y2),
/// sides right to m = max(x1, x2 − 10), bar in column m from max(y1 − 10, 0) to
/// min(y2 + 10, height − 1), head lines meeting at (x2, (y1 + y2)/2).
QEL_API void QelDrawRightArrow(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);
/// Rightward arrow on an RGB image.
QEL_API void QelDrawRightArrow(unsigned char* img, int width, int height, int x, int y, int length, int R, int G,
                               int B);

/// Line from (x1, y1) to (x2, y2) and a cross at (x2, y2) whose half size is
/// s = truncate(length + 1)/5 + 2 (length of the segment as given): column x2 over rows
/// max(y2 − s, 2)..min(y2 + s, height − 3) and row y2 over columns max(x2 − s, 2)..min(x2 + s,
/// width − 3). A cross bar whose column or row lies outside the image is not drawn.
QEL_API void QelGryImgDrawArrow(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2,
                                int grey);

/// RGB line from (x1, y1) to (x2, y2) and a cross three pixels thick at (x2, y2): columns
/// x2 − 1..x2 + 1 over rows max(y2 − size, 2)..min(y2 + size, height − 3) and rows y2 − 1..y2 + 1
/// over columns max(x2 − size, 2)..min(x2 + size, width − 3). Bars outside the image are skipped.
QEL_API void QelRGBImgDrawArrow(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2,
                                int size, int R, int G, int B);

// ---- Crosses ----

/// Cross centred at (x, y) clamped to 1..width − 2 and 1..height − 2: column x over rows
/// max(y − size, 2)..min(y + size, height − 3), row y over columns max(x − size, 2)..min(x + size,
/// width − 3). The outermost row and column on each side are never touched.
QEL_API void QelDrawGryCross(unsigned char* img, int width, int height, int x, int y, int size, unsigned char grey);

/// QelDrawGryCross in 0 at the four centres one pixel left of, above, right of and below (x, y),
/// then the cross itself in grey, so it stays visible on any background.
QEL_API void QelDrawGryCrossShadow(unsigned char* img, int width, int height, int x, int y, int size,
                                   unsigned char grey);

/// RGB cross: row x (the row index is taken from x, not y: kept as built) over columns
/// max(x − size/2, 0)..min(x + size/2, width − 1), and column x over rows max(y − size/2, 0)..
/// min(y + size/2, height − 1). A bar whose row or column is outside the image is not drawn.
QEL_API void QelDrawRGBCross(unsigned char* img, int width, int height, int x, int y, int size, int R, int G,
                             int B);

// ---- Rectangles ----

/// Outline of the rectangle with columns x1..x2 and rows y1..y2 (ends included). Each coordinate
/// is clamped into the image and each pair ordered first, so the outline is always drawn.
QEL_API void QelDrawGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);

/// QelDrawGryRect on an RGB image.
QEL_API void QelDrawRGBRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int R,
                            int G, int B);

/// Rectangle outline on an RGB image (isRGB) in R, G, B, or on a grey image in grey.
QEL_API void QelDrawRect(unsigned char* img, int width, int height, bool isRGB, int x1, int x2, int y1, int y2,
                         int R, int G, int B, int grey);

/// Filled rectangle, rows y1..y2 by columns x1..x2. Unlike the outlines, x1 and y1 are only raised
/// to 0 and x2, y2 only lowered to width − 1, height − 1, with no reordering: an inverted range
/// fills nothing.
QEL_API void QelFillGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);

/// QelFillGryRect on an RGB image.
QEL_API void QelFillRGBRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int R,
                            int G, int B);

/// On the outline of the rectangle, grey pixels equal to from become to. x1 and y1 are raised to 0
/// and x2, y2 lowered to width − 1, height − 1, without reordering; sides whose row or column
/// still lies outside the image are skipped.
QEL_API void QelChangeColorOnRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2,
                                  int from, int to);

// ---- Circles and polygons ----

/// Ellipse with half-axes rx (across) and ry (down) around (cx, cy), drawn as chords: for each
/// column x from cx − rx to cx, y = truncate(cy − (ry/rx)·sqrt(rx² − (x − cx)²)) (real division,
/// squares in 64 bits), and QelGryLine from the previous point to (x, y) and to its three mirror
/// images about cx and cy; the previous point starts at (cx − rx, cy). rx = 0 draws the column
/// cx from cy − ry to cy + ry; a negative rx draws nothing.
QEL_API void QelDrawCircle(unsigned char* img, int width, int height, int cx, int cy, int rx, int ry, int grey);

/// Closed polygon through the n points (xs[i] + dx, ys[i] + dy), by QelGryLine; nothing when
/// n < 2. With n = 2 the single line runs to (xs[1] + dx, ys[1] + dx): the second end's y is
/// shifted by dx, kept as built. Sums beyond the int range saturate.
QEL_API void QelDrawPolygon(unsigned char* img, int width, int height, int* xs, int* ys, int n, int dx, int dy,
                            int grey);

// ==== Text and digit rendering ====
// Digits come from a ten-glyph table built into the library (9 rows of 8 pixels each); other
// characters of a digit text are skipped without moving the pen. Font texts are strings of
// two-byte GB2312 codes, drawn from the 16 x 16 bitmap font "hzk16.dat" found beside the running
// program (the environment variable QEL_FONT_FILE, when set, names another file to use).
// Glyph pixels that fall outside the image are skipped; callers keep texts inside the image.
// Grey values and colour components are stored as their low byte.

/// Digits of `text` at (x, y), each glyph 8 x 9 pixels with set bits written in grey and clear
/// bits left as they are. x and y below 0 count as 0; nothing is drawn when x > width - 9 or
/// y > height - 1. Glyphs are cut off at the bottom row. After each digit the pen moves by
/// 8 + spacing and stops once x > width - 9. Returns the pen's final x.
QEL_API int QelSetNumberString2GryImg(unsigned char* img, int width, int height, int x, int y, int spacing, int grey,
                                      char* text);

/// QelSetNumberString2GryImg on an RGB image, refused when y > height - 11. A set bit writes c0, c1,
/// c2 to bytes 0, 1, 2 of the pixel (c0 lands in the blue byte, unlike the other drawing
/// functions); a clear bit writes 0, 0, 0, so the glyph's background is black.
QEL_API int QelSetNumberString2RGBImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                                      unsigned char c0, unsigned char c1, unsigned char c2, char* text);

/// Digits doubled: every glyph pixel becomes a 2 x 2 block, foreground where the bit is set and
/// background where it is clear, so each digit paints 16 x 18 pixels. x and y below 0 count as 0;
/// nothing is drawn when x > width - 17 or y > height - 21. The pen moves by 16 + spacing and stops
/// once x > width - 17. Returns the pen's final x.
QEL_API int QelSetNumberString20x16GryImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                                          int background, int foreground, char* text);

/// QelSetNumberString20x16GryImg on an RGB image, with the same limits; colours are given as red,
/// green, blue.
QEL_API int QelSetNumberString20x16RGBImg(unsigned char* img, int width, int height, int x, int y, int spacing,
                                          int backgroundR, int backgroundG, int backgroundB, int foregroundR,
                                          int foregroundG, int foregroundB, char* text);

/// Two-byte codes of `text` drawn as 16 x 16 font glyphs at (x, y), foreground on set bits and
/// background on clear ones. After each glyph x += 16 + spacing; when x > width - 17 the pen
/// returns to x = 0 and moves down 16 rows, unless y + 16 >= height, which ends the text. Returns
/// false, drawing nothing, when y >= height - 16 or the font file cannot be opened.
QEL_API bool QelDrawChineseString16x16(unsigned char* img, int width, int height, int x, int y, int spacing,
                                       int background, int foreground, char* text);

/// QelDrawChineseString16x16 on an RGB image (colours as red, green, blue). It is refused already
/// when y >= height - 20, a larger margin than the grey form's.
QEL_API bool QelDrawChineseString16x16(unsigned char* img, int width, int height, int x, int y, int spacing,
                                       int backgroundR, int backgroundG, int backgroundB, int foregroundR,
                                       int foregroundG, int foregroundB, char* text);

/// Font glyphs doubled to 32 x 32, every glyph pixel a 2 x 2 block. Refused when y >= height - 32;
/// the pen moves by 32 + spacing, returns to x = 0 when x > width - 33 and moves down 32 rows
/// unless y + 32 >= height.
QEL_API bool QelDrawChineseString32x32(unsigned char* img, int width, int height, int x, int y, int spacing,
                                       int background, int foreground, char* text);

/// QelDrawChineseString32x32 on an RGB image, with the grey form's margin and pen rules.
QEL_API bool QelDrawChineseString32x32(unsigned char* img, int width, int height, int x, int y, int spacing,
                                       int backgroundR, int backgroundG, int backgroundB, int foregroundR,
                                       int foregroundG, int foregroundB, char* text);

/// Full-width form of an ASCII text: every byte below 128 becomes 0xA3 followed by the byte + 128
/// ('0' becomes 0xA3 0xB0), bytes from 128 up are copied. `out` must hold twice the length of
/// `in` plus the terminating zero it receives.
QEL_API void QelChar2Wide(char* in, char* out);

/// Qel's own mark, 35 x 20 pixels drawn as 82 horizontal runs with its top-left corner at (x, y):
/// in grey 250, or on an RGB image (isRGB) in red 250 (blue 0, green 0). A run that does not lie
/// wholly inside the image is skipped.
QEL_API void QelSetPrivateLogo(unsigned char* img, int width, int height, bool isRGB, int x, int y);

#endif  // QEL_DRAW_H
