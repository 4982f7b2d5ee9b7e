// Bindings of qel/binary.h.
#include "convert.h"

namespace qelpy {

void bind_binary(py::module_ m) { (void)m; }

}  // namespace qelpy
