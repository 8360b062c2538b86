#include "Platform/Desktop/LogFollower.h"

namespace tarnwell {

struct LogFollower::Link {};

LogFollower::LogFollower(Query /*query*/, Heard heard) { heard({.access = LogAccess::notSupported}); }

LogFollower::~LogFollower() = default;

}  // namespace tarnwell
