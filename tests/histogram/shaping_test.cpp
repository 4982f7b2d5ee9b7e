#include <qel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
using Hist = std::vector<int>;

Bytes random_bytes(size_t n, unsigned seed, int lo = 0, int hi = 255) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> level(lo, hi);
    Bytes v(n);
    for (auto& b : v) b = static_cast<unsigned char>(level(rng));
    return v;
}

// The map level -> new level that an in-place operation applied, checked to be a function of
// the level alone; -1 for levels absent from the image.
std::vector<int> level_map(const Bytes& before, const Bytes& after) {
    std::vector<int> map(256, -1);
    for (size_t i = 0; i < before.size(); ++i) {
        if (map[before[i]] >= 0) {
            EXPECT_EQ(map[before[i]], after[i]);
        }
        map[before[i]] = after[i];
    }
    return map;
}

void expect_monotone(const std::vector<int>& map) {
    int last = -1;
    for (int g = 0; g < 256; ++g) {
        if (map[g] < 0) continue;
        EXPECT_GE(map[g], last) << "level " << g;
        last = map[g];
    }
}

// ---- equalisation and matching --------------------------------------------------------------

TEST(Equalize, FastMapsTwoEqualLevelsTo127And255) {
    Bytes img = {10, 20, 10, 20, 20, 10};
    QelHistogramEqualizeFast(img.data(), 3, 2);
    EXPECT_EQ(img, (Bytes{127, 255, 127, 255, 255, 127}));
}

TEST(Equalize, FastIsMonotoneAndReachesWhite) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const Bytes before = random_bytes(37 * 23, seed, 30, 180);
        Bytes img = before;
        QelHistogramEqualizeFast(img.data(), 37, 23);
        const auto map = level_map(before, img);
        expect_monotone(map);
        EXPECT_EQ(*std::max_element(img.begin(), img.end()), 255);
    }
}

TEST(Equalize, StandardPutsEachLevelInTheMiddleOfTheBinsItFills) {
    // Four levels, one pixel each: target bins 0..3 hold one pixel each. A level that moves on
    // to the next target bin ends its interval there, so 20 spans bins 1..2 and 30 spans 2..3.
    Bytes img = {10, 20, 30, 40};
    QelHistogramEqualizeStandard(img.data(), 2, 2);
    EXPECT_EQ(img, (Bytes{0, 95, 159, 191}));  // (start + end) / 2 × 255 / 4, truncated
}

TEST(Equalize, StandardMapsAOneLevelImageToBlack) {
    Bytes img(12, 77);
    QelHistogramEqualizeStandard(img.data(), 4, 3);
    EXPECT_EQ(img, Bytes(12, 0));
}

TEST(Equalize, StandardSendsLevelsBeyondTheTargetToItsLastBin) {
    // 4 pixels on 3 levels: the flat target holds 3 × 1 pixels, one fewer than the image, so the
    // walk stops before reaching level 2; it joins the last target bin (2), as level 1 does.
    Bytes img = {0, 0, 1, 2};
    QelHistogramEqualizeStandard(img.data(), 4, 1);
    EXPECT_EQ(img, (Bytes{42, 42, 170, 170}));
}

TEST(Equalize, StandardIsMonotoneAndInRangeWhateverTheRemainder) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const int w = 5 + static_cast<int>(seed) * 3, h = 7;
        const Bytes before = random_bytes(static_cast<size_t>(w * h), seed, 0, 40 + static_cast<int>(seed) * 10);
        Bytes img = before;
        QelHistogramEqualizeStandard(img.data(), w, h);
        expect_monotone(level_map(before, img));
    }
}

TEST(Matching, LevelSpansTheEmptyTargetBinsAfterIt) {
    // Level 0 fills target bin 100 and runs on over the empty bins up to 199.
    Bytes img = {0, 255, 0, 255};
    Hist target(256, 0);
    target[100] = 2;
    target[200] = 2;
    QelHistogramNormalization(img.data(), 2, 2, target.data());
    EXPECT_EQ(img, (Bytes{149, 200, 149, 200}));
}

TEST(Matching, FullRangeImageMatchedToItsOwnHistogramIsUnchanged) {
    Bytes img = random_bytes(64 * 64, 3);
    for (int g = 0; g < 256; ++g) img[static_cast<size_t>(g)] = static_cast<unsigned char>(g);
    const Bytes before = img;
    Hist hist(256);
    QelGetHistogram(img.data(), 64, 64, hist.data());
    QelHistogramNormalization(img.data(), 64, 64, hist.data());
    EXPECT_EQ(img, before);
}

