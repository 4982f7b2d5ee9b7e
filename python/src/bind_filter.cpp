// Bindings of qel/filter.h: average, median, minimum, maximum and deviation filters.
#include "convert.h"

namespace qelpy {

void bind_filter(py::module_ m) {
    // ---- average filters: means (sum x (2^24 / n)) >> 24, so floor(sum / n) or one less
    QEL_BIND(m, "gry_average_filter", QelGryAverageFilter,
             "Box mean of a grey image; the window shrinks symmetrically at the edges (a corner keeps its value).",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gry_average_filter_fast", QelGryAverageFilterFast,
             "Table-driven gry_average_filter (a full 127 x 127 window gives 0, intended). Refuses a width\n"
             "above 4096 or a window area above 16129.",
             refuses("the width is above 4096 or the window area above 16129"), grey("src"), width, height, i32("half_x"),
             i32("half_y"), grey_out());
    QEL_BIND(m, "gry_average_filter_fast_non_boundary", QelGryAverageFilterFastNonBoundary,
             "Full-window box mean; the border bands repeat the nearest computed value. Refuses a width above 4096.",
             refuses("the width is above 4096"), grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gry_average_filter_by_x", QelGryAverageFilterByX, "Horizontal box mean over |2 half_x| + 1 pixels.",
             none, grey("src"), width, height, i32("half_x"), grey_out());
    QEL_BIND(m, "gry_average_filter_by_y", QelGryAverageFilterByY, "Vertical box mean over |2 half_y| + 1 pixels.",
             none, grey("src"), width, height, i32("half_y"), grey_out());
    QEL_BIND(m, "rgb_average_filter", QelRGBAverageFilter, "gry_average_filter on each channel of a BGR image.",
             none, bgr("src"), width, height, i32("half_x"), i32("half_y"), bgr_out());
    QEL_BIND(m, "rgb_average_filter_fast", QelRGBAverageFilterFast,
             "gry_average_filter_fast on each channel; the same refusals.",
             refuses("the width is above 4096 or the window area above 16129"), bgr("src"), width, height, i32("half_x"),
             i32("half_y"), bgr_out());
    QEL_BIND(m, "rgb_average_filter_fast_non_boundary", QelRGBAverageFilterFastNonBoundary,
             "gry_average_filter_fast_non_boundary on each channel; refuses a width above 4096.",
             refuses("the width is above 4096"), bgr("src"), width, height, i32("half_x"), i32("half_y"), bgr_out());

    // ---- median, minimum and maximum filters
    QEL_BIND(m, "gry_fast_median_filter", QelGryFastMedianFilter,
             "Sliding-histogram median with the library's border bands of means and even-count hysteresis.",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gry_img_median_boundary0", QelGryImgMedianBoundary0,
             "Median of each full window inside the image; border bands 0; half sizes below 1 count as 1.",
             none, grey("src"), width, height, i32("half_x"), i32("half_y"), grey_out());
    QEL_BIND(m, "gry_img_max_filter3x_in_row", QelGryImgMaxFilter3xInRow, "Maximum over columns x-1..x+1 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_min_filter3x_in_row", QelGryImgMinFilter3xInRow, "Minimum over columns x-1..x+1 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_max_filter5x_in_row", QelGryImgMaxFilter5xInRow, "Maximum over columns x-2..x+2 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_min_filter5x_in_row", QelGryImgMinFilter5xInRow, "Minimum over columns x-2..x+2 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_max_filter3x_in_col", QelGryImgMaxFilter3xInCol, "Maximum over rows y-1..y+1 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_min_filter3x_in_col", QelGryImgMinFilter3xInCol, "Minimum over rows y-1..y+1 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_max_filter5x_in_col", QelGryImgMaxFilter5xInCol, "Maximum over rows y-2..y+2 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_img_min_filter5x_in_col", QelGryImgMinFilter5xInCol, "Minimum over rows y-2..y+2 (out may be src).",
             none, grey("src"), width, height, grey_out().aliasing());
    QEL_BIND(m, "gry_zed_filter", QelGryZedFilter,
             "Edge-preserving smoothing; results wrap as bytes; the outer ring is left 0 (or out='s contents).",
             none, grey("src"), width, height, i32("threshold"), grey_out());

    // ---- local deviation measures (x 100, truncated)
    QEL_BIND(m, "estimate_noise_delta", QelEstimateNoiseDelta,
             "Noise estimate from the second-difference mask and the per-pixel map min(r^2/36, 250):\n"
             "(delta, map); the map's outer ring is 0.",
             returns_double, grey("src"), width, height, grey_out());
    QEL_BIND(m, "gry_img_col_dev100", QelGryImgColDev100,
             "100 x deviation of each column x0..x1 over rows y0..y1 (cut to the image); other entries 0.",
             none, grey("src"), width, height, i32("x0"), i32("x1"), i32("y0"), i32("y1"), ints_out(width_length()));
    QEL_BIND(m, "gry_img_col_dev_dev", QelGryImgColDevDev,
             "n x sum(p^2) - sum(p)^2 of each column x0..x1 over rows y0..y1, modulo 2^32; other entries 0.",
             none, grey("src"), width, height, i32("x0"), i32("x1"), i32("y0"), i32("y1"), ints_out(width_length()));
    QEL_BIND(m, "gry_img_row_dev100", QelGryImgRowDev100,
             "100 x deviation of each row y0..y1 over columns x0..x1 (cut to the image); other entries 0.",
             none, grey("src"), width, height, i32("x0"), i32("x1"), i32("y0"), i32("y1"), ints_out(height_length()));
    QEL_BIND(m, "gry_img_row_dev_dev", QelGryImgRowDevDev,
             "n x sum(p^2) - sum(p)^2 of each row y0..y1 over columns x0..x1, modulo 2^32; other entries 0.",
             none, grey("src"), width, height, i32("x0"), i32("x1"), i32("y0"), i32("y1"), ints_out(height_length()));
    QEL_BIND(m, "gry_img_cols_dev100", QelGryImgColsDev100,
             "For every column, 100 x deviation of the band of band_width columns holding it.",
             none, grey("src"), width, height, i32("band_width"), ints_out(width_length()));
}

}  // namespace qelpy
