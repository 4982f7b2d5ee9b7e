// Bindings of qel/line.h: line forms, intersections, distances, clipping, sampling, fitting, and the
// library's two line finders (qel.line.HoughLines and qel.line.ImgChainLines wrap them as classes).
#include "convert.h"

#include <cstring>
#include <vector>

namespace qelpy {

namespace {

// A bool the library always returns true: not passed on.
const Ret<bool> ignored_bool{false};

// Sampling along a segment reads both ends and the pixels between: both must lie in the image.
Scalar<int> segment_end(const char* x, const char* y) { return i32(y).check(point_inside(x, y)); }

// Points of a fit or a transform: xs, and ys of the same length.
ArrayIn<int> xs() { return ints_in("xs").maybe_empty(); }
ArrayIn<int> ys() { return array_in<int>("ys", count_of("xs")); }

const char* const kHough = "hough_lines";
const char* const kChainLines = "img_chain_lines";
constexpr unsigned char kNoPanels = 255;

// ---- the chain-line finder's run ------------------------------------------------------------------
// A run keeps a pointer to its image for the finder's debug panels, so the binding keeps the image
// (a copy) until the next run. All of it is used under the finder's lock.
struct ChainRun {
    std::vector<unsigned char> image;
    int width = 0;
    int height = 0;
    int count = 0;
};
ChainRun& chain_run() {
    static ChainRun* run = new ChainRun;  // never freed: the library's finder may point into it until unload
    return *run;
}

// Waits for the finder's lock with the GIL released, so other Python threads go on meanwhile.
std::unique_lock<std::mutex> finder_lock() {
    py::gil_scoped_release release;
    return std::unique_lock<std::mutex>(serial_lock(kChainLines));
}

template <int (*Run)(unsigned char*, int, int, bool)>
int chain_lines_run(const py::object& image, bool fitLines, const char* function) {
    Signature sig;
    sig.add("image", false, true);
    Call c(function, sig, py::make_tuple(image), py::dict());
    const py::array a = c.image(image, "image", 0, 0);
    const int w = static_cast<int>(a.shape(1));
    const int h = static_cast<int>(a.shape(0));
    std::unique_lock<std::mutex> hold = finder_lock();
    ChainRun& run = chain_run();
    run.image.assign(static_cast<const unsigned char*>(a.data()), static_cast<const unsigned char*>(a.data()) + a.size());
    int count = 0;
    {
        py::gil_scoped_release release;
        count = Run(run.image.data(), w, h, fitLines);
    }
    run.width = w;
    run.height = h;
    run.count = count;
    return count;
}

py::object chain_lines_get_lines() {
    std::unique_lock<std::mutex> hold = finder_lock();
    const ChainRun& run = chain_run();
    const OVLA_LINE_SEGMENT* lines = QelImgChainLines_GetLines();
    if (lines == nullptr) return py::none();
    py::array_t<OVLA_LINE_SEGMENT> out(run.count);
    if (run.count > 0) std::memcpy(out.mutable_data(), lines, static_cast<std::size_t>(run.count) * sizeof(OVLA_LINE_SEGMENT));
    return std::move(out);
}

py::object chain_lines_next_piece() {
    std::unique_lock<std::mutex> hold = finder_lock();
    int* xs = nullptr;
    int* ys = nullptr;
    int count = 0;
    if (!QelImgChainLines_GetNxtCodeLine(&xs, &ys, &count)) return py::none();
    py::array_t<int> px(count);
    py::array_t<int> py_(count);
    if (count > 0) {
        std::memcpy(px.mutable_data(), xs, static_cast<std::size_t>(count) * sizeof(int));
        std::memcpy(py_.mutable_data(), ys, static_cast<std::size_t>(count) * sizeof(int));
    }
    return py::make_tuple(px, py_);
}

py::object chain_lines_debug() {
    std::unique_lock<std::mutex> hold = finder_lock();
    const ChainRun& run = chain_run();
    if (run.width == 0) return py::none();
    py::array panels = zeros({6, run.height, run.width}, py::dtype::of<std::uint8_t>());
    unsigned char* out = static_cast<unsigned char*>(panels.mutable_data());
    // Without a valid run (none yet, a refused one, or an initialisation since) the library writes
    // nothing. A valid run never leaves 255 in panel 0, which holds the image capped at 250.
    out[0] = kNoPanels;
    {
        py::gil_scoped_release release;
        QelImgChainLines_Debug(out);
    }
    if (out[0] == kNoPanels) return py::none();
    return std::move(panels);
}

}  // namespace

void bind_line(py::module_ m) {
    // ---- forms and conversions
    QEL_BIND(m, "abc_line2kb_line", QelABCLine2KBLine, "(flag, k, b) of the line a*x + b*y + c = 0, |k| <= 1.",
             none, f64("a"), f64("b"), f64("c"), out_value<int>(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "kb_line2abc_line", QelKBLine2ABCLine, "(a, b, c) of a KB line: flag 1 x = k*y + b, flag 0 y = k*x + b.",
             none, i32("flag"), f64("k"), f64("b"), out_value<double>(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "line_kb_equation", QelLineKBEquation, "(flag, k, b) of the line through two points.",
             none, i32("x1"), i32("y1"), i32("x2"), i32("y2"), out_value<int>(), out_value<double>(),
             out_value<double>());
    QEL_BIND(m, "line_kb_equation_angle", QelLineKBEquation,
             "(flag, k, b, angle) of the line through two points, angle in [0, 180).",
             none, i32("x1"), i32("y1"), i32("x2"), i32("y2"), out_value<int>(), out_value<double>(),
             out_value<double>(), out_value<double>());
    QEL_BIND(m, "get_line_b", QelGetLineB, "b of the KB line of slope k through (x, y).",
             returns_double, i32("flag"), f64("k"), i32("x"), i32("y"));
    QEL_BIND(m, "two_points2thro_theta", QelTwoPoints2ThroTheta,
             "(distance, rho, theta) of the line through two points; theta uses pi = 3.14 (the diagonal\n"
             "gives 134).",
             returns_double, f64("x1"), f64("y1"), f64("x2"), f64("y2"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "abc2thro_theta", QelABC2ThroTheta, "(rho, theta) of an ABC line, through two of its points.",
             none, f64("a"), f64("b"), f64("c"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "thro_theta2abc", QelThroTheta2ABC, "(a, b, c) of a rho/theta line measured from the origin (x0, y0).",
             none, i32("x0"), i32("y0"), i32("rho"), i32("theta"), out_value<double>(), out_value<double>(),
             out_value<double>());

    // ---- angles
    QEL_BIND(m, "qel2p_line_angle_degree2axis_x", Qel2PLineAngleDegree2AxisX,
             "Angle in [0, 180) of the line through two points (y grows downwards).",
             returns_double, f64("x1"), f64("y1"), f64("x2"), f64("y2"));
    QEL_BIND(m, "abc_line_angle_degree2axis_x", QelABCLineAngleDegree2AxisX, "Angle in [0, 180) of an ABC line.",
             returns_double, f64("a"), f64("b"), f64("c"));
    QEL_BIND(m, "abc_line_intersect_angle_degree", QelABCLineIntersectAngleDegree,
             "Acute angle in [0, 90] between two ABC lines; 0 for parallel lines.",
             returns_double, f64("a1"), f64("b1"), f64("c1"), f64("a2"), f64("b2"), f64("c2"));

    // ---- intersections: None for parallel lines
    QEL_BIND(m, "point_of_intersection", QelPointOfIntersection,
             "(x, y) where two ABC lines meet; None when they are parallel.",
             none_if_false, f64("a1"), f64("b1"), f64("c1"), f64("a2"), f64("b2"), f64("c2"), out_value<double>(),
             out_value<double>());
    QEL_BIND(m, "point_of_intersection_kb", QelPointOfIntersection,
             "(x, y) where two KB lines meet; None when they are parallel.",
             none_if_false, i32("flag1"), f64("k1"), f64("b1"), i32("flag2"), f64("k2"), f64("b2"),
             out_value<double>(), out_value<double>());
    QEL_BIND(m, "point_of_intersection_thro_theta", QelPointOfIntersection,
             "(x, y) where two rho/theta lines meet; None when the thetas are equal (0 and 180 are not\n"
             "recognised as parallel).",
             none_if_false, i32("rho1"), i32("theta1"), i32("rho2"), i32("theta2"), out_value<double>(),
             out_value<double>());
    QEL_BIND(m, "get_hough_line_point_x", QelGetHoughLinePointX,
             "x of the rho/theta line on row y; None when the line is (nearly) horizontal.",
             none_if_false, i32("rho"), i32("theta"), i32("y"), out_value<double>());

    // ---- distances and sides
    QEL_BIND(m, "dist_between_point12", QelDistBetweenPoint12, "Euclidean distance between two points.",
             returns_double, f64("x1"), f64("y1"), f64("x2"), f64("y2"));
    QEL_BIND(m, "dist_from_point2kb_line", QelDistFromPoint2KBLine, "Distance from (x, y) to a KB line.",
             returns_double, i32("x"), i32("y"), i32("flag"), f64("k"), f64("b"));
    QEL_BIND(m, "dist_from_point3to2p_line", QelDistFromPoint3To2PLine,
             "Distance from (x3, y3) to the line through (x1, y1) and (x2, y2) (two products wrap at 32 bits).",
             returns_double, i32("x1"), i32("y1"), i32("x2"), i32("y2"), i32("x3"), i32("y3"));
    QEL_BIND(m, "which_side_is_point3to_line", QelWhichSideIsPoint3ToLine,
             "+1, -1 or 0: the side of (x3, y3) of the line through two points (+1 below, or right of a\n"
             "vertical line).",
             returns_int, i32("x1"), i32("y1"), i32("x2"), i32("y2"), i32("x3"), i32("y3"));

    // ---- intervals and rectangles
    QEL_BIND(m, "line_overlap_len", QelLineOverlapLen, "Overlap length of [a1, a2] and [b1, b2] (ends included).",
             returns_int, i32("a1"), i32("a2"), i32("b1"), i32("b2"));
    QEL_BIND(m, "line_overlap_len_range", QelLineOverlapLen, "(length, start, end) of the overlap of two intervals.",
             returns_int, i32("a1"), i32("a2"), i32("b1"), i32("b2"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "rect_overlap_area", QelRectOverlapArea,
             "Overlap area of two rectangles (left, top, right, bottom), right and bottom included.",
             returns_int, rect_in("rect1"), rect_in("rect2"));

    // ---- clipping
    QEL_BIND(m, "abc_line_img_boundary", QelABCLineImgBoundary,
             "(x1, y1, x2, y2): the ends of an ABC line in a width x height image; None when not both are found.",
             none_if_false, i32("width"), i32("height"), f64("a"), f64("b"), f64("c"), out_value<int>(),
             out_value<int>(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "kb_line_img_boundary", QelKBLineImgBoundary,
             "(x1, y1, x2, y2): two crossings of a KB line with the image border, by x; None for fewer than two.",
             none_if_false, i32("width"), i32("height"), i32("flag"), f64("k"), f64("b"), out_value<int>(),
             out_value<int>(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "kb_line_rect_boundary", QelKBLineRectBoundary,
             "(xs, ys), two entries each: the KB line at the rectangle's sides, rounded and clamped to the image.",
             ignored_bool, i32("width"), i32("height"), i32("left"), i32("right"), i32("top"), i32("bottom"),
             i32("flag"), f64("k"), f64("b"), ints_out(fixed_length(2)), ints_out(fixed_length(2)));
    QEL_BIND(m, "kb_line_begin_end_point", QelKBLineBeginEndPoint,
             "(x1, y1, x2, y2): kb_line_rect_boundary's two points.",
             none, i32("width"), i32("height"), i32("left"), i32("right"), i32("top"), i32("bottom"), i32("flag"),
             f64("k"), f64("b"), out_value<int>(), out_value<int>(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "hough_line_img_boundary", QelHoughLineImgBoundary,
             "(xs, ys), two entries each: border points of a rho/theta line; None when two were not found.",
             none_if_false, i32("width"), i32("height"), i32("rho"), i32("theta"), ints_out(fixed_length(2)),
             ints_out(fixed_length(2)));

    // ---- sampling along lines
    QEL_BIND(m, "pixels_on2p_line", QelPixelsOn2PLine,
             "(equal, other): pixels on the segment equal to value or not; the left end's column is not\n"
             "visited for slanted segments. Both ends must lie in the image.",
             none, grey("image"), width, i32("x1"), segment_end("x1", "y1"), i32("x2"), segment_end("x2", "y2"),
             i32("value"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "pixles_on_abc_line", QelPixlesOnABCLine,
             "(non_zero, zero): counts of the pixels sampled along an ABC line.",
             none, grey("image"), width, height, f64("a"), f64("b"), f64("c"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "abc_line_histogram", QelABCLineHistogram, "256-bin histogram of the grey values along an ABC line.",
             none, grey("image"), width, height, f64("a"), f64("b"), f64("c"), hist_out());
    QEL_BIND(m, "pixels_on_rect", QelPixelsOnRect,
             "Outline samples of x1..x2, y1..y2 equal to value (corners count twice).",
             returns_int, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("value"));

    // ---- fitting
    QEL_BIND(m, "fitting_line", QelFittingLine,
             "(flag, k, b, angle, mean_error, max_error) of the least-squares line through the points.",
             none, xs(), ys(), records_count("xs"), out_value<int>(), out_value<double>(), out_value<double>(),
             out_value<double>(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "fitting_line_chain", QelFittingLine,
             "fitting_line over the points of a chain: the start and the points after its first n - 1 codes.",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), out_value<int>(), out_value<double>(),
             out_value<double>(), out_value<double>(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "fitting_line_msk", QelFittingLineMsk, "(flag, k, b, angle) of the fit to the points where mask is true.",
             none, xs(), ys(), array_in<bool>("mask", count_of("xs")), records_count("xs"), out_value<int>(), out_value<double>(),
             out_value<double>(), out_value<double>());
    QEL_BIND(m, "fitting_line_twice", QelFittingLineTwice,
             "(marks, flag, k, b, angle): fit, mark (1 near, 100 far), fit again over the near points.",
             refuses("fewer than 3 points, or too few of them near the first fit"), xs(), ys(),
             ints_out(count_of("xs")), records_count("xs"), out_value<int>(), out_value<double>(), out_value<double>(),
             out_value<double>());
    QEL_BIND(m, "fitting_line_twice_by_mean", QelFittingLineTwiceByMean,
             "(weights, flag, k, b, angle): fit, keep the points no farther than the mean, fit again.",
             refuses("fewer than 3 points, or fewer than 2 within the mean residual"), xs(), ys(),
             ints_out(count_of("xs")), records_count("xs"), out_value<int>(), out_value<double>(), out_value<double>(),
             out_value<double>());

    // ---- the Hough line finder (one in the library; calls serialised)
    QEL_BIND_SERIAL(m, "hough_lines_initialize", QelHoughLines_Initialize, kHough,
                    "Sizes the library's Hough finder for width x height images and forgets the lines taken.",
                    refuses("the accumulator could not be allocated"), i32("width"), i32("height"));
    QEL_BIND_SERIAL(m, "hough_lines_ht", QelHoughLines_HT, kHough,
                    "(strength, a, b, c, rho, theta) of the strongest line: each point not excluded votes for\n"
                    "thetas[i] - theta_tolerance .. thetas[i] + theta_tolerance; strength 0 and zeros when none.",
                    returns_int, xs(), ys(), array_in<int>("thetas", count_of("xs")), array_in<bool>("excluded", count_of("xs")),
                    records_count("xs"), i32("theta_tolerance"), out_value<double>(), out_value<double>(),
                    out_value<double>(), out_value<int>(), out_value<int>());
    QEL_BIND_SERIAL(m, "hough_lines_ht_range", QelHoughLines_HT, kHough,
                    "(strength, a, b, c, rho, theta): every point votes for theta_from .. theta_to - 1.",
                    returns_int, xs(), ys(), records_count("xs"), i32("theta_from", 0), i32("theta_to", 180),
                    out_value<double>(), out_value<double>(), out_value<double>(), out_value<int>(), out_value<int>());
    QEL_BIND_SERIAL(m, "hough_lines_ht_used", QelHoughLines_HT, kHough,
                    "(strength, a, b, c, rho, theta): every point votes for each theta t with theta_used[t]\n"
                    "(181 entries), except the highest such t.",
                    returns_int, xs(), ys(), records_count("xs"), array_in<bool>("theta_used", fixed_length(181)),
                    out_value<double>(), out_value<double>(), out_value<double>(), out_value<int>(), out_value<int>());
    QEL_BIND_SERIAL(m, "hough_lines_get_next_line", QelHoughLines_GetNextLine, kHough,
                    "(strength, a, b, c, rho, theta) of the strongest cell of the last transform not near a line\n"
                    "taken; strength 0 when none is left.",
                    returns_int, i32("min_rho_distance"), i32("min_theta_distance"), out_value<double>(),
                    out_value<double>(), out_value<double>(), out_value<int>(), out_value<int>());
    QEL_BIND_SERIAL(m, "hough_lines_debug", QelHoughLines_Debug, kHough,
                    "Copy of a grey image with the last line returned drawn in colour.",
                    none, grey_inout("image"), width, height, i32("colour"));

    // ---- the chain-line finder (one in the library; calls serialised)
    PYBIND11_NUMPY_DTYPE(OVLA_LINE_SEGMENT, x1, y1, x2, y2, a, b, c);
    QEL_BIND_SERIAL(m, "img_chain_lines_initialize", QelImgChainLines_Initialize, kChainLines,
                    "Prepares the library's chain-line finder for images of up to width x height pixels.",
                    refuses("a buffer could not be allocated, or 2 x width x height does not fit an int"),
                    i32("width"), i32("height"), f64("straightness_ratio"), f64("second_tolerance"),
                    i32("min_chain_length"), i32("edge_parameter"), i32("max_lines"));
    m.def("img_chain_lines_do_bin_img",
          [](const py::object& image, bool fitLines) {
              return chain_lines_run<QelImgChainLines_DoBinImg>(image, fitLines, "img_chain_lines_do_bin_img");
          },
          py::arg("image"), py::arg("fit_lines") = true,
          "img_chain_lines_do_bin_img(image, fit_lines=True)\n\nNumber of straight pieces of the boundaries of a "
          "binary image (0 before initialisation or for a larger image). The finder keeps a copy of the image "
          "for its debug panels.\n\nC++: QelImgChainLines_DoBinImg\n");
    m.def("img_chain_lines_do_gry_img",
          [](const py::object& image, bool fitLines) {
              return chain_lines_run<QelImgChainLines_DoGryImg>(image, fitLines, "img_chain_lines_do_gry_img");
          },
          py::arg("image"), py::arg("fit_lines") = true,
          "img_chain_lines_do_gry_img(image, fit_lines=True)\n\nimg_chain_lines_do_bin_img on the Shen Jun edges "
          "of a grey image.\n\nC++: QelImgChainLines_DoGryImg\n");
    m.def("img_chain_lines_get_lines", &chain_lines_get_lines,
          "img_chain_lines_get_lines()\n\nThe segments of the last run as a structured array (x1, y1, x2, y2, a, b, "
          "c); None when the run did not fit lines.\n\nC++: QelImgChainLines_GetLines\n");
    m.def("img_chain_lines_get_nxt_code_line", &chain_lines_next_piece,
          "img_chain_lines_get_nxt_code_line()\n\n(xs, ys) of the next piece of the last run; None once every "
          "piece was handed out.\n\nC++: QelImgChainLines_GetNxtCodeLine\n");
    m.def("img_chain_lines_debug", &chain_lines_debug,
          "img_chain_lines_debug()\n\nThe six (H, W) debug panels of the last run as one (6, H, W) array; None "
          "without a run.\n\nC++: QelImgChainLines_Debug\n");
}

}  // namespace qelpy
