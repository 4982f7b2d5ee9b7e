// Gradient operators: Sobel, Prewitt and Roberts families.
#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

using Image = std::vector<unsigned char>;

constexpr unsigned char kPrefill = 77;  // what dst holds before a call, to see what is left alone

Image random_image(int width, int height, unsigned seed, int channels = 1) {
    std::mt19937 rng(seed);
    Image img(static_cast<size_t>(width) * height * channels);
    for (auto& p : img) p = static_cast<unsigned char>(rng() & 0xFF);
    return img;
}

// Columns 0..4 black, 5.. white: a vertical step between columns 4 and 5.
Image vertical_step(int width, int height) {
    Image img(static_cast<size_t>(width) * height, 0);
    for (int y = 0; y < height; ++y)
        for (int x = 5; x < width; ++x) img[y * width + x] = 255;
    return img;
}

Image horizontal_step(int width, int height, int firstWhiteRow) {
    Image img(static_cast<size_t>(width) * height, 0);
    std::fill(img.begin() + firstWhiteRow * width, img.end(), 255);
    return img;
}

struct SobelRef {
    int gx, gy;
};
SobelRef sobel_at(const Image& s, int w, int x, int y) {
    auto p = [&](int xx, int yy) { return static_cast<int>(s[yy * w + xx]); };
    return {(p(x - 1, y - 1) + 2 * p(x - 1, y) + p(x - 1, y + 1)) - (p(x + 1, y - 1) + 2 * p(x + 1, y) + p(x + 1, y + 1)),
            (p(x - 1, y - 1) + 2 * p(x, y - 1) + p(x + 1, y - 1)) - (p(x - 1, y + 1) + 2 * p(x, y + 1) + p(x + 1, y + 1))};
}

TEST(Sobel, VerticalStepSaturatesAtBothSidesOfTheStep) {
    const int w = 10, h = 6;
    Image src = vertical_step(w, h), s(src.size()), s0(src.size()), s90(src.size()), j0(src.size()), j90(src.size());
    QelGryImgSobel(src.data(), w, h, s.data());
    QelGryImgSobel0(src.data(), w, h, s0.data());
    QelGryImgSobel90(src.data(), w, h, s90.data());
    QelGryImgSobel0Just(src.data(), w, h, j0.data());
    QelGryImgSobel90Just(src.data(), w, h, j90.data());
    for (int y = 1; y < h - 1; ++y) {
        for (int x = 1; x < w - 1; ++x) {
            const int expect = (x == 4 || x == 5) ? 255 : 0;  // |gx| = 1020, clamped
            EXPECT_EQ(s90[y * w + x], expect) << x << "," << y;
            EXPECT_EQ(j90[y * w + x], expect);
            EXPECT_EQ(s[y * w + x], expect);
            EXPECT_EQ(s0[y * w + x], 0);
            EXPECT_EQ(j0[y * w + x], 0);
        }
    }
}

TEST(Sobel, JustVariantsGiveZeroOnTies) {
    // Only the top-left neighbour of (1, 1) is lit: gx = gy = 40.
    const int w = 3, h = 3;
    Image src(9, 0), s(9), j0(9), j90(9);
    src[0] = 40;
    QelGryImgSobel(src.data(), w, h, s.data());
    QelGryImgSobel0Just(src.data(), w, h, j0.data());
    QelGryImgSobel90Just(src.data(), w, h, j90.data());
    EXPECT_EQ(s[4], 80);
    EXPECT_EQ(j0[4], 0);
    EXPECT_EQ(j90[4], 0);
}

