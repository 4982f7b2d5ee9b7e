// Qel — geometric transforms: rotation, quarter turns, flips, shifts and pasting; resizing;
// projections.
#ifndef QEL_GEOMETRY_H
#define QEL_GEOMETRY_H

#include "qel/base.h"

// ==== Rotation, flipping and shifting ====
// Geometric copies of grey, RGB (3 bytes a pixel, B G R) and 32-bit (4 bytes a pixel) images.
// Angles are in degrees; x runs right and y down (row 0 on top). Sines and cosines are scaled to
// fixed point and truncated toward zero, and every fixed-point position is split by flooring; the
// approximation of pi each function uses decides those integers and so its results. Nothing is
// ever read or written outside the buffers named: where a transform asks for a source pixel
// outside the image (and its weight is not 0), the nearest pixel inside is taken instead. Unless
// stated otherwise `dst` must not overlap `src`.

// ---- Rotation ----

/// Rotates a grey image about its top-left pixel into a new image just large enough for the four
/// rotated corners. With pi as 3.1415926, c = trunc(1024·cos θ) and s = trunc(1024·sin θ); corners
/// map by ((x·c − y·s) >> 10, (x·s + y·c) >> 10), and each output pixel (X, Y) of that box takes
/// the source pixel at the floor of the inverse rotation (by −θ, again in 1024ths), or 0 when that
/// lies outside. A positive angle turns the picture clockwise as displayed (at 90° the top row
/// becomes the right column). The factors are truncated, so 90° is not an exact quarter turn
/// (c = 0, s = 1023: 100 × 50 gives 50 × 99). The size goes to newWidth × newHeight; the buffer is
/// allocated with new[] and the caller releases it with delete[]. Returns null (sizes still set)
/// when it cannot be allocated; a size that does not fit an int gives null with both sizes 0.
QEL_API unsigned char* QelRotateImgByCCS(unsigned char* src, int width, int height, double degrees, int* newWidth,
                                         int* newHeight);

/// Extracts a rotated rectangle by bilinear sampling in 16.16 fixed point (pi as 3.1415): output
/// pixel (i, j) samples the source at (x0 + i·cos − j·sin, y0 + i·sin + j·cos), so (x0, y0) is the
/// source of output (0, 0) and output rows run along (cos, sin). Each interpolation truncates.
/// The caller keeps the rectangle plus one pixel inside the source; should it not, samples whose
/// 2 × 2 neighbourhood leaves the image use the nearest pixels inside. An empty source writes nothing.
QEL_API void QelCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                      unsigned char* dst, int dstWidth, int dstHeight);

/// As above, but an output pixel whose 2 × 2 neighbourhood (columns ix, ix+1 and rows iy, iy+1,
/// whatever the weights) is not wholly inside the source becomes fill (its low byte). Returns true
/// when at least one pixel was filled.
QEL_API bool QelCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                      int fill, unsigned char* dst, int dstWidth, int dstHeight);

/// QelCopyRectFromRotateCCS on RGB images, each byte of a pixel interpolated separately.
QEL_API void QelRgbCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                         unsigned char* dst, int dstWidth, int dstHeight);

/// The fill form on RGB images: an outside pixel gets fill in all three bytes.
QEL_API bool QelRgbCopyRectFromRotateCCS(unsigned char* src, int width, int height, int x0, int y0, double degrees,
                                         int fill, unsigned char* dst, int dstWidth, int dstHeight);

/// Extracts a rotated and sheared rectangle with nearest (floored) samples in 16.16 fixed point.
/// The rotation is θ = degrees, or degrees − 180 above 90 (pi as 3.1415); the shear is
/// t = tan((β − 90)·3.14159/180) with β = (degrees > 90 ? 180 − degrees : −degrees) + shearDegrees,
/// so shearDegrees = degrees + 90 (for degrees ≤ 90) means no shear. Output row j takes the source
/// line of row j from position start = ((j·trunc(−4096·t)) >> 12) + 1 onward (the + 1 belongs to
/// the design). Samples outside the source take the nearest pixel inside; an empty source writes nothing.
QEL_API void QelCopyRectFromRotateAndShiftFast(unsigned char* src, int width, int height, int x0, int y0,
                                               double degrees, double shearDegrees, unsigned char* dst,
                                               int dstWidth, int dstHeight);

