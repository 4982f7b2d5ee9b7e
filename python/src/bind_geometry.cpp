// Bindings of qel/geometry.h: rotation, quarter turns, flips, shifts and pasting; resizing;
// projections and their bar charts.
#include "convert.h"

namespace qelpy {

namespace {

ImageIn either(const char* name, int group = 0) { return grey_or_bgr(name, group); }
ImageInOut either_inout(const char* name, int group = 0) {
    ImageInOut r = grey_inout(name, group);
    r.channels = -1;
    return r;
}

// Result sizes.
const ShapeFn turned = [](const Call& c) { return Shape{c.knownDims(0).width, c.knownDims(0).height}; };
ShapeFn divided(int by) {
    return [by](const Call& c) { return Shape{c.knownDims(0).height / by, c.knownDims(0).width / by}; };
}
const ShapeFn doubled = [](const Call& c) { return Shape{2 * c.knownDims(0).height, 2 * c.knownDims(0).width}; };
const ShapeFn stepped = [](const Call& c) {
    return Shape{c.knownDims(0).height / c.integer("step_y"), c.knownDims(0).width / c.integer("step_x")};
};
Scalar<int> step(const char* name) { return i32(name).check(at_least(name, 1)); }

// A result whose size the caller chooses: image group 1, sized by dst_width and dst_height.
SizeArg dst_width() { return width_arg("dst_width", 1); }
SizeArg dst_height() { return height_arg("dst_height", 1); }

// A 4-bytes-a-pixel image, (H, W, 4) uint8.
struct Image32In : Role {
    using cpp = unsigned char*;
    int index = -1;
    py::array array;
    void describe(Signature& s) { index = s.add("src", false, true); }
    void load(Call& c) {
        array = c.buffer(c.arg(index), "src", py::dtype::of<std::uint8_t>(), "uint8");
        if (array.ndim() != 3 || array.shape(2) != 4 || array.shape(0) < 1 || array.shape(1) < 1) {
            c.valueError("'src' must be a 4-bytes-a-pixel image (H, W, 4), got shape " + shapeText(array));
        }
        Dims& d = c.dims(0);
        d.width = static_cast<int>(array.shape(1));
        d.height = static_cast<int>(array.shape(0));
        d.owner = "src";
        c.addInput(array, "src");
    }
    unsigned char* value(Call&) { return static_cast<unsigned char*>(const_cast<void*>(array.data())); }
};

// An int the library reads and writes back through a pointer: returned with its new value.
struct IntInOut : Scalar<int> {
    using cpp = int*;
    int* value(Call&) { return &v; }
    void finish(Call& c) { c.results.push_back(py::int_(v)); }
};
IntInOut int_inout(const char* name) {
    IntInOut r;
    r.name = name;
    return r;
}

// The bar charts of a range of a profile read prj[x0..x1].
void range_of_profile(Call& c) {
    const int x0 = c.integer("x0"), x1 = c.integer("x1"), n = c.integer("prj.count");
    if (x0 < 0 || x1 < x0 || x1 >= n) {
        c.valueError("x0..x1 = " + std::to_string(x0) + ".." + std::to_string(x1) + " must be a range of indices of 'prj' (" +
                     std::to_string(n) + " entries)");
    }
}

const auto hidden_int = out_value<int>(0, false);

// QelRotateImgByCCS hands out a new buffer the caller frees with delete[]: the array owns it.
py::array rotate_img_by_ccs(const py::object& src, double degrees) {
    Signature sig;
    sig.add("src", false, true);
    Call c("rotate_img_by_ccs", sig, py::make_tuple(src), py::dict());
    const py::array a = c.image(src, "src", 0, 0);
    int newWidth = 0;
    int newHeight = 0;
    unsigned char* pixels = nullptr;
    {
        py::gil_scoped_release release;
        pixels = QelRotateImgByCCS(static_cast<unsigned char*>(const_cast<void*>(a.data())),
                                   static_cast<int>(a.shape(1)), static_cast<int>(a.shape(0)), degrees, &newWidth,
                                   &newHeight);
    }
    if (pixels == nullptr) c.valueError("refused: the rotated image could not be allocated or is too large");
    py::capsule owner(pixels, [](void* p) { delete[] static_cast<unsigned char*>(p); });
    return py::array(py::dtype::of<std::uint8_t>(), std::vector<py::ssize_t>{newHeight, newWidth}, pixels, owner);
}

}  // namespace

void bind_geometry(py::module_ m) {
    // ---- rotation
    m.def("rotate_img_by_ccs", &rotate_img_by_ccs, py::arg("src"), py::arg("degrees"),
          "rotate_img_by_ccs(src, degrees)\n\nA new grey image of src rotated about its top-left pixel (positive "
          "degrees turn clockwise as displayed), just large enough for the four rotated corners; factors in "
          "1024ths, so 90 degrees is not an exact quarter turn.\n\nC++: QelRotateImgByCCS\n");
    QEL_BIND(m, "copy_rect_from_rotate_ccs", QelCopyRectFromRotateCCS,
             "dst_height x dst_width rectangle sampled bilinearly along axes turned by degrees from (x0, y0).",
             none, grey("src"), width, height, i32("x0"), i32("y0"), f64("degrees"), grey_out(1), dst_width(),
             dst_height());
    QEL_BIND(m, "copy_rect_from_rotate_ccs_fill", QelCopyRectFromRotateCCS,
             "(filled, dst): copy_rect_from_rotate_ccs with samples leaving the source set to fill; filled is\n"
             "True when any was.",
             returns_bool, grey("src"), width, height, i32("x0"), i32("y0"), f64("degrees"), i32("fill"), grey_out(1),
             dst_width(), dst_height());
    QEL_BIND(m, "rgb_copy_rect_from_rotate_ccs", QelRgbCopyRectFromRotateCCS,
             "copy_rect_from_rotate_ccs on BGR images.",
             none, bgr("src"), width, height, i32("x0"), i32("y0"), f64("degrees"), bgr_out(1), dst_width(),
             dst_height());
    QEL_BIND(m, "rgb_copy_rect_from_rotate_ccs_fill", QelRgbCopyRectFromRotateCCS,
             "(filled, dst): copy_rect_from_rotate_ccs_fill on BGR images.",
             returns_bool, bgr("src"), width, height, i32("x0"), i32("y0"), f64("degrees"), i32("fill"), bgr_out(1),
             dst_width(), dst_height());
    QEL_BIND(m, "copy_rect_from_rotate_and_shift_fast", QelCopyRectFromRotateAndShiftFast,
             "Rotated and sheared rectangle with nearest samples (shear_degrees = degrees + 90: no shear).",
             none, grey("src"), width, height, i32("x0"), i32("y0"), f64("degrees"), f64("shear_degrees"),
             grey_out(1), dst_width(), dst_height());

    // ---- quarter turns, flips, half turn
    QEL_BIND(m, "img_rotate90degree_ccs", QelImgRotate90DegreeCCS,
             "Exact counter-clockwise quarter turn of a grey or BGR image.",
             none, either("src"), width, height, is_bgr(), like_out().sized(turned));
    QEL_BIND(m, "img_rotate90degree_cs", QelImgRotate90DegreeCS, "Exact clockwise quarter turn of a grey or BGR image.",
             none, either("src"), width, height, is_bgr(), like_out().sized(turned));
    ImageOut turned32 = image_out(4, 0).sized(turned);
    QEL_BIND(m, "rgb32rotate90degree", QelRGB32Rotate90Degree,
             "Quarter turn of an (H, W, 4) image, clockwise or counter-clockwise.",
             none, Image32In{}, width, height, flag("clockwise"), turned32);
    QEL_BIND(m, "flip_horizontal", QelFlipHorizontal, "Each row of a grey image mirrored.",
             none, grey_inout("img"), width, height);
    QEL_BIND(m, "flip_vertical", QelFlipVertical, "Grey or BGR image upside down.",
             none, either("src"), width, height, is_bgr(), like_out());
    QEL_BIND(m, "flip_vertical_in_place", QelFlipVertical,
             "Grey or BGR image upside down by swapping rows (out=img turns img itself).",
             none, either_inout("img"), width, height, is_bgr());
    QEL_BIND(m, "reverse_img", QelReverseImg, "Half turn of a grey image.", none, grey("src"), width, height,
             grey_out());

    // ---- shifts and pasting
    QEL_BIND(m, "image_shift", QelImageShift,
             "Image moved by (dx, dy) as one strip of bytes: the |dy| rows vacated keep what out held (zeros\n"
             "for a new result), the |dx| pixels vacated in each row become 0. out= may be src.",
             none, either("src"), width, height, is_bgr(), i32("dx"), i32("dy"), like_out().aliasing());
    QEL_BIND(m, "shift_x_per_row_fast", QelShiftXPerRowFast,
             "Horizontal shear with nearest samples; columns not written stay as out held them.",
             none, grey("src"), width, height, f64("shear"), grey_out());
    QEL_BIND(m, "shift_x_per_row_fine", QelShiftXPerRowFine, "Horizontal shear, linear between source columns.",
             none, grey("src"), width, height, f64("shear"), grey_out());
    QEL_BIND(m, "shift_img2based_img1", QelShiftImg2BasedImg1,
             "(difference, dst, best_dx, best_dy): img2 aligned onto img1 by the shift within max_dx, max_dy\n"
             "that best matches them inside rect (left, top, right, bottom).",
             returns_int, either("img1"), either("img2"), like_out(), width, height, is_bgr(), i32("max_dx"),
             i32("max_dy"), rect_in("rect"), out_value<int>(), out_value<int>());
    QEL_BIND(m, "paste_gry_img2res_img", QelPasteGryImg2ResImg,
             "Copy of big_img with small_img pasted at (x0, y0); parts outside are dropped.",
             none, grey("small_img"), width, height, grey_inout("big_img", 1), width_of(1), height_of(1), i32("x0"),
             i32("y0"));
    QEL_BIND(m, "paste_gry_img2rgb_img", QelPasteGryImg2RGBImg,
             "Copy of the BGR big_img with the grey small_img pasted at (x0, y0) into all three bytes.",
             none, grey("small_img"), width, height, bgr_inout("big_img", 1), width_of(1), height_of(1), i32("x0"),
             i32("y0"));
    QEL_BIND(m, "paste_rgb_img2res_img", QelPasteRGBImg2ResImg,
             "Copy of the BGR big_img with the BGR small_img pasted at (x0, y0).",
             none, bgr("small_img"), width, height, bgr_inout("big_img", 1), width_of(1), height_of(1), i32("x0"),
             i32("y0"));

    // ---- resizing
    QEL_BIND(m, "gry_img_bilinear_interpolattion_fast", QelGryImgBilinearInterpolattionFast,
             "Bilinear resize to dst_height x dst_width in 16.16 fixed point (truncating).",
             none, grey("src"), width, height, grey_out(1), dst_width(), dst_height());
    QEL_BIND(m, "gry_img_bilinear_interpolattion_std", QelGryImgBilinearInterpolattionStd,
             "Bilinear resize to dst_height x dst_width in double precision (truncating).",
             none, grey("src"), width, height, grey_out(1), dst_width(), dst_height());
    QEL_BIND(m, "rgb_img_bilinear_interpolattion_fast", QelRgbImgBilinearInterpolattionFast,
             "gry_img_bilinear_interpolattion_fast on each byte of a BGR image.",
             none, bgr("src"), width, height, bgr_out(1), dst_width(), dst_height());
    QEL_BIND(m, "shrink_gry_img2x2by_avr", QelShrinkGryImg2x2ByAvr, "Halved by the mean of each 2 x 2 block.",
             none, grey("src"), width, height, grey_out().sized(divided(2)));
    QEL_BIND(m, "shrink_gry_img2x2by_extract", QelShrinkGryImg2x2ByExtract,
             "Halved by taking the top-left pixel of each 2 x 2 block.",
             none, grey("src"), width, height, grey_out().sized(divided(2)), hidden_int, hidden_int);
    QEL_BIND(m, "shrink_gry_img4x4by_avr", QelShrinkGryImg4x4ByAvr, "Quartered by the mean of each 4 x 4 block.",
             none, grey("src"), width, height, grey_out().sized(divided(4)), hidden_int, hidden_int);
    QEL_BIND(m, "shrink_gry_img4x4by_extract", QelShrinkGryImg4x4ByExtract,
             "Quartered by taking the top-left pixel of each 4 x 4 block.",
             none, grey("src"), width, height, grey_out().sized(divided(4)), hidden_int, hidden_int);
    QEL_BIND(m, "shrink_gry_img_by_extract", QelShrinkGryImgByExtract,
             "Every step_x-th column of every step_y-th row.",
             none, grey("src"), width, height, step("step_x"), step("step_y"), grey_out().sized(stepped));
    QEL_BIND(m, "shrink_gry_img_by_median", QelShrinkGryImgByMedian,
             "Block medians into dst_height x dst_width.",
             none, grey("src"), width, height, grey_out(1), dst_width(), dst_height());
    QEL_BIND(m, "shrink_img_by_avr", QelShrinkImgByAvr,
             "Truncated mean of each step_x x step_y block (per channel for BGR).",
             none, either("src"), is_bgr(), width, height, step("step_x"), step("step_y"), like_out().sized(stepped));
    QEL_BIND(m, "zoom_gry_img2x2", QelZoomGryImg2x2, "Doubled in both directions, odd pixels the mean of their neighbours.",
             none, grey("src"), width, height, grey_out().sized(doubled));
    QEL_BIND(m, "zoom_rgb_img2x2", QelZoomRGBImg2x2, "zoom_gry_img2x2 on each byte of a BGR image.",
             none, bgr("src"), width, height, bgr_out().sized(doubled));
    QEL_BIND(m, "rect_resize_x4", QelRectResizeX4,
             "(left, right, top, bottom) adjusted: the width to a multiple of 4 (at most max_width) about the\n"
             "centre, the height cut to max_height - 2 when it reaches that.",
             none, i32("image_width"), fixed(0), i32("max_width"), i32("max_height"), int_inout("left"),
             int_inout("right"), int_inout("top"), int_inout("bottom"));

    // ---- projections
    QEL_BIND(m, "gry_img_prj_xy", QelGryImgPrjXY, "(prj_x, prj_y): column and row sums.",
             none, grey("img"), width, height, ints_out(width_length()), ints_out(height_length()));
    QEL_BIND(m, "gry_img_prj_xy_in_rect", QelGryImgPrjXYInRect,
             "(prj_x, prj_y): column and row sums of the rectangle, zero outside it.",
             none, grey("img"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), ints_out(width_length()),
             ints_out(height_length()));
    QEL_BIND(m, "bin_img_prj_xy_in_rect", QelBinImgPrjXYInRect,
             "(prj_x, prj_y): non-zero pixels per column and row of the rectangle, zero outside it.",
             none, grey("img"), width, height, QEL_RECT_INSIDE("x0", "x1", "y0", "y1"), ints_out(width_length()),
             ints_out(height_length()));
    QEL_BIND(m, "rgb_img_prj2x", QelRGBImgPrj2X, "(prj_r, prj_g, prj_b): column sums of each channel of a BGR image.",
             none, bgr("rgb"), width, height, ints_out(width_length()), ints_out(width_length()),
             ints_out(width_length()));
    QEL_BIND(m, "rgb_img_prj2x_weighted", QelRGBImgPrj2X, "Column sums of (B + G + 2R) >> 2 of a BGR image.",
             none, bgr("rgb"), width, height, ints_out(width_length()));
    QEL_BIND(m, "draw_prj_x", QelDrawPrjX,
             "Copy of img with prj drawn as bars from the bottom row, one per column, scaled between its\n"
             "minimum and maximum.",
             none, grey_inout("img"), width, height, ints_in("prj").maybe_empty(), records_count("prj"), i32("colour"));
    QEL_BIND(m, "draw_prj_x_range", QelDrawPrjX, "draw_prj_x for the columns x0..x1 only, scaled on prj[x0..x1].",
             none, grey_inout("img"), width, height, ints_in("prj").maybe_empty(), i32("x0"), i32("x1").check(range_of_profile),
             i32("colour"));
    QEL_BIND(m, "draw_prj_x_min_v0", QelDrawPrjXMinV0, "draw_prj_x with the minimum fixed at 0.",
             none, grey_inout("img"), width, height, ints_in("prj").maybe_empty(), records_count("prj"), i32("colour"));
    QEL_BIND(m, "draw_prj_y", QelDrawPrjY, "Copy of img with prj drawn as bars from column 0, one per row.",
             none, grey_inout("img"), width, height, ints_in("prj").maybe_empty(), records_count("prj"), i32("colour"));
    QEL_BIND(m, "draw_prj_y_min_v0", QelDrawPrjYMinV0, "draw_prj_y with the minimum fixed at 0.",
             none, grey_inout("img"), width, height, ints_in("prj").maybe_empty(), records_count("prj"), i32("colour"));
}

}  // namespace qelpy
