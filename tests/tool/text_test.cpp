// The qel tool's text: the text checks, the font file's place, drawing at both sizes with the
// library's refusal margins, and numbers in digit glyphs kept inside the picture.
#include "common/samples.h"
#include "common/text.h"
#include "tool/tool_images.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using tool_test::at;
using tool_test::refusal;

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Points QEL_FONT_FILE at `path` for the life of the object (the library reads it too).
class FontFile {
public:
    explicit FontFile(const std::string& path) { setenv("QEL_FONT_FILE", path.c_str(), 1); }
    ~FontFile() { unsetenv("QEL_FONT_FILE"); }
};

// The font generated beside the qel tool, or "" when the build made none.
std::string builtFont() {
    std::error_code ec;
    return std::filesystem::is_regular_file(QEL_TEST_TOOL_FONT, ec) ? QEL_TEST_TOOL_FONT : "";
}

TEST(FontText, AsciiBecomesFullWidthAndGb2312PassesWithTheFlag) {
    EXPECT_EQ(cli::fontText("A1", false), "\xA3\xC1\xA3\xB1");
    EXPECT_EQ(cli::fontText("a \xB0\xA1", true), "\xA3\xE1\xA3\xA0\xB0\xA1");
    EXPECT_TRUE(contains(refusal([] { cli::fontText("", false); }), "empty"));
    EXPECT_TRUE(contains(refusal([] { cli::fontText("a\tb", false); }), "control character 0x09 at byte 2"));
    EXPECT_TRUE(contains(refusal([] { cli::fontText("\x7F", false); }), "control character 0x7F"));
    EXPECT_TRUE(contains(refusal([] { cli::fontText("h\xC3\xA9", false); }), "give --gb2312"));
    for (const char* bad : {"\xB0", "\xA0\xA1", "\xF8\xA1", "\xB0\xFF", "\xB0" "a"})
        EXPECT_TRUE(contains(refusal([&] { cli::fontText(bad, true); }), "neither ASCII nor GB2312 at byte 1")) << bad;
}

TEST(FontText, TheFontIsTheNamedFileOrTheOneBesideTheProgram) {
    EXPECT_EQ(cli::fontFile(), (std::filesystem::path(cli::executableDirectory()) / "hzk16.dat").string());
    const FontFile missing("/no/such/dir/hzk16.dat");
    EXPECT_EQ(cli::fontFile(), "/no/such/dir/hzk16.dat");
    EXPECT_TRUE(contains(refusal([] { cli::requireFont(); }), "cannot read the font file '/no/such/dir/hzk16.dat'"));
    EXPECT_TRUE(contains(refusal([] { cli::drawText(cli::blankImage(40, 40, 1), 0, 0, "\xA3\xC1", cli::TextStyle()); }),
                         "cannot read the font file"));
}

TEST(FontText, PositionsFollowTheLibrarysMarginsForEachForm) {
    const cli::Image grey = cli::blankImage(50, 40, 1);
    const cli::Image colour = cli::blankImage(50, 40, 3);
    cli::TextStyle style;
    EXPECT_EQ(cli::lowestTextRow(grey, style), 40 - 17);
    EXPECT_EQ(cli::lowestTextRow(colour, style), 40 - 21);
    style.foreground[0] = 0;  // a colour text makes a grey picture colour
    EXPECT_EQ(cli::lowestTextRow(grey, style), 40 - 21);
    style.size = 32;
    EXPECT_EQ(cli::lowestTextRow(grey, style), 40 - 33);
    const std::string why = refusal([&] { cli::drawText(grey, 19, 0, "\xA3\xC1", style); });
    EXPECT_EQ(why, "--at 19,0 leaves no room for 32 x 32 text on this 50 x 40 colour picture: x goes from 0 to 18 and y "
                   "from 0 to 7");
    EXPECT_TRUE(contains(refusal([&] { cli::drawText(grey, 0, 8, "\xA3\xC1", style); }), "y from 0 to 7"));
    EXPECT_TRUE(contains(refusal([&] { cli::drawText(grey, -1, 0, "\xA3\xC1", style); }), "x goes from 0"));
    EXPECT_TRUE(contains(refusal([&] { cli::drawText(cli::blankImage(50, 30, 1), 0, 0, "\xA3\xC1", style); }), "no room"));
}

