// Golden table entries of qel/io.h, in header order. Files are written in the working directory
// under names made from the entry's name, so entries may run side by side; the digest covers the
// file's bytes.
#ifndef QEL_TESTS_GOLDEN_ENTRIES_IO_H
#define QEL_TESTS_GOLDEN_ENTRIES_IO_H

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "golden/golden_table.h"
#include "qel/io.h"

namespace golden {

inline std::string file_bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void record_bytes(Call& c, const std::string& bytes) {
    c.value(static_cast<long long>(bytes.size()));
    for (unsigned char b : bytes) c.value(int(b));
}

inline std::string file_for(const Call& c, const char* what) {
    return std::string("golden_") + what + "_" + std::to_string(c.w) + "x" + std::to_string(c.h);
}

inline void add_io(std::vector<Entry>& t) {
    t.insert(t.end(), {
        {"QelRead24BitBmpFile2Img", [](Call& c) {
             const std::string path = file_for(c, "read24") + ".bmp";
             QelWrite24BitImg2BmpFile(c.bgr(), c.w, c.h, path.c_str());
             int* size = c.out<int>(2);
             unsigned char* image = QelRead24BitBmpFile2Img(path.c_str(), &size[0], &size[1]);
             c.adopt(image, size_t(size[0]) * size_t(size[1]) * 3);
             std::remove(path.c_str());
         }},
        {"QelRead8BitBmpFile2Img", [](Call& c) {
             const std::string path = file_for(c, "read8") + ".bmp";
             QelWrite8BitImg2BmpFile(c.grey(), c.w, c.h, path.c_str());
             int* size = c.out<int>(2);
             unsigned char* image = QelRead8BitBmpFile2Img(path.c_str(), &size[0], &size[1]);
             c.adopt(image, size_t(size[0]) * size_t(size[1]));
             std::remove(path.c_str());
         }},
        {"QelWrite24BitImg2BmpFile", [](Call& c) {
             const std::string path = file_for(c, "write24") + ".bmp";
             c.value(QelWrite24BitImg2BmpFile(c.bgr(), c.w, c.h, path.c_str()));
             record_bytes(c, file_bytes(path));
             std::remove(path.c_str());
         }},
        {"QelWrite8BitImg2BmpFile", [](Call& c) {
             const std::string path = file_for(c, "write8") + ".bmp";
             c.value(QelWrite8BitImg2BmpFile(c.grey(), c.w, c.h, path.c_str()));
             record_bytes(c, file_bytes(path));
             std::remove(path.c_str());
         }},
        {"QelWrite8BitImg2BmpFileMarkColor", [](Call& c) {
             const std::string path = file_for(c, "write8mark") + ".bmp";
             c.value(QelWrite8BitImg2BmpFileMarkColor(c.grey(), c.w, c.h, path.c_str()));
             record_bytes(c, file_bytes(path));
             std::remove(path.c_str());
         }},
        {"QelGetFileNakeName", [](Call& c) {
             char path[] = "c:\\images\\day.2\\frame_0042.bmp";
             char* name = c.out<char>(sizeof path);
             QelGetFileNakeName(path, name);
         }},
        {"QelSetImageBoundary", [](Call& c) { QelSetImageBoundary(c.inout_grey(), c.w, c.h, 7); }},
        {"QelSetRGBImageBoundary", [](Call& c) { QelSetRGBImageBoundary(c.inout_bgr(), c.w, c.h, 200); }},
        {"QelSequenceFiles_Initialize", [](Call& c) {
             const std::string path = file_for(c, "list_init") + ".txt";
             std::ofstream(path, std::ios::binary) << "a.bmp\r\nb.bmp  \r\nlast";
             std::string name = path;
             c.value(QelSequenceFiles_Initialize(&name[0]));
             char* line = c.out<char>(16);
             c.value(QelSequenceFiles_GetFileName(1, line, 16));
             std::remove(path.c_str());
         }},
        {"QelSequenceFiles_GetFileName", [](Call& c) {
             const std::string path = file_for(c, "list_get") + ".txt";
             std::ofstream(path, std::ios::binary) << "first.bmp\r\nsecond one.bmp   \r\n\r\nfourth.bmp\r\n";
             std::string name = path;
             QelSequenceFiles_Initialize(&name[0]);
             for (int index = 0; index < 5; ++index) c.value(QelSequenceFiles_GetFileName(index, c.out<char>(20), 20));
             c.value(QelSequenceFiles_GetFileName(1, c.out<char>(8), 8));  // too long: refused
             std::remove(path.c_str());
         }},
        {"QelSequenceFiles_GetNextFileName", [](Call& c) {
             const std::string path = file_for(c, "list_next") + ".txt";
             std::ofstream(path, std::ios::binary) << "one\r\nthree33333\r\ntwo\nthree\r\n";
             std::string name = path;
             QelSequenceFiles_Initialize(&name[0]);
             for (int i = 0; i < 5; ++i) c.value(QelSequenceFiles_GetNextFileName(c.out<char>(8), 8));
             std::remove(path.c_str());
         }},
        // The log's own line ends are left out: CR LF on Windows, where it is a text file.
        {"QelDebugInfo", [](Call& c) {
             const std::string path = file_for(c, "debug") + ".txt";
#if defined(_WIN32)
             _putenv_s("QEL_DEBUG_LOG", path.c_str());
#else
             setenv("QEL_DEBUG_LOG", path.c_str(), 1);
#endif
             std::remove(path.c_str());  // only the first call of a process empties the log itself
             char text[] = "golden";
             QelDebugInfo(text, c.w);
             QelDebugInfo(text, -c.h);
             std::string log = file_bytes(path);
             std::string withoutCr;
             for (char ch : log)
                 if (ch != '\r') withoutCr += ch;
             record_bytes(c, withoutCr);
             std::remove(path.c_str());
         }},
    });
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_ENTRIES_IO_H
