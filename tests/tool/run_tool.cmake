# Runs a program (the qel tool or an example) once and checks its exit status and that its output
# mentions EXPECT.
# -DTOOL=... -DARGS=a;b;c (a list) -DRC=<status> [-DEXPECT=<regex>]
# [-DOUTPUT=<file the run writes: must exist after success, must not after failure>]
# [-DSAME_AS=<file OUTPUT must equal byte for byte after success>]
# [-DREFERENCE=<qel_tool_reference> -DPIXELS=<case;arguments...>: OUTPUT's pixels must be those the
#  reference program computes for the case after success]
set(args ${ARGS})
if(OUTPUT)
  file(REMOVE "${OUTPUT}")
endif()
execute_process(COMMAND "${TOOL}" ${args} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc STREQUAL "${RC}")
  message(FATAL_ERROR "${TOOL} ${ARGS}: exit status ${rc}, wanted ${RC}\nstdout: ${out}\nstderr: ${err}")
endif()
if(EXPECT AND NOT "${out}${err}" MATCHES "${EXPECT}")
  message(FATAL_ERROR "${TOOL} ${ARGS}: output does not match '${EXPECT}'\nstdout: ${out}\nstderr: ${err}")
endif()
if(OUTPUT)
  if(RC STREQUAL "0" AND NOT EXISTS "${OUTPUT}")
    message(FATAL_ERROR "${TOOL} ${ARGS}: ${OUTPUT} was not written")
  endif()
  # A failed run leaves nothing behind, not even its temporary file.
  if(NOT RC STREQUAL "0" AND (EXISTS "${OUTPUT}" OR EXISTS "${OUTPUT}.part"))
    message(FATAL_ERROR "${TOOL} ${ARGS}: a failed run left ${OUTPUT} behind")
  endif()
  if(SAME_AS)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${OUTPUT}" "${SAME_AS}" RESULT_VARIABLE differ)
    if(differ)
      message(FATAL_ERROR "${TOOL} ${ARGS}: ${OUTPUT} differs from ${SAME_AS}\nstdout: ${out}\nstderr: ${err}")
    endif()
  endif()
  if(REFERENCE AND RC STREQUAL "0")
    # The reference draws text with the font the build places beside the tool.
    if(NOT DEFINED ENV{QEL_FONT_FILE})
      get_filename_component(toolDir "${TOOL}" DIRECTORY)
      set(ENV{QEL_FONT_FILE} "${toolDir}/hzk16.dat")
    endif()
    set(pixels ${PIXELS})
    execute_process(COMMAND "${REFERENCE}" "${OUTPUT}" ${pixels} RESULT_VARIABLE differ ERROR_VARIABLE why)
    if(differ)
      message(FATAL_ERROR "${TOOL} ${ARGS}: ${OUTPUT} is not the library's picture: ${why}")
    endif()
  endif()
endif()