// ---- Quarter turns, flips and the half turn ----

/// Exact counter-clockwise quarter turn (as displayed) of a grey or RGB image: source (x, y) goes
/// to dst column y, row width−1−x. dst is height wide and width high.
QEL_API void QelImgRotate90DegreeCCS(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst);

/// Exact clockwise quarter turn: source (x, y) goes to dst column height−1−y, row x.
QEL_API void QelImgRotate90DegreeCS(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst);

/// Quarter turn of a 4-bytes-a-pixel image (all four bytes moved): clockwise when clockwise is
/// true, counter-clockwise otherwise.
QEL_API void QelRGB32Rotate90Degree(unsigned char* src, int width, int height, bool clockwise, unsigned char* dst);

/// Mirrors each row of a grey image in place.
QEL_API void QelFlipHorizontal(unsigned char* img, int width, int height);

/// Upside down into dst: dst row height−1−y := src row y (grey or RGB).
QEL_API void QelFlipVertical(unsigned char* src, int width, int height, bool isRGB, unsigned char* dst);

/// Upside down in place: rows swapped pairwise from the outside in.
QEL_API void QelFlipVertical(unsigned char* img, int width, int height, bool isRGB);

/// Half turn of a grey image: dst[width·height−1−k] := src[k].
QEL_API void QelReverseImg(unsigned char* src, int width, int height, unsigned char* dst);

// ---- Shifts and pasting ----

/// Translates a grey or RGB image by (dx, dy) into dst, treating it as one strip of bytes. First
/// the rows move down by dy (up when negative); the |dy| rows this vacates in dst are not written
/// and keep what dst held. Then the whole strip in dst, those kept rows included, moves |dx|
/// pixels toward its end (dx > 0) or start, and the first (dx > 0) or last |dx| pixels of every
/// row become 0. With |dy| ≥ height no row is copied; with |dx| ≥ width every row becomes 0.
/// src may be dst.
QEL_API void QelImageShift(unsigned char* src, int width, int height, bool isRGB, int dx, int dy,
                           unsigned char* dst);

/// Horizontal shear with nearest samples: with off = trunc(4096·shear)·y, row y writes columns
/// (off >> 12) + 2 .. width−1 when off < 1, else 0 .. width − (off >> 12) − 2 (the 2 is kept on
/// purpose), with dst(x, y) := src(x + (off >> 12), y). Other columns are not written, nor are
/// columns outside the row; a source column outside the row reads the nearest pixel of the row.
QEL_API void QelShiftXPerRowFast(unsigned char* src, int width, int height, double shear, unsigned char* dst);

/// As QelShiftXPerRowFast, but linear between source columns p >> 12 and (p >> 12) + 1 with
/// weights in 4096ths, p = 4096·x + off.
QEL_API void QelShiftXPerRowFine(unsigned char* src, int width, int height, double shear, unsigned char* dst);

/// Aligns img2 onto img1. Within rect shrunk by maxDx columns and maxDy rows from the image's
/// sides, tries every shift dx = −maxDx .. maxDx (outer), dy = −maxDy .. maxDy (inner) and keeps the
/// first with the smallest QelImgDifferenceInRect between img1's window and img2's shifted window.
/// dst := img1, then img2 shifted back by (−bestDx, −bestDy) with QelImageShift, so the rows it
/// vacates keep img1's pixels (moved horizontally with the strip) and the columns it vacates
/// become 0. Returns the smallest difference; it starts at window pixels · 255 (· 765 for RGB,
/// saturating at INT_MAX), which is returned when no shift is tried. An empty window tries no
/// shift and returns 0 with the shift (0, 0).
QEL_API int QelShiftImg2BasedImg1(unsigned char* img1, unsigned char* img2, unsigned char* dst, int width,
                                  int height, bool isRGB, int maxDx, int maxDy, tagRECT rect, int* bestDx,
                                  int* bestDy);

/// Copies a small grey image into a big one with its top-left pixel at (x0, y0); the parts beyond
/// the big image's right or bottom are dropped, and so (not moving the rest) are those left of or
/// above it.
QEL_API void QelPasteGryImg2ResImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                                   int bigWidth, int bigHeight, int x0, int y0);

/// QelPasteGryImg2ResImg into an RGB image: each grey value goes to all three bytes.
QEL_API void QelPasteGryImg2RGBImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                                   int bigWidth, int bigHeight, int x0, int y0);

