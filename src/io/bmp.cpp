// BMP files: the two readers (24-bit and 8-bit) and the three writers (24-bit, 8-bit with a grey
// palette, 8-bit with marking colours at the top of the palette).
//
// On disk rows are stored bottom row first and padded to a multiple of 4 bytes; in memory images
// are top row first without padding.
#include "qel/io.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <new>

namespace {

constexpr int kFileHeaderBytes = 14;
constexpr int kInfoHeaderBytes = 40;
constexpr int kHeadersBytes = kFileHeaderBytes + kInfoHeaderBytes;  // 54
constexpr int kPaletteEntries = 256;
constexpr int kPaletteEntryBytes = 4;
constexpr int kPaletteBytes = kPaletteEntries * kPaletteEntryBytes;  // 1024
constexpr int kRowAlignment = 4;
constexpr int kRgbBytesPerPixel = 3;
constexpr int kGreyBytesPerPixel = 1;
constexpr int kBitsPerByte = 8;

// Field offsets inside the 54 bytes of the two headers.
constexpr int kFieldFileSize = 2;
constexpr int kFieldPixelOffset = 10;
constexpr int kFieldInfoSize = 14;
constexpr int kFieldWidth = 18;
constexpr int kFieldHeight = 22;
constexpr int kFieldPlanes = 26;
constexpr int kFieldBitsPerPixel = 28;

// The largest pixel buffer a reader hands out. Callers index images with int arithmetic, so a
// larger image could not be used anyway.
constexpr int64_t kMaxImageBytes = INT_MAX;

// Pad bytes after a row of rowBytes bytes: ((rowBytes + 3) / 4) * 4 - rowBytes.
int64_t pad_count(int64_t rowBytes) {
    return ((rowBytes + kRowAlignment - 1) / kRowAlignment) * kRowAlignment - rowBytes;
}

uint32_t get_u32(const unsigned char* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

int32_t get_i32(const unsigned char* p) {
    const uint32_t u = get_u32(p);
    return u <= static_cast<uint32_t>(INT32_MAX) ? static_cast<int32_t>(u)
                                                  : -static_cast<int32_t>(~u) - 1;  // two's complement
}

void put_u16(unsigned char* p, uint32_t v) {
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
}

void put_u32(unsigned char* p, uint32_t v) {
    put_u16(p, v);
    put_u16(p + 2, v >> 16);
}

// Closes the file when the reader or writer leaves, on every path.
class FileCloser {
public:
    explicit FileCloser(std::FILE* f) : f_(f) {}
    ~FileCloser() {
        if (f_ != nullptr) std::fclose(f_);
    }
    FileCloser(const FileCloser&) = delete;
    FileCloser& operator=(const FileCloser&) = delete;
    // Closes now; false when the close (which flushes buffered writes) failed.
    bool close() {
        const bool ok = std::fclose(f_) == 0;
        f_ = nullptr;
        return ok;
    }

private:
    std::FILE* f_;
};

bool seek_to(std::FILE* f, int64_t offset, int whence) {
#if defined(_WIN32)
    return _fseeki64(f, offset, whence) == 0;
#else
    return fseeko(f, static_cast<off_t>(offset), whence) == 0;
#endif
}

// Length of an open file in bytes, or -1.
int64_t file_length(std::FILE* f) {
    if (!seek_to(f, 0, SEEK_END)) return -1;
#if defined(_WIN32)
    return _ftelli64(f);
#else
    return static_cast<int64_t>(ftello(f));
#endif
}

// How a reader passes over the pad bytes after each row.
enum class PadRule {
    MayFail,      // a short pad read fails the whole read
    NeverFails,   // pad bytes are read and discarded, whatever the outcome
};

// Reads a BMP file as bytesPerPixel bytes per pixel, whatever its header says about its depth.
unsigned char* read_bmp(const char* fileName, int* width, int* height, int bytesPerPixel, PadRule padRule) {
    *width = 0;
    *height = 0;
    std::FILE* f = std::fopen(fileName, "rb");
    if (f == nullptr) return nullptr;
    FileCloser closer(f);

    unsigned char header[kHeadersBytes];
    if (std::fread(header, 1, kHeadersBytes, f) != static_cast<size_t>(kHeadersBytes)) return nullptr;
    const uint32_t pixelOffset = get_u32(header + kFieldPixelOffset);
    if (pixelOffset < static_cast<uint32_t>(kHeadersBytes)) return nullptr;

    const int32_t fileWidth = get_i32(header + kFieldWidth);
    const int32_t fileHeight = get_i32(header + kFieldHeight);
    // A negative height marks a file stored top row first; it is read as such and reported positive.
    const bool topDown = fileHeight < 0 && fileHeight != INT32_MIN;
    *width = fileWidth;
    *height = topDown ? -fileHeight : fileHeight;
    const int w = *width;
    const int h = *height;
    if (w <= 0 || h <= 0) return nullptr;

    const int64_t rowBytes = static_cast<int64_t>(w) * bytesPerPixel;  // cannot overflow 64 bits
    const int64_t pad = pad_count(rowBytes);
    if (rowBytes > kMaxImageBytes / h) return nullptr;
    const int64_t imageBytes = rowBytes * h;

    // Every row must be in the file (the 24-bit reader does not need the last row's pad bytes). A
    // shorter file would fail on its first missing row, so it is refused before allocating.
    const int64_t lastPad = padRule == PadRule::MayFail ? pad : 0;
    const int64_t needed = static_cast<int64_t>(pixelOffset) + (rowBytes + pad) * (h - 1) + rowBytes + lastPad;
    const int64_t length = file_length(f);
    if (length < 0 || length < needed) return nullptr;
    if (!seek_to(f, pixelOffset, SEEK_SET)) return nullptr;

    unsigned char* image = new (std::nothrow) unsigned char[static_cast<size_t>(imageBytes)];
    if (image == nullptr) return nullptr;

    unsigned char padScratch[kRowAlignment];
    for (int i = 0; i < h; ++i) {
        const int row = topDown ? i : h - 1 - i;
        unsigned char* dst = image + static_cast<int64_t>(row) * rowBytes;
        bool ok = std::fread(dst, 1, static_cast<size_t>(rowBytes), f) == static_cast<size_t>(rowBytes);
        if (ok && pad > 0) {
            const bool padRead = std::fread(padScratch, 1, static_cast<size_t>(pad), f) == static_cast<size_t>(pad);
            // The 24-bit reader ignores the outcome on purpose: pad bytes never fail it.
            if (padRule == PadRule::MayFail) ok = padRead;
        }
        if (!ok) {
            delete[] image;
            return nullptr;
        }
    }
    return image;
}

// Palette entry i as blue, green, red, reserved.
using PaletteEntry = unsigned char[kPaletteEntryBytes];

void grey_ramp_entry(int i, PaletteEntry& e) {
    e[0] = e[1] = e[2] = static_cast<unsigned char>(i);
    e[3] = 0;
}

// Grey ramp with the four marking colours at 252..255: yellow, blue, green, red.
void mark_colour_entry(int i, PaletteEntry& e) {
    static const unsigned char kMarks[4][kPaletteEntryBytes] = {
        {0, 255, 255, 0},  // 252 yellow
        {255, 0, 0, 0},    // 253 blue
        {0, 255, 0, 0},    // 254 green
        {0, 0, 255, 0},    // 255 red
    };
    constexpr int kFirstMark = 252;
    if (i < kFirstMark) {
        grey_ramp_entry(i, e);
        return;
    }
    for (int k = 0; k < kPaletteEntryBytes; ++k) e[k] = kMarks[i - kFirstMark][k];
}

using PaletteFn = void (*)(int, PaletteEntry&);

// Writes an image of bytesPerPixel bytes per pixel; 8-bit files get the palette from `palette`.
bool write_bmp(const unsigned char* image, int width, int height, const char* fileName, int bytesPerPixel,
               PaletteFn palette) {
    std::FILE* f = std::fopen(fileName, "w+b");
    if (f == nullptr) return false;
    FileCloser closer(f);

    const uint32_t dataOffset = kHeadersBytes + (palette != nullptr ? kPaletteBytes : 0);
    // The file-size field leaves out the row padding, intended: width x height x bytes + offset,
    // taken modulo 2^32 as the 32-bit field holds it.
    const uint32_t fileSize = static_cast<uint32_t>(width) * static_cast<uint32_t>(height) *
                                  static_cast<uint32_t>(bytesPerPixel) + dataOffset;

    unsigned char header[kHeadersBytes] = {};
    header[0] = 'B';
    header[1] = 'M';
    put_u32(header + kFieldFileSize, fileSize);
    put_u32(header + kFieldPixelOffset, dataOffset);
    put_u32(header + kFieldInfoSize, kInfoHeaderBytes);
    put_u32(header + kFieldWidth, static_cast<uint32_t>(width));
    put_u32(header + kFieldHeight, static_cast<uint32_t>(height));
    put_u16(header + kFieldPlanes, 1);
    put_u16(header + kFieldBitsPerPixel, static_cast<uint32_t>(bytesPerPixel * kBitsPerByte));
    // Compression, image size, resolutions and colour counts stay zero.
    bool ok = std::fwrite(header, 1, kHeadersBytes, f) == static_cast<size_t>(kHeadersBytes);

    if (palette != nullptr) {
        for (int i = 0; i < kPaletteEntries; ++i) {
            PaletteEntry e;
            palette(i, e);
            if (std::fwrite(e, 1, kPaletteEntryBytes, f) != static_cast<size_t>(kPaletteEntryBytes)) {
                ok = false;  // the rest of the palette is dropped; the rows are still written
                break;
            }
        }
    }

    // An image without pixels gets its headers only.
    if (width > 0 && height > 0) {
        const size_t rowBytes = static_cast<size_t>(width) * static_cast<size_t>(bytesPerPixel);
        const size_t pad = static_cast<size_t>(pad_count(static_cast<int64_t>(rowBytes)));
        for (int y = height - 1; y >= 0; --y) {
            const unsigned char* row = image + static_cast<size_t>(y) * rowBytes;
            if (std::fwrite(row, 1, rowBytes, f) != rowBytes) ok = false;
            if (pad == 0) continue;
            // Pad bytes repeat the first byte of the row's last pixel (its blue, or its grey), intended.
            const unsigned char fill = row[rowBytes - static_cast<size_t>(bytesPerPixel)];
            const unsigned char padBytes[kRowAlignment] = {fill, fill, fill, fill};
            if (std::fwrite(padBytes, 1, pad, f) != pad) ok = false;
        }
    }
    // Closing flushes the buffered bytes, so a failed close is a failed write.
    if (!closer.close()) ok = false;
    return ok;
}

}  // namespace

unsigned char* QelRead24BitBmpFile2Img(const char* fileName, int* width, int* height) {
    return read_bmp(fileName, width, height, kRgbBytesPerPixel, PadRule::NeverFails);
}

unsigned char* QelRead8BitBmpFile2Img(const char* fileName, int* width, int* height) {
    return read_bmp(fileName, width, height, kGreyBytesPerPixel, PadRule::MayFail);
}

bool QelWrite24BitImg2BmpFile(unsigned char* image, int width, int height, const char* fileName) {
    return write_bmp(image, width, height, fileName, kRgbBytesPerPixel, nullptr);
}

bool QelWrite8BitImg2BmpFile(unsigned char* image, int width, int height, const char* fileName) {
    return write_bmp(image, width, height, fileName, kGreyBytesPerPixel, grey_ramp_entry);
}

bool QelWrite8BitImg2BmpFileMarkColor(unsigned char* image, int width, int height, const char* fileName) {
    return write_bmp(image, width, height, fileName, kGreyBytesPerPixel, mark_colour_entry);
}
