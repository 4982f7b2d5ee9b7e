// Bindings of qel/draw.h.
#include "convert.h"

namespace qelpy {

void bind_draw(py::module_ m) { (void)m; }

}  // namespace qelpy
