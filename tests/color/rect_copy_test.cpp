#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
constexpr unsigned char kUntouched = 0xA5;

Bytes random_bytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes v(n);
    for (auto& b : v) b = static_cast<unsigned char>(rng() & 0xFF);
    return v;
}

// ---- each camera format's members, and its whole-frame conversions as the reference ------------

using RectFn = bool (*)(unsigned char*, int, int, int, int, int, int, unsigned char*);
using TwoOutFn = bool (*)(unsigned char*, int, int, int, int, int, int, unsigned char*, unsigned char*);
using FrameToRgbFn = bool (*)(unsigned char*, int, int, unsigned char*);
using FrameToGreyFn = void (*)(unsigned char*, int, int, unsigned char*);

struct Format {
    const char* name;
    int bytesPerTwoPixels;  // frame size = width * height * bytesPerTwoPixels / 2
    RectFn rgb;
    RectFn red;
    TwoOutFn rgbAndGrey;
    RectFn redHalf;
    RectFn quarter;
    FrameToRgbFn wholeRgb;
    FrameToGreyFn wholeGrey;
};

// The CbYCrY red images refuse nothing and return void.
bool cbycry_red(unsigned char* f, int w, int h, int x1, int x2, int y1, int y2, unsigned char* o) {
    QelCopyCbYCrYRect2RedImg(f, w, h, x1, x2, y1, y2, o);
    return true;
}
bool cbycry_red_half(unsigned char* f, int w, int h, int x1, int x2, int y1, int y2, unsigned char* o) {
    QelCopyCbYCrYRect2RedImgShrink2(f, w, h, x1, x2, y1, y2, o);
    return true;
}

const Format kYuv420P{"YUV420P", 3, QelCopyYUV420PRect2RGB, QelCopyYUV420PRect2RedImg, QelCopyYUV420PRect,
                      QelCopyYUV420PRect2RedImgShrink2, QelCopyYUV420PScale4Rect, QelYUV420P2RGB, QelYUV420P2Gry};
const Format kYuv420SP{"YUV420SP", 3, QelCopyYUV420SPRect2RGB, QelCopyYUV420SPRect2RedImg, QelCopyYUV420SPRect,
                       QelCopyYUV420SPRect2RedImgShrink2, QelCopyYUV420SPScale4Rect, QelYUV420SP2RGB,
                       QelYUV420SP2Gry};
const Format kYuv422P{"YUV422P", 4, QelCopyYUV422PRect2RGB, QelCopyYUV422PRect2RedImg, QelCopyYUV422PRect,
                      QelCopyYUV422PRect2RedImgShrink2, QelCopyYUV422PScale4Rect, QelYUV422P2RGB, QelYUV422P2Gry};
const Format kCbYCrY{"CbYCrY", 4, QelCopyCbYCrYRect2RGB, cbycry_red, QelCopyCbYCrYRect, cbycry_red_half,
                     QelCopyCbYCrYScale4Rect, QelCbYCrY2RGB, QelCbYCrY2Gry};
const Format* const kFormats[] = {&kYuv420P, &kYuv420SP, &kYuv422P, &kCbYCrY};

// A whole frame converted by the whole-frame functions: BGR, grey (Y) and red planes.
struct Whole {
    int width;
    Bytes rgb, grey, red;
};

Whole convert_whole(const Format& f, Bytes& frame, int w, int h) {
    Whole out{w, Bytes(w * h * 3), Bytes(w * h), Bytes(w * h)};
    EXPECT_TRUE(f.wholeRgb(frame.data(), w, h, out.rgb.data()));
    f.wholeGrey(frame.data(), w, h, out.grey.data());
    for (int k = 0; k < w * h; ++k) out.red[k] = out.rgb[k * 3 + 2];
    return out;
}

// Pixels (x1 + step*i, y1 + step*j) of a whole image with `bytes` bytes per pixel.
Bytes crop(const Bytes& image, int w, int bytes, int x1, int y1, int step, int cols, int rows) {
    Bytes out;
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < cols; ++i)
            for (int b = 0; b < bytes; ++b) out.push_back(image[((y1 + step * j) * w + x1 + step * i) * bytes + b]);
    return out;
}

struct Rect {
    int x1, x2, y1, y2;
    int w() const { return x2 - x1 + 1; }
    int h() const { return y2 - y1 + 1; }
};

// Rectangles every camera member accepts: x1, y1 even and sizes multiples of 4.
const Rect kGoodRects[] = {{0, 15, 0, 11}, {2, 9, 4, 11}, {6, 13, 2, 5}, {4, 7, 8, 11}};
constexpr int kW = 16, kH = 12;

