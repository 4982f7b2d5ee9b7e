#include <gtest/gtest.h>

#include <qel.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "color/camera_formats.h"
#include "support/test_images.h"

namespace {

using qel_test::Bytes;
using qel_test::CameraFormat;
using qel_test::frame_bytes;
using qel_test::kCameraFormats;
using qel_test::Layout;
using qel_test::random_bytes;

// ---- a plain reference, written from the formulas and the layouts -------------------------------

int clamp255(int v) { return std::min(255, std::max(0, v)); }
int ref_y(int b, int g, int r) { return (r * 4898 + g * 9617 + b * 1867) >> 14; }
int ref_u(int b, int g, int r) { return ((b * 8192 - r * 2763 - g * 5428) >> 14) + 128; }
int ref_v(int b, int g, int r) { return ((r * 8192 - g * 6859 - b * 1332) >> 14) + 128; }
void ref_bgr(int y, int u, int v, unsigned char* out) {
    out[0] = static_cast<unsigned char>(clamp255((y * 16384 + (u - 128) * 29032) >> 14));
    out[1] = static_cast<unsigned char>(clamp255((y * 16384 - (u - 128) * 5638 - (v - 128) * 11700) >> 14));
    out[2] = static_cast<unsigned char>(clamp255((y * 16384 + (v - 128) * 22970) >> 14));
}

// Byte offsets of pixel (x, y)'s Y, U and V in a frame of even width.
struct Where {
    int y, u, v;
};
Where where(const CameraFormat& f, int w, int h, int x, int y) {
    const int luma = y * w + x, planes = w * h;
    const int pair = (f.sharesRows ? y / 2 : y) * (w / 2) + x / 2;  // index of the pixel's U, V
    const int chromaPlane = (w / 2) * (f.sharesRows ? h / 2 : h);
    switch (f.layout) {
        case Layout::CbYCrY: return {luma * 2 + 1, pair * 4, pair * 4 + 2};
        case Layout::Yuv420SP: return {luma, planes + pair * 2, planes + pair * 2 + 1};
        default: return {luma, planes + pair, planes + chromaPlane + pair};  // the two planar formats
    }
}

Bytes ref_to_rgb(const CameraFormat& f, const Bytes& frame, int w, int h) {
    Bytes rgb(static_cast<size_t>(w * h * 3));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Where p = where(f, w, h, x, y);
            ref_bgr(frame[p.y], frame[p.u], frame[p.v], &rgb[static_cast<size_t>(y * w + x) * 3]);
        }
    return rgb;
}

Bytes ref_from_rgb(const CameraFormat& f, const Bytes& rgb, int w, int h) {
    Bytes frame(frame_bytes(f, w, h));
    std::vector<int> uSum(frame.size()), vSum(frame.size());
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const unsigned char* px = &rgb[static_cast<size_t>(y * w + x) * 3];
            const Where p = where(f, w, h, x, y);
            frame[p.y] = static_cast<unsigned char>(ref_y(px[0], px[1], px[2]));
            uSum[p.u] += ref_u(px[0], px[1], px[2]);
            vSum[p.v] += ref_v(px[0], px[1], px[2]);
        }
    const int shift = f.sharesRows ? 2 : 1;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Where p = where(f, w, h, x, y);
            frame[p.u] = static_cast<unsigned char>(uSum[p.u] >> shift);
            frame[p.v] = static_cast<unsigned char>(vSum[p.v] >> shift);
        }
    return frame;
}

// ---- grey -----------------------------------------------------------------------------------

TEST(ColourConversions, GreyOfPrimariesWhiteAndTheGreyVariantsPerPixel) {
    // red, green, blue, white, black, and two mixtures (pixels are stored B, G, R)
    Bytes rgb = {0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 0, 0, 0, 10, 200, 60, 7, 7, 7};
    Bytes grey(7), inv(7), dif(7), blue(7), red(7);
    QelRGB2Gry(rgb.data(), 7, 1, grey.data());
    QelRGB2GryInvert(rgb.data(), 7, 1, inv.data());
    QelRGBsDif2Gry(rgb.data(), 7, 1, dif.data());
    QelSelectRGB2Gry(rgb.data(), 7, 1, 0, blue.data());
    QelSelectRGB2Gry(rgb.data(), 7, 1, 2, red.data());
    // the grey weights add up to 4097, so white stays 255
    EXPECT_EQ(grey, (Bytes{76, 149, 29, 255, 0, (10 * 468 + 200 * 2404 + 60 * 1225) >> 12, 7}));
    for (int i = 0; i < 7; ++i) EXPECT_EQ(inv[i], 255 - grey[i]);
    EXPECT_EQ(dif, (Bytes{255, 255, 255, 0, 0, 190, 0}));
    EXPECT_EQ(blue, (Bytes{0, 0, 255, 255, 0, 10, 7}));
    EXPECT_EQ(red, (Bytes{255, 0, 0, 255, 0, 60, 7}));
}