TEST(Matching, EmptyTargetLeavesTheImageAlone) {
    Bytes img = random_bytes(20, 4);
    const Bytes before = img;
    Hist target(256, 0);
    QelHistogramNormalization(img.data(), 5, 4, target.data());
    EXPECT_EQ(img, before);
}

TEST(Matching, MismatchedMassStaysInsideTheTargetRange) {
    Hist target(256, 0);
    target[60] = 1000;  // far more than the image holds
    target[90] = 1000;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const Bytes before = random_bytes(100, seed);
        Bytes img = before;
        QelHistogramNormalization(img.data(), 10, 10, target.data());
        for (unsigned char p : img) {
            EXPECT_GE(p, 60);
            EXPECT_LE(p, 90);
        }
        expect_monotone(level_map(before, img));
    }
}

// ---- smoothing -------------------------------------------------------------------------------

TEST(Smooth, AverageShrinksTheWindowAndDivisorAtTheEnds) {
    Hist hist(256, 0), out(256, -1);
    hist[0] = 7;
    hist[1] = 4;
    hist[254] = 9;
    hist[255] = 2;
    QelHistogramAverageSmooth(hist.data(), 1, out.data());
    EXPECT_EQ(out[0], (7 + 4) / 2);
    EXPECT_EQ(out[1], (7 + 4) / 3);
    EXPECT_EQ(out[255], (9 + 2) / 2);
    EXPECT_EQ(out[100], 0);
}

TEST(Smooth, AverageAgreesWithABruteForceWindow) {
    std::mt19937 rng(9);
    Hist hist(256), out(256);
    for (int& h : hist) h = static_cast<int>(rng() % 5000);
    for (int radius : {0, 3, 40, 300}) {
        QelHistogramAverageSmooth(hist.data(), radius, out.data());
        for (int j = 0; j < 256; ++j) {
            long long sum = 0, n = 0;
            for (int i = j - radius; i <= j + radius; ++i)
                if (i >= 0 && i < 256) sum += hist[static_cast<size_t>(i)], ++n;
            ASSERT_EQ(out[static_cast<size_t>(j)], sum / n) << "radius " << radius << " bin " << j;
        }
    }
}

TEST(Smooth, GaussianSpikeWorkedByHand) {
    // sigma 1, smallest weight 0.1: weights 1024, 621, 139 (K = 3), one-sided divisor 1784.
    Hist hist(256, 0), out(256, -1);
    hist[100] = 1000;
    EXPECT_EQ(QelHistogramGaussianSmooth(hist.data(), 0, 1.0, 0.1, out.data()), 0);
    EXPECT_EQ(out[100], 1000 * 1024 / 1784);               // the one inner bin: 573
    EXPECT_EQ(out[99], 1000 * 621 / (1024 + 2 * 621 + 2 * 139));  // edge bins are normalised: 244
    EXPECT_EQ(out[101], out[99]);
    EXPECT_EQ(out[98], 1000 * 139 / (1024 + 2 * 621 + 139));  // 57
    EXPECT_EQ(out[102], out[98]);
    EXPECT_EQ(out[97], 0);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[255], 0);
}

TEST(Smooth, GaussianInnerBinsDivideByOneSideOfTheWeights) {
    Hist hist(256, 0), out(256);
    for (int i = 50; i <= 200; ++i) hist[static_cast<size_t>(i)] = 100;
    EXPECT_EQ(QelHistogramGaussianSmooth(hist.data(), 0, 1.0, 0.1, out.data()), 150);
    // A flat run comes out larger than itself: 100 × (1024 + 2 × 760) / 1784.
    EXPECT_EQ(out[125], 142);
    EXPECT_EQ(out[30], 0);   // outside the widened range: copied
}

TEST(Smooth, GaussianOfAnEmptyHistogramIsACopy) {
    Hist hist(256, 0), out(256, 5);
    EXPECT_EQ(QelHistogramGaussianSmooth(hist.data(), 0, 2.0, 0.01, out.data()), 0);
    EXPECT_EQ(out, hist);
}

// ---- peaks and valleys -----------------------------------------------------------------------

TEST(Peaks, PlateauPeakSitsBetweenRiseEndAndPlateauEnd) {
    Hist hist = {0, 5, 10, 10, 10, 3, 0};
    Hist marks(7);
    QelSetPeakTo100ValleyTo_100(hist.data(), 7, marks.data());
    // Rise ends at 2, plateau ends at 4: peak at 3. The fall still open at the end closes at 6.
    EXPECT_EQ(marks, (Hist{-100, 1, 1, 100, 0, -1, -100}));
}

