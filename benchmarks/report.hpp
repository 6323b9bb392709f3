#pragma once

/// @file
/// What was measured, for people and for programs.

#include <string>
#include <vector>

#include "measure.hpp"

namespace benchmarks {

/// Prints a group's lines to standard output.
void printHeading();
void print(const GroupResult& group);

/// Writes everything that was measured, each round included.
/// @throws std::runtime_error when the file cannot be written.
void writeJson(const std::string& path, const std::vector<GroupResult>& groups);

}  // namespace benchmarks
