// Measures the pure parts one by one and prints a Markdown table. For each part the table has the median and
// the best repetition in processor time, and whether the part reached its goal. Takes the options of Google
// Benchmark. --benchmark_filter selects parts. The status is 1 when a goal was missed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "Parts.h"

namespace tarnwell::bench {

namespace {

constexpr int repetitions = 9;
constexpr double secondsOfEach = 0.05;

/// Collects the seconds of one round in each repetition.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
        seconds_[run.run_name.function_name].push_back(run.cpu_accumulated_time /
                                                       static_cast<double>(run.iterations));
      }
    }
  }

  /// Sorted. Empty for a part that was not measured.
  std::vector<double> secondsOf(const std::string& name) const {
    const auto found = seconds_.find(name);
    std::vector<double> seconds = found == seconds_.end() ? std::vector<double>() : found->second;
    std::ranges::sort(seconds);
    return seconds;
  }

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

double median(const std::vector<double>& sorted) { return sorted[sorted.size() / 2]; }

std::string speed(const Part& part, double seconds) {
  char text[64];
  if (part.goal.microseconds) {
    std::snprintf(text, sizeof text, "%.2f µs", seconds * 1e6);
  } else {
    std::snprintf(text, sizeof text, "%.0f MB/s", static_cast<double>(part.bytes) / seconds / 1e6);
  }
  return text;
}

std::string described(const Goal& goal) {
  std::string text;
  char number[32];
  if (goal.megabytesPerSecond) {
    std::snprintf(number, sizeof number, "≥ %.0f MB/s", *goal.megabytesPerSecond);
    text += number;
  }
  if (goal.microseconds) {
    std::snprintf(number, sizeof number, "≤ %.0f µs", *goal.microseconds);
    text += number;
  }
  if (!goal.fasterThan.empty()) {
    text += text.empty() ? "faster than its rivals" : ", faster than its rivals";
  }
  return text;
}

bool isMet(const Part& part, double seconds, const Collector& measured) {
  const Goal& goal = part.goal;
  const bool beatsRivals = std::ranges::all_of(goal.fasterThan, [&](const std::string& rival) {
    const std::vector<double> rivalSeconds = measured.secondsOf(rival);
    return rivalSeconds.empty() || seconds <= median(rivalSeconds);
  });
  const double megabytesPerSecond = static_cast<double>(part.bytes) / seconds / 1e6;
  return beatsRivals && megabytesPerSecond >= goal.megabytesPerSecond.value_or(0) &&
         seconds * 1e6 <= goal.microseconds.value_or(seconds * 1e6);
}

/// Returns the number of missed goals.
int printTable(const std::vector<Part>& parts, const Collector& measured) {
  int missed = 0;
  std::printf("| Part | Median | Best | Goal | Reached |\n|---|---:|---:|---|---|\n");
  for (const Part& part : parts) {
    const std::vector<double> seconds = measured.secondsOf(part.name);
    if (seconds.empty()) {
      continue;
    }
    const std::string goal = described(part.goal);
    const bool reached = isMet(part, median(seconds), measured);
    missed += reached ? 0 : 1;
    std::printf("| %s | %s | %s | %s | %s |\n", part.name.c_str(), speed(part, median(seconds)).c_str(),
                speed(part, seconds.front()).c_str(), goal.c_str(),
                goal.empty() ? ""
                : reached    ? "yes"
                             : "no");
  }
  return missed;
}

void registerBenchmark(const Part& part) {
  benchmark::RegisterBenchmark(part.name.c_str(),
                               [work = part.work](benchmark::State& state) {
                                 for ([[maybe_unused]] auto round : state) {
                                   benchmark::DoNotOptimize(work());
                                 }
                               })
      ->Repetitions(repetitions)
      ->MinTime(secondsOfEach);
}

int run(int argumentCount, char** arguments) {
  benchmark::Initialize(&argumentCount, arguments);
  if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
    return 2;
  }
  std::vector<Part> parts;
  addResponseParts(parts);
  addTransferParts(parts);
  addTextParts(parts);
  addCharacterParts(parts);
  addDetectorParts(parts);
  std::ranges::for_each(parts, registerBenchmark);

  Collector measured;
  benchmark::RunSpecifiedBenchmarks(&measured);
  return printTable(parts, measured) == 0 ? 0 : 1;
}

}  // namespace

}  // namespace tarnwell::bench

int main(int argumentCount, char** arguments) { return tarnwell::bench::run(argumentCount, arguments); }
