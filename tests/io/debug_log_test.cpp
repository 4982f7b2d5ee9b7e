#include <gtest/gtest.h>

#include <qel.h>

#include <cstdlib>
#include <string>

#include "support/test_images.h"

namespace {

std::string read_text(const std::string& path) {
    const qel_test::Bytes b = qel_test::read_all(path.c_str());
    return std::string(b.begin(), b.end());
}

// The log is a text file: on Windows each "\n" is written as CR LF.
std::string as_written(std::string text) {
#if defined(_WIN32)
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) text.insert(at, 1, '\r');
#endif
    return text;
}

void set_log_path(const std::string& path) {
#if defined(_WIN32)
    _putenv_s("QEL_DEBUG_LOG", path.c_str());
#else
    setenv("QEL_DEBUG_LOG", path.c_str(), 1);
#endif
}

// One test, because the first-call flag lives for the whole process.
TEST(DebugLog, FirstCallEmptiesTheLogLaterCallsAppendAndAMissingDirectoryIsIgnored) {
    const char* given = std::getenv("QEL_DEBUG_LOG");
    const std::string path = given != nullptr && *given != '\0'
                                 ? std::string(given)
                                 : ::testing::TempDir() + "qel_debug_log_test.txt";
    set_log_path(path);
    qel_test::write_text(path.c_str(), "left over from an earlier run\n");

    QelDebugInfo(const_cast<char*>("start"), 1);
    EXPECT_EQ(read_text(path), as_written("\nstart,1"));
    QelDebugInfo(const_cast<char*>("value"), -42);
    EXPECT_EQ(read_text(path), as_written("\nstart,1\nvalue,-42"));

    // A log that cannot be opened drops the record and changes nothing.
    set_log_path("/nonexistent-qel-dir/log.txt");
    QelDebugInfo(const_cast<char*>("lost"), 3);
    set_log_path(path);
    QelDebugInfo(const_cast<char*>("end"), 0);
    EXPECT_EQ(read_text(path), as_written("\nstart,1\nvalue,-42\nend,0"));
}

}  // namespace
