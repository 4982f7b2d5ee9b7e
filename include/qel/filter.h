// Qel — neighbourhood filters on grey and RGB images.
#ifndef QEL_FILTER_H
#define QEL_FILTER_H

#include "qel/base.h"

// ==== Average filters ====
// (end of Average filters)

// ==== Median, minimum and maximum filters ====
// (end of Median, minimum and maximum filters)

// ==== Local deviation measures ====
// (end of Local deviation measures)

#endif  // QEL_FILTER_H