TEST(Sobel, AllMembersAgreeWithReferenceAndClearTheFrame) {
    const int w = 23, h = 17;
    Image src = random_image(w, h, 1);
    Image s(src.size(), kPrefill), s0(s), s90(s), j0(s), j90(s);
    QelGryImgSobel(src.data(), w, h, s.data());
    QelGryImgSobel0(src.data(), w, h, s0.data());
    QelGryImgSobel90(src.data(), w, h, s90.data());
    QelGryImgSobel0Just(src.data(), w, h, j0.data());
    QelGryImgSobel90Just(src.data(), w, h, j90.data());
    std::vector<int> prjX(w, -1), prjY(h, -1), refX(w, 0), refY(h, 0);
    QelGryImgSobel90JustToPrjX(src.data(), w, h, prjX.data());
    QelGryImgSobel90JustToPrjY(src.data(), w, h, prjY.data());
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int i = y * w + x;
            if (x == 0 || y == 0 || x == w - 1 || y == h - 1) {
                EXPECT_EQ(s[i] | s0[i] | s90[i] | j0[i] | j90[i], 0);
                continue;
            }
            const SobelRef g = sobel_at(src, w, x, y);
            const int ax = std::abs(g.gx), ay = std::abs(g.gy);
            EXPECT_EQ(s[i], std::min(ax + ay, 255));
            EXPECT_EQ(s0[i], std::min(ay, 255));
            EXPECT_EQ(s90[i], std::min(ax, 255));
            EXPECT_EQ(j0[i], ay > ax ? std::min(ay, 255) : 0);
            EXPECT_EQ(j90[i], ax > ay ? std::min(ax, 255) : 0);
            if (ax > ay) {
                refX[x] += ax + ay;  // the column profile adds both magnitudes
                refY[y] += ax;       // the row profile |gx| alone
            }
        }
    }
    refX[0] = refX[1];
    refX[w - 1] = refX[w - 2];
    refY[0] = refY[1];
    refY[h - 1] = refY[h - 2];
    EXPECT_EQ(prjX, refX);
    EXPECT_EQ(prjY, refY);
}

TEST(Prewitt, FourPixelDifferenceOnAStep) {
    const int w = 10, h = 6;
    Image src = vertical_step(w, h), dst(src.size(), kPrefill);
    QelPrewitt90(src.data(), w, h, dst.data());
    const unsigned char expectRow[10] = {0, 0, 0, 255, 255, 255, 255, 0, 0, 0};
    for (int x = 0; x < w; ++x) {
        EXPECT_EQ(dst[2 * w + x], expectRow[x]) << x;
        EXPECT_EQ(dst[0 * w + x], 0);
        EXPECT_EQ(dst[5 * w + x], 0);
    }
}

TEST(Prewitt, RectangleFormWritesOnlyInsideTheClippedRectangle) {
    const int w = 12, h = 9;
    Image src = random_image(w, h, 2), full(src.size()), part(src.size(), kPrefill);
    QelPrewitt90(src.data(), w, h, full.data());
    QelPrewitt90(src.data(), w, h, 0, 5, 4, 100, part.data());  // clipped to columns 2..5, rows 4..6
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const bool inside = x >= 2 && x <= 5 && y >= 4 && y <= 6;
            EXPECT_EQ(part[y * w + x], inside ? full[y * w + x] : kPrefill) << x << "," << y;
        }
}

TEST(Prewitt, FiveByFiveClampsAt250) {
    const int w = 9, h = 10;
    Image src = horizontal_step(w, h, 5), dst(src.size(), kPrefill);
    QelGradient0ByPrewitt5x5(src.data(), w, h, dst.data());
    EXPECT_EQ(dst[5 * w + 4], 250);  // |0 − 2550| clamped to 250, not 255
    EXPECT_EQ(dst[4 * w + 4], 250);
    EXPECT_EQ(dst[2 * w + 4], 0);
    for (int x = 0; x < w; ++x) EXPECT_EQ(dst[1 * w + x], 0);
    for (int y = 0; y < h; ++y) EXPECT_EQ(dst[y * w + w - 2], 0);

    Image both(src.size(), kPrefill);
    QelGradient5x5ByPrewitt0_90(src.data(), w, h, both.data());
    EXPECT_EQ(both[5 * w + 4], 250);  // |0 + 0 − 255 − 255| clamped
    EXPECT_EQ(both[4 * w + 4], 250);
    EXPECT_EQ(both[3 * w + 4], 250);  // |0 + 0 − 0 − 255|
    EXPECT_EQ(both[2 * w + 4], 0);
}

