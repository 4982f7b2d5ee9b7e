// Qel — image buffers and files: BMP files, frame setters, list files, debug log.
#ifndef QEL_IO_H
#define QEL_IO_H

#include "qel/base.h"

// ==== BMP files and frame setters ====
// BMP files are uncompressed Windows bitmaps, 8-bit palettised or 24-bit, rows stored bottom row
// first and padded to a multiple of 4 bytes. In memory, images are top row first without padding.

/// Reads a 24-bit BMP file into a new B, G, R buffer of width x height x 3 bytes, top row first.
/// *width and *height are set to 0 first, then to the header's values once both headers are read
/// (they keep them even when null is returned later; a top-down file reports its height positive).
/// Bits per pixel and compression are not examined: the pixel bytes are read as 24-bit. Returns
/// null for an unopenable file, a short header, a pixel-data offset below 54, a non-positive or
/// oversized image, or a file too short for its rows. Pad bytes never fail the read. The caller
/// releases the buffer with delete[].
QEL_API unsigned char* QelRead24BitBmpFile2Img(const char* fileName, int* width, int* height);
/// Reads an 8-bit BMP file into a new grey buffer of width x height bytes holding the raw pixel
/// values (palette indices, the palette is ignored), top row first. Out values and refusals as for
/// QelRead24BitBmpFile2Img, and a short pad read also returns null. Release with delete[].
QEL_API unsigned char* QelRead8BitBmpFile2Img(const char* fileName, int* width, int* height);
/// Writes a B, G, R image as a 24-bit BMP file. The file-size field is width x height x 3 + 54
/// (row padding not counted, intended); each pad byte repeats the blue byte of the row's last
/// pixel. Returns false when the file cannot be created or any write came up short (the file is
/// kept either way).
QEL_API bool QelWrite24BitImg2BmpFile(unsigned char* image, int width, int height, const char* fileName);
/// Writes a grey image as an 8-bit BMP file with a grey-ramp palette. The file-size field is
/// width x height + 1078 (padding not counted, intended); pad bytes repeat the row's last pixel.
/// Returns false when the file cannot be created or any write came up short.
QEL_API bool QelWrite8BitImg2BmpFile(unsigned char* image, int width, int height, const char* fileName);
/// As QelWrite8BitImg2BmpFile, but palette entries 252..255 are the marking colours yellow, blue,
/// green and red, so that marks drawn with those grey values show in colour.
QEL_API bool QelWrite8BitImg2BmpFileMarkColor(unsigned char* image, int width, int height,
                                              const char* fileName);
/// Copies the base name of a path into `name`: the part after the last backslash (a slash is not a
/// separator), cut at its first dot. `name` must hold at least as many bytes as the path.
QEL_API void QelGetFileNakeName(char* path, char* name);

/// Writes `value` into every pixel of rows 0 and height - 1 and columns 0 and width - 1 of a grey
/// image.
QEL_API void QelSetImageBoundary(unsigned char* image, int width, int height, int value);
/// Partial frame of an RGB image, intended as it is: the first `width` bytes (not width x 3) of
/// rows 0 and height - 1, and bytes 0 and width - 1 of every row (rows 3 x width bytes apart).
/// Callers must not rely on a complete RGB frame.
QEL_API void QelSetRGBImageBoundary(unsigned char* image, int width, int height, int value);
// (end of BMP files and frame setters)

// ==== List files and debug log ====
// One library-wide list-file reader. A list file is plain text whose lines end with CR LF; a last
// line without CR LF is never returned, nor are lines ending with LF alone. Not thread-safe.

/// Reads the whole list file into the library's list reader and rewinds its cursor.
/// Returns false when the file cannot be opened (the getters then see the previous text, if any).
QEL_API bool QelSequenceFiles_Initialize(char* listFileName);
/// Copies line `index` (from 0) of the list file, trailing spaces removed, into `buffer` after
/// zeroing its `bufferSize` bytes. Returns false when there is no such line or it does not fit with
/// its terminator. Does not move the cursor.
QEL_API bool QelSequenceFiles_GetFileName(int index, char* buffer, int bufferSize);
/// Copies the line at the cursor (trailing spaces removed) into `buffer` and moves the cursor to the
/// next line. Returns false at the end of the list (cursor unchanged), or when the line does not fit
/// with its terminator; that line is then skipped.
QEL_API bool QelSequenceFiles_GetNextFileName(char* buffer, int bufferSize);

/// Appends "\n<text>,<value>" to the debug log. The first call after the library is loaded empties
/// the file first. The log is d:\tmp\QelDebugInfo.txt on Windows, QelDebugInfo.txt in the
/// temporary directory elsewhere, or the path in the environment variable QEL_DEBUG_LOG. When the
/// file cannot be opened nothing is written. Not thread-safe.
QEL_API void QelDebugInfo(char* text, int value);
// (end of List files and debug log)

#endif  // QEL_IO_H
