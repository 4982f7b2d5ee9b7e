// Turning a chain back into points, and marking the pixels it passes in an image.
#include "qel/contour.h"

#include "contour/chain_paint.h"
#include "contour/chain_walk.h"
#include "contour/trace.h"

void QelChain2Points(int x0, int y0, unsigned char* chain, int n, int* xs, int* ys) {
    if (n <= 0) return;
    int i = 0;
    // The last code returns to the start and is not applied: n codes give n points.
    qel::walk_chain(x0, y0, chain, n - 1, [&](int x, int y) {
        xs[i] = x;
        ys[i] = y;
        ++i;
    });
}

void QelChain2Points(int x0, int y0, unsigned char* chain, int n, int* xs, int* ys, int* maxX, int* maxY) {
    QelChain2Points(x0, y0, chain, n, xs, ys);
    int mx = x0;
    int my = y0;
    for (int i = 0; i < n; ++i) {
        if (xs[i] > mx) mx = xs[i];
        if (ys[i] > my) my = ys[i];
    }
    *maxX = mx;
    *maxY = my;
}

void QelMarkChainByColor(unsigned char* image, int width, int x, int y, unsigned char* chain, int n, int colour) {
    qel::paint_chain(image, width, x, y, chain, n, colour, qel::AnywhereInImage{});
}

void QelMarkChainByColor(unsigned char* image, int width, int x, int y, unsigned char* chain, int n, int colour,
                         int /*unused*/) {
    const unsigned char c = static_cast<unsigned char>(colour);
    // Dashes: the steps of each group of five are marked or not in turn.
    qel::mark_chain_pixels(image, width, x, y, chain, n, qel::AnywhereInImage{}, [c](unsigned char& pixel, int i) {
        if (i < 0 || (i / 5) % 2 == 0) pixel = c;
    });
}

void QelMarkChainByInc(unsigned char* image, int width, int x, int y, unsigned char* chain, int n) {
    qel::mark_chain_pixels(image, width, x, y, chain, n, qel::AnywhereInImage{}, [](unsigned char& pixel, int i) {
        // The start pixel is counted unconditionally and may wrap to 0; later pixels stop at 255.
        if (i < 0 || pixel < 255) ++pixel;
    });
}
