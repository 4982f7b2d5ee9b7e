// Qel — colour and camera formats.
#ifndef QEL_COLOR_H
#define QEL_COLOR_H

#include "qel/base.h"

// ==== Whole-frame conversions ====
// Every function takes (source, width, height, destination); the destination is the caller's and
// must be large enough. Camera frames have no row padding, top row first, chroma stored offset by
// 128: CbYCrY is packed (Cb, Y0, Cr, Y1 per horizontal pair, width x height x 2 bytes); YUV420P is
// the Y plane, then the U plane and the V plane of (width / 2) x (height / 2) bytes each; YUV420SP
// is the Y plane, then (width / 2) x (height / 2) interleaved U, V pairs; YUV422P is the Y plane,
// then the U plane and the V plane of (width / 2) x height bytes each. Fixed-point formulas:
// grey = (B*468 + G*2404 + R*1225) >> 12, Y = (R*4898 + G*9617 + B*1867) >> 14 (white gives 254),
// U = ((B*8192 - R*2763 - G*5428) >> 14) + 128, V = ((R*8192 - G*6859 - B*1332) >> 14) + 128,
// B = (Y*16384 + (U-128)*29032) >> 14, G = (Y*16384 - (U-128)*5638 - (V-128)*11700) >> 14,
// R = (Y*16384 + (V-128)*22970) >> 14, the last three clamped to 0..255. Chroma of a block is the
// mean, by right shift, of its pixels' offset U and V. A function returning false has written
// nothing.

/// Grey image of an RGB image: (B*468 + G*2404 + R*1225) >> 12 (white stays 255).
QEL_API void QelRGB2Gry(unsigned char* rgb, int width, int height, unsigned char* grey);
/// Inverted grey image of an RGB image: 255 - the grey of QelRGB2Gry.
QEL_API void QelRGB2GryInvert(unsigned char* rgb, int width, int height, unsigned char* grey);
/// Colourfulness image: max(B, G, R) - min(B, G, R) of each pixel.
QEL_API void QelRGBsDif2Gry(unsigned char* rgb, int width, int height, unsigned char* grey);
/// grey = byte number `channel` of each pixel (0 blue, 1 green, 2 red).
QEL_API void QelSelectRGB2Gry(unsigned char* rgb, int width, int height, int channel, unsigned char* grey);
/// Y bytes of a CbYCrY frame (bytes 1, 3, 5, ...) in order.
QEL_API void QelCbYCrY2Gry(unsigned char* frame, int width, int height, unsigned char* grey);
/// Y plane (the first width x height bytes) of a YUV 4:2:0 planar frame.
QEL_API void QelYUV420P2Gry(unsigned char* frame, int width, int height, unsigned char* grey);
/// Y plane (the first width x height bytes) of a YUV 4:2:0 semi-planar frame.
QEL_API void QelYUV420SP2Gry(unsigned char* frame, int width, int height, unsigned char* grey);
/// Y plane (the first width x height bytes) of a YUV 4:2:2 planar frame.
QEL_API void QelYUV422P2Gry(unsigned char* frame, int width, int height, unsigned char* grey);

