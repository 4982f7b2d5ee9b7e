// One table of the library's exported functions: for each overload, how to build valid inputs and
// outputs for an image of a given size, call it, and collect what it produced. The golden digest
// test runs every entry on fixed generated images and compares a digest of the outputs with the
// committed list; a contract sweep can run the same entries on exact-size heap buffers, since every
// buffer a call sees is allocated here to the size its contract names and nothing larger.
#ifndef QEL_TESTS_GOLDEN_TABLE_H
#define QEL_TESTS_GOLDEN_TABLE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace golden {

// A small fixed generator (the standard distributions differ between standard libraries).
class Generator {
public:
    explicit Generator(uint64_t seed) : state_(seed * 2862933555777941757ULL + 3037000493ULL) {}
    uint32_t next() {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<uint32_t>(state_ >> 33);
    }
    int below(int n) { return n > 0 ? static_cast<int>(next() % static_cast<uint32_t>(n)) : 0; }

private:
    uint64_t state_;
};

// FNV-1a, 64 bits.
class Digest {
public:
    void add(const void* data, size_t bytes) {
        const auto* p = static_cast<const unsigned char*>(data);
        for (size_t i = 0; i < bytes; ++i) {
            hash_ ^= p[i];
            hash_ *= 1099511628211ULL;
        }
    }
    uint64_t value() const { return hash_; }

private:
    uint64_t hash_ = 14695981039346656037ULL;
};

// A rectangle x1..x2, y1..y2 (both ends included) and the sizes of its copies; an empty one
// (x2 < x1 or y2 < y1) has no pixels.
struct Rect {
    int x1, x2, y1, y2;
    size_t w() const { return size_t(std::max(0, x2 - x1 + 1)); }
    size_t h() const { return size_t(std::max(0, y2 - y1 + 1)); }
    size_t area() const { return w() * h(); }
    size_t quarter() const { return ((w() + 3) / 4) * ((h() + 3) / 4); }
};

// The buffers and returned values of one call. Every buffer is its own heap block of exactly the
// requested size; those marked as results are digested after the call, in the order they were made.
class Call {
public:
    Call(int width, int height, uint64_t seed) : w(width), h(height), seed_(seed), gen_(source(kOwn, 0)) {}

    // ---- the contract sweep: random contents and parameters drawn across their accepted ranges.
    // Without sweep() every parameter helper below returns its fixed value, so the golden digests
    // never see a parameter drawn.
    void sweep() { sweeping_ = true; }
    bool sweeping() const { return sweeping_; }
    // `fixed`, or in a sweep a value in lo..hi (either end one time in four).
    int pick(int fixed, int lo, int hi) {
        if (!sweeping_ || hi < lo) return fixed;
        const int r = params_.below(8);
        return r == 0 ? lo : r == 1 ? hi : lo + params_.below(hi - lo + 1);
    }
    double pick(double fixed, double lo, double hi) {
        return sweeping_ ? lo + (hi - lo) * params_.below(65) / 64.0 : fixed;
    }
    // A grey level or threshold: 0..255.
    int level(int fixed) { return pick(fixed, 0, 255); }
    // A column or row, also before the first and past the last one.
    int col(int fixed) { return pick(fixed, -3, w + 2); }
    int row(int fixed) { return pick(fixed, -3, h + 2); }
    // A window half-size or size from `lo` to larger than the image.
    int win(int fixed, int lo = 0) { return pick(fixed, lo, std::max(w, h) + 2); }
    // A count or length, zero and negative ones included.
    int count(int fixed, int hi) { return pick(fixed, -2, hi); }
    // A pixel position inside the image.
    int px(int fixed) { return pick(fixed, 0, w - 1); }
    int py(int fixed) { return pick(fixed, 0, h - 1); }
    // A non-empty rectangle inside the image, of any parity.
    Rect inside(Rect fixed) {
        if (!sweeping_) return fixed;
        const int x1 = params_.below(w), y1 = params_.below(h);
        return {x1, x1 + params_.below(w - x1), y1, y1 + params_.below(h - y1)};
    }
    // A rectangle at and across the borders, sometimes empty (x2 = x1 - 1 or y2 = y1 - 1).
    Rect across(Rect fixed) {
        if (!sweeping_) return fixed;
        const int x1 = col(0), y1 = row(0);
        return {x1, x1 - 1 + params_.below(w + 6 - x1), y1, y1 - 1 + params_.below(h + 6 - y1)};
    }
    // As across, for functions that take no height: the bottom row stays inside the image.
    Rect across_above(Rect fixed) {
        Rect r = across(fixed);
        if (sweeping_) r.y2 = std::min(r.y2, h - 1);
        return r;
    }

