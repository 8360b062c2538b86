#pragma once

/// The words of the command line, for code that is not `main`.

extern "C" char*** _NSGetArgv(void);
