// Gradient operators: Sobel, Prewitt and Roberts families.
#include <qel.h>

#include <gtest/gtest.h>

#include "support/test_images.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

using Image = qel_test::Bytes;
using qel_test::random_bgr;
using qel_test::random_grey;
using GreyOp = void (*)(unsigned char*, int, int, unsigned char*);

constexpr unsigned char kPrefill = 77;  // what dst holds before a call, to see what is left alone

// Random grey levels below `levels`: small values keep unnormalised box sums from saturating.
Image small_values(int width, int height, unsigned seed, int levels) {
    Image img = random_grey(width, height, seed);
    for (auto& p : img) p = static_cast<unsigned char>(p % levels);
    return img;
}

// The grey result of op on a copy of src, over a destination prefilled with `prefill`.
Image run(GreyOp op, Image src, int w, int h, unsigned char prefill = kPrefill) {
    Image dst(static_cast<size_t>(w) * h, prefill);
    op(src.data(), w, h, dst.data());
    return dst;
}

TEST(Sobel, MembersOnAStepOnATieAndAgainstReference) {
    const struct {
        GreyOp op;
        int (*value)(int ax, int ay);  // before clamping to 255; "Just" keeps strict dominance only
        int atStep;                    // at columns 4 and 5 of a 0/255 step between them (|gx| = 1020)
        int atTie;                     // where gx = gy = 40
    } members[] = {{QelGryImgSobel, [](int ax, int ay) { return ax + ay; }, 255, 80},
                   {QelGryImgSobel0, [](int, int ay) { return ay; }, 0, 40},
                   {QelGryImgSobel90, [](int ax, int) { return ax; }, 255, 40},
                   {QelGryImgSobel0Just, [](int ax, int ay) { return ay > ax ? ay : 0; }, 0, 0},
                   {QelGryImgSobel90Just, [](int ax, int ay) { return ax > ay ? ax : 0; }, 255, 0}};
    const int w = 23, h = 17;
    const Image src = random_grey(w, h, 1);
    Image step(w * h), tie(9, 0);
    for (int i = 0; i < w * h; ++i) step[i] = i % w >= 5 ? 255 : 0;
    tie[0] = 40;  // only the top-left neighbour of (1, 1) is lit
    std::vector<int> ax(w * h), ay(w * h), refX(w, 0), refY(h, 0);
    const int kx[9] = {1, 0, -1, 2, 0, -2, 1, 0, -1}, ky[9] = {1, 2, 1, 0, 0, 0, -1, -2, -1};
    for (int i = 0; i < w * h; ++i) {
        const int x = i % w, y = i / w;
        if (x == 0 || y == 0 || x == w - 1 || y == h - 1) continue;
        for (int k = 0; k < 9; ++k) {
            ax[i] += kx[k] * src[i + (k / 3 - 1) * w + k % 3 - 1];
            ay[i] += ky[k] * src[i + (k / 3 - 1) * w + k % 3 - 1];
        }
        ax[i] = std::abs(ax[i]);
        ay[i] = std::abs(ay[i]);
        refX[x] += ax[i] > ay[i] ? ax[i] + ay[i] : 0;  // the column profile adds both magnitudes
        refY[y] += ax[i] > ay[i] ? ax[i] : 0;          // the row profile |gx| alone
    }
    for (const auto& m : members) {
        SCOPED_TRACE(&m - members);
        const Image out = run(m.op, src, w, h), onStep = run(m.op, step, w, h);
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w;
            const bool frame = x == 0 || y == 0 || x == w - 1 || y == h - 1;
            ASSERT_EQ(out[i], frame ? 0 : std::min(m.value(ax[i], ay[i]), 255)) << x << "," << y;
            ASSERT_EQ(onStep[i], !frame && (x == 4 || x == 5) ? m.atStep : 0) << x << "," << y;
        }
        EXPECT_EQ(run(m.op, tie, 3, 3)[4], m.atTie);
    }
    std::vector<int> prjX(w, -1), prjY(h, -1);
    QelGryImgSobel90JustToPrjX(Image(src).data(), w, h, prjX.data());
    QelGryImgSobel90JustToPrjY(Image(src).data(), w, h, prjY.data());
    refX[0] = refX[1];
    refX[w - 1] = refX[w - 2];
    refY[0] = refY[1];
    refY[h - 1] = refY[h - 2];
    EXPECT_EQ(prjX, refX);
    EXPECT_EQ(prjY, refY);
}

