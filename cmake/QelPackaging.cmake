# Release archives made by CPack from the install rules: on Linux a .tar.gz (unpack anywhere: the
# tool finds the library through its RUNPATH $ORIGIN/../lib, the CMake package and qel.pc locate
# themselves) and a .deb (installs under /usr); on Windows, from the MinGW-w64 cross build, a .zip
# with the DLLs the programs need beside them in bin/. Each holds the library, its headers, the CMake
# package, qel.pc, the qel tool with its font and samples (when they are built), LICENSE and README.
#   cmake --preset release && cmake --build --preset release && cd build/release && cpack
# makes both Linux archives; `cpack -G TGZ` (or DEB, ZIP) makes one. One package, no components:
# the library, its development files and the tool are small and go together.

set(QEL_PACKAGE_MAINTAINER "The Qel developers" CACHE STRING "Maintainer named in the .deb's control file")
# A build that cannot generate the font (no Unifont, no GB2312 converter) can pack one made elsewhere.
set(QEL_PACKAGE_FONT "" CACHE FILEPATH "hzk16.dat to pack beside the tool when this build does not make one")

# The documents every archive carries: in share/doc/qel on Linux, at the top of the Windows archive.
if(WIN32)
  set(qelDocDir .)
else()
  set(qelDocDir ${CMAKE_INSTALL_DATAROOTDIR}/doc/qel)
endif()
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${qelDocDir})

