// Bindings of qel/draw.h: lines, arrows, crosses, rectangles, circles and polygons; digits, font text
// and the mark. Every drawing function returns a copy of its image with the drawing (out=image draws
// into the image itself). Colours of BGR images are given as red, green, blue.
#include "convert.h"

#include <cstring>
#include <string>
#include <vector>

namespace qelpy {

namespace {

// The three colour arguments of the RGB functions, in the library's order.
#define QEL_RGB(prefix) i32(prefix "red"), i32(prefix "green"), i32(prefix "blue")

ImageInOut img() { return grey_inout("img"); }
ImageInOut rgb_img() { return bgr_inout("img"); }
ImageInOut any_img() {
    ImageInOut r = grey_inout("img");
    r.channels = -1;
    return r;
}

// Font text: two-byte GB2312 codes. A str is encoded to GB2312 here; bytes are taken as they are.
struct GbText : Role {
    using cpp = char*;
    int index = -1;
    std::string bytes;
    void describe(Signature& s) { index = s.add("text", false, true); }
    void load(Call& c) {
        py::object o = c.arg(index);
        if (py::isinstance<py::str>(o)) {
            try {
                o = o.attr("encode")("gb2312");
            } catch (py::error_already_set&) {
                c.valueError("'text' holds characters GB2312 does not encode");
            }
        }
        if (!py::isinstance<py::bytes>(o)) {
            c.typeError("'text' must be a str or GB2312-encoded bytes, got " +
                        py::str(py::type::of(o).attr("__name__")).cast<std::string>());
        }
        bytes = o.cast<std::string>();
        if (bytes.find('\0') != std::string::npos) c.valueError("'text' must not contain NUL");
    }
    char* value(Call&) { return bytes.data(); }
};

// QelChar2Wide writes two bytes for each input byte and a terminating zero.
py::bytes char2wide(const std::string& text) {
    if (text.find('\0') != std::string::npos) throw py::value_error("char2wide(): 'text' must not contain NUL");
    std::vector<char> in(text.begin(), text.end());
    in.push_back('\0');
    std::vector<char> out(2 * text.size() + 1, '\0');
    QelChar2Wide(in.data(), out.data());
    return py::bytes(out.data(), std::strlen(out.data()));
}

}  // namespace

void bind_draw(py::module_ m) {
    // ---- lines between two points
    QEL_BIND(m, "gry_line", QelGryLine,
             "Line from (x1, y1) to (x2, y2), ends clamped to the image; a slanted line skips its left end's column.",
             none, img(), width, height, i32("x1"), i32("y1"), i32("x2"), i32("y2"), i32("grey"));
    QEL_BIND(m, "rgb_line", QelRGBLine, "gry_line on a BGR image.",
             none, rgb_img(), width, height, i32("x1"), i32("y1"), i32("x2"), i32("y2"), QEL_RGB(""));

    // ---- lines given by an equation
    QEL_BIND(m, "draw_abc_line_by_color", QelDrawABCLineByColor, "The line a*x + b*y + c = 0 across the image.",
             none, img(), width, height, f64("a"), f64("b"), f64("c"), i32("grey"));
    QEL_BIND(m, "draw_abc_line_by_color_range", QelDrawABCLineByColor,
             "The ABC line over columns x_from..x_to (|b| > |a|) or rows y_from..y_to only.",
             none, img(), width, height, i32("x_from"), i32("x_to"), i32("y_from"), i32("y_to"), f64("a"), f64("b"),
             f64("c"), i32("grey"));
    QEL_BIND(m, "draw_abc_line_by_inc", QelDrawABCLineByInc, "The ABC line drawn by adding 1 (saturating at 255).",
             none, img(), width, height, f64("a"), f64("b"), f64("c"));
    QEL_BIND(m, "draw_kb_line", QelDrawKBLine, "KB line: flag 1 x = k*y + b by rows, else y = k*x + b by columns.",
             none, img(), width, height, i32("flag"), f64("k"), f64("b"), i32("grey"));
    QEL_BIND(m, "draw_kb_line_rgb", QelDrawKBLine, "draw_kb_line on a BGR image.",
             none, rgb_img(), width, height, i32("flag"), f64("k"), f64("b"), QEL_RGB(""));
    QEL_BIND(m, "draw_hough_line", QelDrawHoughLine,
             "The line x*cos(theta) + y*sin(theta) = rho (theta 45..125 by columns, else by rows).",
             none, img(), width, height, i32("rho"), i32("theta"), u8("grey"));
    QEL_BIND(m, "draw_degree_line", QelDrawDegreeLine,
             "Line through (x0, y0) at the angle (degrees, y down); row or column 0 and (x0, y0) are not drawn.",
             none, img(), width, height, i32("x0"), i32("y0"), f64("degrees"), i32("grey"));

    // ---- arrows
    QEL_BIND(m, "draw_down_arrow", QelDrawDownArrow, "Downward arrow from (x, y), tip at (x, y + length).",
             none, img(), width, height, i32("x"), i32("y"), i32("length"), i32("grey"));
    QEL_BIND(m, "draw_down_arrow_box", QelDrawDownArrow, "Broad downward arrow filling the box x1..x2, y1..y2.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "draw_down_arrow_rgb", QelDrawDownArrow, "draw_down_arrow on a BGR image.",
             none, rgb_img(), width, height, i32("x"), i32("y"), i32("length"), QEL_RGB(""));
    QEL_BIND(m, "draw_up_arrow", QelDrawUpArrow, "Upward arrow from (x, y), tip at (x, y - length).",
             none, img(), width, height, i32("x"), i32("y"), i32("length"), i32("grey"));
    QEL_BIND(m, "draw_up_arrow_box", QelDrawUpArrow, "Broad upward arrow filling the box x1..x2, y1..y2.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "draw_up_arrow_rgb", QelDrawUpArrow, "draw_up_arrow on a BGR image.",
             none, rgb_img(), width, height, i32("x"), i32("y"), i32("length"), QEL_RGB(""));
    QEL_BIND(m, "draw_left_arrow", QelDrawLeftArrow, "Leftward arrow from (x, y), tip at (x - length, y).",
             none, img(), width, height, i32("x"), i32("y"), i32("length"), i32("grey"));
    QEL_BIND(m, "draw_left_arrow_box", QelDrawLeftArrow, "Broad leftward arrow filling the box x1..x2, y1..y2.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "draw_left_arrow_rgb", QelDrawLeftArrow, "draw_left_arrow on a BGR image.",
             none, rgb_img(), width, height, i32("x"), i32("y"), i32("length"), QEL_RGB(""));
    QEL_BIND(m, "draw_right_arrow", QelDrawRightArrow, "Rightward arrow from (x, y), tip at (x + length, y).",
             none, img(), width, height, i32("x"), i32("y"), i32("length"), i32("grey"));
    QEL_BIND(m, "draw_right_arrow_box", QelDrawRightArrow, "Broad rightward arrow filling the box x1..x2, y1..y2.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "draw_right_arrow_rgb", QelDrawRightArrow, "draw_right_arrow on a BGR image.",
             none, rgb_img(), width, height, i32("x"), i32("y"), i32("length"), QEL_RGB(""));
    QEL_BIND(m, "gry_img_draw_arrow", QelGryImgDrawArrow, "Line from (x1, y1) to (x2, y2) with a cross at its end.",
             none, img(), width, height, i32("x1"), i32("y1"), i32("x2"), i32("y2"), i32("grey"));
    QEL_BIND(m, "rgb_img_draw_arrow", QelRGBImgDrawArrow,
             "BGR line from (x1, y1) to (x2, y2) with a cross three pixels thick and `size` long at its end.",
             none, rgb_img(), width, height, i32("x1"), i32("y1"), i32("x2"), i32("y2"), i32("size"), QEL_RGB(""));

    // ---- crosses
    QEL_BIND(m, "draw_gry_cross", QelDrawGryCross,
             "Cross at (x, y) (clamped one pixel in) with arms of `size`; the outermost rows and columns stay.",
             none, img(), width, height, i32("x"), i32("y"), i32("size"), u8("grey"));
    QEL_BIND(m, "draw_gry_cross_shadow", QelDrawGryCrossShadow, "draw_gry_cross over four crosses of 0 around it.",
             none, img(), width, height, i32("x"), i32("y"), i32("size"), u8("grey"));
    QEL_BIND(m, "draw_rgb_cross", QelDrawRGBCross,
             "BGR cross: its horizontal bar lies on row x (not y), as the library draws it.",
             none, rgb_img(), width, height, i32("x"), i32("y"), i32("size"), QEL_RGB(""));

    // ---- rectangles
    QEL_BIND(m, "draw_gry_rect", QelDrawGryRect, "Outline of columns x1..x2, rows y1..y2 (clamped and ordered).",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "draw_rgb_rect", QelDrawRGBRect, "draw_gry_rect on a BGR image.",
             none, rgb_img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), QEL_RGB(""));
    QEL_BIND(m, "draw_rect", QelDrawRect,
             "Rectangle outline in red, green, blue on a BGR image, or in grey on a grey image.",
             none, any_img(), width, height, is_bgr(), i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("red", 0),
             i32("green", 0), i32("blue", 0), i32("grey", 0));
    QEL_BIND(m, "fill_gry_rect", QelFillGryRect,
             "Filled rectangle; the ranges are clipped but not reordered, so an inverted one fills nothing.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("grey"));
    QEL_BIND(m, "fill_rgb_rect", QelFillRGBRect, "fill_gry_rect on a BGR image.",
             none, rgb_img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), QEL_RGB(""));
    QEL_BIND(m, "change_color_on_rect", QelChangeColorOnRect,
             "On the rectangle's outline, pixels equal to from_value become to_value.",
             none, img(), width, height, i32("x1"), i32("x2"), i32("y1"), i32("y2"), i32("from_value"),
             i32("to_value"));

