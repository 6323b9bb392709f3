# Finds the bundle with CppMicroServices' Declarative Services, which lies in its library folder.
#
#   tessel_find_declarative_services(<variable>)
#
# The package CppMicroServices has to be found before. Empty when there is no such bundle.

include_guard(GLOBAL)

function(tessel_find_declarative_services variable)
  get_target_property(library CppMicroServices LOCATION)
  get_filename_component(folder "${library}" DIRECTORY)
  find_file(TESSEL_DECLARATIVE_SERVICES
            "${CMAKE_SHARED_LIBRARY_PREFIX}DeclarativeServices${CMAKE_SHARED_LIBRARY_SUFFIX}"
            HINTS "${folder}" "${folder}/../bin"
            DOC "The bundle with CppMicroServices' Declarative Services")
  mark_as_advanced(TESSEL_DECLARATIVE_SERVICES)
  if(TESSEL_DECLARATIVE_SERVICES)
    set(${variable} "${TESSEL_DECLARATIVE_SERVICES}" PARENT_SCOPE)
  else()
    set(${variable} "" PARENT_SCOPE)
  endif()
endfunction()