/// QelPasteGryImg2ResImg with both images RGB.
QEL_API void QelPasteRGBImg2ResImg(unsigned char* smallImg, int smallWidth, int smallHeight, unsigned char* bigImg,
                                   int bigWidth, int bigHeight, int x0, int y0);
// (end of Rotation, flipping and shifting)

// ==== Resizing ====
// Scaling of grey images (and of RGB images where named) into caller buffers large enough for the
// result. Sizes derived by division use integer division; the remainder rows and columns of the
// source are ignored. An image or a result with a width or height of zero or less is not touched.

/// Bilinear resampling of a width × height grey image to dstWidth × dstHeight in 16.16 fixed
/// point: steps ((width−1) << 16) / (dstWidth−1) and likewise for rows, corner pixels map onto
/// corner pixels, and every interpolation truncates (no rounding term). The last source row and
/// column are interpolated along the other direction only. A destination size of 1 samples
/// source column (row) 0. The same size copies the image.
QEL_API void QelGryImgBilinearInterpolattionFast(unsigned char* src, int width, int height, unsigned char* dst,
                                                 int dstWidth, int dstHeight);

/// Bilinear resampling in double precision: steps (width−1)/(dstWidth−1) and (height−1)/(dstHeight−1),
/// out = trunc((iy+1−v)·top + (v−iy)·bottom) of the row interpolations a·(ix+1−u) + b·(u−ix). Rows
/// landing on the last source row use that row alone. A destination size of 1 samples column (row) 0.
QEL_API void QelGryImgBilinearInterpolattionStd(unsigned char* src, int width, int height, unsigned char* dst,
                                                int dstWidth, int dstHeight);

/// QelGryImgBilinearInterpolattionFast on each of the three bytes of an RGB pixel.
QEL_API void QelRgbImgBilinearInterpolattionFast(unsigned char* src, int width, int height, unsigned char* dst,
                                                 int dstWidth, int dstHeight);

/// Halves both sizes: each output pixel is (sum of a 2 × 2 block) >> 2; dst is (width/2) × (height/2).
QEL_API void QelShrinkGryImg2x2ByAvr(unsigned char* src, int width, int height, unsigned char* dst);

/// Halves both sizes by taking the top-left pixel of each 2 × 2 block; the result's size
/// (width/2, height/2) goes to dstWidth and dstHeight.
QEL_API void QelShrinkGryImg2x2ByExtract(unsigned char* src, int width, int height, unsigned char* dst,
                                         int* dstWidth, int* dstHeight);

/// Quarters both sizes: each output pixel is (sum of the 16 pixels of a 4 × 4 block) >> 4; the
/// result's size (width/4, height/4) goes to dstWidth and dstHeight.
QEL_API void QelShrinkGryImg4x4ByAvr(unsigned char* src, int width, int height, unsigned char* dst,
                                     int* dstWidth, int* dstHeight);

/// Quarters both sizes by taking the top-left pixel of each 4 × 4 block; the result's size
/// (width/4, height/4) goes to dstWidth and dstHeight.
QEL_API void QelShrinkGryImg4x4ByExtract(unsigned char* src, int width, int height, unsigned char* dst,
                                         int* dstWidth, int* dstHeight);

/// Picks every stepX-th column of every stepY-th row: dst is (width/stepX) × (height/stepY) and
/// its pixel (i, j) is src(i·stepX, j·stepY). Steps below 1 write nothing.
QEL_API void QelShrinkGryImgByExtract(unsigned char* src, int width, int height, int stepX, int stepY,
                                      unsigned char* dst);

/// Median of each block, through the 256-bin histogram median QelGetMedianInHistogram. Blocks are
/// width/dstWidth wide, or width/(dstWidth−1) when the first does not cover the image (and likewise
/// in height); the last blocks are clipped, and a block that lies wholly outside the image is
/// empty and gives 0.
QEL_API void QelShrinkGryImgByMedian(unsigned char* src, int width, int height, unsigned char* dst, int dstWidth,
                                     int dstHeight);

/// Truncated mean (integer division by the pixel count) of each stepX × stepY block, separately
/// for B, G and R when isRGB; dst is (width/stepX) × (height/stepY) pixels. Steps below 1 write nothing.
QEL_API void QelShrinkImgByAvr(unsigned char* src, bool isRGB, int width, int height, int stepX, int stepY,
                               unsigned char* dst);