TEST(Prewitt, FiveByFiveMembersAgreeWithReference) {
    const int w = 14, h = 11;
    Image src = random_image(w, h, 3), d0(src.size()), d090(src.size());
    QelGradient0ByPrewitt5x5(src.data(), w, h, d0.data());
    QelGradient5x5ByPrewitt0_90(src.data(), w, h, d090.data());
    auto p = [&](int x, int y) { return static_cast<int>(src[y * w + x]); };
    for (int y = 2; y < h - 2; ++y)
        for (int x = 2; x < w - 2; ++x) {
            int t = 0;
            for (int c = x - 2; c <= x + 2; ++c) t += p(c, y - 2) + p(c, y - 1) - p(c, y + 1) - p(c, y + 2);
            EXPECT_EQ(d0[y * w + x], std::min(std::abs(t), 250));
            const int hh = std::min(std::abs(p(x - 2, y) + p(x - 1, y) - p(x + 1, y) - p(x + 2, y)), 250);
            const int vv = std::min(std::abs(p(x, y - 2) + p(x, y - 1) - p(x, y + 1) - p(x, y + 2)), 250);
            EXPECT_EQ(d090[y * w + x], std::max(hh, vv));
        }
}

// Direct sums of the box differences, with the bands as described for the two members.
Image box_reference(const Image& src, int w, int h, int halfX, int halfY, bool rowsAgainstRows, const Image& before) {
    Image dst = before;
    const int hx = std::max(1, halfX), hy = std::max(1, halfY);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const bool topBand = y < hy, bottomBand = y >= h - hy - 1 && y <= h - 2;
            const bool rowComputed = y >= hy && y <= h - hy - 2, colComputed = x >= hx && x <= w - hx - 2;
            unsigned char& d = dst[y * w + x];
            if (topBand || bottomBand) {
                d = 0;
            } else if (rowsAgainstRows && rowComputed && !colComputed && (x < hx || x >= w - hx)) {
                d = 0;
            } else if (!rowsAgainstRows && colComputed && y >= h - hy) {
                d = 0;
            }
            if (!(rowComputed && colComputed)) continue;
            long sum = 0;
            for (int r = -hy; r <= hy; ++r)
                for (int c = -hx; c <= hx; ++c) {
                    const int sign = rowsAgainstRows ? (r < 0 ? 1 : r > 0 ? -1 : 0) : (c < 0 ? 1 : c > 0 ? -1 : 0);
                    sum += sign * src[(y + r) * w + x + c];
                }
            d = static_cast<unsigned char>(std::min(std::labs(sum), 255L));
        }
    return dst;
}

TEST(Prewitt, BoxDifferencesAgreeWithDirectSumsAndKeepTheirBands) {
    const int w = 19, h = 16;
    Image src = random_image(w, h, 4);
    for (int i = 0; i < w * h; ++i) src[i] /= 16;  // keep sums small enough not to saturate everywhere
    const int halves[][2] = {{0, 0}, {1, 1}, {2, 1}, {1, 3}, {3, 2}, {9, 7}};
    for (const auto& hv : halves) {
        const Image before = random_image(w, h, 5);
        Image d0 = before, d90 = before;
        QelGradientByPrewitt0(src.data(), w, h, hv[0], hv[1], d0.data());
        QelGradientByPrewitt90(src.data(), w, h, hv[0], hv[1], d90.data());
        EXPECT_EQ(d0, box_reference(src, w, h, hv[0], hv[1], true, before)) << hv[0] << "," << hv[1];
        EXPECT_EQ(d90, box_reference(src, w, h, hv[0], hv[1], false, before)) << hv[0] << "," << hv[1];
        for (int x = 0; x < w; ++x) EXPECT_EQ(d0[(h - 1) * w + x], before[(h - 1) * w + x]);  // last row untouched
    }
}

TEST(Prewitt, FourDirectionTermCarriesThe135DegreeValueAcrossPixels) {
    // At x = 1 the lower-left half outweighs the upper-right (term 30); at x = 2 it does not, so
    // the 30 carries over: (40 + 40 + 0 + 30) / 4 = 27 rather than 80 / 4 = 20.
    const int w = 4, h = 3;
    Image src = {0, 0, 0, 50, 10, 0, 0, 0, 10, 10, 0, 0};
    Image dst(src.size(), kPrefill);
    QelGradientByPrewitt(src.data(), w, h, 1, 1, dst.data());
    EXPECT_EQ(dst[1 * w + 1], 17);  // (20 + 20 + 0 + 30) / 4
    EXPECT_EQ(dst[1 * w + 2], 27);
    EXPECT_EQ(dst[1 * w + 0], 0);
    EXPECT_EQ(dst[1 * w + 3], kPrefill);  // the right band is left as it was
    for (int x = 0; x < w; ++x) {
        EXPECT_EQ(dst[x], 0);
        EXPECT_EQ(dst[2 * w + x], 0);
    }
}

