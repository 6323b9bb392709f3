# Turns a library into a bundle: a shared library that carries its manifest and exports its entry
# points, and nothing else.
#
#   tessel_add_bundle(<target> MANIFEST <manifest.json> [SOURCES <source>...])
#
# Makes the module library <target> from the sources, or adds to a library target that is there. The
# entry points are read from the manifest: NewInstance_ and DeleteInstance_ of each component, and
# the bundle-context setter. A change of the manifest leads to a new configuration and build.
#
# The manifest becomes a zip archive in the library: on ELF systems the section .us_resources, which
# `strip` leaves alone, on Windows a resource. A rebuild gives the same bytes.

include_guard(GLOBAL)
include("${CMAKE_CURRENT_LIST_DIR}/ServiceRuntime.cmake")
find_package(Python3 REQUIRED COMPONENTS Interpreter)

if(WIN32)
  enable_language(RC)
elseif(APPLE)
  message(FATAL_ERROR "bundles are built for ELF systems and for Windows")
else()
  enable_language(ASM)
endif()

# Reads `symbolic_name` and the list `entry_points` from the manifest.
function(tessel_read_bundle_manifest manifest symbolic_name entry_points)
  file(READ "${manifest}" json)
  string(JSON name ERROR_VARIABLE error GET "${json}" "bundle.symbolic_name")
  if(error OR NOT name MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
    message(FATAL_ERROR "${manifest}: \"bundle.symbolic_name\" is no identifier: ${name} ${error}")
  endif()
  set(symbols "_us_set_bundle_context_instance_${name}")
  string(JSON count ERROR_VARIABLE error LENGTH "${json}" scr components)
  if(error)
    message(FATAL_ERROR "${manifest}: \"scr\": \"components\" cannot be read: ${error}")
  endif()
  if(count GREATER 0)
    math(EXPR last "${count} - 1")
    foreach(index RANGE ${last})
      string(JSON class GET "${json}" scr components ${index} implementation-class)
      string(REPLACE "::" "_" class "${class}")
      list(APPEND symbols "NewInstance_${class}" "DeleteInstance_${class}")
    endforeach()
    list(REMOVE_DUPLICATES symbols)
  endif()
  set(${symbolic_name} "${name}" PARENT_SCOPE)
  set(${entry_points} "${symbols}" PARENT_SCOPE)
endfunction()

function(tessel_add_bundle target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "MANIFEST" "SOURCES")
  if(NOT arg_MANIFEST OR arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "use: tessel_add_bundle(<target> MANIFEST <file> [SOURCES <source>...])")
  endif()
  get_filename_component(manifest "${arg_MANIFEST}" ABSOLUTE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${manifest}")
  tessel_read_bundle_manifest("${manifest}" symbolic_name entry_points)

  if(TARGET ${target})
    target_sources(${target} PRIVATE ${arg_SOURCES})
  else()
    add_library(${target} MODULE ${arg_SOURCES})
  endif()
  target_link_libraries(${target} PRIVATE tessel::bundle_api)

  # The archive: one folder named like the bundle, with the manifest in it.
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}.bundle")
  set(staged "${symbolic_name}/manifest.json")
  configure_file("${manifest}" "${folder}/${staged}" COPYONLY)
  set(archive "${folder}/resources.zip")
  set(packer "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/pack_resources.py")
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND Python3::Interpreter "${packer}" "${archive}" "${folder}" "${staged}"
    DEPENDS "${folder}/${staged}" "${packer}"
    COMMENT "Packing the manifest of ${target}"
    VERBATIM)

  if(WIN32)
    tessel_embed_archive_windows(${target} "${folder}" "${archive}")
  else()
    tessel_embed_archive_elf(${target} "${folder}" "${archive}" "${entry_points}")
  endif()
endfunction()

# A resource named US_RESOURCES of type 300 is where CppMicroServices looks for the archive. Exports
# come from US_ABI_EXPORT at the functions: on Windows nothing is exported that does not say so.
function(tessel_embed_archive_windows target folder archive)
  file(CONFIGURE OUTPUT "${folder}/resources.rc" CONTENT "US_RESOURCES 300 \"${archive}\"\n")
  set_source_files_properties("${folder}/resources.rc" PROPERTIES OBJECT_DEPENDS "${archive}")
  target_sources(${target} PRIVATE "${folder}/resources.rc" "${archive}")
endfunction()

function(tessel_embed_archive_elf target folder archive entry_points)
  # "a" puts a section into memory and so out of the reach of `strip`; "R" keeps it when the linker
  # drops sections that nothing refers to.
  set(assembly ".section .us_resources, \"aR\", %progbits\n.incbin \"${archive}\"\n")
  if(TESSEL_SERVICE_RUNTIME_CHOSEN STREQUAL "embedded")
    string(APPEND assembly ".section .tessel_runtime, \"aR\", %progbits\n"
                           ".ascii \"${TESSEL_EMBEDDED_RUNTIME_MARKER}\"\n")
  endif()
  string(APPEND assembly ".section .note.GNU-stack, \"\", %progbits\n")
  file(CONFIGURE OUTPUT "${folder}/resources.S" CONTENT "${assembly}" @ONLY)
  set_source_files_properties("${folder}/resources.S" PROPERTIES OBJECT_DEPENDS "${archive}")
  if(CMAKE_ASM_COMPILER_ID MATCHES "Clang")
    # The target's C++ options are used for this file, too; clang would warn about unused ones.
    set_source_files_properties("${folder}/resources.S" PROPERTIES
                                COMPILE_OPTIONS -Wno-unused-command-line-argument)
  endif()
  target_sources(${target} PRIVATE "${folder}/resources.S")

  # Hidden visibility is not enough: the libraries' own weak template symbols would be exported.
  set(globals "")
  foreach(symbol IN LISTS entry_points)
    string(APPEND globals "    ${symbol};\n")
  endforeach()
  file(CONFIGURE OUTPUT "${folder}/exports.map"
       CONTENT "{\n  global:\n${globals}  local:\n    *;\n};\n" @ONLY)
  target_link_options(${target} PRIVATE "LINKER:--version-script=${folder}/exports.map")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${folder}/exports.map")
endfunction()
