// Bindings of qel/filter.h: average, rank and deviation filters.
#include "convert.h"

namespace qelpy {

void bind_filter(py::module_ m) {
    // ---- average filters
    QEL_BIND(m, "gry_average_filter", QelGryAverageFilter,
             "Box mean of a grey image; the window shrinks symmetrically at the edges.",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
}

}  // namespace qelpy
