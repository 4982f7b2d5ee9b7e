// Qel — gradient operators.
#ifndef QEL_EDGE_H
#define QEL_EDGE_H

#include "qel/base.h"

// ==== Gradient operators ====
// (end of Gradient operators)

#endif  // QEL_EDGE_H
