// The qel tool's image module: every readable file variant loads to its reference picture, refused
// files say why, writes round-trip exactly, output names and directories, and the threshold the
// tool binarises with.
#include "common/binarise.h"
#include "common/cli.h"
#include "common/image.h"
#include "support/test_images.h"
#include "tool/tool_images.h"

#include <qel.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

using qel_test::Bytes;
using qel_test::TempFile;
using tool_test::randomPicture;

std::string data(const std::string& name) { return std::string(QEL_TEST_DATA_DIR) + "/" + name; }

// The message of the UsageError that loading `path` throws, or "" when it loads.
std::string refusal(const std::string& path) {
    try {
        (void)cli::loadImage(path);
    } catch (const cli::UsageError& e) {
        return e.what();
    }
    return "";
}

void expectSamePicture(const cli::Image& a, const cli::Image& b, const std::string& what) {
    EXPECT_EQ(a.width, b.width) << what;
    EXPECT_EQ(a.height, b.height) << what;
    EXPECT_EQ(a.channels, b.channels) << what;
    EXPECT_EQ(a.pixels, b.pixels) << what;
}

// ---- reading --------------------------------------------------------------------------------------

TEST(ImageFiles, ReferencePicturesHoldTheirHandValues) {
    const cli::Image grey = cli::loadImage(data("grey.bmp"));
    ASSERT_EQ(grey.channels, 1);
    ASSERT_EQ(grey.width, 7);
    for (int y = 0; y < grey.height; ++y)
        for (int x = 0; x < grey.width; ++x) EXPECT_EQ(grey.pixels[static_cast<size_t>(y * 7 + x)], 17 * ((2 * x + 3 * y) % 16));
    const cli::Image colour = cli::loadImage(data("colour.bmp"));
    ASSERT_EQ(colour.channels, 3);
    EXPECT_EQ(Bytes(colour.pixels.begin(), colour.pixels.begin() + 6), (Bytes{0, 0, 255, 0, 255, 255}));  // red, yellow
}

TEST(ImageFiles, EveryColourVariantLoadsAsTheColourReference) {
    const cli::Image ref = cli::loadImage(data("colour.bmp"));
    for (const char* name : {"colour_pal16.bmp", "colour_pal256.bmp", "colour.png", "colour_rgba16.png",
                             "colour_palette.png", "colour_interlaced.png"})
        expectSamePicture(cli::loadImage(data(name)), ref, name);
}

TEST(ImageFiles, EveryGreyVariantLoadsAsTheGreyReference) {
    const cli::Image ref = cli::loadImage(data("grey.bmp"));
    for (const char* name : {"grey_pal_inverted.bmp", "grey_topdown.bmp", "grey.png", "grey4.png", "grey16_alpha.png",
                             "grey_palette.png"})
        expectSamePicture(cli::loadImage(data(name)), ref, name);
}

TEST(ImageFiles, JpegFilesDecodeCloseToTheirSource) {
    auto meanDifference = [](const cli::Image& a, const cli::Image& b) {
        EXPECT_EQ(a.channels, b.channels);
        EXPECT_EQ(a.pixels.size(), b.pixels.size());
        double sum = 0.0;
        for (size_t i = 0; i < a.pixels.size() && i < b.pixels.size(); ++i) sum += std::abs(a.pixels[i] - b.pixels[i]);
        return sum / static_cast<double>(a.pixels.size());
    };
    const cli::Image photo = cli::loadImage(data("photo.bmp"));
    EXPECT_LT(meanDifference(cli::loadImage(data("photo.jpg")), photo), 4.0);
    EXPECT_LT(meanDifference(cli::loadImage(data("photo_progressive.jpg")), photo), 4.0);
    EXPECT_LT(meanDifference(cli::loadImage(data("photo_grey.jpg")), cli::loadImage(data("photo_grey.bmp"))), 3.0);
    // A BMP with channels swapped would be far off.
    cli::Image swapped = photo;
    for (size_t i = 0; i < swapped.pixels.size(); i += 3) std::swap(swapped.pixels[i], swapped.pixels[i + 2]);
    EXPECT_GT(meanDifference(cli::loadImage(data("photo.jpg")), swapped), 10.0);
}