TEST(Prewitt, FourDirectionSaturatesWhenThe135DegreeTermReaches255) {
    const int w = 3, h = 3;
    Image src = {0, 0, 0, 255, 0, 0, 0, 0, 0};  // P = 255, Q = 0, other terms 255 or less
    Image dst(9, kPrefill);
    QelGradientByPrewitt(src.data(), w, h, 1, 1, dst.data());
    EXPECT_EQ(dst[4], 255);
}

TEST(Prewitt, FourDirectionWindowAreaLimit) {
    const int w = 130, h = 130;
    Image src = vertical_step(w, h), dst(src.size(), kPrefill);
    QelGradientByPrewitt(src.data(), w, h, 63, 64, dst.data());  // 127 × 129 > 16129
    EXPECT_TRUE(std::all_of(dst.begin(), dst.end(), [](unsigned char p) { return p == kPrefill; }));
    QelGradientByPrewitt(src.data(), w, h, 63, 63, dst.data());  // exactly 16129
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[64 * w + 64], 255);  // unnormalised sums saturate
}

// Straight from the description: copy the window to a flat scratch of stride 2·halfX+1 and add
// up the four splits by column numbers; positions past the window read as 0.
Image four_direction_reference(const Image& src, int w, int h, int hx, int hy, const Image& before) {
    Image dst = before;
    const int ww = 2 * hx + 1, rows = 2 * hy + 1;
    std::vector<int> scratch(static_cast<size_t>(ww) * rows + 4 * ww * rows + 16, 0);
    auto at = [&](int r, int c) { return scratch[r * ww + c]; };
    for (int y = 0; y < hy; ++y) std::fill_n(dst.begin() + y * w, w, 0);
    for (int y = h - hy; y < h; ++y) std::fill_n(dst.begin() + y * w, w, 0);
    int term = 0;
    for (int y = hy; y < h - hy; ++y) {
        for (int x = 0; x < hx; ++x) dst[y * w + x] = 0;
        for (int x = hx; x < w - hx; ++x) {
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < ww; ++c) scratch[r * ww + c] = src[(y - hy + r) * w + x - hx + c];
            long a = 0, b = 0;
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < ww; ++c) {
                    if (r < hy) a += at(r, c);
                    if (r > hy) b += at(r, c);
                }
            const long d0 = std::labs(a - b);
            a = b = 0;
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < ww; ++c) {
                    if (c < hx) a += at(r, c);
                    if (c > hx) b += at(r, c);
                }
            const long d90 = std::labs(a - b);
            a = b = 0;
            for (int r = 0; r < rows; ++r) {
                for (int c = 0; c <= 2 * hy - r - 1; ++c) a += at(r, c);
                for (int c = 2 * hy + 1 - r; c <= 2 * hx; ++c) b += at(r, c);
            }
            const long d45 = std::labs(a - b);
            a = b = 0;
            for (int r = 0; r < rows; ++r) {
                for (int c = 0; c <= r - 1; ++c) a += at(r, c);
                for (int c = r + 1; c <= 2 * hx; ++c) b += at(r, c);
            }
            if (a > b) term = static_cast<int>(a - b);
            dst[y * w + x] = term >= 255 ? 255 : static_cast<unsigned char>(std::min((d0 + d90 + d45 + term) / 4, 255L));
        }
    }
    return dst;
}

TEST(Prewitt, FourDirectionAgreesWithScratchReference) {
    const int w = 15, h = 13;
    Image src = random_image(w, h, 7);
    for (auto& p : src) p /= 24;
    const int halves[][2] = {{0, 0}, {1, 1}, {2, 1}, {1, 2}, {0, 2}, {3, 4}};
    for (const auto& hv : halves) {
        const Image before = random_image(w, h, 8);
        Image dst = before;
        QelGradientByPrewitt(src.data(), w, h, hv[0], hv[1], dst.data());
        EXPECT_EQ(dst, four_direction_reference(src, w, h, hv[0], hv[1], before)) << hv[0] << "," << hv[1];
    }
}

