# The test that the shared library exports exactly the functions of tests/exports.txt, through
# scripts/check_exports.sh: nm on ELF systems, the PE export table (objdump -p) for Windows DLLs,
# so a cross build checks its DLL on the build machine without running it.
find_program(QEL_BASH bash)
if(BUILD_SHARED_LIBS AND QEL_BASH AND (CMAKE_SYSTEM_NAME STREQUAL "Linux" OR (WIN32 AND CMAKE_CROSSCOMPILING)))
  add_test(NAME qel_exports_match_the_list
    COMMAND ${QEL_BASH} ${PROJECT_SOURCE_DIR}/scripts/check_exports.sh $<TARGET_FILE:qel>)
  if(CMAKE_OBJDUMP)
    set_tests_properties(qel_exports_match_the_list PROPERTIES ENVIRONMENT "OBJDUMP=${CMAKE_OBJDUMP};NM=${CMAKE_NM}")
  endif()
endif()
