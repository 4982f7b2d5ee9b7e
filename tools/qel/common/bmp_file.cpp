// BMP files. The tool reads the headers itself, so that a file the library cannot read (another
// depth, compression, a damaged header) is refused with the reason, and so that an 8-bit file's
// palette is honoured (the library hands out palette indices). The pixels are read and written by
// the library.
#include "cli.h"
#include "image_formats.h"

#include <qel.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace cli::formats {
namespace {

constexpr size_t kFileHeaderBytes = 14;
constexpr uint32_t kSmallestInfoHeader = 40;  // the Windows header; its successors only add fields
constexpr size_t kLargestInfoHeader = 124;
constexpr uint32_t kHeadersBytes = 54;        // the library refuses pixel data that starts earlier
constexpr size_t kPaletteEntries = 256;
constexpr size_t kPaletteEntryBytes = 4;      // blue, green, red, reserved
constexpr size_t kHeaderReadBytes = kFileHeaderBytes + kLargestInfoHeader + kPaletteEntries * kPaletteEntryBytes;

// Field offsets from the start of the file.
constexpr size_t kFieldPixelOffset = 10;
constexpr size_t kFieldInfoSize = 14;
constexpr size_t kFieldWidth = 18;
constexpr size_t kFieldHeight = 22;
constexpr size_t kFieldBits = 28;
constexpr size_t kFieldCompression = 30;
constexpr size_t kFieldColoursUsed = 46;

constexpr const char* kReadable = "only uncompressed 8-bit and 24-bit BMP files are read";

enum class Palette { None, GreyRamp, Greys, Marking, Colours };

struct BmpHeader {
    uint32_t pixelOffset = 0;
    uint32_t infoSize = 0;
    int64_t width = 0;
    int64_t height = 0;  // as stored: negative when the rows are stored top row first
    int bits = 0;
    uint32_t compression = 0;
    Palette palette = Palette::None;
    size_t paletteSize = 0;
    unsigned char bgr[kPaletteEntries][3] = {};  // entries past paletteSize stay black
    long long fileBytes = 0;
};

uint32_t u32(const std::vector<unsigned char>& b, size_t at) {
    return static_cast<uint32_t>(b[at]) | static_cast<uint32_t>(b[at + 1]) << 8 |
           static_cast<uint32_t>(b[at + 2]) << 16 | static_cast<uint32_t>(b[at + 3]) << 24;
}
// Header fields are two's complement; taken through 64 bits so that no value overflows.
int64_t i32(const std::vector<unsigned char>& b, size_t at) {
    const int64_t v = u32(b, at);
    return v > INT32_MAX ? v - (int64_t{1} << 32) : v;
}

// "a 24-bit", "an 8-bit", "an 18-bit": the article goes with how the number is spoken.
std::string depthWithArticle(int bits) {
    const std::string n = std::to_string(bits);
    const bool vowel = n[0] == '8' || (n.size() % 3 == 2 && (n.compare(0, 2, "11") == 0 || n.compare(0, 2, "18") == 0));
    return (vowel ? "an " : "a ") + n + "-bit";
}

std::string compressionName(uint32_t compression) {
    switch (compression) {
        case 1: return "compressed with RLE8";
        case 2: return "compressed with RLE4";
        case 3: return "with bit-field masks (BITFIELDS)";
        case 4: return "compressed as JPEG";
        case 5: return "compressed as PNG";
        case 6: return "with bit-field masks (ALPHABITFIELDS)";
        default: return "compressed (type " + std::to_string(compression) + ")";
    }
}

void classifyPalette(BmpHeader& h) {
    bool greys = true;
    bool ramp = h.paletteSize == kPaletteEntries;
    bool marking = ramp;
    for (size_t i = 0; i < h.paletteSize; ++i) {
        const unsigned char* e = h.bgr[i];
        const bool grey = e[0] == e[1] && e[1] == e[2];
        greys = greys && grey;
        ramp = ramp && grey && e[0] == i;
        unsigned char mark[3];
        markPaletteEntry(static_cast<int>(i), mark);
        marking = marking && std::memcmp(e, mark, 3) == 0;
    }
    h.palette = ramp ? Palette::GreyRamp : greys ? Palette::Greys : marking ? Palette::Marking : Palette::Colours;
}

// Reads and checks the headers (and an 8-bit file's palette); UsageError with the reason for
// anything the library cannot read or that would make it fail.
BmpHeader readHeader(const std::string& path) {
    BmpHeader h;
    h.fileBytes = fileSize(path);
    std::vector<unsigned char> b(kHeaderReadBytes);
    {
        FileHandle f = openInput(path);
        b.resize(std::fread(b.data(), 1, b.size(), f.get()));
    }
    if (b.size() < kHeadersBytes) throw UsageError(about(path, "is too short for a BMP file (" + std::to_string(b.size()) + " bytes)"));
    h.pixelOffset = u32(b, kFieldPixelOffset);
    h.infoSize = u32(b, kFieldInfoSize);
    h.width = i32(b, kFieldWidth);
    h.height = i32(b, kFieldHeight);
    h.bits = b[kFieldBits] | b[kFieldBits + 1] << 8;
    h.compression = u32(b, kFieldCompression);

    if (h.infoSize < kSmallestInfoHeader)
        throw UsageError(about(path, "has a " + std::to_string(h.infoSize) + "-byte BMP header (OS/2 style); " + kReadable));
    if (h.compression != 0) throw UsageError(about(path, "is " + depthWithArticle(h.bits) + " BMP " + compressionName(h.compression) + "; " + kReadable));
    if (h.bits != 8 && h.bits != 24) throw UsageError(about(path, "is " + depthWithArticle(h.bits) + " BMP; " + kReadable));
    if (h.width <= 0) throw UsageError(about(path, "declares a width of " + std::to_string(h.width) + "; a BMP width must be positive"));
    // A negative height means rows stored top row first; -2^31 has no positive counterpart.
    if (h.height == 0 || h.height == INT32_MIN)
        throw UsageError(about(path, "declares a height of " + std::to_string(h.height) + ", which no BMP file can have"));
    const int64_t rows = h.height < 0 ? -h.height : h.height;
    checkImageSize(path, h.width, rows, h.bits / 8);  // also keeps the sums below far from overflow
    if (h.pixelOffset < kHeadersBytes)
        throw UsageError(about(path, "is damaged: its pixel data would start at byte " + std::to_string(h.pixelOffset) + ", inside the headers"));

    const int64_t rowBytes = h.width * (h.bits / 8);
    const int64_t stride = (rowBytes + 3) / 4 * 4;
    const int64_t needed = static_cast<int64_t>(h.pixelOffset) + stride * (rows - 1) + rowBytes;
    if (h.fileBytes < needed)
        throw UsageError(about(path, "is truncated: " + std::to_string(h.width) + " x " + std::to_string(rows) + " pixels need " +
                                         std::to_string(needed) + " bytes, the file has " + std::to_string(h.fileBytes)));

    if (h.bits == 8) {
        // The palette follows the information header: as many entries as the header says (all 256
        // when it says 0), cut to the room left before the pixel data.
        const uint32_t declared = u32(b, kFieldColoursUsed);
        if (declared > kPaletteEntries)
            throw UsageError(about(path, "declares a palette of " + std::to_string(declared) + " colours; an 8-bit BMP has at most 256"));
        const size_t start = kFileHeaderBytes + h.infoSize;
        const size_t end = std::min<size_t>(h.pixelOffset, b.size());
        const size_t room = end > start ? (end - start) / kPaletteEntryBytes : 0;
        h.paletteSize = std::min<size_t>(declared == 0 ? kPaletteEntries : declared, room);
        if (h.paletteSize == 0) throw UsageError(about(path, "is an 8-bit BMP without a palette"));
        for (size_t i = 0; i < h.paletteSize; ++i) std::memcpy(h.bgr[i], &b[start + i * kPaletteEntryBytes], 3);
        classifyPalette(h);
        if (h.palette == Palette::Colours || h.palette == Palette::Marking) checkImageSize(path, h.width, rows, 3);
    }
    return h;
}

std::string paletteDescription(const BmpHeader& h) {
    const std::string n = std::to_string(h.paletteSize);
    switch (h.palette) {
        case Palette::GreyRamp: return "grey-ramp palette";
        case Palette::Greys: return "palette of " + n + " greys";
        case Palette::Marking: return "grey ramp with marking colours 252..255";
        case Palette::Colours: return "palette of " + n + " colours";
        case Palette::None: break;
    }
    return "";
}

}  // namespace

