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

// Converts a whole camera frame to BGR, or to grey (straight from the luma plane).
cli::Image decodeFrame(Format f, unsigned char* raw, int w, int h, bool grey) {
    cli::Image img;
    img.width = w;
    img.height = h;
    img.channels = grey ? 1 : 3;
    img.pixels.resize(static_cast<size_t>(w) * static_cast<size_t>(h) * static_cast<size_t>(img.channels));
    unsigned char* out = img.pixels.data();
    if (grey) {
        switch (f) {
            case Format::Yuv420P: QelYUV420P2Gry(raw, w, h, out); break;
            case Format::Yuv420SP: QelYUV420SP2Gry(raw, w, h, out); break;
            case Format::Yuv422P: QelYUV422P2Gry(raw, w, h, out); break;
            default: QelCbYCrY2Gry(raw, w, h, out); break;
        }
        return img;
    }
    bool ok = false;
    switch (f) {
        case Format::Yuv420P: ok = QelYUV420P2RGB(raw, w, h, out); break;
        case Format::Yuv420SP: ok = QelYUV420SP2RGB(raw, w, h, out); break;
        case Format::Yuv422P: ok = QelYUV422P2RGB(raw, w, h, out); break;
        default: ok = QelCbYCrY2RGB(raw, w, h, out); break;
    }
    if (!ok) throw cli::UsageError(std::string(formatName(f)) + " frame size refused");
    return img;
}

// Copies rectangle x1,x2,y1,y2 of a camera frame out as BGR or grey, through the library's rectangle copies.
cli::Image cropFrame(Format f, unsigned char* frame, int w, int h, const std::vector<int>& r, bool grey) {
    cli::Image img;
    img.width = r[1] - r[0] + 1;
    img.height = r[3] - r[2] + 1;
    img.channels = grey ? 1 : 3;
    img.pixels.resize(static_cast<size_t>(img.width) * static_cast<size_t>(img.height) * static_cast<size_t>(img.channels));
    unsigned char* out = img.pixels.data();
    if (grey) {
        switch (f) {
            case Format::Yuv420P: QelCopyYUV420PRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            case Format::Yuv420SP: QelCopyYUV420SPRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            case Format::Yuv422P: QelCopyYUV422PRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            default: QelCopyCbYCrYRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
        }
        return img;
    }
    bool ok = false;
    const char* rule = "";
    switch (f) {
        case Format::Yuv420P:
            ok = QelCopyYUV420PRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and y1 and an even rectangle width and height";
            break;
        case Format::Yuv420SP:
            ok = QelCopyYUV420SPRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and y1 and an even rectangle width and height";
            break;
        case Format::Yuv422P:
            ok = QelCopyYUV422PRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and an even rectangle width";
            break;
        default:
            ok = QelCopyCbYCrYRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and an even rectangle width";
            break;
    }
    if (!ok) throw cli::UsageError(std::string("a colour rectangle of a ") + formatName(f) + " frame needs " + rule);
    return img;
}

// Copies rectangle x1,x2,y1,y2 of a BMP image.
cli::Image cropImage(const cli::Image& src, const std::vector<int>& r) {
    cli::Image img;
    img.width = r[1] - r[0] + 1;
    img.height = r[3] - r[2] + 1;
    img.channels = src.channels;
    const size_t rowBytes = static_cast<size_t>(img.width) * static_cast<size_t>(img.channels);
    img.pixels.resize(rowBytes * static_cast<size_t>(img.height));
    for (int y = 0; y < img.height; ++y) {
        const size_t from = (static_cast<size_t>(r[2] + y) * static_cast<size_t>(src.width) + static_cast<size_t>(r[0])) * static_cast<size_t>(src.channels);
        std::copy_n(src.pixels.begin() + static_cast<std::ptrdiff_t>(from), rowBytes, img.pixels.begin() + static_cast<std::ptrdiff_t>(rowBytes * static_cast<size_t>(y)));
    }
    return img;
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

    // Optional rectangle x1,x2,y1,y2 (both ends included), checked against the image once its size is known.
    std::vector<int> rect;
    if (args.has("rect")) rect = args.integers("rect", 4);
    auto checkRect = [&](int w, int h) {
        if (rect.empty()) return;
        if (rect[0] < 0 || rect[2] < 0 || rect[0] > rect[1] || rect[2] > rect[3] || rect[1] >= w || rect[3] >= h)
            throw cli::UsageError("--rect " + args.value("rect") + " is not inside the " + std::to_string(w) + " x " +
                                  std::to_string(h) + " image (want x1<=x2<width, y1<=y2<height)");
    };

    // Load into colour (BGR) or grey; a camera frame is cropped while it is converted.
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
        checkRect(w, h);
        img = rect.empty() ? decodeFrame(from, raw.data(), w, h, to == Format::Grey)
                           : cropFrame(from, raw.data(), w, h, rect, to == Format::Grey);
    } else {
        if (args.has("width") || args.has("height")) throw cli::UsageError("--width/--height are for raw camera frames; a BMP carries its own size");
        img = cli::loadBmp(in);
        checkRect(img.width, img.height);
        if (!rect.empty()) img = cropImage(img, rect);
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
                             "usage: qel convert IN OUT [--from FMT] [--to FMT] [--width W --height H] [--rect x1,x2,y1,y2]\n\n"
                             "Formats: rgb (24-bit BMP), grey (8-bit BMP), yuv420p, yuv420sp, yuv422p, cbycry\n"
                             "(raw frames, no header). Formats are taken from the file extensions\n"
                             "(.bmp, .yuv420p, .yuv420sp, .yuv422p, .cbycry) unless --from/--to say otherwise;\n"
                             "a .bmp output is 24-bit unless --to grey.\n\n"
                             "  --from FMT       format of a raw input frame\n"
                             "  --to FMT         output format\n"
                             "  --width W        width of a raw input frame (required for raw input)\n"
                             "  --height H       height of a raw input frame (required for raw input)\n"
                             "  --rect x1,x2,y1,y2  copy only this rectangle (left, right, top, bottom, ends\n"
                             "                   included); a camera frame is cropped by the library's\n"
                             "                   rectangle copies, which want even colour rectangles\n\n"
                             "YUV420P/YUV420SP need even width and height; YUV422P and CbYCrY need an even\n"
                             "width (writing YUV422P also needs an even height).\n"
                             "Examples:\n"
                             "  qel convert photo.bmp photo.yuv420p\n"
                             "  qel convert photo.yuv420p back.bmp --width 512 --height 512\n"
                             "  qel convert photo.bmp grey.bmp --to grey\n"
                             "  qel convert frame.yuv420p face.bmp --width 512 --height 512 --rect 200,327,100,227\n",
                             {"from", "to", "width", "height", "rect"}, runConvert});

}  // namespace
