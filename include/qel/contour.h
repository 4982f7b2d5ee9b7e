// Qel — contours: chain codes, the boundary tracer and the contour list; measures and point tests
// on chains; filling contours and selecting regions.
#ifndef QEL_CONTOUR_H
#define QEL_CONTOUR_H

#include "qel/base.h"

// ==== Contour tracing and chain codes ====

// ==== Chain-code measures and tests ====
// Measures and point tests on a chain: a start pixel (x0, y0) plus n direction codes, code i
// leading from point i to point i + 1 (the last code of a closed contour returns to the start).
// Only the chain is read, except by the functions that take an image, which read the pixels the
// chain passes over; those pixels must lie inside the image. Chain bytes are taken modulo 8. All
// functions are reentrant.

/// Trapezoid area and perimeter of a closed chain. Perimeter = even codes + √2 × odd codes,
/// rounded; area = |trapezoid sum| + 0.5 + perimeter / 2 (integer half), truncated, so it counts
/// the boundary pixels only half (a 2 × 2 square gives 3). An empty chain gives 0 and 0.
QEL_API void QelAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter);

/// Bounding box of a chain from its corners: the start point and every point after code i
/// (i = 0..n−2) where code i differs from code i + 1. Outputs left, right, top, bottom.
QEL_API void QelContourRect(int x0, int y0, unsigned char* chain, int n, int* left, int* right, int* top,
                            int* bottom);

/// Mean of the n points start, after code 0, …, after code n−2, each coordinate rounded (+0.5 and
/// truncation). With n ≤ 1 the start point.
QEL_API void QelContourCenter(int x0, int y0, unsigned char* chain, int n, int* centerX, int* centerY);

/// Number of points after codes 0..n−2 that lie on the row; the start point is not counted.
QEL_API int QelContourPosPoints(int x0, int y0, unsigned char* chain, int n, int row);

/// True when a point reached after one of the n codes is (x, y); the start point counts only as
/// the point after the closing code.
QEL_API bool QelIsPointOnContour(int x0, int y0, unsigned char* chain, int n, int x, int y);

/// True when a point reached after one of the n codes lies on the row.
QEL_API bool QelIsHorizontalLineIntersectContour(int y0, unsigned char* chain, int n, int row);

/// True when a point reached after one of the n codes lies on the column.
QEL_API bool QelIsVerticalLineIntersectContour(int x0, unsigned char* chain, int n, int column);

/// True when a point (x, y) reached after one of the n codes has columnPerRow[y] == x.
/// columnPerRow must have an entry for every row the chain visits.
QEL_API bool QelIsVerticalLineIntersectContour(int x0, int y0, unsigned char* chain, int n, int* columnPerRow);

/// Number of non-zero pixels among the n pixels reached after each code; the start pixel itself
/// is not counted (compare QelPixelsPassedByChain).
QEL_API int QelWhitePixlePassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n);

/// True when the start pixel or a pixel reached after one of the n codes equals value.
QEL_API bool QelHasPixelsOnChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n,
                                 int value);

/// Pixel-exact area of a closed chain: the number of pixels enclosed, boundary included (a 2 × 2
/// square gives 4, a 2 × 1 segment 2), and the perimeter as in QelAreaAndPerimeter. An empty
/// chain gives 0 and 0.
QEL_API void QelRealAreaAndPerimeter(unsigned char* chain, int n, int* area, int* perimeter);

/// The area of QelRealAreaAndPerimeter alone: pixels enclosed by the closed chain, boundary included.
QEL_API int QelRealPixelsEnclosed(unsigned char* chain, int n);

/// Extent of the chain in axes turned by angle degrees, in 10-bit fixed point: with c and s the
/// cosine and sine times 1024, truncated toward zero, u = (x·c − y·s) >> 10 and
/// v = (x·s + y·c) >> 10 over the start point and the points after codes 0..n−2. At 90 degrees
/// s is 1023, not 1024, so results shrink slightly; callers rely on it.
QEL_API void QelContourRotatedRect(int x0, int y0, unsigned char* chain, int n, double angle, int* minU, int* maxU,
                                   int* minV, int* maxV);

/// Sum of the grey values of the start pixel and of the pixel after each of the n codes, divided
/// by n (so a closed chain counts its start pixel twice). With n ≤ 0 the start pixel's value.
QEL_API double QelContourGryAvr(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n);

/// True when (x, y) lies inside the closed chain or on it, by a signed count of the chain's
/// crossings of the ray from (x, y) to the right, corrected at the point itself.
QEL_API bool QelIsPointIncludedByChain(int x, int y, int x0, int y0, unsigned char* chain, int n);

/// Number of pixels equal to value among the start pixel and the n pixels reached after each
/// code; unlike QelWhitePixlePassedByChain the start pixel is counted.
QEL_API int QelPixelsPassedByChain(unsigned char* image, int width, int x0, int y0, unsigned char* chain, int n,
                                   int value);

/// How well a region of this area and perimeter fits a bar w wide and perimeter / 2 − w long, for
/// w = minWidth..maxWidth (stopping once the length falls below 1): the smallest
/// |area − w·L| / min(area, w·L), with that width and the rounded length in the outputs. Returns
/// 10000.0 with bestWidth 10000 and bestLength untouched when no width was tried.
QEL_API double QelLineSimilarity(int area, int perimeter, int minWidth, int maxWidth, int* bestWidth,
                                 int* bestLength);

/// QelLineSimilarity for the area and perimeter QelAreaAndPerimeter gives the chain; x0 and y0
/// are not used.
QEL_API double QelLineSimilarity(int x0, int y0, unsigned char* chain, int n, int minWidth, int maxWidth,
                                 int* bestWidth, int* bestLength);

// ==== Contour filling and region selection ====

#endif  // QEL_CONTOUR_H
