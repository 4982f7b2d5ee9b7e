// Bindings of qel/contour.h.
#include "convert.h"

namespace qelpy {

void bind_contour(py::module_ m) { (void)m; }

}  // namespace qelpy
