// Qel — machine-vision image processing on raw, caller-owned buffers.
// Umbrella header: includes one header per subsystem.
#ifndef QEL_H
#define QEL_H

#include "qel/base.h"
#include "qel/io.h"
#include "qel/color.h"
#include "qel/histogram.h"
#include "qel/filter.h"
#include "qel/edge.h"
#include "qel/binary.h"
#include "qel/contour.h"
#include "qel/line.h"
#include "qel/draw.h"
#include "qel/geometry.h"
#include "qel/misc.h"

#endif  // QEL_H