TEST(FontText, CellsArePaintedAndTheDoubledGlyphIsTheGlyphDoubled) {
    const std::string font = builtFont();
    if (font.empty()) GTEST_SKIP() << "no hzk16.dat was generated in this build";
    const FontFile use(font);
    const cli::Image grey = cli::blankImage(60, 50, 1, 77);
    cli::TextStyle style;
    const cli::Image small = cli::drawText(grey, 3, 5, cli::fontText("AB", false), style);
    ASSERT_EQ(small.channels, 1);
    int lit = 0;
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 60; ++x) {
            const bool inCells = x >= 3 && x < 35 && y >= 5 && y < 21;
            const int v = at(small, x, y);
            if (!inCells) {
                EXPECT_EQ(v, 77) << x << "," << y;
            } else {
                EXPECT_TRUE(v == 0 || v == 255) << x << "," << y;
                lit += v == 255;
            }
        }
    EXPECT_GT(lit, 20);
    style.size = 32;
    const cli::Image big = cli::drawText(grey, 0, 0, cli::fontText("A", false), style);
    style.size = 16;
    const cli::Image one = cli::drawText(grey, 0, 0, cli::fontText("A", false), style);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x) EXPECT_EQ(at(big, x, y), at(one, x / 2, y / 2)) << x << "," << y;
    // A colour picture: the glyph in red, the cell in blue.
    style.foreground[1] = style.foreground[2] = 0;
    style.background[2] = 255;
    const cli::Image red = cli::drawText(cli::toColour(grey), 3, 5, cli::fontText("AB", false), style);
    for (int y = 5; y < 21; ++y)
        for (int x = 3; x < 35; ++x) {
            const bool glyph = at(small, x, y) == 255;
            EXPECT_EQ(at(red, x, y, 2), glyph ? 255 : 0);
            EXPECT_EQ(at(red, x, y, 0), glyph ? 0 : 255);
        }
}

TEST(Numbers, DigitsStayInsideThePictureInTheirColourOnBlack) {
    const int red[3] = {255, 0, 0};
    cli::Image img = cli::blankImage(40, 20, 3, 100);
    ASSERT_TRUE(cli::drawNumber(img, 12, 35, 50, red));  // moved to x 40 - 16 - 1, y 20 - 11
    EXPECT_EQ(cli::numberWidth(12), 16);
    int lit = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 40; ++x) {
            const bool inCells = x >= 23 && x < 39 && y >= 9 && y < 18;
            const std::vector<int> bgr = {at(img, x, y, 0), at(img, x, y, 1), at(img, x, y, 2)};
            if (!inCells) {
                EXPECT_EQ(bgr, (std::vector<int>{100, 100, 100})) << x << "," << y;
            } else {
                EXPECT_TRUE(bgr == (std::vector<int>{0, 0, 255}) || bgr == (std::vector<int>{0, 0, 0})) << x << "," << y;
                lit += bgr[2] == 255;
            }
        }
    EXPECT_GT(lit, 20);
    cli::Image tiny = cli::blankImage(8, 30, 3, 100);
    EXPECT_FALSE(cli::drawNumber(tiny, 7, 0, 0, red)) << "a digit needs 9 columns";
    EXPECT_EQ(tiny.pixels, cli::blankImage(8, 30, 3, 100).pixels);
    cli::Image low = cli::blankImage(30, 10, 3, 100);
    EXPECT_FALSE(cli::drawNumber(low, 7, 0, 0, red)) << "and 11 rows";
}

}  // namespace
