# How all of this project's own code is compiled.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT MSVC)
  # A library calls its own exported functions directly and may inline them; calls to other libraries
  # go without the procedure linkage table.
  add_compile_options(-fno-semantic-interposition -fno-plt)
endif()
if(UNIX AND NOT APPLE)
  # Nor are the addresses of its own functions, in its tables of virtual functions, looked up by name.
  add_link_options(LINKER:-Bsymbolic-functions)
endif()

# Without optimisation simdjson adds checks of its callers, with memory whose allocation it does not check.
add_compile_definitions(SIMDJSON_DEVELOPMENT_CHECKS=0)

add_library(tessel_warnings INTERFACE)
if(MSVC)
  target_compile_options(tessel_warnings INTERFACE /W4 /permissive- /utf-8
                         # Exported classes have members and bases of the standard library.
                         /wd4251 /wd4275)
  if(TESSEL_WARNINGS_AS_ERRORS)
    target_compile_options(tessel_warnings INTERFACE /WX)
  endif()
else()
  target_compile_options(tessel_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(TESSEL_WARNINGS_AS_ERRORS)
    target_compile_options(tessel_warnings INTERFACE -Werror)
  endif()
endif()

if(TESSEL_SANITIZE)
  add_compile_options(-fsanitize=${TESSEL_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TESSEL_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With these checks built in, g++ reports uninitialized uses where there are none.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  if(TESSEL_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()
