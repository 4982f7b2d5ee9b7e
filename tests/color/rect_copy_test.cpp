#include <qel.h>

#include <gtest/gtest.h>

#include "color/camera_formats.h"
#include "support/test_images.h"

namespace {

using qel_test::all_equal;
using qel_test::Bytes;
using qel_test::CameraFormat;
using qel_test::crop;
using qel_test::frame_bytes;
using qel_test::kCameraFormats;
using qel_test::random_bytes;
constexpr unsigned char kUntouched = 0xA5;

// A whole frame converted by the whole-frame functions, the reference for the copies: BGR, grey
// (Y) and red planes.
struct Whole {
    Bytes rgb, grey, red;
};

Whole convert_whole(const CameraFormat& f, Bytes& frame, int w, int h) {
    Whole out{Bytes(w * h * 3), Bytes(w * h), Bytes(w * h)};
    EXPECT_TRUE(f.toRgb(frame.data(), w, h, out.rgb.data()));
    f.toGrey(frame.data(), w, h, out.grey.data());
    for (int k = 0; k < w * h; ++k) out.red[k] = out.rgb[k * 3 + 2];
    return out;
}

// `out` holds `expected` and, after it, bytes still kUntouched.
void expect_written(const Bytes& out, const Bytes& expected) {
    ASSERT_GE(out.size(), expected.size());
    EXPECT_EQ(Bytes(out.begin(), out.begin() + expected.size()), expected);
    EXPECT_TRUE(all_equal(Bytes(out.begin() + expected.size(), out.end()), kUntouched));
}

struct Rect {
    int x1, x2, y1, y2;
    int w() const { return x2 - x1 + 1; }
    int h() const { return y2 - y1 + 1; }
};

constexpr int kW = 16, kH = 12;

// ---- agreement with the whole-frame conversions --------------------------------------------------

TEST(CameraRect, RectangleCopiesAgreeWithTheWholeFrameConversionCropped) {
    // Rectangles every camera member accepts: x1, y1 even and sizes multiples of 4.
    const Rect goodRects[] = {{0, 15, 0, 11}, {2, 9, 4, 11}, {6, 13, 2, 5}, {4, 7, 8, 11}};
    for (const CameraFormat* f : kCameraFormats) {
        SCOPED_TRACE(f->name);
        Bytes frame = random_bytes(frame_bytes(*f, kW, kH), 19);
        const Whole whole = convert_whole(*f, frame, kW, kH);
        for (const Rect& r : goodRects) {
            const int n = r.w() * r.h();
            Bytes rgb(n * 3), grey(n), rgbOnly(n * 3), red(n), half(n / 4), quarter((r.w() / 4) * (r.h() / 4) * 3);
            ASSERT_TRUE(f->rectRgbAndGrey(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, rgb.data(), grey.data()));
            EXPECT_EQ(rgb, crop(whole.rgb, kW, 3, r.x1, r.y1, r.w(), r.h()));
            EXPECT_EQ(grey, crop(whole.grey, kW, 1, r.x1, r.y1, r.w(), r.h()));
            ASSERT_TRUE(f->rectRgb(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, rgbOnly.data()));
            EXPECT_EQ(rgbOnly, rgb);
            ASSERT_TRUE(f->rectRed(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, red.data()));
            EXPECT_EQ(red, crop(whole.red, kW, 1, r.x1, r.y1, r.w(), r.h()));
            ASSERT_TRUE(f->rectRedHalf(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, half.data()));
            EXPECT_EQ(half, crop(whole.red, kW, 1, r.x1, r.y1, r.w() / 2, r.h() / 2, 2));
            ASSERT_TRUE(f->rectQuarter(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, quarter.data()));
            EXPECT_EQ(quarter, crop(whole.rgb, kW, 3, r.x1, r.y1, r.w() / 4, r.h() / 4, 4));
        }
        // Grey copies take any rectangle, odd corners too.
        Bytes grey(3 * 4);
        f->rectGrey(frame.data(), kW, kH, 3, 5, 1, 4, grey.data());
        EXPECT_EQ(grey, crop(whole.grey, kW, 1, 3, 1, 3, 4));
    }
}

// The worked sizes of the reduced copies: nothing is written past them.
TEST(CameraRect, ReducedCopiesKeepTheDocumentedPixels) {
    // An 8 x 8 rectangle from (0, 0) gives 2 x 2 pixels: (0, 0), (4, 0), (0, 4), (4, 4).
    Bytes frame = random_bytes(8 * 8 * 3 / 2, 8);
    Bytes out(2 * 2 * 3 + 3, kUntouched);
    ASSERT_TRUE(QelCopyYUV420PScale4Rect(frame.data(), 8, 8, 0, 7, 0, 7, out.data()));
    expect_written(out, crop(convert_whole(qel_test::kYuv420P, frame, 8, 8).rgb, 8, 3, 0, 0, 2, 2, 4));

    // Partial steps round up: rect width 6 keeps columns x1 and x1 + 4; rect height 2 keeps one row.
    frame = random_bytes(kW * kH * 3 / 2, 9);
    out.assign(2 * 3 + 1, kUntouched);
    ASSERT_TRUE(QelCopyYUV420SPScale4Rect(frame.data(), kW, kH, 2, 7, 4, 5, out.data()));
    expect_written(out, crop(convert_whole(qel_test::kYuv420SP, frame, kW, kH).rgb, kW, 3, 2, 4, 2, 1, 4));

    // The half red image of a 4 x 2 rectangle is 2 bytes.
    frame = random_bytes(kW * kH * 3 / 2, 10);
    const Whole whole = convert_whole(qel_test::kYuv420P, frame, kW, kH);
    out.assign(3, kUntouched);
    ASSERT_TRUE(QelCopyYUV420PRect2RedImgShrink2(frame.data(), kW, kH, 4, 7, 2, 3, out.data()));
    expect_written(out, {whole.red[2 * kW + 4], whole.red[2 * kW + 6]});

    // 4:2:2 keeps every second row even of an odd height: rect 4 x 5 from (2, 1) -> rows 1, 3; columns 2, 4.
    frame = random_bytes(kW * kH * 2, 13);
    out.assign(2 * 2 + 1, kUntouched);
    ASSERT_TRUE(QelCopyYUV422PRect2RedImgShrink2(frame.data(), kW, kH, 2, 5, 1, 5, out.data()));
    expect_written(out, crop(convert_whole(qel_test::kYuv422P, frame, kW, kH).red, kW, 1, 2, 1, 2, 2, 2));
}

TEST(CameraRect, FullChromaSwingClampsBlueAndGreenToZero) {
    // A 2 x 2 YUV420P frame with Y = 0, U = 0, V = 255: B = -227 -> 0, G = -47 -> 0, R = 178.
    Bytes frame = {0, 0, 0, 0, 0, 255};
    Bytes rgb(12), red(4);
    ASSERT_TRUE(QelCopyYUV420PRect2RGB(frame.data(), 2, 2, 0, 1, 0, 1, rgb.data()));
    ASSERT_TRUE(QelCopyYUV420PRect2RedImg(frame.data(), 2, 2, 0, 1, 0, 1, red.data()));
    EXPECT_EQ(rgb, (Bytes{0, 0, 178, 0, 0, 178, 0, 0, 178, 0, 0, 178}));
    EXPECT_EQ(red, Bytes(4, 178));
}

// ---- refusals --------------------------------------------------------------------------------------

struct Refusal {
    const char* what;
    bool (*call)(unsigned char* frame, unsigned char* out);
};

// Frame of 16 x 12 (or 15 x 12 / 16 x 11 where the frame size is what is refused).
TEST(CameraRect, EachCheckRefusesAndWritesNothing) {
    const Refusal refusals[] = {
        {"odd x1", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420PRect2RedImg(f, 16, 12, 1, 4, 0, 3, o); }},
        {"odd rect width", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420PRect2RGB(f, 16, 12, 2, 4, 0, 3, o); }},
        {"odd y1", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420SPRect2RGB(f, 16, 12, 0, 3, 1, 4, o); }},
        {"odd rect height", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420SPRect2RedImgShrink2(f, 16, 12, 0, 3, 0, 2, o); }},
        {"odd frame width", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420PScale4Rect(f, 15, 12, 0, 3, 0, 3, o); }},
        {"odd frame height", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420SPRect(f, 16, 11, 0, 3, 0, 3, o, o + 64); }},
        {"422P odd frame width", [](unsigned char* f, unsigned char* o) { return QelCopyYUV422PRect2RGB(f, 15, 12, 0, 3, 0, 3, o); }},
        {"422P two outputs, odd frame height", [](unsigned char* f, unsigned char* o) { return QelCopyYUV422PRect(f, 16, 11, 0, 3, 0, 3, o, o + 64); }},
        {"422P quarter, rect width 6", [](unsigned char* f, unsigned char* o) { return QelCopyYUV422PScale4Rect(f, 16, 12, 0, 5, 0, 3, o); }},
        {"422P quarter, rect height 6", [](unsigned char* f, unsigned char* o) { return QelCopyYUV422PScale4Rect(f, 16, 12, 0, 3, 0, 5, o); }},
        {"422P quarter, odd x1", [](unsigned char* f, unsigned char* o) { return QelCopyYUV422PScale4Rect(f, 16, 12, 1, 4, 0, 3, o); }},
        {"CbYCrY odd x1", [](unsigned char* f, unsigned char* o) { return QelCopyCbYCrYRect2RGB(f, 16, 12, 3, 4, 0, 3, o); }},
        {"CbYCrY quarter, odd rect width", [](unsigned char* f, unsigned char* o) { return QelCopyCbYCrYScale4Rect(f, 16, 12, 0, 4, 0, 3, o); }},
        {"SP sub-frame, odd y1", [](unsigned char* f, unsigned char* o) { return QelCopyYUV420SPRect(f, 16, 12, 0, 3, 3, 4, o); }},
    };
    Bytes frame = random_bytes(16 * 12 * 2, 11);
    for (const Refusal& r : refusals) {
        SCOPED_TRACE(r.what);
        Bytes out(256, kUntouched);
        EXPECT_FALSE(r.call(frame.data(), out.data()));
        EXPECT_TRUE(all_equal(out, kUntouched));
    }
}

