// Qel — miscellaneous analysis: image arithmetic and rectangle statistics, split-and-merge
// segmentation, one-dimensional data utilities.
#ifndef QEL_MISC_H
#define QEL_MISC_H

#include "qel/base.h"

// ==== Image arithmetic and rectangle statistics ====
// Images are grey (one byte a pixel) or BGR (three); functions taking isRGB work on width × height
// × 3 bytes when it is true. Rectangles given as x0, x1, y0, y1 include both ends.

/// Mean absolute difference per byte between rectangle r1 of img1 and rectangle r2 of img2, two
/// images of the same width (grey, or BGR when isRGB), as an integer division of the sum by the
/// number of bytes compared. A rectangle spans right − left columns and bottom − top rows from its
/// top-left corner: its last column and row are not compared. When the two differ in size, r2 is
/// sampled at (left + trunc(i · (cols2 / cols1)), top + trunc(j · (rows2 / rows1))) in doubles. A first
/// rectangle with no columns or rows returns 0.
QEL_API int QelImgDifferenceInRect(unsigned char* img1, unsigned char* img2, bool isRGB, int width, tagRECT r1,
                                   tagRECT r2);

/// Byte-by-byte logic of two buffers of n bytes into the first: a := a AND b (OR b, XOR b).
QEL_API void QelImg1AndImg2To1(unsigned char* a, unsigned char* b, int n);
QEL_API void QelImg1OrImg2To1(unsigned char* a, unsigned char* b, int n);
QEL_API void QelImg1XorImg2To1(unsigned char* a, unsigned char* b, int n);

/// Byte-by-byte logic of two buffers of n bytes into res: res := a AND b (OR b, XOR b). res may be
/// a or b.
QEL_API void QelImg1AndImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);
QEL_API void QelImg1OrImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);
QEL_API void QelImg1XorImg2ToRes(unsigned char* a, unsigned char* b, int n, unsigned char* res);

/// In place on the first grey image: a := |a − b|.
QEL_API void QelImg1Difference2To1(unsigned char* a, unsigned char* b, int w, int h);

/// In place on the first grey image: a := a − b where a > b, else 0.
QEL_API void QelImg1Substract2To1(unsigned char* a, unsigned char* b, int w, int h);

/// In place on the SECOND grey image: b := a − b where a > b, else 0. a is not written.
QEL_API void QelImg1Substract2To2(unsigned char* a, unsigned char* b, int w, int h);

/// res := max(a − b, 0) for every byte of two grey (or BGR when isRGB) images.
QEL_API void QelImg1SubstractImg2(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res);

/// Absolute difference image. Grey: res := |a − b|. BGR (isRGB): res is a w × h GREY image holding,
/// per pixel, the largest of the three channel differences.
QEL_API void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res);

/// As above; histogram (256 entries, cleared first) counts the w × h values written to res.
QEL_API void QelDifferenceImg12(unsigned char* a, unsigned char* b, int w, int h, bool isRGB, unsigned char* res,
                                int* histogram);

/// Running maximum over a sequence of images: accMax := max(accMax, img) per byte (grey, or BGR
/// when isRGB).
QEL_API void QelRemainMaxGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax);

/// Running minimum: accMin := min(accMin, img) per byte.
QEL_API void QelRemainMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMin);

/// Both running extremes in one pass.
QEL_API void QelRemainMaxMinGry(unsigned char* img, int w, int h, bool isRGB, unsigned char* accMax,
                                unsigned char* accMin);

/// Integral image into sum (w × h ints): sum(x, y) = total of the pixels with column ≤ x and row
/// ≤ y. 32-bit sums: images whose total passes 2^31 − 1 wrap around.
QEL_API void QelDoSumGryImg(unsigned char* img, int w, int h, int* sum);

/// Mean of the rectangle x0..x1, y0..y1 minus the mean of the ring around it, both truncated
/// integer means. The ring's outer box is the rectangle grown by margin on every side; each of
/// its bounds is capped at width − 1 or height − 1 and becomes 0 when the result is below 1 (so
/// a bound that lands on 1 stays 1 while 0 and below give 0). The rectangle must lie inside the
/// image. When the ring is empty only the rectangle's mean is returned.
QEL_API int QelCenterBlockMeanDif(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1,
                                  int margin);

/// Truncated mean of the rectangle x0..x1, y0..y1 (ends included), which must lie inside the
/// image; an empty rectangle gives 0.
QEL_API int QelGryRectAvr(unsigned char* img, int width, int height, int x0, int x1, int y0, int y1);

/// Robust extremes of the rectangle x0..x1, y0..y1 of a width-wide grey image: with k = trunc(area
/// · ratio), lo is the first level walking up from 0 at which more than k pixels have been passed
/// (256 if never) and hi the first walking down from 255 (0 if never). Ratio 0 gives the true
/// minimum and maximum.
QEL_API void QelGryMinMaxInRect(unsigned char* img, int width, int x0, int x1, int y0, int y1, double ratio, int* lo,
                                int* hi);

/// Mean grey level of the brightest blockW × blockH block; its centre goes to cx, cy. Block tops
/// run over rows 0 .. height − blockH − 1 and lefts over columns 0 .. width − blockW − 1 (except
/// that column 0 is always tried): the last possible row and column are never tried. A block
/// wins only when strictly brighter, so ties keep the first found. cx, cy start at the image
/// centre and stay there when no block is brighter than 0 or none fits; such calls return 0.
QEL_API double QelMaxBrightRect(unsigned char* img, int width, int height, int blockW, int blockH, int* cx, int* cy);

/// Typical local standard deviation of the pixels where mask is not 0: over blocks of
/// (blockW + 1) × (blockH + 1) pixels (clipped to the image) starting every blockW / 2 columns and
/// blockH / 2 rows, each block with more than a third of blockW · blockH masked pixels votes
/// 4 · cnt / (blockW · blockH) for its rounded deviation; the result is the median vote.
QEL_API int QelEstimateImgStdev(unsigned char* img, unsigned char* mask, int width, int height, int blockW,
                                int blockH);

/// Bounding box of the n points (xs[i], ys[i]). n below 1 writes nothing.
QEL_API void QelPointsRect(int* xs, int* ys, int n, int* minX, int* maxX, int* minY, int* maxY);

/// Masked mean colour of the rectangle x0..x1, y0..y1 of a BGR image: pixels whose mask byte (a
/// w × h image) is 255 are counted, but the k-th counted pixel of a row takes its colour from the
/// k-th pixel of the rectangle's row, not from the masked position. r, g, b get the truncated
/// means of bytes 2, 1, 0; all 0 when no mask byte is 255.
QEL_API void QelRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int height, int x0, int x1, int y0,
                           int y1, int* r, int* g, int* b);

/// The same as QelRGBRectAvr.
QEL_API void QelGetRGBRectAvr(unsigned char* rgb, unsigned char* mask, int width, int height, int x0, int x1,
                              int y0, int y1, int* r, int* g, int* b);

// ==== Split-and-merge segmentation ====

// ==== One-dimensional data utilities ====

#endif  // QEL_MISC_H
