/// The entry point of the companion app.

#include <cstdlib>

#include "App/Application.h"
#include "Platform/PrivateMemory.h"
#include "Platform/Process.h"

int main(int argc, char** argv) {
  tarnwell::keepMemoryPrivate();
  tarnwell::prepareProcess();
  const int status = tarnwell::runApplication(argc, argv);
  // Threads that nobody waits for may still run, so no static object is destroyed.
  std::_Exit(status);
}
