// JPEG files through libjpeg: grey files are read as grey, YCbCr and RGB files as colour, baseline
// or progressive; CMYK files are refused. JPEG is read, never written (it would lose detail).
#include "cli.h"
#include "image_formats.h"

#include <csetjmp>
#include <cstdio>
#include <string>
#include <utility>

#include <jerror.h>
#include <jpeglib.h>

namespace cli::formats {
namespace {

// Every 8 x 8 block of the full-resolution component costs at least one bit of Huffman code (its
// DC difference), so a file holds at most 512 pixels a byte. (Arithmetic-coded files, rare, could
// pack more; they are held to the same limit.)
constexpr long long kJpegPixelsPerByte = 64 * 8;

// libjpeg reports an error through a callback that must not return: it jumps back to the setjmp
// of the step that called libjpeg. Each step is a plain function whose locals need no destructor,
// as longjmp requires; everything with a destructor lives in the caller.
struct JpegErrors {
    jpeg_error_mgr manager;  // first member: libjpeg hands back a pointer to it
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
};

[[noreturn]] void onError(j_common_ptr info) {
    auto* errors = reinterpret_cast<JpegErrors*>(info->err);
    (*info->err->format_message)(info, errors->message);
    std::longjmp(errors->jump, 1);
}

// Warnings report damaged data, which libjpeg would paper over with grey; such a file is refused
// rather than read wrong. Stray bytes between markers leave the pixels intact and are passed over.
void onMessage(j_common_ptr info, int level) {
    if (level < 0 && info->err->msg_code != JWRN_EXTRANEOUS_DATA) onError(info);
}

// libjpeg's decompression structures, released however the reader is left.
struct JpegStructs {
    jpeg_decompress_struct info{};
    JpegErrors errors{};
    ~JpegStructs() { jpeg_destroy_decompress(&info); }  // safe on a zeroed or half-made struct
};

bool headerStep(jpeg_decompress_struct* info, JpegErrors* errors, std::FILE* file) {
    info->err = jpeg_std_error(&errors->manager);
    errors->manager.error_exit = onError;
    errors->manager.emit_message = onMessage;
    if (setjmp(errors->jump)) return false;
    jpeg_create_decompress(info);
    jpeg_stdio_src(info, file);
    jpeg_read_header(info, TRUE);
    return true;
}

#ifdef JCS_EXTENSIONS
constexpr J_COLOR_SPACE kColourOut = JCS_EXT_BGR;  // libjpeg-turbo delivers B, G, R directly
#else
constexpr J_COLOR_SPACE kColourOut = JCS_RGB;      // swapped to B, G, R after reading
#endif

bool pixelsStep(jpeg_decompress_struct* info, JpegErrors* errors, int channels, unsigned char* out) {
    if (setjmp(errors->jump)) return false;
    info->out_color_space = channels == 1 ? JCS_GRAYSCALE : kColourOut;
    jpeg_start_decompress(info);
    if (info->output_width != info->image_width || info->output_height != info->image_height ||
        info->output_components != channels) {
        std::snprintf(errors->message, sizeof errors->message, "unexpected output layout");
        jpeg_abort_decompress(info);
        return false;
    }
    const size_t rowBytes = static_cast<size_t>(info->output_width) * static_cast<size_t>(channels);
    while (info->output_scanline < info->output_height) {
        JSAMPROW row = out + rowBytes * info->output_scanline;
        jpeg_read_scanlines(info, &row, 1);
    }
    jpeg_finish_decompress(info);
    return true;
}

// Reads one JPEG file: the headers on construction, the pixels on request.
class JpegReader {
public:
    explicit JpegReader(const std::string& path) : path_(path), file_(openInput(path)) {
        if (!headerStep(&s_.info, &s_.errors, file_.get())) throw damaged();
        switch (s_.info.jpeg_color_space) {
            case JCS_GRAYSCALE: channels_ = 1; break;
            case JCS_YCbCr:
            case JCS_RGB: channels_ = 3; break;
            case JCS_CMYK:
            case JCS_YCCK: throw UsageError(about(path, "is a CMYK JPEG file; only grey and colour (YCbCr or RGB) JPEG files are read"));
            default: throw UsageError(about(path, "is a JPEG file in an unknown colour space; only grey and colour JPEG files are read"));
        }
    }

    ImageFileInfo describe() const {
        ImageFileInfo info;
        info.format = ImageFormat::Jpeg;
        info.width = static_cast<int>(s_.info.image_width);
        info.height = static_cast<int>(s_.info.image_height);
        info.channels = channels_;
        info.details = std::to_string(s_.info.data_precision) + "-bit " +
                       (channels_ == 1 ? "grey" : s_.info.jpeg_color_space == JCS_RGB ? "RGB colour" : "YCbCr colour") +
                       (s_.info.progressive_mode ? ", progressive" : ", baseline");
        info.bytes = fileSize(path_);
        return info;
    }

    Image readPixels() {
        checkImageSize(path_, s_.info.image_width, s_.info.image_height, channels_);
        checkCompressedSize(path_, s_.info.image_width, s_.info.image_height, kJpegPixelsPerByte, "JPEG");
        Image img;
        img.width = static_cast<int>(s_.info.image_width);
        img.height = static_cast<int>(s_.info.image_height);
        img.channels = channels_;
        img.pixels.resize(static_cast<size_t>(img.width) * static_cast<size_t>(img.height) * static_cast<size_t>(channels_));
        if (!pixelsStep(&s_.info, &s_.errors, channels_, img.pixels.data())) throw damaged();
        if (channels_ == 3 && kColourOut == JCS_RGB)
            for (size_t i = 0; i < img.pixels.size(); i += 3) std::swap(img.pixels[i], img.pixels[i + 2]);
        return img;
    }

private:
    UsageError damaged() const { return UsageError(about(path_, std::string("cannot be read as JPEG: ") + s_.errors.message)); }

    std::string path_;
    FileHandle file_;
    JpegStructs s_;
    int channels_ = 0;
};

}  // namespace

ImageFileInfo describeJpeg(const std::string& path) { return JpegReader(path).describe(); }

Image readJpeg(const std::string& path) { return JpegReader(path).readPixels(); }

}  // namespace cli::formats
