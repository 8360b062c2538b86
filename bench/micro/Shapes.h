#pragma once

/// The readers whose time must grow no faster than their input, each with inputs that are like mail and with
/// inputs that would hurt a careless reader.
///
/// Threads: a shape may be used by one at a time.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::bench {

struct Shape {
  std::string reader;
  std::string name;
  /// An input of about this many bytes.
  std::function<std::string(std::size_t)> input;
  /// Reads it once; the number depends on what was read.
  std::function<std::size_t(std::string_view)> read;
  /// The longest input that the reader ever sees, in bytes; 0 when only memory bounds it.
  std::size_t longest = 0;
};

/// Each adds the readers of one module.
void addResponseShapes(std::vector<Shape>& shapes);
void addTextShapes(std::vector<Shape>& shapes);
void addMessageShapes(std::vector<Shape>& shapes);
void addCoreShapes(std::vector<Shape>& shapes);

/// A family of shapes over one reader: `fragments` are repeated up to the size.
void addRepeated(std::vector<Shape>& shapes, const std::string& reader,
                 const std::vector<std::string_view>& fragments,
                 const std::function<std::size_t(std::string_view)>& read);

}  // namespace tarnwell::bench
