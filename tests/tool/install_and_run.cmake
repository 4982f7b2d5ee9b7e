# The package test: installs the build into a fresh prefix and runs the installed tool from there
# with no library search path set, so it must find the installed library through its own RUNPATH,
# and the bundled sample through its place relative to the executable.
# Then, unless SKIP_CONSUMER is set, builds the examples against the installed package as another
# project would (find_package(Qel)) and runs one.
# -DBUILD_DIR=... -DPREFIX=... -DBINDIR=bin -DVERSION=x.y.z -DSAMPLE=<24-bit BMP>
# -DEXAMPLES=<examples source dir> -DGENERATOR=... -DCXX=<compiler> [-DSKIP_CONSUMER=ON]
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${ARGN}: exit status ${rc}\nstdout: ${out}\nstderr: ${err}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${PREFIX}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${PREFIX}")
set(clean_env ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH --unset=DYLD_LIBRARY_PATH)
run(${clean_env} "${PREFIX}/${BINDIR}/qel" --version)
if(NOT out MATCHES "^qel ${VERSION}\n$")
  message(FATAL_ERROR "installed qel --version printed '${out}'")
endif()
run(${clean_env} "${PREFIX}/${BINDIR}/qel" info "${SAMPLE}")
# qel inspect without an argument reads the sample installed beside it, not the source tree's.
set(here "${PREFIX}-inspect")
file(REMOVE_RECURSE "${here}")
file(MAKE_DIRECTORY "${here}")
execute_process(COMMAND ${clean_env} "${PREFIX}/${BINDIR}/qel" inspect --json WORKING_DIRECTORY "${here}"
                RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "installed qel inspect: exit status ${rc}\nstdout: ${out}\nstderr: ${err}")
endif()
string(JSON inspected GET "${out}" file)
file(REAL_PATH "${PREFIX}" realPrefix)
file(REAL_PATH "${inspected}" realInspected)
string(FIND "${realInspected}" "${realPrefix}/" at)
if(NOT at EQUAL 0 OR NOT EXISTS "${here}/coins_inspect.png")
  message(FATAL_ERROR "installed qel inspect read ${inspected}, not the sample under ${PREFIX}, or wrote nothing")
endif()

if(NOT SKIP_CONSUMER)
  set(consumer "${PREFIX}-examples")
  file(REMOVE_RECURSE "${consumer}")
  run(${CMAKE_COMMAND} -S "${EXAMPLES}" -B "${consumer}" -G "${GENERATOR}" -DCMAKE_CXX_COMPILER=${CXX}
      "-DCMAKE_PREFIX_PATH=${PREFIX}")
  run(${CMAKE_COMMAND} --build "${consumer}")
  run(${clean_env} "${consumer}/bmp_to_grey" "${SAMPLE}" "${consumer}/grey.bmp")
  if(NOT EXISTS "${consumer}/grey.bmp")
    message(FATAL_ERROR "the example built against the installed package wrote nothing")
  endif()
endif()
