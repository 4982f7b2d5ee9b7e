// Qel — gradient operators.
#ifndef QEL_EDGE_H
#define QEL_EDGE_H

#include "qel/base.h"

// ==== Gradient operators ====
// Responses are absolute values clamped to 255 (two Prewitt members clamp to 250). With the
// neighbours TL T TR / L R / BL B BR of a pixel, the Sobel responses are
//   gy = (TL + 2·T + TR) − (BL + 2·B + BR)   (0°, horizontal edges)
//   gx = (TL + 2·L + BL) − (TR + 2·R + BR)   (90°, vertical edges).
// `dst` is a separate grey image of the same size; it must not alias `src`.

/// Sobel magnitude min(|gx| + |gy|, 255) on rows 1..height−2, columns 1..width−2; the one-pixel
/// frame of `dst` is set to 0.
QEL_API void QelGryImgSobel(unsigned char* src, int width, int height, unsigned char* dst);

/// Horizontal-edge response min(|gy|, 255) inside, one-pixel frame 0.
QEL_API void QelGryImgSobel0(unsigned char* src, int width, int height, unsigned char* dst);

/// Vertical-edge response min(|gx|, 255) inside, one-pixel frame 0.
QEL_API void QelGryImgSobel90(unsigned char* src, int width, int height, unsigned char* dst);

/// min(|gy|, 255) where |gy| > |gx| strictly, else 0 (ties give 0); one-pixel frame 0.
QEL_API void QelGryImgSobel0Just(unsigned char* src, int width, int height, unsigned char* dst);

/// min(|gx|, 255) where |gx| > |gy| strictly, else 0 (ties give 0); one-pixel frame 0.
QEL_API void QelGryImgSobel90Just(unsigned char* src, int width, int height, unsigned char* dst);

/// Column profile of vertical edges: prjX[0..width−1] is cleared, then every interior pixel with
/// |gx| > |gy| adds |gx| + |gy| (both magnitudes, unclamped) to prjX[x]; finally prjX[0] takes
/// prjX[1] and prjX[width−1] takes prjX[width−2]. Sums wrap modulo 2^32 on huge images.
QEL_API void QelGryImgSobel90JustToPrjX(unsigned char* src, int width, int height, int* prjX);

/// Row profile of vertical edges: prjY[y] (y = 1..height−2) is the sum of |gx| alone over the
/// interior pixels of row y with |gx| > |gy|; then prjY[0] takes prjY[1] and prjY[height−1] takes
/// prjY[height−2]. Unlike the column profile, |gy| is not added. With height 2 the two entries
/// copy each other's incoming values.
QEL_API void QelGryImgSobel90JustToPrjY(unsigned char* src, int width, int height, int* prjY);

/// Four-pixel row difference min(|p(x−2) + p(x−1) − p(x+1) − p(x+2)|, 255) on rows 2..height−3,
/// columns 2..width−3; the two-pixel frame is 0.
QEL_API void QelPrewitt90(unsigned char* src, int width, int height, unsigned char* dst);

/// The same response, written only for rows max(2, y0)..min(height−3, y1) and columns
/// max(2, x0)..min(width−3, x1) (both ends included); no other pixel of `dst` is touched.
QEL_API void QelPrewitt90(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                          unsigned char* dst);

/// 5×5 horizontal-edge box difference: |(rows y−2, y−1) − (rows y+1, y+2)| over columns
/// x−2..x+2, clamped to 250 (not 255, keeping 251..255 free for marks); two-pixel frame 0.
QEL_API void QelGradient0ByPrewitt5x5(unsigned char* src, int width, int height, unsigned char* dst);

/// max(h, v) of the four-pixel row difference h and column difference v, each clamped to 250,
/// on rows 2..height−3, columns 2..width−3; two-pixel frame 0.
QEL_API void QelGradient5x5ByPrewitt0_90(unsigned char* src, int width, int height, unsigned char* dst);

