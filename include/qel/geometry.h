// Qel — geometric transforms: rotation, quarter turns, flips, shifts and pasting; resizing;
// projections.
#ifndef QEL_GEOMETRY_H
#define QEL_GEOMETRY_H

#include "qel/base.h"

// ==== Rotation, flipping and shifting ====

// ==== Resizing ====

// ==== Projections ====

#endif  // QEL_GEOMETRY_H
