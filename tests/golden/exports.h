// The shared library's exported functions, as overload counts per name, read with nm from the
// loaded library. Empty where that cannot be done (not Linux, a static build, no nm).
#ifndef QEL_TESTS_GOLDEN_EXPORTS_H
#define QEL_TESTS_GOLDEN_EXPORTS_H

#include <cstdio>
#include <map>
#include <string>

#include "qel/histogram.h"

#if defined(__linux__) && !defined(QEL_STATIC)
#  include <dlfcn.h>
#endif

namespace golden {

inline std::map<std::string, int> exported_functions() {
    std::map<std::string, int> exported;
#if defined(__linux__) && !defined(QEL_STATIC)
    Dl_info info{};
    void* any = reinterpret_cast<void*>(static_cast<void (*)(unsigned char*, int, int, int*)>(&QelGetHistogram));
    if (dladdr(any, &info) == 0 || !info.dli_fname) return exported;
    const std::string command = std::string("nm -D -C --defined-only '") + info.dli_fname + "' 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return exported;
    char line[4096];
    while (std::fgets(line, sizeof line, pipe)) {
        char kind = 0;
        char name[4000] = {0};
        if (std::sscanf(line, "%*s %c %3999[^\n]", &kind, name) != 2 || kind == 'A') continue;
        std::string base(name);
        ++exported[base.substr(0, base.find('('))];
    }
    pclose(pipe);
#endif
    return exported;
}

}  // namespace golden

#endif  // QEL_TESTS_GOLDEN_EXPORTS_H
