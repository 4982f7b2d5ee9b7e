// PNG files through libpng. Any colour type and depth is read: grey (1, 2 and 4-bit levels scaled
// to 0..255), colour, and palettes (through the palette, as for BMP files: greys give grey, other
// colours give colour); alpha is ignored and 16-bit samples keep their high byte. Grey is written
// as 8-bit grey, colour as 8-bit RGB, grey with marking colours as a palette.
#include "cli.h"
#include "image_formats.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <new>
#include <string>
#include <vector>

namespace cli::formats {

const bool kPngAndJpeg = true;

namespace {

constexpr int kPaletteEntries = 256;
// Deflate expands at most 1032 times (a 258-byte match in two bits), and a byte holds at most eight
// one-bit pixels.
constexpr long long kPngPixelsPerByte = 8 * 1032;

// libpng reports an error through a callback that must not return: it jumps back to the setjmp of
// the step that called libpng. Each step is a plain function whose locals need no destructor, as
// longjmp requires; everything with a destructor lives in the caller.
struct PngErrors {
    std::jmp_buf jump;
    char message[256];
};

[[noreturn]] void onError(png_structp png, png_const_charp message) {
    auto* errors = static_cast<PngErrors*>(png_get_error_ptr(png));
    std::snprintf(errors->message, sizeof errors->message, "%s", message);
    std::longjmp(errors->jump, 1);
}
void onWarning(png_structp, png_const_charp) {}  // a damaged ancillary chunk does not stop the read

struct PngHeader {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bitDepth = 0;
    int colourType = 0;
    int interlace = 0;
    int paletteSize = 0;
    unsigned char bgr[kPaletteEntries][3] = {};  // palette entries; indices past paletteSize read black
    bool greyPalette = true;
    bool grey() const { return colourType == PNG_COLOR_TYPE_PALETTE ? greyPalette : (colourType & PNG_COLOR_MASK_COLOR) == 0; }
};

bool headerStep(png_structp png, png_infop info, PngErrors* errors, PngHeader* h) {
    if (setjmp(errors->jump)) return false;
    png_read_info(png, info);
    png_get_IHDR(png, info, &h->width, &h->height, &h->bitDepth, &h->colourType, &h->interlace, nullptr, nullptr);
    png_colorp palette = nullptr;
    if (h->colourType == PNG_COLOR_TYPE_PALETTE && png_get_PLTE(png, info, &palette, &h->paletteSize) != 0) {
        for (int i = 0; i < h->paletteSize && i < kPaletteEntries; ++i) {
            h->bgr[i][0] = palette[i].blue;
            h->bgr[i][1] = palette[i].green;
            h->bgr[i][2] = palette[i].red;
            h->greyPalette = h->greyPalette && palette[i].red == palette[i].green && palette[i].green == palette[i].blue;
        }
    }
    return true;
}

// Asks for one byte per sample: palette indices, grey levels or B, G, R. Returns the bytes a row
// will take.
bool transformStep(png_structp png, png_infop info, PngErrors* errors, const PngHeader* h, size_t* rowBytes) {
    if (setjmp(errors->jump)) return false;
    if (h->colourType == PNG_COLOR_TYPE_PALETTE) png_set_packing(png);
    if (h->colourType == PNG_COLOR_TYPE_GRAY && h->bitDepth < 8) png_set_expand_gray_1_2_4_to_8(png);
    if (h->bitDepth == 16) png_set_strip_16(png);
    png_set_strip_alpha(png);
    if ((h->colourType & PNG_COLOR_MASK_COLOR) != 0 && h->colourType != PNG_COLOR_TYPE_PALETTE) png_set_bgr(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    *rowBytes = png_get_rowbytes(png, info);
    return true;
}

bool rowsStep(png_structp png, png_infop info, PngErrors* errors, png_bytepp rows) {
    if (setjmp(errors->jump)) return false;
    png_read_image(png, rows);
    png_read_end(png, nullptr);
    return true;
}

// libpng's reading structures, released however the reader is left.
struct PngReadStructs {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~PngReadStructs() { png_destroy_read_struct(&png, &info, nullptr); }
};

// Reads one PNG file: the headers on construction, the pixels on request.
class PngReader {
public:
    explicit PngReader(const std::string& path) : path_(path), file_(openInput(path)) {
        s_.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &errors_, onError, onWarning);
        if (s_.png != nullptr) s_.info = png_create_info_struct(s_.png);
        if (s_.info == nullptr) throw std::bad_alloc();
        png_init_io(s_.png, file_.get());
        if (!headerStep(s_.png, s_.info, &errors_, &header_)) throw damaged();
    }

    const PngHeader& header() const { return header_; }

    Image readPixels() {
        const PngHeader& h = header_;
        checkImageSize(path_, h.width, h.height, h.grey() ? 1 : 3);
        checkCompressedSize(path_, h.width, h.height, kPngPixelsPerByte, "PNG");
        const bool indexed = h.colourType == PNG_COLOR_TYPE_PALETTE;
        const int samples = indexed || h.grey() ? 1 : 3;  // per pixel, as libpng delivers them
        size_t rowBytes = 0;
        if (!transformStep(s_.png, s_.info, &errors_, &h, &rowBytes)) throw damaged();
        if (rowBytes != static_cast<size_t>(h.width) * static_cast<size_t>(samples))
            throw UsageError(about(path_, "is a PNG file of a kind this tool cannot read"));

        std::vector<unsigned char> raw(rowBytes * h.height);
        std::vector<png_bytep> rows(h.height);
        for (png_uint_32 y = 0; y < h.height; ++y) rows[y] = raw.data() + rowBytes * y;
        if (!rowsStep(s_.png, s_.info, &errors_, rows.data())) throw damaged();

        Image img;
        img.width = static_cast<int>(h.width);
        img.height = static_cast<int>(h.height);
        img.channels = h.grey() ? 1 : 3;
        if (!indexed) {
            img.pixels = std::move(raw);
        } else if (img.channels == 1) {
            img.pixels.resize(raw.size());
            for (size_t i = 0; i < raw.size(); ++i) img.pixels[i] = h.bgr[raw[i]][0];
        } else {
            img.pixels.resize(raw.size() * 3);
            for (size_t i = 0; i < raw.size(); ++i)
                for (int c = 0; c < 3; ++c) img.pixels[3 * i + static_cast<size_t>(c)] = h.bgr[raw[i]][c];
        }
        return img;
    }

private:
    UsageError damaged() const {
        return UsageError(about(path_, std::string("is a damaged or truncated PNG file (") + errors_.message + ")"));
    }

    std::string path_;
    FileHandle file_;
    PngErrors errors_{};
    PngReadStructs s_;
    PngHeader header_;
};

std::string describeHeader(const PngHeader& h) {
    std::string kind;
    switch (h.colourType) {
        case PNG_COLOR_TYPE_GRAY: kind = "grey"; break;
        case PNG_COLOR_TYPE_GRAY_ALPHA: kind = "grey + alpha (alpha ignored)"; break;
        case PNG_COLOR_TYPE_RGB: kind = "RGB"; break;
        case PNG_COLOR_TYPE_RGB_ALPHA: kind = "RGB + alpha (alpha ignored)"; break;
        default:
            kind = "palette of " + std::to_string(h.paletteSize) + (h.greyPalette ? " greys" : " colours");
            break;
    }
    std::string details = std::to_string(h.bitDepth) + "-bit " + kind;
    if (h.bitDepth == 16) details += ", high bytes kept";
    if (h.interlace != PNG_INTERLACE_NONE) details += ", interlaced";
    return details;
}

bool writeStep(png_structp png, png_infop info, PngErrors* errors, const Image* img, png_bytepp rows,
               png_colorp palette) {
    if (setjmp(errors->jump)) return false;
    const int type = !img->isGrey() ? PNG_COLOR_TYPE_RGB : palette != nullptr ? PNG_COLOR_TYPE_PALETTE : PNG_COLOR_TYPE_GRAY;
    png_set_IHDR(png, info, static_cast<png_uint_32>(img->width), static_cast<png_uint_32>(img->height), 8, type,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (palette != nullptr) png_set_PLTE(png, info, palette, kPaletteEntries);
    png_write_info(png, info);
    if (!img->isGrey()) png_set_bgr(png);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    return true;
}

}  // namespace

ImageFileInfo describePng(const std::string& path) {
    PngReader reader(path);
    const PngHeader& h = reader.header();
    ImageFileInfo info;
    info.format = ImageFormat::Png;
    info.width = static_cast<int>(h.width);
    info.height = static_cast<int>(h.height);
    info.channels = h.grey() ? 1 : 3;
    info.details = describeHeader(h);
    info.bytes = fileSize(path);
    return info;
}

Image readPng(const std::string& path) { return PngReader(path).readPixels(); }

bool writePng(const Image& image, const std::string& path, bool markColours) {
    FileHandle file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file) return false;
    PngErrors errors{};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &errors, onError, onWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool ok = info != nullptr;
    if (ok) {
        png_init_io(png, file.get());
        const size_t rowBytes = static_cast<size_t>(image.width) * static_cast<size_t>(image.channels);
        std::vector<png_bytep> rows(static_cast<size_t>(image.height));
        for (size_t y = 0; y < rows.size(); ++y) rows[y] = const_cast<png_bytep>(image.pixels.data()) + rowBytes * y;
        png_color palette[kPaletteEntries];
        for (int i = 0; i < kPaletteEntries; ++i) {
            unsigned char bgr[3];
            markPaletteEntry(i, bgr);
            palette[i] = png_color{bgr[2], bgr[1], bgr[0]};
        }
        ok = writeStep(png, info, &errors, &image, rows.data(), markColours && image.isGrey() ? palette : nullptr);
    }
    png_destroy_write_struct(&png, &info);
    const bool closed = std::fclose(file.release()) == 0;
    return ok && closed;
}

}  // namespace cli::formats