    const int w;
    const int h;
    int area() const { return w * h; }

    // ---- inputs (not digested unless marked with result())
    // The contents of an input depend only on the Call's seed, its kind and its variant, never on
    // the order of the calls making them: arguments are evaluated in an unspecified order (g++ and
    // clang++ differ), so two inputs of one kind in one argument list take different variants.
    // Grey: a diagonal ramp with noise and a brighter disc, so edges, peaks and runs exist.
    unsigned char* grey(int variant = 0) {
        Generator g = source(kGrey, variant);
        return fill_grey(block<unsigned char>(size_t(area()), false), g);
    }
    // Binary: 0/255 blocks of 4 x 4 pixels plus a filled rectangle.
    unsigned char* binary(int variant = 0) {
        Generator g = source(kBinary, variant);
        return fill_binary(block<unsigned char>(size_t(area()), false), g);
    }
    // Objects on a zero frame: a filled ellipse with a rectangular hole, and a small square.
    unsigned char* blobs() {
        unsigned char* p = block<unsigned char>(size_t(area()), false);
        const int cx = w / 2, cy = h / 2, rx = w / 3, ry = h / 3;
        for (int y = 1; y < h - 1; ++y)
            for (int x = 1; x < w - 1; ++x) {
                const int dx = x - cx, dy = y - cy;
                bool in = dx * dx * ry * ry + dy * dy * rx * rx <= rx * rx * ry * ry;
                if (x > cx - rx / 3 && x < cx + rx / 3 && y > cy - ry / 3 && y < cy + ry / 4) in = false;
                if (x >= 2 && x <= 4 && y >= 2 && y <= 4) in = true;
                p[y * w + x] = in ? 255 : 0;
            }
        return p;
    }
    // 24-bit B, G, R.
    unsigned char* bgr(int variant = 0) {
        Generator g = source(kBgr, variant);
        unsigned char* p = block<unsigned char>(size_t(area()) * 3, false);
        for (int i = 0; i < area() * 3; ++i) p[i] = static_cast<unsigned char>((i * 37 + g.below(64)) & 255);
        return p;
    }
    // Random bytes of any length (camera frames, masks, data).
    unsigned char* bytes(size_t n, int variant = 0) {
        Generator g = source(kBytes, variant);
        unsigned char* p = block<unsigned char>(n, false);
        for (size_t i = 0; i < n; ++i) p[i] = static_cast<unsigned char>(g.next() >> 7);
        return p;
    }
    // n values in lo..hi; doubles in lo..hi in steps of 1/8 (exact in binary).
    int* ints(size_t n, int lo, int hi, int variant = 0) {
        Generator g = source(kInts, variant);
        int* p = block<int>(n, false);
        for (size_t i = 0; i < n; ++i) p[i] = lo + g.below(hi - lo + 1);
        return p;
    }
    double* doubles(size_t n, int lo, int hi, int variant = 0) {
        Generator g = source(kDoubles, variant);
        double* p = block<double>(n, false);
        for (size_t i = 0; i < n; ++i) p[i] = lo + g.below((hi - lo) * 8 + 1) / 8.0;
        return p;
    }
    // The 256-bin histogram of a fresh grey image.
    int* histogram(int variant = 0) {
        int* hist = block<int>(256, false);
        const unsigned char* g = grey(variant);
        for (int i = 0; i < area(); ++i) ++hist[g[i]];
        return hist;
    }
    template <class T>
    T* input(size_t n) { return block<T>(n, false); }

    // ---- outputs: zero-filled, digested after the call
    template <class T = unsigned char>
    T* out(size_t n) { return block<T>(n, true); }
    unsigned char* out_image(int channels = 1) { return out<unsigned char>(size_t(area()) * size_t(channels)); }
    // In-place images: generated as the inputs above and digested after the call.
    unsigned char* inout_grey(int variant = 0) { return result(grey(variant), size_t(area())); }
    unsigned char* inout_binary(int variant = 0) { return result(binary(variant), size_t(area())); }
    unsigned char* inout_bgr(int variant = 0) { return result(bgr(variant), size_t(area()) * 3); }

    // Marks an existing block as a result (digested after the call).
    template <class T>
    T* result(T* p, size_t n) {
        for (auto& b : blocks_)
            if (b.data.get() == reinterpret_cast<unsigned char*>(p)) {
                b.bytes = n * sizeof(T);
                b.digested = true;
            }
        return p;
    }

    // A buffer the library allocated with new[] for the caller: digested, then released with delete[].
    void adopt(unsigned char* p, size_t n) {
        if (p) blocks_.push_back({std::unique_ptr<unsigned char[]>(p), n, true});
    }

