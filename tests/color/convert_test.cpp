#include <gtest/gtest.h>

#include <qel.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes random_bytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes b(n);
    for (auto& x : b) x = static_cast<unsigned char>(rng());
    return b;
}

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

enum class Format { CbYCrY, Yuv420P, Yuv420SP, Yuv422P };

size_t frame_bytes(Format f, int w, int h) {
    return f == Format::Yuv420P || f == Format::Yuv420SP ? static_cast<size_t>(w * h * 3 / 2)
                                                         : static_cast<size_t>(w * h * 2);
}

// Byte offsets of pixel (x, y)'s Y, U and V in a frame.
struct Where {
    size_t y, u, v;
};
Where where(Format f, int w, int h, int x, int y) {
    const size_t luma = static_cast<size_t>(y * w + x);
    const size_t planes = static_cast<size_t>(w * h);
    switch (f) {
        case Format::CbYCrY: {
            const size_t pair = static_cast<size_t>(y * w + (x / 2) * 2) * 2;
            return {pair + 1 + 2 * static_cast<size_t>(x % 2), pair, pair + 2};
        }
        case Format::Yuv420P: {
            const size_t c = static_cast<size_t>((y / 2) * (w / 2) + x / 2);
            return {luma, planes + c, planes + static_cast<size_t>((w / 2) * (h / 2)) + c};
        }
        case Format::Yuv420SP: {
            const size_t c = static_cast<size_t>((y / 2) * (w / 2) + x / 2) * 2;
            return {luma, planes + c, planes + c + 1};
        }
        case Format::Yuv422P:
        default: {
            const size_t c = static_cast<size_t>(y * (w / 2) + x / 2);
            return {luma, planes + c, planes + static_cast<size_t>((w / 2) * h) + c};
        }
    }
}

bool shares_rows(Format f) { return f == Format::Yuv420P || f == Format::Yuv420SP; }

Bytes ref_to_rgb(Format f, const Bytes& frame, int w, int h) {
    Bytes rgb(static_cast<size_t>(w * h * 3));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Where p = where(f, w, h, x, y);
            ref_bgr(frame[p.y], frame[p.u], frame[p.v], &rgb[static_cast<size_t>(y * w + x) * 3]);
        }
    return rgb;
}

Bytes ref_from_rgb(Format f, const Bytes& rgb, int w, int h) {
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
    const int shift = shares_rows(f) ? 2 : 1;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Where p = where(f, w, h, x, y);
            frame[p.u] = static_cast<unsigned char>(uSum[p.u] >> shift);
            frame[p.v] = static_cast<unsigned char>(vSum[p.v] >> shift);
        }
    return frame;
}

bool to_rgb(Format f, Bytes& frame, int w, int h, unsigned char* rgb) {
    switch (f) {
        case Format::CbYCrY: return QelCbYCrY2RGB(frame.data(), w, h, rgb);
        case Format::Yuv420P: return QelYUV420P2RGB(frame.data(), w, h, rgb);
        case Format::Yuv420SP: return QelYUV420SP2RGB(frame.data(), w, h, rgb);
        default: return QelYUV422P2RGB(frame.data(), w, h, rgb);
    }
}

bool from_rgb(Format f, Bytes& rgb, int w, int h, unsigned char* frame) {
    switch (f) {
        case Format::CbYCrY: return QelRGB2CbYCrY(rgb.data(), w, h, frame);
        case Format::Yuv420P: return QelRGB2YUV420P(rgb.data(), w, h, frame);
        case Format::Yuv420SP: return QelRGB2YUV420SP(rgb.data(), w, h, frame);
        default: return QelRGB2YUV422P(rgb.data(), w, h, frame);
    }
}

const Format kFormats[] = {Format::CbYCrY, Format::Yuv420P, Format::Yuv420SP, Format::Yuv422P};

// ---- grey -----------------------------------------------------------------------------------

int grey_of(unsigned char b, unsigned char g, unsigned char r) {
    unsigned char px[3] = {b, g, r}, grey = 0;
    QelRGB2Gry(px, 1, 1, &grey);
    return grey;
}

