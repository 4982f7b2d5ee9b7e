// What differs between Windows and other systems: the debug log's fixed path, the directory of the
// running program (where the font file is looked for) and the rectangle record.
#include <gtest/gtest.h>

#include <qel.h>

#include "core/platform.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>

namespace {

void set_env(const char* name, const char* value) {
#if defined(_WIN32)
    _putenv_s(name, value);
#else
    setenv(name, value, 1);
#endif
}

TEST(Platform, DebugLogPathIsFixedUnlessOverridden) {
    const char* given = std::getenv("QEL_DEBUG_LOG");
    const std::string saved = given != nullptr ? given : "";
    set_env("QEL_DEBUG_LOG", "");  // an empty override counts as none
#if defined(_WIN32)
    EXPECT_EQ(qel::debug_log_path(), "d:\\tmp\\QelDebugInfo.txt");
#else
    set_env("TMPDIR", "/var/tmp-qel");
    EXPECT_EQ(qel::debug_log_path(), "/var/tmp-qel/QelDebugInfo.txt");
#endif
    set_env("QEL_DEBUG_LOG", "elsewhere.txt");
    EXPECT_EQ(qel::debug_log_path(), "elsewhere.txt");
    set_env("QEL_DEBUG_LOG", saved.c_str());
}

TEST(Platform, ExecutableDirectoryHoldsThisProgram) {
    const std::string dir = qel::executable_directory();
    ASSERT_FALSE(dir.empty());
#if defined(_WIN32)
    EXPECT_EQ(dir.back(), '\\');
    const std::string self = dir + "qel_test_core_platform.exe";
#else
    EXPECT_EQ(dir.back(), '/');
    const std::string self = dir + "qel_test_core_platform";
#endif
    std::FILE* f = std::fopen(self.c_str(), "rb");
    EXPECT_NE(f, nullptr) << self;
    if (f != nullptr) std::fclose(f);
}

TEST(Platform, RectangleRecordIsLeftTopRightBottom) {
#if defined(_WIN32)
    static_assert(std::is_same_v<RECT, tagRECT>, "the system's own record");
#endif
    static_assert(sizeof(tagRECT) == 16);
    EXPECT_EQ(offsetof(tagRECT, left), 0u);
    EXPECT_EQ(offsetof(tagRECT, top), 4u);
    EXPECT_EQ(offsetof(tagRECT, right), 8u);
    EXPECT_EQ(offsetof(tagRECT, bottom), 12u);
}

}  // namespace
