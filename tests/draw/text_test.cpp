#include <qel.h>

#include "draw/draw_test_helpers.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using qel_test::Bytes;

using Record = std::array<unsigned char, 32>;

// ---- a small font of our own, named by QEL_FONT_FILE for the length of a test ----------------------

// Sets QEL_FONT_FILE (or unsets it, for null) for the life of the object.
class FontOverride {
public:
    explicit FontOverride(const char* path) : old_(std::getenv(kVar) ? std::getenv(kVar) : "") { set(path); }
    ~FontOverride() { set(old_.empty() ? nullptr : old_.c_str()); }
    FontOverride(const FontOverride&) = delete;
    FontOverride& operator=(const FontOverride&) = delete;

private:
    static constexpr const char* kVar = "QEL_FONT_FILE";
    static void set(const char* value) {
#if defined(_WIN32)
        _putenv_s(kVar, value != nullptr ? value : "");
#else
        value != nullptr ? setenv(kVar, value, 1) : unsetenv(kVar);
#endif
    }
    std::string old_;
};

Record record_of_rows(const std::array<uint16_t, 16>& rows) {
    Record r{};
    for (int i = 0; i < 16; ++i) r[2 * i] = static_cast<unsigned char>(rows[i] >> 8), r[2 * i + 1] = rows[i] & 0xFF;
    return r;
}

// A1A1 a diagonal, A1A2 an "L"; the file ends half way through A2A1, whose rows 0..7 are all set.
template <class RowBits>
Record make_record(RowBits bits) {
    std::array<uint16_t, 16> rows{};
    for (int r = 0; r < 16; ++r) rows[r] = static_cast<uint16_t>(bits(r));
    return record_of_rows(rows);
}
Record diagonal() { return make_record([](int r) { return 0x8000 >> r; }); }
Record ell() { return make_record([](int r) { return r == 15 ? 0xFFFF : 0x8000; }); }
Record half_set() { return make_record([](int r) { return r < 8 ? 0xFFFF : 0; }); }
const Record kBlank{};

class SmallFont : public ::testing::Test {
protected:
    SmallFont() : file_("font"), override_(file_.c_str()) {
        Bytes bytes(94 * 32 + 16, 0);
        const Record d = diagonal(), l = ell();
        std::copy(d.begin(), d.end(), bytes.begin());
        std::copy(l.begin(), l.end(), bytes.begin() + 32);
        std::fill(bytes.begin() + 94 * 32, bytes.end(), 0xFF);
        qel_test::write_all(file_.c_str(), bytes);
    }

private:
    qel_test::TempFile file_;
    FontOverride override_;
};

// The image a text should give: each record at its place, every glyph pixel a scale × scale block,
// foreground 200 on set bits and background 10 on clear ones, clipped to the image.
struct Placed {
    Record record;
    int x, y;
};
Bytes expected_grey(int w, int h, const std::vector<Placed>& glyphs, int scale) {
    Bytes img(static_cast<size_t>(w) * h, 77);
    for (const Placed& g : glyphs)
        for (int r = 0; r < 16 * scale; ++r)
            for (int c = 0; c < 16 * scale; ++c) {
                const int x = g.x + c, y = g.y + r, gr = r / scale, gc = c / scale;
                const bool set = (g.record[2 * gr + gc / 8] >> (7 - gc % 8)) & 1;
                if (x >= 0 && x < w && y >= 0 && y < h) img[static_cast<size_t>(y) * w + x] = set ? 200 : 10;
            }
    return img;
}

Bytes grey_text(int w, int h, int x, int y, int spacing, std::string text, bool doubled, bool* ok) {
    Bytes img(static_cast<size_t>(w) * h, 77);
    *ok = doubled ? QelDrawChineseString32x32(img.data(), w, h, x, y, spacing, 10, 200, &text[0])
                  : QelDrawChineseString16x16(img.data(), w, h, x, y, spacing, 10, 200, &text[0]);
    return img;
}

// The RGB forms on the same layout, checked against the grey image: 200 -> (1, 2, 3) stored
// blue first, 10 -> (4, 5, 6), 77 untouched.
void expect_rgb_matches(const Bytes& grey, int w, int h, int x, int y, int spacing, std::string text, bool doubled) {
    Bytes bgr(static_cast<size_t>(w) * h * 3, 77);
    const bool ok = doubled
                        ? QelDrawChineseString32x32(bgr.data(), w, h, x, y, spacing, 4, 5, 6, 1, 2, 3, &text[0])
                        : QelDrawChineseString16x16(bgr.data(), w, h, x, y, spacing, 4, 5, 6, 1, 2, 3, &text[0]);
    EXPECT_TRUE(ok);
    for (size_t p = 0; p < grey.size(); ++p) {
        const Bytes want = grey[p] == 200 ? Bytes{3, 2, 1} : grey[p] == 10 ? Bytes{6, 5, 4} : Bytes{77, 77, 77};
        ASSERT_EQ(qel_test::bgr_at(bgr, p), want) << "pixel " << p;
    }
}

