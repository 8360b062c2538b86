#pragma once

#include "Core/AppLogger.h"

namespace tarnwell::fuzz {

/// Keeps log entries of the run out of the system's log: nobody listens at this address.
class SilentLog {
 public:
  SilentLog() : before_(AppLogger::replaceSystemLog(nowhere_)) {}
  ~SilentLog() { AppLogger::replaceSystemLog(before_); }
  SilentLog(const SilentLog&) = delete;
  SilentLog& operator=(const SilentLog&) = delete;

 private:
  SystemLog nowhere_{"fuzzing", "/nowhere/tarnwell-fuzzing"};
  const SystemLog& before_;
};

}  // namespace tarnwell::fuzz
