// Readers against files that declare more than they hold or stretch the line rules: a BMP header
// claiming a huge image is refused before any pixel buffer is allocated, and list files with a
// 10 MB line, no line end, CR alone or NUL bytes are read as documented.
#include <gtest/gtest.h>
#include <qel.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "support/test_images.h"

// Allocation watch: the largest single request made through operator new (the library allocates
// its pixel buffers with new[]) while a reader runs. Replacing the global operators in the test
// program reaches the library too wherever symbols interpose (static builds, ELF and Mach-O shared
// libraries); the control test below skips the watch where they do not.
namespace {
size_t g_largest = 0;
bool g_watching = false;
void* counted(size_t n) {
    if (g_watching && n > g_largest) g_largest = n;
    return std::malloc(n == 0 ? 1 : n);
}
void* counted_or_throw(size_t n) {
    void* p = counted(n);
    if (p == nullptr) throw std::bad_alloc();
    return p;
}
}  // namespace

void* operator new(size_t n) { return counted_or_throw(n); }
void* operator new[](size_t n) { return counted_or_throw(n); }
void* operator new(size_t n, const std::nothrow_t&) noexcept { return counted(n); }
void* operator new[](size_t n, const std::nothrow_t&) noexcept { return counted(n); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace {

using qel_test::Bytes;
using qel_test::TempFile;

struct Watched {
    unsigned char* image;
    int width;
    int height;
    size_t largest;
};

Watched readWatched(const char* path, bool colour) {
    Watched r{nullptr, -1, -1, 0};
    g_largest = 0;
    g_watching = true;
    r.image = colour ? QelRead24BitBmpFile2Img(path, &r.width, &r.height) : QelRead8BitBmpFile2Img(path, &r.width, &r.height);
    g_watching = false;
    r.largest = g_largest;
    return r;
}

// True when the watch sees the library's allocations: a 64 x 64 file read back must ask for its
// 4096 (or 12288) pixel bytes.
bool watchSeesLibrary() {
    TempFile file("watch.bmp");
    Bytes grey = qel_test::random_grey(64, 64, 3);
    EXPECT_TRUE(QelWrite8BitImg2BmpFile(grey.data(), 64, 64, file.c_str()));
    Watched r = readWatched(file.c_str(), false);
    EXPECT_NE(r.image, nullptr);
    delete[] r.image;
    return r.largest >= grey.size();
}

// A BMP header (and an 8-bit palette) declaring width x height, followed by `pixelBytes` bytes.
Bytes hugeHeader(int32_t width, int32_t height, bool colour, size_t pixelBytes) {
    const uint32_t offset = colour ? 54 : 54 + 1024;
    Bytes b(offset + pixelBytes, 0x5A);
    std::memset(b.data(), 0, offset);
    b[0] = 'B';
    b[1] = 'M';
    auto put = [&](size_t at, uint32_t v) {
        for (int i = 0; i < 4; ++i) b[at + static_cast<size_t>(i)] = static_cast<unsigned char>(v >> (8 * i));
    };
    put(10, offset);
    put(14, 40);
    put(18, static_cast<uint32_t>(width));
    put(22, static_cast<uint32_t>(height));
    b[26] = 1;
    b[28] = colour ? 24 : 8;
    return b;
}

TEST(ReaderLimits, HugeDeclaredImagesAreRefusedBeforeAllocating) {
    if (!watchSeesLibrary()) GTEST_SKIP() << "the library's allocations cannot be watched in this build";
    struct Case {
        int32_t width;
        int32_t height;
        bool colour;
    };
    const Case cases[] = {
        {60000, 60000, false},       {60000, 60000, true},         // over INT_MAX bytes
        {46340, 46340, false},       {26000, 27000, true},         // just under INT_MAX bytes
        {46340, -46340, false},      {26000, -27000, true},        // the same, stored top-down
        {0x40000000, 4, false},      {0x40000000, 4, true},        // products that wrap to 0 in 32 bits
        {65536, 65536, false},       {INT32_MAX, INT32_MAX, true},
        {1, INT32_MAX, false},       {3, 0x2AAAAAAA, true},        // one narrow column, rows of padding
    };
    TempFile file("huge.bmp");
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height) + (c.colour ? " colour" : " grey"));
        const Bytes b = hugeHeader(c.width, c.height, c.colour, 4096);
        qel_test::write_all(file.c_str(), b);
        Watched r = readWatched(file.c_str(), c.colour);
        EXPECT_EQ(r.image, nullptr);
        delete[] r.image;
        EXPECT_EQ(r.width, c.width);
        EXPECT_EQ(r.height, c.height < 0 ? -c.height : c.height);
        EXPECT_LE(r.largest, b.size()) << "asked for more than the file could fill";
    }
}

