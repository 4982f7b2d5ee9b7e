// Single channels of RGB images, and the two interlaced fields (even rows, odd rows) of a frame.
#include "qel/color.h"

#include "color/rgb.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

using qel::kBytesPerRgbPixel;
using qel::pixel_count;

// Number of bytes in one image row: width pixels of one byte (grey) or three (RGB).
size_t row_bytes(int width, bool rgb) {
    return static_cast<size_t>(width) * (rgb ? kBytesPerRgbPixel : 1);
}

// Applies op(channel byte, grey byte) to byte `channel` of each of the count RGB pixels.
template <class Op>
void for_each_channel_byte(unsigned char* rgb, size_t count, int channel, unsigned char* grey, Op op) {
    unsigned char* p = rgb + channel;
    for (size_t i = 0; i < count; ++i, p += kBytesPerRgbPixel) op(*p, grey[i]);
}

// Copies bytes [offset, offset + length) of a row into the frame, dropping whatever would fall
// outside the frame's frameBytes bytes.
void put_clipped(unsigned char* frame, std::ptrdiff_t frameBytes, std::ptrdiff_t offset,
                 const unsigned char* src, std::ptrdiff_t length) {
    if (offset < 0) {
        src -= offset;
        length += offset;
        offset = 0;
    }
    length = std::min(length, frameBytes - offset);
    if (length > 0) std::memcpy(frame + offset, src, static_cast<size_t>(length));
}

}  // namespace

void QelExtractMaxRGB2GryImg(unsigned char* rgb, int width, int height, unsigned char* grey) {
    qel::grey_from_each_pixel(rgb, pixel_count(width, height), grey,
                              [](int b, int g, int r) { return std::max({b, g, r}); });
}

// The same as QelSelectRGB2Gry.
void QelExtractOneChannelFromRGB(unsigned char* rgb, int width, int height, int channel,
                                 unsigned char* grey) {
    qel::extract_channel(rgb, pixel_count(width, height), channel, grey);
}

void QelReplaceOneChannelInRGB(unsigned char* rgb, int width, int height, int channel,
                               unsigned char* grey) {
    for_each_channel_byte(rgb, pixel_count(width, height), channel, grey,
                          [](unsigned char& c, unsigned char g) { c = g; });
}

void QelOROneChannelInRGB(unsigned char* rgb, int width, int height, int channel, unsigned char* grey) {
    for_each_channel_byte(rgb, pixel_count(width, height), channel, grey,
                          [](unsigned char& c, unsigned char g) { c = static_cast<unsigned char>(c | g); });
}

void QelGry2RGBImg(unsigned char* red, unsigned char* green, unsigned char* blue, int width, int height,
                   unsigned char* rgb) {
    qel::interleave_planes(blue, green, red, pixel_count(width, height), rgb);
}

void QelExtractOneField(unsigned char* frame, int width, int height, bool rgb, bool odd,
                        unsigned char* field, int* fieldHeight) {
    const size_t rowSize = row_bytes(width, rgb);
    const int first = odd ? 1 : 0;
    int rows = 0;
    for (int y = first; y < height; y += 2, ++rows)
        std::memcpy(field + rows * rowSize, frame + y * rowSize, rowSize);
    // rows == height / 2, plus one for the even field of an odd height
    *fieldHeight = rows;
}

void QelSplitOddEvenField(unsigned char* frame, int width, int height, bool rgb, unsigned char* out) {
    const size_t rowSize = row_bytes(width, rgb);
    unsigned char* dst = out;
    for (int parity = 0; parity < 2; ++parity) {
        for (int y = parity; y < height; y += 2, dst += rowSize) std::memcpy(dst, frame + y * rowSize, rowSize);
    }
}

void QelMergeOddEvenField(unsigned char* fieldA, unsigned char* fieldB, int rowsA, int rowsB, int width,
                          bool rgb, int shift, unsigned char* frame, int* frameHeight) {
    const int pixelBytes = rgb ? kBytesPerRgbPixel : 1;
    const std::ptrdiff_t rowSize = static_cast<std::ptrdiff_t>(width) * pixelBytes;
    const int frameRows = rowsA + rowsB;
    const std::ptrdiff_t frameBytes = std::max(frameRows, 0) * rowSize;
    *frameHeight = frameRows;

    // Field B: whole rows to frame rows 0, 2, 4, ...
    for (int b = 0; b < rowsB; ++b) put_clipped(frame, frameBytes, 2 * b * rowSize, fieldB + b * rowSize, rowSize);

    // Field A: frame rows 1, 3, 5, ..., moved sideways by shift pixels. A shift of a whole row or
    // more leaves nothing to write.
    const int keptPixels = width - (shift >= 1 ? shift : -shift);
    if (keptPixels <= 0) return;
    const std::ptrdiff_t keptBytes = static_cast<std::ptrdiff_t>(keptPixels) * pixelBytes;
    for (int a = 0; a < rowsA; ++a) {
        const unsigned char* src = fieldA + a * rowSize;
        const std::ptrdiff_t evenRow = 2 * a * rowSize;
        if (shift >= 1) {
            put_clipped(frame, frameBytes, evenRow + rowSize + static_cast<std::ptrdiff_t>(shift) * pixelBytes, src,
                        keptBytes);
        } else {
            // Intended: RGB rows land `width` bytes after the start of frame row 2a (not width x 3),
            // overlapping the end of field B's row there; grey rows land at frame row 2a + 1.
            const std::ptrdiff_t start = evenRow + (rgb ? width : rowSize);
            put_clipped(frame, frameBytes, start, src + static_cast<std::ptrdiff_t>(-shift) * pixelBytes, keptBytes);
        }
    }
}
