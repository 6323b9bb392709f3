#pragma once

/// @file
/// Everything that is timed, and the goals.

#include <vector>

#include "measure.hpp"

namespace benchmarks {

/// A group is made when its turn comes, so that only its own documents are in memory.
struct GroupEntry {
  const char* name;
  Group (*make)();
};

const std::vector<GroupEntry>& groups();

Group wholeImportGroup();
Group parseGroup();
Group buildGroup();
Group kindsGroup();
Group bareStructsGroup();
Group recognitionGroup();
Group logGroup();
Group threadsGroup();
Group documentSizeGroup();
Group controlCountGroup();

}  // namespace benchmarks
