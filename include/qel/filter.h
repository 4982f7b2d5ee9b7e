// Qel — neighbourhood filters on grey and RGB images.
#ifndef QEL_FILTER_H
#define QEL_FILTER_H

#include "qel/base.h"

// ==== Average filters ====
// Box (mean) filters. The full window is (2·halfX+1) columns by (2·halfY+1) rows. Every output is
// the fixed-point mean (sum × (2^24 / n)) >> 24 with the reciprocal truncated, so it is floor(sum/n)
// or one less (three 255s give 254); for n a power of two it is exact. The cost per pixel does not
// grow with the window. Every filter keeps its working state per call and may run concurrently on
// different buffers. `dst` must not alias `src`. Negative half sizes count as 0 (except in the
// one-dimensional filters, where they count as their absolute value).

/// Border-adaptive box filter of a grey image: pixel (x, y) is the mean of the window centred on it
/// with half sizes min(halfX, x, width−1−x) and min(halfY, y, height−1−y), so the window shrinks
/// symmetrically at the edges and a corner keeps its own value. The reciprocal is divided out per
/// window size; there is no limit on the width. Half sizes beyond the image are cut to what fits.
QEL_API void QelGryAverageFilter(unsigned char* src, int width, int height, int halfX, int halfY,
                                 unsigned char* dst);

/// Table-driven twin of `QelGryAverageFilter`, with the same output except for the 127 × 127 window
/// (halfX = halfY = 63): its area passes the check but lies one past the reciprocal table, whose next
/// word is 1, so every pixel with the full 127 × 127 window comes out 0 (intended). Returns false and
/// writes nothing if width > 4096 or (2·halfX+1)·(2·halfY+1) > 16129; otherwise true.
QEL_API bool QelGryAverageFilterFast(unsigned char* src, int width, int height, int halfX, int halfY,
                                     unsigned char* dst);

/// Full-window box filter of a grey image: pixels whose window lies inside the image get its mean;
/// the border bands repeat the nearest such value (the first and last halfX columns copy the
/// nearest computed column, the top and bottom halfY rows are copies of rows halfY and
/// height−1−halfY). Half sizes too big for the image are cut to the largest window that fits.
/// Returns false and writes nothing if width > 4096; otherwise true.
QEL_API bool QelGryAverageFilterFastNonBoundary(unsigned char* src, int width, int height, int halfX,
                                                int halfY, unsigned char* dst);

/// Horizontal box filter over n = |2·halfX|+1 pixels of each row: columns halfX .. width−1−halfX get
/// the mean of their window, the first halfX and last halfX columns repeat the nearest of those.
/// A window wider than the row is cut to the widest that fits.
QEL_API void QelGryAverageFilterByX(unsigned char* src, int width, int height, int halfX, unsigned char* dst);

/// Vertical box filter over n = |2·halfY|+1 pixels of each column: rows halfY .. height−1−halfY get
/// the mean of their window, the top and bottom halfY rows are copies of rows halfY and
/// height−1−halfY. A window taller than the image is cut to the tallest that fits.
QEL_API void QelGryAverageFilterByY(unsigned char* src, int width, int height, int halfY, unsigned char* dst);

/// `QelGryAverageFilter` on each channel of a 24-bit image (B, G, R bytes) independently.
QEL_API void QelRGBAverageFilter(unsigned char* src, int width, int height, int halfX, int halfY,
                                 unsigned char* dst);

/// `QelGryAverageFilterFast` on each channel of a 24-bit image, with the same two refusals (width >
/// 4096, window area > 16129) and the same all-0 full 127 × 127 windows.
QEL_API bool QelRGBAverageFilterFast(unsigned char* src, int width, int height, int halfX, int halfY,
                                     unsigned char* dst);

/// `QelGryAverageFilterFastNonBoundary` on each channel of a 24-bit image; returns false and writes
/// nothing if width > 4096.
QEL_API bool QelRGBAverageFilterFastNonBoundary(unsigned char* src, int width, int height, int halfX,
                                                int halfY, unsigned char* dst);
// (end of Average filters)

// ==== Median, minimum and maximum filters ====
// Window half sizes: the full window is (2·halfX+1) columns by (2·halfY+1) rows. All of these
// filters keep their working state per call and may run concurrently on different buffers.

/// Median of the (2·halfX+1)-wide window, clipped vertically to the image, for columns
/// halfX .. width−halfX−2; the other columns (halfX on the left, halfX+1 on the right) get the
/// truncated mean of their window instead. The right band's window runs past the row end into the
/// first pixels of the next row; past the end of the buffer it reads the last row again. Where a
/// window holds an even count, the median keeps its previous value while it still splits the
/// window (hysteresis). Windows at least as wide as the image give means everywhere; negative half
/// sizes count as 0. `dst` must not alias `src`.
QEL_API void QelGryFastMedianFilter(unsigned char* src, int width, int height, int halfX, int halfY,
                                    unsigned char* dst);

/// Median of each (2·halfX+1)×(2·halfY+1) window, for pixels whose window lies inside the
/// image; the border bands are set to 0. Half sizes below 1 count as 1. An image smaller than
/// the window comes out all 0. `dst` must not alias `src`.
QEL_API void QelGryImgMedianBoundary0(unsigned char* src, int width, int height, int halfX, int halfY,
                                      unsigned char* dst);