/// Box difference of the hy rows above against the hy rows below the centre row (centre row left
/// out), over 2·hx+1 columns, clamped to 255; hx = max(1, halfX), hy = max(1, halfY).
/// Computed for rows hy..height−hy−2 and columns hx..width−hx−2. Rows 0..hy−1 and
/// height−hy−1..height−2 are 0, and so are columns 0..hx−1 and width−hx..width−1 of computed
/// rows; the last row and column width−hx−1 of computed rows keep what `dst` held.
QEL_API void QelGradientByPrewitt0(unsigned char* src, int width, int height, int halfX, int halfY,
                                   unsigned char* dst);

/// Transpose of QelGradientByPrewitt0: hx columns left against hx columns right over 2·hy+1 rows,
/// computed for columns hx..width−hx−2 and rows hy..height−hy−2. Rows 0..hy−1 and
/// height−hy−1..height−2 are 0; computed columns are also 0 in rows height−hy..height−1. Columns
/// 0..hx−1 and width−hx−1..width−1 outside those row bands keep what `dst` held.
QEL_API void QelGradientByPrewitt90(unsigned char* src, int width, int height, int halfX, int halfY,
                                    unsigned char* dst);

/// Mean of four unnormalised box differences (0°, 90°, 45°, 135°) over a (2·halfX+1)×(2·halfY+1)
/// window, clamped to 255; the 135° term keeps its value from the previous pixel where its two
/// halves do not favour the first, and forces 255 when it reaches 255. Rows 0..halfY−1 and
/// height−halfY..height−1 and columns 0..halfX−1 are 0; columns width−halfX..width−1 of the
/// other rows keep what `dst` held. Writes nothing when the window area exceeds 16129 or a half
/// size is negative. Reentrant (its scratch lives per call).
QEL_API void QelGradientByPrewitt(unsigned char* src, int width, int height, int halfX, int halfY,
                                  unsigned char* dst);

/// Central-difference gradient max(|dx|, |dy|) with dx = p(x+1, y) − p(x−1, y) and
/// dy = p(x, y+1) − p(x, y−1) inside; one-pixel frame 0. Combines by maximum, unlike the
/// masked and RGB members which combine by clamped sum.
QEL_API void QelRobert(unsigned char* src, int width, int height, unsigned char* dst);

/// min(|dx| + |dy|, 255) where `mask` is non-zero and 0 where it is zero (a null mask selects
/// every pixel); one-pixel frame 0. `mask` is a grey image of the same size.
QEL_API void QelRobertByMask(unsigned char* src, unsigned char* mask, int width, int height,
                             unsigned char* dst);

/// For each channel of a BGR image min(|dx| + |dy|, 255); the grey result is the largest of the
/// three. One-pixel frame 0.
QEL_API void QelRobertRGBImage2GryRobert(unsigned char* rgb, int width, int height, unsigned char* dst);

/// The three per-channel values min(|dx| + |dy|, 255) stored as a BGR pixel. The frame is then
/// cleared with QelSetRGBImageBoundary, whose frame is partial: the outer pixels it misses keep
/// what `rgbDst` held, and byte width−1 of every row is set to 0 even where it is interior.
QEL_API void QelRobertRGBImage2RGBRobert(unsigned char* rgb, int width, int height, unsigned char* rgbDst);
// (end of Gradient operators)

// ==== Shen Jun edge detector ====
// A recursive first-order exponential smoother, blend(prev, cur) = prev + (cur − prev)·a, runs
// forward then backward along each row and down each column row by row (row 0 is copied, not
// filtered), then up the columns over the whole image. An edge pixel is an interior pixel where
// src > smooth, at least one of its 8 neighbours has src < smooth, and the raw grey step
// |src(x, y) − src(neighbour)| reaches `threshold` for at least one neighbour. Only the brighter
// side of a step is marked, giving one-pixel-wide contours. Edge images hold 255 on edge pixels
// and 0 elsewhere, with a one-pixel frame of 0. `smooth` is caller scratch of width × height
// elements and holds the smoothed image on return. Point lists receive (x, y) in scan order (rows
// from the top, each row from the left). Images should be at least 3 × 3; width or height ≤ 0
// does nothing (count 0). All members are reentrant.
// The integer members blend by prev + ((cur − prev) >> shift), an arithmetic shift rounding toward
// minus infinity, with shift clamped to 1..3; they give exactly what QelShenJunEdgeStd gives with
// a = 2^−shift.

