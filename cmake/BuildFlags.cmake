# One interface target with the compiler flags of every target of the project.
add_library(tarnwell_flags INTERFACE)
target_compile_options(tarnwell_flags INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual)

option(TARNWELL_WERROR "Treat warnings as errors" OFF)
if(TARNWELL_WERROR)
  target_compile_options(tarnwell_flags INTERFACE -Werror)
endif()

if(TARNWELL_SANITIZE)
  target_compile_options(tarnwell_flags INTERFACE
    -fsanitize=${TARNWELL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -D_GLIBCXX_ASSERTIONS)
  target_link_options(tarnwell_flags INTERFACE -fsanitize=${TARNWELL_SANITIZE})
  # With the sanitizers' code, GCC 12 warns that members of a std::variant are read before they are written,
  # and that short texts are copied beyond their end. The sanitizers themselves would report such mistakes.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tarnwell_flags INTERFACE
      -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
  endif()
endif()

# GCC's thread sanitizer does not model the fences in Asio's handlers, and GCC warns about that. The locks of
# Asio's queue give the same order as the fences.
if(TARNWELL_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tarnwell_flags INTERFACE -Wno-tsan)
endif()

# The same source gives the same bytes everywhere: a release contains no path of the build machine.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(tarnwell_flags INTERFACE
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()

# The release build is hardened: checked libc calls, guarded stack and control flow, read-only relocations,
# position-independent executable.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  target_compile_options(tarnwell_flags INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -D_GLIBCXX_ASSERTIONS -fstack-protector-strong)
  if(NOT APPLE)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
      target_compile_options(tarnwell_flags INTERFACE -fcf-protection -fstack-clash-protection)
    endif()
    target_link_options(tarnwell_flags INTERFACE -Wl,-z,relro,-z,now -Wl,--as-needed)
  endif()
endif()

# Most files include these, and reading them takes longer than the rest of such a file.
set(STANDARD_HEADERS
  <algorithm> <chrono> <filesystem> <functional> <memory> <optional> <string> <string_view> <utility> <vector>)
