// The debug log: one "\n<text>,<value>" record per call, appended to a fixed file that the first
// call after the library is loaded empties. Calls may come from several threads: one lock
// serialises them, so the emptying comes first and records never interleave or get lost.
#include "qel/io.h"

#include "core/platform.h"

#include <cstdio>
#include <mutex>
#include <string>

namespace {

std::mutex g_debugLogLock;
// Cleared by the first call, whether or not the log could be opened then.
bool g_firstDebugCall = true;

}  // namespace

void QelDebugInfo(char* text, int value) {
    const std::lock_guard<std::mutex> hold(g_debugLogLock);
    const char* mode = g_firstDebugCall ? "w+t" : "a+t";
    g_firstDebugCall = false;
    const std::string path = qel::debug_log_path();
    std::FILE* f = std::fopen(path.c_str(), mode);
    if (f == nullptr) return;  // no log directory: the record is dropped silently
    std::fprintf(f, "\n%s,%d", text != nullptr ? text : "", value);
    std::fclose(f);
}
