// Bindings of qel/color.h: whole-frame conversions, rectangle copies, channels and fields.
// Camera frames are flat uint8 arrays (any C-contiguous array of enough bytes) with their width
// and height given as arguments; BGR and grey images are (H, W, 3) and (H, W) arrays.
#include "convert.h"

namespace qelpy {

namespace {

// Bytes of a whole camera frame of the group-0 size.
long long w(const Call& c) { return c.knownDims(0).width; }
long long h(const Call& c) { return c.knownDims(0).height; }
const LengthFn cbycry_bytes = [](const Call& c) { return w(c) * h(c) * 2; };
const LengthFn yuv420_bytes = [](const Call& c) { return w(c) * h(c) + 2 * (w(c) / 2) * (h(c) / 2); };
const LengthFn yuv422p_bytes = [](const Call& c) { return w(c) * h(c) + 2 * (w(c) / 2) * h(c); };

BytesIn cbycry(const char* name = "frame") { return bytes_in(name, cbycry_bytes, "a CbYCrY frame of that size"); }
BytesIn yuv420p(const char* name = "frame") { return bytes_in(name, yuv420_bytes, "a YUV 4:2:0 planar frame of that size"); }
BytesIn yuv420sp(const char* name = "frame") {
    return bytes_in(name, yuv420_bytes, "a YUV 4:2:0 semi-planar frame of that size");
}
BytesIn yuv422p(const char* name = "frame") { return bytes_in(name, yuv422p_bytes, "a YUV 4:2:2 planar frame of that size"); }

// Rectangle sizes: whole, halved (truncated) and quartered (rounded up).
int rw(const Call& c) { return c.integer("x2") - c.integer("x1") + 1; }
int rh(const Call& c) { return c.integer("y2") - c.integer("y1") + 1; }
const ShapeFn rect = [](const Call& c) { return Shape{rh(c), rw(c)}; };
const ShapeFn rect_half = [](const Call& c) { return Shape{rh(c) / 2, rw(c) / 2}; };
const ShapeFn rect_quarter = [](const Call& c) { return Shape{(rh(c) + 3) / 4, (rw(c) + 3) / 4}; };

// A field holds the rows of one parity: height / 2, plus one for the even field of an odd height.
const ShapeFn field = [](const Call& c) {
    const Dims& d = c.knownDims(0);
    return Shape{d.height / 2 + (!c.integer("odd") && d.height % 2 ? 1 : 0), d.width};
};
const ShapeFn merged = [](const Call& c) {
    return Shape{c.knownDims(0).height + c.knownDims(1).height, c.knownDims(0).width};
};
void same_kind_of_fields(Call& c) {
    const Dims& a = c.knownDims(0);
    const Dims& b = c.knownDims(1);
    if (a.width != b.width || a.channels != b.channels) {
        c.valueError("'field_a' and 'field_b' must have the same width and the same kind (grey or BGR)");
    }
}

const char* const kOddWidth = "the width is odd";
const char* const kOddSize = "the width or the height is odd";
const char* const kOddRect = "x1, the rectangle's width, y1 or its height is odd";

Scalar<int> channel() { return i32("channel").check(in_range("channel", 0, 2)); }

}  // namespace

void bind_color(py::module_ m) {
    // ---- whole-frame conversions
    QEL_BIND(m, "rgb2gry", QelRGB2Gry, "Grey image of a BGR image: (B*468 + G*2404 + R*1225) >> 12.",
             none, bgr("rgb"), width, height, grey_out());
    QEL_BIND(m, "rgb2gry_invert", QelRGB2GryInvert, "255 minus the grey image of rgb2gry.",
             none, bgr("rgb"), width, height, grey_out());
    QEL_BIND(m, "rgbs_dif2gry", QelRGBsDif2Gry, "Colourfulness: max(B, G, R) - min(B, G, R) per pixel.",
             none, bgr("rgb"), width, height, grey_out());
    QEL_BIND(m, "select_rgb2gry", QelSelectRGB2Gry, "Byte `channel` (0 blue, 1 green, 2 red) of each pixel.",
             none, bgr("rgb"), width, height, channel(), grey_out());
    QEL_BIND(m, "cbycry2gry", QelCbYCrY2Gry, "Y bytes of a CbYCrY frame as a (height, width) grey image.",
             none, cbycry(), width_arg(), height_arg(), grey_out());
    QEL_BIND(m, "yuv420p2gry", QelYUV420P2Gry, "Y plane of a YUV 4:2:0 planar frame.",
             none, yuv420p(), width_arg(), height_arg(), grey_out());
    QEL_BIND(m, "yuv420sp2gry", QelYUV420SP2Gry, "Y plane of a YUV 4:2:0 semi-planar frame.",
             none, yuv420sp(), width_arg(), height_arg(), grey_out());
    QEL_BIND(m, "yuv422p2gry", QelYUV422P2Gry, "Y plane of a YUV 4:2:2 planar frame.",
             none, yuv422p(), width_arg(), height_arg(), grey_out());
    QEL_BIND(m, "cbycry2rgb", QelCbYCrY2RGB, "CbYCrY frame to a BGR image; refuses an odd width.",
             refuses(kOddWidth), cbycry(), width_arg(), height_arg(), bgr_out());
    QEL_BIND(m, "yuv420p2rgb", QelYUV420P2RGB, "YUV 4:2:0 planar frame to BGR; refuses an odd width or height.",
             refuses(kOddSize), yuv420p(), width_arg(), height_arg(), bgr_out());
    QEL_BIND(m, "yuv420sp2rgb", QelYUV420SP2RGB, "YUV 4:2:0 semi-planar frame to BGR; refuses an odd width or height.",
             refuses(kOddSize), yuv420sp(), width_arg(), height_arg(), bgr_out());
    QEL_BIND(m, "yuv422p2rgb", QelYUV422P2RGB, "YUV 4:2:2 planar frame to BGR; refuses an odd width (an odd height is converted).",
             refuses(kOddWidth), yuv422p(), width_arg(), height_arg(), bgr_out());
    QEL_BIND(m, "rgb2cbycry", QelRGB2CbYCrY, "BGR image to a flat CbYCrY frame (W x H x 2 bytes); refuses an odd width.",
             refuses(kOddWidth), bgr("rgb"), width, height, bytes_out(cbycry_bytes));
    QEL_BIND(m, "rgb2yuv420p", QelRGB2YUV420P, "BGR image to a flat YUV 4:2:0 planar frame; refuses an odd width or height.",
             refuses(kOddSize), bgr("rgb"), width, height, bytes_out(yuv420_bytes));
    QEL_BIND(m, "rgb2yuv420sp", QelRGB2YUV420SP, "BGR image to a flat YUV 4:2:0 semi-planar frame; refuses an odd width or height.",
             refuses(kOddSize), bgr("rgb"), width, height, bytes_out(yuv420_bytes));
    QEL_BIND(m, "rgb2yuv422p", QelRGB2YUV422P, "BGR image to a flat YUV 4:2:2 planar frame; refuses an odd width or height.",
             refuses(kOddSize), bgr("rgb"), width, height, bytes_out(yuv422p_bytes));

    // ---- rectangle copies of camera frames (x1..x2, y1..y2, ends included, inside the frame)
    QEL_BIND(m, "copy_yuv420p_rect2gry", QelCopyYUV420PRect2Gry, "Y samples of a rectangle of a YUV 4:2:0 planar frame.",
             none, yuv420p(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv420p_rect2rgb", QelCopyYUV420PRect2RGB, "A rectangle of a YUV 4:2:0 planar frame as BGR.",
             refuses(kOddRect), yuv420p(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect));
    QEL_BIND(m, "copy_yuv420p_rect2red_img", QelCopyYUV420PRect2RedImg, "Red image of a rectangle of a YUV 4:2:0 planar frame.",
             refuses(kOddRect), yuv420p(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv420p_rect2red_img_shrink2", QelCopyYUV420PRect2RedImgShrink2, "Half-resolution red image of a rectangle.",
             refuses(kOddRect), yuv420p(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect_half));
    QEL_BIND(m, "copy_yuv420p_scale4_rect", QelCopyYUV420PScale4Rect, "Every fourth pixel of every fourth row of a rectangle, as BGR.",
             refuses("the frame size, x1, the rectangle's width, y1 or its height is odd"), yuv420p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect_quarter));
    QEL_BIND(m, "copy_yuv420p_rect", QelCopyYUV420PRect, "A rectangle as BGR and as grey: returns (rgb, grey).",
             refuses("the frame size, x1, the rectangle's width, y1 or its height is odd"), yuv420p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect).named("rgb_out"), grey_out().sized(rect).named("grey_out"));

    QEL_BIND(m, "copy_yuv420sp_rect2gry", QelCopyYUV420SPRect2Gry, "Y samples of a rectangle of a YUV 4:2:0 semi-planar frame.",
             none, yuv420sp(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv420sp_rect2rgb", QelCopyYUV420SPRect2RGB, "A rectangle of a YUV 4:2:0 semi-planar frame as BGR.",
             refuses(kOddRect), yuv420sp(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect));
    QEL_BIND(m, "copy_yuv420sp_rect2red_img", QelCopyYUV420SPRect2RedImg, "Red image of a rectangle of a YUV 4:2:0 semi-planar frame.",
             refuses(kOddRect), yuv420sp(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv420sp_rect2red_img_shrink2", QelCopyYUV420SPRect2RedImgShrink2, "Half-resolution red image of a rectangle.",
             refuses(kOddRect), yuv420sp(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect_half));
    QEL_BIND(m, "copy_yuv420sp_scale4_rect", QelCopyYUV420SPScale4Rect, "Every fourth pixel of every fourth row of a rectangle, as BGR.",
             refuses("the frame size, x1, the rectangle's width, y1 or its height is odd"), yuv420sp(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect_quarter));
    QEL_BIND(m, "copy_yuv420sp_rect", QelCopyYUV420SPRect,
             "A rectangle as BGR and as grey: returns (rgb, grey).",
             refuses("the frame size, x1, the rectangle's width, y1 or its height is odd"), yuv420sp(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect).named("rgb_out"), grey_out().sized(rect).named("grey_out"));
    QEL_BIND(m, "copy_yuv420sp_rect_sub_frame", QelCopyYUV420SPRect,
             "YUV 4:2:0 semi-planar sub-frame of a rectangle (flat, rect width x rect height x 3 / 2 bytes).",
             refuses(kOddRect), yuv420sp(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"),
             bytes_out([](const Call& c) { return static_cast<long long>(rw(c)) * rh(c) * 3 / 2; }));

    QEL_BIND(m, "copy_yuv422p_rect2gry", QelCopyYUV422PRect2Gry, "Y samples of a rectangle of a YUV 4:2:2 planar frame.",
             none, yuv422p(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv422p_rect2rgb", QelCopyYUV422PRect2RGB, "A rectangle of a YUV 4:2:2 planar frame as BGR.",
             refuses("the frame width, x1 or the rectangle's width is odd"), yuv422p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect));
    QEL_BIND(m, "copy_yuv422p_rect2red_img", QelCopyYUV422PRect2RedImg, "Red image of a rectangle of a YUV 4:2:2 planar frame.",
             refuses("the frame width, x1 or the rectangle's width is odd"), yuv422p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_yuv422p_rect2red_img_shrink2", QelCopyYUV422PRect2RedImgShrink2, "Half-resolution red image of a rectangle.",
             refuses("the frame width, x1 or the rectangle's width is odd"), yuv422p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect_half));
    QEL_BIND(m, "copy_yuv422p_rect", QelCopyYUV422PRect, "A rectangle as BGR and as grey: returns (rgb, grey).",
             refuses("the frame width or height, x1 or the rectangle's width is odd"), yuv422p(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect).named("rgb_out"), grey_out().sized(rect).named("grey_out"));
    QEL_BIND(m, "copy_yuv422p_scale4_rect", QelCopyYUV422PScale4Rect, "Every fourth pixel of every fourth row, per-row chroma, as BGR.",
             refuses("the frame width or x1 is odd, or the rectangle's sides are not multiples of 4"), yuv422p(), width_arg(),
             height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect_quarter));

    QEL_BIND(m, "copy_cbycry_rect_sub_frame", QelCopyCbYCrYRect,
             "Raw copy of a rectangle of a CbYCrY frame, 2 bytes per pixel (flat).",
             none, cbycry(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"),
             bytes_out([](const Call& c) { return static_cast<long long>(rw(c)) * rh(c) * 2; }));
    QEL_BIND(m, "copy_cbycry_rect2gry", QelCopyCbYCrYRect2Gry, "Y bytes of a rectangle of a CbYCrY frame.",
             none, cbycry(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_cbycry_rect2rgb", QelCopyCbYCrYRect2RGB, "A rectangle of a CbYCrY frame as BGR.",
             refuses("x1 or the rectangle's width is odd"), cbycry(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect));
    QEL_BIND(m, "copy_cbycry_rect", QelCopyCbYCrYRect,
             "A rectangle of a CbYCrY frame as BGR and as grey: returns (rgb, grey).",
             refuses("x1 or the rectangle's width is odd"), cbycry(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect).named("rgb_out"), grey_out().sized(rect).named("grey_out"));
    QEL_BIND(m, "copy_cbycry_rect2red_img", QelCopyCbYCrYRect2RedImg, "Red image of a rectangle of a CbYCrY frame.",
             none, cbycry(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_cbycry_rect2red_img_shrink2", QelCopyCbYCrYRect2RedImgShrink2, "Half-resolution red image of a CbYCrY rectangle.",
             none, cbycry(), width_arg(), height_arg(), QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect_half));
    QEL_BIND(m, "copy_cbycry_scale4_rect", QelCopyCbYCrYScale4Rect, "Every fourth pixel of every fourth row of a CbYCrY rectangle, as BGR.",
             refuses("x1 or the rectangle's width is odd"), cbycry(), width_arg(), height_arg(),
             QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect_quarter));

    // ---- rectangle copies of grey and BGR images
    QEL_BIND(m, "copy_gry_rect", QelCopyGryRect, "Copy of a rectangle of a grey image.",
             none, grey("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_rgb_rect", QelCopyRGBRect,
             "Copy of a rectangle of a BGR image.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect));
    QEL_BIND(m, "copy_rgb_rect_with_gry", QelCopyRGBRect,
             "Copy of a rectangle of a BGR image and its grey image (byte0*306 + byte1*601 + byte2*116) >> 10\n"
             "(306 on blue, unlike rgb2gry: intended): returns (rgb, grey). The two-output QelCopyRGBRect.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect).named("rgb_out"),
             grey_out().sized(rect).named("grey_out"));
    QEL_BIND(m, "copy_rgb_rect2gry", QelCopyRGBRect2Gry,
             "Grey image of a rectangle of a BGR image with the weights of copy_rgb_rect_with_gry.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect));
    QEL_BIND(m, "copy_rgb_rect2gry_planes",
             QelCopyRGBRect2Gry,
             "The red, green and blue planes of a rectangle of a BGR image: returns (red, green, blue).\n"
             "The three-plane QelCopyRGBRect2Gry.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), grey_out().sized(rect).named("red_out"),
             grey_out().sized(rect).named("green_out"), grey_out().sized(rect).named("blue_out"));
    QEL_BIND(m, "copy_rgb_scale4_rect", QelCopyRGBScale4Rect, "Every fourth pixel of every fourth row of a rectangle of a BGR image.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), bgr_out().sized(rect_quarter));
    QEL_BIND(m, "select_rgb_rect2gry", QelSelectRGBRect2Gry, "Byte `channel` of each pixel of a rectangle of a BGR image.",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), channel(), grey_out().sized(rect));
    QEL_BIND(m, "copy_rgb2gry_bin_img", QelCopyRGB2GryBinImg,
             "Grey copy of a rectangle of a BGR image and a binary image of it by colour (object colour: the\n"
             "bright or dark class's mean colour): returns (grey, binary).",
             none, bgr("image"), width, height, QEL_RECT_INSIDE("x1", "x2", "y1", "y2"), flag("object_is_bright"),
             grey_out().sized(rect).named("grey_out"), grey_out().sized(rect).named("binary_out"), out_value<int>(0, false),
             out_value<int>(0, false));

    // ---- channels and interlaced fields
    QEL_BIND(m, "extract_max_rgb2gry_img", QelExtractMaxRGB2GryImg, "max(B, G, R) of each pixel.",
             none, bgr("rgb"), width, height, grey_out());
    QEL_BIND(m, "extract_one_channel_from_rgb", QelExtractOneChannelFromRGB, "Byte `channel` (0 blue, 1 green, 2 red) of each pixel.",
             none, bgr("rgb"), width, height, channel(), grey_out());
    QEL_BIND(m, "replace_one_channel_in_rgb", QelReplaceOneChannelInRGB, "Copy of rgb with byte `channel` of each pixel set from grey.",
             none, bgr_inout("rgb"), width, height, channel(), grey("grey"));
    QEL_BIND(m, "or_one_channel_in_rgb", QelOROneChannelInRGB, "Copy of rgb with grey ORed bitwise into byte `channel` of each pixel.",
             none, bgr_inout("rgb"), width, height, channel(), grey("grey"));
    QEL_BIND(m, "gry2rgb_img", QelGry2RGBImg, "Interleaves red, green and blue planes (in that order) into a BGR image.",
             none, grey("red"), grey("green"), grey("blue"), width, height, bgr_out());
    QEL_BIND(m, "extract_one_field", QelExtractOneField,
             "The rows of one parity (odd: 1, 3, ...; else 0, 2, ...) of a grey or BGR frame.",
             none, grey_or_bgr("frame"), width, height, is_bgr(), flag("odd"), like_out().sized(field), out_value<int>(0, false));
    QEL_BIND(m, "split_odd_even_field", QelSplitOddEvenField, "The even rows of a grey or BGR frame, followed by its odd rows.",
             none, grey_or_bgr("frame"), width, height, is_bgr(), like_out());
    QEL_BIND(m, "merge_odd_even_field", QelMergeOddEvenField,
             "Interleaves two fields into a frame of their rows together: field_b's rows to even rows, field_a's\n"
             "to odd rows shifted sideways by `shift` (see the C++ header for the RGB quirk with shift <= 0).\n"
             "Pixels the library leaves unwritten are 0 (or out='s contents).",
             none, grey_or_bgr("field_a", 0), grey_or_bgr("field_b", 1), height_of(0), height_of(1), width, is_bgr(),
             i32("shift", 0).check(same_kind_of_fields), like_out().sized(merged), out_value<int>(0, false));
}

}  // namespace qelpy
