# Homebrew keeps some libraries out of CMake's search path, because macOS has its own of the same name. This
# puts their folders before CMake's. Without Homebrew, name the folders in CMAKE_PREFIX_PATH.
find_program(BREW brew)
if(BREW)
  foreach(FORMULA openssl@3 icu4c)
    execute_process(
      COMMAND ${BREW} --prefix ${FORMULA}
      OUTPUT_VARIABLE PREFIX OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET
      RESULT_VARIABLE STATUS)
    if(STATUS EQUAL 0)
      list(APPEND CMAKE_PREFIX_PATH ${PREFIX})
    endif()
  endforeach()
endif()
