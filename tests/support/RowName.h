#pragma once

#include <gtest/gtest.h>

#include <string>

namespace tarnwell {

/// Names the instances of a table of rows after the field `name` of each row.
constexpr auto rowName = [](const auto& instance) -> std::string { return instance.param.name; };

}  // namespace tarnwell
