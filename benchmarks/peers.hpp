#pragma once

/// @file
/// What one could do with the same text instead. Each call destroys what it made before it returns,
/// and throws `std::runtime_error` for a text that it cannot read.

#include <cstddef>
#include <memory>
#include <string>

#include "foundation/json.hpp"

namespace benchmarks {

/// simdjson: a document of its own, on a parser that is used again.
class SimdjsonPeer {
 public:
  explicit SimdjsonPeer(const std::string& text);
  ~SimdjsonPeer();
  SimdjsonPeer(const SimdjsonPeer&) = delete;
  SimdjsonPeer& operator=(const SimdjsonPeer&) = delete;

  /// @return whether the root is an object.
  bool parse();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// RapidJSON's reader, with full precision and validation of UTF-8, into the host's value.
foundation::json::Value rapidjsonToValue(const std::string& text);

/// RapidJSON's document, and from it the controls as plain structs with UTF-16 texts.
/// @return the count of controls.
std::size_t rapidjsonToStructs(const std::string& text);

/// nlohmann-json: parse only.
/// @return the count of the root's members.
std::size_t nlohmannParse(const std::string& text);

/// nlohmann-json: parse, then `from_json` of the controls into plain structs with UTF-16 texts.
/// @return the count of controls.
std::size_t nlohmannToStructs(const std::string& text);

}  // namespace benchmarks
