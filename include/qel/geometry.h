// Qel — geometric transforms: rotation, quarter turns, flips, shifts and pasting; resizing;
// projections.
#ifndef QEL_GEOMETRY_H
#define QEL_GEOMETRY_H

#include "qel/base.h"

// ==== Rotation, flipping and shifting ====

// ==== Resizing ====

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
