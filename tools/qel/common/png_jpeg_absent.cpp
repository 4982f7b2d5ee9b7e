// The PNG and JPEG entry points of a qel built without libpng and libjpeg (the Windows cross build,
// for one): BMP files only. Each entry point refuses with a message that says so.
#include "cli.h"
#include "image_formats.h"

#include <string>

namespace cli::formats {

const bool kPngAndJpeg = false;

namespace {

[[noreturn]] void refuse(const std::string& path, const char* format) {
    throw UsageError(about(path, std::string("is a ") + format + " file: " + kBmpOnlyBuild));
}

}  // namespace

ImageFileInfo describePng(const std::string& path) { refuse(path, "PNG"); }
Image readPng(const std::string& path) { refuse(path, "PNG"); }
ImageFileInfo describeJpeg(const std::string& path) { refuse(path, "JPEG"); }
Image readJpeg(const std::string& path) { refuse(path, "JPEG"); }
bool writePng(const Image&, const std::string& path, bool) {
    throw UsageError("cannot write '" + path + "': " + kBmpOnlyBuild + "; name the output .bmp");
}

}  // namespace cli::formats