TEST(CameraRect, MembersWithPerRowChromaDoNotCheckRows) {
    Bytes frame = random_bytes(kW * kH * 2, 12);
    Bytes out(5 * 4 * 3);
    // odd y1 and odd rect height
    EXPECT_TRUE(QelCopyCbYCrYRect2RGB(frame.data(), kW, kH, 2, 5, 3, 7, out.data()));
    EXPECT_EQ(out, crop(convert_whole(qel_test::kCbYCrY, frame, kW, kH).rgb, kW, 3, 2, 3, 4, 5));
    EXPECT_TRUE(QelCopyYUV422PRect2RGB(frame.data(), kW, kH, 2, 5, 3, 7, out.data()));
    EXPECT_EQ(out, crop(convert_whole(qel_test::kYuv422P, frame, kW, kH).rgb, kW, 3, 2, 3, 4, 5));
    // 4:2:2 frames of odd height are fine for the one-output copies
    EXPECT_TRUE(QelCopyYUV422PRect2RedImg(frame.data(), kW, kH - 1, 0, 3, 0, 2, out.data()));
    // the quarter copy checks x1 but not y1
    EXPECT_TRUE(QelCopyYUV422PScale4Rect(frame.data(), kW, kH, 2, 5, 1, 4, out.data()));
}

