// The qel tool's raw-frame reading with sizes, layout and rectangle taken from the input. Input:
// byte 0 chooses the layout (bits 0-1), grey output (bit 2), a rectangle (bit 3) and whether the
// frame bytes are cut or zero-padded to the declared size (bit 4); then width and height as signed
// 16-bit little-endian numbers; with a rectangle, x1, x2, y1, y2 the same way; the rest is the frame.
// Either the reading is refused with a UsageError or the picture has the size asked for, and a
// grey picture holds the frame's luma samples.
#include "targets.h"

#include "common/cli.h"
#include "common/frames.h"

#include <vector>

namespace qel_fuzz {
namespace {

constexpr const char* kTarget = "camera_frame";
constexpr size_t kLargestPaddedFrame = size_t{1} << 18;  // keeps one input's work small

struct Cursor {
    const uint8_t* data;
    size_t size;
    size_t at = 0;
    int int16() {
        if (at + 2 > size) {
            at = size;
            return 0;
        }
        const int v = static_cast<int16_t>(static_cast<uint16_t>(data[at] | data[at + 1] << 8));
        at += 2;
        return v;
    }
};

// Luma sample of pixel (x, y): the planar layouts start with the Y plane, CbYCrY has Y in its odd bytes.
uint8_t luma(cli::FrameFormat f, const std::vector<unsigned char>& raw, int width, int x, int y) {
    const size_t i = static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
    return f == cli::FrameFormat::CbYCrY ? raw[2 * i + 1] : raw[i];
}

}  // namespace

int camera_frame(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    Cursor in{data, size, 1};
    const uint8_t mode = data[0];
    cli::FrameRead how;
    how.format = cli::kFrameFormats[mode & 3];
    how.grey = (mode & 4) != 0;
    how.width = in.int16();
    how.height = in.int16();
    if ((mode & 8) != 0) {
        for (int k = 0; k < 4; ++k) how.rect.push_back(in.int16());
        how.rectText = "x";
    }
    std::vector<unsigned char> raw(data + in.at, data + size);
    if ((mode & 16) != 0 && how.width > 0 && how.height > 0) {
        const size_t need = cli::frameBytes(how.format, how.width, how.height);
        if (need <= kLargestPaddedFrame) raw.resize(need);
    }

    cli::Image img;
    try {
        img = cli::decodeFrame("frame", raw, how);
    } catch (const cli::UsageError&) {
        return 0;  // refused, as the tool says to the user
    }
    const int x0 = how.rect.empty() ? 0 : how.rect[0];
    const int y0 = how.rect.empty() ? 0 : how.rect[2];
    const int w = how.rect.empty() ? how.width : how.rect[1] - how.rect[0] + 1;
    const int h = how.rect.empty() ? how.height : how.rect[3] - how.rect[2] + 1;
    expect(img.width == w && img.height == h && img.channels == (how.grey ? 1 : 3), kTarget, "picture of the wrong size");
    expect(img.pixels.size() == static_cast<size_t>(w) * static_cast<size_t>(h) * static_cast<size_t>(img.channels), kTarget,
           "pixel count does not match the picture's size");
    if (how.grey) {
        bool same = true;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                same = same && img.pixels[static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)] ==
                                   luma(how.format, raw, how.width, x0 + x, y0 + y);
        expect(same, kTarget, "a grey pixel is not the frame's luma sample");
    }
    return 0;
}

}  // namespace qel_fuzz
