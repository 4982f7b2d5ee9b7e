// Qel — binary images: morphology, thinning and run lengths.
#ifndef QEL_BINARY_H
#define QEL_BINARY_H

#include "qel/base.h"

// ==== Binary morphology and thinning ====
// (end of Binary morphology and thinning)

// ==== Run-length operations ====
// (end of Run-length operations)

#endif  // QEL_BINARY_H
