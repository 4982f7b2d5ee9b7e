// The qel tool's image files: recognising a file's format, loading it as grey or colour, saving
// BMP or PNG by extension, and the image files of a directory.
#include "image.h"

#include "cli.h"
#include "image_formats.h"

#include <qel.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>

#if defined(_WIN32)
#  include <io.h>
#  define QEL_ISATTY _isatty
#  define QEL_FILENO _fileno
#else
#  include <unistd.h>
#  define QEL_ISATTY isatty
#  define QEL_FILENO fileno
#endif

namespace cli {

namespace formats {

void markPaletteEntry(int level, unsigned char bgr[3]) {
    if (level < kFirstMarkLevel) {
        bgr[0] = bgr[1] = bgr[2] = static_cast<unsigned char>(level);
        return;
    }
    std::memcpy(bgr, kMarkColoursBgr[level - kFirstMarkLevel], 3);
}

void checkImageSize(const std::string& path, long long width, long long height, int channels) {
    if (width <= 0 || height <= 0)
        throw UsageError(about(path, "declares an empty image (" + std::to_string(width) + " x " + std::to_string(height) + ")"));
    if (width > INT_MAX / height / channels)
        throw UsageError(about(path, "is " + std::to_string(width) + " x " + std::to_string(height) +
                                         " pixels; images of more than " + std::to_string(INT_MAX) + " bytes are not read"));
}

void checkCompressedSize(const std::string& path, long long width, long long height, long long pixelsPerByte,
                         const char* format) {
    const long long bytes = fileSize(path);
    // width x height fits in 63 bits after checkImageSize, and so does bytes x pixelsPerByte.
    if (width * height > bytes * pixelsPerByte)
        throw UsageError(about(path, "declares " + std::to_string(width) + " x " + std::to_string(height) +
                                         " pixels, more than a " + format + " file of " + std::to_string(bytes) +
                                         " bytes can hold"));
}

FileHandle openInput(const std::string& path) {
    requireInputFile(path);
    FileHandle f(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!f) throw UsageError("cannot open '" + path + "': " + std::strerror(errno));
    return f;
}

long long fileSize(const std::string& path) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    return ec ? 0 : static_cast<long long>(size);
}

std::string about(const std::string& path, const std::string& message) { return "'" + path + "' " + message; }

}  // namespace formats

namespace {

// The formats the tool reads: how a file of each begins, and its readers.
struct FormatReader {
    const char* signature;
    size_t signatureBytes;
    ImageFileInfo (*describe)(const std::string&);
    Image (*read)(const std::string&);
};
const FormatReader kReaders[] = {
    {"BM", 2, formats::describeBmp, formats::readBmp},
    {"\x89PNG\r\n\x1A\n", 8, formats::describePng, formats::readPng},
    {"\xFF\xD8\xFF", 3, formats::describeJpeg, formats::readJpeg},
};
constexpr size_t kLongestSignature = 8;

// The readers of a file's format, recognised by its first bytes; UsageError when it is none the
// tool reads.
const FormatReader& readerFor(const std::string& path) {
    unsigned char head[kLongestSignature] = {};
    size_t got = 0;
    {
        formats::FileHandle f = formats::openInput(path);
        got = std::fread(head, 1, sizeof head, f.get());
    }
    for (const auto& r : kReaders)
        if (got >= r.signatureBytes && std::memcmp(head, r.signature, r.signatureBytes) == 0) return r;
    throw UsageError(formats::about(path, "is not a BMP, PNG or JPEG file"));
}

// Extensions of the files the tool reads, and which of them it writes.
struct Extension {
    const char* name;
    ImageFormat format;
    bool written;
};
constexpr Extension kExtensions[] = {
    {"bmp", ImageFormat::Bmp, true},    {"png", ImageFormat::Png, true},
    {"jpg", ImageFormat::Jpeg, false},  {"jpeg", ImageFormat::Jpeg, false},
};

}  // namespace

const char* formatName(ImageFormat format) {
    switch (format) {
        case ImageFormat::Bmp: return "BMP";
        case ImageFormat::Png: return "PNG";
        case ImageFormat::Jpeg: return "JPEG";
    }
    return "?";
}

ImageFileInfo describeImageFile(const std::string& path) { return readerFor(path).describe(path); }

Image loadImage(const std::string& path) { return readerFor(path).read(path); }

Image loadColour(const std::string& path) { return toColour(loadImage(path)); }

Image loadGrey(const std::string& path) {
    Image img = loadImage(path);
    if (img.isGrey()) return img;
    std::cerr << path << ": colour input converted to grey\n";
    return toGrey(img);
}

Image toGrey(const Image& image) {
    if (image.isGrey()) return image;
    Image grey;
    grey.width = image.width;
    grey.height = image.height;
    grey.channels = 1;
    grey.pixels.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
    QelRGB2Gry(const_cast<unsigned char*>(image.pixels.data()), image.width, image.height, grey.pixels.data());
    return grey;
}

