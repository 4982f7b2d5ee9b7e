#include "core/platform.h"

#include <cstdlib>

#if defined(_WIN32)
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  include <windows.h>
#elif defined(__APPLE__)
#  include <mach-o/dyld.h>
#  include <vector>
#else
#  include <unistd.h>
#  include <climits>
#endif

namespace qel {

std::string debug_log_path() {
    if (const char* over = std::getenv("QEL_DEBUG_LOG"); over != nullptr && *over != '\0') return over;
#if defined(_WIN32)
    return "d:\\tmp\\QelDebugInfo.txt";
#else
    const char* tmp = std::getenv("TMPDIR");
    std::string dir = (tmp != nullptr && *tmp != '\0') ? tmp : "/tmp";
    if (dir.back() != '/') dir += '/';
    return dir + "QelDebugInfo.txt";
#endif
}

std::string executable_directory() {
    std::string path;
#if defined(_WIN32)
    wchar_t wide[MAX_PATH];
    DWORD n = GetModuleFileNameW(nullptr, wide, MAX_PATH);
    if (n == 0 || n >= MAX_PATH) return {};
    int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(n), nullptr, 0, nullptr, nullptr);
    path.resize(static_cast<size_t>(bytes));
    WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(n), &path[0], bytes, nullptr, nullptr);
    const char sep = '\\';
#elif defined(__APPLE__)
    uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> buf(size + 1, '\0');
    if (_NSGetExecutablePath(buf.data(), &size) != 0) return {};
    path = buf.data();
    const char sep = '/';
#else
    char buf[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0) return {};
    path.assign(buf, static_cast<size_t>(n));
    const char sep = '/';
#endif
    size_t cut = path.find_last_of(sep);
    return cut == std::string::npos ? std::string() : path.substr(0, cut + 1);
}

}  // namespace qel
