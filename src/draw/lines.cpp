// The two line drawers every other drawing builds on.
#include "qel/draw.h"

#include "draw/raster.h"

void QelGryLine(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int grey) {
    qel::draw::draw_line(qel::draw::GreyPen(img, width, grey), width, height, x1, y1, x2, y2);
}

void QelRGBLine(unsigned char* img, int width, int height, int x1, int y1, int x2, int y2, int R, int G, int B) {
    qel::draw::draw_line(qel::draw::BgrPen(img, width, R, G, B), width, height, x1, y1, x2, y2);
}
