# Installs into an empty prefix, moves that prefix, and builds the program of the README against
# it as a stranger would: with find_package, and with pkg-config. Then runs both, and the
# installed formweave.

cmake_minimum_required(VERSION 3.18)

set(prefix "${WORK_DIR}/moved prefix")
set(pc_prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/app" "${WORK_DIR}/runtime")

# run(WHAT COMMAND...): the command must succeed; its standard output is left in `out`.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err
    WORKING_DIRECTORY "${WORK_DIR}/app")
  if(NOT status EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${what} failed (${status}):\n${command}\n${out}\n${err}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

# ---- install ---------------------------------------------------------------------------------

run("the installation" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/first")

# Nothing in an installed tree may point back to where it was made.
file(GLOB_RECURSE texts "${WORK_DIR}/first/*.cmake" "${WORK_DIR}/first/*.pc"
  "${WORK_DIR}/first/*.h" "${WORK_DIR}/first/*.arb")
foreach(text IN LISTS texts)
  file(READ "${text}" content)
  foreach(origin IN ITEMS "${SOURCE_DIR}/" "${BUILD_DIR}/")
    string(FIND "${content}" "${origin}" at)
    if(NOT at EQUAL -1)
      message(FATAL_ERROR "${text} names ${origin}")
    endif()
  endforeach()
endforeach()

file(RENAME "${WORK_DIR}/first" "${prefix}")

# ---- the README's program --------------------------------------------------------------------

file(READ "${SOURCE_DIR}/README.md" readme)
string(FIND "${readme}" "```cpp\n" begin)
if(begin EQUAL -1)
  message(FATAL_ERROR "README.md holds no ```cpp block")
endif()
math(EXPR begin "${begin} + 7")
string(SUBSTRING "${readme}" ${begin} -1 program)
string(FIND "${program}" "\n```" end)
if(end EQUAL -1)
  message(FATAL_ERROR "the ```cpp block of README.md has no end")
endif()
string(SUBSTRING "${program}" 0 ${end} program)
file(WRITE "${WORK_DIR}/app/main.cpp" "${program}\n")
file(WRITE "${WORK_DIR}/app/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.18)
project(App LANGUAGES CXX)
find_package(Formweave 1.0 REQUIRED)
if(NOT TARGET Arborium::Arborium)
  message(FATAL_ERROR "Formweave did not bring Arborium::Arborium")
endif()
if(NOT EXISTS "${Formweave_SKINS_DIR}/default")
  message(FATAL_ERROR "no skins in ${Formweave_SKINS_DIR}")
endif()
add_executable(app main.cpp)
target_link_libraries(app Formweave::Formweave)
]])
# Wherever the program expects its dialog file: beside it, or in examples/.
file(COPY "${SOURCE_DIR}/examples" DESTINATION "${WORK_DIR}/app")
file(GLOB dialogs "${SOURCE_DIR}/examples/*.arb")
file(COPY ${dialogs} DESTINATION "${WORK_DIR}/app")

# ---- by find_package --------------------------------------------------------------------------

run("configuring with find_package" "${CMAKE_COMMAND}" -S . -B build -G "${GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_PREFIX_PATH=${prefix}")
run("building with find_package" "${CMAKE_COMMAND}" --build build)

# ---- by pkg-config ----------------------------------------------------------------------------

# pkg-config cannot quote a blank in ${pcfiledir}, so it is given a path without one.
file(CREATE_LINK "${prefix}" "${pc_prefix}" SYMBOLIC)
find_program(PKG_CONFIG pkg-config REQUIRED)
run("pkg-config" "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${pc_prefix}/${LIB_DIR}/pkgconfig"
  "${PKG_CONFIG}" --cflags --libs formweave)
separate_arguments(flags UNIX_COMMAND "${out}")
run("building with pkg-config" "${CXX}" -std=c++17 main.cpp -o app-pc ${flags}
  "-Wl,-rpath,${pc_prefix}/${LIB_DIR}")

# ---- the headers -------------------------------------------------------------------------------

# Each header stands on its own; seen last to first, none can lean on the one before it by name.
file(GLOB_RECURSE headers RELATIVE "${prefix}/include" "${prefix}/include/*.h")
list(SORT headers ORDER DESCENDING)
set(includes)
foreach(header IN LISTS headers)
  string(APPEND includes "#include <${header}>\n")
endforeach()
foreach(umbrella IN ITEMS arborium/arborium.h formweave/formweave.h)
  if(NOT umbrella IN_LIST headers)
    message(FATAL_ERROR "${umbrella} is not installed")
  endif()
endforeach()
file(WRITE "${WORK_DIR}/app/headers.cpp" "${includes}")
run("compiling every installed header" "${CXX}" -std=c++17 -Wall -Wextra -Wshadow -Werror
  -fsyntax-only headers.cpp ${flags})

# ---- run --------------------------------------------------------------------------------------

set(quiet_environment --unset=ARBHOME --unset=FORMWEAVE_SKINS_DIR --unset=DISPLAY
  QT_QPA_PLATFORM=offscreen QT_FONT_DPI=96 LIBGL_ALWAYS_SOFTWARE=1
  "FONTCONFIG_FILE=${FONTCONFIG}" "XDG_RUNTIME_DIR=${WORK_DIR}/runtime")
file(CHMOD "${WORK_DIR}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# The program shows its dialog until somebody closes it, so it is ended after some seconds.
foreach(program IN ITEMS build/app ./app-pc)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env ${quiet_environment} timeout 4 "${program}"
    WORKING_DIRECTORY "${WORK_DIR}/app"
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0 AND NOT status EQUAL 124)
    message(FATAL_ERROR "${program} ended with ${status}:\n${out}\n${err}")
  endif()
  if(NOT err STREQUAL "")
    message(FATAL_ERROR "${program} complained:\n${err}")
  endif()
  message(STATUS "${program} ran (${status})")
endforeach()

# The installed program finds its skins without being told.
set(formweave "${prefix}/bin/formweave")
run("formweave --version" "${formweave}" --version)
run("formweave check" "${CMAKE_COMMAND}" -E env ${quiet_environment}
  "${formweave}" check ${dialogs})
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env ${quiet_environment}
    "${formweave}" render examples/render-settings.arb -o panel.png --3d --skin dark
  WORKING_DIRECTORY "${WORK_DIR}/app"
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0 OR NOT err STREQUAL "" OR NOT EXISTS "${WORK_DIR}/app/panel.png")
  message(FATAL_ERROR "formweave render (${status}):\n${out}\n${err}")
endif()
