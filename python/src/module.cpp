// The compiled part of the qel package: one submodule per public header, qel._qel.<header>, each
// filled by its own bind_<header>.cpp. The Python package re-exports them as qel.<header>.
#include "convert.h"

PYBIND11_MODULE(_qel, m) {
    m.doc() = "Qel image processing on numpy arrays (compiled part; use the qel package).";
    // Each docstring starts with the signature the binding layer writes itself.
    pybind11::options options;
    options.disable_function_signatures();
    qelpy::bind_io(m.def_submodule("io", "BMP files, frame setters, list files, debug log."));
    qelpy::bind_color(m.def_submodule("color", "Colour and camera formats."));
    qelpy::bind_histogram(m.def_submodule("histogram", "Histograms, thresholds, shaping, grey corrections."));
    qelpy::bind_filter(m.def_submodule("filter", "Neighbourhood filters."));
    qelpy::bind_edge(m.def_submodule("edge", "Gradients, the Shen Jun edge detector, edge post-processing."));
    qelpy::bind_binary(m.def_submodule("binary", "Binary morphology, thinning, run lengths and run-length regions."));
    qelpy::bind_contour(m.def_submodule("contour", "Contour tracing, chain codes, filling and selection."));
    qelpy::bind_line(m.def_submodule("line", "Line geometry, fitting, sampling and the line finders."));
    qelpy::bind_geometry(m.def_submodule("geometry", "Rotation, flips, shifts, resizing, projections."));
    qelpy::bind_draw(m.def_submodule("draw", "Drawing primitives, digits and text."));
    qelpy::bind_misc(m.def_submodule("misc", "Image arithmetic, split-and-merge, one-dimensional data."));
}
