#include <gtest/gtest.h>

#include <qel.h>

#include <climits>
#include <cstdint>
#include <memory>

#include "support/test_images.h"

namespace {

using qel_test::Bytes;
using qel_test::read_all;
using qel_test::TempFile;

constexpr int kHeaders = 54;
constexpr int kEightBitOffset = 54 + 1024;
const char* const kMissingPath = "/nonexistent-qel-dir/x.bmp";

uint32_t u32_at(const Bytes& b, size_t at) {
    return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | static_cast<uint32_t>(b[at + 3]) << 24;
}
uint32_t u16_at(const Bytes& b, size_t at) { return b[at] | b[at + 1] << 8; }
void put_u32(Bytes& b, size_t at, uint32_t v) {
    for (int k = 0; k < 4; ++k) b[at + k] = static_cast<unsigned char>(v >> (8 * k));
}

struct Read {
    std::unique_ptr<unsigned char[]> pixels;
    int width = -7;
    int height = -7;
};

Read read24(const char* path) {
    Read r;
    r.pixels.reset(QelRead24BitBmpFile2Img(path, &r.width, &r.height));
    return r;
}
Read read8(const char* path) {
    Read r;
    r.pixels.reset(QelRead8BitBmpFile2Img(path, &r.width, &r.height));
    return r;
}

// The two depths: bytes per pixel, where the pixels start in the file, the writer and the reader.
struct Depth {
    const char* name;
    int bytesPerPixel;
    int pixelOffset;
    bool (*write)(unsigned char*, int, int, const char*);
    Read (*read)(const char*);
};
const Depth kRgb{"24-bit", 3, kHeaders, QelWrite24BitImg2BmpFile, read24};
const Depth kGrey{"8-bit", 1, kEightBitOffset, QelWrite8BitImg2BmpFile, read8};

// A hand-made 24-bit file: headers claiming width x height, offset 54, then `dataBytes` bytes.
Bytes hostile_file(int32_t width, int32_t height, size_t dataBytes) {
    Bytes b(kHeaders + dataBytes, 0x5A);
    b[0] = 'B';
    b[1] = 'M';
    put_u32(b, 2, static_cast<uint32_t>(b.size()));
    put_u32(b, 6, 0);
    put_u32(b, 10, kHeaders);
    put_u32(b, 14, 40);
    put_u32(b, 18, static_cast<uint32_t>(width));
    put_u32(b, 22, static_cast<uint32_t>(height));
    b[26] = 1;
    b[28] = 24;
    for (int i = 30; i < kHeaders; ++i) b[i] = 0;
    return b;
}

// ---- writing ---------------------------------------------------------------------------------

TEST(BmpFiles, RoundTripIsExactBothWaysAndHeadersCarryTheWrittenValues) {
    struct Case {
        const Depth& depth;
        int w, h;
        unsigned seed;
    };
    // 15-byte and 7-byte rows need padding; 12-byte and 8-byte rows need none.
    const Case cases[] = {{kRgb, 5, 3, 1}, {kGrey, 7, 4, 2}, {kRgb, 4, 2, 3}, {kGrey, 8, 2, 4}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.depth.name << " " << c.w << "x" << c.h);
        const Bytes image = qel_test::random_bytes(static_cast<size_t>(c.w * c.h * c.depth.bytesPerPixel), c.seed);
        TempFile first("a.bmp"), second("b.bmp");
        ASSERT_TRUE(c.depth.write(const_cast<unsigned char*>(image.data()), c.w, c.h, first.c_str()));
        Read r = c.depth.read(first.c_str());
        ASSERT_NE(r.pixels, nullptr);
        EXPECT_EQ(r.width, c.w);
        EXPECT_EQ(r.height, c.h);
        EXPECT_EQ(Bytes(r.pixels.get(), r.pixels.get() + image.size()), image);
        ASSERT_TRUE(c.depth.write(r.pixels.get(), c.w, c.h, second.c_str()));
        const Bytes b = read_all(first.c_str());
        EXPECT_EQ(b, read_all(second.c_str()));

        const size_t paddedRow = (c.w * c.depth.bytesPerPixel + 3) / 4 * 4;
        EXPECT_EQ(b.size(), c.depth.pixelOffset + paddedRow * c.h);
        EXPECT_EQ(b[0], 'B');
        EXPECT_EQ(b[1], 'M');
        EXPECT_EQ(u32_at(b, 2), c.depth.pixelOffset + image.size());  // the padding is left out, intended
        EXPECT_EQ(u32_at(b, 6), 0u);
        EXPECT_EQ(u32_at(b, 10), static_cast<uint32_t>(c.depth.pixelOffset));
        EXPECT_EQ(u32_at(b, 14), 40u);
        EXPECT_EQ(u32_at(b, 18), static_cast<uint32_t>(c.w));
        EXPECT_EQ(u32_at(b, 22), static_cast<uint32_t>(c.h));
        EXPECT_EQ(u16_at(b, 26), 1u);
        EXPECT_EQ(u16_at(b, 28), static_cast<uint32_t>(8 * c.depth.bytesPerPixel));
        for (size_t i = 30; i < 54; ++i) EXPECT_EQ(b[i], 0) << "byte " << i;
    }
}

