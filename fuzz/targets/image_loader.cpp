// The qel tool's image loader on any file: BMP, PNG or JPEG as its first bytes say. Either a
// UsageError naming the problem, or a picture whose pixels fill exactly its size and whose size
// and kind are what the header description says.
#include "targets.h"

#include "common/cli.h"
#include "common/image.h"

namespace qel_fuzz {

int image_loader(const uint8_t* data, size_t size) {
    constexpr const char* kTarget = "image_loader";
    const std::string path = inputFile(kTarget, data, size);
    cli::ImageFileInfo info;
    try {
        info = cli::describeImageFile(path);
    } catch (const cli::UsageError&) {
        return 0;
    }
    cli::Image img;
    try {
        img = cli::loadImage(path);
    } catch (const cli::UsageError&) {
        return 0;  // headers fine, pixels damaged
    }
    expect(img.channels == 1 || img.channels == 3, kTarget, "a picture of " + std::to_string(img.channels) + " channels");
    expect(img.width == info.width && img.height == info.height && img.channels == info.channels, kTarget,
           "the picture is not what its description says");
    expect(img.pixels.size() == static_cast<size_t>(img.width) * static_cast<size_t>(img.height) * static_cast<size_t>(img.channels),
           kTarget, "pixel count does not match the picture's size");
    return 0;
}

}  // namespace qel_fuzz
