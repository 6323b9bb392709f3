# Turns a library into a bundle: a shared library that carries its manifest and exports its entry
# points, and nothing else.
#
#   tessel_add_bundle(<target> MANIFEST <manifest.json> [SOURCES <source>...]
#                     [COMPONENT_HEADERS <header>...])
#
# Makes the module library <target> from the sources, or adds to a library target that is there. What
# follows from the manifest is made anew whenever it changes: the archive that carries it, the list of
# the exports (NewInstance_ and DeleteInstance_ of each component, and the bundle-context setter), and
# the entry points themselves, for a source that includes "entry_points.inc". With COMPONENT_HEADERS,
# a class there that derives from another one and is not named by the manifest exactly once is an
# error, and so is a second component of the same name.
#
# The archive lies in the library: on ELF systems in the section .us_resources, which `strip` leaves
# alone, on Windows in a resource. A rebuild gives the same bytes.

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

function(tessel_add_bundle target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "MANIFEST" "SOURCES;COMPONENT_HEADERS")
  if(NOT arg_MANIFEST OR arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "use: tessel_add_bundle(<target> MANIFEST <file> [SOURCES <source>...] "
                        "[COMPONENT_HEADERS <header>...])")
  endif()
  if(TARGET ${target})
    target_sources(${target} PRIVATE ${arg_SOURCES})
  else()
    add_library(${target} MODULE ${arg_SOURCES})
  endif()
  target_link_libraries(${target} PRIVATE tessel::bundle_api)

  set(headers "")
  foreach(file IN LISTS arg_MANIFEST arg_COMPONENT_HEADERS)
    get_filename_component(file "${file}" ABSOLUTE)
    list(APPEND headers "${file}")
  endforeach()
  list(POP_FRONT headers manifest)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}.bundle")
  set(maker "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/make_bundle.py")
  set(made "${folder}/resources.zip" "${folder}/exports.map" "${folder}/entry_points.inc")
  add_custom_command(
    OUTPUT ${made}
    COMMAND Python3::Interpreter "${maker}" "${manifest}" "${folder}" ${headers}
    DEPENDS "${manifest}" ${headers} "${maker}"
    COMMENT "Making the archive and the entry points of ${target}"
    VERBATIM)
  target_sources(${target} PRIVATE ${made})
  target_include_directories(${target} PRIVATE "${folder}")

  if(WIN32)
    tessel_embed_archive_windows(${target} "${folder}")
  else()
    tessel_embed_archive_elf(${target} "${folder}")
  endif()
endfunction()

# A resource named US_RESOURCES of type 300 is where CppMicroServices looks for the archive. Exports
# come from US_ABI_EXPORT at the functions: on Windows nothing is exported that does not say so.
function(tessel_embed_archive_windows target folder)
  set(archive "${folder}/resources.zip")
  file(CONFIGURE OUTPUT "${folder}/resources.rc" CONTENT "US_RESOURCES 300 \"${archive}\"\n")
  set_source_files_properties("${folder}/resources.rc" PROPERTIES OBJECT_DEPENDS "${archive}")
  target_sources(${target} PRIVATE "${folder}/resources.rc")
endfunction()

function(tessel_embed_archive_elf target folder)
  set(archive "${folder}/resources.zip")
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
  target_link_options(${target} PRIVATE "LINKER:--version-script=${folder}/exports.map")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${folder}/exports.map")
endfunction()