TEST(ColourConversions, GreyPixelsOnTheTruncationEdgePinEachWeight) {
    // (B, G, R) = (1, 7, 240): 468 + 16828 + 294000 = 311296 = 76 · 4096 exactly, so any weight one
    // lower gives 75. (200, 12, 211): 93600 + 28848 + 258475 = 380923 = 93 · 4096 − 5, so any weight
    // one higher adds at least 12 and gives 93. 34 pixels cover the 32-pixel step and the tail.
    Bytes rgb;
    for (int i = 0; i < 17; ++i) rgb.insert(rgb.end(), {1, 7, 240, 200, 12, 211});
    Bytes grey(34), inv(34);
    QelRGB2Gry(rgb.data(), 34, 1, grey.data());
    QelRGB2GryInvert(rgb.data(), 34, 1, inv.data());
    for (int i = 0; i < 34; ++i) {
        EXPECT_EQ(grey[i], i % 2 == 0 ? 76 : 92) << i;
        EXPECT_EQ(inv[i], 255 - grey[i]) << i;
    }
}

TEST(ColourConversions, CameraGreyIsTheLumaInOrder) {
    const int w = 4, h = 2;
    for (const CameraFormat* f : kCameraFormats) {
        Bytes frame = random_bytes(frame_bytes(*f, w, h), 7);
        Bytes grey(w * h);
        f->toGrey(frame.data(), w, h, grey.data());
        for (int i = 0; i < w * h; ++i) EXPECT_EQ(grey[i], frame[where(*f, w, h, i % w, i / w).y]) << f->name;
    }
}

// ---- camera formats ---------------------------------------------------------------------------

TEST(ColourConversions, WhiteGivesLuma254AndOutOfGamutYuvIsClampedPerComponent) {
    for (const CameraFormat* f : kCameraFormats) {
        SCOPED_TRACE(f->name);
        Bytes rgb(2 * 2 * 3, 255), frame(frame_bytes(*f, 2, 2));
        ASSERT_TRUE(f->fromRgb(rgb.data(), 2, 2, frame.data()));
        for (int i = 0; i < 4; ++i) {
            const Where p = where(*f, 2, 2, i % 2, i / 2);
            EXPECT_EQ(frame[p.y], 254);
            EXPECT_EQ(frame[p.u], 128);
            EXPECT_EQ(frame[p.v], 128);
        }
        // Y = 0, U = 0, V = 255: B = -227 and G = -47 clamp to 0; R = 178.
        for (int i = 0; i < 4; ++i) {
            const Where p = where(*f, 2, 2, i % 2, i / 2);
            frame[p.y] = 0;
            frame[p.u] = 0;
            frame[p.v] = 255;
        }
        ASSERT_TRUE(f->toRgb(frame.data(), 2, 2, rgb.data()));
        EXPECT_EQ(rgb, (Bytes{0, 0, 178, 0, 0, 178, 0, 0, 178, 0, 0, 178}));
    }
}

TEST(ColourConversions, BothDirectionsMatchThePlainReference) {
    const int w = 10, h = 6;
    for (const CameraFormat* f : kCameraFormats) {
        SCOPED_TRACE(f->name);
        Bytes frame = random_bytes(frame_bytes(*f, w, h), 11);
        Bytes rgb(w * h * 3);
        ASSERT_TRUE(f->toRgb(frame.data(), w, h, rgb.data()));
        EXPECT_EQ(rgb, ref_to_rgb(*f, frame, w, h));

        rgb = random_bytes(w * h * 3, 12);
        ASSERT_TRUE(f->fromRgb(rgb.data(), w, h, frame.data()));
        EXPECT_EQ(frame, ref_from_rgb(*f, rgb, w, h));
    }
}

// Colours shared by each chroma block survive the round trip within a few levels: the only losses
// are the truncating shifts and Y topping out at 254.
TEST(ColourConversions, RoundTripThroughEveryCameraFormatStaysClose) {
    const int w = 32, h = 16;
    std::mt19937 rng(13);
    for (const CameraFormat* f : kCameraFormats) {
        Bytes rgb(w * h * 3);
        for (int by = 0; by < h; by += 2)
            for (int bx = 0; bx < w; bx += 2) {
                // Moderate colours (kept away from the gamut edge so no component clamps).
                const unsigned char c[3] = {static_cast<unsigned char>(40 + rng() % 176),
                                            static_cast<unsigned char>(40 + rng() % 176),
                                            static_cast<unsigned char>(40 + rng() % 176)};
                for (int y = by; y < by + 2; ++y)
                    for (int x = bx; x < bx + 2; ++x) std::copy(c, c + 3, &rgb[static_cast<size_t>(y * w + x) * 3]);
            }
        Bytes frame(frame_bytes(*f, w, h)), back(w * h * 3);
        ASSERT_TRUE(f->fromRgb(rgb.data(), w, h, frame.data()));
        ASSERT_TRUE(f->toRgb(frame.data(), w, h, back.data()));
        int worst = 0;
        for (size_t i = 0; i < rgb.size(); ++i) worst = std::max(worst, std::abs(rgb[i] - back[i]));
        EXPECT_LE(worst, 3) << f->name;
    }
}

