# What every target of the project shares: the language, warnings, sanitizers, and the helpers
# that make targets from folders. Sources are found by folder: a new file is built at the next
# call of the build, with no list to edit; a folder without files makes no target.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Programs and libraries of the build tree stand together, so that a program finds its libraries
# and a person finds the programs.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

# ccache, where present, unless the caller chose a launcher. It may cache what uses precompiled
# headers only when told that their time stamps do not matter.
if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(FORMWEAVE_CCACHE ccache)
  mark_as_advanced(FORMWEAVE_CCACHE)
  if(FORMWEAVE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
      "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
      "${FORMWEAVE_CCACHE}")
  endif()
endif()

# Below this directory skins stand as below $ARBHOME, so that one rule finds both.
set(FORMWEAVE_INSTALL_SKINDIR "${CMAKE_INSTALL_DATADIR}/formweave/data/Formweave/skins")

# ---- flags of our own code -----------------------------------------------------------------

add_library(formweave_flags INTERFACE)
target_compile_features(formweave_flags INTERFACE cxx_std_17)
target_compile_options(formweave_flags INTERFACE
  -Wall -Wextra -Wshadow $<$<BOOL:${FORMWEAVE_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(formweave_flags INTERFACE -fpch-preprocess)
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # So that ccache may keep what clang makes from a precompiled header.
  target_compile_options(formweave_flags INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
endif()

if(FORMWEAVE_SANITIZE)
  add_compile_options(-fsanitize=${FORMWEAVE_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${FORMWEAVE_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Types are hidden in the libraries, and this check compares them by address.
    add_compile_options(-fno-sanitize=function)
  endif()
endif()
if(FORMWEAVE_BUILD_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "FORMWEAVE_BUILD_FUZZ needs clang; configure with "
      "-DCMAKE_CXX_COMPILER=clang++-14")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()

# ---- helpers -------------------------------------------------------------------------------

# fw_add_module(TARGET FOLDER [AUTOMOC] [LINK libraries...] [DEFINE name...]
#               [INCLUDE folders...] [SYSTEM folders...] [HEADERS folders...])
# An object library of the sources under FOLDER; no target when there are none.
# INCLUDE folders are ours, SYSTEM folders are of others; HEADERS are folders whose headers moc
# must see.
function(fw_add_module target folder)
  cmake_parse_arguments(ARG "AUTOMOC" "" "LINK;DEFINE;HEADERS;INCLUDE;SYSTEM" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp" "${folder}/*.h")
  set(units ${sources})
  list(FILTER units INCLUDE REGEX "\\.cpp$")
  if(NOT units)
    return()
  endif()
  set(headers)
  foreach(dir IN LISTS ARG_HEADERS)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS "${dir}/*.h")
    list(APPEND headers ${found})
  endforeach()
  add_library(${target} OBJECT ${sources} ${headers})
  target_link_libraries(${target} PUBLIC ${ARG_LINK} PRIVATE formweave_flags)
  target_include_directories(${target} PRIVATE ${ARG_INCLUDE})
  target_include_directories(${target} SYSTEM PRIVATE ${ARG_SYSTEM})
  target_compile_definitions(${target} PRIVATE ${ARG_DEFINE})
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    AUTOMOC ${ARG_AUTOMOC})
endfunction()

# fw_add_programs(FOLDER [PREFIX prefix] [LINK libraries...])
# One program for each .cpp directly in FOLDER, named after it; target "examples" and the like
# builds all of them. A program that includes nothing of formweave stands on the layer alone.
function(fw_add_programs folder)
  cmake_parse_arguments(ARG "" "PREFIX" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
  foreach(source IN LISTS sources)
    get_filename_component(name "${source}" NAME_WE)
    set(target ${ARG_PREFIX}${name})
    add_executable(${target} "${source}")
    file(STRINGS "${source}" dialogs REGEX "#include (<formweave/|\")")
    set(library Arborium::Arborium)
    if(dialogs)
      set(library Formweave::Formweave)
    endif()
    target_link_libraries(${target} PRIVATE ${library} formweave_flags
      formweave_sanitizer_defaults ${ARG_LINK})
    target_compile_definitions(${target} PRIVATE
      FORMWEAVE_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
      FORMWEAVE_SKIN_DIR="${PROJECT_SOURCE_DIR}/data/Formweave/skins")
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    list(APPEND targets ${target})
  endforeach()
  if(targets)
    add_custom_target(formweave_${folder} DEPENDS ${targets})
  endif()
endfunction()

# The command-line program, from tools/formweave.
function(fw_add_tool)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/tools/formweave/*.cpp" "${PROJECT_SOURCE_DIR}/tools/formweave/*.h")
  set(units ${sources})
  list(FILTER units INCLUDE REGEX "\\.cpp$")
  if(NOT units)
    return()
  endif()
  add_executable(formweave-tool ${sources})
  target_link_libraries(formweave-tool PRIVATE Formweave::Formweave formweave_flags
    formweave_sanitizer_defaults)
  # The program finds its skins below the installed prefix, or in the sources when it runs from
  # the build tree.
  target_compile_definitions(formweave-tool PRIVATE
    FORMWEAVE_VERSION="${PROJECT_VERSION}"
    FORMWEAVE_SKIN_DIR="${PROJECT_SOURCE_DIR}/data/Formweave/skins"
    FORMWEAVE_SKIN_DIR_FROM_BIN="../${FORMWEAVE_INSTALL_SKINDIR}")
  # A program of the top directory with moc would have the libraries' objects listed before their
  # own moc files are known.
  set_target_properties(formweave-tool PROPERTIES
    OUTPUT_NAME formweave
    INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}"
    AUTOMOC OFF)
endfunction()

# One libFuzzer program for each fuzz/<name>.cpp, named fuzz_<name>; its seeds lie in
# fuzz/seeds/<name>/. Headers in fuzz/ are shared by them.
function(fw_add_fuzz_targets)
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/fuzz/*.cpp")
  foreach(source IN LISTS sources)
    get_filename_component(name "${source}" NAME_WE)
    string(REGEX REPLACE "^fuzz_" "" name "${name}")
    add_executable(fuzz_${name} "${source}")
    target_link_libraries(fuzz_${name} PRIVATE Formweave::Formweave formweave_flags
      formweave_sanitizer_defaults)
    target_compile_definitions(fuzz_${name} PRIVATE
      FORMWEAVE_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
      FORMWEAVE_SKIN_DIR="${PROJECT_SOURCE_DIR}/data/Formweave/skins")
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(fuzz_${name} PROPERTIES
      RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzz")
    list(APPEND targets fuzz_${name})
  endforeach()
  if(targets)
    add_custom_target(formweave_fuzz DEPENDS ${targets})
  endif()
endfunction()

# What a program under a sanitizer starts with: its options and the known leaks of others.
# Stacks of allocations stay the short ones: whole ones hang as soon as the software rasteriser
# registers the code that it compiles. Empty in a plain build.
add_library(formweave_sanitizer_defaults INTERFACE)
if(FORMWEAVE_SANITIZE)
  set(supp "${PROJECT_SOURCE_DIR}/tests/support/lsan.supp")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${supp}")
  file(READ "${supp}" FORMWEAVE_LSAN_SUPPRESSIONS)
  configure_file("${PROJECT_SOURCE_DIR}/tests/support/sanitizer_defaults.cpp.in"
    "${PROJECT_BINARY_DIR}/generated/sanitizer_defaults.cpp" @ONLY)
  add_library(formweave_sanitizer_objects OBJECT
    "${PROJECT_BINARY_DIR}/generated/sanitizer_defaults.cpp")
  target_sources(formweave_sanitizer_defaults INTERFACE
    $<TARGET_OBJECTS:formweave_sanitizer_objects>)
endif()
