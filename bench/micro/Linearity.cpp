// linearity [LARGEST [READER]]
//
// Reads every shape of input at 1 MB, 2 MB and so on up to LARGEST MB (default 32). A reader whose input is
// bounded is measured up to its bound. For each reader, prints how much more time the worst doubling of an
// input took. READER chooses the readers whose names begin with it. The status is 1 when a doubling took 2.3
// times as long or longer.
//
// Two kinds of doublings are shown but not judged. They say something about the memory and not about the
// reader.
// - Doublings up to 8 MB. At these sizes the input and the result outgrow the caches of the processor, one
//   after the other. Bounded inputs are judged at every size.
// - Doublings of readings faster than 500 MB/s. Work in quadratic time cannot be so fast at these sizes.
//
// Noise only makes a run slower, so the fastest of several runs counts. A doubling that looks too slow is
// measured again in pairs. The two sizes of a pair are read one right after the other, so a slow minute
// affects both. Then the median of the pairs counts.

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "Core/AppLogger.h"
#include "MailInputs.h"
#include "Shapes.h"

namespace tarnwell::bench {

void addRepeated(std::vector<Shape>& shapes, const std::string& reader,
                 const std::vector<std::string_view>& fragments,
                 const std::function<std::size_t(std::string_view)>& read) {
  for (const std::string_view fragment : fragments) {
    shapes.push_back({.reader = reader,
                      .name = std::string(fragment) + "…",
                      .input = [fragment](std::size_t size) { return repeated(fragment, size); },
                      .read = read});
  }
}

namespace {

constexpr double dearest = 2.3;
constexpr std::size_t megabyte = 1'000'000;
constexpr std::size_t beyondCaches = 8 * megabyte;
constexpr double fasterThanAnySquare = 500;  // megabytes a second

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

volatile std::size_t sink;

/// The processor time of one reading: the fastest of at least two batches. A batch repeats short readings
/// until it is long enough for the clock.
double secondsToRead(const Shape& shape, std::string_view input) {
  constexpr double shortestBatch = 2e-3;
  constexpr double enough = 0.05;
  constexpr int fewestBatches = 2;
  std::size_t rounds = 1;
  double fastest = std::numeric_limits<double>::infinity();
  double spent = 0;
  for (int batch = 0; batch < fewestBatches || spent < enough;) {
    const double start = processorSeconds();
    for (std::size_t round = 0; round < rounds; ++round) {
      sink = shape.read(input);
    }
    const double seconds = processorSeconds() - start;
    spent += seconds;
    if (seconds < shortestBatch) {
      rounds *= 2;
      continue;
    }
    fastest = std::min(fastest, seconds / static_cast<double>(rounds));
    ++batch;
  }
  return fastest;
}

struct Doubling {
  double ratio = 0;
  std::size_t to = 0;  // bytes
};

struct Result {
  Doubling worst;                 // of those that are judged
  Doubling worstOfOthers;         // of the others
  std::size_t largest = 0;        // bytes
  double megabytesPerSecond = 0;  // at the largest size
};

/// Reads the shape at a size. Measures again in pairs when this took too long compared with half the size.
Doubling measureDoubling(const Shape& shape, std::size_t size, double secondsBefore, double& seconds) {
  constexpr std::size_t pairs = 7;
  seconds = secondsToRead(shape, shape.input(size));
  double ratio = seconds / secondsBefore;
  if (ratio >= dearest) {
    std::array<double, pairs> ratios;
    for (double& ofPair : ratios) {
      const double before = secondsToRead(shape, shape.input(size / 2));
      const double after = secondsToRead(shape, shape.input(size));
      seconds = std::min(seconds, after);
      ofPair = after / before;
    }
    std::ranges::nth_element(ratios, ratios.begin() + pairs / 2);
    ratio = ratios[pairs / 2];
  }
  return {.ratio = ratio, .to = size};
}

Result measure(const Shape& shape, std::size_t largestAllowed) {
  constexpr std::size_t doublings = 4;
  const bool isBounded = shape.longest != 0;
  std::size_t size = isBounded ? shape.longest >> doublings : megabyte;
  const std::size_t largest = isBounded ? shape.longest : largestAllowed;
  // The first reading is not measured: the kernel hands out new pages of memory during it.
  sink = shape.read(shape.input(largest));
  double seconds = secondsToRead(shape, shape.input(size));
  Result result;
  for (; size * 2 <= largest; size *= 2) {
    double secondsOfDouble = 0;
    const Doubling doubling = measureDoubling(shape, size * 2, seconds, secondsOfDouble);
    const double speed = static_cast<double>(doubling.to) / secondsOfDouble / 1e6;
    const bool isJudged = (isBounded || doubling.to > beyondCaches) && speed < fasterThanAnySquare;
    Doubling& worst = isJudged ? result.worst : result.worstOfOthers;
    if (doubling.ratio > worst.ratio) {
      worst = doubling;
    }
    seconds = secondsOfDouble;
  }
  result.largest = size;
  result.megabytesPerSecond = static_cast<double>(size) / seconds / 1e6;
  return result;
}

std::string sizeText(std::size_t bytes) {
  return bytes >= megabyte ? std::to_string(bytes / megabyte) + " MB" : std::to_string(bytes / 1000) + " kB";
}

/// The empty text for a doubling that was not measured.
std::string ratioText(double ratio) {
  char text[16] = "";
  if (ratio > 0) {
    std::snprintf(text, sizeof text, "%.2f", ratio);
  }
  return text;
}

/// The name as a table can show it: one short line without the sign between columns.
std::string printable(std::string_view name) {
  constexpr std::size_t longest = 60;
  constexpr std::string_view ellipsis = "…";
  std::string text;
  for (std::size_t position = 0; position < name.size() && text.size() < longest;) {
    const char byte = name[position];
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned char>(byte));
    const bool isPlain = byte > 0x1F && byte < 0x7F && byte != '|' && byte != '`';
    const bool isEllipsis = name.substr(position).starts_with(ellipsis);
    text += isEllipsis ? std::string(ellipsis) : isPlain ? std::string(1, byte) : std::string(escaped);
    position += isEllipsis ? ellipsis.size() : 1;
  }
  return text.size() < longest ? text : text + "...";
}

std::string quoted(std::string_view name) {
  return std::string(1, '`').append(printable(name)).append(1, '`');
}

struct Row {
  std::string reader;
  std::size_t shapes = 0;
  std::size_t largest = 0;
  double slowest = std::numeric_limits<double>::infinity();  // megabytes a second
  Doubling worst = {};
  double worstOfOthers = 0;
  std::string worstShape = {};
};

void take(std::vector<Row>& rows, const Shape& shape, const Result& result) {
  if (rows.empty() || rows.back().reader != shape.reader) {
    rows.push_back({.reader = shape.reader});
  }
  Row& row = rows.back();
  ++row.shapes;
  row.largest = std::max(row.largest, result.largest);
  row.slowest = std::min(row.slowest, result.megabytesPerSecond);
  row.worstOfOthers = std::max(row.worstOfOthers, result.worstOfOthers.ratio);
  if (result.worst.ratio > row.worst.ratio) {
    row.worst = result.worst;
    row.worstShape = shape.name;
  }
}

int printTable(const std::vector<Row>& rows) {
  int tooDear = 0;
  std::printf("| Reader | Shapes | Up to | Slowest shape | Worst doubling | to | its input | not judged |\n");
  std::printf("|---|---:|---:|---:|---:|---:|---|---:|\n");
  for (const Row& row : rows) {
    tooDear += row.worst.ratio >= dearest ? 1 : 0;
    const bool isJudged = row.worst.ratio > 0;
    std::printf("| %s | %zu | %s | %.0f MB/s | %s | %s | %s | %s |\n", row.reader.c_str(), row.shapes,
                sizeText(row.largest).c_str(), row.slowest, ratioText(row.worst.ratio).c_str(),
                isJudged ? sizeText(row.worst.to).c_str() : "",
                isJudged ? quoted(row.worstShape).c_str() : "", ratioText(row.worstOfOthers).c_str());
  }
  return tooDear;
}

std::vector<Shape> allShapes() {
  std::vector<Shape> shapes;
  addResponseShapes(shapes);
  addTextShapes(shapes);
  addMessageShapes(shapes);
  addCoreShapes(shapes);
  // Each reader gets one row. The rows have the order in which the readers were added.
  std::vector<std::string> readers;
  for (const Shape& shape : shapes) {
    if (std::ranges::find(readers, shape.reader) == readers.end()) {
      readers.push_back(shape.reader);
    }
  }
  std::ranges::stable_sort(shapes, {}, [&readers](const Shape& shape) {
    return std::ranges::find(readers, shape.reader) - readers.begin();
  });
  return shapes;
}

int run(std::size_t largest, std::string_view chosen) {
  // Memory is kept. Otherwise the time would include the kernel's work for new pages.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, -1);
  // A broken settings file makes a log entry. Nobody listens at this address.
  static const SystemLog nowhere("linearity", "/nowhere/tarnwell-linearity");
  AppLogger::replaceSystemLog(nowhere);

  std::vector<Row> rows;
  for (const Shape& shape : allShapes()) {
    if (!shape.reader.starts_with(chosen)) {
      continue;
    }
    const Result result = measure(shape, largest);
    take(rows, shape, result);
    std::fprintf(stderr, "%-34s %5.2f %5.2f %6.0f MB/s  %s\n", shape.reader.c_str(), result.worst.ratio,
                 result.worstOfOthers.ratio, result.megabytesPerSecond, printable(shape.name).c_str());
  }
  return printTable(rows) == 0 ? 0 : 1;
}

}  // namespace

}  // namespace tarnwell::bench

int main(int argumentCount, char** arguments) {
  constexpr std::size_t usualLargest = 32;
  const std::size_t largest = argumentCount > 1 ? std::strtoul(arguments[1], nullptr, 10) : usualLargest;
  if (largest < 16) {
    std::fprintf(stderr, "usage: linearity [LARGEST [READER]], LARGEST in MB and at least 16\n");
    return 2;
  }
  return tarnwell::bench::run(largest * tarnwell::bench::megabyte, argumentCount > 2 ? arguments[2] : "");
}
