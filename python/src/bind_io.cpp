// Bindings of qel/io.h: BMP files, frame setters, base names, the list-file reader, the debug log.
#include "convert.h"

#include <cstring>

namespace qelpy {

namespace {

// The BMP readers hand out a buffer the caller frees with delete[]: the array owns it instead.
template <unsigned char* (*Read)(const char*, int*, int*), int Channels>
py::array read_bmp(const py::object& fileName) {
    const char* function = Channels == 3 ? "read_24bit_bmp_file2img" : "read_8bit_bmp_file2img";
    const std::string path = pathBytes(fileName, function, "file_name");
    int width = 0;
    int height = 0;
    unsigned char* pixels = nullptr;
    {
        py::gil_scoped_release release;
        pixels = Read(path.c_str(), &width, &height);
    }
    if (pixels == nullptr) {
        throw py::value_error(std::string(function) + "(): refused '" + py::str(fileName).cast<std::string>() +
                              "': not a readable " + (Channels == 3 ? "24" : "8") +
                              "-bit BMP file (missing, short header, bad size or truncated rows)");
    }
    py::capsule owner(pixels, [](void* p) { delete[] static_cast<unsigned char*>(p); });
    std::vector<py::ssize_t> shape{height, width};
    if (Channels == 3) shape.push_back(3);
    return py::array(py::dtype::of<std::uint8_t>(), shape, pixels, owner);
}

py::str file_nake_name(const py::object& pathName) {
    std::string path = pathBytes(pathName, "get_file_nake_name", "path");
    std::vector<char> name(path.size() + 1, '\0');  // the name is never longer than the path
    QelGetFileNakeName(path.data(), name.data());
    return py::module_::import("os").attr("fsdecode")(py::bytes(name.data(), std::strlen(name.data())));
}

}  // namespace

void bind_io(py::module_ m) {
    // ---- BMP files
    m.def("read_24bit_bmp_file2img", &read_bmp<QelRead24BitBmpFile2Img, 3>, py::arg("file_name"),
          "read_24bit_bmp_file2img(file_name) -> (H, W, 3) uint8\n\n"
          "Reads a 24-bit BMP file into a new BGR image, top row first. Bits per pixel are not examined.\n"
          "Raises ValueError when the library refuses the file (missing, short header, bad size,\n"
          "truncated rows).\n\nC++: QelRead24BitBmpFile2Img\n");
    m.def("read_8bit_bmp_file2img", &read_bmp<QelRead8BitBmpFile2Img, 0>, py::arg("file_name"),
          "read_8bit_bmp_file2img(file_name) -> (H, W) uint8\n\n"
          "Reads an 8-bit BMP file into a new grey image of its raw pixel values (palette indices; the\n"
          "palette is ignored). Raises ValueError when the library refuses the file.\n\n"
          "C++: QelRead8BitBmpFile2Img\n");
    QEL_BIND(m, "write_24bit_img2bmp_file", QelWrite24BitImg2BmpFile,
             "Writes a BGR image as a 24-bit BMP file. Raises ValueError when the file cannot be created or\n"
             "a write came up short (the file is kept).",
             refuses("the file could not be created or completely written"), bgr("image"), width, height,
             path("file_name"));
    QEL_BIND(m, "write_8bit_img2bmp_file", QelWrite8BitImg2BmpFile,
             "Writes a grey image as an 8-bit BMP file with a grey-ramp palette.",
             refuses("the file could not be created or completely written"), grey("image"), width, height,
             path("file_name"));
    QEL_BIND(m, "write_8bit_img2bmp_file_mark_color", QelWrite8BitImg2BmpFileMarkColor,
             "As write_8bit_img2bmp_file, with palette entries 252..255 yellow, blue, green and red, so marks\n"
             "drawn with those grey values show in colour.",
             refuses("the file could not be created or completely written"), grey("image"), width, height,
             path("file_name"));
    m.def("get_file_nake_name", &file_nake_name, py::arg("path"),
          "get_file_nake_name(path) -> str\n\n"
          "Base name of a path: the part after the last backslash (a slash is not a separator), cut at\n"
          "its first dot.\n\nC++: QelGetFileNakeName\n");

    // ---- frame setters
    QEL_BIND(m, "set_image_boundary", QelSetImageBoundary,
             "Copy of a grey image with rows 0 and H-1 and columns 0 and W-1 set to value (out=image: in place).",
             none, grey_inout("image"), width, height, i32("value"));
    QEL_BIND(m, "set_rgb_image_boundary", QelSetRGBImageBoundary,
             "Copy of a BGR image with the library's partial frame set to value: the first W bytes (not\n"
             "W x 3) of rows 0 and H-1, and bytes 0 and W-1 of every row.",
             none, bgr_inout("image"), width, height, i32("value"));

    // ---- list files (one library-wide reader: qel.io.SequenceFiles serialises its use)
    QEL_BIND_SERIAL(m, "sequence_files_initialize", QelSequenceFiles_Initialize, "sequence_files",
                    "Reads a list file (CR LF lines) into the library's one list reader and rewinds it.",
                    refuses("the list file could not be opened"), path_mutable("list_file_name"));
    QEL_BIND_SERIAL(m, "sequence_files_get_file_name", QelSequenceFiles_GetFileName, "sequence_files",
                    "Line `index` (from 0) of the list, trailing spaces removed; None when there is no such\n"
                    "line or it does not fit in buffer_size bytes with its terminator.",
                    none_if_false, i32("index"), text_out(), i32("buffer_size", 4096));
    QEL_BIND_SERIAL(m, "sequence_files_get_next_file_name", QelSequenceFiles_GetNextFileName, "sequence_files",
                    "The line at the cursor, which moves on; None at the end of the list, or when the line\n"
                    "does not fit in buffer_size bytes (that line is then skipped).",
                    none_if_false, text_out(), i32("buffer_size", 4096));
    QEL_BIND_SERIAL(m, "debug_info", QelDebugInfo, "debug_log",
                    "Appends \"\\n<text>,<value>\" to the debug log (QEL_DEBUG_LOG, or QelDebugInfo.txt in the\n"
                    "temporary directory); the first call of the process empties it.",
                    none, text("text"), i32("value"));
}

}  // namespace qelpy
