// The qel tool's text: font text checked and drawn with the library's 16 x 16 font (hzk16.dat),
// and numbers drawn with its built-in digit glyphs.
#ifndef QEL_TOOL_TEXT_H
#define QEL_TOOL_TEXT_H

#include "image.h"

#include <string>

namespace cli {

// UsageError naming the file looked for when the font the library reads (fontFile()) is missing
// or cannot be read.
void requireFont();

// `text` as the font functions take it, two bytes a character: ASCII characters in their
// full-width form (QelChar2Wide; a space is blank) and, when `gb2312` allows them, bytes from 0x80
// up kept as GB2312 codes. UsageError for an empty text, control characters, bytes from 0x80 up
// without `gb2312` (UTF-8 text, most likely), and with it bytes that are not pairs of a lead byte
// 0xA1..0xF7 and a trail byte 0xA1..0xFE.
std::string fontText(const std::string& text, bool gb2312);

struct TextStyle {
    int size = 16;                      // 16: the font's own glyphs; 32: each pixel doubled
    int spacing = 0;                    // pixels between characters
    int foreground[3] = {255, 255, 255};  // red, green, blue
    int background[3] = {0, 0, 0};        // the glyph cells are painted in it
};

// The lowest row a line of text may start on in `picture`: the library refuses text that starts
// lower (16 x 16 glyphs: 17 rows above the bottom on grey, 21 on colour; 32 x 32: 33).
int lowestTextRow(const Image& picture, const TextStyle& style);

// The picture with `text` (from fontText) drawn from (x, y), the top-left of its first glyph: grey
// when the picture is grey and both colours are grey, else in colour. Characters that would pass
// the right edge continue on the next line from x = 0; text past the bottom is left out. UsageError
// when (x, y) leaves no room for a first glyph (see lowestTextRow), or when the font cannot be read.
Image drawText(const Image& picture, int x, int y, const std::string& text, const TextStyle& style);

// Draws the decimal number n with the library's 8 x 9 digit glyphs (QelSetNumberString2RGBImg) in
// the colour red, green, blue on a black cell, its top-left corner at (x, y) moved as little as
// needed to keep every digit inside the picture. Returns false, drawing nothing, when the picture
// is too small for it.
bool drawNumber(Image& colour, int n, int x, int y, const int rgb[3]);

// Width and height of the cells drawNumber paints for n.
int numberWidth(int n);
constexpr int kDigitHeight = 9;

}  // namespace cli

#endif
