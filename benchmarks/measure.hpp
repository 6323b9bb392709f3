#pragma once

/// @file
/// Measuring by ratios. Machines drift, so variants that are compared run in turn, round by round;
/// a ratio is taken within each round, and the median of those counts.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

/// One thing to run.
struct Variant {
  std::string name;
  std::size_t units;                    ///< how many controls (objects, records) one run handles
  std::function<void(int thread)> run;  ///< destroys what it makes; called by each thread
  int threads = 1;
};

/// Times of a round: nanoseconds for one unit, by the variants' order.
using RoundTimes = std::vector<double>;

enum class Bound {
  kNone,     ///< shown and not judged
  kAtMost,   ///< the ratio has to be the goal or less
  kAtLeast,  ///< the ratio has to be the goal or more
};

/// A line of the table: two of the group's variants, and what their ratio should be.
struct Row {
  std::string name;
  std::string heldAgainst;
  std::size_t ours;
  std::size_t theirs;
  Bound bound = Bound::kNone;
  double goal = 0;
  /// Where the ratio is not simply ours by theirs.
  std::function<double(const RoundTimes&)> ratio = nullptr;
};

/// Variants that run in turn, and the lines that compare them.
struct Group {
  std::string name;
  std::string unit;  ///< what a unit is
  std::vector<Variant> variants;
  std::vector<Row> rows;
  std::size_t rounds = 21;
  double secondsOfRun = 0.03;  ///< a run is repeated within its round until it takes so long
  /// How often a variant runs before it is timed, so that none inherits the caches of its
  /// neighbour. More than once where so much memory is touched that the system has to come by it
  /// first.
  int untimedRuns = 1;
  /// Time on the wall, which variants of several threads need; otherwise the thread's own time on a
  /// processor, so that other programs disturb less.
  bool wallClock = false;
};

struct RowResult {
  Row row;
  double ratio = 0;  ///< median of the rounds
  double lowest = 0;
  double highest = 0;
  bool met = true;
};

struct GroupResult {
  std::string name;
  std::string unit;
  std::vector<std::string> variants;
  std::vector<RoundTimes> rounds;
  std::vector<double> medians;  ///< nanoseconds for one unit, by variant
  std::vector<RowResult> rows;
};

double median(std::vector<double> values);

/// Runs a group. Before each timed run the heap is brought into one state and the variant runs
/// untimed. Google Benchmark takes the time of each run; which runs come when is decided here: its
/// own interleaving spreads the repetitions of all variants at random over the whole time, so that
/// two of one number need not be neighbours.
GroupResult measure(const Group& group, std::size_t rounds);

}  // namespace benchmarks
