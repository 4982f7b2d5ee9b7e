#include <qel.h>

#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <random>
#include <utility>

namespace {

using qel_test::Bytes;

struct Thinned {
    Bytes out, work;
    int passes = 0;
};

Thinned thin(const Bytes& image, int w, int h) {
    Bytes in = image;
    Thinned t{Bytes(image.size(), 0x5A), Bytes(image.size(), 0x5A)};
    t.passes = QelBinImgThin(in.data(), t.work.data(), w, h, t.out.data());
    EXPECT_EQ(in, image) << "the input must not be written";
    return t;
}

// Plain Zhang–Suen: two sub-iterations a pass, each deciding from a full snapshot copy, then the
// staircase clean-up in place. p[k] is the neighbour in direction code k (E, NE, N, NW, W, SW, S, SE).
Thinned reference_thin(const Bytes& image, int w, int h) {
    const int dx[8] = {1, 1, 0, -1, -1, -1, 0, 1}, dy[8] = {0, -1, -1, -1, 0, 1, 1, 1};
    Thinned r{Bytes(image.size(), 0), {}};
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x) r.out[y * w + x] = image[y * w + x] ? 1 : 0;
    int p[8], b = 0, arcs = 0;  // neighbours, their count and the number of 0 -> 1 steps around
    auto look = [&](const Bytes& img, int x, int y) {
        b = arcs = 0;
        for (int k = 0; k < 8; ++k) b += p[k] = img[(y + dy[k]) * w + x + dx[k]] ? 1 : 0;
        for (int k = 0; k < 8; ++k) arcs += p[(k + 7) % 8] == 0 && p[k] == 1;
        return img[y * w + x] != 0;
    };
    for (bool deleted = true; deleted; ++r.passes) {
        deleted = false;
        for (int sub = 0; sub < 2; ++sub) {
            r.work = r.out;
            for (int y = 1; y < h - 1; ++y)
                for (int x = 1; x < w - 1; ++x) {
                    if (!look(r.work, x, y) || b < 2 || b > 6 || arcs != 1) continue;
                    const bool rule = sub == 0 ? (p[2] * p[0] * p[6] == 0 && p[0] * p[6] * p[4] == 0)
                                               : (p[2] * p[0] * p[4] == 0 && p[2] * p[6] * p[4] == 0);
                    if (rule) r.out[y * w + x] = 0, deleted = true;
                }
        }
    }
    for (auto& v : r.out) v = v ? 255 : 0;
    for (int y = 1; y < h - 1; ++y)
        for (int x = 1; x < w - 1; ++x)
            if (look(r.out, x, y) && arcs == 2 && (p[0] || p[4]) && (p[2] || p[6])) r.out[y * w + x] = 0;
    return r;
}

TEST(Thinning, AgreesWithThePlainSnapshotAlgorithm) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE(seed);
        const int w = 31 + static_cast<int>(seed), h = 23;
        std::mt19937 rng(seed);
        Bytes img(w * h, 0);
        // Rectangles and discs give thick shapes; noise gives spurs and holes; any non-zero value is object.
        for (int s = 0; s < 6; ++s) {
            const int cx = rng() % w, cy = rng() % h, r = 2 + rng() % 7;
            for (int y = std::max(cy - r, 0); y <= std::min(cy + r, h - 1); ++y)
                for (int x = std::max(cx - r, 0); x <= std::min(cx + r, w - 1); ++x)
                    if (s % 2 == 0 || (x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r)
                        img[y * w + x] = 1 + rng() % 255;
        }
        for (auto& b : img)
            if (rng() % 25 == 0) b = b ? 0 : 255;
        const Thinned got = thin(img, w, h), ref = reference_thin(img, w, h);
        EXPECT_EQ(got.passes, ref.passes);
        EXPECT_EQ(got.out, ref.out);
        EXPECT_EQ(got.work, ref.work);  // the 0/1 skeleton before the clean-up
    }
}

TEST(Thinning, ThinShapesStayExceptStaircaseCornersInOnePass) {
    const int w = 16, h = 12;
    const Bytes empty(w * h, 0);
    Bytes diagonal = empty, horizontal = empty, ell = empty;
    for (int i = 2; i <= 9; ++i) diagonal[(i + 1) * w + i] = 255;
    for (int x = 2; x <= 13; ++x) horizontal[5 * w + x] = 255;
    for (int i = 2; i <= 5; ++i) ell[6 * w + i] = ell[i * w + 5] = 255;
    // The L's corner touches two arcs with one horizontal and one vertical neighbour: the clean-up
    // removes it, and the path stays 8-connected through the diagonal.
    Bytes ellCut = ell;
    ellCut[6 * w + 5] = 0;
    const std::pair<Bytes, Bytes> cases[] = {
        {empty, empty}, {diagonal, diagonal}, {horizontal, horizontal}, {ell, ellCut}};
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        const Thinned t = thin(cases[i].first, w, h);
        EXPECT_EQ(t.out, cases[i].second);
        EXPECT_EQ(t.passes, 1);
    }
}

TEST(Thinning, FilledBlockThinsToAConnectedSkeletonInsideIt) {
    const int w = 40, h = 30;
    Bytes block(w * h, 0);
    for (int y = 8; y <= 19; ++y)
        for (int x = 6; x <= 29; ++x) block[y * w + x] = 255;
    const Thinned t = thin(block, w, h);
    EXPECT_GT(t.passes, 1);
    // One 8-connected component: a flood from the first skeleton pixel clears them all.
    Bytes left = t.out;
    std::function<void(int)> flood = [&](int i) {
        if (i < 0 || i >= w * h || !left[i]) return;
        left[i] = 0;
        for (int d : {-w - 1, -w, -w + 1, -1, 1, w - 1, w, w + 1}) flood(i + d);
    };
    flood(static_cast<int>(std::find(t.out.begin(), t.out.end(), 255) - t.out.begin()));
    EXPECT_EQ(left, Bytes(w * h, 0));
    for (int i = 0; i + w + 1 < w * h; ++i) {
        EXPECT_TRUE(!t.out[i] || block[i]) << "skeleton pixel " << i << " outside the block";
        EXPECT_FALSE(t.out[i] && t.out[i + 1] && t.out[i + w] && t.out[i + w + 1]) << "2 x 2 block at " << i;
    }
    const long kept = std::count(t.out.begin(), t.out.end(), 255);
    EXPECT_GT(kept, 10);
    EXPECT_LT(kept, 24 * 12 / 4);
}

}  // namespace
