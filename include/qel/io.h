// Qel — image buffers and files: BMP files, frame setters, list files, debug log.
#ifndef QEL_IO_H
#define QEL_IO_H

#include "qel/base.h"

// ==== BMP files and frame setters ====
// (end of BMP files and frame setters)

// ==== List files and debug log ====
// (end of List files and debug log)

#endif  // QEL_IO_H
