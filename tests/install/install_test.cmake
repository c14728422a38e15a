# Installs into an empty prefix, moves that prefix, and builds the programs of the README against
# it as a stranger would: with find_package, and with pkg-config. Then runs them, and the
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

# ---- the README's programs -------------------------------------------------------------------

# The first one is main.cpp, a dialog in a window; the second one shows it in a scene.
file(READ "${SOURCE_DIR}/README.md" rest)
foreach(source IN ITEMS main.cpp scene.cpp)
  string(FIND "${rest}" "```cpp\n" begin)
  if(begin EQUAL -1)
    message(FATAL_ERROR "README.md holds no ```cpp block for ${source}")
  endif()
  math(EXPR begin "${begin} + 7")
  string(SUBSTRING "${rest}" ${begin} -1 rest)
  string(FIND "${rest}" "\n```" end)
  if(end EQUAL -1)
    message(FATAL_ERROR "a ```cpp block of README.md has no end")
  endif()
  string(SUBSTRING "${rest}" 0 ${end} program)
  math(EXPR end "${end} + 4")
  string(SUBSTRING "${rest}" ${end} -1 rest)
  file(WRITE "${WORK_DIR}/app/${source}" "${program}\n")
endforeach()
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
add_executable(scene scene.cpp)
target_link_libraries(scene Formweave::Formweave)
]])
# Where the programs expect dialog files and skins.
file(COPY "${SOURCE_DIR}/examples" "${SOURCE_DIR}/data" DESTINATION "${WORK_DIR}/app")
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

# A program shows its dialog until somebody closes it, so it is ended after some seconds.
foreach(program IN ITEMS build/app build/scene ./app-pc)
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
