// Pictures for the tool's tests: random and hand-made cli::Image values and their pixels.
#ifndef QEL_TOOL_TEST_IMAGES_H
#define QEL_TOOL_TEST_IMAGES_H

#include "common/cli.h"
#include "common/image.h"
#include "support/test_images.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tool_test {

// A width x height picture of random bytes, grey (1 channel) or B, G, R (3).
inline cli::Image randomPicture(int width, int height, int channels, unsigned seed) {
    cli::Image img = cli::blankImage(width, height, channels);
    img.pixels = qel_test::random_bytes(img.pixels.size(), seed);
    return img;
}

// Sets the grey pixels of columns x1..x2 and rows y1..y2 (ends included) to `level`.
inline void fillRect(cli::Image& img, int x1, int x2, int y1, int y2, unsigned char level) {
    for (int y = y1; y <= y2; ++y)
        for (int x = x1; x <= x2; ++x) img.pixels[static_cast<size_t>(y) * static_cast<size_t>(img.width) + static_cast<size_t>(x)] = level;
}

// Byte `channel` (0 blue, 1 green, 2 red; 0 for grey) of pixel (x, y).
inline int at(const cli::Image& img, int x, int y, int channel = 0) {
    const size_t i = (static_cast<size_t>(y) * static_cast<size_t>(img.width) + static_cast<size_t>(x)) *
                     static_cast<size_t>(img.channels);
    return img.pixels[i + static_cast<size_t>(channel)];
}

// The message of the UsageError `f` throws, or "" when it throws none.
template <class F>
std::string refusal(F f) {
    try {
        f();
    } catch (const cli::UsageError& e) {
        return e.what();
    }
    return "";
}

}  // namespace tool_test

#endif