ImageFileInfo describeBmp(const std::string& path) {
    const BmpHeader h = readHeader(path);
    ImageFileInfo info;
    info.format = ImageFormat::Bmp;
    info.width = static_cast<int>(h.width);
    info.height = static_cast<int>(h.height < 0 ? -h.height : h.height);
    info.channels = h.bits == 24 || h.palette == Palette::Colours || h.palette == Palette::Marking ? 3 : 1;
    info.details = std::to_string(h.bits) + "-bit";
    if (h.bits == 8) info.details += ", " + paletteDescription(h);
    if (h.height < 0) info.details += ", rows stored top-down";
    info.details += ", pixel data at " + std::to_string(h.pixelOffset);
    info.bytes = h.fileBytes;
    return info;
}

Image readBmp(const std::string& path) {
    const BmpHeader h = readHeader(path);
    Image img;
    unsigned char* data = h.bits == 24 ? QelRead24BitBmpFile2Img(path.c_str(), &img.width, &img.height)
                                       : QelRead8BitBmpFile2Img(path.c_str(), &img.width, &img.height);
    if (data == nullptr) throw UsageError(about(path, "is damaged or truncated"));
    const size_t pixels = static_cast<size_t>(img.width) * static_cast<size_t>(img.height);
    if (h.bits == 24 || h.palette == Palette::GreyRamp) {
        img.channels = h.bits / 8;
        img.pixels.assign(data, data + pixels * static_cast<size_t>(img.channels));
    } else if (h.palette == Palette::Greys) {
        img.channels = 1;
        img.pixels.resize(pixels);
        for (size_t i = 0; i < pixels; ++i) img.pixels[i] = h.bgr[data[i]][0];
    } else {
        img.channels = 3;
        img.pixels.resize(pixels * 3);
        for (size_t i = 0; i < pixels; ++i) std::memcpy(&img.pixels[3 * i], h.bgr[data[i]], 3);
    }
    delete[] data;
    return img;
}

bool writeBmp(const Image& image, const std::string& path, bool markColours) {
    // The library's writers take non-const buffers but only read them.
    unsigned char* px = const_cast<unsigned char*>(image.pixels.data());
    if (!image.isGrey()) return QelWrite24BitImg2BmpFile(px, image.width, image.height, path.c_str());
    return markColours ? QelWrite8BitImg2BmpFileMarkColor(px, image.width, image.height, path.c_str())
                       : QelWrite8BitImg2BmpFile(px, image.width, image.height, path.c_str());
}

}  // namespace cli::formats
