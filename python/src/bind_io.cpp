// Bindings of qel/io.h.
#include "convert.h"

namespace qelpy {

void bind_io(py::module_ m) { (void)m; }

}  // namespace qelpy