TEST(BmpFiles, PaddingRepeatsTheFirstByteOfTheRowsLastPixel) {
    struct Case {
        const Depth& depth;
        Bytes image;
        int w, h;
        Bytes stored;  // the file after the pixel offset: rows bottom first, with their padding
    };
    const Case cases[] = {
        // one row of three pixels: 9 bytes, 3 pad bytes equal to the blue byte of pixel 2
        {kRgb, {1, 2, 3, 4, 5, 6, 77, 8, 9}, 3, 1, {1, 2, 3, 4, 5, 6, 77, 8, 9, 77, 77, 77}},
        // 3 x 2 grey: one pad byte per row, bottom row first
        {kGrey, {10, 20, 30, 40, 50, 60}, 3, 2, {40, 50, 60, 60, 10, 20, 30, 30}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.depth.name);
        Bytes image = c.image;
        TempFile file("pad.bmp");
        ASSERT_TRUE(c.depth.write(image.data(), c.w, c.h, file.c_str()));
        const Bytes b = read_all(file.c_str());
        EXPECT_EQ(Bytes(b.begin() + c.depth.pixelOffset, b.end()), c.stored);
        EXPECT_EQ(u32_at(b, 2), static_cast<uint32_t>(c.depth.pixelOffset + c.image.size()));
    }
}

TEST(BmpFiles, PlainPaletteIsAGreyRampAndMarkingPaletteEndsInFourColours) {
    unsigned char pixel = 255;
    TempFile plain("p.bmp"), marked("m.bmp");
    ASSERT_TRUE(QelWrite8BitImg2BmpFile(&pixel, 1, 1, plain.c_str()));
    ASSERT_TRUE(QelWrite8BitImg2BmpFileMarkColor(&pixel, 1, 1, marked.c_str()));
    const Bytes p = read_all(plain.c_str());
    const Bytes m = read_all(marked.c_str());
    for (int i = 0; i < 256; ++i) {
        const Bytes grey{static_cast<unsigned char>(i), static_cast<unsigned char>(i), static_cast<unsigned char>(i), 0};
        EXPECT_EQ(Bytes(p.begin() + 54 + 4 * i, p.begin() + 58 + 4 * i), grey) << i;
        if (i < 252) {
            EXPECT_EQ(Bytes(m.begin() + 54 + 4 * i, m.begin() + 58 + 4 * i), grey) << i;
        }
    }
    const Bytes marks(m.begin() + 54 + 4 * 252, m.begin() + kEightBitOffset);
    EXPECT_EQ(marks, (Bytes{0, 255, 255, 0, 255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0}));
    // Only the palette differs.
    EXPECT_EQ(Bytes(p.begin(), p.begin() + 54), Bytes(m.begin(), m.begin() + 54));
    EXPECT_EQ(Bytes(p.begin() + kEightBitOffset, p.end()), Bytes(m.begin() + kEightBitOffset, m.end()));
}

