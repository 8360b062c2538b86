#include "CLI/Output.h"

#include <cstdio>
#include <string>

namespace tarnwell {

namespace {

void write(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

}  // namespace

void print(std::string_view text) { write(stdout, std::string(text) + "\n"); }

void printError(std::string_view text) { write(stderr, text); }

}  // namespace tarnwell
