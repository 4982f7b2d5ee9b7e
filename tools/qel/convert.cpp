// qel info / qel convert: image files and raw camera frames.
#include "common/cli.h"
#include "common/frames.h"
#include "common/image.h"

#include <qel.h>

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace {

// File: an image file (BMP, PNG or JPEG), grey or colour as it holds. Rgb and Grey: an image file
// made colour or grey. The others are raw camera frames without a header.
enum class Format { File, Rgb, Grey, Yuv420P, Yuv420SP, Yuv422P, CbYCrY };

struct FormatName {
    const char* name;
    Format format;
};
constexpr FormatName kFormats[] = {
    {"rgb", Format::Rgb},         {"grey", Format::Grey},         {"gray", Format::Grey},
    {"yuv420p", Format::Yuv420P}, {"yuv420sp", Format::Yuv420SP}, {"yuv422p", Format::Yuv422P},
    {"cbycry", Format::CbYCrY},
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

// The camera frame format a file name's extension names (.yuv420p, ...), if any.
bool frameFromExtension(const std::string& path, Format* out) {
    const std::string ext = cli::extensionOf(path);
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

cli::FrameFormat frameFormat(Format f) {
    switch (f) {
        case Format::Yuv420SP: return cli::FrameFormat::Yuv420SP;
        case Format::Yuv422P: return cli::FrameFormat::Yuv422P;
        case Format::CbYCrY: return cli::FrameFormat::CbYCrY;
        default: return cli::FrameFormat::Yuv420P;
    }
}

// Copies rectangle x1,x2,y1,y2 of an image.
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
// One line per file; a file that cannot be read gets its message on stderr and the others are
// still described.
int runInfo(const cli::Args& args) {
    const size_t count = args.expectAtLeast(1);
    int status = 0;
    for (size_t i = 0; i < count; ++i) {
        const std::string& path = args.positional()[i];
        try {
            const cli::ImageFileInfo info = cli::describeImageFile(path);
            (void)cli::loadImage(path);  // proves the pixels can be read, not only the headers
            std::cout << path << ": " << cli::formatName(info.format) << ", " << info.width << " x " << info.height << ", "
                      << info.details << ", " << info.bytes << " bytes, read as " << (info.channels == 1 ? "grey" : "colour")
                      << "\n";
        } catch (const cli::UsageError& e) {
            std::cerr << "qel info: " << e.what() << "\n";
            status = cli::kExitBadInput;
        }
    }
    return status;
}

// ---- qel convert ----------------------------------------------------------------------------
std::string describeOutput(Format to, const cli::Image& img, const std::string& out) {
    if (isFrame(to)) return formatName(to);
    return std::string(img.isGrey() ? "grey " : "colour ") + cli::formatName(cli::outputFormatFor(out));
}

int runConvert(const cli::Args& args) {
    args.expectPositional(2);
    const std::string in = args.positional()[0];
    const std::string out = args.positional()[1];

    // Input: a raw camera frame when --from or the extension names one, else an image file,
    // recognised by its content.
    Format from = Format::File;
    if (args.has("from")) {
        from = parseFormat(args.value("from"));
        if (!isFrame(from))
            throw cli::UsageError("--from names a raw camera frame format (yuv420p, yuv420sp, yuv422p or cbycry); "
                                  "image files are recognised by their content");
    } else {
        frameFromExtension(in, &from);
    }

    // Output: --to, else a frame extension; an image file keeps the input's kind (grey or colour)
    // unless --to says rgb or grey, and its extension chooses BMP or PNG.
    Format to = Format::File;
    if (args.has("to")) to = parseFormat(args.value("to"));
    else frameFromExtension(out, &to);
    if (!isFrame(to)) {
        try {
            cli::checkOutputName(out);
        } catch (const cli::UsageError& e) {
            if (cli::hasImageExtension(out)) throw;  // a JPEG name or a directory: said as it is
            throw cli::UsageError(std::string(e.what()) + ", or a raw frame .yuv420p, .yuv420sp, .yuv422p or .cbycry");
        }
    }

    // Optional rectangle x1,x2,y1,y2 (both ends included), checked against the image once its size is known.
    std::vector<int> rect;
    if (args.has("rect")) rect = args.integers("rect", 4);

    // Load into colour (BGR) or grey; a camera frame is cropped while it is converted.
    cli::Image img;
    if (isFrame(from)) {
        if (!args.has("width") || !args.has("height"))
            throw cli::UsageError(std::string("a raw ") + formatName(from) + " frame needs --width and --height");
        cli::FrameRead how{frameFormat(from), args.integer("width", 0), args.integer("height", 0), rect, args.value("rect"),
                           to == Format::Grey};
        std::vector<unsigned char> raw = cli::readFile(in);
        img = cli::decodeFrame(in, raw, how);
    } else {
        if (args.has("width") || args.has("height")) throw cli::UsageError("--width/--height are for raw camera frames; an image file carries its own size");
        img = cli::loadImage(in);
        cli::requireRectangleInside(rect, img.width, img.height, args.value("rect"));
        if (!rect.empty()) img = cropImage(img, rect);
    }

    const int w = img.width;
    const int h = img.height;
    if (to == Format::Grey) {
        img = cli::toGrey(img);
    } else if (to == Format::Rgb || isFrame(to)) {
        img = cli::toColour(img);
    }
    if (isFrame(to)) {
        cli::writeFile(out, cli::encodeFrame(frameFormat(to), img));
    } else {
        cli::saveImage(img, out);
    }
    std::cout << in << (isFrame(from) ? std::string(" (") + formatName(from) + ")" : std::string()) << " -> " << out << " ("
              << describeOutput(to, img, out) << "), " << w << " x " << h << "\n";
    return 0;
}

const cli::Register info({"info", "format, size, depth and palette of image files",
                          "usage: qel info FILE...\n\n"
                          "Prints, for each BMP, PNG or JPEG file, its format, width and height, depth and\n"
                          "colour type (for an 8-bit BMP the kind of palette: grey ramp, greys, marking\n"
                          "colours or other colours), its size in bytes and whether the tool reads it as\n"
                          "grey or colour; the pixels are read too, to prove the file whole. A file that\n"
                          "cannot be read gets a message saying why, and the exit status is then 2.\n",
                          {}, runInfo});

const cli::Register convert({"convert", "convert between image files (BMP, PNG, JPEG) and raw camera frames",
                             "usage: qel convert IN OUT [--from FMT] [--to FMT] [--width W --height H] [--rect x1,x2,y1,y2]\n\n"
                             "IN is an image file (BMP, PNG or JPEG, recognised by its content) or a raw camera\n"
                             "frame (no header), named by its extension (.yuv420p, .yuv420sp, .yuv422p, .cbycry)\n"
                             "or by --from. OUT is a BMP or PNG file, chosen by its extension (.bmp or .png),\n"
                             "or a raw frame, named by its extension or by --to. An image output keeps the\n"
                             "input's kind (grey input gives an 8-bit grey file, colour a 24-bit colour file)\n"
                             "unless --to rgb or --to grey says otherwise; any other output extension is refused.\n\n"
                             "  --from FMT       format of a raw input frame: yuv420p, yuv420sp, yuv422p, cbycry\n"
                             "  --to FMT         rgb (colour image), grey (grey image) or a raw frame format\n"
                             "  --width W        width of a raw input frame (required for raw input)\n"
                             "  --height H       height of a raw input frame (required for raw input)\n"
                             "  --rect x1,x2,y1,y2  copy only this rectangle (left, right, top, bottom, ends\n"
                             "                   included); a camera frame is cropped by the library's\n"
                             "                   rectangle copies, which want even colour rectangles\n\n"
                             "YUV420P/YUV420SP need even width and height; YUV422P and CbYCrY need an even\n"
                             "width (writing YUV422P also needs an even height).\n"
                             "Examples:\n"
                             "  qel convert photo.jpg photo.png\n"
                             "  qel convert photo.bmp photo.yuv420p\n"
                             "  qel convert photo.yuv420p back.bmp --width 512 --height 512\n"
                             "  qel convert photo.bmp grey.png --to grey\n"
                             "  qel convert frame.yuv420p face.bmp --width 512 --height 512 --rect 200,327,100,227\n",
                             {"from", "to", "width", "height", "rect"}, runConvert});

}  // namespace
