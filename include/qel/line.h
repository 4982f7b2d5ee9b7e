// Qel — line geometry: line forms, intersections, distances, clipping and sampling along lines.
#ifndef QEL_LINE_H
#define QEL_LINE_H

#include "qel/base.h"

#endif  // QEL_LINE_H
