#pragma once

#include <gtest/gtest.h>

#include <string>

namespace tarnwell {

/// Names each instance of a table test after the field `name` of its row.
constexpr auto rowName = [](const auto& instance) -> std::string { return instance.param.name; };

}  // namespace tarnwell
