// The few things that differ between Windows and other systems, kept in one place.
#ifndef QEL_SRC_CORE_PLATFORM_H
#define QEL_SRC_CORE_PLATFORM_H

#include <string>

namespace qel {

// Path of the debug log. The environment variable QEL_DEBUG_LOG overrides it everywhere; otherwise
// Windows uses d:\tmp\QelDebugInfo.txt and other systems QelDebugInfo.txt in the temporary
// directory ($TMPDIR, or /tmp).
std::string debug_log_path();

// Directory of the running executable, with a trailing separator; empty when it cannot be found.
std::string executable_directory();

}  // namespace qel

#endif
