// Qel — drawing: marks, lines, arrows, crosses, rectangles, circles and polygons.
#ifndef QEL_DRAW_H
#define QEL_DRAW_H

#include "qel/base.h"

#endif  // QEL_DRAW_H