    // ---- returned values
    void value(long long v) { values_.add(&v, sizeof v); }
    void value(double v) { values_.add(&v, sizeof v); }
    void value(bool v) { value(static_cast<long long>(v)); }
    void value(int v) { value(static_cast<long long>(v)); }
    void value(unsigned int v) { value(static_cast<long long>(v)); }

    // Digest of the result blocks' digests, in ascending order (blocks made in one argument list
    // come in an unspecified order), then of the returned values in the order they were recorded.
    uint64_t digest() const {
        std::vector<uint64_t> each;
        for (const auto& b : blocks_)
            if (b.digested) {
                Digest block;
                block.add(b.data.get(), b.bytes);
                each.push_back(block.value());
            }
        std::sort(each.begin(), each.end());
        Digest d;
        for (uint64_t v : each) d.add(&v, sizeof v);
        const uint64_t v = values_.value();
        d.add(&v, sizeof v);
        return d.value();
    }

    // A generator for the entry's own use, in statement order.
    Generator& gen() { return gen_; }

private:
    struct Block {
        std::unique_ptr<unsigned char[]> data;
        size_t bytes;
        bool digested;
    };

    template <class T>
    T* block(size_t n, bool digested) {
        const size_t bytes = n * sizeof(T);
        // new[] of exactly the requested bytes: a read or write past it is a heap overflow.
        std::unique_ptr<unsigned char[]> data(new unsigned char[bytes == 0 ? 1 : bytes]());
        T* p = reinterpret_cast<T*>(data.get());
        blocks_.push_back({std::move(data), bytes, digested});
        return p;
    }

    enum Kind { kGrey = 1, kBinary, kBgr, kBytes, kInts, kDoubles, kOwn };
    Generator source(Kind kind, int variant) const {
        return Generator(seed_ ^ (uint64_t(kind) << 40) ^ (uint64_t(unsigned(variant)) << 20));
    }

    unsigned char* fill_grey(unsigned char* p, Generator& g) {
        const int width = w, height = h;
        if (sweeping_ && g.below(2)) {  // half the sweep's images are noise
            for (int i = 0; i < area(); ++i) p[i] = static_cast<unsigned char>(g.next() >> 5);
            return p;
        }
        const int cx = width / 2, cy = height / 2, r2 = (width * width + height * height) / 16;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                int v = (x * 160) / (width > 1 ? width : 1) + (y * 60) / (height > 1 ? height : 1) + g.below(24);
                if ((x - cx) * (x - cx) + (y - cy) * (y - cy) < r2) v += 30;
                p[y * width + x] = static_cast<unsigned char>(v > 255 ? 255 : v);
            }
        return p;
    }
    unsigned char* fill_binary(unsigned char* p, Generator& g) {
        const int width = w, height = h;
        if (sweeping_ && g.below(2)) {
            for (int i = 0; i < area(); ++i) p[i] = g.below(2) ? 255 : 0;
            return p;
        }
        const int bw = (width + 3) / 4;
        std::vector<unsigned char> cells(size_t(bw) * size_t((height + 3) / 4));
        for (auto& c : cells) c = g.below(5) < 2 ? 255 : 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                bool inRect = x >= width / 4 && x <= width / 2 && y >= height / 3 && y <= (2 * height) / 3;
                p[y * width + x] = inRect ? 255 : cells[size_t(y / 4) * size_t(bw) + size_t(x / 4)];
            }
        return p;
    }

    uint64_t seed_;
    Generator gen_;
    bool sweeping_ = false;
    Generator params_{seed_ ^ (uint64_t(kOwn + 1) << 40)};
    std::vector<Block> blocks_;
    Digest values_;
};

// One exported function (one overload): `name` is the function's name, with "/form" after it for
// an overload other than the first declared. `run` makes its buffers through the Call for the
// Call's size, calls it with fixed parameters inside its contract, and records returned values.
// The sizes a function accepts: at least min_w x min_h, sides multiples of step_w and step_h.
struct Shape {
    int min_w = 1, min_h = 1, step_w = 1, step_h = 1;
};
inline constexpr Shape kAnySize{};
inline constexpr Shape kEvenSize{2, 2, 2, 2};    // 4:2:0 frames
inline constexpr Shape kEvenWidth{2, 1, 2, 1};   // 4:2:2 frames
inline constexpr Shape kFramedObject{9, 5, 1, 1};  // Call::blobs has an object inside a zero frame

struct Entry {
    const char* name;
    void (*run)(Call&);
    Shape shape = kAnySize;  // the sizes the contract sweep runs it at
};

// The function's name without the "/form" suffix.
inline std::string base_name(const char* name) {
    const char* slash = std::strchr(name, '/');
    return slash ? std::string(name, slash) : std::string(name);
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_TABLE_H