TEST(Peaks, BinZeroIsComparedWithBinOne) {
    Hist hist = {9, 5, 5};
    Hist marks(3);
    QelSetPeakTo100ValleyTo_100(hist.data(), 3, marks.data());
    EXPECT_EQ(marks, (Hist{100, -100, 0}));
}

TEST(Peaks, TwoPeaksHonourTheMinimumDistance) {
    Hist hist(256, 0);
    hist[50] = 100;
    hist[60] = 90;
    hist[200] = 80;
    int first = -1, second = -1;
    QelFindTwoPeaks(hist.data(), 30, &first, &second);
    EXPECT_EQ(first, 50);
    EXPECT_EQ(second, 200);
    QelFindTwoPeaks(hist.data(), 5, &first, &second);
    EXPECT_EQ(second, 60);
}

TEST(Peaks, OnePeakIsReturnedAsBoth) {
    Hist hist(256, 0);
    hist[77] = 12;
    int first = -1, second = -1;
    QelFindTwoPeaks(hist.data(), 10, &first, &second);
    EXPECT_EQ(first, 77);
    EXPECT_EQ(second, 77);
}

TEST(Peaks, FirstOfEqualPeaksWinsAndEmptyWritesNothing) {
    Hist hist(256, 0);
    hist[40] = 9;
    hist[90] = 9;
    int first = -1, second = -1;
    QelFindTwoPeaks(hist.data(), 10, &first, &second);
    EXPECT_EQ(first, 40);
    EXPECT_EQ(second, 90);
    Hist empty(256, 0);
    first = second = -7;
    QelFindTwoPeaks(empty.data(), 10, &first, &second);
    EXPECT_EQ(first, -7);
    EXPECT_EQ(second, -7);
}

// ---- contrast test ---------------------------------------------------------------------------

TEST(Contrast, TwoSpikesOverAFlatFloorWorkedByHand) {
    Hist hist(256, 0);
    for (int i = 51; i < 200; ++i) hist[static_cast<size_t>(i)] = 10;
    hist[50] = 100;
    hist[200] = 100;
    int dark = -1, bright = -1;
    double depth = -1;
    EXPECT_TRUE(QelIsHighContrastImg(hist.data(), 128, 1, 100, 1.0, &dark, &bright, &depth));
    EXPECT_EQ(dark, 50);
    EXPECT_EQ(bright, 200);
    const double chord = 200 * 0.5 * 151, mass = 200 + 149 * 10;
    EXPECT_DOUBLE_EQ(depth, (chord - mass) / mass);
    EXPECT_FALSE(QelIsHighContrastImg(hist.data(), 128, 1, 100, 10.0, &dark, &bright, &depth));
}

TEST(Contrast, PeaksTooCloseGiveFalseAndZeroDepth) {
    Hist hist(256, 0);
    hist[100] = 50;
    hist[140] = 50;
    int dark = -1, bright = -1;
    double depth = -1;
    EXPECT_FALSE(QelIsHighContrastImg(hist.data(), 120, 0, 60, 0.0, &dark, &bright, &depth));
    EXPECT_EQ(dark, 100);
    EXPECT_EQ(bright, 140);
    EXPECT_EQ(depth, 0.0);
}

TEST(Contrast, SlidingMeanLeavesBin255MinusHalfEmpty) {
    // Window 3: s[254] gets no mean and counts 0, so the bright peak is 253, not 254. On the dark
    // side s[19..21] tie and the highest of them wins.
    Hist hist(256, 0);
    hist[20] = 600;
    hist[254] = 900;
    hist[255] = 30;
    int dark = -1, bright = -1;
    double depth = 0;
    QelIsHighContrastImg(hist.data(), 128, 3, 10, 0.0, &dark, &bright, &depth);
    EXPECT_EQ(dark, 21);
    EXPECT_EQ(bright, 253);
}

TEST(Contrast, EqualMaximaFavourTheSplitSide) {
    Hist hist(256, 0);
    hist[10] = hist[30] = 40;    // dark side: the higher position wins
    hist[150] = hist[220] = 40;  // bright side: the lower position wins
    int dark = -1, bright = -1;
    double depth = 0;
    QelIsHighContrastImg(hist.data(), 100, 0, 1, 0.0, &dark, &bright, &depth);
    EXPECT_EQ(dark, 30);
    EXPECT_EQ(bright, 150);
}

TEST(Contrast, NoMassBetweenThePeaksIsNotContrast) {
    Hist hist(256, 0);
    int dark = -1, bright = -1;
    double depth = -1;
    EXPECT_FALSE(QelIsHighContrastImg(hist.data(), 128, 5, 0, -1.0, &dark, &bright, &depth));
    EXPECT_EQ(depth, 0.0);
}

}  // namespace
