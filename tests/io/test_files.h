// Temporary files for the file tests: unique per process and test, removed when the test ends.
#ifndef QEL_TESTS_IO_TEST_FILES_H
#define QEL_TESTS_IO_TEST_FILES_H

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#if defined(_WIN32)
#  include <process.h>
#  define QEL_TEST_PID _getpid()
#else
#  include <unistd.h>
#  define QEL_TEST_PID getpid()
#endif

namespace qel_test {

using Bytes = std::vector<unsigned char>;

class TempFile {
public:
    explicit TempFile(const std::string& tag) {
        const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = ::testing::TempDir() + "qel_" + std::to_string(QEL_TEST_PID) + "_" +
                (info != nullptr ? info->name() : "x") + "_" + tag;
    }
    ~TempFile() { std::remove(path_.c_str()); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    const char* c_str() const { return path_.c_str(); }

private:
    std::string path_;
};

inline Bytes read_all(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void write_all(const char* path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline void write_text(const char* path, const std::string& text) {
    write_all(path, Bytes(text.begin(), text.end()));
}

}  // namespace qel_test

#endif
