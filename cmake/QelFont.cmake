# The 16 x 16 bitmap font "hzk16.dat" read by the font-text functions, generated at build time from
# GNU Unifont (Debian package unifont) by tools/fontgen, which maps GB2312 codes to Unicode with
# iconv(3). The library looks for the font beside the running program, so the build copies it
# beside the qel tool and the test programs, and installs it beside the tool.
#
# A cross build (MinGW-w64 for Windows) compiles the generator with the build machine's compiler
# and runs it there. Without Unifont, or without an iconv that converts GB2312, the font is not
# made: configuring warns, everything else builds, and the font-text functions return false until a
# hzk16.dat is placed beside the program.
set(QEL_UNIFONT_HEX /usr/share/unifont/unifont.hex CACHE FILEPATH "GNU Unifont hex file the font is generated from")

function(qel_font_skipped)
  string(JOIN "" why ${ARGV})
  message(WARNING "hzk16.dat will not be generated: ${why}. The library builds, but its font-text "
                  "functions (QelDrawChineseString16x16/32x32) return false until a hzk16.dat is "
                  "placed beside the program.")
endfunction()

function(qel_setup_font)
  if(NOT EXISTS "${QEL_UNIFONT_HEX}")
    qel_font_skipped("GNU Unifont was not found at ${QEL_UNIFONT_HEX} (Debian package unifont, which "
                     "scripts/deps.sh installs, or set QEL_UNIFONT_HEX to its unifont.hex)")
    return()
  endif()
  if(CMAKE_CROSSCOMPILING)
    # The generator runs on the build machine, so a cross build compiles it with the build
    # machine's own C++ compiler, whose C library supplies iconv(3) (glibc converts GB2312).
    find_program(QEL_HOST_CXX NAMES c++ g++ clang++ NO_CMAKE_FIND_ROOT_PATH
                 DOC "C++ compiler of the build machine, for the font generator of a cross build")
    if(NOT QEL_HOST_CXX)
      qel_font_skipped("this is a cross build and no C++ compiler for the build machine was found "
                       "(set QEL_HOST_CXX)")
      return()
    endif()
    set(generator ${PROJECT_BINARY_DIR}/font/qel_fontgen_host)
    add_custom_command(OUTPUT ${generator}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/font
      COMMAND ${QEL_HOST_CXX} -std=c++17 -O2 -o ${generator} ${PROJECT_SOURCE_DIR}/tools/fontgen/fontgen.cpp
      DEPENDS ${PROJECT_SOURCE_DIR}/tools/fontgen/fontgen.cpp
      COMMENT "Building the font generator for the build machine"
      VERBATIM)
  else()
    find_package(Iconv QUIET)
    if(NOT Iconv_FOUND)
      qel_font_skipped("no iconv(3) was found to map GB2312 codes to Unicode")
      return()
    endif()
    # The converter is a run-time module of the C library: only running it shows that it is there.
    include(CheckCXXSourceRuns)
    set(CMAKE_REQUIRED_INCLUDES ${Iconv_INCLUDE_DIRS})
    set(CMAKE_REQUIRED_LIBRARIES ${Iconv_LIBRARIES})
    set(CMAKE_REQUIRED_QUIET ON)
    check_cxx_source_runs([[
      #include <iconv.h>
      int main() {
        iconv_t c = iconv_open("UCS-4LE", "GB2312");
        if (c == (iconv_t)-1) return 1;
        char in[2] = {(char)0xB0, (char)0xA1};  // U+554A
        unsigned char out[4] = {0, 0, 0, 0};
        char* ip = in; char* op = (char*)out;
        size_t il = 2, ol = 4;
        if (iconv(c, &ip, &il, &op, &ol) == (size_t)-1) return 1;
        return (out[0] == 0x4A && out[1] == 0x55 && out[2] == 0 && out[3] == 0) ? 0 : 1;
      }]] QEL_ICONV_HAS_GB2312)
    if(NOT QEL_ICONV_HAS_GB2312)
      qel_font_skipped("this system's iconv(3) cannot convert GB2312 to UCS-4LE")
      return()
    endif()

    add_executable(qel_fontgen ${PROJECT_SOURCE_DIR}/tools/fontgen/fontgen.cpp)
    target_include_directories(qel_fontgen PRIVATE ${Iconv_INCLUDE_DIRS})
    target_link_libraries(qel_fontgen PRIVATE ${Iconv_LIBRARIES})
    qel_set_warnings(qel_fontgen)
    set(generator qel_fontgen)
  endif()

  set(font ${PROJECT_BINARY_DIR}/font/hzk16.dat)
  add_custom_command(OUTPUT ${font}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/font
    COMMAND ${generator} ${QEL_UNIFONT_HEX} ${font}
    DEPENDS ${generator} ${QEL_UNIFONT_HEX}
    COMMENT "Generating hzk16.dat from GNU Unifont"
    VERBATIM)

  # One copy in each directory that holds a program using the font.
  set(programs)
  if(TARGET qel_tool)
    list(APPEND programs qel_tool)
  endif()
  # The Python package finds the font in its own directory (pip installs it there too).
  if(TARGET _qel)
    list(APPEND programs _qel)
  endif()
  if(QEL_BUILD_TESTS)
    get_property(testTargets DIRECTORY ${PROJECT_SOURCE_DIR}/tests PROPERTY BUILDSYSTEM_TARGETS)
    foreach(t IN LISTS testTargets)
      get_target_property(type ${t} TYPE)
      if(type STREQUAL "EXECUTABLE")
        list(APPEND programs ${t})
      endif()
    endforeach()
  endif()
  get_property(multiConfig GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
  set(copies ${font})
  foreach(program IN LISTS programs)
    get_target_property(type ${program} TYPE)
    if(type STREQUAL "MODULE_LIBRARY")
      get_target_property(dir ${program} LIBRARY_OUTPUT_DIRECTORY)
    else()
      get_target_property(dir ${program} RUNTIME_OUTPUT_DIRECTORY)
    endif()
    if(NOT dir)
      get_target_property(dir ${program} BINARY_DIR)
    endif()
    if(multiConfig AND NOT dir MATCHES "\\$<")
      string(APPEND dir "/$<CONFIG>")
    endif()
    set(copy ${dir}/hzk16.dat)
    if(program STREQUAL "qel_test_draw_text")
      set(textTestFont ${copy})
    endif()
    if(NOT copy IN_LIST copies)
      add_custom_command(OUTPUT ${copy}
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${font} ${copy}
        DEPENDS ${font}
        VERBATIM)
      list(APPEND copies ${copy})
    endif()
  endforeach()
  add_custom_target(qel_font ALL DEPENDS ${copies})
  foreach(program IN LISTS programs)
    add_dependencies(${program} qel_font)
  endforeach()
  install(FILES ${font} DESTINATION ${CMAKE_INSTALL_BINDIR})

  # The text tests compare the font beside them with Unifont's own bitmaps.
  if(textTestFont)
    target_compile_definitions(qel_test_draw_text PRIVATE QEL_TEST_UNIFONT_HEX="${QEL_UNIFONT_HEX}"
                                                          QEL_TEST_FONT_FILE="${textTestFont}")
  endif()
endfunction()

qel_setup_font()