// ---- agreement with the whole-frame conversions --------------------------------------------------

TEST(CameraRect, RectangleCopiesAgreeWithTheWholeFrameConversionCropped) {
    for (const Format* f : kFormats) {
        SCOPED_TRACE(f->name);
        Bytes frame = random_bytes(kW * kH * f->bytesPerTwoPixels / 2, 19);
        const Whole whole = convert_whole(*f, frame, kW, kH);
        for (const Rect& r : kGoodRects) {
            const int n = r.w() * r.h();
            Bytes rgb(n * 3), grey(n), red(n), half(n / 4), quarter((r.w() / 4) * (r.h() / 4) * 3);
            ASSERT_TRUE(f->rgbAndGrey(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, rgb.data(), grey.data()));
            EXPECT_EQ(rgb, crop(whole.rgb, kW, 3, r.x1, r.y1, 1, r.w(), r.h()));
            EXPECT_EQ(grey, crop(whole.grey, kW, 1, r.x1, r.y1, 1, r.w(), r.h()));
            Bytes rgbOnly(n * 3);
            ASSERT_TRUE(f->rgb(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, rgbOnly.data()));
            EXPECT_EQ(rgbOnly, rgb);
            ASSERT_TRUE(f->red(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, red.data()));
            EXPECT_EQ(red, crop(whole.red, kW, 1, r.x1, r.y1, 1, r.w(), r.h()));
            ASSERT_TRUE(f->redHalf(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, half.data()));
            EXPECT_EQ(half, crop(whole.red, kW, 1, r.x1, r.y1, 2, r.w() / 2, r.h() / 2));
            ASSERT_TRUE(f->quarter(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, quarter.data()));
            EXPECT_EQ(quarter, crop(whole.rgb, kW, 3, r.x1, r.y1, 4, r.w() / 4, r.h() / 4));
        }
    }
}

TEST(CameraRect, GreyCopiesAreTheYSamplesOfTheRectangle) {
    using GreyFn = void (*)(unsigned char*, int, int, int, int, int, int, unsigned char*);
    const GreyFn greyCopies[] = {QelCopyYUV420PRect2Gry, QelCopyYUV420SPRect2Gry, QelCopyYUV422PRect2Gry,
                                 QelCopyCbYCrYRect2Gry};
    for (int i = 0; i < 4; ++i) {
        Bytes frame = random_bytes(kW * kH * kFormats[i]->bytesPerTwoPixels / 2, 20);
        const Whole whole = convert_whole(*kFormats[i], frame, kW, kH);
        Bytes grey(3 * 4);
        greyCopies[i](frame.data(), kW, kH, 3, 5, 1, 4, grey.data());  // odd corners are fine
        EXPECT_EQ(grey, crop(whole.grey, kW, 1, 3, 1, 1, 3, 4)) << kFormats[i]->name;
    }
}

TEST(CameraRect, QuarterCopyOfAnEightSquareTakesFourCorners) {
    const int w = 8, h = 8;
    Bytes frame = random_bytes(w * h * 3 / 2, 8);
    const Whole whole = convert_whole(kYuv420P, frame, w, h);
    Bytes out(2 * 2 * 3 + 3, kUntouched);
    ASSERT_TRUE(QelCopyYUV420PScale4Rect(frame.data(), w, h, 0, 7, 0, 7, out.data()));
    Bytes expected = crop(whole.rgb, w, 3, 0, 0, 4, 2, 2);
    expected.insert(expected.end(), 3, kUntouched);
    EXPECT_EQ(out, expected);
}

TEST(CameraRect, QuarterCopyRoundsPartialStepsUp) {
    // rect width 6 keeps columns x1 and x1 + 4; rect height 2 keeps one row
    Bytes frame = random_bytes(kW * kH * 3 / 2, 9);
    const Whole whole = convert_whole(kYuv420SP, frame, kW, kH);
    Bytes out(2 * 3 + 1, kUntouched);
    ASSERT_TRUE(QelCopyYUV420SPScale4Rect(frame.data(), kW, kH, 2, 7, 4, 5, out.data()));
    EXPECT_EQ(Bytes(out.begin(), out.end() - 1), crop(whole.rgb, kW, 3, 2, 4, 4, 2, 1));
    EXPECT_EQ(out.back(), kUntouched);
}