TEST(Char2Wide, AsciiBecomesTheFullWidthRow) {
    char in[] = "A1\xB0\xA1~";
    char out[2 * sizeof in] = {};
    std::fill(out, out + sizeof out, 'z');
    QelChar2Wide(in, out);
    EXPECT_EQ(std::string(out), "\xA3\xC1\xA3\xB1\xB0\xA1\xA3\xFE");
    EXPECT_EQ(out[8], '\0');
}

TEST_F(SmallFont, GlyphsPaintTheirWholeCell) {
    bool ok = false;
    EXPECT_EQ(grey_text(20, 18, 2, 1, 0, "\xA1\xA1", false, &ok), expected_grey(20, 18, {{diagonal(), 2, 1}}, 1));
    EXPECT_TRUE(ok);
    expect_rgb_matches(grey_text(20, 22, 2, 1, 0, "\xA1\xA2", false, &ok), 20, 22, 2, 1, 0, "\xA1\xA2", false);
    // Doubled: every glyph pixel a 2 x 2 block.
    EXPECT_EQ(grey_text(40, 40, 3, 7, 0, "\xA1\xA2", true, &ok), expected_grey(40, 40, {{ell(), 3, 7}}, 2));
    expect_rgb_matches(grey_text(40, 40, 3, 7, 0, "\xA1\xA2", true, &ok), 40, 40, 3, 7, 0, "\xA1\xA2", true);
}

// The four font forms on a 40-wide image of height h, each with the margin it needs below y.
using Form = bool (*)(unsigned char* img, int h, int y, char* text);
const std::pair<Form, int> kForms[] = {
    {[](unsigned char* i, int h, int y, char* t) { return QelDrawChineseString16x16(i, 40, h, 0, y, 0, 1, 2, t); }, 16},
    {[](unsigned char* i, int h, int y, char* t) {
         return QelDrawChineseString16x16(i, 40, h, 0, y, 0, 1, 2, 3, 4, 5, 6, t);
     },
     20},  // the RGB form keeps four rows more
    {[](unsigned char* i, int h, int y, char* t) { return QelDrawChineseString32x32(i, 40, h, 0, y, 0, 1, 2, t); }, 32},
    {[](unsigned char* i, int h, int y, char* t) {
         return QelDrawChineseString32x32(i, 40, h, 0, y, 0, 1, 2, 3, 4, 5, 6, t);
     },
     32}};

TEST_F(SmallFont, RefusalMarginsLeaveTheImageUntouched) {
    char text[] = "\xA1\xA1";
    for (const auto& [draw, margin] : kForms)
        for (int y : {50 - margin - 1, 50 - margin}) {
            Bytes img(40 * 50 * 3, 77);
            const bool ok = draw(img.data(), 50, y, text);
            EXPECT_EQ(ok, y < 50 - margin) << "margin " << margin << ", y " << y;
            EXPECT_EQ(qel_test::all_equal(img, 77), !ok);
        }
}

TEST(FontText, MissingFontFileIsRefused) {
    const FontOverride none("/no/such/directory/hzk16.dat");
    char text[] = "\xA1\xA1";
    for (const auto& [draw, margin] : kForms) {
        Bytes img(40 * 50 * 3, 77);
        EXPECT_FALSE(draw(img.data(), 50, 0, text)) << "margin " << margin;
        EXPECT_TRUE(qel_test::all_equal(img, 77));
    }
}

