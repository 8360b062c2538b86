/// The entry point.

#include "CLI/CLIRunner.h"
#include "Platform/PrivateMemory.h"
#include "Platform/Process.h"

int main(int count, char* arguments[]) {
  tarnwell::keepMemoryPrivate();
  tarnwell::prepareProcess();
  return tarnwell::CLIRunner::run({arguments + (count > 0 ? 1 : 0), arguments + count});
}