// A refused conversion writes nothing; an accepted odd height converts every row.
TEST(ColourConversions, OddSizesAreRefusedWithoutWritingOrConvertEveryRow) {
    struct Case {
        const CameraFormat* f;
        int w, h;
        bool toRgbOk, fromRgbOk;
    };
    const Case cases[] = {
        {&qel_test::kCbYCrY, 3, 2, false, false},   {&qel_test::kCbYCrY, 2, 3, true, true},
        {&qel_test::kYuv420P, 3, 2, false, false},  {&qel_test::kYuv420P, 2, 3, false, false},
        {&qel_test::kYuv420SP, 3, 2, false, false}, {&qel_test::kYuv420SP, 2, 3, false, false},
        {&qel_test::kYuv422P, 3, 2, false, false},
        {&qel_test::kYuv422P, 2, 3, true, false},  // the reverse direction is stricter, intended
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.f->name << " " << c.w << "x" << c.h);
        Bytes frame = random_bytes(frame_bytes(*c.f, c.w, c.h) + 8, 14);
        Bytes rgb = random_bytes(static_cast<size_t>(c.w * c.h * 3), 15);
        Bytes out(rgb.size(), 0xA5);
        EXPECT_EQ(c.f->toRgb(frame.data(), c.w, c.h, out.data()), c.toRgbOk);
        EXPECT_EQ(out, c.toRgbOk ? ref_to_rgb(*c.f, frame, c.w, c.h) : Bytes(rgb.size(), 0xA5));
        Bytes outFrame(frame.size(), 0xA5);
        EXPECT_EQ(c.f->fromRgb(rgb.data(), c.w, c.h, outFrame.data()), c.fromRgbOk);
        if (!c.fromRgbOk) {
            EXPECT_TRUE(qel_test::all_equal(outFrame, 0xA5));
        }
    }
}

TEST(ColourConversions, Yuv420BlockChromaIsTheMeanOfOffsetValues) {
    // Two pure blue and two black pixels in one 2 x 2 block: U values 255 and 128 -> (255*2 + 128*2) >> 2.
    unsigned char rgb[] = {255, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0};
    unsigned char frame[6];
    ASSERT_TRUE(QelRGB2YUV420P(rgb, 2, 2, frame));
    EXPECT_EQ(frame[4], (ref_u(255, 0, 0) * 2 + 128 * 2) >> 2);
    EXPECT_EQ(frame[5], (ref_v(255, 0, 0) * 2 + 128 * 2) >> 2);
    EXPECT_EQ(frame[0], ref_y(255, 0, 0));
    EXPECT_EQ(frame[1], 0);
}

}  // namespace

// ---- every width: the 32- and 64-pixel steps and their tails agree with the formulas -----------

TEST(ColourConversions, EveryWidthAndTailMatchesThePerPixelFormulas) {
    for (int w = 1; w <= 140; ++w) {
        SCOPED_TRACE(w);
        const int h = 3;
        const Bytes rgb = qel_test::random_bgr(w, h, static_cast<unsigned>(w));
        Bytes grey(static_cast<size_t>(w * h));
        QelRGB2Gry(const_cast<unsigned char*>(rgb.data()), w, h, grey.data());
        for (int i = 0; i < w * h; ++i) {
            const unsigned char* px = &rgb[static_cast<size_t>(i) * 3];
            ASSERT_EQ(grey[i], (px[0] * 468 + px[1] * 2404 + px[2] * 1225) >> 12) << i;
        }
        if (w % 2 != 0) continue;
        for (const CameraFormat* f : kCameraFormats) {
            SCOPED_TRACE(f->name);
            const int fh = 4;
            Bytes frame = random_bytes(frame_bytes(*f, w, fh), static_cast<unsigned>(w + 100));
            Bytes out(static_cast<size_t>(w * fh * 3));
            ASSERT_TRUE(f->toRgb(frame.data(), w, fh, out.data()));
            ASSERT_EQ(out, ref_to_rgb(*f, frame, w, fh));
            Bytes pixels = qel_test::random_bgr(w, fh, static_cast<unsigned>(w + 200));
            Bytes back(frame_bytes(*f, w, fh));
            ASSERT_TRUE(f->fromRgb(pixels.data(), w, fh, back.data()));
            ASSERT_EQ(back, ref_from_rgb(*f, pixels, w, fh));
        }
    }
}