TEST(ImageFiles, RefusedFilesSayWhy) {
    const std::pair<std::string, std::string> cases[] = {
        {"depth1.bmp", "is a 1-bit BMP; only uncompressed 8-bit and 24-bit BMP files are read"},
        {"depth4.bmp", "is a 4-bit BMP"},
        {"depth32.bmp", "is a 32-bit BMP"},
        {"bitfields32.bmp", "is a 32-bit BMP with bit-field masks (BITFIELDS)"},
        {"rle8.bmp", "is an 8-bit BMP compressed with RLE8"},
        {"height_min.bmp", "declares a height of -2147483648"},
        {"truncated.bmp", "is truncated"},
        {"truncated.png", "damaged or truncated PNG"},
        {"truncated.jpg", "Premature end of JPEG file"},
        {"cmyk.jpg", "is a CMYK JPEG file"},
        {"make_images.py", "is not a BMP, PNG or JPEG file"},
        {"no_such_file.png", "no such file"},
        {"", "is a directory"},
    };
    for (const auto& [name, reason] : cases) {
        EXPECT_NE(refusal(data(name)).find(reason), std::string::npos) << name << ": " << refusal(data(name));
        if (name != "truncated.png" && name != "truncated.jpg") {  // their headers are whole
            EXPECT_THROW(cli::describeImageFile(data(name)), cli::UsageError) << name;
        }
    }
}

// CRC-32 of PNG chunks (the zlib polynomial, bit by bit).
uint32_t pngCrc(const unsigned char* p, size_t n) {
    uint32_t c = 0xFFFFFFFFu;
    for (size_t i = 0; i < n; ++i) {
        c ^= p[i];
        for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
    }
    return ~c;
}

void putBigEndian(Bytes& b, size_t at, uint32_t v, int bytes) {
    for (int k = 0; k < bytes; ++k) b[at + k] = static_cast<unsigned char>(v >> (8 * (bytes - 1 - k)));
}

// A copy of `name` whose header declares width x height (a JPEG's first frame header, a PNG's
// IHDR with its CRC made good), the compressed data left as it was.
std::string withDeclaredSize(const std::string& name, uint32_t width, uint32_t height, TempFile& file) {
    Bytes b = qel_test::read_all(data(name).c_str());
    if (name.size() > 4 && name.substr(name.size() - 4) == ".png") {
        putBigEndian(b, 16, width, 4);  // signature 8, length 4, "IHDR" 4
        putBigEndian(b, 20, height, 4);
        putBigEndian(b, 29, pngCrc(b.data() + 12, 17), 4);
    } else {
        size_t at = 2;
        while (!(b[at] == 0xFF && (b[at + 1] == 0xC0 || b[at + 1] == 0xC2))) at += 2 + (b[at + 2] << 8 | b[at + 3]);
        putBigEndian(b, at + 5, height, 2);  // marker 2, length 2, precision 1
        putBigEndian(b, at + 7, width, 2);
    }
    qel_test::write_all(file.c_str(), b);
    return file.c_str();
}

TEST(ImageFiles, CompressedFilesCannotDeclareMorePixelsThanTheyHold) {
    // 25000 x 25000 fits the tool's size limit even in colour (1.9 GB) and in 16-bit JPEG dimensions,
    // but no file of a few KB can hold it: refused before the pixels are allocated.
    for (const char* name : {"photo_grey.jpg", "photo_progressive.jpg", "grey.png"}) {
        TempFile file(std::string("huge_") + name);
        const std::string why = refusal(withDeclaredSize(name, 25000, 25000, file));
        const std::string format = std::string(name).find(".png") != std::string::npos ? "PNG" : "JPEG";
        EXPECT_NE(why.find("declares 25000 x 25000 pixels, more than a " + format + " file of"), std::string::npos)
            << name << ": " << why;
    }
    // At the limit's side that a real file can reach, the header alone is no reason to refuse: a
    // 64 x 48 JPEG declared 128 x 96 is read until its data runs out.
    TempFile file("double_photo_grey.jpg");
    EXPECT_NE(refusal(withDeclaredSize("photo_grey.jpg", 128, 96, file)).find("cannot be read as JPEG"), std::string::npos);
}

