// Bindings of qel/contour.h: tracing and chain codes, chain measures and tests, filling and region
// selection. Chains are uint8 arrays of direction codes; contour lists come back as Contour objects.
#include "convert.h"

#include <cstring>
#include <vector>

namespace qelpy {

namespace {

// The points a walk over the whole chain visits: the start and the point after each of its n codes.
// The library's own walk gives them (its last point needs one code past the chain, so the walk
// runs over a copy with a spare code).
void chain_points(int x0, int y0, const unsigned char* chain, int n, std::vector<int>& xs, std::vector<int>& ys) {
    std::vector<unsigned char> codes(chain, chain + n);
    codes.push_back(0);
    xs.assign(static_cast<std::size_t>(n) + 1, 0);
    ys.assign(static_cast<std::size_t>(n) + 1, 0);
    QelChain2Points(x0, y0, codes.data(), n + 1, xs.data(), ys.data());
}

// Chain codes the library walks over an image from the start (x0, y0): every point must lie
// inside the image, which the library trusts the caller with.
ArrayIn<unsigned char> chain_on_image(const char* x0 = "x0", const char* y0 = "y0") {
    return chain_in().checked([x0, y0](Call& c, const unsigned char* chain, long long count) {
        const Dims& d = c.knownDims(0);
        std::vector<int> xs, ys;
        chain_points(c.integer(x0), c.integer(y0), chain, static_cast<int>(count), xs, ys);
        for (std::size_t i = 0; i < xs.size(); ++i) {
            if (xs[i] < 0 || xs[i] >= d.width || ys[i] < 0 || ys[i] >= d.height) {
                c.valueError("the chain from (" + std::to_string(c.integer(x0)) + ", " + std::to_string(c.integer(y0)) +
                             ") leaves the " + std::to_string(d.width) + " x " + std::to_string(d.height) +
                             " image at (" + std::to_string(xs[i]) + ", " + std::to_string(ys[i]) + ")");
            }
        }
    });
}

// Chain codes whose rows index the array `table`: every row the chain reaches must be an index of it.
ArrayIn<unsigned char> chain_over_rows(const char* table) {
    return chain_in().checked([table](Call& c, const unsigned char* chain, long long count) {
        const int rows = c.integer((std::string(table) + ".count").c_str());
        std::vector<int> xs, ys;
        chain_points(c.integer("x0"), c.integer("y0"), chain, static_cast<int>(count), xs, ys);
        for (std::size_t i = 1; i < ys.size(); ++i) {
            if (ys[i] < 0 || ys[i] >= rows) {
                c.valueError(std::string("the chain reaches row ") + std::to_string(ys[i]) + ", outside '" + table +
                             "' of " + std::to_string(rows) + " entries");
            }
        }
    });
}

// The image a tracer walks: it knows no height, so every boundary must stay one pixel inside. That
// holds when the frame is background (below 2) and the start is an inner pixel.
struct TracedImage : ImageInOut {
    void prepare(Call& c) {
        const Dims& d = c.knownDims(group);
        const unsigned char* p = static_cast<const unsigned char*>(input.data());
        const int w = d.width, h = d.height;
        const int x = c.integer("x"), y = c.integer("y");
        if (x < 1 || x > w - 2 || y < 1 || y > h - 2) {
            c.valueError("the start (" + std::to_string(x) + ", " + std::to_string(y) +
                         ") must lie at least one pixel inside the image");
        }
        for (int i = 0; i < w; ++i) {
            if (p[i] >= 2 || p[static_cast<std::size_t>(h - 1) * w + i] >= 2) c.valueError("'image' must have a background frame (values 0 or 1 in its outer rows and columns)");
        }
        for (int j = 0; j < h; ++j) {
            if (p[static_cast<std::size_t>(j) * w] >= 2 || p[static_cast<std::size_t>(j) * w + w - 1] >= 2) c.valueError("'image' must have a background frame (values 0 or 1 in its outer rows and columns)");
        }
        ImageInOut::prepare(c);
    }
};
TracedImage traced_image() {
    TracedImage r;
    r.name = "image";
    return r;
}

// The codes QelTraceContour stores: room for a walk as long as the image has pixels (a longer
// one is cut short by the library), returned up to the count it gives.
struct TracedChain : Role {
    using cpp = unsigned char*;
    std::vector<unsigned char> codes;
    void prepare(Call& c) { codes.assign(static_cast<std::size_t>(pixels_length()(c)), 0); }
    unsigned char* value(Call&) { return codes.data(); }
    void finish(Call& c) {
        py::array_t<unsigned char> out(static_cast<py::ssize_t>(c.count));
        if (c.count > 0) std::memcpy(out.mutable_data(), codes.data(), static_cast<std::size_t>(c.count));
        c.results.push_back(out);
    }
};
const Derived<int> traced_capacity = derived<int>([](const Call& c) { return static_cast<int>(pixels_length()(c)); });

// The image a contour is filled in. The fill runs along a row until it meets the boundary value;
// for a chain that is not a traced contour of this image that might be never, so the library
// fills a copy with one guard byte of the boundary value before and after the pixels.
struct FilledImage : ImageInOut {
    std::vector<unsigned char> guarded;
    unsigned char* value(Call& c) {
        const std::size_t size = static_cast<std::size_t>(work.nbytes());
        guarded.assign(size + 2, static_cast<unsigned char>(c.integer("boundary_value")));
        std::memcpy(guarded.data() + 1, work.data(), size);
        return guarded.data() + 1;
    }
    void finish(Call& c) {
        std::memcpy(work.mutable_data(), guarded.data() + 1, static_cast<std::size_t>(work.nbytes()));
        ImageInOut::finish(c);
    }
};
FilledImage filled_image() {
    FilledImage r;
    r.name = "image";
    return r;
}

// Every chain QelMarkMaxAreaHoleContour traces is kept behind the one before. Each code records a
// step from one pixel to one of its 8 neighbours, and no step of one pixel in one direction is
// taken twice over all boundaries, so 8 codes a pixel hold them all.
const LengthFn all_chains = [](const Call& c) { return 8 * pixels_length()(c) + 8; };

// One contour of a contour list, as Python sees it.
struct Contour {
    bool isOuter;
    int area, perimeter, x, y;
    py::array chain;
};

// QelGetContours' list, as Contour objects.
RecordList<QEL_CONTOUR_STRUCT> contour_list() {
    return {QelFreeContours, [](const QEL_CONTOUR_STRUCT& r) {
                return py::cast(Contour{r.isOuter, r.area, r.perimeter, r.x, r.y, chain_copy(r.chain, r.chainLen)});
            }};
}

void distinct_fill_values(Call& c) {
    if ((c.integer("boundary_value") & 255) == (c.integer("fill_value") & 255)) {
        c.valueError("'boundary_value' and 'fill_value' must differ (as bytes)");
    }
}

ImageInOut work_copy() { return grey_copy("image"); }
const auto chain_scratch = scratch<unsigned char>(pixels_length());

}  // namespace

void bind_contour(py::module_ m) {
    py::class_<Contour>(m, "Contour", "One contour of a contour list (QelGetContours' QEL_CONTOUR_STRUCT).")
        .def_readonly("is_outer", &Contour::isOuter, "True for an object's outer boundary, False for a hole's")
        .def_readonly("area", &Contour::area, "pixels enclosed, boundary included")
        .def_readonly("perimeter", &Contour::perimeter)
        .def_readonly("x", &Contour::x, "start column")
        .def_readonly("y", &Contour::y, "start row")
        .def_readonly("chain", &Contour::chain, "direction codes (uint8), one per step")
        .def("__repr__", [](const Contour& r) {
            return std::string("Contour(") + (r.isOuter ? "outer" : "hole") + ", x=" + std::to_string(r.x) + ", y=" +
                   std::to_string(r.y) + ", area=" + std::to_string(r.area) + ", perimeter=" +
                   std::to_string(r.perimeter) + ", codes=" + std::to_string(r.chain.size()) + ")";
        });

    // ---- tracing and chain codes
    QEL_BIND(m, "trace_contour", QelTraceContour,
             "(marked image, chain) of the boundary traced from (x, y): outer boundaries start at an object\n"
             "pixel with background on its left, holes at the object pixel left of the hole. The image needs\n"
             "a background frame and (x, y) an inner pixel; marks: 254 boundary, 1 examined background.",
             returns_count, traced_image(), width, i32("x"), i32("y"), TracedChain{}, traced_capacity,
             flag("outer", true));
    QEL_BIND(m, "mark_contour", QelMarkContour, "trace_contour without the codes: the marked image only.",
             none, traced_image(), width, i32("x"), i32("y"), flag("outer", true));
    QEL_BIND(m, "mark_contours", QelMarkContours, "255 on every boundary pixel (outer and holes), 0 elsewhere.",
             none, grey("image"), width, height, grey_out());
    QEL_BIND(m, "get_contours", QelGetContours,
             "Every boundary kept, as Contour objects in scan order: at least min_length codes, area >=\n"
             "min_area, of the wanted kind (mode 1 outer only, 2 holes only, other both). The argument is\n"
             "left alone; the library's list is released for you.",
             contour_list(), work_copy(), chain_scratch, width, height, i32("min_length", 1), i32("min_area", 0),
             i32("mode", 0));
    QEL_BIND(m, "chain2points", QelChain2Points,
             "(xs, ys): the n points of a closed chain of n codes (the closing code is not applied).",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), ints_out(count_of("chain")),
             ints_out(count_of("chain")));
    QEL_BIND(m, "chain2points_max", QelChain2Points, "(xs, ys, max_x, max_y): chain2points and the largest x and y.",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), ints_out(count_of("chain")),
             ints_out(count_of("chain")), out_value<int>(), out_value<int>());
    QEL_BIND(m, "mark_chain_by_color", QelMarkChainByColor,
             "Copy of the image with the start and the pixel after each code set to colour (low byte).",
             none, grey_inout("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"), i32("colour"));
    QEL_BIND(m, "mark_chain_by_color_dashed", QelMarkChainByColor,
             "mark_chain_by_color in dashes: the start, then 5 steps marked and 5 not.",
             none, grey_inout("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"), i32("colour"),
             fixed(0));
    QEL_BIND(m, "mark_chain_by_inc", QelMarkChainByInc,
             "Copy of the image with 1 added to the start (wrapping) and to each later pixel below 255.",
             none, grey_inout("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"));

    // ---- measures and point tests
    QEL_BIND(m, "area_and_perimeter", QelAreaAndPerimeter,
             "(area, perimeter) by the trapezoid rule: the boundary counts half (a 2 x 2 square gives 3).",
             none, chain_in(), records_count("chain"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "contour_rect", QelContourRect, "(left, right, top, bottom) of the chain's corners.",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), out_value<int>(), out_value<int>(),
             out_value<int>(), out_value<int>());
    QEL_BIND(m, "contour_center", QelContourCenter, "(cx, cy): the rounded mean of the chain's points.",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "contour_pos_points", QelContourPosPoints, "Number of points after codes 0..n-2 on the row.",
             returns_int, i32("x0"), i32("y0"), chain_in(), records_count("chain"), i32("row"));
    QEL_BIND(m, "is_point_on_contour", QelIsPointOnContour, "True when a point after one of the codes is (x, y).",
             returns_bool, i32("x0"), i32("y0"), chain_in(), records_count("chain"), i32("x"), i32("y"));
    QEL_BIND(m, "is_horizontal_line_intersect_contour", QelIsHorizontalLineIntersectContour,
             "True when a point after one of the codes lies on the row.",
             returns_bool, i32("y0"), chain_in(), records_count("chain"), i32("row"));
    QEL_BIND(m, "is_vertical_line_intersect_contour", QelIsVerticalLineIntersectContour,
             "True when a point after one of the codes lies on the column.",
             returns_bool, i32("x0"), chain_in(), records_count("chain"), i32("column"));
    QEL_BIND(m, "is_vertical_line_intersect_contour_per_row", QelIsVerticalLineIntersectContour,
             "True when a point (x, y) after one of the codes has column_per_row[y] == x; every row the chain\n"
             "reaches must be an index of column_per_row.",
             returns_bool, i32("x0"), i32("y0"), chain_over_rows("column_per_row"), records_count("chain"),
             ints_in("column_per_row").maybe_empty());
    QEL_BIND(m, "white_pixle_passed_by_chain", QelWhitePixlePassedByChain,
             "Number of non-zero pixels among those after each code (the start is not counted).",
             returns_int, grey("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"));
    QEL_BIND(m, "has_pixels_on_chain", QelHasPixelsOnChain,
             "True when the start or a pixel after one of the codes equals value.",
             returns_bool, grey("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"), i32("value"));
    QEL_BIND(m, "real_area_and_perimeter", QelRealAreaAndPerimeter,
             "(area, perimeter): pixels enclosed, boundary included (a 2 x 2 square gives 4).",
             none, chain_in(), records_count("chain"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "real_pixels_enclosed", QelRealPixelsEnclosed, "Pixels enclosed by the closed chain, boundary included.",
             returns_int, chain_in(), records_count("chain"));
    QEL_BIND(m, "contour_rotated_rect", QelContourRotatedRect,
             "(min_u, max_u, min_v, max_v): extent in axes turned by angle degrees, in 10-bit fixed point\n"
             "(at 90 degrees the sine is 1023/1024).",
             none, i32("x0"), i32("y0"), chain_in(), records_count("chain"), f64("angle"), out_value<int>(), out_value<int>(),
             out_value<int>(), out_value<int>());
    QEL_BIND(m, "contour_gry_avr", QelContourGryAvr,
             "Sum of the start pixel and the pixel after each code, divided by the number of codes.",
             returns_double, grey("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"));
    QEL_BIND(m, "is_point_included_by_chain", QelIsPointIncludedByChain,
             "True when (x, y) lies inside the closed chain or on it.",
             returns_bool, i32("x"), i32("y"), i32("x0"), i32("y0"), chain_in(), records_count("chain"));
    QEL_BIND(m, "pixels_passed_by_chain", QelPixelsPassedByChain,
             "Number of pixels equal to value among the start and the pixels after each code.",
             returns_int, grey("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"), i32("value"));
    QEL_BIND(m, "line_similarity", QelLineSimilarity,
             "(misfit, best_width, best_length) of a bar fitted to this area and perimeter; (10000.0, 10000, 0)\n"
             "when no width was tried.",
             returns_double, i32("area"), i32("perimeter"), i32("min_width"), i32("max_width"), out_value<int>(),
             out_value<int>());
    QEL_BIND(m, "line_similarity_of_chain", QelLineSimilarity,
             "line_similarity for the area and perimeter area_and_perimeter gives the chain.",
             returns_double, fixed(0), fixed(0), chain_in(), records_count("chain"), i32("min_width"), i32("max_width"),
             out_value<int>(), out_value<int>());

    // ---- filling and region selection
    QEL_BIND(m, "filling_contour", QelFillingContour,
             "(orientation, image): the inside of a traced contour filled with fill_value; +1 for an outer\n"
             "boundary (filled rightwards), -1 for a hole's, 0 for no turn (nothing filled). The inside must\n"
             "not hold boundary_value.",
             returns_int, filled_image(), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"),
             flag("include_contour", true), i32("boundary_value", 128), i32("fill_value", 255));
    QEL_BIND(m, "paste_pixels2res_img", QelPastePixels2ResImg,
             "(count, out): the pixels enclosed by a closed contour, boundary included, painted into out (a\n"
             "new zero image unless given) from image, or as value when value >= 0.",
             returns_int, grey("image"), width, i32("x0"), i32("y0"), chain_on_image(), records_count("chain"),
             i32("boundary_value", 128), i32("fill_value", 200).check(distinct_fill_values), grey_out(),
             i32("value", -1));
    QEL_BIND(m, "select_contours_by_area", QelSelectContoursByArea,
             "(count, out): each changing pixel of the scan judges the last traced chain again and draws it\n"
             "into out (not cleared) when its area lies in [min_area, max_area]; a contour is usually\n"
             "counted several times.",
             returns_int, work_copy(), chain_scratch, width, height, i32("row_step", 1), i32("min_area"),
             i32("max_area"), grey_out());
    QEL_BIND(m, "select_contours_by_perimeter", QelSelectContoursByPerimeter,
             "(count, out): each contour whose perimeter lies in [min_perimeter, max_perimeter] drawn into out.",
             returns_int, work_copy(), chain_scratch, width, height, i32("row_step", 1), i32("min_perimeter"),
             i32("max_perimeter"), grey_out());
    QEL_BIND(m, "remove_white_regions_by_area", QelRemoveWhiteRegionsByArea,
             "(count, out): the image with its frame zeroed and each object of min_pixels..max_pixels removed.",
             returns_int, work_copy(), chain_scratch, width, height, i32("min_pixels"), i32("max_pixels"), grey_out());
    QEL_BIND(m, "remove_black_regions_by_area", QelRemoveBlackRegionsByArea,
             "(count, out): the image with its frame zeroed and each hole of min_pixels..max_pixels filled.",
             returns_int, work_copy(), chain_scratch, width, height, i32("min_pixels"), i32("max_pixels"), grey_out());
    QEL_BIND(m, "qel255_n_regions_with_max_area", Qel255NRegionsWithMaxArea,
             "(count, out): the objects larger than the smallest of the n largest pasted into a cleared out\n"
             "(so n = 1 paints nothing and the n-th largest is left out).",
             returns_int, work_copy(), width, height, i32("n"), i32("min_length", 1), grey_out());
    QEL_BIND(m, "qel255_rect_with_max_area", Qel255RectWithMaxArea,
             "(area, (left, top, right, bottom), cx, cy) of the largest object inside x1..x2, y1..y2; area 0\n"
             "and zeros when there is none.",
             returns_int, work_copy(), chain_scratch, width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"),
             i32("row_step", 1), rect_out(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "qel255_rect_with_max_perimeter", Qel255RectWithMaxPerimeter,
             "qel255_rect_with_max_area with the perimeter as the measure.",
             returns_int, work_copy(), chain_scratch, width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"),
             i32("row_step", 1), rect_out(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "delete_short_contour", QelDeleteShortContour,
             "The image with its frame zeroed and the boundary of every object of at most max_length codes\n"
             "set to 0.",
             none, work_copy(), chain_scratch, width, height, i32("max_length"), grey_out());
    QEL_BIND(m, "mark_max_area_hole_contour", QelMarkMaxAreaHoleContour,
             "(area, image): the boundary of the largest hole drawn with colour into the traced image; area 0\n"
             "(nothing drawn) when there is no hole.",
             returns_int, grey_inout("image"), scratch<unsigned char>(all_chains), width, height, i32("colour"));
}

}  // namespace qelpy
