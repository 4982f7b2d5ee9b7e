// Bindings of qel/edge.h.
#include "convert.h"

namespace qelpy {

void bind_edge(py::module_ m) { (void)m; }

}  // namespace qelpy
