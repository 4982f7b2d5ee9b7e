// Qel — drawing: marks, lines, arrows, crosses, rectangles, circles and polygons.
#ifndef QEL_DRAW_H
#define QEL_DRAW_H

#include "qel/base.h"

// ==== Drawing primitives ====
// Every function draws into a caller's image and never writes outside it: points and ranges are
// clamped or skipped at the border, each function in its own way as documented. Grey values and
// colour components are stored as their low byte. RGB functions take red, green, blue and store
// them blue, green, red. An image with a width or height of zero or less is left untouched.

// ---- Rectangles ----

/// Outline of the rectangle with columns x1..x2 and rows y1..y2 (ends included). Each coordinate
/// is clamped into the image and each pair ordered first, so the outline is always drawn.
QEL_API void QelDrawGryRect(unsigned char* img, int width, int height, int x1, int x2, int y1, int y2, int grey);

#endif  // QEL_DRAW_H
