// The qel tool's raw camera frames: headerless YUV420P, YUV420SP, YUV422P and CbYCrY files whose
// size the user gives. Reading checks the declared size against the bytes and the layout's parity
// rules before the library converts the frame (whole, or one rectangle) to colour or grey:
//
//   std::vector<unsigned char> raw = cli::readFile(in);
//   Image img = cli::decodeFrame(in, raw, {cli::FrameFormat::Yuv420P, 640, 480});
#ifndef QEL_TOOL_FRAMES_H
#define QEL_TOOL_FRAMES_H

#include "image.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cli {

enum class FrameFormat { Yuv420P, Yuv420SP, Yuv422P, CbYCrY };
constexpr FrameFormat kFrameFormats[] = {FrameFormat::Yuv420P, FrameFormat::Yuv420SP, FrameFormat::Yuv422P,
                                         FrameFormat::CbYCrY};
// The sides of a raw frame the tool reads: 1 to this many pixels.
constexpr int kLargestFrameSide = 65535;

// "yuv420p", "yuv420sp", "yuv422p", "cbycry": the name used by --from, --to and file extensions.
const char* frameFormatName(FrameFormat format);
// Bytes of a width x height frame: 1.5 per pixel for the 4:2:0 layouts, 2 for the 4:2:2 ones.
size_t frameBytes(FrameFormat format, int width, int height);
// UsageError unless the sides suit the layout: every layout wants an even width; the 4:2:0 ones an
// even height too, and YUV422P when it is written (`writing`), not when it is read.
void requireFrameSize(FrameFormat format, int width, int height, bool writing);
// UsageError unless `rect` is empty or x1,x2,y1,y2 (ends included) inside a width x height picture;
// `text` is the rectangle as the user wrote it, for the message.
void requireRectangleInside(const std::vector<int>& rect, int width, int height, const std::string& text);

// How to read a raw frame: its layout and sides, an optional rectangle x1,x2,y1,y2 (ends included;
// `rectText` is how the user wrote it, for messages) and whether grey is wanted rather than colour.
struct FrameRead {
    FrameFormat format = FrameFormat::Yuv420P;
    int width = 0;
    int height = 0;
    std::vector<int> rect = {};
    std::string rectText = "";
    bool grey = false;
};
// The bytes of raw frame file `path`, converted to colour (B, G, R) or grey, whole or only the
// rectangle. UsageError for sides outside 1..kLargestFrameSide, a byte count other than
// frameBytes, sides the layout refuses, a rectangle outside the frame or one the library's colour
// copy refuses. The library reads `raw` but takes it non-const.
Image decodeFrame(const std::string& path, std::vector<unsigned char>& raw, const FrameRead& how);
// A colour picture as a raw frame; UsageError for sides the layout refuses.
std::vector<unsigned char> encodeFrame(FrameFormat format, const Image& colour);

}  // namespace cli

#endif
