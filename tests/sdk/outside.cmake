# Installs the built tree, builds the examples against it elsewhere, and records a take with them.

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(NOT result STREQUAL "0")
    message("${output}")
    message(FATAL_ERROR "${what} failed (${result})")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# Nothing from an earlier run, from the tree or from the user's own settings may help.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/home")
file(COPY "${SOURCE}/docs/examples" DESTINATION "${WORK}")
run("install" "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/first")
file(RENAME "${WORK}/first" "${WORK}/moved") # a package must not depend on where it was installed

run("configure" "${CMAKE_COMMAND}" -S "${WORK}/examples" -B "${WORK}/build" -G "${GENERATOR}"
    -DCMAKE_BUILD_TYPE=Debug "-DMirvane_DIR=${WORK}/moved/lib/cmake/Mirvane"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    -DCMAKE_CXX_STANDARD=${STANDARD} -DCMAKE_CXX_STANDARD_REQUIRED=ON -DCMAKE_CXX_EXTENSIONS=OFF
    "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Werror ${FLAGS}")
run("build" "${CMAKE_COMMAND}" --build "${WORK}/build")
run("the exports of the adaptor" python3 "${SOURCE}/tools/lint/exports.py"
    "${WORK}/build/adaptor/small_adaptor.so" recordTake)
run("install of the tool and the driver" "${CMAKE_COMMAND}" --install "${WORK}/build")

# All headers compile with only the installed tree: each header that they include is installed.
file(GLOB_RECURSE headers RELATIVE "${WORK}/moved/include/mirvane"
     "${WORK}/moved/include/mirvane/*.h")
if(NOT headers)
  message(FATAL_ERROR "no headers were installed")
endif()
set(all "")
foreach(header IN LISTS headers)
  string(APPEND all "#include <${header}>\n")
endforeach()
file(WRITE "${WORK}/all_headers.cpp" "${all}")
run("compiling the headers" "${COMPILER}" -std=c++${STANDARD} -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Werror
    -fsyntax-only "-I${WORK}/moved/include/mirvane" "${WORK}/all_headers.cpp")

set(ENV{HOME} "${WORK}/home")
foreach(name MIRVANE_REGISTRY XDG_CONFIG_HOME XDG_DOCUMENTS_DIR)
  unset(ENV{${name}})
endforeach()
set(ENV{XDG_CONFIG_DIRS} "${WORK}/home") # no file of this machine names other folders
run("the take" "${WORK}/build/adaptor/small_program")
message("${output}")
