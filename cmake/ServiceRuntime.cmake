# Which service runtime everything is built for: CppMicroServices, or the embedded one.
#
# Defines
#   TESSEL_SERVICE_RUNTIME          cache: auto, embedded or cppmicroservices
#   TESSEL_SERVICE_RUNTIME_CHOSEN   embedded or cppmicroservices
#   tessel::bundle_api              the headers, and what a bundle links
#   tessel::runtime                 what a host program links. Its compile definition
#                                   TESSEL_RUNTIME_BUNDLES lists the bundles that the program has to
#                                   install and start before any other, separated by ':' (';' on
#                                   Windows); empty if there are none

include_guard(GLOBAL)
include("${CMAKE_CURRENT_LIST_DIR}/Installation.cmake")

set(TESSEL_SERVICE_RUNTIME auto CACHE STRING
    "Service runtime: cppmicroservices, embedded, or auto (CppMicroServices if it is found)")
set_property(CACHE TESSEL_SERVICE_RUNTIME PROPERTY STRINGS auto embedded cppmicroservices)
if(NOT TESSEL_SERVICE_RUNTIME MATCHES "^(auto|embedded|cppmicroservices)$")
  message(FATAL_ERROR "TESSEL_SERVICE_RUNTIME is \"${TESSEL_SERVICE_RUNTIME}\"; "
                      "it has to be auto, embedded or cppmicroservices")
endif()

# The text by which a bundle linked for the embedded runtime and that runtime know each other.
set(TESSEL_EMBEDDED_RUNTIME_MARKER "embedded_v1")

set(TESSEL_SERVICE_RUNTIME_CHOSEN embedded)
if(NOT TESSEL_SERVICE_RUNTIME STREQUAL "embedded")
  find_package(CppMicroServices CONFIG QUIET COMPONENTS Framework ServiceComponent)
  if(CppMicroServices_FOUND)
    include("${CMAKE_CURRENT_LIST_DIR}/DeclarativeServices.cmake")
    tessel_find_declarative_services(declarative_services)
  endif()
  if(CppMicroServices_FOUND AND declarative_services)
    set(TESSEL_SERVICE_RUNTIME_CHOSEN cppmicroservices)
  elseif(TESSEL_SERVICE_RUNTIME STREQUAL "cppmicroservices")
    message(FATAL_ERROR
      "TESSEL_SERVICE_RUNTIME is cppmicroservices, but CMake finds no CppMicroServices with the "
      "components Framework and ServiceComponent and the bundle DeclarativeServices. Add its "
      "folder to CMAKE_PREFIX_PATH, or set TESSEL_SERVICE_RUNTIME to embedded")
  endif()
endif()
if(TESSEL_SERVICE_RUNTIME_CHOSEN STREQUAL "embedded" AND (WIN32 OR APPLE))
  message(FATAL_ERROR "the embedded service runtime reads ELF shared libraries; on this system "
                      "install CppMicroServices and add its folder to CMAKE_PREFIX_PATH")
endif()

add_library(tessel_bundle_api INTERFACE)
add_library(tessel::bundle_api ALIAS tessel_bundle_api)
set_target_properties(tessel_bundle_api PROPERTIES EXPORT_NAME bundle_api)
add_library(tessel_runtime INTERFACE)
add_library(tessel::runtime ALIAS tessel_runtime)
set_target_properties(tessel_runtime PROPERTIES EXPORT_NAME runtime)

if(TESSEL_SERVICE_RUNTIME_CHOSEN STREQUAL "embedded")
  message(STATUS "Service runtime: embedded")
  cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH root)
  target_include_directories(
    tessel_bundle_api
    INTERFACE "$<BUILD_INTERFACE:${root}/src/service_runtime/include>"
              "$<INSTALL_INTERFACE:${TESSEL_INSTALL_INCLUDEDIR}/service_runtime>")
  target_link_libraries(tessel_runtime INTERFACE tessel::service_runtime)
  target_compile_definitions(tessel_runtime INTERFACE TESSEL_RUNTIME_BUNDLES="")
else()
  message(STATUS "Service runtime: CppMicroServices ${CppMicroServices_VERSION} "
                 "(${CppMicroServices_DIR})")
  # Imported targets: their headers count as system headers.
  target_link_libraries(tessel_bundle_api INTERFACE CppMicroServices usServiceComponent)
  target_link_libraries(tessel_runtime INTERFACE CppMicroServices usServiceComponent)
  # Whoever uses an installation has a path of their own.
  target_compile_definitions(
    tessel_runtime
    INTERFACE "$<BUILD_INTERFACE:TESSEL_RUNTIME_BUNDLES=\"${declarative_services}\">")
  if(UNIX AND NOT APPLE)
    # That bundle needs further libraries of its folder and may not say where they are. Of the two
    # kinds of search path that a program can have, only the older one serves what it loads later.
    target_link_options(tessel_runtime INTERFACE LINKER:--disable-new-dtags)
  endif()
endif()