// ---- same-format copies --------------------------------------------------------------------------

TEST(CameraRect, SubFramesDecodeLikeTheRectangle) {
    // YUV420SP: the rectangle's Y rows, then its rows of interleaved chroma.
    Bytes frame = random_bytes(kW * kH * 3 / 2, 14);
    const Rect r{6, 13, 2, 9};
    int w = r.w(), h = r.h();
    Bytes sub(w * h * 3 / 2 + 1, kUntouched);
    ASSERT_TRUE(QelCopyYUV420SPRect(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, sub.data()));
    EXPECT_EQ(sub.back(), kUntouched);
    Bytes fromSub(w * h * 3), fromFrame(w * h * 3);
    ASSERT_TRUE(QelCopyYUV420SPRect2RGB(sub.data(), w, h, 0, w - 1, 0, h - 1, fromSub.data()));
    ASSERT_TRUE(QelCopyYUV420SPRect2RGB(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, fromFrame.data()));
    EXPECT_EQ(fromSub, fromFrame);

    // CbYCrY: a raw copy, two bytes a pixel.
    frame = random_bytes(kW * kH * 2, 15);
    sub.assign(4 * 2 * 2, 0);
    QelCopyCbYCrYRect(frame.data(), kW, kH, 4, 7, 5, 6, sub.data());
    EXPECT_EQ(sub, crop(frame, kW, 2, 4, 5, 4, 2));
    Bytes viaSub(8 * 3), direct(8 * 3);
    ASSERT_TRUE(QelCopyCbYCrYRect2RGB(sub.data(), 4, 2, 0, 3, 0, 1, viaSub.data()));
    ASSERT_TRUE(QelCopyCbYCrYRect2RGB(frame.data(), kW, kH, 4, 7, 5, 6, direct.data()));
    EXPECT_EQ(viaSub, direct);
}