TEST(ColourConversions, GreyOfPrimariesAndWhite) {
    EXPECT_EQ(grey_of(0, 0, 255), 76);
    EXPECT_EQ(grey_of(0, 255, 0), 149);
    EXPECT_EQ(grey_of(255, 0, 0), 29);
    EXPECT_EQ(grey_of(255, 255, 255), 255);  // the grey weights add up to 4097
    EXPECT_EQ(grey_of(0, 0, 0), 0);
}

TEST(ColourConversions, GreyVariantsPerPixel) {
    unsigned char rgb[] = {0, 0, 255, 10, 200, 60, 7, 7, 7};
    unsigned char grey[3], inv[3], dif[3], blue[3], red[3];
    QelRGB2Gry(rgb, 3, 1, grey);
    QelRGB2GryInvert(rgb, 3, 1, inv);
    QelRGBsDif2Gry(rgb, 3, 1, dif);
    QelSelectRGB2Gry(rgb, 3, 1, 0, blue);
    QelSelectRGB2Gry(rgb, 3, 1, 2, red);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(inv[i], 255 - grey[i]);
    EXPECT_EQ(grey[1], (10 * 468 + 200 * 2404 + 60 * 1225) >> 12);
    EXPECT_EQ(Bytes(dif, dif + 3), (Bytes{255, 190, 0}));
    EXPECT_EQ(Bytes(blue, blue + 3), (Bytes{0, 10, 7}));
    EXPECT_EQ(Bytes(red, red + 3), (Bytes{255, 60, 7}));
}

TEST(ColourConversions, CameraGreyIsTheLumaInOrder) {
    const int w = 4, h = 2;
    Bytes packed = random_bytes(w * h * 2, 7), planar = random_bytes(w * h * 2, 8);
    Bytes grey(w * h);
    QelCbYCrY2Gry(packed.data(), w, h, grey.data());
    for (int i = 0; i < w * h; ++i) EXPECT_EQ(grey[i], packed[2 * i + 1]);
    using GreyFn = void (*)(unsigned char*, int, int, unsigned char*);
    for (GreyFn fn : {GreyFn(QelYUV420P2Gry), GreyFn(QelYUV420SP2Gry), GreyFn(QelYUV422P2Gry)}) {
        std::fill(grey.begin(), grey.end(), 0);
        fn(planar.data(), w, h, grey.data());
        EXPECT_EQ(grey, Bytes(planar.begin(), planar.begin() + w * h));
    }
}

// ---- camera formats ---------------------------------------------------------------------------

TEST(ColourConversions, WhiteGivesLuma254AndNeutralChroma) {
    Bytes white(2 * 2 * 3, 255);
    for (Format f : kFormats) {
        Bytes frame(frame_bytes(f, 2, 2));
        ASSERT_TRUE(from_rgb(f, white, 2, 2, frame.data()));
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 2; ++x) {
                const Where p = where(f, 2, 2, x, y);
                EXPECT_EQ(frame[p.y], 254);
                EXPECT_EQ(frame[p.u], 128);
                EXPECT_EQ(frame[p.v], 128);
            }
    }
}

TEST(ColourConversions, OutOfGamutYuvIsClampedPerComponent) {
    // Y = 0, U = 0, V = 255: B = -227 and G = -47 clamp to 0; R = 178.
    for (Format f : kFormats) {
        Bytes frame(frame_bytes(f, 2, 2));
        for (int y = 0; y < 2; ++y)
            for (int x = 0; x < 2; ++x) {
                const Where p = where(f, 2, 2, x, y);
                frame[p.y] = 0;
                frame[p.u] = 0;
                frame[p.v] = 255;
            }
        Bytes rgb(2 * 2 * 3);
        ASSERT_TRUE(to_rgb(f, frame, 2, 2, rgb.data()));
        for (int i = 0; i < 4; ++i) EXPECT_EQ(Bytes(rgb.begin() + 3 * i, rgb.begin() + 3 * i + 3), (Bytes{0, 0, 178}));
    }
}

