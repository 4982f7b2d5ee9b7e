// The BMP readers against damaged and hostile files: random truncations and header corruptions
// must give null or a buffer of exactly the reported size, never a crash or an over-read
// (the sanitizer build checks the latter).
#include <gtest/gtest.h>
#include <qel.h>

#include <cstdint>
#include <iterator>
#include <random>
#include <string>

#include "support/test_images.h"

namespace {

using qel_test::Bytes;
using qel_test::TempFile;

void put32(Bytes& b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + static_cast<size_t>(i)] = static_cast<unsigned char>(v >> (8 * i));
}

// A valid file written by the library itself, 8-bit or 24-bit.
Bytes validFile(int width, int height, bool colour, unsigned seed) {
    Bytes pixels = colour ? qel_test::random_bgr(width, height, seed) : qel_test::random_grey(width, height, seed);
    TempFile file("valid.bmp");
    const bool ok = colour ? QelWrite24BitImg2BmpFile(pixels.data(), width, height, file.c_str())
                           : QelWrite8BitImg2BmpFile(pixels.data(), width, height, file.c_str());
    EXPECT_TRUE(ok);
    Bytes bytes = qel_test::read_all(file.c_str());
    EXPECT_GE(bytes.size(), 54u);
    if (bytes.size() < 54) bytes.resize(54);
    return bytes;
}

// Reads the file with both readers; a non-null result must be a whole image of the reported size.
void readBoth(const char* path, size_t fileSize) {
    for (int bytesPerPixel : {1, 3}) {
        int w = -7;
        int h = -7;
        unsigned char* img = bytesPerPixel == 3 ? QelRead24BitBmpFile2Img(path, &w, &h)
                                                : QelRead8BitBmpFile2Img(path, &w, &h);
        if (img == nullptr) continue;
        ASSERT_GT(w, 0);
        ASSERT_GT(h, 0);
        const uint64_t bytes = static_cast<uint64_t>(w) * static_cast<uint64_t>(h) * static_cast<uint64_t>(bytesPerPixel);
        // Every pixel row came from the file, so the image can never be larger than the file.
        ASSERT_LE(bytes, fileSize);
        // Touch the first and last byte: the sanitizer build fails here if the buffer is short.
        volatile unsigned char first = img[0];
        volatile unsigned char last = img[bytes - 1];
        (void)first;
        (void)last;
        delete[] img;
    }
}

TEST(BmpHostileFiles, RandomTruncationsNeverOverRead) {
    TempFile path("truncated.bmp");
    std::mt19937 rng(1);
    for (int round = 0; round < 120; ++round) {
        const bool colour = (round % 2) == 0;
        Bytes file = validFile(1 + round % 7, 1 + (round / 7) % 5, colour, static_cast<unsigned>(round));
        const size_t keep = std::uniform_int_distribution<size_t>(0, file.size())(rng);
        file.resize(keep);
        qel_test::write_all(path.c_str(), file);
        SCOPED_TRACE("round " + std::to_string(round) + ", kept " + std::to_string(keep) + " bytes");
        readBoth(path.c_str(), file.size());
    }
}

TEST(BmpHostileFiles, CorruptHeaderFieldsGiveNullOrAWholeImage) {
    TempFile path("corrupt.bmp");
    const uint32_t extremes[] = {0u, 1u, 2u, 0x7fffffffu, 0x80000000u, 0xffffffffu, 0xfffffffeu,
                                 65536u, 1u << 20, 46341u, 0x40000000u, 53u, 54u, 1078u};
    std::mt19937 rng(2);
    for (int round = 0; round < 400; ++round) {
        Bytes file = validFile(3, 2, round % 3 == 0, static_cast<unsigned>(round));
        // Width (18), height (22) and pixel-data offset (10) get extreme or random values;
        // now and then a random header byte is scrambled too.
        const size_t fields[] = {18, 22, 10};
        for (size_t at : fields) {
            if (rng() % 2 == 0) continue;
            uint32_t v = (rng() % 3 == 0) ? static_cast<uint32_t>(rng()) : extremes[rng() % std::size(extremes)];
            put32(file, at, v);
        }
        if (rng() % 4 == 0) file[rng() % 54] = static_cast<unsigned char>(rng());
        qel_test::write_all(path.c_str(), file);
        SCOPED_TRACE("round " + std::to_string(round));
        readBoth(path.c_str(), file.size());
    }
}

}  // namespace