// ---- CbYCrY members that refuse nothing ----------------------------------------------------------

TEST(CameraRect, CbYCrYRedImageWithOddX1UsesEachPixelsOwnPair) {
    Bytes frame = random_bytes(kW * kH * 2, 16);
    const Whole whole = convert_whole(qel_test::kCbYCrY, frame, kW, kH);
    Bytes red(3 * 2), half(1);
    QelCopyCbYCrYRect2RedImg(frame.data(), kW, kH, 3, 5, 2, 3, red.data());
    EXPECT_EQ(red, crop(whole.red, kW, 1, 3, 2, 3, 2));
    QelCopyCbYCrYRect2RedImgShrink2(frame.data(), kW, kH, 3, 5, 2, 4, half.data());
    EXPECT_EQ(half, crop(whole.red, kW, 1, 3, 2, 1, 1, 2));
}

TEST(CameraRect, LonePixelOfAnOddWidthCbYCrYRowTakesNeutralChroma) {
    // width 3: the pair (0, 1) is Cb, Y0, Cr, Y1 and pixel 2 is followed by nothing in its row
    const int w = 3, h = 2;
    Bytes frame = {128, 10, 255, 20, 7, 30, 128, 40, 0, 50, 9, 60};
    Bytes red(w * h);
    QelCopyCbYCrYRect2RedImg(frame.data(), w, h, 0, 2, 0, 1, red.data());
    EXPECT_EQ(red[0], 10 + (127 * 22970 >> 14));  // 188
    EXPECT_EQ(red[1], 20 + (127 * 22970 >> 14));
    EXPECT_EQ(red[2], 30);  // (30 * 16384 + 0) >> 14
    EXPECT_EQ(red[3], 0);   // V = 0 drives red below zero
    EXPECT_EQ(red[5], 60);
}

// ---- grey and RGB images -------------------------------------------------------------------------