TEST(ImageFiles, DamagedCopiesAreReadOrRefusedSafely) {
    // Bytes of each format's files changed at random: the reader either refuses the copy with a
    // UsageError or returns an image whose size matches its pixel count.
    std::mt19937 rng(17);
    for (const char* name : {"colour_pal16.bmp", "grey.bmp", "colour_palette.png", "colour_interlaced.png",
                             "grey16_alpha.png", "photo.jpg", "photo_progressive.jpg"}) {
        const Bytes original = qel_test::read_all(data(name).c_str());
        for (int trial = 0; trial < 60; ++trial) {
            Bytes damaged = original;
            for (int hit = 0; hit < 1 + trial % 4; ++hit) damaged[rng() % damaged.size()] = static_cast<unsigned char>(rng());
            if (trial % 5 == 4) damaged.resize(rng() % damaged.size());
            TempFile file(std::string("damaged_") + name);
            qel_test::write_all(file.c_str(), damaged);
            try {
                const cli::Image img = cli::loadImage(file.c_str());
                EXPECT_EQ(img.pixels.size(), static_cast<size_t>(img.width) * static_cast<size_t>(img.height) * static_cast<size_t>(img.channels));
            } catch (const cli::UsageError&) {
            }
        }
    }
}

TEST(ImageFiles, DescriptionsNameFormatDepthAndPalette) {
    const cli::ImageFileInfo pal = cli::describeImageFile(data("colour_pal16.bmp"));
    EXPECT_EQ(pal.format, cli::ImageFormat::Bmp);
    EXPECT_EQ(pal.channels, 3);
    EXPECT_EQ(pal.details, "8-bit, palette of 16 colours, pixel data at 118");
    EXPECT_EQ(cli::describeImageFile(data("grey_topdown.bmp")).details, "8-bit, grey-ramp palette, rows stored top-down, pixel data at 1078");
    const cli::ImageFileInfo png = cli::describeImageFile(data("grey_palette.png"));
    EXPECT_EQ(png.details, "8-bit palette of 16 greys");
    EXPECT_EQ(png.channels, 1);
    const cli::ImageFileInfo jpeg = cli::describeImageFile(data("photo_progressive.jpg"));
    EXPECT_EQ(jpeg.width, 64);
    EXPECT_EQ(jpeg.height, 48);
    EXPECT_EQ(jpeg.details, "8-bit YCbCr colour, progressive");
}

TEST(ImageFiles, GreyAndColourLoadersConvert) {
    const cli::Image colour = cli::loadImage(data("colour.png"));
    const cli::Image grey = cli::loadGrey(data("colour.png"));
    ASSERT_EQ(grey.channels, 1);
    for (size_t i = 0; i < grey.pixels.size(); ++i) {  // the library's weights
        const unsigned char* p = &colour.pixels[3 * i];
        EXPECT_EQ(grey.pixels[i], (p[0] * 468 + p[1] * 2404 + p[2] * 1225) >> 12);
    }
    const cli::Image spread = cli::loadColour(data("grey.png"));
    const cli::Image levels = cli::loadImage(data("grey.png"));
    ASSERT_EQ(spread.channels, 3);
    for (size_t i = 0; i < levels.pixels.size(); ++i)
        EXPECT_EQ(Bytes(spread.pixels.begin() + 3 * i, spread.pixels.begin() + 3 * i + 3), Bytes(3, levels.pixels[i]));
}

// ---- writing --------------------------------------------------------------------------------------

TEST(ImageFiles, BmpAndPngRoundTripsAreExact) {
    for (const char* ext : {".bmp", ".png", ".PNG"}) {
        for (int channels : {1, 3}) {
            const cli::Image img = randomPicture(13, 9, channels, 5u + static_cast<unsigned>(channels));
            TempFile file(std::string("trip") + std::to_string(channels) + ext);
            cli::saveImage(img, file.c_str());
            expectSamePicture(cli::loadImage(file.c_str()), img, file.c_str());
        }
    }
}

TEST(ImageFiles, MarkingColoursShowInBmpAndPngAlike) {
    cli::Image img = randomPicture(6, 4, 1, 9);
    for (int level = 250; level < 256; ++level) img.pixels[static_cast<size_t>(level - 250)] = static_cast<unsigned char>(level);
    TempFile bmp("marks.bmp");
    TempFile png("marks.png");
    cli::saveImage(img, bmp.c_str(), true);
    cli::saveImage(img, png.c_str(), true);
    const cli::Image fromBmp = cli::loadImage(bmp.c_str());
    expectSamePicture(cli::loadImage(png.c_str()), fromBmp, "marks");
    ASSERT_EQ(fromBmp.channels, 3);
    EXPECT_EQ(Bytes(fromBmp.pixels.begin() + 3, fromBmp.pixels.begin() + 6), Bytes(3, 251));        // grey stays grey
    EXPECT_EQ(Bytes(fromBmp.pixels.begin() + 12, fromBmp.pixels.begin() + 15), (Bytes{0, 255, 0}));  // 254 green
}