Image toColour(const Image& image) {
    if (!image.isGrey()) return image;
    Image colour;
    colour.width = image.width;
    colour.height = image.height;
    colour.channels = 3;
    colour.pixels.resize(image.pixels.size() * 3);
    for (size_t i = 0; i < image.pixels.size(); ++i)
        colour.pixels[3 * i] = colour.pixels[3 * i + 1] = colour.pixels[3 * i + 2] = image.pixels[i];
    return colour;
}

void checkNewSize(double width, double height, const std::string& what) {
    const auto text = [](double v) {
        return std::isfinite(v) && std::fabs(v) < 1e15 ? std::to_string(static_cast<long long>(v)) : std::string("?");
    };
    if (!(width >= 1.0 && height >= 1.0))
        throw UsageError(what + " would be " + text(width) + " x " + text(height) + " pixels; it needs at least 1 x 1");
    if (!(width * height <= static_cast<double>(kMaxNewPixels)))
        throw UsageError(what + " would be " + text(width) + " x " + text(height) + " pixels; pictures of more than " +
                         std::to_string(kMaxNewPixels) + " pixels are not made");
}

Image blankImage(int width, int height, int channels, unsigned char level) {
    Image img;
    img.width = width;
    img.height = height;
    img.channels = channels;
    img.pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(channels), level);
    return img;
}

std::vector<Image> splitChannels(const Image& image) {
    if (image.isGrey()) return {image};
    std::vector<Image> planes;
    for (int channel = 0; channel < 3; ++channel) {
        planes.push_back(blankImage(image.width, image.height, 1));
        QelExtractOneChannelFromRGB(const_cast<unsigned char*>(image.pixels.data()), image.width, image.height, channel,
                                    planes.back().pixels.data());
    }
    return planes;
}

Image joinChannels(const std::vector<Image>& planes) {
    if (planes.size() == 1) return planes[0];
    const Image& blue = planes[0];
    Image colour = blankImage(blue.width, blue.height, 3);
    QelGry2RGBImg(const_cast<unsigned char*>(planes[2].pixels.data()), const_cast<unsigned char*>(planes[1].pixels.data()),
                  const_cast<unsigned char*>(blue.pixels.data()), blue.width, blue.height, colour.pixels.data());
    return colour;
}

ImageFormat outputFormatFor(const std::string& path) {
    const std::string ext = extensionOf(path);
    for (const auto& e : kExtensions) {
        if (ext != e.name) continue;
        if (!e.written)
            throw UsageError("cannot write '" + path + "': " + formatName(e.format) + " files are read, not written; name the output .png or .bmp");
        if (e.format == ImageFormat::Png && !formats::kPngAndJpeg)
            throw UsageError("cannot write '" + path + "': " + formats::kBmpOnlyBuild + "; name the output .bmp");
        return e.format;
    }
    throw UsageError("cannot tell an image format from the name '" + path + "'; name the output .png or .bmp");
}

void checkOutputName(const std::string& path) {
    outputFormatFor(path);
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) throw UsageError("cannot write '" + path + "': it is a directory");
}

void saveImage(const Image& image, const std::string& path, bool markColours) {
    const ImageFormat format = outputFormatFor(path);
    const std::string temp = temporaryName(path);
    const bool ok = format == ImageFormat::Png ? formats::writePng(image, temp, markColours)
                                               : formats::writeBmp(image, temp, markColours);
    if (!ok) {
        std::remove(temp.c_str());
        throw Failure("cannot write '" + path + "'");
    }
    moveIntoPlace(temp, path);
}

void saveAndConfirm(const Image& image, const std::string& in, const std::string& out, const std::string& what,
                    bool markColours) {
    saveImage(image, out, markColours);
    std::cout << confirmation(image, in, out, what) << "\n";
}

std::string confirmation(const Image& image, const std::string& in, const std::string& out, const std::string& what) {
    return in + " -> " + out + ": " + what + ", " + std::to_string(image.width) + " x " + std::to_string(image.height) +
           (image.isGrey() ? " grey" : " colour");
}

bool hasImageExtension(const std::string& path) {
    const std::string ext = extensionOf(path);
    return std::any_of(std::begin(kExtensions), std::end(kExtensions), [&](const Extension& e) { return ext == e.name; });
}

std::vector<std::string> listImageFiles(const std::string& directory) {
    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::is_directory(directory, ec)) throw UsageError("'" + directory + "' is not a directory");
    std::vector<std::string> files;
    for (fs::directory_iterator it(directory, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code typeError;
        if (it->is_regular_file(typeError) && hasImageExtension(it->path().filename().string()))
            files.push_back(it->path().string());
    }
    if (ec) throw UsageError("cannot list '" + directory + "': " + ec.message());
    std::sort(files.begin(), files.end());
    return files;
}

void progress(const char* what, long done, long total) {
    if (!QEL_ISATTY(QEL_FILENO(stderr))) return;
    std::fprintf(stderr, "\r%s %ld/%ld", what, done, total);
    if (done >= total) std::fputc('\n', stderr);
    std::fflush(stderr);
}

}  // namespace cli
