// Packed RGB images (3 bytes a pixel, stored blue, green, red): the loops over whole images that
// the colour conversions and the channel family share.
#ifndef QEL_SRC_COLOR_RGB_H
#define QEL_SRC_COLOR_RGB_H

#include <cstddef>

namespace qel {

constexpr int kBytesPerRgbPixel = 3;

// width x height for positive sizes, else 0.
inline size_t pixel_count(int width, int height) {
    return width > 0 && height > 0 ? static_cast<size_t>(width) * static_cast<size_t>(height) : 0;
}

// grey[i] = f(B, G, R) of pixel i, for count pixels.
template <class F>
void grey_from_each_pixel(const unsigned char* rgb, size_t count, unsigned char* grey, F f) {
    const unsigned char* p = rgb;
    for (size_t i = 0; i < count; ++i, p += kBytesPerRgbPixel) grey[i] = static_cast<unsigned char>(f(p[0], p[1], p[2]));
}

// grey[i] = byte `channel` (0 blue, 1 green, 2 red) of pixel i, for count pixels.
void extract_channel(const unsigned char* rgb, size_t count, int channel, unsigned char* grey);

// Packs three planes of count pixels into B, G, R pixels: rgb[3i] = blue[i], rgb[3i + 1] = green[i],
// rgb[3i + 2] = red[i]. The planes must not overlap rgb.
void interleave_planes(const unsigned char* blue, const unsigned char* green, const unsigned char* red, size_t count,
                       unsigned char* rgb);

}  // namespace qel

#endif