TEST(Roberts, MaximumForThePlainMemberSumForTheMaskedOne) {
    // At (1, 1): dx = 100 − 0, dy = 100 − 0.
    const int w = 3, h = 3;
    Image src = {0, 0, 0, 0, 0, 100, 0, 100, 0};
    Image a(9, kPrefill), b(9, kPrefill), c(9), mask(9, 0);
    QelRobert(src.data(), w, h, a.data());
    QelRobertByMask(src.data(), nullptr, w, h, b.data());
    QelRobertByMask(src.data(), mask.data(), w, h, c.data());
    EXPECT_EQ(a[4], 100);
    EXPECT_EQ(b[4], 200);
    EXPECT_EQ(c[4], 0);
    EXPECT_EQ(a[0] | a[8] | b[3] | b[5], 0);
    mask[4] = 1;
    src[5] = 200;
    QelRobertByMask(src.data(), mask.data(), w, h, c.data());
    EXPECT_EQ(c[4], 255);  // 300 clamped
}

TEST(Roberts, ColourMembersTakeEachChannelAndThePartialFrame) {
    const int w = 5, h = 4;
    Image rgb = random_image(w, h, 9, 3), grey(w * h, kPrefill), out(rgb.size(), kPrefill);
    QelRobertRGBImage2GryRobert(rgb.data(), w, h, grey.data());
    QelRobertRGBImage2RGBRobert(rgb.data(), w, h, out.data());
    const int stride = 3 * w;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            int best = 0;
            for (int c = 0; c < 3; ++c) {
                const int i = y * stride + 3 * x + c;
                const int v = std::min(std::abs(rgb[i + 3] - rgb[i - 3]) + std::abs(rgb[i + stride] - rgb[i - stride]), 255);
                best = std::max(best, v);
                // byte width−1 = 4 of each row (pixel 1, green) is cleared by the frame setter
                EXPECT_EQ(out[i], 3 * x + c == w - 1 ? 0 : v) << x << "," << y << "," << c;
            }
            EXPECT_EQ(grey[y * w + x], best);
        }
    EXPECT_EQ(grey[0] | grey[w * h - 1] | grey[w], 0);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[w - 1], 0);
    EXPECT_EQ(out[w], kPrefill);              // past the first third of the top row
    EXPECT_EQ(out[stride + 3 * (w - 1)], kPrefill);  // the last pixel of an inner row
}

TEST(Gradients, ConstantImageGivesZeroFromEveryMember) {
    const int w = 16, h = 12;
    Image src(w * h, 137), rgb(w * h * 3, 91);
    auto zero = [](const Image& img) { return std::all_of(img.begin(), img.end(), [](unsigned char p) { return p == 0; }); };
    using Plain = void (*)(unsigned char*, int, int, unsigned char*);
    const Plain plain[] = {QelGryImgSobel, QelGryImgSobel0, QelGryImgSobel90, QelGryImgSobel0Just, QelGryImgSobel90Just,
                           QelGradient0ByPrewitt5x5, QelGradient5x5ByPrewitt0_90, QelRobert, QelRobertRGBImage2GryRobert};
    for (Plain f : plain) {
        Image dst(w * h, 0);
        f(f == QelRobertRGBImage2GryRobert ? rgb.data() : src.data(), w, h, dst.data());
        EXPECT_TRUE(zero(dst));
    }
    Image dst(w * h, 0), rgbDst(rgb.size(), 0);
    QelPrewitt90(src.data(), w, h, dst.data());
    EXPECT_TRUE(zero(dst));
    QelGradientByPrewitt0(src.data(), w, h, 2, 3, dst.data());
    QelGradientByPrewitt90(src.data(), w, h, 3, 2, dst.data());
    QelGradientByPrewitt(src.data(), w, h, 2, 2, dst.data());
    QelRobertByMask(src.data(), nullptr, w, h, dst.data());
    EXPECT_TRUE(zero(dst));
    QelRobertRGBImage2RGBRobert(rgb.data(), w, h, rgbDst.data());
    EXPECT_TRUE(zero(rgbDst));
    std::vector<int> prj(std::max(w, h), 5);
    QelGryImgSobel90JustToPrjX(src.data(), w, h, prj.data());
    QelGryImgSobel90JustToPrjY(src.data(), w, h, prj.data());
    EXPECT_TRUE(std::all_of(prj.begin(), prj.begin() + h, [](int v) { return v == 0; }));
}

}  // namespace
