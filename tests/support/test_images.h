// Helpers shared by the test programs: byte buffers, random grey and BGR images from a seed, crops
// of images (the plain reference for rectangle copies), and temporary files.
#ifndef QEL_TESTS_SUPPORT_TEST_IMAGES_H
#define QEL_TESTS_SUPPORT_TEST_IMAGES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
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

// ---- images ------------------------------------------------------------------------------------

// n pseudo-random bytes; the same seed always gives the same bytes.
inline Bytes random_bytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes b(n);
    for (auto& x : b) x = static_cast<unsigned char>(rng());
    return b;
}

inline Bytes random_grey(int width, int height, unsigned seed) {
    return random_bytes(static_cast<size_t>(width) * static_cast<size_t>(height), seed);
}

// B, G, R bytes, 3 a pixel.
inline Bytes random_bgr(int width, int height, unsigned seed) {
    return random_bytes(static_cast<size_t>(width) * static_cast<size_t>(height) * 3, seed);
}

// Pixels (x1 + step i, y1 + step j) for i < cols, j < rows of a width-wide image with bytesPerPixel
// bytes a pixel, packed row after row.
inline Bytes crop(const Bytes& image, int width, int bytesPerPixel, int x1, int y1, int cols, int rows,
                  int step = 1) {
    Bytes out;
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < cols; ++i) {
            const size_t at = (static_cast<size_t>(y1 + step * j) * width + x1 + step * i) * bytesPerPixel;
            out.insert(out.end(), image.begin() + at, image.begin() + at + bytesPerPixel);
        }
    return out;
}

// Row y of an image whose rows are rowBytes long.
inline Bytes row_of(const Bytes& image, int rowBytes, int y) {
    return Bytes(image.begin() + y * rowBytes, image.begin() + (y + 1) * rowBytes);
}

inline bool all_equal(const Bytes& b, unsigned char value) {
    return std::all_of(b.begin(), b.end(), [value](unsigned char x) { return x == value; });
}

// ---- files -------------------------------------------------------------------------------------

// A path in the test temporary directory, unique per process, test and tag; the file is removed
// when the TempFile goes out of scope.
class TempFile {
public:
    explicit TempFile(const std::string& tag) {
        const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string test = info != nullptr ? info->name() : "x";
        std::replace(test.begin(), test.end(), '/', '_');  // parameterised tests are named a/b
        path_ = ::testing::TempDir() + "qel_" + std::to_string(QEL_TEST_PID) + "_" + test + "_" + tag;
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

inline void write_text(const char* path, const std::string& text) { write_all(path, Bytes(text.begin(), text.end())); }

}  // namespace qel_test

#endif
