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

// ==== Split-and-merge segmentation ====

// ==== One-dimensional data utilities ====

#endif  // QEL_MISC_H
