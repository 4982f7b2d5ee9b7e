// Bindings of qel/edge.h: gradient operators, the Shen Jun edge detector, edge post-processing.
#include "convert.h"

namespace qelpy {

namespace {

// Functions given no image height trust the caller's rows at the bottom: the last row they read
// (the named argument plus `past`) must lie inside the image.
CheckFn last_row_inside(const char* name, int past) {
    return [=](Call& c) {
        const long long last = static_cast<long long>(c.integer(name)) + past;
        if (last > c.knownDims(0).height - 1) {
            c.valueError(std::string("'") + name + "' reaches below the last row of the " +
                         std::to_string(c.knownDims(0).height) + "-row image");
        }
    };
}
void circle_rows_inside(Call& c) {
    const long long last = static_cast<long long>(c.integer("cy")) + std::max(c.integer("ry"), 0);
    if (last > c.knownDims(0).height - 1) c.valueError("cy + ry reaches below the last row of the image");
}

// Point lists: the library stores at most one point per pixel, and at most max(max_count, floor).
LengthFn points(int floor) {
    return [=](const Call& c) {
        const long long wanted = std::max<long long>(c.integer("max_count"), floor);
        return std::min(wanted, pixels_length()(c)) + 1;
    };
}

ArrayOut<unsigned char> smooth_bytes() { return scratch<unsigned char>(pixels_length()); }

}  // namespace

void bind_edge(py::module_ m) {
    // ---- gradient operators (absolute responses clamped to 255; one-pixel frame 0)
    QEL_BIND(m, "gry_img_sobel", QelGryImgSobel, "Sobel magnitude min(|gx| + |gy|, 255).",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_sobel0", QelGryImgSobel0, "Horizontal-edge response min(|gy|, 255).",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_sobel90", QelGryImgSobel90, "Vertical-edge response min(|gx|, 255).",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_sobel0_just", QelGryImgSobel0Just, "min(|gy|, 255) where |gy| > |gx|, else 0.",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_sobel90_just", QelGryImgSobel90Just, "min(|gx|, 255) where |gx| > |gy|, else 0.",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_sobel90_just_to_prj_x", QelGryImgSobel90JustToPrjX,
             "Column profile of vertical edges (|gx| + |gy| where |gx| > |gy|): int32 of width entries.",
             none, grey("src"), width, height, ints_out(width_length()));
    QEL_BIND(m, "gry_img_sobel90_just_to_prj_y", QelGryImgSobel90JustToPrjY,
             "Row profile of vertical edges (|gx| alone where |gx| > |gy|): int32 of height entries.",
             none, grey("src"), width, height, ints_out(height_length()));
    QEL_BIND(m, "prewitt90", QelPrewitt90, "Four-pixel row difference, clamped to 255; two-pixel frame 0.",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "prewitt90_in_rect", QelPrewitt90,
             "prewitt90 written only for rows max(2, y0)..min(H-3, y1) and columns max(2, x0)..min(W-3, x1);\n"
             "the rest of out is left as it was (0 in a new array).",
             none, grey("src"), width, height, i32("x0"), i32("x1"), i32("y0"), i32("y1"), grey_out());
    QEL_BIND(m, "gradient0_by_prewitt5x5", QelGradient0ByPrewitt5x5, "5x5 horizontal-edge box difference, clamped to 250.",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gradient5x5_by_prewitt0_90", QelGradient5x5ByPrewitt0_90,
             "max of the row and column four-pixel differences, each clamped to 250.",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gradient_by_prewitt0", QelGradientByPrewitt0,
             "Box difference of the rows above against the rows below (see the C++ header for the bands).",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gradient_by_prewitt90", QelGradientByPrewitt90,
             "Box difference of the columns left against the columns right (see the C++ header for the bands).",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gradient_by_prewitt", QelGradientByPrewitt,
             "Mean of four box differences (0, 90, 45, 135 degrees); writes nothing for a window area above\n"
             "16129 or a negative half size.",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "robert", QelRobert, "Central-difference gradient max(|dx|, |dy|).",
             none, grey("src"), width, height, grey_out());
    QEL_BIND(m, "robert_by_mask", QelRobertByMask, "min(|dx| + |dy|, 255) where mask is non-zero (None: everywhere).",
             none, grey("src"), grey_or_none("mask"), width, height, grey_out());
    QEL_BIND(m, "robert_rgb_image2gry_robert", QelRobertRGBImage2GryRobert,
             "The largest of the three channel gradients min(|dx| + |dy|, 255) of a BGR image.",
             none, bgr("rgb"), width, height, grey_out());
    QEL_BIND(m, "robert_rgb_image2rgb_robert", QelRobertRGBImage2RGBRobert,
             "The three channel gradients as a BGR image, with the library's partial frame cleared.",
             none, bgr("rgb"), width, height, bgr_out());

    // ---- Shen Jun edge detector (255 on one-pixel-wide edges, frame 0)
    QEL_BIND(m, "shen_jun_edge_fast", QelShenJunEdgeFast, "Integer Shen Jun edges, new-sample weight 2^-shift (shift 1..3).",
             none, grey("src"), smooth_bytes(), width, height, i32("shift"), i32("threshold"), grey_out());
    QEL_BIND(m, "shen_jun_edge_fast_points", QelShenJunEdgeFast,
             "Integer Shen Jun edge points in scan order: (xs, ys), int32; the library stops once max_count\n"
             "are stored (at least one when there is an edge).",
             returns_count, grey("src"), smooth_bytes(), width, height, i32("shift"), i32("threshold"),
             ints_out(points(1)).trimmed(), ints_out(points(1)).trimmed(), i32("max_count"));
    QEL_BIND(m, "shen_jun_edge_fast_points_and_edges", QelShenJunEdgeFast,
             "Integer Shen Jun edge points (at most max_count) and the full edge image: (xs, ys, edges).",
             returns_count, grey("src"), smooth_bytes(), width, height, i32("shift"), i32("threshold"),
             ints_out(points(0)).trimmed(), ints_out(points(0)).trimmed(), i32("max_count"), grey_out());
    QEL_BIND(m, "shen_jun_edge_std", QelShenJunEdgeStd,
             "Shen Jun edges with a real weight a (0 < a < 1), byte smoothing truncated between passes.",
             none, grey("src"), smooth_bytes(), width, height, f64("a"), i32("threshold"), grey_out());
    QEL_BIND(m, "shen_jun_edge_fine", QelShenJunEdgeFine, "Shen Jun edges with a real weight a and double smoothing.",
             none, grey("src"), scratch<double>(pixels_length()), width, height, f64("a"), i32("threshold"), grey_out());

    // ---- edge post-processing
    QEL_BIND(m, "connect_edge", QelConnectEdge,
             "Copy of edge with end points marked 200 and gaps joined through candidate pixels marked 100.",
             none, grey_inout("edge"), grey("candidates"), width, height, i32("gap"));
    QEL_BIND(m, "edge_delete_noise_and_cross_points", QelEdgeDeleteNoiseAndCrossPoints,
             "Copy of edge with frame, branch and crossing points (more than max_neighbours) cleared.",
             none, grey_inout("edge"), width, height, i32("max_neighbours"));
    QEL_BIND(m, "edge_delete_noise_by_length", QelEdgeDeleteNoiseByLength,
             "Outer boundaries (255) of the edge fragments with at least min_length codes. The library traces a\n"
             "copy of edge (its frame cleared, binarised at 50); edge itself is left alone.",
             none, grey_copy("edge"), width, height, i32("min_length"), grey_out());
    QEL_BIND(m, "remove_edge_points_by_grd", QelRemoveEdgePointsByGrd,
             "Copy of edge without the interior points where the grey gradient is below min_gradient.",
             none, grey("grey"), grey_inout("edge"), width, height, i32("min_gradient"));
    QEL_BIND(m, "get_threshold_by_edge", QelGetThresholdByEdge,
             "Grey threshold from the levels around the edge pixels of rows y0+1..y1-1, columns x0+1..x1-1\n"
             "(mode 1: lo..c, 2: c..hi, else lo..hi); y1 may be at most H.",
             returns_int, grey("grey"), grey("edge"), width, i32("x0"), i32("x1"), i32("y0"),
             i32("y1").check(last_row_inside("y1", -1)), i32("mode"));
    QEL_BIND(m, "extract_two_edge_point_per_col", QelExtractTwoEdgePointPerCol,
             "Per column x0..x1, the rows of the two strongest values in rows y0+1..y1-1 at least min_gap apart:\n"
             "(first_row, second_row), int32 of width entries (0 elsewhere); y1 may be at most H.",
             none, grey("grd"), width, i32("min_gap"), i32("x0"), i32("x1"), i32("y0"),
             i32("y1").check(last_row_inside("y1", -1)), ints_out(width_length()), ints_out(width_length()));
    QEL_BIND(m, "extract_edge_point_in_rect", QelExtractEdgePointInRect,
             "Two strongest points per row and per column of the rectangle (note the order x0, y0, x1, y1):\n"
             "(row_first, row_second, col_first, col_second), indexed by image row / column, -1 where none,\n"
             "0 outside the rectangle.",
             none, grey("grd"), width, i32("x0"), i32("y0"), i32("x1"), i32("y1").check(last_row_inside("y1", 0)),
             ints_out(height_length()), ints_out(height_length()), ints_out(width_length()), ints_out(width_length()));
    QEL_BIND(m, "extract_edge_point_in_circle", QelExtractEdgePointInCircle,
             "extract_edge_point_in_rect inside the ellipse of centre (cx, cy), half axes rx, ry.",
             none, grey("grd"), width, i32("cx"), i32("cy"), i32("rx"), i32("ry").check(circle_rows_inside),
             ints_out(height_length()), ints_out(height_length()), ints_out(width_length()), ints_out(width_length()));
    QEL_BIND(m, "edge_tripe_detection", QelEdgeTripeDetection,
             "Local grey range max - min over windows, and its 256-bin histogram: (range, histogram).\n"
             "Refuses a width above 4096.",
             refuses("the width is above 4096"), grey("grey"), width, height, i32("half_x"), i32("half_y"), grey_out(),
             hist_out());
}

}  // namespace qelpy
