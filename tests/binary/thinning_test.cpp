#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

struct Thinned {
    Bytes out;
    int passes;
};

Thinned thin(const Bytes& image, int w, int h) {
    Bytes in = image;
    Bytes work(image.size(), 0x5A), out(image.size(), 0x5A);
    const int passes = QelBinImgThin(in.data(), work.data(), w, h, out.data());
    EXPECT_EQ(in, image) << "the input must not be written";
    return {out, passes};
}

// Number of 8-connected components of the non-zero pixels.
int components8(const Bytes& img, int w, int h) {
    std::vector<int> seen(img.size(), 0);
    int count = 0;
    for (int start = 0; start < w * h; ++start) {
        if (!img[start] || seen[start]) continue;
        ++count;
        std::vector<int> stack{start};
        seen[start] = 1;
        while (!stack.empty()) {
            const int p = stack.back();
            stack.pop_back();
            const int x = p % w, y = p / w;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx) {
                    const int nx = x + dx, ny = y + dy;
                    if (nx < 0 || ny < 0 || nx >= w || ny >= h) continue;
                    const int q = ny * w + nx;
                    if (img[q] && !seen[q]) seen[q] = 1, stack.push_back(q);
                }
        }
    }
    return count;
}

bool has_2x2_block(const Bytes& img, int w, int h) {
    for (int y = 0; y + 1 < h; ++y)
        for (int x = 0; x + 1 < w; ++x)
            if (img[y * w + x] && img[y * w + x + 1] && img[(y + 1) * w + x] && img[(y + 1) * w + x + 1]) return true;
    return false;
}

// Plain reference: two sub-iterations per pass, each deciding from a full snapshot copy, then the
// staircase clean-up. p[k] is the neighbour in direction code k (E, NE, N, NW, W, SW, S, SE).
struct Reference {
    Bytes out, work;
    int passes = 0;
};

Reference reference_thin(const Bytes& image, int w, int h) {
    const int dx[8] = {1, 1, 0, -1, -1, -1, 0, 1}, dy[8] = {0, -1, -1, -1, 0, 1, 1, 1};
    Reference r;
    r.out.assign(image.size(), 0);
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) r.out[y * w + x] = image[y * w + x] ? 1 : 0;
    auto arcs = [](const int* p) {
        int a = 0;
        for (int k = 1; k < 8; ++k) a += p[k - 1] == 0 && p[k] == 1;
        return a + (p[7] == 0 && p[0] == 1);
    };
    bool deleted = true;
    while (deleted) {
        ++r.passes;
        deleted = false;
        for (int sub = 0; sub < 2; ++sub) {
            r.work = r.out;
            for (int y = 1; y < h - 1; ++y)
                for (int x = 1; x < w - 1; ++x) {
                    if (!r.work[y * w + x]) continue;
                    int p[8], b = 0;
                    for (int k = 0; k < 8; ++k) b += p[k] = r.work[(y + dy[k]) * w + x + dx[k]];
                    const bool rule = sub == 0 ? (p[2] * p[0] * p[6] == 0 && p[0] * p[6] * p[4] == 0)
                                               : (p[2] * p[0] * p[4] == 0 && p[2] * p[6] * p[4] == 0);
                    if (b >= 2 && b <= 6 && arcs(p) == 1 && rule) r.out[y * w + x] = 0, deleted = true;
                }
        }
    }
    for (auto& v : r.out) v = v ? 255 : 0;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) {
            if (!r.out[y * w + x]) continue;
            int p[8];
            for (int k = 0; k < 8; ++k) p[k] = r.out[(y + dy[k]) * w + x + dx[k]] ? 1 : 0;
            if (arcs(p) == 2 && (p[0] || p[4]) && (p[2] || p[6])) r.out[y * w + x] = 0;
        }
    return r;
}

