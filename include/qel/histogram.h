// Qel — histograms, thresholds, histogram shaping and grey corrections.
#ifndef QEL_HISTOGRAM_H
#define QEL_HISTOGRAM_H

#include "qel/base.h"

// ==== Histogram statistics ====
// (end of Histogram statistics)

// ==== Threshold selection and binarisation ====
// (end of Threshold selection and binarisation)

// ==== Histogram shaping and peak finding ====
// (end of Histogram shaping and peak finding)

// ==== Grey-value corrections ====
// (end of Grey-value corrections)

#endif  // QEL_HISTOGRAM_H
