// qel info / qel convert: BMP files and raw camera frames.
#include "cli.h"

#include <qel.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace {

enum class Format { Bmp, Rgb, Grey, Yuv420P, Yuv420SP, Yuv422P, CbYCrY };

struct FormatName {
    const char* name;
    Format format;
};
constexpr FormatName kFormats[] = {
    {"bmp", Format::Bmp},         {"rgb", Format::Rgb},           {"grey", Format::Grey},
    {"gray", Format::Grey},       {"yuv420p", Format::Yuv420P},   {"yuv420sp", Format::Yuv420SP},
    {"yuv422p", Format::Yuv422P}, {"cbycry", Format::CbYCrY},
};

bool isFrame(Format f) { return f == Format::Yuv420P || f == Format::Yuv420SP || f == Format::Yuv422P || f == Format::CbYCrY; }

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
    return s;
}

Format parseFormat(const std::string& text) {
    for (const auto& f : kFormats) if (lower(text) == f.name) return f.format;
    throw cli::UsageError("unknown format '" + text + "' (use rgb, grey, yuv420p, yuv420sp, yuv422p or cbycry)");
}

// Format implied by a file name's extension, or Bmp when it has none we know.
bool formatFromExtension(const std::string& path, Format* out) {
    size_t dot = path.find_last_of('.');
    size_t slash = path.find_last_of("/\\");
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return false;
    const std::string ext = lower(path.substr(dot + 1));
    if (ext == "bmp") {
        *out = Format::Bmp;
        return true;
    }
    for (const auto& f : kFormats) {
        if (ext == f.name && isFrame(f.format)) {
            *out = f.format;
            return true;
        }
    }
    return false;
}

const char* formatName(Format f) {
    for (const auto& n : kFormats) if (n.format == f) return n.name;
    return "?";
}

size_t frameBytes(Format f, int w, int h) {
    const size_t pixels = static_cast<size_t>(w) * static_cast<size_t>(h);
    return (f == Format::Yuv420P || f == Format::Yuv420SP) ? pixels * 3 / 2 : pixels * 2;
}

void requireEvenSize(Format f, int w, int h, bool toFrame) {
    bool oddW = (w % 2) != 0;
    bool oddH = (h % 2) != 0;
    // Reading YUV422P accepts an odd height; every other layout wants even sides where it pairs rows.
    bool heightMatters = f == Format::Yuv420P || f == Format::Yuv420SP || (f == Format::Yuv422P && toFrame);
    if (oddW || (heightMatters && oddH))
        throw cli::UsageError(std::string(formatName(f)) + " needs an even width" + (heightMatters ? " and height" : "") +
                              " (got " + std::to_string(w) + " x " + std::to_string(h) + ")");
}