TEST(Prewitt, FixedWindowMembersAgreeWithReferenceAndClampAStepAt250) {
    const int w = 14, h = 11;
    Image step(w * h, 0), across(w * h);
    std::fill(step.begin() + 5 * w, step.end(), 255);                  // white from row 5
    for (int i = 0; i < w * h; ++i) across[i] = i % w >= 5 ? 255 : 0;  // white from column 5
    for (const Image& src : {random_grey(w, h, 3), step, across}) {
        const Image p90 = run(QelPrewitt90, src, w, h), d0 = run(QelGradient0ByPrewitt5x5, src, w, h),
                    d090 = run(QelGradient5x5ByPrewitt0_90, src, w, h);
        Image part(w * h, kPrefill);
        QelPrewitt90(Image(src).data(), w, h, 0, 5, 4, 100, part.data());  // cut to columns 2..5, rows 4..8
        auto diff4 = [&](int i, int d) {  // |p(−2d) + p(−d) − p(d) − p(2d)| around index i
            return std::abs(src[i - 2 * d] + src[i - d] - src[i + d] - src[i + 2 * d]);
        };
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w;
            EXPECT_EQ(part[i], x >= 2 && x <= 5 && y >= 4 && y <= 8 ? p90[i] : kPrefill) << x << "," << y;
            if (x < 2 || y < 2 || x >= w - 2 || y >= h - 2) {
                EXPECT_EQ(p90[i] | d0[i] | d090[i], 0);  // two-pixel frame
                continue;
            }
            int t = 0;  // rows y−2, y−1 against y+1, y+2 over five columns
            for (int c = i - 2; c <= i + 2; ++c) t += src[c - 2 * w] + src[c - w] - src[c + w] - src[c + 2 * w];
            EXPECT_EQ(p90[i], std::min(diff4(i, 1), 255));
            EXPECT_EQ(d0[i], std::min(std::abs(t), 250));
            EXPECT_EQ(d090[i], std::min(std::max(diff4(i, 1), diff4(i, w)), 250));
        }
    }
    // Across the step: ten 255s against none (0°), 255 + 255 against none (0/90°); 250, not 255.
    EXPECT_EQ(run(QelGradient0ByPrewitt5x5, step, w, h)[4 * w + 4], 250);
    EXPECT_EQ(run(QelGradient5x5ByPrewitt0_90, step, w, h)[4 * w + 4], 250);
    const Image row4 = qel_test::row_of(run(QelPrewitt90, across, w, h), w, 4);  // 255 or 510, clamped
    EXPECT_EQ(row4, Image({0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Prewitt, BoxDifferencesAgreeWithDirectSumsAndKeepTheirBands) {
    const int w = 19, h = 16;
    Image src = small_values(w, h, 4, 16);  // small values, so that not every sum saturates
    const Image before = random_grey(w, h, 5);
    const int halves[][2] = {{0, 0}, {1, 1}, {2, 1}, {1, 3}, {3, 2}, {9, 7}};
    for (const auto& hv : halves) {
        const int hx = std::max(1, hv[0]), hy = std::max(1, hv[1]);
        for (bool rowsAgainstRows : {true, false}) {
            Image dst = before;
            const auto box = rowsAgainstRows ? QelGradientByPrewitt0 : QelGradientByPrewitt90;
            box(src.data(), w, h, hv[0], hv[1], dst.data());
            for (int i = 0; i < w * h; ++i) {
                const int x = i % w, y = i / w;
                // bands: the top hy rows and rows h−hy−1 .. h−2; the last row is never written
                const bool band = y < hy || (y >= h - hy - 1 && y <= h - 2);
                const bool rowIn = y >= hy && y <= h - hy - 2, colIn = x >= hx && x <= w - hx - 2;
                int expect = before[i];
                if (band || (rowsAgainstRows ? rowIn && (x < hx || x >= w - hx) : colIn && y >= h - hy)) expect = 0;
                if (rowIn && colIn) {
                    int sum = 0;
                    for (int r = -hy; r <= hy; ++r)
                        for (int c = -hx; c <= hx; ++c) {
                            const int k = rowsAgainstRows ? r : c;
                            sum += (k < 0 ? 1 : k > 0 ? -1 : 0) * src[i + r * w + c];
                        }
                    expect = std::min(std::abs(sum), 255);
                }
                ASSERT_EQ(dst[i], expect) << rowsAgainstRows << " " << hv[0] << "," << hv[1] << " at " << i;
            }
        }
    }
}

TEST(Prewitt, FourDirection135TermCarriesAcrossPixelsAndSaturates) {
    // At x = 1 the lower-left half outweighs the upper-right (term 30): (20 + 20 + 0 + 30) / 4 = 17.
    // At x = 2 it does not, so the 30 carries: (40 + 40 + 0 + 30) / 4 = 27 rather than 80 / 4 = 20.
    Image dst(12, kPrefill), src = {0, 0, 0, 50, 10, 0, 0, 0, 10, 10, 0, 0};
    QelGradientByPrewitt(src.data(), 4, 3, 1, 1, dst.data());
    EXPECT_EQ(dst, Image({0, 0, 0, 0, 0, 17, 27, kPrefill, 0, 0, 0, 0}));  // the right band is left as it was
    Image lit = {0, 0, 0, 255, 0, 0, 0, 0, 0}, out(9, kPrefill);           // a term of 255 saturates at once
    QelGradientByPrewitt(lit.data(), 3, 3, 1, 1, out.data());
    EXPECT_EQ(out[4], 255);
}

TEST(Prewitt, FourDirectionWindowAreaLimitAndNegativeHalves) {
    const int w = 130, h = 130;
    Image src = random_grey(w, h, 6), dst(src.size(), kPrefill);
    QelGradientByPrewitt(src.data(), w, h, 63, 64, dst.data());  // 127 × 129 > 16129
    QelGradientByPrewitt(src.data(), w, h, -1, 2, dst.data());
    EXPECT_EQ(dst, Image(src.size(), kPrefill));
    QelGradientByPrewitt(src.data(), w, h, 63, 63, dst.data());  // exactly 16129
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(dst[64 * w + 64], 255);  // unnormalised sums saturate
}

TEST(Prewitt, FourDirectionAgreesWithFlatWindowReference) {
    const int w = 15, h = 13;
    Image src = small_values(w, h, 7, 11);
    const Image before = random_grey(w, h, 8);
    const int halves[][2] = {{0, 0}, {1, 1}, {2, 1}, {1, 2}, {0, 2}, {3, 4}};
    for (const auto& hv : halves) {
        const int hx = hv[0], hy = hv[1], ww = 2 * hx + 1, area = ww * (2 * hy + 1);
        Image dst = before, expect = before;
        QelGradientByPrewitt(src.data(), w, h, hx, hy, dst.data());
        int term = 0;  // the 135° term starts at 0 and is never reset within a call
        for (int i = 0; i < w * h; ++i) {
            const int x = i % w, y = i / w;
            if (y < hy || y >= h - hy || x < hx) expect[i] = 0;
            if (y < hy || y >= h - hy || x < hx || x >= w - hx) continue;
            // 0°, 90°, 45°, 135°: first half minus second half, over the window copied flat with row
            // stride ww; split columns past a row spill into the next rows, past the window read 0
            int d[4] = {};
            for (int r = 0; r <= 2 * hy; ++r)
                for (int c = 0; c <= 2 * std::max(hx, hy); ++c) {
                    const int k = r * ww + c, p = k < area ? src[i + (k / ww - hy) * w + k % ww - hx] : 0;
                    d[0] += p * ((c < ww && r < hy) - (c < ww && r > hy));
                    d[1] += p * ((c < hx) - (c > hx && c < ww));
                    d[2] += p * ((c < 2 * hy - r) - (c > 2 * hy - r && c <= 2 * hx));
                    d[3] += p * ((c < r) - (c > r && c <= 2 * hx));
                }
            if (d[3] > 0) term = d[3];
            const int mean = (std::abs(d[0]) + std::abs(d[1]) + std::abs(d[2]) + term) / 4;
            expect[i] = term >= 255 ? 255 : std::min(mean, 255);
        }
        EXPECT_EQ(dst, expect) << hx << "," << hy;
    }
}

TEST(Roberts, PlainTakesTheMaximumMaskedTakesTheClampedSum) {
    // At (1, 1): dx = 100 − 0, dy = 100 − 0.
    Image src = {0, 0, 0, 0, 0, 100, 0, 100, 0}, mask(9, 0), masked(9);
    EXPECT_EQ(run(QelRobert, src, 3, 3), Image({0, 0, 0, 0, 100, 0, 0, 0, 0}));
    QelRobertByMask(src.data(), nullptr, 3, 3, masked.data());
    EXPECT_EQ(masked, Image({0, 0, 0, 0, 200, 0, 0, 0, 0}));
    QelRobertByMask(src.data(), mask.data(), 3, 3, masked.data());
    EXPECT_EQ(masked[4], 0);
    mask[4] = 1;
    src[5] = 200;
    QelRobertByMask(src.data(), mask.data(), 3, 3, masked.data());
    EXPECT_EQ(masked[4], 255);  // 300 clamped
}

TEST(Roberts, ColourMembersTakeEachChannelAndThePartialFrame) {
    const int w = 5, h = 4, stride = 3 * w;
    Image rgb = random_bgr(w, h, 9), out(rgb.size(), kPrefill);
    const Image grey = run(QelRobertRGBImage2GryRobert, rgb, w, h);
    QelRobertRGBImage2RGBRobert(rgb.data(), w, h, out.data());
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            int best = 0;
            for (int c = 0; c < 3; ++c) {
                const int i = y * stride + 3 * x + c;
                const int dx = std::abs(rgb[i + 3] - rgb[i - 3]), dy = std::abs(rgb[i + stride] - rgb[i - stride]);
                const int v = std::min(dx + dy, 255);
                best = std::max(best, v);
                // byte width−1 = 4 of each row (pixel 1, green) is cleared by the frame setter
                EXPECT_EQ(out[i], 3 * x + c == w - 1 ? 0 : v) << x << "," << y << "," << c;
            }
            EXPECT_EQ(grey[y * w + x], best);
        }
    EXPECT_EQ(grey[0] | grey[w * h - 1] | grey[w] | out[0] | out[w - 1], 0);
    EXPECT_EQ(out[w], kPrefill);                     // past the first third of the top row
    EXPECT_EQ(out[stride + 3 * (w - 1)], kPrefill);  // the last pixel of an inner row
}

TEST(Gradients, ConstantImageGivesZeroFromEveryMember) {
    const int w = 16, h = 12;
    Image grey(w * h, 137), rgb(w * h * 3, 91), rgbOut(rgb.size(), 0);
    const GreyOp ops[] = {
        QelGryImgSobel, QelGryImgSobel0, QelGryImgSobel90, QelGryImgSobel0Just, QelGryImgSobel90Just, QelPrewitt90,
        QelGradient0ByPrewitt5x5, QelGradient5x5ByPrewitt0_90, QelRobert,
        [](unsigned char* s, int wd, int ht, unsigned char* d) { QelGradientByPrewitt0(s, wd, ht, 2, 3, d); },
        [](unsigned char* s, int wd, int ht, unsigned char* d) { QelGradientByPrewitt90(s, wd, ht, 3, 2, d); },
        [](unsigned char* s, int wd, int ht, unsigned char* d) { QelGradientByPrewitt(s, wd, ht, 2, 2, d); },
        [](unsigned char* s, int wd, int ht, unsigned char* d) { QelRobertByMask(s, nullptr, wd, ht, d); }};
    for (GreyOp op : ops) EXPECT_EQ(run(op, grey, w, h, 0), Image(w * h, 0));  // (some leave bands unwritten)
    EXPECT_EQ(run(QelRobertRGBImage2GryRobert, rgb, w, h, 0), Image(w * h, 0));
    QelRobertRGBImage2RGBRobert(rgb.data(), w, h, rgbOut.data());
    EXPECT_EQ(rgbOut, Image(rgb.size(), 0));
    std::vector<int> prjX(w, 5), prjY(h, 5);
    QelGryImgSobel90JustToPrjX(grey.data(), w, h, prjX.data());
    QelGryImgSobel90JustToPrjY(grey.data(), w, h, prjY.data());
    EXPECT_EQ(prjX, std::vector<int>(w, 0));
    EXPECT_EQ(prjY, std::vector<int>(h, 0));
}

}  // namespace
