// The golden table's entries as GoogleTest parameters: one test per entry, named after it.
#ifndef QEL_TESTS_GOLDEN_ENTRY_PARAMS_H
#define QEL_TESTS_GOLDEN_ENTRY_PARAMS_H

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

#include "golden/table.h"

namespace golden {

// The entry's name with every character that is not a letter or digit as '_'.
inline std::string entry_test_name(const ::testing::TestParamInfo<size_t>& info) {
    std::string name = table()[info.param].name;
    for (char& ch : name)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return name;
}

// The noise generator's seed for the whole process: the entries that add noise give fixed bytes.
inline void set_noise_seed() {
#if defined(_WIN32)
    _putenv_s("QEL_NOISE_SEED", "12345");
#else
    setenv("QEL_NOISE_SEED", "12345", 1);
#endif
}

inline std::vector<size_t> all_entries() {
    std::vector<size_t> indices(table().size());
    for (size_t i = 0; i < indices.size(); ++i) indices[i] = i;
    return indices;
}

}  // namespace golden

#endif