TEST(CameraRect, HalfRedImageOfAFourByTwoRectangleIsTwoBytes) {
    Bytes frame = random_bytes(kW * kH * 3 / 2, 10);
    const Whole whole = convert_whole(kYuv420P, frame, kW, kH);
    Bytes out(3, kUntouched);
    ASSERT_TRUE(QelCopyYUV420PRect2RedImgShrink2(frame.data(), kW, kH, 4, 7, 2, 3, out.data()));
    EXPECT_EQ(out, (Bytes{whole.red[2 * kW + 4], whole.red[2 * kW + 6], kUntouched}));
}

TEST(CameraRect, FullChromaSwingClampsBlueAndGreenToZero) {
    // A 2 x 2 YUV420P frame with Y = 0, U = 0, V = 255: B = -227 -> 0, G = -47 -> 0, R = 178.
    Bytes frame = {0, 0, 0, 0, 0, 255};
    Bytes rgb(12), red(4);
    ASSERT_TRUE(QelCopyYUV420PRect2RGB(frame.data(), 2, 2, 0, 1, 0, 1, rgb.data()));
    ASSERT_TRUE(QelCopyYUV420PRect2RedImg(frame.data(), 2, 2, 0, 1, 0, 1, red.data()));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(rgb[i * 3 + 0], 0);
        EXPECT_EQ(rgb[i * 3 + 1], 0);
        EXPECT_EQ(rgb[i * 3 + 2], 178);
        EXPECT_EQ(red[i], 178);
    }
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
        EXPECT_TRUE(std::all_of(out.begin(), out.end(), [](unsigned char b) { return b == kUntouched; }));
    }
}

TEST(CameraRect, MembersWithPerRowChromaDoNotCheckRows) {
    Bytes frame = random_bytes(kW * kH * 2, 12);
    Bytes out(5 * 4 * 3);
    // odd y1 and odd rect height
    EXPECT_TRUE(QelCopyCbYCrYRect2RGB(frame.data(), kW, kH, 2, 5, 3, 7, out.data()));
    EXPECT_EQ(out, crop(convert_whole(kCbYCrY, frame, kW, kH).rgb, kW, 3, 2, 3, 1, 4, 5));
    EXPECT_TRUE(QelCopyYUV422PRect2RGB(frame.data(), kW, kH, 2, 5, 3, 7, out.data()));
    EXPECT_EQ(out, crop(convert_whole(kYuv422P, frame, kW, kH).rgb, kW, 3, 2, 3, 1, 4, 5));
    // 4:2:2 frames of odd height are fine for the one-output copies
    EXPECT_TRUE(QelCopyYUV422PRect2RedImg(frame.data(), kW, kH - 1, 0, 3, 0, 2, out.data()));
    // the quarter copy checks x1 but not y1
    EXPECT_TRUE(QelCopyYUV422PScale4Rect(frame.data(), kW, kH, 2, 5, 1, 4, out.data()));
}

TEST(CameraRect, HalfRedImageOf422PTakesEverySecondRowOfAnOddHeight) {
    Bytes frame = random_bytes(kW * kH * 2, 13);
    Bytes out(2 * 2 + 1, kUntouched);
    // rect 4 x 5 from (2, 1): rows 1 and 3, columns 2 and 4
    ASSERT_TRUE(QelCopyYUV422PRect2RedImgShrink2(frame.data(), kW, kH, 2, 5, 1, 5, out.data()));
    EXPECT_EQ(out.back(), kUntouched);
    EXPECT_EQ(Bytes(out.begin(), out.end() - 1), crop(convert_whole(kYuv422P, frame, kW, kH).red, kW, 1, 2, 1, 2, 2, 2));
}

// ---- same-format copies --------------------------------------------------------------------------

TEST(CameraRect, SemiPlanarSubFrameDecodesLikeTheRectangle) {
    Bytes frame = random_bytes(kW * kH * 3 / 2, 14);
    const Rect r{6, 13, 2, 9};
    const int w = r.w(), h = r.h();
    Bytes sub(w * h * 3 / 2 + 1, kUntouched);
    ASSERT_TRUE(QelCopyYUV420SPRect(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, sub.data()));
    EXPECT_EQ(sub.back(), kUntouched);
    Bytes fromSub(w * h * 3), fromFrame(w * h * 3);
    ASSERT_TRUE(QelCopyYUV420SPRect2RGB(sub.data(), w, h, 0, w - 1, 0, h - 1, fromSub.data()));
    ASSERT_TRUE(QelCopyYUV420SPRect2RGB(frame.data(), kW, kH, r.x1, r.x2, r.y1, r.y2, fromFrame.data()));
    EXPECT_EQ(fromSub, fromFrame);
}

