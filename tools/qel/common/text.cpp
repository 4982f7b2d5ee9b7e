// The qel tool's text: font text checked and drawn, numbers drawn with the digit glyphs.
#include "text.h"

#include "cli.h"
#include "samples.h"

#include <qel.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace cli {

namespace {

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;
constexpr unsigned char kFirstHighByte = 0x80;
// GB2312 codes: lead bytes of the rows hzk16.dat holds, trail bytes of the 94 columns.
constexpr unsigned char kFirstLead = 0xA1;
constexpr unsigned char kLastLead = 0xF7;
constexpr unsigned char kFirstTrail = 0xA1;
constexpr unsigned char kLastTrail = 0xFE;

// Margins below a line's first row that the library's font functions ask for: y must be less than
// height − margin. The colour 16 x 16 form asks for 4 rows more than the grey one.
constexpr int kMargin16Grey = 16;
constexpr int kMargin16Colour = 20;
constexpr int kMargin32 = 32;

// The digit glyphs: 8 columns a digit, and the pen refuses a digit starting past width − 9 and a
// number starting below height − 11.
constexpr int kDigitWidth = 8;
constexpr int kDigitRightMargin = 9;
constexpr int kDigitBottomMargin = 11;

bool isGreyColour(const int rgb[3]) { return rgb[0] == rgb[1] && rgb[1] == rgb[2]; }

std::string hexByte(unsigned char b) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", b);
    return text;
}

}  // namespace

void requireFont() {
    const std::string font = fontFile();
    if (font.empty())
        throw UsageError("cannot find the font file hzk16.dat: the program's directory is unknown; set QEL_FONT_FILE to it");
    using FileHandle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
    FileHandle f(std::fopen(font.c_str(), "rb"), std::fclose);
    if (!f)
        throw UsageError("cannot read the font file '" + font +
                         "' (hzk16.dat beside the program, or the file QEL_FONT_FILE names)");
}

std::string fontText(const std::string& text, bool gb2312) {
    if (text.empty()) throw UsageError("the text is empty");
    for (size_t i = 0; i < text.size(); ++i) {
        const auto b = static_cast<unsigned char>(text[i]);
        if (b < kFirstPrintable || b == kDelete)
            throw UsageError("the text holds the control character " + hexByte(b) + " at byte " + std::to_string(i + 1));
        if (b < kFirstHighByte) continue;
        if (!gb2312)
            throw UsageError("the text holds a byte beyond ASCII at byte " + std::to_string(i + 1) + " (" + hexByte(b) +
                             "); give --gb2312 for GB2312 text (UTF-8 converts with iconv -f UTF-8 -t GB2312)");
        const bool pair = i + 1 < text.size() && b >= kFirstLead && b <= kLastLead &&
                          static_cast<unsigned char>(text[i + 1]) >= kFirstTrail &&
                          static_cast<unsigned char>(text[i + 1]) <= kLastTrail;
        if (!pair)
            throw UsageError("the text is neither ASCII nor GB2312 at byte " + std::to_string(i + 1) + " (" + hexByte(b) +
                             "): GB2312 characters are a byte 0xA1..0xF7 and a byte 0xA1..0xFE");
        ++i;
    }
    std::vector<char> in(text.begin(), text.end());
    in.push_back('\0');
    std::vector<char> wide(2 * text.size() + 1);
    QelChar2Wide(in.data(), wide.data());
    return std::string(wide.data());
}

int lowestTextRow(const Image& picture, const TextStyle& style) {
    const bool colour = !picture.isGrey() || !isGreyColour(style.foreground) || !isGreyColour(style.background);
    const int margin = style.size == 32 ? kMargin32 : colour ? kMargin16Colour : kMargin16Grey;
    return picture.height - margin - 1;
}

Image drawText(const Image& picture, int x, int y, const std::string& text, const TextStyle& style) {
    const bool grey = picture.isGrey() && isGreyColour(style.foreground) && isGreyColour(style.background);
    const int lowest = lowestTextRow(picture, style);
    if (x < 0 || y < 0 || x > picture.width - style.size || y > lowest) {
        const std::string kind = std::to_string(style.size) + " x " + std::to_string(style.size) + " text on this " +
                                 std::to_string(picture.width) + " x " + std::to_string(picture.height) +
                                 (grey ? " grey" : " colour") + " picture";
        if (picture.width < style.size || lowest < 0) throw UsageError("there is no room for " + kind);
        throw UsageError("--at " + std::to_string(x) + "," + std::to_string(y) + " leaves no room for " + kind +
                         ": x goes from 0 to " + std::to_string(picture.width - style.size) + " and y from 0 to " +
                         std::to_string(lowest));
    }
    Image out = grey ? picture : toColour(picture);
    std::vector<char> codes(text.begin(), text.end());
    codes.push_back('\0');
    const int* fg = style.foreground;
    const int* bg = style.background;
    unsigned char* p = out.pixels.data();
    bool drawn = false;
    if (grey && style.size == 32)
        drawn = QelDrawChineseString32x32(p, out.width, out.height, x, y, style.spacing, bg[0], fg[0], codes.data());
    else if (grey)
        drawn = QelDrawChineseString16x16(p, out.width, out.height, x, y, style.spacing, bg[0], fg[0], codes.data());
    else if (style.size == 32)
        drawn = QelDrawChineseString32x32(p, out.width, out.height, x, y, style.spacing, bg[0], bg[1], bg[2], fg[0], fg[1],
                                          fg[2], codes.data());
    else
        drawn = QelDrawChineseString16x16(p, out.width, out.height, x, y, style.spacing, bg[0], bg[1], bg[2], fg[0], fg[1],
                                          fg[2], codes.data());
    // The position was checked, so a refusal means the font could not be opened.
    if (!drawn) throw UsageError("cannot read the font file '" + fontFile() + "'");
    return out;
}

int numberWidth(int n) { return kDigitWidth * static_cast<int>(std::to_string(n).size()); }

bool drawNumber(Image& colour, int n, int x, int y, const int rgb[3]) {
    // The last digit must start at width − 9 or before, one column short of the edge.
    const int rightmost = colour.width - numberWidth(n) - (kDigitRightMargin - kDigitWidth);
    const int lowest = colour.height - kDigitBottomMargin;
    if (rightmost < 0 || lowest < 0) return false;
    const std::string number = std::to_string(n);
    std::vector<char> digits(number.begin(), number.end());
    digits.push_back('\0');
    // This function stores its three colour bytes in pixel order, blue first.
    QelSetNumberString2RGBImg(colour.pixels.data(), colour.width, colour.height, std::clamp(x, 0, rightmost),
                              std::clamp(y, 0, lowest), 0, static_cast<unsigned char>(rgb[2]),
                              static_cast<unsigned char>(rgb[1]), static_cast<unsigned char>(rgb[0]), digits.data());
    return true;
}

}  // namespace cli