// ---- list files ----------------------------------------------------------------------------------

bool initWith(const TempFile& file, const std::string& text) {
    qel_test::write_all(file.c_str(), Bytes(text.begin(), text.end()));
    return QelSequenceFiles_Initialize(const_cast<char*>(file.c_str()));
}

// Line `index` as the n bytes the getter leaves, or "<false>".
std::string lineBytes(int index, size_t n) {
    std::string buf(n, 'x');
    return QelSequenceFiles_GetFileName(index, &buf[0], static_cast<int>(n)) ? buf : "<false>";
}

std::string nextLine(size_t n = 64) {
    std::string buf(n, 'x');
    return QelSequenceFiles_GetNextFileName(&buf[0], static_cast<int>(n)) ? std::string(buf.c_str()) : "<false>";
}

TEST(ListFileLimits, TenMegabyteLineIsReturnedWholeOrSkipped) {
    TempFile file("long.lst");
    const std::string huge(10u << 20, 'p');
    ASSERT_TRUE(initWith(file, huge + "\r\nb.bmp\r\n"));
    const std::string whole = lineBytes(0, huge.size() + 1);
    EXPECT_EQ(whole.compare(0, huge.size(), huge), 0);
    EXPECT_EQ(whole.back(), '\0');
    EXPECT_EQ(lineBytes(0, huge.size()), "<false>");  // no room for the terminator
    EXPECT_EQ(nextLine(), "<false>");                  // too long: skipped
    EXPECT_EQ(nextLine(), "b.bmp");
    EXPECT_EQ(nextLine(), "<false>");
}

TEST(ListFileLimits, WithoutCrLfThereAreNoLines) {
    TempFile file("noend.lst");
    const struct {
        const char* what;
        std::string text;
    } cases[] = {
        {"10 MB, no line end", std::string(10u << 20, 'q')},
        {"CR alone", "a.bmp\rb.bmp\r"},
        {"LF alone", "a.bmp\nb.bmp\n"},
        {"LF CR", "a.bmp\n\r"},
        {"a lone CR at the very end", "a.bmp\r"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(initWith(file, c.text));
        EXPECT_EQ(lineBytes(0, 64), "<false>");
        EXPECT_EQ(nextLine(), "<false>");
    }
}

TEST(ListFileLimits, NulBytesAndStrayCrOrLfStayInTheLine) {
    TempFile file("odd.lst");
    // NUL bytes are copied like any other byte (a C string stops at the first one); trailing
    // spaces are still blanked from the line's real end. A CR or LF not forming CR LF is text.
    ASSERT_TRUE(initWith(file, std::string("a\0b.bmp  \r\n\r\r\nx\ny\r\n", 19)));
    EXPECT_EQ(lineBytes(0, 10), std::string("a\0b.bmp\0\0\0", 10));
    EXPECT_EQ(lineBytes(1, 3), std::string("\r\0\0", 3));
    EXPECT_EQ(lineBytes(2, 4), std::string("x\ny\0", 4));
    EXPECT_EQ(lineBytes(3, 4), "<false>");
    EXPECT_EQ(nextLine(), "a");
    EXPECT_EQ(nextLine(), "\r");
    EXPECT_EQ(nextLine(), "x\ny");
}

}  // namespace
