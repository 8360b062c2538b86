/// Nothing: the headers that are compiled for all tests need a target of their own (tests/CMakeLists.txt).
