// Every committed fuzz corpus and regression file through its target's body, as libFuzzer would
// feed it: a target whose expectations break aborts this test with the target's message.
#include <gtest/gtest.h>

#include "targets.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace qel_fuzz {
// Names the target in test listings instead of dumping its bytes.
void PrintTo(const Target& t, std::ostream* os) { *os << t.name; }
}  // namespace qel_fuzz

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const fs::path& dir) {
    std::vector<fs::path> files;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(dir, ec))
        if (e.is_regular_file()) files.push_back(e.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<uint8_t> bytesOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class FuzzInputs : public ::testing::TestWithParam<qel_fuzz::Target> {};

TEST_P(FuzzInputs, CorpusAndRegressionsRunClean) {
    const qel_fuzz::Target t = GetParam();
    const fs::path root = QEL_FUZZ_DIR;
    const std::vector<fs::path> corpus = filesIn(root / "corpus" / t.name);
    // A corpus of a handful of valid files of each kind is committed for every target.
    EXPECT_GE(corpus.size(), 4u) << "fuzz/corpus/" << t.name;
    std::vector<fs::path> all = corpus;
    for (const fs::path& f : filesIn(root / "regressions" / t.name)) all.push_back(f);
    for (const fs::path& f : all) {
        SCOPED_TRACE(f.string());
        const std::vector<uint8_t> bytes = bytesOf(f);
        EXPECT_EQ(t.entry(bytes.data(), bytes.size()), 0);
    }
    // And the empty input.
    EXPECT_EQ(t.entry(nullptr, 0), 0);
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzInputs, ::testing::ValuesIn(qel_fuzz::kTargets),
                         [](const ::testing::TestParamInfo<qel_fuzz::Target>& p) { return std::string(p.param.name); });

}  // namespace