TEST(CameraRect, CbYCrYRawCopyIsTwoBytesPerPixel) {
    Bytes frame = random_bytes(kW * kH * 2, 15);
    Bytes sub(4 * 2 * 2);
    QelCopyCbYCrYRect(frame.data(), kW, kH, 4, 7, 5, 6, sub.data());
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 8; ++i) EXPECT_EQ(sub[j * 8 + i], frame[(5 + j) * kW * 2 + 8 + i]);
    Bytes viaSub(8 * 3), direct(8 * 3);
    ASSERT_TRUE(QelCopyCbYCrYRect2RGB(sub.data(), 4, 2, 0, 3, 0, 1, viaSub.data()));
    ASSERT_TRUE(QelCopyCbYCrYRect2RGB(frame.data(), kW, kH, 4, 7, 5, 6, direct.data()));
    EXPECT_EQ(viaSub, direct);
}

// ---- CbYCrY members that refuse nothing ----------------------------------------------------------

TEST(CameraRect, CbYCrYRedImageWithOddX1UsesEachPixelsOwnPair) {
    Bytes frame = random_bytes(kW * kH * 2, 16);
    const Whole whole = convert_whole(kCbYCrY, frame, kW, kH);
    Bytes red(3 * 2), half(1);
    QelCopyCbYCrYRect2RedImg(frame.data(), kW, kH, 3, 5, 2, 3, red.data());
    EXPECT_EQ(red, crop(whole.red, kW, 1, 3, 2, 1, 3, 2));
    QelCopyCbYCrYRect2RedImgShrink2(frame.data(), kW, kH, 3, 5, 2, 4, half.data());
    EXPECT_EQ(half, crop(whole.red, kW, 1, 3, 2, 2, 1, 1));
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
    Bytes image = random_bytes(w * h * 3, 17);
    const Rect r{2, 6, 1, 5};
    Bytes crop, cropGrey;
    for (int y = r.y1; y <= r.y2; ++y)
        for (int x = r.x1; x <= r.x2; ++x) {
            for (int b = 0; b < 3; ++b) crop.push_back(image[(y * w + x) * 3 + b]);
            cropGrey.push_back(image[y * w + x]);
        }
    Bytes out(crop.size()), grey(r.w() * r.h());
    QelCopyRGBRect(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, out.data());
    EXPECT_EQ(out, crop);
    QelCopyGryRect(image.data(), w, h * 3, r.x1, r.x2, r.y1, r.y2, grey.data());
    EXPECT_EQ(grey, cropGrey);

    Bytes red(grey.size()), green(grey.size()), blue(grey.size()), sel(grey.size());
    QelCopyRGBRect2Gry(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, red.data(), green.data(), blue.data());
    QelSelectRGBRect2Gry(image.data(), w, h, r.x1, r.x2, r.y1, r.y2, 1, sel.data());
    for (size_t k = 0; k < grey.size(); ++k) {
        EXPECT_EQ(red[k], crop[k * 3 + 2]);
        EXPECT_EQ(green[k], crop[k * 3 + 1]);
        EXPECT_EQ(blue[k], crop[k * 3 + 0]);
        EXPECT_EQ(sel[k], crop[k * 3 + 1]);
    }
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

TEST(RgbRect, QuarterCopyKeepsEveryFourthPixelOfEveryFourthRow) {
    const int w = 10, h = 9;
    Bytes image = random_bytes(w * h * 3, 18);
    Bytes out(2 * 2 * 3);
    QelCopyRGBScale4Rect(image.data(), w, h, 1, 6, 2, 7, out.data());
    const int xs[] = {1, 5}, ys[] = {2, 6};
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i)
            for (int b = 0; b < 3; ++b)
                EXPECT_EQ(out[(j * 2 + i) * 3 + b], image[(ys[j] * w + xs[i]) * 3 + b]);
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
}

TEST(RgbRect, ColourBinarisationOfAUniformRectangleIsAllObjectWhenDark) {
    // Every pixel falls in the dark class; the empty bright class has mean colour 0, 0, 0.
    Bytes image(4 * 3, 100);
    Bytes grey(4), binary(4);
    int w = 0, h = 0;
    QelCopyRGB2GryBinImg(image.data(), 2, 2, 0, 1, 0, 1, false, grey.data(), binary.data(), &w, &h);
    EXPECT_EQ(binary, Bytes(4, 255));
    QelCopyRGB2GryBinImg(image.data(), 2, 2, 0, 1, 0, 1, true, grey.data(), binary.data(), &w, &h);
    EXPECT_EQ(binary, Bytes(4, 0));
}

}  // namespace