TEST(ImageFiles, OutputNamesChooseTheFormatOrAreRefused) {
    EXPECT_EQ(cli::outputFormatFor("a/b.c/out.PNG"), cli::ImageFormat::Png);
    EXPECT_EQ(cli::outputFormatFor("out.bmp"), cli::ImageFormat::Bmp);
    for (const char* name : {"out.jpg", "out.JPEG", "out.yuv", "out", "dir.png/out"})
        EXPECT_THROW(cli::outputFormatFor(name), cli::UsageError) << name;
    const std::string dir = testing::TempDir() + "qel_tool_dir.png";
    std::filesystem::create_directories(dir);
    EXPECT_THROW(cli::checkOutputName(dir), cli::UsageError);
    // A write that fails is a Failure and leaves no file behind.
    const std::string lost = dir + "/missing/out.png";
    EXPECT_THROW(cli::saveImage(randomPicture(2, 2, 1, 1), lost), cli::Failure);
    EXPECT_FALSE(std::filesystem::exists(lost + ".part"));
    std::filesystem::remove_all(dir);
}

TEST(ImageFiles, ListsTheReadableFilesOfADirectorySorted) {
    const std::string dir = testing::TempDir() + "qel_tool_list";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir + "/sub.png");
    for (const char* name : {"c.jpeg", "a.bmp", "b.PNG", "d.txt", "e.jpg.part", "sub.png/f.png"}) qel_test::write_text((dir + "/" + name).c_str(), "x");
    EXPECT_EQ(cli::listImageFiles(dir), (std::vector<std::string>{dir + "/a.bmp", dir + "/b.PNG", dir + "/c.jpeg"}));
    EXPECT_THROW(cli::listImageFiles(dir + "/a.bmp"), cli::UsageError);
    std::filesystem::remove_all(dir);
}

// ---- the binarising threshold ------------------------------------------------------------------------

int chosenFor(std::initializer_list<std::pair<int, int>> levelCounts) {
    int hist[cli::kGreyLevels] = {};
    for (const auto& [level, count] : levelCounts) hist[level] = count;
    return cli::chooseThreshold(hist).level;
}

TEST(ChooseThreshold, FewLevelsBinariseTheObviousWay) {
    EXPECT_EQ(chosenFor({{0, 900}, {128, 100}}), 128);  // the library's Otsu gives 0 here
    EXPECT_EQ(chosenFor({{0, 10}, {255, 990}}), 255);
    EXPECT_EQ(chosenFor({{50, 3}, {200, 3}}), 200);
    EXPECT_EQ(chosenFor({{0, 5}, {128, 5}, {255, 5}}), 128);  // only the darkest level is background
    EXPECT_EQ(chosenFor({{30, 7}}), 31);                      // a dark flat image: all background
    EXPECT_EQ(chosenFor({{200, 7}}), 200);                    // a bright one: all object
}

TEST(ChooseThreshold, KeepsOtsuWhenItSplitsTheImageAndAlwaysSplitsTwoOrMoreLevels) {
    std::mt19937 rng(3);
    for (int trial = 0; trial < 300; ++trial) {
        int hist[cli::kGreyLevels] = {};
        const int levels = 2 + trial % 12;
        for (int i = 0; i < levels; ++i) hist[rng() % 256] += 1 + static_cast<int>(rng() % 1000);
        int lo = 0;
        while (hist[lo] == 0) ++lo;
        int hi = 255;
        while (hist[hi] == 0) --hi;
        int distinct = 0;
        for (int count : hist) distinct += count != 0;
        if (distinct < 2) continue;  // the draws all hit one level
        const cli::ChosenThreshold chosen = cli::chooseThreshold(hist);
        EXPECT_GT(chosen.level, lo);  // some pixels background
        EXPECT_LE(chosen.level, hi);  // some object
        const int otsu = QelGetOtsuThreshold(hist, cli::kGreyLevels);
        if (distinct == 2) {
            EXPECT_EQ(chosen.level, hi);
        } else if (otsu > lo) {
            EXPECT_EQ(chosen.level, otsu);
        }
    }
}

}  // namespace