/// CbYCrY frame to B, G, R (width x height x 3 bytes). Returns false when width is odd.
QEL_API bool QelCbYCrY2RGB(unsigned char* frame, int width, int height, unsigned char* rgb);
/// YUV 4:2:0 planar frame to B, G, R. Returns false when width or height is odd.
QEL_API bool QelYUV420P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb);
/// YUV 4:2:0 semi-planar frame to B, G, R. Returns false when width or height is odd.
QEL_API bool QelYUV420SP2RGB(unsigned char* frame, int width, int height, unsigned char* rgb);
/// YUV 4:2:2 planar frame to B, G, R. Returns false when width is odd; an odd height is converted
/// (unlike QelRGB2YUV422P, intended).
QEL_API bool QelYUV422P2RGB(unsigned char* frame, int width, int height, unsigned char* rgb);
/// RGB image to a CbYCrY frame (width x height x 2 bytes). Returns false when width is odd.
QEL_API bool QelRGB2CbYCrY(unsigned char* rgb, int width, int height, unsigned char* frame);
/// RGB image to a YUV 4:2:0 planar frame (width x height x 3 / 2 bytes). Returns false when width
/// or height is odd.
QEL_API bool QelRGB2YUV420P(unsigned char* rgb, int width, int height, unsigned char* frame);
/// RGB image to a YUV 4:2:0 semi-planar frame (width x height x 3 / 2 bytes). Returns false when
/// width or height is odd.
QEL_API bool QelRGB2YUV420SP(unsigned char* rgb, int width, int height, unsigned char* frame);
/// RGB image to a YUV 4:2:2 planar frame (width x height x 2 bytes). Returns false when width or
/// height is odd: stricter than QelYUV422P2RGB, intended.
QEL_API bool QelRGB2YUV422P(unsigned char* rgb, int width, int height, unsigned char* frame);
// (end of Whole-frame conversions)

// ==== Rectangle copies and reduced copies of camera frames ====
// Every function takes the frame, its width and height, then the rectangle as x1, x2, y1, y2
// (columns x1..x2 and rows y1..y2, both ends included), then its output buffer(s). Outputs are
// packed row by row, (x2 - x1 + 1) pixels per row, with no gap. "Rect width" and "rect height"
// below are x2 - x1 + 1 and y2 - y1 + 1. The rectangle must lie inside the frame. Colour results
// use the library's fixed-point YUV formulas with each component clamped to 0..255; a red image
// holds only R = (Y*16384 + (V-128)*22970) >> 14 per pixel. A function returning false has
// written nothing.

/// Y samples of the rectangle of a YUV 4:2:0 planar frame (rect width x rect height bytes).
QEL_API void QelCopyYUV420PRect2Gry(unsigned char* frame, int width, int height,
                                    int x1, int x2, int y1, int y2, unsigned char* grey);
/// Rectangle of a YUV 4:2:0 planar frame as BGR (rect width x rect height x 3 bytes); each 2 x 2
/// block shares its chroma. Returns false when x1, rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420PRect2RGB(unsigned char* frame, int width, int height,
                                    int x1, int x2, int y1, int y2, unsigned char* rgb);
/// Red image of the rectangle of a YUV 4:2:0 planar frame (one byte per pixel).
/// Returns false when x1, rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420PRect2RedImg(unsigned char* frame, int width, int height,
                                       int x1, int x2, int y1, int y2, unsigned char* red);
/// Half-resolution red image ((rect width / 2) x (rect height / 2) bytes): per 2 x 2 block, the red
/// of its top-left Y with the block's V. Returns false when x1, rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420PRect2RedImgShrink2(unsigned char* frame, int width, int height,
                                              int x1, int x2, int y1, int y2, unsigned char* red);
/// Quarter BGR image: pixels (x1 + 4i, y1 + 4j) up to (x2, y2), each with its block's chroma;
/// ceil(rect width / 4) x ceil(rect height / 4) x 3 bytes. Returns false when width, height, x1,
/// rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420PScale4Rect(unsigned char* frame, int width, int height,
                                      int x1, int x2, int y1, int y2, unsigned char* rgb);
/// The rectangle as BGR (as QelCopyYUV420PRect2RGB) and as grey (its Y samples). Returns false when
/// width, height, x1, rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420PRect(unsigned char* frame, int width, int height,
                                int x1, int x2, int y1, int y2, unsigned char* rgb, unsigned char* grey);

/// Y samples of the rectangle of a YUV 4:2:0 semi-planar frame.
QEL_API void QelCopyYUV420SPRect2Gry(unsigned char* frame, int width, int height,
                                     int x1, int x2, int y1, int y2, unsigned char* grey);
