#pragma once

/// The readers whose time must not grow faster than their input. Each has inputs that look like mail, and
/// inputs that are hard for a careless reader.
///
/// Threads: one thread at a time uses a shape.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::bench {

struct Shape {
  std::string reader;
  std::string name;
  /// Makes an input of about this many bytes.
  std::function<std::string(std::size_t)> input;
  /// Reads the input once. The result depends on what was read.
  std::function<std::size_t(std::string_view)> read;
  /// The longest input that the reader ever gets, in bytes. 0 when only memory limits it.
  std::size_t longest = 0;
};

/// Each function adds the readers of one module.
void addResponseShapes(std::vector<Shape>& shapes);
void addTextShapes(std::vector<Shape>& shapes);
void addMessageShapes(std::vector<Shape>& shapes);
void addCoreShapes(std::vector<Shape>& shapes);

/// Adds shapes for one reader: each of the `fragments`, repeated up to the size.
void addRepeated(std::vector<Shape>& shapes, const std::string& reader,
                 const std::vector<std::string_view>& fragments,
                 const std::function<std::size_t(std::string_view)>& read);

}  // namespace tarnwell::bench
