// Qel — colour and camera formats.
#ifndef QEL_COLOR_H
#define QEL_COLOR_H

#include "qel/base.h"

// ==== Whole-frame conversions ====
// (end of Whole-frame conversions)

// ==== Rectangle copies and reduced copies of camera frames ====
// (end of Rectangle copies and reduced copies of camera frames)

// ==== Channels and interlaced fields ====
// (end of Channels and interlaced fields)

#endif  // QEL_COLOR_H