// ---- qel info -------------------------------------------------------------------------------
int runInfo(const cli::Args& args) {
    args.expectPositional(1);
    const std::string path = args.positional()[0];
    std::vector<unsigned char> bytes = cli::readFile(path);
    if (bytes.size() < 54 || bytes[0] != 'B' || bytes[1] != 'M') throw cli::Failure("'" + path + "' is not a BMP file");
    auto u32 = [&](size_t at) { return static_cast<uint32_t>(bytes[at] | (bytes[at + 1] << 8) | (bytes[at + 2] << 16) | (static_cast<uint32_t>(bytes[at + 3]) << 24)); };
    const int32_t width = static_cast<int32_t>(u32(18));
    const int32_t height = static_cast<int32_t>(u32(22));
    const int bits = bytes[28] | (bytes[29] << 8);
    const uint32_t offset = u32(10);
    std::string palette = "none";
    if (bits == 8) {
        if (bytes.size() < 54 + 1024) {
            palette = "truncated";
        } else {
            bool ramp = true;
            bool marks = true;
            const unsigned char markColours[4][3] = {{0, 255, 255}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
            for (int i = 0; i < 256; ++i) {
                const unsigned char* e = &bytes[54 + 4 * static_cast<size_t>(i)];
                bool grey = e[0] == i && e[1] == i && e[2] == i;
                ramp = ramp && grey;
                if (i < 252) marks = marks && grey;
                else marks = marks && e[0] == markColours[i - 252][0] && e[1] == markColours[i - 252][1] && e[2] == markColours[i - 252][2];
            }
            palette = ramp ? "grey ramp" : marks ? "grey ramp with marking colours 252..255" : "other (pixel values are read as palette indices)";
        }
    }
    std::cout << path << ": " << width << " x " << (height < 0 ? -height : height) << ", " << bits << "-bit"
              << (height < 0 ? ", rows stored top-down" : "") << ", pixel data at " << offset << ", palette: " << palette
              << ", " << bytes.size() << " bytes\n";
    if (bits == 8 || bits == 24) (void)cli::loadBmp(path);  // proves the readers accept it
    return 0;
}

// ---- qel convert ----------------------------------------------------------------------------
int runConvert(const cli::Args& args) {
    args.expectPositional(2);
    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];

    Format from = Format::Bmp;
    if (args.has("from")) from = parseFormat(args.value("from"));
    else if (!formatFromExtension(in, &from)) from = Format::Bmp;
    if (from == Format::Rgb || from == Format::Grey) from = Format::Bmp;

    // Output format: --to, else the extension; a BMP output keeps the input's depth unless told.
    Format to = Format::Bmp;
    if (args.has("to")) to = parseFormat(args.value("to"));
    else if (!formatFromExtension(out, &to)) to = Format::Bmp;

    // Load into colour (BGR) or grey.
    cli::Image img;
    if (isFrame(from)) {
        if (!args.has("width") || !args.has("height"))
            throw cli::UsageError(std::string("a raw ") + formatName(from) + " frame needs --width and --height");
        const int w = args.integer("width", 0);
        const int h = args.integer("height", 0);
        if (w <= 0 || h <= 0 || w > 65535 || h > 65535) throw cli::UsageError("--width and --height must be between 1 and 65535");
        std::vector<unsigned char> raw = cli::readFile(in);
        const size_t need = frameBytes(from, w, h);
        if (raw.size() != need)
            throw cli::UsageError("size mismatch: a " + std::to_string(w) + " x " + std::to_string(h) + " " + formatName(from) +
                                  " frame has " + std::to_string(need) + " bytes, '" + in + "' has " + std::to_string(raw.size()));
        requireEvenSize(from, w, h, false);
        img.width = w;
        img.height = h;
        if (to == Format::Grey) {
            // Grey straight from the luma plane.
            img.channels = 1;
            img.pixels.resize(static_cast<size_t>(w) * static_cast<size_t>(h));
            switch (from) {
                case Format::Yuv420P: QelYUV420P2Gry(raw.data(), w, h, img.pixels.data()); break;
                case Format::Yuv420SP: QelYUV420SP2Gry(raw.data(), w, h, img.pixels.data()); break;
                case Format::Yuv422P: QelYUV422P2Gry(raw.data(), w, h, img.pixels.data()); break;
                default: QelCbYCrY2Gry(raw.data(), w, h, img.pixels.data()); break;
            }
        } else {
            img.channels = 3;
            img.pixels.resize(static_cast<size_t>(w) * static_cast<size_t>(h) * 3);
            bool ok = false;
            switch (from) {
                case Format::Yuv420P: ok = QelYUV420P2RGB(raw.data(), w, h, img.pixels.data()); break;
                case Format::Yuv420SP: ok = QelYUV420SP2RGB(raw.data(), w, h, img.pixels.data()); break;
                case Format::Yuv422P: ok = QelYUV422P2RGB(raw.data(), w, h, img.pixels.data()); break;
                default: ok = QelCbYCrY2RGB(raw.data(), w, h, img.pixels.data()); break;
            }
            if (!ok) throw cli::UsageError(std::string(formatName(from)) + " frame size refused");
        }
    } else {
        if (args.has("width") || args.has("height")) throw cli::UsageError("--width/--height are for raw camera frames; a BMP carries its own size");
        img = cli::loadBmp(in);
    }

    const int w = img.width;
    const int h = img.height;
    if (to == Format::Bmp) to = img.channels == 1 ? Format::Grey : Format::Rgb;
    if (to == Format::Grey) {
        if (img.channels == 3) {
            std::vector<unsigned char> grey(static_cast<size_t>(w) * static_cast<size_t>(h));
            QelRGB2Gry(img.pixels.data(), w, h, grey.data());
            img.pixels.swap(grey);
            img.channels = 1;
        }
        cli::saveBmp(img, out);
    } else {
        if (img.channels == 1) {  // grey to colour: the same level in all three channels
            std::vector<unsigned char> bgr(img.pixels.size() * 3);
            for (size_t i = 0; i < img.pixels.size(); ++i) bgr[3 * i] = bgr[3 * i + 1] = bgr[3 * i + 2] = img.pixels[i];
            img.pixels.swap(bgr);
            img.channels = 3;
        }
        if (to == Format::Rgb) {
            cli::saveBmp(img, out);
        } else {
            requireEvenSize(to, w, h, true);
            std::vector<unsigned char> frame(frameBytes(to, w, h));
            bool ok = false;
            switch (to) {
                case Format::Yuv420P: ok = QelRGB2YUV420P(img.pixels.data(), w, h, frame.data()); break;
                case Format::Yuv420SP: ok = QelRGB2YUV420SP(img.pixels.data(), w, h, frame.data()); break;
                case Format::Yuv422P: ok = QelRGB2YUV422P(img.pixels.data(), w, h, frame.data()); break;
                default: ok = QelRGB2CbYCrY(img.pixels.data(), w, h, frame.data()); break;
            }
            if (!ok) throw cli::UsageError(std::string(formatName(to)) + " frame size refused");
            cli::writeFile(out, frame);
        }
    }
    std::cout << in << " (" << (isFrame(from) ? formatName(from) : "bmp") << ") -> " << out << " (" << formatName(to) << "), "
              << w << " x " << h << "\n";
    return 0;
}

