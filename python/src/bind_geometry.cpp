// Bindings of qel/geometry.h.
#include "convert.h"

namespace qelpy {

void bind_geometry(py::module_ m) { (void)m; }

}  // namespace qelpy
