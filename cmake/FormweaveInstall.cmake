# cmake --install: libraries, headers, the program, skins, and what lets others find them:
# CMake packages (Arborium, and Formweave which brings it) and pkg-config files.

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake")

install(TARGETS arborium EXPORT ArboriumTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS formweave EXPORT FormweaveTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
if(TARGET formweave-tool)
  install(TARGETS formweave-tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

foreach(include IN ITEMS "${PROJECT_SOURCE_DIR}/arborium/include/arborium"
                         "${PROJECT_SOURCE_DIR}/include/formweave")
  if(EXISTS "${include}")
    install(DIRECTORY "${include}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
      FILES_MATCHING PATTERN "*.h")
  endif()
endforeach()

if(EXISTS "${PROJECT_SOURCE_DIR}/data/Formweave/skins")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/data/Formweave/skins/"
    DESTINATION "${FORMWEAVE_INSTALL_SKINDIR}")
endif()

foreach(package IN ITEMS Arborium Formweave)
  install(EXPORT ${package}Targets NAMESPACE ${package}::
    DESTINATION "${package_dir}/${package}")
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/${package}Config.cmake.in"
    "${PROJECT_BINARY_DIR}/generated/${package}Config.cmake"
    INSTALL_DESTINATION "${package_dir}/${package}"
    PATH_VARS FORMWEAVE_INSTALL_SKINDIR)
  write_basic_package_version_file("${PROJECT_BINARY_DIR}/generated/${package}ConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
  install(FILES "${PROJECT_BINARY_DIR}/generated/${package}Config.cmake"
    "${PROJECT_BINARY_DIR}/generated/${package}ConfigVersion.cmake"
    DESTINATION "${package_dir}/${package}")
endforeach()

# A pkg-config file names its prefix relative to itself, so an installed tree can be moved.
file(RELATIVE_PATH FORMWEAVE_PC_TO_PREFIX
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" FORMWEAVE_PC_TO_PREFIX "${FORMWEAVE_PC_TO_PREFIX}")
foreach(name IN ITEMS arborium formweave)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in"
    "${PROJECT_BINARY_DIR}/generated/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/generated/${name}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
