// Qel — miscellaneous analysis: image arithmetic and rectangle statistics, split-and-merge
// segmentation, one-dimensional data utilities.
#ifndef QEL_MISC_H
#define QEL_MISC_H

#include "qel/base.h"

// ==== Image arithmetic and rectangle statistics ====

// ==== Split-and-merge segmentation ====

// ==== One-dimensional data utilities ====

#endif  // QEL_MISC_H
