// Bindings of qel/histogram.h.
#include "convert.h"

namespace qelpy {

void bind_histogram(py::module_ m) { (void)m; }

}  // namespace qelpy
