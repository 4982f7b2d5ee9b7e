// Bindings of qel/misc.h.
#include "convert.h"

namespace qelpy {

void bind_misc(py::module_ m) { (void)m; }

}  // namespace qelpy