TEST(BmpFiles, WriterToAMissingDirectoryFails) {
    unsigned char pixel[3] = {};
    EXPECT_FALSE(QelWrite24BitImg2BmpFile(pixel, 1, 1, kMissingPath));
    EXPECT_FALSE(QelWrite8BitImg2BmpFile(pixel, 1, 1, kMissingPath));
}

// ---- reading ---------------------------------------------------------------------------------

TEST(BmpFiles, ReadsAFileFromAnotherWriter) {
    const char* path = QEL_SAMPLES_DIR "/astronaut.bmp";
    const Bytes file = read_all(path);
    ASSERT_EQ(file.size(), 512u * 512u * 3u + 54u);
    ASSERT_NE(u32_at(file, 38), 0u);  // this writer fills in the resolution fields
    Read r = read24(path);
    ASSERT_NE(r.pixels, nullptr);
    ASSERT_EQ(r.width, 512);
    ASSERT_EQ(r.height, 512);
    const size_t row = 512 * 3;
    // The file's first stored row is the image's bottom row, its last stored row the top row.
    EXPECT_EQ(Bytes(r.pixels.get() + 511 * row, r.pixels.get() + 512 * row), Bytes(file.begin() + 54, file.begin() + 54 + row));
    EXPECT_EQ(Bytes(r.pixels.get(), r.pixels.get() + row), Bytes(file.end() - row, file.end()));
    // Our copy differs only in the header fields the other writer filled in (image size, resolutions).
    TempFile copy("copy.bmp");
    ASSERT_TRUE(QelWrite24BitImg2BmpFile(r.pixels.get(), 512, 512, copy.c_str()));
    const Bytes ours = read_all(copy.c_str());
    ASSERT_EQ(ours.size(), file.size());
    for (size_t i = 0; i < ours.size(); ++i) {
        if (i < 34 || i >= 46) {
            ASSERT_EQ(ours[i], file[i]) << "byte " << i;
        }
    }
}

TEST(BmpFiles, EightBitReaderOnATwentyFourBitFileReadsRawBytes) {
    unsigned char rgb[4 * 2 * 3];
    for (int i = 0; i < 24; ++i) rgb[i] = static_cast<unsigned char>(i);
    TempFile file("lie.bmp");
    ASSERT_TRUE(QelWrite24BitImg2BmpFile(rgb, 4, 2, file.c_str()));
    // Read as 8-bit: 4 bytes per row, from the pixel offset 54; stored rows are bottom row first.
    Read r = read8(file.c_str());
    ASSERT_NE(r.pixels, nullptr);
    EXPECT_EQ(Bytes(r.pixels.get(), r.pixels.get() + 8), (Bytes{16, 17, 18, 19, 12, 13, 14, 15}));
}

