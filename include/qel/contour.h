// Qel — contours: chain codes, the boundary tracer and the contour list; measures and point tests
// on chains; filling contours and selecting regions.
#ifndef QEL_CONTOUR_H
#define QEL_CONTOUR_H

#include "qel/base.h"

// ==== Contour tracing and chain codes ====

// ==== Chain-code measures and tests ====

// ==== Contour filling and region selection ====

#endif  // QEL_CONTOUR_H