    // ---- circles and polygons
    QEL_BIND(m, "draw_circle", QelDrawCircle, "Ellipse with half-axes rx and ry around (cx, cy), drawn as chords.",
             none, img(), width, height, i32("cx"), i32("cy"), i32("rx"), i32("ry"), i32("grey"));
    QEL_BIND(m, "draw_polygon", QelDrawPolygon,
             "Closed polygon through (xs[i] + dx, ys[i] + dy); with two points the second end's y is shifted\n"
             "by dx, as the library draws it.",
             none, img(), width, height, ints_in("xs").maybe_empty(), ints_in("ys", count_of("xs")),
             records_count("xs"), i32("dx", 0), i32("dy", 0), i32("grey", 255));

    // ---- digits, font text, the mark
    QEL_BIND(m, "set_number_string2gry_img", QelSetNumberString2GryImg,
             "(pen_x, img): the digits of text as 8 x 9 glyphs in grey (other characters skipped).",
             returns_int, img(), width, height, i32("x"), i32("y"), i32("spacing"), i32("grey"), text("text"));
    QEL_BIND(m, "set_number_string2rgb_img", QelSetNumberString2RGBImg,
             "(pen_x, img): digits on a BGR image; c0, c1, c2 go to bytes 0, 1, 2 (blue first), the glyph\n"
             "background is black.",
             returns_int, rgb_img(), width, height, i32("x"), i32("y"), i32("spacing"), u8("c0"), u8("c1"), u8("c2"),
             text("text"));
    QEL_BIND(m, "set_number_string20x16gry_img", QelSetNumberString20x16GryImg,
             "(pen_x, img): digits doubled to 16 x 18, foreground on background.",
             returns_int, img(), width, height, i32("x"), i32("y"), i32("spacing"), i32("background"),
             i32("foreground"), text("text"));
    QEL_BIND(m, "set_number_string20x16rgb_img", QelSetNumberString20x16RGBImg,
             "(pen_x, img): doubled digits on a BGR image.",
             returns_int, rgb_img(), width, height, i32("x"), i32("y"), i32("spacing"), QEL_RGB("background_"),
             QEL_RGB("foreground_"), text("text"));
    QEL_BIND(m, "draw_chinese_string16x16", QelDrawChineseString16x16,
             "Text (str, or GB2312 bytes) as 16 x 16 font glyphs, wrapping at the right edge. Refused when\n"
             "y >= height - 16 or the font file hzk16.dat cannot be opened.",
             refuses("the text starts too low, or the font file cannot be opened"), img(), width, height, i32("x"),
             i32("y"), i32("spacing"), i32("background"), i32("foreground"), GbText{});
    QEL_BIND(m, "draw_chinese_string16x16_rgb", QelDrawChineseString16x16,
             "draw_chinese_string16x16 on a BGR image (refused already when y >= height - 20).",
             refuses("the text starts too low, or the font file cannot be opened"), rgb_img(), width, height,
             i32("x"), i32("y"), i32("spacing"), QEL_RGB("background_"), QEL_RGB("foreground_"), GbText{});
    QEL_BIND(m, "draw_chinese_string32x32", QelDrawChineseString32x32,
             "Font glyphs doubled to 32 x 32. Refused when y >= height - 32 or without the font file.",
             refuses("the text starts too low, or the font file cannot be opened"), img(), width, height, i32("x"),
             i32("y"), i32("spacing"), i32("background"), i32("foreground"), GbText{});
    QEL_BIND(m, "draw_chinese_string32x32_rgb", QelDrawChineseString32x32,
             "draw_chinese_string32x32 on a BGR image.",
             refuses("the text starts too low, or the font file cannot be opened"), rgb_img(), width, height,
             i32("x"), i32("y"), i32("spacing"), QEL_RGB("background_"), QEL_RGB("foreground_"), GbText{});
    m.def("char2wide", &char2wide, py::arg("text"),
          "char2wide(text)\n\nFull-width GB2312 bytes of an ASCII text: each byte below 128 becomes 0xA3 and the "
          "byte + 128; other bytes are copied.\n\nC++: QelChar2Wide\n");
    QEL_BIND(m, "set_private_logo", QelSetPrivateLogo,
             "Qel's 35 x 20 mark at (x, y): grey 250, or red 250 on a BGR image; runs not wholly inside are skipped.",
             none, any_img(), width, height, is_bgr(), i32("x"), i32("y"));
}

#undef QEL_RGB

}  // namespace qelpy
