// libFuzzer's entry point for one target, chosen at compile time by QEL_FUZZ_ENTRY (a function of
// targets.h); fuzz/CMakeLists.txt builds one executable per target.
#include "targets.h"

#ifndef QEL_FUZZ_ENTRY
#  error "QEL_FUZZ_ENTRY names the target's function, e.g. qel_fuzz::bmp8"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return QEL_FUZZ_ENTRY(data, size); }
