// Bindings of qel/line.h.
#include "convert.h"

namespace qelpy {

void bind_line(py::module_ m) { (void)m; }

}  // namespace qelpy