TEST_F(SmallFont, PenWrapsToTheNextLineAndRunsPastTheBottomClipped) {
    // Width 40, spacing 2: glyphs at x = 0 and 18; then x = 36 > 23 wraps to the next line. The
    // third line starts at y = 32 and is cut by the bottom of the 40-row image.
    bool ok = false;
    const Record d = diagonal(), l = ell();
    const std::string text = "\xA1\xA1\xA1\xA2\xA1\xA2\xA1\xA1\xA1\xA1\xA1\xA2\xA1\xA1";
    const Bytes got = grey_text(40, 40, 0, 0, 2, text, false, &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(got, expected_grey(40, 40, {{d, 0, 0}, {l, 18, 0}, {l, 0, 16}, {d, 18, 16}, {d, 0, 32}, {l, 18, 32}}, 1));
    // Doubled on 80 x 80 from x = 5: 39, then 73 > 47 wraps; after the line at y = 64,
    // 64 + 32 >= 80 ends the text before the seventh glyph.
    const Bytes big = grey_text(80, 80, 5, 0, 2, text, true, &ok);
    EXPECT_EQ(big, expected_grey(80, 80, {{d, 5, 0}, {l, 39, 0}, {l, 0, 32}, {d, 34, 32}, {d, 0, 64}, {l, 34, 64}}, 2));
}

TEST_F(SmallFont, CodesWithoutACompleteRecordDrawBlankRows) {
    // A2A1: the file ends after its first 8 rows. A3C1: past the end. 0x41 0x42: before the start.
    // An odd last byte pairs with the terminating zero: (A1, 0) lies before the start too.
    bool ok = false;
    const Bytes got = grey_text(100, 20, 0, 0, 0, "\xA2\xA1\xA3\xC1\x41\x42\xA1", false, &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(got, expected_grey(100, 20, {{half_set(), 0, 0}, {kBlank, 16, 0}, {kBlank, 32, 0}, {kBlank, 48, 0}}, 1));
}

TEST_F(SmallFont, NothingIsWrittenOutsideTheImage) {
    std::mt19937 rng(3);
    const int edges[] = {INT_MIN, -40, -17, -1, 0, 1, 16, 17, 33, 40, INT_MAX};
    auto v = [&] { return rng() % 3 ? static_cast<int>(rng() % 90) - 30 : edges[rng() % 11]; };
    std::string text = "\xA1\xA1\xA1\xA2\xA2\xA1\xA1";
    for (int i = 0; i < 1500; ++i) {
        const int w = static_cast<int>(rng() % 70) - 2, h = static_cast<int>(rng() % 70) - 2;
        qel_test::GuardedImage grey(w, h, 1), bgr(w, h, 3);
        QelDrawChineseString16x16(grey.data(), w, h, v(), v(), v(), 1, 2, &text[0]);
        QelDrawChineseString16x16(bgr.data(), w, h, v(), v(), v(), 1, 2, 3, 4, 5, 6, &text[0]);
        QelDrawChineseString32x32(grey.data(), w, h, v(), v(), v(), 1, 2, &text[0]);
        QelDrawChineseString32x32(bgr.data(), w, h, v(), v(), v(), 1, 2, 3, 4, 5, 6, &text[0]);
        ASSERT_TRUE(grey.guards_intact() && bgr.guards_intact()) << w << "x" << h << ", round " << i;
    }
}

// ---- the font generated from Unifont, found beside this program ----------------------------------

#if defined(QEL_TEST_UNIFONT_HEX) && defined(QEL_TEST_FONT_FILE)

// Unifont's glyph of a code point as a font record: 8-pixel-wide glyphs centred (columns 4..11).
Record unifont_record(unsigned code) {
    std::ifstream in(QEL_TEST_UNIFONT_HEX);
    char key[16];
    std::snprintf(key, sizeof key, "%04X:", code);
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, std::strlen(key), key) != 0) continue;
        const std::string hex = line.substr(std::strlen(key));
        const size_t perRow = hex.size() / 16;
        std::array<uint16_t, 16> rows{};
        for (int r = 0; r < 16; ++r) {
            const unsigned v = static_cast<unsigned>(std::stoul(hex.substr(r * perRow, perRow), nullptr, 16));
            rows[r] = static_cast<uint16_t>(perRow == 2 ? v << 4 : v);
        }
        return record_of_rows(rows);
    }
    ADD_FAILURE() << "Unifont has no glyph for " << key;
    return {};
}

Record font_record(unsigned char hi, unsigned char lo) {
    std::ifstream in(QEL_TEST_FONT_FILE, std::ios::binary);
    in.seekg(((hi - 161) * 94 + (lo - 161)) * 32);
    Record r{};
    in.read(reinterpret_cast<char*>(r.data()), 32);
    EXPECT_TRUE(in.good());
    return r;
}

TEST(GeneratedFont, HoldsTheGB2312TableFromUnifont) {
    EXPECT_EQ(qel_test::read_all(QEL_TEST_FONT_FILE).size(), 87u * 94u * 32u);
    EXPECT_EQ(font_record(0xA3, 0xC1), unifont_record(0x41));  // full-width A: Unifont's A, centred
    EXPECT_EQ(font_record(0xA3, 0xB0), unifont_record(0x30));
    EXPECT_EQ(font_record(0xB0, 0xA1), unifont_record(0x554A));  // the first hanzi
    EXPECT_NE(font_record(0xB0, 0xA1), kBlank);
    EXPECT_EQ(font_record(0xA2, 0xA1), kBlank);  // unassigned codes stay blank
    EXPECT_EQ(font_record(0xAA, 0xA1), kBlank);
}

TEST(GeneratedFont, IsFoundBesideTheProgram) {
    const FontOverride none(nullptr);
    char ascii[] = "A";
    char wide[3];
    QelChar2Wide(ascii, wide);
    bool ok = false;
    EXPECT_EQ(grey_text(20, 17, 0, 0, 0, wide, false, &ok), expected_grey(20, 17, {{unifont_record(0x41), 0, 0}}, 1));
    EXPECT_TRUE(ok);
}

#else

TEST(GeneratedFont, AbsentFontIsRefused) {
    const FontOverride none(nullptr);
    bool ok = true;
    grey_text(20, 17, 0, 0, 0, "\xA3\xC1", false, &ok);
    EXPECT_FALSE(ok) << "no font was generated for this build, yet one was found beside the program";
}

#endif

}  // namespace