TEST(BmpFiles, TopDownFileIsReadWithPositiveHeight) {
    Bytes b = hostile_file(1, -2, 8);  // two rows of 3 bytes + 1 pad byte, top row first
    const Bytes rows{1, 2, 3, 0, 4, 5, 6, 0};
    std::copy(rows.begin(), rows.end(), b.begin() + kHeaders);
    TempFile file("td.bmp");
    qel_test::write_all(file.c_str(), b);
    Read r = read24(file.c_str());
    ASSERT_NE(r.pixels, nullptr);
    EXPECT_EQ(r.width, 1);
    EXPECT_EQ(r.height, 2);
    EXPECT_EQ(Bytes(r.pixels.get(), r.pixels.get() + 6), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(BmpFiles, MissingFinalPadFailsOnlyTheEightBitReader) {
    TempFile file("short_pad.bmp"), grey("short_pad8.bmp");
    qel_test::write_all(file.c_str(), hostile_file(1, 2, 7));  // 24-bit: rows of 3 + 1 pad, last pad missing
    EXPECT_NE(read24(file.c_str()).pixels, nullptr);
    qel_test::write_all(grey.c_str(), hostile_file(3, 1, 3));  // 8-bit: one row of 3 bytes, its pad byte missing
    Read r = read8(grey.c_str());
    EXPECT_EQ(r.pixels, nullptr);
    EXPECT_EQ(r.width, 3);
    EXPECT_EQ(r.height, 1);
}

// Both readers return null without reading or allocating too much, and report the sizes they got
// to (0 when the file was refused before its sizes were taken).
TEST(BmpFiles, HostileFilesReturnNullWithoutReadingOrAllocatingTooMuch) {
    struct Case {
        const char* name;
        int32_t width, height;
        size_t data;
        uint32_t pixelOffset;
        size_t keptBytes;  // the file is cut to this length; 0 keeps it whole
        int outWidth, outHeight;
    };
    const Case cases[] = {
        {"zero width", 0, 4, 64, 54, 0, 0, 4},
        {"zero height", 4, 0, 64, 54, 0, 4, 0},
        {"negative width", -4, 4, 64, 54, 0, -4, 4},
        {"most negative height", 4, INT32_MIN, 64, 54, 0, 4, INT32_MIN},
        {"enormous", 100000, 100000, 64, 54, 0, 100000, 100000},
        {"product overflows", INT32_MAX, INT32_MAX, 64, 54, 0, INT32_MAX, INT32_MAX},
        {"65536 x 65536 x 3 overflows 32 bits", 65536, 65536, 64, 54, 0, 65536, 65536},
        {"46341 squared overflows 31 bits", 46341, 46341, 64, 54, 0, 46341, 46341},
        {"absurd width", INT32_MAX, 2, 64, 54, 0, INT32_MAX, 2},
        {"absurd height", 1, INT32_MAX, 64, 54, 0, 1, INT32_MAX},
        {"top-down enormous", 70000, -70000, 64, 54, 0, 70000, 70000},
        {"truncated rows", 4, 16, 63, 54, 0, 4, 16},  // needs 64 bytes even as 8-bit
        {"offset below the headers", 2, 2, 64, 53, 0, 0, 0},
        {"offset past the end", 1, 1, 4, 0xFFFFFFF0u, 0, 1, 1},
        {"header cut short", 2, 2, 0, 54, 53, 0, 0},
    };
    for (const Case& c : cases) {
        Bytes b = hostile_file(c.width, c.height, c.data);
        put_u32(b, 10, c.pixelOffset);
        if (c.keptBytes != 0) b.resize(c.keptBytes);
        TempFile file("hostile.bmp");
        qel_test::write_all(file.c_str(), b);
        for (const Read& r : {read24(file.c_str()), read8(file.c_str())}) {
            EXPECT_EQ(r.pixels, nullptr) << c.name;
            EXPECT_EQ(r.width, c.outWidth) << c.name;
            EXPECT_EQ(r.height, c.outHeight) << c.name;
        }
    }
    for (const Read& r : {read24(kMissingPath), read8(kMissingPath)}) {
        EXPECT_EQ(r.pixels, nullptr);
        EXPECT_EQ(r.width, 0);
        EXPECT_EQ(r.height, 0);
    }
}

TEST(FileBaseName, KeepsWhatFollowsTheLastBackslashUpToTheFirstDot) {
    struct Case {
        const char* path;
        const char* name;
    };
    const Case cases[] = {
        {"C:\\dir\\name.ext", "name"},
        {"C:/dir/name.ext", "C:/dir/name"},  // the slash is no separator
        {"a.b.bmp", "a"},
        {"d\\plain", "plain"},
        {"dir\\", ""},
        {"", ""},
    };
    for (const Case& c : cases) {
        std::string path = c.path;
        std::string name(path.size() + 1, 'x');
        QelGetFileNakeName(&path[0], &name[0]);
        EXPECT_STREQ(name.c_str(), c.name) << c.path;
    }
}

}  // namespace