/// Integer Shen Jun edges into `dst` (weight 2^−shift of the new sample, shift clamped to 1..3).
QEL_API void QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift,
                                int threshold, unsigned char* dst);

/// Integer Shen Jun edges as a point list only: each edge point is stored, then the count is
/// compared with maxCount, and the call returns as soon as count ≥ maxCount. So at least one
/// point is stored when there is an edge at all, even for maxCount ≤ 0: xs and ys need room for
/// max(maxCount, 1) points. Returns the number stored.
QEL_API int QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift,
                               int threshold, int* xs, int* ys, int maxCount);

/// Integer Shen Jun edges into `dst` and a point list: a point is stored only while fewer than
/// maxCount are stored, and `dst` is filled completely even after the list is full (maxCount ≤ 0
/// stores nothing). Returns the number stored, at most max(maxCount, 0).
QEL_API int QelShenJunEdgeFast(unsigned char* src, unsigned char* smooth, int width, int height, int shift,
                               int threshold, int* xs, int* ys, int maxCount, unsigned char* dst);

/// Shen Jun edges with a real weight a of the new sample (0 < a < 1; small a smooths strongly),
/// used as given. Each blend is computed in double, truncated toward zero and stored as a byte.
/// Outside 0..1 the recursion is unstable: a blend outside 0..255 keeps the low byte of its
/// truncation (NaN and values beyond the int range truncate to INT_MIN, low byte 0).
QEL_API void QelShenJunEdgeStd(unsigned char* src, unsigned char* smooth, int width, int height, double a,
                               int threshold, unsigned char* dst);

/// Shen Jun edges with a real weight a and a double-precision smoothed image (no rounding between
/// the passes); a is used as given.
QEL_API void QelShenJunEdgeFine(unsigned char* src, double* smooth, int width, int height, double a,
                                int threshold, unsigned char* dst);
// (end of Shen Jun edge detector)

// ==== Edge post-processing ====
// Operations on edge images (any non-zero pixel is an edge pixel) and gradient images: joining
// gaps, removing crossings, short fragments and weak points, choosing a threshold from the grey
// levels at edges, picking the strongest responses per row or column, and the local grey range.
// Functions given no image height trust the caller's rectangle at the bottom; they clip it at the
// top and to the image's columns, and never read above row 0 or outside the columns.

/// Joins edge ends across small gaps, in place. With r = gap/2 + 1: every interior edge pixel with
/// fewer than 2 non-zero neighbours (isolated ones included) becomes an end point, 200. Then every
/// pixel with r ≤ y < height−r, r ≤ x < width−r that is 0 in `edge` and non-zero in `candidates`
/// becomes 100 when it lies inside the bounding box (bounds included) of two end points found in
/// rows y−r..y+r−1 and columns x−r..x+r−1; the window reaches one pixel less below and to the
/// right. At most 1000 end points of a window are used: the 1000th slot holds the latest one
/// found (rows from the top, each row from the left). The marks 200 and 100 stay. gap ≤ −2
/// (r ≤ 0) joins nothing.
QEL_API void QelConnectEdge(unsigned char* edge, unsigned char* candidates, int width, int height, int gap);

/// Removes branch and crossing points, in place: the one-pixel frame is set to 0, every edge pixel
/// with more than maxNeighbours non-zero neighbours is marked 128 (marked pixels still count as
/// neighbours), and finally every 128 becomes 0, including pixels that were 128 on entry.
QEL_API void QelEdgeDeleteNoiseAndCrossPoints(unsigned char* edge, int width, int height, int maxNeighbours);

/// Keeps only the edge fragments whose outer boundary has at least minLength codes (and a perimeter
/// of at least minLength): `dst` becomes 255 on the boundaries of the kept fragments and 0
/// elsewhere. `edge` is traced as QelGetContours(edge, dst, width, height, minLength, 0, 1) leaves
/// it: its frame set to 0 and binarised at 50 (values below 50 become 0, the others 255).
QEL_API void QelEdgeDeleteNoiseByLength(unsigned char* edge, int width, int height, int minLength,
                                        unsigned char* dst);

