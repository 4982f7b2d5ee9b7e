// Images for the tracing, filling and selection tests: hand-drawn shapes, random blob images, the
// contour list as plain values, and the plain references the results are held against (connected
// components and the pixels a boundary encloses, by flood fill).
#ifndef QEL_TESTS_CONTOUR_CONTOUR_IMAGES_H
#define QEL_TESTS_CONTOUR_CONTOUR_IMAGES_H

#include <qel.h>

#include "support/test_images.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace contour_test {

using qel_test::Bytes;
using Chain = std::vector<unsigned char>;

struct Image {
    int w, h;
    Bytes px;
    Image(int width, int height, unsigned char fill = 0)
        : w(width), h(height), px(static_cast<size_t>(width) * height, fill) {}
    unsigned char& at(int x, int y) { return px[static_cast<size_t>(y) * w + x]; }
    unsigned char at(int x, int y) const { return px[static_cast<size_t>(y) * w + x]; }
    unsigned char* data() { return px.data(); }
    size_t size() const { return px.size(); }
    Image& box(int x0, int x1, int y0, int y1, unsigned char v = 255) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) at(x, y) = v;
        return *this;
    }
    // Rows of text: '#' is 255, '.' is 0.
    static Image from(std::initializer_list<const char*> rows) {
        Image img(static_cast<int>(std::char_traits<char>::length(*rows.begin())), static_cast<int>(rows.size()));
        int y = 0;
        for (const char* r : rows) {
            for (int x = 0; x < img.w; ++x) img.at(x, y) = r[x] == '#' ? 255 : 0;
            ++y;
        }
        return img;
    }
};

// Random discs, rings and rectangles (rings and framed rectangles have holes, some with an
// object inside), some touching the image edge, and a sprinkle of single pixels.
inline Image random_blobs(int w, int h, unsigned seed, int shapes = 12) {
    std::mt19937 rng(seed);
    Image img(w, h);
    auto pick = [&rng](int lo, int hi) { return lo + static_cast<int>(rng() % static_cast<unsigned>(hi - lo + 1)); };
    for (int s = 0; s < shapes; ++s) {
        const int cx = pick(-3, w + 2), cy = pick(-3, h + 2), r = pick(1, 9), inner = pick(0, r - 1);
        const int kind = pick(0, 2);
        for (int y = cy - r; y <= cy + r; ++y)
            for (int x = cx - r; x <= cx + r; ++x) {
                if (x < 0 || y < 0 || x >= w || y >= h) continue;
                const int d2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
                const bool ring = d2 <= r * r && d2 > inner * inner;
                const bool frame = std::max(std::abs(x - cx), std::abs(y - cy)) > inner;
                if (kind == 0 ? d2 <= r * r : kind == 1 ? ring : frame) img.at(x, y) = 255;
                if (kind != 0 && x == cx && y == cy && inner >= 2) img.at(x, y) = 255;  // an island in the hole
            }
    }
    for (int k = 0; k < w * h / 60; ++k) img.at(pick(0, w - 1), pick(0, h - 1)) = 255;
    return img;
}

// Pure noise: every pixel 255 with chance percent / 100. Shapes of every kind, pinches included.
inline Image random_noise(int w, int h, int percent, unsigned seed) {
    Image img(w, h);
    std::mt19937 rng(seed);
    for (auto& p : img.px) p = static_cast<int>(rng() % 100) < percent ? 255 : 0;
    return img;
}

// ---- the contour list as values ----------------------------------------------------------------

struct Contour {
    bool outer;
    int area, perimeter, x, y;
    Chain chain;
};

inline std::vector<Contour> to_values(const QEL_CONTOUR_STRUCT* c) {
    std::vector<Contour> v;
    for (; c != nullptr; c = c->next)
        v.push_back({c->isOuter, c->area, c->perimeter, c->x, c->y, Chain(c->chain, c->chain + c->chainLen)});
    return v;
}

// QelGetContours on the image (which it changes), as values; the list is freed.
inline std::vector<Contour> get_contours(Image& img, int minLength = 0, int minArea = 0, int mode = 0) {
    Bytes work(img.size());
    QEL_CONTOUR_STRUCT* list = QelGetContours(img.data(), work.data(), img.w, img.h, minLength, minArea, mode);
    std::vector<Contour> v = to_values(list);
    QelFreeContours(list);
    return v;
}

// ---- references --------------------------------------------------------------------------------

using Mask = std::vector<char>;

// The pixels connected to `seeds` through pixels where `pass` is set (4- or 8-connectivity).
inline Mask flood(const Mask& pass, int w, int h, const std::vector<std::pair<int, int>>& seeds, int connectivity) {
    Mask reached(pass.size(), 0);
    std::vector<std::pair<int, int>> stack;
    auto push = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= w || y >= h) return;
        const size_t i = static_cast<size_t>(y) * w + x;
        if (!pass[i] || reached[i]) return;
        reached[i] = 1;
        stack.emplace_back(x, y);
    };
    for (const auto& [x, y] : seeds) push(x, y);
    while (!stack.empty()) {
        const auto [x, y] = stack.back();
        stack.pop_back();
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if ((dx || dy) && (connectivity == 8 || dx == 0 || dy == 0)) push(x + dx, y + dy);
    }
    return reached;
}

// The region a boundary encloses: the set itself and every pixel it cuts off from the image frame,
// paths through the other pixels having the connectivity that does not cross it (4 for an 8-
// connected object, 8 around a 4-connected background region).
inline Mask enclosed_by(const Mask& set, int w, int h, int outsideConnectivity) {
    Mask other(set.size());
    for (size_t i = 0; i < set.size(); ++i) other[i] = !set[i];
    std::vector<std::pair<int, int>> frame;
    for (int x = 0; x < w; ++x) frame.insert(frame.end(), {{x, 0}, {x, h - 1}});
    for (int y = 0; y < h; ++y) frame.insert(frame.end(), {{0, y}, {w - 1, y}});
    Mask outside = flood(other, w, h, frame, outsideConnectivity);
    Mask in(set.size());
    for (size_t i = 0; i < set.size(); ++i) in[i] = !outside[i];
    return in;
}

inline Mask where(const Image& img, bool object) {
    Mask m(img.size());
    for (size_t i = 0; i < m.size(); ++i) m[i] = (img.px[i] != 0) == object;
    return m;
}

}  // namespace contour_test

#endif
