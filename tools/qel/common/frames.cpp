// The qel tool's raw camera frames: size checks, decoding (whole or a rectangle) and encoding,
// through the library's conversions and rectangle copies.
#include "frames.h"

#include "cli.h"

#include <qel.h>

namespace cli {

const char* frameFormatName(FrameFormat format) {
    switch (format) {
        case FrameFormat::Yuv420P: return "yuv420p";
        case FrameFormat::Yuv420SP: return "yuv420sp";
        case FrameFormat::Yuv422P: return "yuv422p";
        case FrameFormat::CbYCrY: return "cbycry";
    }
    return "?";
}

size_t frameBytes(FrameFormat format, int width, int height) {
    const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
    return (format == FrameFormat::Yuv420P || format == FrameFormat::Yuv420SP) ? pixels * 3 / 2 : pixels * 2;
}

void requireFrameSize(FrameFormat format, int width, int height, bool writing) {
    const bool oddW = (width % 2) != 0;
    const bool oddH = (height % 2) != 0;
    // Reading YUV422P accepts an odd height; every other layout wants even sides where it pairs rows.
    const bool heightMatters = format == FrameFormat::Yuv420P || format == FrameFormat::Yuv420SP ||
                               (format == FrameFormat::Yuv422P && writing);
    if (oddW || (heightMatters && oddH))
        throw UsageError(std::string(frameFormatName(format)) + " needs an even width" + (heightMatters ? " and height" : "") +
                         " (got " + std::to_string(width) + " x " + std::to_string(height) + ")");
}

void requireRectangleInside(const std::vector<int>& rect, int width, int height, const std::string& text) {
    if (rect.empty()) return;
    if (rect[0] < 0 || rect[2] < 0 || rect[0] > rect[1] || rect[2] > rect[3] || rect[1] >= width || rect[3] >= height)
        throw UsageError("--rect " + text + " is not inside the " + std::to_string(width) + " x " + std::to_string(height) +
                         " image (want x1<=x2<width, y1<=y2<height)");
}

namespace {

Image newPicture(int width, int height, bool grey) {
    Image img;
    img.width = width;
    img.height = height;
    img.channels = grey ? 1 : 3;
    img.pixels.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(img.channels));
    return img;
}

// The whole frame as colour, or as grey straight from the luma plane.
Image wholeFrame(FrameFormat f, unsigned char* raw, int w, int h, bool grey) {
    Image img = newPicture(w, h, grey);
    unsigned char* out = img.pixels.data();
    if (grey) {
        switch (f) {
            case FrameFormat::Yuv420P: QelYUV420P2Gry(raw, w, h, out); break;
            case FrameFormat::Yuv420SP: QelYUV420SP2Gry(raw, w, h, out); break;
            case FrameFormat::Yuv422P: QelYUV422P2Gry(raw, w, h, out); break;
            case FrameFormat::CbYCrY: QelCbYCrY2Gry(raw, w, h, out); break;
        }
        return img;
    }
    bool ok = false;
    switch (f) {
        case FrameFormat::Yuv420P: ok = QelYUV420P2RGB(raw, w, h, out); break;
        case FrameFormat::Yuv420SP: ok = QelYUV420SP2RGB(raw, w, h, out); break;
        case FrameFormat::Yuv422P: ok = QelYUV422P2RGB(raw, w, h, out); break;
        case FrameFormat::CbYCrY: ok = QelCbYCrY2RGB(raw, w, h, out); break;
    }
    if (!ok) throw UsageError(std::string(frameFormatName(f)) + " frame size refused");
    return img;
}

// Rectangle x1,x2,y1,y2 of a frame as colour or grey, through the library's rectangle copies.
Image frameRectangle(FrameFormat f, unsigned char* frame, int w, int h, const std::vector<int>& r, bool grey) {
    Image img = newPicture(r[1] - r[0] + 1, r[3] - r[2] + 1, grey);
    unsigned char* out = img.pixels.data();
    if (grey) {
        switch (f) {
            case FrameFormat::Yuv420P: QelCopyYUV420PRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            case FrameFormat::Yuv420SP: QelCopyYUV420SPRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            case FrameFormat::Yuv422P: QelCopyYUV422PRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
            case FrameFormat::CbYCrY: QelCopyCbYCrYRect2Gry(frame, w, h, r[0], r[1], r[2], r[3], out); break;
        }
        return img;
    }
    bool ok = false;
    const char* rule = "an even x1 and an even rectangle width";
    switch (f) {
        case FrameFormat::Yuv420P:
            ok = QelCopyYUV420PRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and y1 and an even rectangle width and height";
            break;
        case FrameFormat::Yuv420SP:
            ok = QelCopyYUV420SPRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out);
            rule = "an even x1 and y1 and an even rectangle width and height";
            break;
        case FrameFormat::Yuv422P: ok = QelCopyYUV422PRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out); break;
        case FrameFormat::CbYCrY: ok = QelCopyCbYCrYRect2RGB(frame, w, h, r[0], r[1], r[2], r[3], out); break;
    }
    if (!ok) throw UsageError(std::string("a colour rectangle of a ") + frameFormatName(f) + " frame needs " + rule);
    return img;
}

}  // namespace

Image decodeFrame(const std::string& path, std::vector<unsigned char>& raw, const FrameRead& how) {
    const FrameFormat format = how.format;
    const int width = how.width;
    const int height = how.height;
    if (width <= 0 || height <= 0 || width > kLargestFrameSide || height > kLargestFrameSide)
        throw UsageError("--width and --height must be between 1 and " + std::to_string(kLargestFrameSide));
    const size_t need = frameBytes(format, width, height);
    if (raw.size() != need)
        throw UsageError("size mismatch: a " + std::to_string(width) + " x " + std::to_string(height) + " " +
                         frameFormatName(format) + " frame has " + std::to_string(need) + " bytes, '" + path + "' has " +
                         std::to_string(raw.size()));
    requireFrameSize(format, width, height, false);
    requireRectangleInside(how.rect, width, height, how.rectText);
    return how.rect.empty() ? wholeFrame(format, raw.data(), width, height, how.grey)
                            : frameRectangle(format, raw.data(), width, height, how.rect, how.grey);
}

std::vector<unsigned char> encodeFrame(FrameFormat format, const Image& colour) {
    const int w = colour.width;
    const int h = colour.height;
    requireFrameSize(format, w, h, true);
    std::vector<unsigned char> frame(frameBytes(format, w, h));
    // The library's conversions take the picture non-const but only read it.
    unsigned char* bgr = const_cast<unsigned char*>(colour.pixels.data());
    bool ok = false;
    switch (format) {
        case FrameFormat::Yuv420P: ok = QelRGB2YUV420P(bgr, w, h, frame.data()); break;
        case FrameFormat::Yuv420SP: ok = QelRGB2YUV420SP(bgr, w, h, frame.data()); break;
        case FrameFormat::Yuv422P: ok = QelRGB2YUV422P(bgr, w, h, frame.data()); break;
        case FrameFormat::CbYCrY: ok = QelRGB2CbYCrY(bgr, w, h, frame.data()); break;
    }
    if (!ok) throw UsageError(std::string(frameFormatName(format)) + " frame size refused");
    return frame;
}

}  // namespace cli
