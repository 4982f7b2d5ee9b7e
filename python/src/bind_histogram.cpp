// Bindings of qel/histogram.h: statistics, thresholds, histogram shaping, grey corrections.
// Histograms are int32 arrays of 256 counts (any integer array of 256 is accepted and copied).
#include "convert.h"

namespace qelpy {

namespace {

// The row table form of the histogram: for rows y1..y2 the pixels left[y] .. right[y] - 1 are
// counted, so the tables (one entry per image row) must keep those columns inside the row.
void limits_inside(Call& c, const int* table, long long n) {
    const Dims& d = c.knownDims(0);
    const int y1 = c.integer("y1");
    const int y2 = c.integer("y2");
    if (y1 < 0 || y2 < y1 || y2 >= d.height) c.valueError("rows y1..y2 must be non-empty and inside the image");
    for (int y = y1; y <= y2 && y < n; ++y) {
        if (table[y] < 0 || table[y] > d.width) {
            c.valueError("'left' and 'right' must hold columns 0.." + std::to_string(d.width) + " on rows y1..y2, got " +
                         std::to_string(table[y]) + " on row " + std::to_string(y));
        }
    }
}

void not_empty(Call& c, const int* hist, long long n) {
    long long total = 0;
    for (long long i = 0; i < n; ++i) total += hist[i];
    if (total <= 0) c.valueError("'hist' must not be empty");
}

ArrayIn<int> row_table(const char* name) { return ints_in(name, height_length()).checked(limits_inside); }

// The shrunk binarisation writes ceil(width / step) bytes per row, ceil(height / step) rows.
const ShapeFn shrunk = [](const Call& c) {
    const Dims& d = c.knownDims(0);
    const int step = c.integer("step");
    if (step < 2) return Shape{d.height, d.width};
    return Shape{(d.height + step - 1) / step, (d.width + step - 1) / step};
};

Scalar<int> bins(const char* name) { return i32(name, 256).check(in_range(name, 0, 256)); }

}  // namespace

void bind_histogram(py::module_ m) {
    // ---- histogram statistics
    QEL_BIND(m, "get_histogram", QelGetHistogram, "256-bin histogram of a grey image.",
             none, grey("image"), width, height, hist_out());
    QEL_BIND(m, "get_histogram_in_rect", QelGetHistogramInRect, "Histogram of the rectangle x1..x2, y1..y2 (ends included).",
             none, grey("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), hist_out());
    QEL_BIND(m, "get_histogram_by_masked", QelGetHistogramByMasked,
             "Histogram of the pixels of the rectangle whose mask byte is not 0 (mask: same size as image).",
             none, grey("image"), grey("mask"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), hist_out());
    QEL_BIND(m, "get_histogram_by_limited", QelGetHistogramByLimited,
             "Histogram of rows y1..y2, row y from column left[y] to right[y] - 1 (tables of one entry per row).",
             none, grey("image"), width, i32("y1"), i32("y2"), row_table("left"), row_table("right"), hist_out());
    QEL_BIND(m, "get_image_avr_and_dev", QelGetImageAvrAndDev,
             "Pixel count, mean and population deviation of a grey image: returns (count, mean, deviation).",
             returns_int, grey("image"), width, height, out_value<double>(), out_value<double>());
    QEL_BIND(m, "get_image_avr_and_dev_from_hist", QelGetImageAvrAndDev,
             "Total, mean and population deviation of the levels counted in hist: (count, mean, deviation).\n"
             "The histogram form of QelGetImageAvrAndDev.",
             returns_int, hist_in(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "get_image_avr_and_dev_and_dif", QelGetImageAvrAndDevAndDif,
             "Total, mean, deviation and mean absolute difference from the mean: (count, mean, deviation, dif);\n"
             "an empty histogram gives (0, 0.0, 0.0, 0.0).",
             returns_int, hist_in(), out_value<double>(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "get_image_avr_and_dev_fast", QelGetImageAvrAndDevFast,
             "One-pass total, mean and deviation with 32-bit sums: (count, mean, deviation).",
             returns_int, hist_in(), out_value<double>(), out_value<double>());
    QEL_BIND(m, "get_image_avr_and_dif", QelGetImageAvrAndDif,
             "Whole-number mean and mean absolute difference: (mean, dif). The histogram must not be empty.",
             none, hist_in().checked(not_empty), out_value<int>(), out_value<int>());
    QEL_BIND(m, "get_max_value_in_histogram", QelGetMaxValueInHistogram,
             "Walking down from 255, the first level where more than n x ratio pixels were passed; -1 if never.",
             returns_int, hist_in(), f64("ratio"));
    QEL_BIND(m, "get_min_value_in_histogram", QelGetMinValueInHistogram,
             "Walking up from 0, the first level where more than n x ratio pixels were passed; 256 if never.",
             returns_int, hist_in(), f64("ratio"));
    QEL_BIND(m, "get_median_in_histogram", QelGetMedianInHistogram, "Median grey level, with the library's correction.",
             returns_int, hist_in());
    QEL_BIND(m, "get_most_in_histogram", QelGetMostInHistogram, "The first fullest level and its count: (level, count).",
             returns_int, hist_in(), out_value<int>());
    QEL_BIND(m, "get_peak_in_histogram", QelGetPeakInHistogram,
             "Centre of the first plateau of the largest count, rounded up (an isolated peak p gives p + 1).",
             returns_int, hist_in());
    QEL_BIND(m, "histogram_order", QelHistogramOrder,
             "Levels by falling count (the library's exchange-sort order on ties): (non-empty bins, order[256]).",
             returns_int, hist_in(), ints_out(fixed_length(256)));
    QEL_BIND(m, "draw_histogram2img", QelDrawHistogram2Img,
             "Bars of the first bin_count bins, 255 hanging from the top, in a new (height, width) image.",
             none, hist_in(), bins("bin_count"), grey_out(), width_arg(), height_arg());

    // ---- threshold selection and binarisation (255 where pixel >= threshold, else 0)
    QEL_BIND(m, "get_otsu_threshold", QelGetOtsuThreshold,
             "Otsu's threshold over bins 0..bin_count-1, the last non-empty bin left out; apply it as is.",
             returns_int, hist_in(), bins("bin_count"));
    QEL_BIND(m, "get_threshold_by_ratio", QelGetThresholdByRatio,
             "Walking down from 255, the first level where at least n x ratio pixels were passed; -1 if never.",
             returns_int, hist_in(), f64("ratio"));
    QEL_BIND(m, "get_threshold_limit", QelGetThresholdLimit, "Band mean -/+ k deviations, kept in 0..255: (low, high).",
             none, hist_in(), f64("k"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "get_dif_img_threshold", QelGetDifImgThreshold,
             "Noise threshold of an absolute-difference image: 3 x interpolated median / 0.67, rounded.",
             returns_int, hist_in());
    QEL_BIND(m, "get_dif_img_threshold_valley", QelGetDifImgThreshold,
             "Valley threshold (the first non-empty bin from 1 whose non-empty neighbours are not lower, up to\n"
             "high_bound lowered to 250; low_bound is not used): (found, threshold). The four-argument\n"
             "QelGetDifImgThreshold.",
             returns_bool, hist_in(), i32("low_bound"), i32("high_bound"), out_value<int>());
    QEL_BIND(m, "cluster_histogram", QelClusterHistogram,
             "Weighted one-dimensional k-means of the levels: k centres (float64) in seed order; with fewer\n"
             "non-empty levels than k the rest stay 0. Refuses k < 2; k is at most 256.",
             refuses("k is below 2"), hist_in(), i32("k").check(in_range("k", INT_MIN, 256)), f64("tolerance"),
             array_out<double>([](const Call& c) { return std::max(c.integer("k"), 0); }));
    QEL_BIND(m, "threshold", QelThreshold, "Binary image: 255 where the pixel is >= threshold, else 0 (out may be image).",
             none, grey("image"), width, height, i32("threshold"), grey_out().aliasing());
    QEL_BIND(m, "threshold_in_place", QelThreshold,
             "The in-place QelThreshold: a binarised copy, or with out=image the image itself binarised.",
             none, grey_inout("image"), width, height, i32("threshold"));
    QEL_BIND(m, "threshold2v1v2", QelThreshold2V1V2,
             "Pixels below threshold become low_value, the others high_value (low bytes).",
             none, grey_inout("image"), width, height, i32("threshold"), i32("low_value"), i32("high_value"));
    QEL_BIND(m, "threshold_in_rect", QelThresholdInRect,
             "Binarises the rectangle into the same positions of out (out=image: in place); the rest of out is\n"
             "left as it was (0 in a new array).",
             none, grey("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), i32("threshold"), grey_out().aliasing());
    QEL_BIND(m, "threshold_in_rect_in_place", QelThresholdInRect,
             "The in-place QelThresholdInRect: a copy with the rectangle binarised (out=image: in place).",
             none, grey_inout("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), i32("threshold"));
    QEL_BIND(m, "threshold_by_percent", QelThresholdByPercent,
             "Binarises at the level where, from 255 down, more than percent % of the pixels were passed.",
             none, grey_inout("image"), width, height, i32("percent"));
    QEL_BIND(m, "threshold_by_ratio", QelThresholdByRatio,
             "Binarises at T found from 255 down by ratio (clamped 0..1; T of 0 becomes 1 when ratio < 0.5):\n"
             "(T, binary).",
             returns_int, grey("image"), width, height, f64("ratio"), grey_out().aliasing());
    QEL_BIND(m, "threshold_by_ratio_in_place", QelThresholdByRatio,
             "The in-place QelThresholdByRatio: (T, binarised copy), or with out=image the image itself.",
             returns_int, grey_inout("image"), width, height, f64("ratio"));
    QEL_BIND(m, "threshold_by_ratio_in_rect", QelThresholdByRatio,
             "threshold_by_ratio with T from, and applied to, the rectangle only: (T, image).",
             returns_int, grey_inout("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), f64("ratio"));
    QEL_BIND(m, "threshold_by_ratio_in_rect_min", QelThresholdByRatio,
             "T from the rectangle without the zero rule, applied raised to min_threshold, into the same\n"
             "positions of out: (T before raising, out).",
             returns_int, grey("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), f64("ratio"),
             i32("min_threshold"), grey_out().aliasing());
    QEL_BIND(m, "threshold_by_ratio_and_mini_t", QelThresholdByRatioAndMiniT,
             "Binarises at T (no zero rule) raised to min_threshold: (raised T, image).",
             returns_int, grey_inout("image"), width, height, f64("ratio"), i32("min_threshold"));
    QEL_BIND(m, "threshold_and_shrink", QelThresholdAndShrink,
             "Binarises every step-th pixel of every step-th row: a ceil(H/step) x ceil(W/step) image (full size\n"
             "for step < 2).",
             none, grey("image"), width, height, i32("threshold"), i32("step"), grey_out().sized(shrunk),
             out_value<int>(0, false), out_value<int>(0, false));

    // ---- histogram shaping and peak finding
    QEL_BIND(m, "histogram_equalize_fast", QelHistogramEqualizeFast, "Equalised copy through the cumulative histogram.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "histogram_equalize_standard", QelHistogramEqualizeStandard,
             "Equalised copy by matching to a flat histogram over the levels present.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "histogram_normalization", QelHistogramNormalization, "Copy matched to a target 256-bin histogram.",
             none, grey_inout("image"), width, height, hist_in("target_hist"));
    QEL_BIND(m, "histogram_average_smooth", QelHistogramAverageSmooth, "Box smoothing of a histogram (window clipped at 0, 255).",
             none, hist_in(), i32("radius"), hist_out());
    QEL_BIND(m, "histogram_gaussian_smooth", QelHistogramGaussianSmooth,
             "Gaussian smoothing with the library's one-sided inner divisor: (last - first non-empty bin,\n"
             "smoothed). The unused `reserved` argument is passed as 0.",
             returns_int, hist_in(), derived<int>([](const Call&) { return 0; }), f64("sigma"), f64("smallest_weight"),
             hist_out());
    QEL_BIND(m, "set_peak_to100_valley_to_100", QelSetPeakTo100ValleyTo_100,
             "Marks of the bins of hist (any length): 100 at peaks, -100 at valleys, else the slope sign.",
             none, ints_in("hist"), records_count("hist"), ints_out([](const Call& c) { return c.integer("hist.count"); }));
    QEL_BIND(m, "find_two_peaks", QelFindTwoPeaks,
             "The two main peaks, at least min_distance apart when possible: (first, second); (-1, -1) when no\n"
             "peak has a count above 0.",
             none, hist_in(), i32("min_distance"), out_value<int>(-1), out_value<int>(-1));
    QEL_BIND(m, "is_high_contrast_img", QelIsHighContrastImg,
             "Two-peak contrast test: (passed, dark_peak, bright_peak, depth).",
             returns_bool, hist_in(), i32("split_level"), i32("window"), i32("min_peak_distance"), f64("min_depth"),
             out_value<int>(), out_value<int>(), out_value<double>());

    // ---- grey-value corrections
    QEL_BIND(m, "invert_gry_value", QelInvertGryValue, "255 - pixel (out may be image).",
             none, grey("image"), width, height, grey_out().aliasing());
    QEL_BIND(m, "invert_gry_value_in_place", QelInvertGryValue,
             "The in-place QelInvertGryValue: an inverted copy, or with out=image the image itself inverted.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "change0and250_plus_pixels", QelChange0and250PlusPixels, "Copy with 0 made 1 and 251..255 made 250.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "set_odd_pixels_to255", QelSetOddPixelsTo255, "Copy with every odd grey level made 255.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "set_pixels_to255", QelSetPixelsTo255,
             "Copy where, inside the rectangle, pixels equal to value become 255 and the others 0.",
             none, grey_inout("image"), width, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), u8("value"));
    QEL_BIND(m, "gry_img4_bit", QelGryImg4Bit, "Copy stretched to the levels 0..15 between its 10 % points.",
             none, grey_inout("image"), width, height);
    QEL_BIND(m, "gry_img_normalize", QelGryImgNormalize, "Copy mapped to the wanted mean and deviation, clamped to 0..255.",
             none, grey_inout("image"), width, height, i32("wanted_mean"), i32("wanted_deviation"));
    QEL_BIND(m, "correct_pixels_gry_value_by_col", QelCorrectPixelsGryValueByCol,
             "Copy with each column scaled by a gain from 1 at the centre to edge_gain at the sides.",
             none, grey_inout("image"), width, height, f64("edge_gain"));
    QEL_BIND(m, "correct_pixels_gry_value_by_row", QelCorrectPixelsGryValueByRow,
             "Copy with each row scaled by the library's signed ramp around the centre row.",
             none, grey_inout("image"), width, height, f64("edge_gain"));
    QEL_BIND(m, "light_corret_per_col", QelLightCorretPerCol,
             "Copy with column brightness evened out: (integer mean, image); (0, unchanged) when width > 4096.",
             returns_int, grey_inout("image"), width, height);
    QEL_BIND(m, "light_corret_per_row", QelLightCorretPerRow,
             "Copy with row brightness evened out: (integer mean, image); (0, unchanged) when height > 4096.",
             returns_int, grey_inout("image"), width, height);
    QEL_BIND_SERIAL(m, "ostrum2008_add_noise", Ostrum2008AddNoise, "noise",
                    "Copy with noise added: type 0 Gaussian, 1 uniform, 2 salt and pepper, 3 Poisson, 4 Rayleigh-like.\n"
                    "The first call seeds the library's generator (QEL_NOISE_SEED, else the clock).",
                    none, grey_inout("image"), pixel_count, f64("amount"), u32("noise_type"));
}

}  // namespace qelpy
