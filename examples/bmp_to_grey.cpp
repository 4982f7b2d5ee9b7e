// Reads a 24-bit BMP file, converts it to grey and writes an 8-bit BMP file.
#include <qel.h>

#include <cstddef>
#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: bmp_to_grey IN.bmp OUT.bmp\n");
        return 2;
    }
    int width = 0;
    int height = 0;
    // A new B, G, R buffer, top row first, which the caller releases with delete[]. Null when the
    // file cannot be read; width and height may then hold the header's values, so do not use them.
    unsigned char* bgr = QelRead24BitBmpFile2Img(argv[1], &width, &height);
    if (bgr == nullptr) {
        std::fprintf(stderr, "%s: not a readable 24-bit BMP file\n", argv[1]);
        return 1;
    }
    std::vector<unsigned char> grey(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    QelRGB2Gry(bgr, width, height, grey.data());
    delete[] bgr;
    if (!QelWrite8BitImg2BmpFile(grey.data(), width, height, argv[2])) {
        std::fprintf(stderr, "%s: cannot write\n", argv[2]);
        return 1;
    }
    std::printf("%s -> %s: %d x %d grey\n", argv[1], argv[2], width, height);
    return 0;
}