/// Maximum of each pixel and its left and right neighbours (window clipped at the row ends).
/// `dst` may be `src`.
QEL_API void QelGryImgMaxFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst);
/// Minimum of each pixel and its left and right neighbours (window clipped at the row ends).
/// `dst` may be `src`.
QEL_API void QelGryImgMinFilter3xInRow(unsigned char* src, int width, int height, unsigned char* dst);
/// Maximum over columns x−2 .. x+2 (clipped at the row ends). `dst` may be `src`.
QEL_API void QelGryImgMaxFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst);
/// Minimum over columns x−2 .. x+2 (clipped at the row ends). `dst` may be `src`.
QEL_API void QelGryImgMinFilter5xInRow(unsigned char* src, int width, int height, unsigned char* dst);
/// Maximum over rows y−1 .. y+1 (clipped at the top and bottom). `dst` may be `src`. Reentrant;
/// no limit on the image height.
QEL_API void QelGryImgMaxFilter3xInCol(unsigned char* src, int width, int height, unsigned char* dst);
/// Minimum over rows y−1 .. y+1 (clipped at the top and bottom). `dst` may be `src`. Reentrant;
/// no limit on the image height.
QEL_API void QelGryImgMinFilter3xInCol(unsigned char* src, int width, int height, unsigned char* dst);
/// Maximum over rows y−2 .. y+2 (clipped at the top and bottom). `dst` may be `src`. Reentrant;
/// no limit on the image height.
QEL_API void QelGryImgMaxFilter5xInCol(unsigned char* src, int width, int height, unsigned char* dst);
/// Minimum over rows y−2 .. y+2 (clipped at the top and bottom). `dst` may be `src`. Reentrant;
/// no limit on the image height.
QEL_API void QelGryImgMinFilter5xInCol(unsigned char* src, int width, int height, unsigned char* dst);

/// Edge-preserving smoothing: each interior pixel c moves by (Σ pull) >> 3 over its 8 neighbours n,
/// where a neighbour within `threshold` pulls by n − c and one within 3·threshold by a pull that
/// fades to 0 at 3·threshold. The result is stored as its low byte, so values past 0..255 wrap
/// (250 among eight 255s with threshold 4 gives 1). The outer one-pixel ring of `dst` is not
/// written. `dst` must not alias `src`.
QEL_API void QelGryZedFilter(unsigned char* src, int width, int height, int threshold, unsigned char* dst);
// (end of Median, minimum and maximum filters)

// ==== Local deviation measures ====
// Standard deviations are population deviations sqrt(Σp²/n − (Σp/n)²) in double precision from
// sums kept in 32-bit signed integers, reported × 100 and truncated toward zero. Over more than
// 33025 pixels the sum of squares can wrap; a deviation that then comes out undefined (negative
// variance) is stored as INT_MIN. Rectangles x0..x1, y0..y1 include both ends and are cut to the image. All functions are
// reentrant.

/// Noise estimate from the second-difference mask [1 −2 1; −2 4 −2; 1 −2 1]: returns
/// sqrt(Σr² / ((width−2)·36·(height−2))) over the interior pixels, with Σr² kept in 32 bits (it
/// wraps on very large images). dst receives min(r²/36, 250) at each interior pixel; its outer
/// one-pixel ring is not written. Images narrower or lower than 3 return 0 and leave dst untouched.
QEL_API double QelEstimateNoiseDelta(unsigned char* src, int width, int height, unsigned char* dst);

/// out[x] = 100 × standard deviation of column x over rows y0..y1, for x = x0..x1; every other entry
/// of out[0 .. width−1] is set to 0.
QEL_API void QelGryImgColDev100(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                                int* out);

/// out[x] = n·Σp² − (Σp)² of column x over rows y0..y1 (n = y1−y0+1), for x = x0..x1, computed
/// modulo 2^32 (exact for n ≤ 363); other entries of out are not touched.
QEL_API void QelGryImgColDevDev(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                                int* out);

/// out[y] = 100 × standard deviation of row y over columns x0..x1, for y = y0..y1; every other entry
/// of out[0 .. height−1] is set to 0.
QEL_API void QelGryImgRowDev100(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                                int* out);

/// out[y] = n·Σp² − (Σp)² of row y over columns x0..x1 (n = x1−x0+1), for y = y0..y1, computed
/// modulo 2^32 (exact for n ≤ 363); other entries of out are not touched.
QEL_API void QelGryImgRowDevDev(unsigned char* src, int width, int height, int x0, int x1, int y0, int y1,
                                int* out);

/// out[x] for every column: 100 × standard deviation of all pixels of the band of bandWidth columns
/// holding x (bands 0..bandWidth−1, bandWidth..2·bandWidth−1, …). When bandWidth does not divide the
/// width, the last bandWidth columns are measured as one more band and overwrite the tail of the
/// last whole band, so every value comes from a full-width band. bandWidth above the width counts
/// as the width; bandWidth below 1 (or an empty image) sets every entry to 0.
QEL_API void QelGryImgColsDev100(unsigned char* src, int width, int height, int bandWidth, int* out);
// (end of Local deviation measures)

#endif  // QEL_FILTER_H
