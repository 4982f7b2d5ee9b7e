// Bindings of qel/misc.h: image arithmetic and rectangle statistics, split-and-merge segmentation,
// one-dimensional data utilities.
#include "convert.h"


namespace qelpy {

namespace {

// Bytes of the group-0 images: grey or BGR.
const Derived<int> image_bytes = derived<int>([](const Call& c) {
    const Dims& d = c.knownDims(0);
    return d.width * d.height * (d.channels == 3 ? 3 : 1);
});

// Two images of one kind and size, either grey or BGR: the second is checked against the first.
ImageIn either(const char* name) { return grey_or_bgr(name); }
ImageInOut either_inout(const char* name, const char* outName = "out") {
    ImageInOut r = grey_inout(name);
    r.channels = -1;
    r.outName = outName;
    return r;
}

// The rectangle records of img_difference_in_rect: a rectangle spans right − left columns and
// bottom − top rows from its top-left corner, which must lie inside the image of its group. The
// second rectangle is sampled at fractions of its size, so it must hold a pixel whenever the first
// does.
void rect_spans_inside(Call& c, const tagRECT& r, const char* name, int group, bool nonEmpty) {
    const Dims& d = c.knownDims(group);
    const bool ok = r.left >= 0 && r.top >= 0 && r.right <= d.width && r.bottom <= d.height &&
                    (nonEmpty ? r.left < r.right && r.top < r.bottom : r.left <= r.right && r.top <= r.bottom);
    if (!ok) {
        c.valueError(std::string("'") + name + "' = (" + std::to_string(r.left) + ", " + std::to_string(r.top) + ", " +
                     std::to_string(r.right) + ", " + std::to_string(r.bottom) + ") must satisfy 0 <= left " +
                     (nonEmpty ? "<" : "<=") + " right <= " + std::to_string(d.width) + " and 0 <= top " +
                     (nonEmpty ? "<" : "<=") + " bottom <= " + std::to_string(d.height));
    }
}
struct DifferenceRects : RectIn {
    bool second = false;
    const tagRECT* first = nullptr;
    void prepare(Call& c) {
        if (!second) {
            rect_spans_inside(c, r, name, 0, false);
            return;
        }
        const Dims& a = c.knownDims(0);
        const Dims& b = c.knownDims(1);
        if (a.width != b.width || a.channels != b.channels) {
            c.valueError("'img1' and 'img2' must have the same width and kind (grey or BGR)");
        }
        rect_spans_inside(c, r, name, 1, true);
    }
};
DifferenceRects difference_rect(const char* name, bool second) {
    DifferenceRects r;
    r.name = name;
    r.second = second;
    return r;
}

// One region of a split-and-merge tree, as Python sees it.
struct Region {
    int x, y;
    py::array chain;
    int area, perimeter, level, enclosingId, id, parentId, childArea;
};

// QelMergeSplit's list, as Region objects.
RecordList<RegionStruct> region_list() {
    return {QelFreeRegionStruct, [](const RegionStruct& r) {
                return py::cast(Region{r.x, r.y, chain_copy(r.chain, r.chainLength), r.area, r.perimeter, r.level,
                                       r.enclosingId, r.id, r.parentId, r.childArea});
            }};
}

// An array argument whose copy the library changes in place: the copy is returned.
template <class R>
struct Returned : R {
    void finish(Call& c) { c.results.push_back(this->array); }
};
template <class R>
Returned<R> returned(R role) {
    Returned<R> r;
    static_cast<R&>(r) = role;
    return r;
}

const LengthFn peaks = [](const Call& c) { return static_cast<long long>(c.integer("max_peaks")); };
const LengthFn n_out = [](const Call& c) { return static_cast<long long>(c.integer("n_out")); };

}  // namespace

void bind_misc(py::module_ m) {
    // ---- image arithmetic
    QEL_BIND(m, "img_difference_in_rect", QelImgDifferenceInRect,
             "Mean absolute difference per byte between rectangle r1 of img1 and r2 of img2 (same width and\n"
             "kind, grey or BGR). Rectangles are (left, top, right, bottom) and span right - left columns and\n"
             "bottom - top rows: their last column and row are not compared. A differently sized r2 is\n"
             "sampled at truncated fractions. An empty r1 gives 0.",
             returns_int, either("img1"), grey_or_bgr("img2", 1), is_bgr(), width, difference_rect("r1", false),
             difference_rect("r2", true));
    QEL_BIND(m, "img1_and_img2_to1", QelImg1AndImg2To1, "a AND b, byte by byte (grey or BGR).",
             none, either_inout("a"), either("b"), image_bytes);
    QEL_BIND(m, "img1_or_img2_to1", QelImg1OrImg2To1, "a OR b, byte by byte (grey or BGR).",
             none, either_inout("a"), either("b"), image_bytes);
    QEL_BIND(m, "img1_xor_img2_to1", QelImg1XorImg2To1, "a XOR b, byte by byte (grey or BGR).",
             none, either_inout("a"), either("b"), image_bytes);
    QEL_BIND(m, "img1_and_img2_to_res", QelImg1AndImg2ToRes, "a AND b into a new image (out= may be a or b).",
             none, either("a"), either("b"), image_bytes, like_out().aliasing());
    QEL_BIND(m, "img1_or_img2_to_res", QelImg1OrImg2ToRes, "a OR b into a new image (out= may be a or b).",
             none, either("a"), either("b"), image_bytes, like_out().aliasing());
    QEL_BIND(m, "img1_xor_img2_to_res", QelImg1XorImg2ToRes, "a XOR b into a new image (out= may be a or b).",
             none, either("a"), either("b"), image_bytes, like_out().aliasing());
    QEL_BIND(m, "img1_difference2to1", QelImg1Difference2To1, "|a - b| of two grey images, returned as the new a.",
             none, grey_inout("a"), grey("b"), width, height);
    QEL_BIND(m, "img1_substract2to1", QelImg1Substract2To1, "a - b where a > b, else 0 (grey), as the new a.",
             none, grey_inout("a"), grey("b"), width, height);
    QEL_BIND(m, "img1_substract2to2", QelImg1Substract2To2,
             "a - b where a > b, else 0 (grey), as the new b: the library writes its second image.",
             none, grey("a"), grey_inout("b"), width, height);
    QEL_BIND(m, "img1_substract_img2", QelImg1SubstractImg2, "max(a - b, 0) per byte (grey or BGR).",
             none, either("a"), either("b"), width, height, is_bgr(), like_out());
    QEL_BIND(m, "difference_img12", QelDifferenceImg12,
             "|a - b| per pixel; for BGR images a grey image of the largest channel difference.",
             none, either("a"), either("b"), width, height, is_bgr(), grey_out());
    QEL_BIND(m, "difference_img12_histogram", QelDifferenceImg12,
             "difference_img12 and the 256-bin histogram of its values: (res, histogram).",
             none, either("a"), either("b"), width, height, is_bgr(), grey_out(), hist_out());
    QEL_BIND(m, "remain_max_gry", QelRemainMaxGry, "Running maximum: max(acc_max, img) per byte, as the new acc_max.",
             none, either("img"), width, height, is_bgr(), either_inout("acc_max"));
    QEL_BIND(m, "remain_min_gry", QelRemainMinGry, "Running minimum: min(acc_min, img) per byte, as the new acc_min.",
             none, either("img"), width, height, is_bgr(), either_inout("acc_min"));
    QEL_BIND(m, "remain_max_min_gry", QelRemainMaxMinGry,
             "Both running extremes in one pass: (acc_max, acc_min); out_max= and out_min= name arrays to update.",
             none, either("img"), width, height, is_bgr(), either_inout("acc_max", "out_max"),
             either_inout("acc_min", "out_min"));
    QEL_BIND(m, "do_sum_gry_img", QelDoSumGryImg,
             "Integral image as a flat int32 array of H*W (qel.misc reshapes it to (H, W)); 32-bit sums wrap.",
             none, grey("img"), width, height, ints_out(pixels_length()));

    // ---- rectangle statistics
    QEL_BIND(m, "center_block_mean_dif", QelCenterBlockMeanDif,
             "Mean of the rectangle x0..x1, y0..y1 minus the mean of the ring `margin` pixels around it\n"
             "(ring bounds capped at the image; a bound below 1 becomes 0).",
             returns_int, grey("img"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), i32("margin"));
    QEL_BIND(m, "gry_rect_avr", QelGryRectAvr, "Truncated mean of the rectangle x0..x1, y0..y1.",
             returns_int, grey("img"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"));
    QEL_BIND(m, "gry_min_max_in_rect", QelGryMinMaxInRect,
             "Robust (lo, hi) of the rectangle: the levels past trunc(area * ratio) pixels from either end.",
             none, grey("img"), width, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), f64("ratio", 0.0), out_value<int>(),
             out_value<int>());
    QEL_BIND(m, "max_bright_rect", QelMaxBrightRect,
             "(mean, cx, cy) of the brightest block_w x block_h block; the last possible row and column of\n"
             "block positions are never tried, and ties keep the first.",
             returns_double, grey("img"), width, height, i32("block_w"), i32("block_h"), out_value<int>(),
             out_value<int>());
    QEL_BIND(m, "estimate_img_stdev", QelEstimateImgStdev,
             "Typical local standard deviation of the pixels where mask is not 0: the median of the votes of\n"
             "(block_w + 1) x (block_h + 1) blocks stepping by half a block.",
             returns_int, grey("img"), grey("mask"), width, height, i32("block_w"), i32("block_h"));
    QEL_BIND(m, "points_rect", QelPointsRect, "Bounding box (min_x, max_x, min_y, max_y) of the points; zeros for none.",
             none, ints_in("xs").maybe_empty(), array_in<int>("ys", count_of("xs")), records_count("xs"), out_value<int>(), out_value<int>(),
             out_value<int>(), out_value<int>());
    QEL_BIND(m, "rgb_rect_avr", QelRGBRectAvr,
             "Masked mean colour (r, g, b) of the rectangle: pixels whose mask is 255 are counted, but the\n"
             "k-th counted pixel of a row takes the colour of the rectangle row's k-th pixel.",
             none, bgr("rgb"), grey("mask"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), out_value<int>(), out_value<int>(),
             out_value<int>());
    QEL_BIND(m, "get_rgb_rect_avr", QelGetRGBRectAvr, "The same as rgb_rect_avr.",
             none, bgr("rgb"), grey("mask"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), out_value<int>(), out_value<int>(),
             out_value<int>());

    // ---- split-and-merge segmentation
    py::class_<Region>(m, "Region", "One region of a split-and-merge tree (QelMergeSplit's RegionStruct).")
        .def_readonly("x", &Region::x, "start column of the region's outer contour")
        .def_readonly("y", &Region::y, "start row of the region's outer contour")
        .def_readonly("chain", &Region::chain, "the contour's chain codes (uint8)")
        .def_readonly("area", &Region::area)
        .def_readonly("perimeter", &Region::perimeter)
        .def_readonly("level", &Region::level, "255 - the threshold that found it")
        .def_readonly("enclosing_id", &Region::enclosingId, "smallest region of the same level around it, or -1")
        .def_readonly("id", &Region::id)
        .def_readonly("parent_id", &Region::parentId, "region of an earlier level around it, or -1 for a root")
        .def_readonly("child_area", &Region::childArea)
        .def("__repr__", [](const Region& r) {
            return "Region(id=" + std::to_string(r.id) + ", parent_id=" + std::to_string(r.parentId) + ", level=" +
                   std::to_string(r.level) + ", area=" + std::to_string(r.area) + ", x=" + std::to_string(r.x) +
                   ", y=" + std::to_string(r.y) + ")";
        });
    QEL_BIND(m, "merge_split", QelMergeSplit,
             "Split-and-merge segmentation: the list of Region objects in ascending order of area (the\n"
             "library's records are released for you). The argument is left alone; the library works on an\n"
             "inverted copy.",
             region_list(), grey_copy("grey"), scratch<unsigned char>([](const Call& c) { return 2 * pixels_length()(c); }),
             width, height, i32("min_area"), i32("min_contrast"), f64("split_ratio"));

    // ---- one-dimensional data
    QEL_BIND(m, "qel1d_average_filter", Qel1DAverageFilter,
             "Moving mean over 2*|half| + 1 samples (integer division); the ends repeat the first and last full\n"
             "windows. Data shorter than the window gives zeros.",
             none, ints_in("data").maybe_empty(), records_count("data"), i32("half"), ints_out(count_of("data")));
    QEL_BIND(m, "bin1d_median_filter", QelBin1DMedianFilter,
             "Moving majority of a 0/1 sequence over 2*|half| + 1 samples.",
             none, ints_in("data").maybe_empty(), records_count("data"), i32("half"), ints_out(count_of("data")));
    QEL_BIND(m, "data_avr_and_dev_and_return_max", QelDataAvrAndDevAndReturnMax,
             "(largest, mean, deviation) of int data; zeros for no data.",
             returns_int, ints_in("data").maybe_empty(), records_count("data"), out_value<double>(), out_value<double>());
    QEL_BIND(m, "data_avr_and_dev_and_return_sum", QelDataAvrAndDevAndReturnSum,
             "(sum wrapped to 32 bits, mean, deviation) of int data; zeros for no data.",
             returns_int, ints_in("data").maybe_empty(), records_count("data"), out_value<double>(), out_value<double>());
    QEL_BIND(m, "data_avr_and_dif", QelDataAvrAndDif, "(mean, mean absolute deviation) of int data.",
             none, ints_in("data").maybe_empty(), records_count("data"), out_value<double>(), out_value<double>());
    QEL_BIND(m, "data_max_data_pos", QelDataMaxDataPos, "Index of the first largest value; 0 for no data.",
             returns_int, ints_in("data").maybe_empty(), records_count("data"));
    QEL_BIND(m, "data_max_data_value", QelDataMaxDataValue, "The largest value; 0 for no data.",
             returns_int, ints_in("data").maybe_empty(), records_count("data"));
    QEL_BIND(m, "data_max_avr_and_pos_in_moving_window", QelDataMaxAvrAndPosInMovingWindow,
             "(max_mean, pos) of the window of w samples with the largest sum; pos is the middle of a run of\n"
             "equal windows.",
             refuses("no window: the data is empty or shorter than w, or w < 1"), ints_in("data").maybe_empty(), records_count("data"),
             i32("w"), out_value<double>(), out_value<int>());
    QEL_BIND(m, "data_max_dev_and_pos_in_moving_window", QelDataMaxDevAndPosInMovingWindow,
             "(max_dev, pos) of the window of w samples with the largest spread about its own mean.",
             refuses("no window: the data is empty or shorter than w, or w < 1"), doubles_in("data").maybe_empty(), records_count("data"),
             i32("w"), out_value<double>(), out_value<int>());
    QEL_BIND(m, "data_max_dif_and_pos_in_moving_window", QelDataMaxDifAndPosInMovingWindow,
             "(max_range, pos) of the window of w samples with the largest max - min.",
             refuses("no window: the data is empty or shorter than w, or w < 1"), doubles_in("data").maybe_empty(), records_count("data"),
             i32("w"), out_value<double>(), out_value<int>());
    QEL_BIND(m, "data_linear_interpolattion", QelDataLinearInterpolattion,
             "The data resampled to n_out values by linear interpolation (truncated to int).",
             refuses("resampling needs at least 2 input and 2 output values"), ints_in("data").maybe_empty(), records_count("data"),
             ints_out(n_out), i32("n_out"));
    QEL_BIND(m, "data_find_peaks", QelDataFindPeaks,
             "Up to max_peaks peaks, highest first, as (values, positions) arrays of max_peaks entries (0 once\n"
             "every sample is excluded); samples within `half` of a peak are excluded. At most 4096 samples.",
             refuses("peak picking takes at most 4096 samples"), doubles_in("data").maybe_empty(), records_count("data"), i32("half"),
             array_out<double>(peaks), ints_out(peaks), i32("max_peaks").check(at_least("max_peaks", 0)));
    QEL_BIND(m, "p_data_delete_by_weight_return_num", QelpDataDeleteByWeightReturnNum,
             "Keeps, in order, the (value, weight) pairs with min_weight <= weight <= max_weight: returns\n"
             "(count, values, weights), both arrays zeroed from count on.",
             returns_int, returned(ints_in("values").maybe_empty()), returned(array_in<int>("weights", count_of("values"))), records_count("values"),
             i32("min_weight"), i32("max_weight"));
}

}  // namespace qelpy
