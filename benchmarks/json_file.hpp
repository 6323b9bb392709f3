#pragma once

/// @file
/// Results for programs to read.

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace benchmarks {

/// Writes it indented.
/// @throws std::runtime_error when the file cannot be written.
void writeJsonFile(const std::string& path, const nlohmann::json& json);

}  // namespace benchmarks