TEST(Thinning, AgreesWithThePlainSnapshotAlgorithm) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const int w = 31 + static_cast<int>(seed), h = 23;
        std::mt19937 rng(seed);
        Bytes img(w * h, 0);
        // Random rectangles and discs give thick shapes; a little noise gives spurs and holes.
        for (int s = 0; s < 6; ++s) {
            const int cx = static_cast<int>(rng() % w), cy = static_cast<int>(rng() % h), r = 2 + static_cast<int>(rng() % 7);
            for (int y = std::max(cy - r, 0); y <= std::min(cy + r, h - 1); ++y)
                for (int x = std::max(cx - r, 0); x <= std::min(cx + r, w - 1); ++x)
                    if (s % 2 == 0 || (x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r) img[y * w + x] = 255;
        }
        for (auto& b : img) if (rng() % 25 == 0) b = static_cast<unsigned char>(b ? 0 : 255);
        Bytes in = img, work(img.size()), out(img.size());
        const int passes = QelBinImgThin(in.data(), work.data(), w, h, out.data());
        const Reference ref = reference_thin(img, w, h);
        EXPECT_EQ(passes, ref.passes) << "seed " << seed;
        EXPECT_EQ(out, ref.out) << "seed " << seed;
        EXPECT_EQ(work, ref.work) << "seed " << seed;
    }
}

TEST(Thinning, EmptyImageTakesOnePass) {
    const Thinned t = thin(Bytes(20 * 10, 0), 20, 10);
    EXPECT_EQ(t.passes, 1);
    EXPECT_EQ(t.out, Bytes(20 * 10, 0));
}

TEST(Thinning, OnePixelLinesSurviveUnchanged) {
    const int w = 16, h = 12;
    Bytes diagonal(w * h, 0), horizontal(w * h, 0);
    for (int i = 2; i <= 9; ++i) diagonal[(i + 1) * w + i] = 255;
    for (int x = 2; x <= 13; ++x) horizontal[5 * w + x] = 255;
    const Thinned d = thin(diagonal, w, h);
    EXPECT_EQ(d.out, diagonal);
    EXPECT_EQ(d.passes, 1);
    EXPECT_EQ(thin(horizontal, w, h).out, horizontal);
}

TEST(Thinning, FilledBlockThinsToAConnectedSkeletonInsideIt) {
    const int w = 40, h = 30;
    Bytes block(w * h, 0);
    for (int y = 8; y <= 19; ++y)
        for (int x = 6; x <= 29; ++x) block[y * w + x] = 255;
    const Thinned t = thin(block, w, h);
    EXPECT_GT(t.passes, 1);
    const long kept = std::count(t.out.begin(), t.out.end(), 255);
    EXPECT_GT(kept, 10);
    EXPECT_LT(kept, 24 * 12 / 4);
    EXPECT_EQ(components8(t.out, w, h), 1);
    EXPECT_FALSE(has_2x2_block(t.out, w, h));
    for (int i = 0; i < w * h; ++i)
        if (t.out[i]) {
            ASSERT_TRUE(block[i]) << "skeleton pixel " << i << " outside the block";
        }
}

TEST(Thinning, RandomImagesGiveABinarySubsetWithAClearFrame) {
    const int w = 33, h = 21;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 rng(seed);
        Bytes img(w * h);
        for (auto& b : img) b = (rng() % 100) < 60 ? static_cast<unsigned char>(1 + rng() % 255) : 0;
        const Thinned t = thin(img, w, h);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const unsigned char v = t.out[y * w + x];
                ASSERT_TRUE(v == 0 || v == 255);
                if (v) {
                    EXPECT_NE(img[y * w + x], 0);
                }
                if (x == 0 || y == 0 || x == w - 1 || y == h - 1) {
                    EXPECT_EQ(v, 0);
                }
            }
    }
}

TEST(Thinning, CleanUpCutsTheCornerOfAnLShapedPath) {
    // A one-pixel L: the corner touches two separate arcs, one horizontal and one vertical
    // neighbour, so the clean-up removes it; the path stays 8-connected through the diagonal.
    const int w = 9, h = 9;
    Bytes path(w * h, 0);
    for (int x = 2; x <= 5; ++x) path[6 * w + x] = 255;
    for (int y = 2; y <= 5; ++y) path[y * w + 5] = 255;
    const Thinned t = thin(path, w, h);
    Bytes expected = path;
    expected[6 * w + 5] = 0;
    EXPECT_EQ(t.out, expected);
    EXPECT_EQ(components8(t.out, w, h), 1);
}

}  // namespace
