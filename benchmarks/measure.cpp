#include "measure.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace benchmarks {

namespace {

/// Joins what is free and gives it back, where the allocator can be told so.
void settleHeap() {
#if defined(__GLIBC__)
  malloc_trim(0);
#endif
}

/// Keeps the one run that is reported to it.
class LastRun final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) throw std::runtime_error(run.error_message);
      wallSeconds_ = run.real_accumulated_time;
      processorSeconds_ = run.cpu_accumulated_time;
      iterations_ = static_cast<double>(run.iterations);
    }
  }

  /// With several threads the iterations are those of all, the time is that of one.
  double secondsOfIteration(bool wallClock) const {
    return (wallClock ? wallSeconds_ : processorSeconds_) / iterations_;
  }

 private:
  double wallSeconds_ = 0;
  double processorSeconds_ = 0;
  double iterations_ = 1;
};

/// A variant as Google Benchmark knows it.
class Stopwatch {
 public:
  Stopwatch(const Group& group, const Variant& variant)
      : wallClock_(group.wallClock),
        units_(static_cast<double>(variant.units)),
        name_(group.name + "/" + variant.name),
        registered_(benchmark::RegisterBenchmark(
            name_.c_str(),
            [run = variant.run, untimed = group.untimedRuns](benchmark::State& state) {
              const int thread = state.thread_index();
              for (int count = 0; count < untimed; ++count) run(thread);
              for (auto iteration : state) run(thread);
            })) {
    registered_->UseRealTime()->Threads(variant.threads)->Iterations(1);
  }

  /// Finds out how many repetitions take so long.
  void calibrate(double seconds) {
    const double iterations = std::ceil(seconds / secondsOfRun());
    registered_->Iterations(static_cast<benchmark::IterationCount>(std::max(1.0, iterations)));
  }

  double nanosecondsOfUnit() { return secondsOfRun() / units_ * 1e9; }

 private:
  double secondsOfRun() {
    settleHeap();
    LastRun reporter;
    // The name's end is left open: the library appends what it was set to.
    const std::size_t count = benchmark::RunSpecifiedBenchmarks(&reporter, "^" + name_ + "/");
    if (count != 1) throw std::logic_error("not one benchmark is called " + name_);
    return reporter.secondsOfIteration(wallClock_);
  }

  bool wallClock_;
  double units_;
  std::string name_;
  benchmark::internal::Benchmark* registered_;
};

RowResult resultOf(const Row& row, const std::vector<RoundTimes>& rounds) {
  std::vector<double> ratios;
  for (const RoundTimes& times : rounds) {
    ratios.push_back(row.ratio ? row.ratio(times) : times[row.ours] / times[row.theirs]);
  }
  RowResult result;
  result.row = row;
  result.ratio = median(ratios);
  result.lowest = *std::min_element(ratios.begin(), ratios.end());
  result.highest = *std::max_element(ratios.begin(), ratios.end());
  result.met = row.bound == Bound::kNone ||
               (row.bound == Bound::kAtMost ? result.ratio <= row.goal : result.ratio >= row.goal);
  return result;
}

}  // namespace

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

GroupResult measure(const Group& group, std::size_t rounds) {
  benchmark::ClearRegisteredBenchmarks();
  std::vector<Stopwatch> stopwatches;
  GroupResult result;
  result.name = group.name;
  result.unit = group.unit;
  for (const Variant& variant : group.variants) {
    stopwatches.emplace_back(group, variant);
    result.variants.push_back(variant.name);
  }
  for (Stopwatch& stopwatch : stopwatches) stopwatch.calibrate(group.secondsOfRun);
  for (std::size_t round = 0; round < rounds; ++round) {
    RoundTimes times(stopwatches.size());
    // Each round starts with another variant, so that none always follows the same one.
    for (std::size_t turn = 0; turn < stopwatches.size(); ++turn) {
      const std::size_t variant = (round + turn) % stopwatches.size();
      times[variant] = stopwatches[variant].nanosecondsOfUnit();
    }
    result.rounds.push_back(std::move(times));
  }
  for (std::size_t variant = 0; variant < stopwatches.size(); ++variant) {
    std::vector<double> times;
    for (const RoundTimes& round : result.rounds) times.push_back(round[variant]);
    result.medians.push_back(median(times));
  }
  for (const Row& row : group.rows) result.rows.push_back(resultOf(row, result.rounds));
  benchmark::ClearRegisteredBenchmarks();
  return result;
}

}  // namespace benchmarks