TEST(ColourConversions, CameraToRgbMatchesThePlainReference) {
    const int w = 10, h = 6;
    for (Format f : kFormats) {
        Bytes frame = random_bytes(frame_bytes(f, w, h), 11);
        Bytes rgb(w * h * 3);
        ASSERT_TRUE(to_rgb(f, frame, w, h, rgb.data()));
        EXPECT_EQ(rgb, ref_to_rgb(f, frame, w, h)) << static_cast<int>(f);
    }
}

TEST(ColourConversions, RgbToCameraMatchesThePlainReference) {
    const int w = 10, h = 6;
    for (Format f : kFormats) {
        Bytes rgb = random_bytes(w * h * 3, 12);
        Bytes frame(frame_bytes(f, w, h));
        ASSERT_TRUE(from_rgb(f, rgb, w, h, frame.data()));
        EXPECT_EQ(frame, ref_from_rgb(f, rgb, w, h)) << static_cast<int>(f);
    }
}

// Colours shared by each chroma block survive the round trip within a few levels: the only losses
// are the truncating shifts and Y topping out at 254.
TEST(ColourConversions, RoundTripThroughEveryCameraFormatStaysClose) {
    const int w = 32, h = 16;
    std::mt19937 rng(13);
    for (Format f : kFormats) {
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
        Bytes frame(frame_bytes(f, w, h)), back(w * h * 3);
        ASSERT_TRUE(from_rgb(f, rgb, w, h, frame.data()));
        ASSERT_TRUE(to_rgb(f, frame, w, h, back.data()));
        int worst = 0;
        for (size_t i = 0; i < rgb.size(); ++i) worst = std::max(worst, std::abs(rgb[i] - back[i]));
        EXPECT_LE(worst, 3) << static_cast<int>(f);
    }
}

TEST(ColourConversions, OddSizesAreRefusedWithoutWriting) {
    struct Case {
        Format f;
        int w, h;
        bool toRgbOk, fromRgbOk;
    };
    const Case cases[] = {
        {Format::CbYCrY, 3, 2, false, false},   {Format::CbYCrY, 2, 3, true, true},
        {Format::Yuv420P, 3, 2, false, false},  {Format::Yuv420P, 2, 3, false, false},
        {Format::Yuv420SP, 3, 2, false, false}, {Format::Yuv420SP, 2, 3, false, false},
        {Format::Yuv422P, 3, 2, false, false},
        {Format::Yuv422P, 2, 3, true, false},  // the reverse direction is stricter, intended
    };
    for (const Case& c : cases) {
        Bytes frame = random_bytes(frame_bytes(c.f, c.w, c.h) + 8, 14);
        Bytes rgb = random_bytes(static_cast<size_t>(c.w * c.h * 3), 15);
        const Bytes frameBefore = frame, rgbBefore = rgb;
        Bytes out(rgb.size(), 0xA5);
        EXPECT_EQ(to_rgb(c.f, frame, c.w, c.h, out.data()), c.toRgbOk);
        if (!c.toRgbOk) {
            EXPECT_EQ(out, Bytes(rgb.size(), 0xA5));
        }
        Bytes outFrame(frame.size(), 0xA5);
        EXPECT_EQ(from_rgb(c.f, rgb, c.w, c.h, outFrame.data()), c.fromRgbOk);
        if (!c.fromRgbOk) {
            EXPECT_EQ(outFrame, Bytes(frame.size(), 0xA5));
        }
    }
}

TEST(ColourConversions, Yuv422pWithOddHeightConvertsEveryRow) {
    const int w = 4, h = 3;
    Bytes frame = random_bytes(frame_bytes(Format::Yuv422P, w, h), 16);
    Bytes rgb(w * h * 3);
    ASSERT_TRUE(QelYUV422P2RGB(frame.data(), w, h, rgb.data()));
    EXPECT_EQ(rgb, ref_to_rgb(Format::Yuv422P, frame, w, h));
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