/// Doubles both sizes: dst is (2·width) × (2·height). Even output pixels copy the source, odd ones
/// between them are (left + right) >> 1 and the last column repeats the last source pixel; odd
/// rows are (row above + row below) >> 1 pixel by pixel, and the last row copies the one above it.
QEL_API void QelZoomGryImg2x2(unsigned char* src, int width, int height, unsigned char* dst);

/// QelZoomGryImg2x2 on each of the three bytes of an RGB pixel.
QEL_API void QelZoomRGBImg2x2(unsigned char* src, int width, int height, unsigned char* dst);

/// Adjusts a rectangle in place. When its width right−left+1 is not a multiple of 4 it becomes
/// min(width, maxWidth) rounded down to a multiple of 4 around the centre c = (left+right) >> 1:
/// left = c − w/2, right = c + w/2 − 1 when 2c ≥ imageWidth, else left = c − w/2 + 1, right = c + w/2.
/// When its height is at least maxHeight − 2 it becomes (maxHeight − 2)/2 either side of
/// c = (top+bottom)/2. `spare` is not read.
QEL_API void QelRectResizeX4(int imageWidth, int spare, int maxWidth, int maxHeight, int* left, int* right,
                             int* top, int* bottom);
// (end of Resizing)

// ==== Projections ====
// Profiles are caller-owned int arrays: one entry per column (x) or per row (y). Rectangles x0..x1,
// y0..y1 include both ends and must lie inside the image.

/// prjX[x] := sum of column x, prjY[y] := sum of row y (width and height entries).
QEL_API void QelGryImgPrjXY(unsigned char* img, int width, int height, int* prjX, int* prjY);

/// Clears prjX[0 .. width − 1] and prjY[0 .. height − 1], then sums the rectangle's pixels per
/// column into prjX[x0 .. x1] and per row into prjY[y0 .. y1].
QEL_API void QelGryImgPrjXYInRect(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1,
                                  int* prjX, int* prjY);

/// Counts the rectangle's non-zero pixels per column into prjX[x0 .. x1] and per row into
/// prjY[y0 .. y1]; only those entries are cleared and written.
QEL_API void QelBinImgPrjXYInRect(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1,
                                  int* prjX, int* prjY);

/// Per-column sums of each channel of a BGR image: prjB from byte 0, prjG from byte 1, prjR from
/// byte 2 of each pixel (width entries each).
QEL_API void QelRGBImgPrj2X(unsigned char* rgb, int width, int height, int* prjR, int* prjG, int* prjB);

/// One weighted profile of a BGR image: prj[x] := (column sum of B + G + 2·R) >> 2.
QEL_API void QelRGBImgPrj2X(unsigned char* rgb, int width, int height, int* prj);

/// Draws prj[0 .. n − 1] as vertical bars with grey value colour (its low byte), one per column for
/// columns 0 .. min(n, width) − 1, from the bottom row up. Bars are scaled so that the minimum
/// (over all n entries) gives 0 and the maximum about height · (hi − lo) / (hi − lo + 2); a bar never
/// reaches row 0. Only bar pixels are written.
QEL_API void QelDrawPrjX(unsigned char* img, int width, int height, int* prj, int n, int colour);

/// The same for columns x0 .. x1 only, scaled on the minimum and maximum of prj[x0 .. x1]; columns
/// outside the image are not drawn.
QEL_API void QelDrawPrjX(unsigned char* img, int width, int height, int* prj, int x0, int x1, int colour);

/// As QelDrawPrjX with the minimum fixed at 0.
QEL_API void QelDrawPrjXMinV0(unsigned char* img, int width, int height, int* prj, int n, int colour);

/// Draws prj[0 .. min(height, n) − 1] as horizontal bars, one per row, from column 0 rightward,
/// scaled on the minimum and maximum of those entries; a bar never reaches the last column.
QEL_API void QelDrawPrjY(unsigned char* img, int width, int height, int* prj, int n, int colour);

/// As QelDrawPrjY with the minimum fixed at 0.
QEL_API void QelDrawPrjYMinV0(unsigned char* img, int width, int height, int* prj, int n, int colour);

#endif  // QEL_GEOMETRY_H
