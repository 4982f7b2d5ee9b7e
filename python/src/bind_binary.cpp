// Bindings of qel/binary.h: binary morphology and thinning, run lengths, run-length regions.
// Run-length region records come back as structured arrays with fields row (or col), x_begin,
// x_end (or y_begin, y_end) and extra, one int32 each.
#include "convert.h"


namespace qelpy {

namespace {

// Run-length histograms have cap + 1 bins (none for a negative cap).
LengthFn bins_to_cap() {
    return [](const Call& c) { return std::max(c.integer("cap"), -1) + 1LL; };
}

}  // namespace

void bind_binary(py::module_ m) {
    PYBIND11_NUMPY_DTYPE_EX(RLX, row, "row", xBegin, "x_begin", xEnd, "x_end", extra, "extra");
    PYBIND11_NUMPY_DTYPE_EX(RLY, col, "col", yBegin, "y_begin", yEnd, "y_end", extra, "extra");
    m.attr("RLX") = py::dtype::of<RLX>();
    m.attr("RLY") = py::dtype::of<RLY>();

    // ---- counts and centres
    QEL_BIND(m, "bin_img_centroid", QelBinImgCentroid,
             "Number of non-zero pixels and their truncated mean position: (count, x, y); (0, -1, -1) for none.",
             returns_int, grey("image"), width, height, out_value<int>(-1), out_value<int>(-1));
    QEL_BIND(m, "get_white_pixels_num", QelGetWhitePixelsNum, "Non-zero pixels in x1..x2, y1..y2 (clipped to the image).",
             returns_int, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"));
    QEL_BIND(m, "get_black_ratio_in_binary_img", QelGetBlackRatioInBinaryImg, "Share of zero pixels in the rectangle.",
             returns_double, grey("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"));
    QEL_BIND(m, "pixels_in_gry_img", QelPixelsInGryImg, "Number of pixels equal to value.",
             returns_int, grey("image"), width, height, i32("value"));
    QEL_BIND(m, "bin_img_search_center_x", QelBinImgSearchCenterX,
             "Centre column of wide objects voted by row runs longer than 10 (0 when width > 4096 or x1 > x2).",
             returns_int, grey("image"), width, height, i32("x1"), i32("x2"));
    QEL_BIND(m, "get_max_sizeof_min_filter", QelGetMaxSizeofMinFilter,
             "Size of the largest erosion the object survives: (total, size, last distance map).",
             returns_int, grey("image"), scratch<unsigned char>(pixels_length()), grey_out(), width, height,
             out_value<int>());

    // ---- point deletion and 3 x 3 filters
    QEL_BIND(m, "bin_img_delete_isolated_points", QelBinImgDeleteIsolatedPoints,
             "Copy without non-zero pixels whose 8 neighbours are 0 (the library's linear walk, see the header).",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "bin_img_delete_points_less_than_n", QelBinImgDeletePointsLessThanN,
             "Copy where interior pixels equal to value with fewer than n such neighbours become 255 - value.",
             none, grey_inout("image"), width, height, i32("value"), i32("n"));
    QEL_BIND(m, "bin_img_delete_points_more_than_n", QelBinImgDeletePointsMoreThanN,
             "Copy where interior pixels equal to value with more than n such neighbours become 255 - value.",
             none, grey_inout("image"), width, height, i32("value"), i32("n"));
    QEL_BIND(m, "bin_img_filter", QelBinImgFilter,
             "255 where the sum of pixel values in the (2rx+1) x (2ry+1) window exceeds threshold, else 0.",
             refuses("the filter failed"), grey("image"), width, height, i32("rx"), i32("ry"), u32("threshold"), grey_out());
    QEL_BIND(m, "bin_img_filter_with_column_sums", QelBinImgFilter,
             "bin_img_filter through the form that takes caller column sums (kept internal here).",
             none, grey("image"), width, height, i32("rx"), i32("ry"), scratch<unsigned int>(width_length()), u32("threshold"),
             grey_out());
    QEL_BIND(m, "bin_img_remove_msk_and_filter", QelBinImgRemoveMskAndFilter,
             "Masked adaptive box filter (mask 0 keeps a pixel, 255 removes it); refuses a width of 4095 or more.",
             refuses("the width is 4095 or more"), grey("image"), grey("mask"), width, height, i32("rx"), i32("ry"),
             i32("threshold"), grey_out());
    QEL_BIND(m, "bin_img_remove_msk_and_filter_use_lut", QelBinImgRemoveMskAndFilterUseLUT,
             "As bin_img_remove_msk_and_filter, a mask byte 0..128 keeping the pixel and 129..255 removing it.",
             refuses("the width is 4095 or more"), grey("image"), grey("mask"), width, height, i32("rx"), i32("ry"),
             i32("threshold"), grey_out());
    QEL_BIND(m, "bin_img_max_filter3x3", QelBinImgMaxFilter3x3, "Dilation by the library's 3 x 3 rule.",
             none, grey("image"), width, height, grey_out());
    QEL_BIND(m, "bin_img_max_filter3x3_in_rect", QelBinImgMaxFilter3x3,
             "Dilation limited to a rectangle (the library's bounds); out elsewhere as it was (0 when new).",
             none, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), grey_out());
    QEL_BIND(m, "bin_img_min_filter3x3", QelBinImgMinFilter3x3, "Erosion by the library's 3 x 3 rule (a lone 0 spreads nothing).",
             none, grey("image"), width, height, grey_out());
    QEL_BIND(m, "bin_img_min_filter3x3_in_rect", QelBinImgMinFilter3x3,
             "Erosion limited to a rectangle; out elsewhere as it was (0 when new).",
             none, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), grey_out());
    QEL_BIND(m, "bin_img_med_filter3x3", QelBinImgMedFilter3x3, "3 x 3 majority of the 8 neighbours (at least 5), frame 0.",
             none, grey("image"), width, height, grey_out());
    QEL_BIND(m, "bin_img_med_filter3x3_in_rect", QelBinImgMedFilter3x3,
             "3 x 3 majority for the centres of a rectangle; out elsewhere as it was (0 when new).",
             none, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), grey_out());
    QEL_BIND(m, "bin_img_max_filter3x3_to_color", QelBinImgMaxFilter3x3ToColor,
             "Copy with the 0 neighbours of interior 255 pixels (and every 200) set to color.",
             none, grey_inout("image"), width, height, i32("color"));
    QEL_BIND(m, "bin_img_min_filter3x3_to_color", QelBinImgMinFilter3x3ToColor,
             "Copy with the 255 neighbours of interior 0 pixels (and every 200) set to color.",
             none, grey_inout("image"), width, height, i32("color"));
    QEL_BIND(m, "bin_img_little_white_pixels_med3x3_filter", QelBinImgLittleWhitePixelsMed3x3Filter,
             "Keeps small white details by the library's neighbour sums.",
             none, grey("image"), width, height, grey_out());
    QEL_BIND(m, "threshold_and_med_filter3x3", QelThresholdAndMedFilter3x3,
             "Binarises at threshold and takes the 3 x 3 majority in one step: (number of 255s, out).",
             returns_int, grey("image"), width, height, i32("threshold"), grey_out());
    QEL_BIND(m, "bin_img_med_filter", QelBinImgMedFilter,
             "Majority filter whose window grows down the image by x_scale and y_scale.",
             none, grey("image"), width, height, i32("rx0"), i32("ry0"), f64("x_scale"), f64("y_scale"), grey_out());
    QEL_BIND(m, "bin_img_thin", QelBinImgThin, "Zhang-Suen thinning with staircase clean-up: (passes, skeleton).",
             returns_int, grey("image"), scratch<unsigned char>(pixels_length()), width, height, grey_out());
    QEL_BIND(m, "fill_holes_by_near_neighbor", QelFillHolesByNearNeighbor,
             "Fills the zero pixels inside mask from the nearest object pixel (right, left, down, up).",
             none, grey("image"), grey("mask"), width, height, i32("max_distance"), grey_out());

    // ---- run-length operations
    QEL_BIND(m, "rlx_white_count", QelRLXWhiteCount, "Histogram of white row-run lengths, cap + 1 bins (int32).",
             none, grey("image"), width, height, ints_out(bins_to_cap()), i32("cap"));
    QEL_BIND(m, "rlx_black_count", QelRLXBlackCount, "Histogram of black row-run lengths, cap + 1 bins.",
             none, grey("image"), width, height, ints_out(bins_to_cap()), i32("cap"));
    QEL_BIND(m, "rly_white_count", QelRLYWhiteCount, "Histogram of white column-run lengths, cap + 1 bins.",
             none, grey("image"), width, height, ints_out(bins_to_cap()), i32("cap"));
    QEL_BIND(m, "rly_black_count", QelRLYBlackCount, "Histogram of black column-run lengths, cap + 1 bins.",
             none, grey("image"), width, height, ints_out(bins_to_cap()), i32("cap"));
    QEL_BIND(m, "rlx_white_count_stats", QelRLXWhiteCount,
             "Bright row runs (start >= 201, continue >= 200) in the rectangle (clipped):\n"
             "(runs, total, shortest, longest, most_runs). The statistics form of QelRLXWhiteCount.",
             returns_int, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), out_value<int>(),
             out_value<int>(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "rly_white_count_stats", QelRLYWhiteCount,
             "Column twin of rlx_white_count_stats: (runs, total, shortest, longest, most_runs).",
             returns_int, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), out_value<int>(),
             out_value<int>(), out_value<int>(), out_value<int>());
    QEL_BIND(m, "rlx_white_delete_short", QelRLXWhiteDeleteShort, "Copy with white row runs shorter than min_length set to fill.",
             none, grey_inout("image"), width, height, i32("min_length"), i32("fill"));
    QEL_BIND(m, "rlx_white_delete_long", QelRLXWhiteDeleteLong, "Copy with white row runs longer than max_length set to fill.",
             none, grey_inout("image"), width, height, i32("max_length"), u8("fill"));
    QEL_BIND(m, "rlx_black_delete_short", QelRLXBlackDeleteShort, "Copy with black row runs shorter than min_length set to fill.",
             none, grey_inout("image"), width, height, i32("min_length"), i32("fill"));
    QEL_BIND(m, "rly_white_delete_short", QelRLYWhiteDeleteShort, "Copy with white column runs shorter than min_length set to fill.",
             none, grey_inout("image"), width, height, i32("min_length"), i32("fill"));
    QEL_BIND(m, "rly_white_delete_long", QelRLYWhiteDeleteLong, "Copy with white column runs longer than max_length set to fill.",
             none, grey_inout("image"), width, height, i32("max_length"), i32("fill"));
    QEL_BIND(m, "rly_white_delete_isolated", QelRLYWhiteDeleteIsolated,
             "Copy where non-zero pixels of rows 1..H-2 between two zeros vertically get fill.",
             none, grey_inout("image"), width, height, i32("fill"));
    QEL_BIND(m, "rlx_white_long", QelRLXWhiteLong,
             "Long white row runs (length from min_top at the top to min_bottom at the bottom) as 255.",
             none, grey("image"), width, height, i32("min_top"), i32("min_bottom"), grey_out());
    QEL_BIND(m, "rly_white_short", QelRLYWhiteShort, "Short bright column runs (>= threshold, <= max_length) as 255.",
             none, grey("grey"), width, height, i32("threshold"), i32("max_length"), grey_out());
    QEL_BIND(m, "rlx_delete_white_short", QelRLXDeleteWhiteShort,
             "Long white row runs and the short ones linked to them, as 255 (the library spoils a copy of image).",
             none, grey_copy("image"), width, height, i32("min_length"), i32("max_steps"), grey_out());
    QEL_BIND(m, "rly_delete_white_short", QelRLYDeleteWhiteShort,
             "Column twin of rlx_delete_white_short.",
             none, grey_copy("image"), width, height, i32("min_length"), i32("max_steps"), grey_out());
    QEL_BIND(m, "bin_img01_times_by_x", QelBinImg01TimesByX,
             "Counts of run starts in a sliding row window, accumulated over the rows (flags start at 0).",
             none, grey("image"), scratch<int>(width_length()), width, height, i32("half_size"), grey_out());
    QEL_BIND(m, "bin_img_mark_min_of_rlx_and_rly", QelBinImgMarkMinOfRLXandRLY,
             "Copy where each white pixel becomes min(row-run value, column count).",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "rly_white_short_and_rlx_white_long", QelRLYWhiteShortAndRLXWhiteLong,
             "Horizontal structures made of short vertical runs, as 255.",
             refuses("its working memory could not be allocated"), grey("grey"), scratch<unsigned char>(pixels_length()),
             width, height, i32("threshold"), i32("max_vertical"), i32("min_top"), i32("min_bottom"), grey_out());

    // ---- run-length regions (capacity: records at most; default width x height)
    QEL_BIND(m, "rlx_regions_get", QelRLXRegionsGet, "White row runs of rows y1..y2 near columns x1..x2, taken whole: RLX records.",
             returns_count, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), records_out<RLX>(),
             capacity());
    QEL_BIND(m, "rlx_regions_grow_by_y_inc", QelRLXRegionsGrowByYInc,
             "Follows a stripe downwards from start_row while its width stays steady: RLX records.",
             returns_count, grey("image"), width, height, i32("start_row"), i32("x_begin"), i32("x_end"), records_out<RLX>(),
             capacity());
    QEL_BIND(m, "rlx_regions_grow_by_y_dec", QelRLXRegionsGrowByYDec, "rlx_regions_grow_by_y_inc upwards (row 0 never examined).",
             returns_count, grey("image"), width, height, i32("start_row"), i32("x_begin"), i32("x_end"), records_out<RLX>(),
             capacity());
    QEL_BIND(m, "rlx_regins_get_and_grow", QelRLXReginsGetAndGrow,
             "rlx_regions_get, then the records on rows y2 and y1 grown down and up: RLX records.",
             returns_count, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), records_out<RLX>(),
             capacity());
    QEL_BIND(m, "draw_rlx_regions", QelDrawRLXRegions, "Copy of image with value over each RLX record's columns.",
             none, grey_inout("image"), width, height, records_in<RLX>("records"), records_count("records"), i32("value"));
    QEL_BIND(m, "rly_regions_get", QelRLYRegionsGet, "White column runs of columns x1..x2 near rows y1..y2: RLY records.",
             returns_count, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), records_out<RLY>(),
             capacity());
    QEL_BIND(m, "rly_regions_grow_by_x_inc", QelRLYRegionsGrowByXInc, "Follows a stripe rightwards from start_col: RLY records.",
             returns_count, grey("image"), width, height, i32("start_col"), i32("y_begin"), i32("y_end"), records_out<RLY>(),
             capacity());
    QEL_BIND(m, "rly_regions_grow_by_x_dec", QelRLYRegionsGrowByXDec, "rly_regions_grow_by_x_inc leftwards (column 0 never examined).",
             returns_count, grey("image"), width, height, i32("start_col"), i32("y_begin"), i32("y_end"), records_out<RLY>(),
             capacity());
    QEL_BIND(m, "rly_regins_get_and_grow", QelRLYReginsGetAndGrow,
             "rly_regions_get, then the records on columns x2 and x1 grown right and left: RLY records.",
             returns_count, grey("image"), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), records_out<RLY>(),
             capacity());
    QEL_BIND(m, "draw_rly_regions", QelDrawRLYRegions, "Copy of image with value over each RLY record's rows.",
             none, grey_inout("image"), width, height, records_in<RLY>("records"), records_count("records"), i32("value"));
    QEL_BIND(m, "rlx_regions_with_id", QelRLXRegionsWithID,
             "Labels white row runs (shorter than the min_top..min_bottom ramp ignored) into regions:\n"
             "(region count, RLX records with the region number in `extra`).",
             returns_int, grey("image"), width, height, i32("min_top"), i32("min_bottom"), records_out_counted<RLX>(),
             capacity());
}

}  // namespace qelpy