/// As QelCopyYUV420PRect2RGB, chroma from the interleaved U, V pairs.
QEL_API bool QelCopyYUV420SPRect2RGB(unsigned char* frame, int width, int height,
                                     int x1, int x2, int y1, int y2, unsigned char* rgb);
/// As QelCopyYUV420PRect2RedImg, chroma from the interleaved U, V pairs.
QEL_API bool QelCopyYUV420SPRect2RedImg(unsigned char* frame, int width, int height,
                                        int x1, int x2, int y1, int y2, unsigned char* red);
/// As QelCopyYUV420PRect2RedImgShrink2, chroma from the interleaved U, V pairs.
QEL_API bool QelCopyYUV420SPRect2RedImgShrink2(unsigned char* frame, int width, int height,
                                               int x1, int x2, int y1, int y2, unsigned char* red);
/// As QelCopyYUV420PScale4Rect, chroma from the interleaved U, V pairs.
QEL_API bool QelCopyYUV420SPScale4Rect(unsigned char* frame, int width, int height,
                                       int x1, int x2, int y1, int y2, unsigned char* rgb);
/// As the two-output QelCopyYUV420PRect, chroma from the interleaved U, V pairs.
QEL_API bool QelCopyYUV420SPRect(unsigned char* frame, int width, int height,
                                 int x1, int x2, int y1, int y2, unsigned char* rgb, unsigned char* grey);
/// YUV 4:2:0 semi-planar sub-frame of the rectangle: its Y rows, then for y = y1, y1 + 2, ... the
/// rect width bytes of interleaved chroma row y / 2 starting at byte x1 (rect width x rect height
/// x 3 / 2 bytes). Returns false when x1, rect width, y1 or rect height is odd.
QEL_API bool QelCopyYUV420SPRect(unsigned char* frame, int width, int height,
                                 int x1, int x2, int y1, int y2, unsigned char* subFrame);

/// Y samples of the rectangle of a YUV 4:2:2 planar frame.
QEL_API void QelCopyYUV422PRect2Gry(unsigned char* frame, int width, int height,
                                    int x1, int x2, int y1, int y2, unsigned char* grey);
/// Rectangle of a YUV 4:2:2 planar frame as BGR; every row has its own chroma. Returns false when
/// width, x1 or rect width is odd (rows are not checked).
QEL_API bool QelCopyYUV422PRect2RGB(unsigned char* frame, int width, int height,
                                    int x1, int x2, int y1, int y2, unsigned char* rgb);
/// Red image of the rectangle of a YUV 4:2:2 planar frame. Returns false when width, x1 or rect
/// width is odd.
QEL_API bool QelCopyYUV422PRect2RedImg(unsigned char* frame, int width, int height,
                                       int x1, int x2, int y1, int y2, unsigned char* red);
/// Half-resolution red image: rows y1, y1 + 2, ..., pixels x1, x1 + 2, ..., each with its own
/// row's V; (rect width / 2) x (rect height / 2) bytes. Returns false when width, x1 or rect width
/// is odd.
QEL_API bool QelCopyYUV422PRect2RedImgShrink2(unsigned char* frame, int width, int height,
                                              int x1, int x2, int y1, int y2, unsigned char* red);
/// The rectangle as BGR and as grey. Returns false when width, height, x1 or rect width is odd.
QEL_API bool QelCopyYUV422PRect(unsigned char* frame, int width, int height,
                                int x1, int x2, int y1, int y2, unsigned char* rgb, unsigned char* grey);
/// Quarter BGR image with per-row chroma: pixels (x1 + 4i, y1 + 4j). Returns false when width or x1
/// is odd, or rect width or rect height is not a multiple of 4.
QEL_API bool QelCopyYUV422PScale4Rect(unsigned char* frame, int width, int height,
                                      int x1, int x2, int y1, int y2, unsigned char* rgb);

/// Raw copy of the rectangle of a CbYCrY frame, 2 bytes per pixel (a CbYCrY sub-frame when x1 and
/// rect width are even).
QEL_API void QelCopyCbYCrYRect(unsigned char* frame, int width, int height,
                               int x1, int x2, int y1, int y2, unsigned char* subFrame);
