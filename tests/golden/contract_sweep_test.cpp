// The contract sweep: every function of the golden table runs on buffers of exactly the size its
// contract names (each its own heap block, so a sanitizer build catches a read or write one byte
// past), at many sizes from 1 x 1 up to 70 x 40, on random contents, with its parameters drawn
// across the ranges it accepts (windows larger than the image, rectangles across the borders,
// zero and negative counts, thresholds at 0 and 255). A plain build checks only that nothing
// crashes; the sanitizer build is where the sweep earns its keep.
//
// QEL_SWEEP_SEED=<n> reruns the sweep with other sizes and parameters; QEL_SWEEP_CALLS=<n> sets
// the number of random sizes per function (100).
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

#include "golden/entry_params.h"
#include "golden/exports.h"
#include "golden/table.h"

namespace {

uint64_t env_number(const char* name, uint64_t fallback) {
    const char* text = std::getenv(name);
    return text && *text ? std::strtoull(text, nullptr, 10) : fallback;
}

uint64_t base_seed() { return env_number("QEL_SWEEP_SEED", 20240611); }
int random_sizes() { return static_cast<int>(env_number("QEL_SWEEP_CALLS", 100)); }

// The largest size the sweep draws, and the sizes every function runs at besides the random ones:
// single pixels, single rows and columns, the smallest windows, and the largest size.
constexpr golden::Size kLargest{70, 40};
const golden::Size kCorners[] = {{1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, 3}, {4, 2}, {5, 4}, {7, 1}, {1, 7}, {70, 40}};

// A size rounded up to what the function accepts.
golden::Size fit(golden::Size s, const golden::Shape& shape) {
    auto side = [](int v, int least, int step) {
        v = std::max(v, least);
        return (v + step - 1) / step * step;
    };
    return {side(s.width, shape.min_w, shape.step_w), side(s.height, shape.min_h, shape.step_h)};
}

// The sizes one function runs at: the corners, then random ones (odd widths included), each fitted
// to its shape, duplicates kept (they take other contents and parameters).
std::vector<golden::Size> sweep_sizes(const golden::Entry& entry) {
    std::vector<golden::Size> all;
    for (golden::Size s : kCorners) all.push_back(fit(s, entry.shape));
    golden::Generator g(golden::seed_for(entry.name, {0, 0}) ^ base_seed());
    for (int i = 0; i < random_sizes(); ++i)
        all.push_back(fit({1 + g.below(kLargest.width), 1 + g.below(kLargest.height)}, entry.shape));
    return all;
}

// What the sweep is calling, printed by the sanitizer's error hook so that a report names the call.
char g_current[256] = "";

}  // namespace

extern "C" void __asan_on_error() { std::fprintf(stderr, "contract sweep: during %s\n", g_current); }

namespace {

class ContractSweep : public ::testing::TestWithParam<size_t> {};

TEST_P(ContractSweep, StaysInsideItsBuffers) {
    golden::set_noise_seed();
    const golden::Entry& entry = golden::table()[GetParam()];
    int index = 0;
    for (golden::Size size : sweep_sizes(entry)) {
        const uint64_t seed = golden::seed_for(entry.name, size) ^ (base_seed() * 0x9E3779B97F4A7C15ULL) ^ uint64_t(index);
        std::snprintf(g_current, sizeof g_current, "%s at %dx%d (call %d, QEL_SWEEP_SEED=%llu)", entry.name,
                      size.width, size.height, index, static_cast<unsigned long long>(base_seed()));
        golden::Call call(size.width, size.height, seed);
        call.sweep();
        entry.run(call);
        ++index;
    }
    EXPECT_EQ(index, int(std::size(kCorners)) + random_sizes());
}

INSTANTIATE_TEST_SUITE_P(Table, ContractSweep, ::testing::ValuesIn(golden::all_entries()),
                         golden::entry_test_name);

// Every exported overload has an entry, so the sweep reaches it; and every entry's shape lets it
// run at its smallest legal size and at sizes up to the largest.
TEST(ContractSweepCoverage, EveryExportIsSwept) {
    std::map<std::string, int> swept;
    for (const auto& entry : golden::table()) {
        ++swept[golden::base_name(entry.name)];
        // Its smallest legal size is small enough for windows and borders to meet, and it runs there.
        const golden::Size smallest = fit({1, 1}, entry.shape);
        EXPECT_LE(smallest.width, 10) << entry.name;
        EXPECT_LE(smallest.height, 10) << entry.name;
        const auto sizes = sweep_sizes(entry);
        EXPECT_EQ(sizes.front().width, smallest.width) << entry.name;
        EXPECT_EQ(sizes.front().height, smallest.height) << entry.name;
        for (golden::Size s : sizes)
            EXPECT_TRUE(s.width % entry.shape.step_w == 0 && s.height % entry.shape.step_h == 0) << entry.name;
    }
    const std::map<std::string, int> exported = golden::exported_functions();
    if (exported.empty()) GTEST_SKIP() << "export list read with nm on Linux shared builds only";
    int total = 0;
    for (const auto& [name, count] : exported) {
        total += count;
        const auto it = swept.find(name);
        EXPECT_EQ(it == swept.end() ? 0 : it->second, count) << name << ": overloads swept vs exported";
    }
    EXPECT_GE(total, 451);
}

}  // namespace

namespace {

// The parameter kinds return the fixed value outside a sweep (the golden digests rely on it) and
// reach both ends of their range and values between them inside one.
TEST(ContractSweepParameters, DrawAcrossTheirRangesOnlyInASweep) {
    golden::Call fixed(9, 4, 1);
    EXPECT_EQ(fixed.level(77), 77);
    EXPECT_EQ(fixed.win(3), 3);
    EXPECT_EQ(fixed.across({1, 2, 3, 4}).y2, 4);
    golden::Call call(9, 4, 1);
    call.sweep();
    std::set<int> levels, cols;
    bool outside = false, empty = false;
    for (int i = 0; i < 400; ++i) {
        levels.insert(call.level(77));
        cols.insert(call.col(0));
        const golden::Rect in = call.inside({0, 0, 0, 0});
        EXPECT_TRUE(in.x1 >= 0 && in.x1 <= in.x2 && in.x2 < 9 && in.y1 >= 0 && in.y1 <= in.y2 && in.y2 < 4);
        const golden::Rect r = call.across({0, 0, 0, 0});
        outside |= r.x1 < 0 || r.x2 >= 9 || r.y1 < 0 || r.y2 >= 4;
        empty |= r.area() == 0;
    }
    EXPECT_TRUE(levels.count(0) && levels.count(255) && levels.size() > 100);
    EXPECT_EQ(*cols.begin(), -3);
    EXPECT_EQ(*cols.rbegin(), 11);
    EXPECT_TRUE(outside && empty);
}

}  // namespace
