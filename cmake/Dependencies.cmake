# Every library of the program. docs/architecture.md gives the reason for each.
if(APPLE)
  include(Homebrew)
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
if(POLICY CMP0167)
  cmake_policy(SET CMP0167 NEW)  # newer CMake lets Boost say how Boost is found
endif()
find_package(Boost 1.81 REQUIRED)  # Asio, headers only
find_package(OpenSSL 3.0 REQUIRED)
find_package(ICU 72 REQUIRED COMPONENTS i18n uc data)
find_package(nlohmann_json 3.11 REQUIRED)

if(NOT APPLE)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(LIBSYSTEMD REQUIRED IMPORTED_TARGET libsystemd>=246)
endif()

if(TARNWELL_APP)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets LinguistTools)
  if(NOT APPLE)
    find_package(Qt6 6.4 REQUIRED COMPONENTS DBus)  # the desktop's light or dark scheme
  endif()
  if(TARNWELL_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
  endif()
endif()
