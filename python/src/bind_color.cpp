// Bindings of qel/color.h.
#include "convert.h"

namespace qelpy {

void bind_color(py::module_ m) { (void)m; }

}  // namespace qelpy