/// Y bytes of the rectangle of a CbYCrY frame.
QEL_API void QelCopyCbYCrYRect2Gry(unsigned char* frame, int width, int height,
                                   int x1, int x2, int y1, int y2, unsigned char* grey);
/// Rectangle of a CbYCrY frame as BGR. Returns false when x1 or rect width is odd (rows are not
/// checked).
QEL_API bool QelCopyCbYCrYRect2RGB(unsigned char* frame, int width, int height,
                                   int x1, int x2, int y1, int y2, unsigned char* rgb);
/// Rectangle of a CbYCrY frame as BGR and as grey. Returns false when x1 or rect width is odd.
QEL_API bool QelCopyCbYCrYRect(unsigned char* frame, int width, int height,
                               int x1, int x2, int y1, int y2, unsigned char* rgb, unsigned char* grey);
/// Red image of the rectangle of a CbYCrY frame, each pixel from its Y and its pair's Cr.
/// Nothing is refused: a pixel always takes the Cr of the pair it belongs to in the frame.
QEL_API void QelCopyCbYCrYRect2RedImg(unsigned char* frame, int width, int height,
                                      int x1, int x2, int y1, int y2, unsigned char* red);
/// Half-resolution red image of a CbYCrY rectangle: rows y1, y1 + 2, ..., one output per pixel
/// pair (x1 + 2i, from that pixel's Y and its Cr); (rect width / 2) x (rect height / 2) bytes.
QEL_API void QelCopyCbYCrYRect2RedImgShrink2(unsigned char* frame, int width, int height,
                                             int x1, int x2, int y1, int y2, unsigned char* red);
/// Quarter BGR image of a CbYCrY rectangle: rows y1, y1 + 4, ..., pixels x1, x1 + 4, ..., each from
/// the Y0 of its pair and the pair's Cb and Cr. Returns false when x1 or rect width is odd.
QEL_API bool QelCopyCbYCrYScale4Rect(unsigned char* frame, int width, int height,
                                     int x1, int x2, int y1, int y2, unsigned char* rgb);

/// Copy of a rectangle of a grey image.
QEL_API void QelCopyGryRect(unsigned char* image, int width, int height,
                            int x1, int x2, int y1, int y2, unsigned char* out);
/// Copy of a rectangle of an RGB image.
QEL_API void QelCopyRGBRect(unsigned char* image, int width, int height,
                            int x1, int x2, int y1, int y2, unsigned char* out);
/// Copy of a rectangle of an RGB image plus its grey image, grey = (byte0*306 + byte1*601 +
/// byte2*116) >> 10: the weight 306 falls on byte 0 (blue), unlike QelRGB2Gry; this is intended.
QEL_API void QelCopyRGBRect(unsigned char* image, int width, int height,
                            int x1, int x2, int y1, int y2, unsigned char* rgb, unsigned char* grey);
/// Grey image of a rectangle of an RGB image with the weights of the two-output QelCopyRGBRect
/// (306 on byte 0, 601 on byte 1, 116 on byte 2, >> 10).
QEL_API void QelCopyRGBRect2Gry(unsigned char* image, int width, int height,
                                int x1, int x2, int y1, int y2, unsigned char* grey);
/// Three planes of a rectangle of an RGB image: the first gets byte 2 (red), the second byte 1
/// (green), the third byte 0 (blue).
QEL_API void QelCopyRGBRect2Gry(unsigned char* image, int width, int height,
                                int x1, int x2, int y1, int y2,
                                unsigned char* red, unsigned char* green, unsigned char* blue);
/// Every fourth pixel of every fourth row of a rectangle of an RGB image, starting at (x1, y1):
/// ceil(rect width / 4) x ceil(rect height / 4) x 3 bytes.
QEL_API void QelCopyRGBScale4Rect(unsigned char* image, int width, int height,
                                  int x1, int x2, int y1, int y2, unsigned char* out);
