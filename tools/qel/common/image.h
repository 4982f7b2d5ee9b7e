// The qel tool's image files. One module reads BMP, PNG and JPEG files and writes BMP and PNG
// files for every subcommand, so each subcommand accepts every supported file:
//
//   Image photo = cli::loadColour(in);           // B, G, R whatever the file holds
//   Image grey  = cli::loadGrey(in);             // grey; colour files are converted (said on stderr)
//   cli::checkOutputName(out);                   // before any work: .bmp or .png, not a directory
//   cli::saveAndConfirm(result, in, out, "Sobel edges");
//
// Every problem with an input file is a UsageError naming the file and the problem; a failed write
// is a Failure and leaves nothing behind.
#ifndef QEL_TOOL_IMAGE_H
#define QEL_TOOL_IMAGE_H

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

// An image as the library takes it: top row first, no row padding.
struct Image {
    std::vector<unsigned char> pixels;
    int width = 0;
    int height = 0;
    int channels = 0;  // 1 grey, 3 B, G, R
    bool isGrey() const { return channels == 1; }
};

// Pictures a command makes to a size the user asks for (a resize, a rotation, a plot) are held
// to this many pixels: 768 MiB in colour, well inside INT_MAX bytes.
constexpr long long kMaxNewPixels = 1LL << 28;

// UsageError unless width and height are at least 1 and width x height is at most kMaxNewPixels.
// The sizes are taken as doubles so that a size computed from a scale is checked before it is
// converted; `what` names the picture in the message ("the resized picture").
void checkNewSize(double width, double height, const std::string& what);
// A picture of the given size and kind with every byte set to `level`.
Image blankImage(int width, int height, int channels, unsigned char level = 0);

// The three channels of a colour image as grey images, blue, green, red; a grey image alone.
std::vector<Image> splitChannels(const Image& image);
// The inverse of splitChannels: three grey images of one size (blue, green, red) interleaved, or
// the one grey image.
Image joinChannels(const std::vector<Image>& planes);
// A grey operation applied to a grey image, or to each channel of a colour one: `op` takes a grey
// Image and returns one (every channel's result must have the same size).
template <class GreyOperation>
Image eachChannel(const Image& image, GreyOperation op) {
    std::vector<Image> planes = splitChannels(image);
    for (Image& p : planes) p = op(p);
    return joinChannels(planes);
}

enum class ImageFormat { Bmp, Png, Jpeg };
const char* formatName(ImageFormat format);  // "BMP", "PNG", "JPEG"

// What an image file's headers say, read without decoding the pixels.
struct ImageFileInfo {
    ImageFormat format = ImageFormat::Bmp;
    int width = 0;
    int height = 0;
    int channels = 0;      // what loading gives: 1 grey, 3 colour
    std::string details;   // depth, palette, storage order, as the format has them
    long long bytes = 0;   // file size
};

// ---- reading ---------------------------------------------------------------------------------
// The file's format is recognised by its first bytes, whatever its name. Readable: uncompressed
// 8-bit and 24-bit BMP (an 8-bit file through its palette: a grey palette gives grey, any other
// colour), PNG of any colour type and depth (alpha ignored, 16-bit samples keep their high byte,
// a palette of greys gives grey) and baseline or progressive grey or colour JPEG.
ImageFileInfo describeImageFile(const std::string& path);
// Grey or colour, as the file holds it.
Image loadImage(const std::string& path);
// Always colour: a grey file gets its level in all three channels.
Image loadColour(const std::string& path);
// Always grey: colour is converted with the library's weights, and "<path>: colour input converted
// to grey" is said on stderr.
Image loadGrey(const std::string& path);

Image toGrey(const Image& image);    // library weights (B·468 + G·2404 + R·1225) >> 12
Image toColour(const Image& image);  // grey level copied into B, G and R

// ---- writing ---------------------------------------------------------------------------------
// The format an output file name asks for: .bmp or .png (any case). UsageError for any other
// extension, JPEG included (it is read, not written).
ImageFormat outputFormatFor(const std::string& path);
// Checks an output name before the work starts: a writable image format (as above) and not a
// directory. UsageError otherwise.
void checkOutputName(const std::string& path);
// Writes grey as 8-bit and colour as 24-bit, BMP or PNG as the extension says, through a
// temporary file renamed into place. markColours shows grey levels 252..255 as yellow, blue,
// green and red (the library's marking palette; a PNG gets the same palette).
void saveImage(const Image& image, const std::string& path, bool markColours = false);
// The confirmation line of a written file, without its newline: "IN -> OUT: WHAT, W x H grey|colour".
std::string confirmation(const Image& image, const std::string& in, const std::string& out, const std::string& what);
// saveImage, then the confirmation line on stdout.
void saveAndConfirm(const Image& image, const std::string& in, const std::string& out, const std::string& what,
                    bool markColours = false);

// ---- directories and batches -----------------------------------------------------------------
// True when the name has an extension of a readable image file (.bmp, .png, .jpg, .jpeg, any case).
bool hasImageExtension(const std::string& path);
// The readable image files directly inside a directory (by extension, subdirectories not
// entered), as paths, sorted by name. UsageError when it is not a readable directory.
std::vector<std::string> listImageFiles(const std::string& directory);
// "\r<what> done/total" on stderr while stderr is a terminal, a newline once done reaches total.
void progress(const char* what, long done, long total);

}  // namespace cli

#endif
