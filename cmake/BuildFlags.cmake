# One interface target with the flags that every target of the project is compiled with.
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
  # With the sanitizers' own code in place GCC 12 sees members of a std::variant read before they are written, and
  # short texts copied beyond their end; the sanitizers themselves would tell if they were.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tarnwell_flags INTERFACE
      -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
  endif()
endif()

# GCC's thread sanitizer does not model the fences in Asio's handlers, and GCC warns of it. What they order
# is ordered by the locks of Asio's queue as well.
if(TARNWELL_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tarnwell_flags INTERFACE -Wno-tsan)
endif()

# The same source gives the same bytes wherever it lies: no path of the build machine enters a release.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(tarnwell_flags INTERFACE
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()

# The release build is hardened: checked libc calls, guarded stack and control flow, read-only
# relocations, position-independent executable.
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
