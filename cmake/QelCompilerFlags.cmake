# Warnings and the floating-point rules every Qel target is built with.

function(qel_set_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive-)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wno-unused-parameter)
  endif()
endfunction()

# Results must not change with the optimiser: no contraction into fused multiply-add, no fast-math,
# and SSE2 arithmetic (not the x87 stack) on 32-bit x86.
function(qel_set_exact_math target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /fp:precise)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
      target_compile_options(${target} PRIVATE /arch:SSE2)
    endif()
  else()
    target_compile_options(${target} PRIVATE -ffp-contract=off -fno-fast-math)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i.86|x86|x86_64|AMD64|amd64)$")
      target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
    endif()
  endif()
endfunction()

if(QEL_SANITIZE)
  if(MSVC)
    add_compile_options(/fsanitize=address)
  else()
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
  endif()
endif()

# MinGW-w64's GCC cannot keep the stack aligned to 32 bytes on Windows, so an AVX value it spills
# with an aligned move may fault. The run-time AVX2 kernels are therefore assembled with unaligned
# vector moves there (binutils 2.38 or later; older assemblers go without).
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-Wa,-muse-unaligned-vector-move QEL_HAS_UNALIGNED_VECTOR_MOVE)
  if(QEL_HAS_UNALIGNED_VECTOR_MOVE)
    add_compile_options(-Wa,-muse-unaligned-vector-move)
  endif()
endif()
