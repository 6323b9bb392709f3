# Where things are installed, and the CMake package by which other projects find them.

include_guard(GLOBAL)
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# A bundle is no library to link: its folder is the same on every system, and the tool looks there.
set(TESSEL_INSTALL_BUNDLEDIR lib)
set(TESSEL_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/${PROJECT_NAME}")
set(TESSEL_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/${PROJECT_NAME}")

# Lets a target that is installed into a folder find this project's libraries from where it lies, so
# that an installation can be moved. CMAKE_INSTALL_RPATH, where it is given, stands instead.
function(tessel_find_libraries_from target folder)
  if(DEFINED CMAKE_INSTALL_RPATH)
    return()
  endif()
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
  file(RELATIVE_PATH way "${folder}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  string(REGEX REPLACE "/$" "" origin "$ORIGIN/${way}")
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${origin}")
  if(CMAKE_INSTALL_LIBDIR STREQUAL "lib" AND TESSEL_SERVICE_RUNTIME_CHOSEN STREQUAL "embedded")
    # The build's folders lie like those of the installation. A path that CMake has to replace in the
    # installation ends with an empty entry, which makes the loader search the current folder.
    # CppMicroServices lies elsewhere, and only the build's own paths lead there.
    set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
  endif()
endfunction()

# For what the export set `tessel` holds.
function(tessel_install_package)
  install(EXPORT tessel NAMESPACE tessel:: FILE ${PROJECT_NAME}Targets.cmake
          DESTINATION "${TESSEL_INSTALL_CMAKEDIR}")

  set(bundle "${TESSEL_INSTALL_BUNDLEDIR}/$<TARGET_FILE_NAME:tessel_build_json_controls>")
  set(config "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}Config.cmake")
  configure_package_config_file(
    "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${PROJECT_NAME}Config.cmake.in" "${config}.in"
    INSTALL_DESTINATION "${TESSEL_INSTALL_CMAKEDIR}" PATH_VARS bundle)
  file(GENERATE OUTPUT "${config}" INPUT "${config}.in") # for the bundle's file name
  set(version "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}ConfigVersion.cmake")
  write_basic_package_version_file("${version}" COMPATIBILITY SameMinorVersion)
  install(FILES "${config}" "${version}"
                "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/DeclarativeServices.cmake"
          DESTINATION "${TESSEL_INSTALL_CMAKEDIR}")
endfunction()

# The documents keep their folders, so that the links between them hold.
function(tessel_install_documents)
  install(FILES README.md CHANGELOG.md LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
  install(DIRECTORY docs examples DESTINATION "${CMAKE_INSTALL_DOCDIR}")
endfunction()