/// One channel byte per pixel of a rectangle of an RGB image (channel 0 blue, 1 green, 2 red).
QEL_API void QelSelectRGBRect2Gry(unsigned char* image, int width, int height,
                                  int x1, int x2, int y1, int y2, int channel, unsigned char* out);
/// Grey copy of a rectangle of an RGB image (as the one-output QelCopyRGBRect2Gry) and a binary
/// image of it by colour: pixels split at the mean grey into a dark class (grey <= mean) and a bright
/// class; the object colour is the bright class's mean colour when objectIsBright, else the dark
/// one's; a pixel becomes 255 when strictly closer (squared distance) to the object colour than to
/// the background colour, else 0. *outWidth and *outHeight receive the rect size (0 x 0, and nothing
/// written, for an empty rectangle).
QEL_API void QelCopyRGB2GryBinImg(unsigned char* image, int width, int height,
                                  int x1, int x2, int y1, int y2, bool objectIsBright,
                                  unsigned char* grey, unsigned char* binary,
                                  int* outWidth, int* outHeight);
// (end of Rectangle copies and reduced copies of camera frames)

// ==== Channels and interlaced fields ====
/// grey = max(B, G, R) of each pixel of an RGB image.
QEL_API void QelExtractMaxRGB2GryImg(unsigned char* rgb, int width, int height, unsigned char* grey);
/// grey = byte number `channel` (0 blue, 1 green, 2 red) of each pixel of an RGB image.
QEL_API void QelExtractOneChannelFromRGB(unsigned char* rgb, int width, int height, int channel,
                                         unsigned char* grey);
/// Sets byte number `channel` of each RGB pixel to the grey image's value; other bytes untouched.
QEL_API void QelReplaceOneChannelInRGB(unsigned char* rgb, int width, int height, int channel,
                                       unsigned char* grey);
/// ORs the grey image bitwise into byte number `channel` of each RGB pixel; other bytes untouched.
QEL_API void QelOROneChannelInRGB(unsigned char* rgb, int width, int height, int channel,
                                  unsigned char* grey);
/// Interleaves three grey planes into a B, G, R image. Note the parameter order: red plane first.
QEL_API void QelGry2RGBImg(unsigned char* red, unsigned char* green, unsigned char* blue,
                           int width, int height, unsigned char* rgb);

/// Copies the rows of one parity (odd: rows 1, 3, ...; else rows 0, 2, ...) of a grey frame, or of
/// an RGB frame when `rgb`, into consecutive rows of `field`. *fieldHeight = height / 2, plus one
/// for the even field of an odd height.
QEL_API void QelExtractOneField(unsigned char* frame, int width, int height, bool rgb, bool odd,
                                unsigned char* field, int* fieldHeight);
/// out = the even rows of the frame in order, followed directly by its odd rows.
QEL_API void QelSplitOddEvenField(unsigned char* frame, int width, int height, bool rgb,
                                  unsigned char* out);
/// Interleaves two fields into a frame of rowsA + rowsB rows (*frameHeight): row b of field B to
/// frame row 2b, row a of field A to frame row 2a + 1 shifted sideways by `shift` pixels
/// (shift >= 1: to the right, the row's first shift pixels left unwritten; shift <= 0: the A row from
/// pixel -shift onwards written at the row start, its last -shift pixels left unwritten).
/// Intended quirk: for RGB with shift <= 0 each A row lands `width` bytes (not width x 3) after the
/// start of frame row 2a, partly over field B's row. Unwritten pixels keep the buffer's contents;
/// bytes that would fall outside the rowsA + rowsB rows are not written.
QEL_API void QelMergeOddEvenField(unsigned char* fieldA, unsigned char* fieldB, int rowsA, int rowsB,
                                  int width, bool rgb, int shift, unsigned char* frame,
                                  int* frameHeight);
// (end of Channels and interlaced fields)

#endif  // QEL_COLOR_H
