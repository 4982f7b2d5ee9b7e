// Base name of a path: what follows the last backslash, up to the first dot.
#include "qel/io.h"

#include <cstring>

void QelGetFileNakeName(char* path, char* name) {
    // Only the backslash separates directories: a path written with slashes keeps them.
    const char* start = std::strrchr(path, '\\');
    start = start != nullptr ? start + 1 : path;
    std::memmove(name, start, std::strlen(start) + 1);
    // Cut at the first dot, so a.b.bmp gives a.
    if (char* dot = std::strchr(name, '.')) *dot = '\0';
}