/// Clears the interior edge pixels where |g(x+1, y) − g(x−1, y)| + |g(x, y+1) − g(x, y−1)| on the
/// grey image is below minGradient; frame pixels of `edge` are left as they are.
QEL_API void QelRemoveEdgePointsByGrd(unsigned char* grey, unsigned char* edge, int width, int height,
                                      int minGradient);

/// Grey threshold from the levels around edge pixels: for each edge pixel of rows y0+1..y1−1 and
/// columns x0+1..x1−1 (bounds excluded), with c its grey level and lo, hi the extremes of a walk of
/// 8 reads at (row, column) offsets (0,0), (0,+1), (−1,+2), (−2,+2), (−3,+1), (−3,0), (−2,−1),
/// (−1,−1) — each offset adds one step of the direction table to the last, a walk kept as it is —
/// one count is added to bins c..hi (mode 2), lo..c (mode 1) or lo..hi (other modes). Returns the
/// fullest bin, the lowest on ties; 0 when no edge pixel is found. Reads outside the image are
/// left out of the walk.
QEL_API int QelGetThresholdByEdge(unsigned char* grey, unsigned char* edge, int width, int x0, int x1, int y0,
                                  int y1, int mode);

/// For each column x0..x1: p is the row of the largest value in rows y0+1..y1−1 (the first on ties,
/// 0 when all are 0), q the row of the largest value among those rows at distance ≥ minGap from p
/// (the first on ties, p when none is positive); firstRow[x] = min(p, q), secondRow[x] = max(p, q).
/// Both arrays (width entries) are cleared first.
QEL_API void QelExtractTwoEdgePointPerCol(unsigned char* grd, int width, int minGap, int x0, int x1, int y0, int y1,
                                          int* firstRow, int* secondRow);

/// For each row y0..y1: a is the column of the largest value in columns x0..x1 (left to right,
/// first on ties) and b the column of the largest value farther than 10 from a (scanning from x1
/// down to x0, first met on ties, a when none is positive); rowFirst[y] and rowSecond[y] receive
/// them in ascending order. Columns x0..x1 likewise give colFirst[x] and colSecond[x] from rows
/// y0..y1 (a from the top, b from the bottom). A row or column without a positive value gets −1
/// in both entries. Arrays are indexed by image row and column.
QEL_API void QelExtractEdgePointInRect(unsigned char* grd, int width, int x0, int y0, int x1, int y1, int* rowFirst,
                                       int* rowSecond, int* colFirst, int* colSecond);

/// QelExtractEdgePointInRect inside the ellipse of centre (cx, cy) and half axes rx, ry: row y
/// scans columns trunc(cx − d + 0.5)..trunc(cx + d + 0.5) with d = sqrt(ry² − (y−cy)²)·(rx/ry),
/// column x scans rows trunc(cy − d + 0.5)..trunc(cy + d + 0.5) with
/// d = sqrt(rx² − (x−cx)²)·(ry/rx) (real divisions). With ry = 0 row cy, and with rx = 0 column cx,
/// has no defined chord and gets −1 in both entries.
QEL_API void QelExtractEdgePointInCircle(unsigned char* grd, int width, int cx, int cy, int rx, int ry, int* rowFirst,
                                         int* rowSecond, int* colFirst, int* colSecond);

/// Local grey range max − min over (2·halfX+1) × (2·halfY+1) windows, with its 256-bin histogram.
/// Rows r0 = max(0, y−halfY) .. min(height−1, r0 + 2·halfY) (pushed down at the top, clipped at the
/// bottom). Columns halfX..width−halfX−2 use the centred window; columns 0..halfX−1 the window
/// x..x+2·halfX and columns width−1−halfX..width−1 the window x−2·halfX..x (column width−1−halfX is
/// one-sided although a centred window fits). Windows are clipped to the image; negative half
/// sizes count as 0. Every value written is counted, so on narrow images a column covered by two
/// bands is counted twice (the later, right-band value stays). Returns false and writes nothing
/// when width > 4096.
QEL_API bool QelEdgeTripeDetection(unsigned char* grey, int width, int height, int halfX, int halfY,
                                   unsigned char* dst, int* histogram);
// (end of Edge post-processing)

#endif  // QEL_EDGE_H
