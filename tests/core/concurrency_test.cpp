// Concurrency: the library's functions run from several threads at once, each thread on its own
// buffers, and give the same results as alone. The table of callables is the golden table (every
// exported function with valid inputs); a thread's result is the digest of what a call wrote and
// returned. Built with -fsanitize=thread (scripts/test.sh tsan) the same runs also report any
// shared state touched without synchronisation.
#include <gtest/gtest.h>

#include <qel.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "golden/table.h"

namespace {

constexpr int kThreads = 4;

void set_environment(const char* name, const std::string& value) {
#if defined(_WIN32)
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}

bool starts_with(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

// Functions that act on the library's single finder and list-reader objects, and the BMP entries,
// whose files are named by entry and size (so two threads would share a file): callers serialise
// them, here with one lock.
bool needs_caller_lock(const golden::Entry& entry) {
    const std::string name = golden::base_name(entry.name);
    for (const char* prefix : {"QelHoughLines_", "QelImgChainLines_", "QelSequenceFiles_", "QelRead", "QelWrite"})
        if (starts_with(name, prefix)) return true;
    return false;
}

// Left to their own tests below: the debug-log entry changes the environment, and a noise call's
// result depends on the calls before it.
bool has_own_test(const golden::Entry& entry) {
    const std::string name = golden::base_name(entry.name);
    return name == "QelDebugInfo" || name == "Ostrum2008AddNoise";
}

// Runs body(t) on kThreads threads at once and waits for them.
template <class Body>
void on_threads(Body body) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) threads.emplace_back(body, t);
    for (auto& th : threads) th.join();
}

// Each thread works at its own image size, so no two threads' buffers are alike.
golden::Size size_of_thread(int t) {
    const auto& sizes = golden::sizes();
    return sizes[size_t(t) % sizes.size()];
}

uint64_t digest_of(const golden::Entry& entry, int thread) {
    const golden::Size size = size_of_thread(thread);
    golden::Call call(size.width, size.height, golden::seed_for(entry.name, size) + uint64_t(thread));
    entry.run(call);
    return call.digest();
}

TEST(Concurrency, EveryFunctionGivesItsSingleThreadResultFromFourThreads) {
    std::vector<const golden::Entry*> entries;
    for (const auto& entry : golden::table())
        if (!has_own_test(entry)) entries.push_back(&entry);
    const size_t n = entries.size();
    ASSERT_GT(n, 400u);

    // The threads run first, so that anything the library builds on first use is built while four
    // threads race for it. Even rounds: all threads walk the table in step, so the same function
    // runs in four threads at once. Odd rounds: each thread starts a quarter of the table further
    // on, so different families overlap.
    constexpr int kRounds = 8;
    std::mutex callerLock;
    std::vector<std::vector<uint64_t>> got(kThreads, std::vector<uint64_t>(kRounds * n));
    on_threads([&](int t) {
        for (int round = 0; round < kRounds; ++round) {
            const size_t offset = round % 2 == 0 ? 0 : n * size_t(t) / kThreads;
            for (size_t k = 0; k < n; ++k) {
                const size_t i = (k + offset) % n;
                uint64_t& result = got[t][round * n + i];
                if (needs_caller_lock(*entries[i])) {
                    std::lock_guard<std::mutex> hold(callerLock);
                    result = digest_of(*entries[i], t);
                } else {
                    result = digest_of(*entries[i], t);
                }
            }
        }
    });

    // The reference: every entry alone, once for each thread's inputs.
    for (size_t i = 0; i < n; ++i)
        for (int t = 0; t < kThreads; ++t) {
            const uint64_t expected = digest_of(*entries[i], t);
            for (int round = 0; round < kRounds; ++round)
                EXPECT_EQ(got[t][round * n + i], expected)
                    << entries[i]->name << " in thread " << t << ", round " << round;
        }
}

std::string file_text(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The debug log takes records from many threads: the first call still empties the old log, and
// afterwards every record is there, whole, each thread's in the order it wrote them.
TEST(Concurrency, DebugLogKeepsEveryRecordOfEveryThread) {
    const std::string path = "concurrency_debug_log.txt";
    std::ofstream(path, std::ios::binary) << "stale record of an earlier run\n";
    set_environment("QEL_DEBUG_LOG", path);

    constexpr int kRecords = 200;
    on_threads([](int t) {
        std::string text = "thread" + std::to_string(t);
        for (int i = 0; i < kRecords; ++i) QelDebugInfo(&text[0], i);
    });

    std::vector<int> next(kThreads, 0);
    std::istringstream log(file_text(path));
    std::string line;
    ASSERT_TRUE(std::getline(log, line));
    if (!line.empty() && line.back() == '\r') line.pop_back();  // Windows writes the log's line ends as CR LF
    EXPECT_EQ(line, "");  // every record starts with a line end, the old text is gone
    int records = 0;
    while (std::getline(log, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        int t = -1, value = -1;
        char tail = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "thread%d,%d%c", &t, &value, &tail), 2) << line;
        ASSERT_TRUE(t >= 0 && t < kThreads) << line;
        EXPECT_EQ(value, next[t]++) << "thread " << t << " out of order";
        ++records;
    }
    EXPECT_EQ(records, kThreads * kRecords);
    std::remove(path.c_str());
}

// Noise from many threads: the calls share the library's one generator, each taking its own run
// of draws, so no two calls give the same noise and every result stays in the image's range.
TEST(Concurrency, NoiseCallsFromFourThreadsEachDrawFreshNoise) {
    const int w = 40, h = 30;
    std::vector<unsigned char> image(w * h);
    for (int i = 0; i < w * h; ++i) image[i] = static_cast<unsigned char>(60 + (i * 7) % 120);  // 60..179

    constexpr int kCalls = 25;
    std::vector<std::vector<unsigned char>> noisy(kThreads * kCalls, image);
    on_threads([&](int t) {
        for (int k = 0; k < kCalls; ++k) {
            auto& out = noisy[size_t(t * kCalls + k)];
            Ostrum2008AddNoise(out.data(), w * h, 30.0, 1);  // uniform, clamped to 60..179
        }
    });

    for (size_t a = 0; a < noisy.size(); ++a) {
        EXPECT_NE(noisy[a], image) << "call " << a << " added no noise";
        for (unsigned char v : noisy[a]) ASSERT_TRUE(v >= 60 && v <= 179) << "call " << a;
        for (size_t b = 0; b < a; ++b) EXPECT_NE(noisy[a], noisy[b]) << "calls " << b << " and " << a << " drew the same noise";
    }
}

}  // namespace