if(NOT TARGET qel_font AND QEL_PACKAGE_FONT)
  if(NOT EXISTS "${QEL_PACKAGE_FONT}")
    message(FATAL_ERROR "QEL_PACKAGE_FONT names ${QEL_PACKAGE_FONT}, which does not exist")
  endif()
  install(FILES ${QEL_PACKAGE_FONT} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# Windows has no library search path to rely on: the archive carries the compiler's run-time DLLs
# (and any other non-system DLL the library or the tool was linked against) beside them. The list is
# read from the built programs' import tables at install time and looked up in the cross
# toolchain's directories and QEL_PACKAGE_DLL_DIRS; a DLL found in none of them that is not one of
# Windows' own stops the install.
if(WIN32 AND CMAKE_CROSSCOMPILING AND BUILD_SHARED_LIBS)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name
                  OUTPUT_VARIABLE qelLibgcc OUTPUT_STRIP_TRAILING_WHITESPACE)
  get_filename_component(qelGccDir "${qelLibgcc}" DIRECTORY)
  set(QEL_PACKAGE_DLL_DIRS "" CACHE STRING "More directories holding DLLs the Windows archive must carry")
  set(qelDllDirs ${qelGccDir} ${QEL_PACKAGE_DLL_DIRS})
  foreach(root IN LISTS CMAKE_FIND_ROOT_PATH)
    list(APPEND qelDllDirs ${root}/bin ${root}/lib)
  endforeach()
  set(qelExecutables)
  if(TARGET qel_tool)
    set(qelExecutables $<TARGET_FILE:qel_tool>)
  endif()
  install(CODE "
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_TOOL objdump)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_COMMAND \"${CMAKE_OBJDUMP}\")
    set(qelExecutables \"${qelExecutables}\")
    set(qelDllDirs \"${qelDllDirs}\")
    file(GET_RUNTIME_DEPENDENCIES LIBRARIES \"$<TARGET_FILE:qel>\" EXECUTABLES \${qelExecutables}
         DIRECTORIES \${qelDllDirs}
         RESOLVED_DEPENDENCIES_VAR qelDlls UNRESOLVED_DEPENDENCIES_VAR qelSystemDlls
         PRE_EXCLUDE_REGEXES \"^(lib)?qel\\\\.dll$\" \"^api-ms-\" \"^ext-ms-\")
    list(FILTER qelSystemDlls EXCLUDE REGEX
         \"^(kernel32|user32|gdi32|advapi32|shell32|ole32|oleaut32|ws2_32|msvcrt|ucrtbase|ntdll|bcrypt|crypt32|shlwapi|version|winmm|dbghelp|psapi)[.]dll$\")
    if(qelSystemDlls)
      message(FATAL_ERROR \"DLLs needed by the Windows programs, found in none of \${qelDllDirs}: \"
                          \"\${qelSystemDlls} (add their directory to QEL_PACKAGE_DLL_DIRS)\")
    endif()
    file(INSTALL \${qelDlls} DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    # The toolchain's DLLs carry their debugging sections (libstdc++-6.dll is 23 MB with them).
    foreach(dll IN LISTS qelDlls)
      get_filename_component(name \"\${dll}\" NAME)
      execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/\${name}\")
    endforeach()
  ")
endif()

# ---- CPack settings ------------------------------------------------------------------------------
string(TOLOWER "${PROJECT_NAME}" CPACK_PACKAGE_NAME)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Qel developers")
set(CPACK_PACKAGE_CONTACT "${QEL_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
  "A C++17 machine-vision library working on raw caller-owned image buffers (grey, binary, BGR and \
camera frames), with the qel command-line tool for image files.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
# Release archives are stripped; a debug build's archive keeps its symbols.
if(CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$")
  set(CPACK_STRIP_FILES ON)
endif()

if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ)
  find_program(QEL_DPKG_DEB dpkg-deb)
  mark_as_advanced(QEL_DPKG_DEB)
  if(QEL_DPKG_DEB)
    list(APPEND CPACK_GENERATOR DEB)
  endif()
endif()

# The .deb: one package "qel" under /usr, version as above, run-time dependencies worked out by
# dpkg-shlibdeps from the packed programs where it is installed (Debian package dpkg-dev), otherwise
# the list below, which is what it finds on Debian 12 (libpng and libjpeg only for the tool).
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QEL_PACKAGE_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
find_program(QEL_DPKG_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(QEL_DPKG_SHLIBDEPS)
if(QEL_DPKG_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 11)")
  if(TARGET qel_tool)
    string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libjpeg62-turbo (>= 1.3.1), libpng16-16 (>= 1.6.2-1)")
  endif()
endif()

# `make package_source`: the tracked sources, not build trees or version-control data.
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_IGNORE_FILES "/[.]git/" "/build/" "/__pycache__/" "[.]pyc$")

include(CPack)

# The archive test (tests/tool/package_and_run.cmake): cpack, unpack, check the files, run the packed
# tool, build the example against the archive with find_package and with pkg-config; on Linux, and
# for the MinGW-w64 cross build under its emulator. Labelled "package" (about 10 s on Linux):
# `ctest -LE package` leaves it out.
if(QEL_BUILD_TESTS AND (CMAKE_SYSTEM_NAME STREQUAL "Linux" OR (WIN32 AND CMAKE_CROSSCOMPILING_EMULATOR)))
  add_test(NAME qel_package_archives
    COMMAND ${CMAKE_COMMAND} -DBUILD_DIR=${PROJECT_BINARY_DIR} -DWORK=${PROJECT_BINARY_DIR}/package-test
            -DCPACK=${CMAKE_CPACK_COMMAND} -DOBJDUMP=${CMAKE_OBJDUMP} -DVERSION=${PROJECT_VERSION}
            -DSAMPLE=${PROJECT_SOURCE_DIR}/samples/astronaut.bmp -DEXAMPLES=${PROJECT_SOURCE_DIR}/examples
            -DGENERATOR=${CMAKE_GENERATOR} -DCXX=${CMAKE_CXX_COMPILER} -DTOOL=$<TARGET_EXISTS:qel_tool>
            "-DFONT=$<OR:$<TARGET_EXISTS:qel_font>,$<BOOL:${QEL_PACKAGE_FONT}>>" -DSKIP_CONSUMER=${QEL_SANITIZE}
            "-DCXXFLAGS=${CMAKE_CXX_FLAGS}" "-DLDFLAGS=${CMAKE_EXE_LINKER_FLAGS}"
            -DWINDOWS=${WIN32} "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" -DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
            -P ${PROJECT_SOURCE_DIR}/tests/tool/package_and_run.cmake)
  set_tests_properties(qel_package_archives PROPERTIES LABELS package)
endif()