const cli::Register info({"info", "size, depth and palette of a BMP file",
                          "usage: qel info FILE.bmp\n\n"
                          "Prints the width, height, bits per pixel, pixel-data offset and palette kind\n"
                          "(grey ramp, marking palette, other) of an uncompressed BMP file.\n",
                          {}, runInfo});

const cli::Register convert({"convert", "convert between BMP (colour or grey) and raw camera frames",
                             "usage: qel convert IN OUT [--from FMT] [--to FMT] [--width W --height H]\n\n"
                             "Formats: rgb (24-bit BMP), grey (8-bit BMP), yuv420p, yuv420sp, yuv422p, cbycry\n"
                             "(raw frames, no header). Formats are taken from the file extensions\n"
                             "(.bmp, .yuv420p, .yuv420sp, .yuv422p, .cbycry) unless --from/--to say otherwise;\n"
                             "a .bmp output is 24-bit unless --to grey.\n\n"
                             "  --from FMT       format of a raw input frame\n"
                             "  --to FMT         output format\n"
                             "  --width W        width of a raw input frame (required for raw input)\n"
                             "  --height H       height of a raw input frame (required for raw input)\n\n"
                             "YUV420P/YUV420SP need even width and height; YUV422P and CbYCrY need an even\n"
                             "width (writing YUV422P also needs an even height).\n"
                             "Examples:\n"
                             "  qel convert photo.bmp photo.yuv420p\n"
                             "  qel convert photo.yuv420p back.bmp --width 512 --height 512\n"
                             "  qel convert photo.bmp grey.bmp --to grey\n",
                             {"from", "to", "width", "height", "rect"}, runConvert});

}  // namespace
