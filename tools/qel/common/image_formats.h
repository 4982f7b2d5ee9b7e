// Inside the image module: one reader per file format, the two writers, and what they share.
#ifndef QEL_TOOL_IMAGE_FORMATS_H
#define QEL_TOOL_IMAGE_FORMATS_H

#include "image.h"

#include <cstdio>
#include <memory>
#include <string>

namespace cli::formats {

// Every reader is handed a file whose first bytes already showed its format, and throws
// UsageError naming the file for anything it cannot read.
ImageFileInfo describeBmp(const std::string& path);
Image readBmp(const std::string& path);
ImageFileInfo describePng(const std::string& path);
Image readPng(const std::string& path);
ImageFileInfo describeJpeg(const std::string& path);
Image readJpeg(const std::string& path);

// Writers write to exactly the path given (the caller renames it into place) and return false
// when any write failed.
bool writeBmp(const Image& image, const std::string& path, bool markColours);
bool writePng(const Image& image, const std::string& path, bool markColours);

// False in a build without libpng and libjpeg, which reads and writes BMP files only; the PNG and
// JPEG entry points then refuse with kBmpOnlyBuild in their message.
extern const bool kPngAndJpeg;
constexpr const char* kBmpOnlyBuild = "this qel was built without PNG and JPEG support (libpng and libjpeg), "
                                      "so it reads and writes BMP files only";

// The library's marking palette: grey levels 252..255 show as yellow, blue, green and red.
constexpr int kFirstMarkLevel = 252;
constexpr unsigned char kMarkColoursBgr[4][3] = {{0, 255, 255}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
// B, G, R of palette entry `level` of the marking palette.
void markPaletteEntry(int level, unsigned char bgr[3]);

// The library indexes images with int arithmetic, so the tool holds at most INT_MAX bytes of
// pixels. UsageError, naming the file and its declared size, for a larger or empty image.
void checkImageSize(const std::string& path, long long width, long long height, int channels);

// A compressed format can pack at most `pixelsPerByte` pixels into each byte of its file (JPEG
// 512: Huffman coding spends at least one bit on each 8 x 8 block; PNG 8 x 1032: one-bit pixels,
// deflate expanding at most 1032 times). UsageError, before anything is allocated, for a header
// that declares more pixels than the file could hold: a few bytes must not claim gigabytes.
void checkCompressedSize(const std::string& path, long long width, long long height, long long pixelsPerByte,
                         const char* format);

// A FILE* that closes itself.
using FileHandle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
// Opens an input file for reading; UsageError naming the problem.
FileHandle openInput(const std::string& path);
long long fileSize(const std::string& path);

// "'path': message" for an error message about one file.
std::string about(const std::string& path, const std::string& message);

}  // namespace cli::formats

#endif