TEST(RgbRect, CopiesAreCropsOfTheImage) {
    const int w = 9, h = 7;
    Bytes image = qel_test::random_bgr(w, h, 17);
    const Rect r{2, 6, 1, 5};
    const Bytes expected = crop(image, w, 3, r.x1, r.y1, r.w(), r.h());
    Bytes out(expected.size()), grey(r.w() * r.h());
    QelCopyRGBRect(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, out.data());
    EXPECT_EQ(out, expected);
    QelCopyGryRect(image.data(), w, h * 3, r.x1, r.x2, r.y1, r.y2, grey.data());
    EXPECT_EQ(grey, crop(image, w, 1, r.x1, r.y1, r.w(), r.h()));

    Bytes red(grey.size()), green(grey.size()), blue(grey.size()), sel(grey.size());
    QelCopyRGBRect2Gry(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, red.data(), green.data(), blue.data());
    QelSelectRGBRect2Gry(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, 1, sel.data());
    for (size_t k = 0; k < grey.size(); ++k) {
        EXPECT_EQ(red[k], expected[k * 3 + 2]);
        EXPECT_EQ(green[k], expected[k * 3 + 1]);
        EXPECT_EQ(blue[k], expected[k * 3 + 0]);
        EXPECT_EQ(sel[k], expected[k * 3 + 1]);
    }

    // The quarter copy keeps every fourth pixel of every fourth row.
    const int qw = 10, qh = 9;
    image = qel_test::random_bgr(qw, qh, 18);
    out.assign(2 * 2 * 3, 0);
    QelCopyRGBScale4Rect(image.data(), qw, qh, 1, 6, 2, 7, out.data());
    EXPECT_EQ(out, crop(image, qw, 3, 1, 2, 2, 2, 4));
}

TEST(RgbRect, RectangleGreyPutsWeight306OnByteZero) {
    Bytes image = {255, 0, 0, 0, 0, 255, 255, 255, 255};
    Bytes rgb(9), grey(3), grey1(3);
    QelCopyRGBRect(image.data(), 3, 1, 0, 2, 0, 0, rgb.data(), grey.data());
    QelCopyRGBRect2Gry(image.data(), 3, 1, 0, 2, 0, 0, grey1.data());
    EXPECT_EQ(rgb, image);
    EXPECT_EQ(grey, (Bytes{76, 28, 254}));  // 255*306>>10, 255*116>>10, 255*1023>>10
    EXPECT_EQ(grey1, grey);
    Bytes wholeGrey(3);
    QelRGB2Gry(image.data(), 3, 1, wholeGrey.data());
    EXPECT_EQ(wholeGrey[0], 29);  // the whole-frame grey weighs byte 0 as blue
}

TEST(RgbRect, ColourBinarisationByHand) {
    // A 2 x 2 rectangle of a 3 x 2 image: two blue-ish pixels, a red one and a dark blue one.
    Bytes image = {200, 10, 10, 190, 20, 0, 0, 0, 0,
                   10, 10, 230, 180, 0, 0, 0, 0, 0};
    Bytes grey(4), binary(4, kUntouched);
    int w = -1, h = -1;
    QelCopyRGB2GryBinImg(image.data(), 3, 2, 0, 1, 0, 1, true, grey.data(), binary.data(), &w, &h);
    // greys 66, 68, 34, 53 -> mean 55; bright class = pixels 0, 1 (mean colour 195, 15, 5),
    // dark class = pixels 2, 3 (mean colour 95, 5, 115)
    EXPECT_EQ(grey, (Bytes{66, 68, 34, 53}));
    EXPECT_EQ(w, 2);
    EXPECT_EQ(h, 2);
    // pixel 3 is in the dark grey class but nearer the bright colour: colour decides
    EXPECT_EQ(binary, (Bytes{255, 255, 0, 255}));
    QelCopyRGB2GryBinImg(image.data(), 3, 2, 0, 1, 0, 1, false, grey.data(), binary.data(), &w, &h);
    EXPECT_EQ(binary, (Bytes{0, 0, 255, 0}));

    // A uniform rectangle falls wholly in the dark class; the empty bright class has mean colour
    // 0, 0, 0, so every pixel is object when the object is dark and none when it is bright.
    image.assign(4 * 3, 100);
    QelCopyRGB2GryBinImg(image.data(), 2, 2, 0, 1, 0, 1, false, grey.data(), binary.data(), &w, &h);
    EXPECT_EQ(binary, Bytes(4, 255));
    QelCopyRGB2GryBinImg(image.data(), 2, 2, 0, 1, 0, 1, true, grey.data(), binary.data(), &w, &h);
    EXPECT_EQ(binary, Bytes(4, 0));
}

}  // namespace
