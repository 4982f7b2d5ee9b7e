// Deliberate degradation of grey images: Gaussian, uniform, salt-and-pepper, Poisson and
// Rayleigh-like noise, drawn from the library's own 15-bit pseudo-random generator.
#include "histogram/statistics.h"

#include "qel/histogram.h"
#include "core/exact_math.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <mutex>

namespace {

using qel::kGreyLevels;
constexpr int kMaxLevel = 255;
constexpr double kRandMax = 32767.0;       // every draw lies in 0..32767
constexpr int kSeedBlockSpread = 2048;     // the seeding block holds 1..2048 bytes
constexpr double kPoissonZero = 1e-10;
constexpr int kPoissonNormalAbove = 100;   // above this mean Poisson noise is taken as normal

enum NoiseType : unsigned int { kGaussian = 0, kUniform = 1, kSaltAndPepper = 2, kPoisson = 3, kRayleigh = 4 };

// The classic 15-bit linear congruential generator, so that draws span 0..32767 on every
// platform whatever the C library's own rand() range is.
class Random15 {
public:
    void seed(uint32_t s) { state_ = s; }
    int next() {
        state_ = state_ * 214013u + 2531011u;
        return static_cast<int>((state_ >> 16) & 0x7FFFu);
    }

private:
    uint32_t state_ = 1;
};

// The one generator of the library. Calls from several threads are serialised by the lock, so each
// call takes an unbroken run of draws (and the seeding happens once); which thread gets which run
// depends on the order they arrive in.
std::mutex g_randomLock;
Random15 g_random;
bool g_needsSeeding = true;  // library-wide: the first call of each load seeds the generator

// A decimal seed in QEL_NOISE_SEED, for runs that must repeat their noise; false when unset or
// not a plain unsigned number.
bool seed_from_environment(uint32_t* seed) {
    const char* text = std::getenv("QEL_NOISE_SEED");
    if (text == nullptr || *text < '0' || *text > '9') return false;
    char* end = nullptr;
    const unsigned long long value = std::strtoull(text, &end, 10);
    if (*end != '\0' || value > 0xFFFFFFFFull) return false;
    *seed = static_cast<uint32_t>(value);
    return true;
}

// Seeds from the clock (whole seconds), then mixes in the address of a block of random size so
// that two processes started in the same second still differ. A seed given in the environment
// replaces both.
void seed_once() {
    if (!g_needsSeeding) return;
    g_needsSeeding = false;
    uint32_t chosen = 0;
    if (seed_from_environment(&chosen)) {
        g_random.seed(chosen);
        return;
    }
    g_random.seed(static_cast<uint32_t>(std::time(nullptr)));
    const size_t blockSize = static_cast<size_t>(g_random.next() % kSeedBlockSpread) + 1;
    std::unique_ptr<unsigned char[]> block(new unsigned char[blockSize]);
    const uint32_t address = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(block.get()));
    g_random.seed(static_cast<uint32_t>(g_random.next()) + address);
}

// rand() / 32767: a draw in 0..1.
double unit() { return g_random.next() / kRandMax; }

// Uniform draw in −1..1.
double uniform() { return 1.0 - g_random.next() * 2.0 / kRandMax; }

// Standard normal draw by the polar method; the second coordinate carries the result.
double normal() {
    double a = 0.0;
    double b = 0.0;
    double s = 0.0;
    do {
        a = g_random.next() * 2.0 / kRandMax - 1.0;
        b = g_random.next() * 2.0 / kRandMax - 1.0;
        s = a * a + b * b;
    } while (!(s > 0.0 && s < 1.0));
    return b * std::sqrt(-2.0 * qel::exact_log(s) / s);
}

// Clamps to the image's own range lo..hi, then truncates.
unsigned char clamp_to_range(double v, int lo, int hi) {
    if (v < lo) v = lo;
    if (v > hi) v = hi;
    return static_cast<unsigned char>(static_cast<int>(v));
}

// Poisson draw around the pixel value; the result is stored as its low byte, unclamped.
unsigned char poisson(int p) {
    if (p <= kPoissonZero) return 0;
    if (p > kPoissonNormalAbove)
        return static_cast<unsigned char>(static_cast<int>(p + std::sqrt(static_cast<double>(p)) * normal()));
    // Multiplication method: count uniform factors until their product falls below e^−p.
    const double limit = qel::exact_exp(-static_cast<double>(p));
    int k = 0;
    double q = 1.0;
    while (q >= limit) {
        q = q * g_random.next() / kRandMax;
        ++k;
    }
    return static_cast<unsigned char>(k - 1);
}

}  // namespace

void Ostrum2008AddNoise(unsigned char* image, int pixelCount, double amount, unsigned int noiseType) {
    const std::lock_guard<std::mutex> hold(g_randomLock);
    seed_once();
    if (pixelCount <= 0) return;

    // The image's own range; results of most types are clamped to it.
    int hist[kGreyLevels];
    QelGetHistogram(image, pixelCount, 1, hist);
    const int lo = qel::first_non_empty(hist);  // never −1: there is at least one pixel
    const int hi = qel::last_non_empty(hist);

    if (amount == 0.0 || std::isnan(amount)) return;

    int rangeLo = 0;
    int rangeHi = 0;
    if (amount < 0.0 || noiseType == kSaltAndPepper) {
        rangeLo = lo;
        rangeHi = hi;
    }
    // A negative amount is a percentage of the image's grey range.
    if (amount < 0.0) amount = -amount * (rangeHi - rangeLo) / 100.0;
    if (std::isnan(amount)) return;  // −infinity on a flat image

    switch (noiseType) {
        case kGaussian:
            for (int i = 0; i < pixelCount; ++i) image[i] = clamp_to_range(image[i] + normal() * amount, lo, hi);
            break;
        case kUniform:
            for (int i = 0; i < pixelCount; ++i) image[i] = clamp_to_range(image[i] + uniform() * amount, lo, hi);
            break;
        case kSaltAndPepper: {
            if (rangeLo == rangeHi) {  // a flat image gets black and white specks
                rangeLo = 0;
                rangeHi = kMaxLevel;
            }
            // The amount is the percentage of pixels hit; a hit pixel goes to either end of the range.
            for (int i = 0; i < pixelCount; ++i)
                if (amount > unit() * 100.0) image[i] = static_cast<unsigned char>(unit() < 0.5 ? rangeHi : rangeLo);
            break;
        }
        case kPoisson:
            for (int i = 0; i < pixelCount; ++i) image[i] = poisson(image[i]);
            break;
        case kRayleigh: {
            const double rootTwo = std::sqrt(2.0);
            for (int i = 0; i < pixelCount; ++i) {
                const double a = image[i] / rootTwo;
                const double x = normal() * amount + a;
                const double y = normal() * amount + a;
                image[i] = clamp_to_range(std::sqrt(x * x + y * y), lo, hi);
            }
            break;
        }
        default:
            break;  // other types change nothing
    }
}
