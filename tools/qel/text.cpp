// qel text: a line of ASCII or GB2312 text written into a picture with the library's 16 x 16 font
// (common/text.h).
#include "common/cli.h"
#include "common/image.h"
#include "common/text.h"

#include <string>
#include <vector>

namespace {

constexpr int kMaxSpacing = 256;

// --NAME as R,G,B or as one grey level G (0..255 each) into rgb; left as it is when not given.
void readColour(const cli::Args& args, const std::string& name, int rgb[3]) {
    if (!args.has(name)) return;
    const std::string text = args.value(name);
    const std::vector<int> v = text.find(',') == std::string::npos ? args.integers(name, 1) : args.integers(name, 3);
    for (int c : v)
        if (c < 0 || c > 255)
            throw cli::UsageError("--" + name + " wants R,G,B or a grey level, each 0..255, got '" + text + "'");
    for (int i = 0; i < 3; ++i) rgb[i] = v.size() == 1 ? v[0] : v[static_cast<size_t>(i)];
}

int runText(const cli::Args& args) {
    args.expectPositional(2);
    if (!args.has("output")) throw cli::UsageError("-o OUT is needed: the picture to write");
    if (!args.has("at")) throw cli::UsageError("--at X,Y is needed: where the text starts");
    const std::vector<int> at = args.integers("at", 2);
    cli::TextStyle style;
    style.size = args.integer("size", style.size);
    if (style.size != 16 && style.size != 32)
        throw cli::UsageError("--size wants 16 or 32, got '" + args.value("size") + "'");
    style.spacing = args.integer("spacing", style.spacing);
    if (style.spacing < 0 || style.spacing > kMaxSpacing)
        throw cli::UsageError("--spacing wants 0 to " + std::to_string(kMaxSpacing) + " pixels, got '" +
                              args.value("spacing") + "'");
    readColour(args, "colour", style.foreground);
    readColour(args, "background", style.background);

    const std::string in = args.positional()[0];
    const std::string codes = cli::fontText(args.positional()[1], args.flag("gb2312"));
    const std::string out = args.value("output");
    cli::checkOutputName(out);
    cli::requireFont();
    const cli::Image picture = cli::loadImage(in);
    const cli::Image drawn = cli::drawText(picture, at[0], at[1], codes, style);
    const size_t characters = codes.size() / 2;
    cli::saveAndConfirm(drawn, in, out,
                        std::to_string(characters) + (characters == 1 ? " character" : " characters") + " of " +
                            std::to_string(style.size) + " x " + std::to_string(style.size) + " text at " +
                            std::to_string(at[0]) + "," + std::to_string(at[1]));
    return 0;
}

const cli::Register textCommand({"text", "write a line of ASCII or GB2312 text into a picture",
    "usage: qel text IN -o OUT --at X,Y TEXT [--gb2312] [--size 16|32] [--colour C] [--background C]\n"
    "                [--spacing N]\n"
    "\n"
    "Writes TEXT into the picture with the 16 x 16 bitmap font hzk16.dat (GB2312 order), the\n"
    "top-left corner of its first character at X,Y, and saves it as OUT (.png or .bmp). ASCII\n"
    "characters are drawn in their full-width form, one 16 x 16 cell each. With --gb2312, bytes\n"
    "from 0x80 up are GB2312 codes, two bytes a character (UTF-8 text can be converted first:\n"
    "  qel text in.png -o out.png --at 8,8 --gb2312 \"$(printf '%s' '...' | iconv -t GB2312)\").\n"
    "Each cell is painted: the glyph in the colour, the rest in the background. A character that\n"
    "would pass the right edge goes to the next line, starting at x = 0; text that would pass the\n"
    "bottom is left out. A grey picture stays grey when both colours are grey levels.\n"
    "\n"
    "  --at X,Y          where the text starts; the first character must fit, and the line must\n"
    "                    start at least 17 rows above the bottom (21 for 16 x 16 text on colour,\n"
    "                    33 for --size 32)\n"
    "  --gb2312          TEXT may hold GB2312 characters as well as ASCII\n"
    "  --size 16|32      16: the font's own size (default); 32: every pixel doubled\n"
    "  --colour C        the glyphs' colour, R,G,B or one grey level (default 255: white)\n"
    "  --background C    the cells' colour, R,G,B or one grey level (default 0: black)\n"
    "  --spacing N       pixels between characters, 0..256 (default 0)\n"
    "\n"
    "The font is read from hzk16.dat beside the qel program, or from the file the environment\n"
    "variable QEL_FONT_FILE names; without it the command stops with exit status 2.\n"
    "\n"
    "Examples:\n"
    "  qel text photo.png -o labelled.png --at 10,10 \"Sample 12\"\n"
    "  qel text scan.bmp -o marked.bmp --at 0,0 --size 32 --colour 255,0,0 OK\n",
    {"output", "at", "size", "colour", "background", "spacing"}, runText, {"gb2312"}});

}  // namespace
