#pragma once

/// @file
/// What the measured calls work on: documents parsed and taken apart beforehand.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "document_generator.hpp"
#include "foundation/json.hpp"
#include "plain_controls.hpp"
#include "reference_host/importer/importer.hpp"

namespace benchmarks {

using reference_host::importer::NamedBuilder;

/// Imports into a model of its own and destroys everything.
/// @return the count of nodes built.
/// @throws std::runtime_error when an object failed.
std::size_t importText(const std::string& text);
std::size_t importValue(const foundation::json::Value& document);

/// Walks and asks as the import does, and builds nothing.
/// @return the count of objects that a builder claims.
std::size_t recognizeAll(const foundation::json::Value& value);

/// An object with the builder that claims it, and its content in the plain struct of its kind; none
/// if the kind has no plain struct.
struct ClaimedObject {
  const NamedBuilder* builder;
  const foundation::json::Value* json;
  std::optional<PlainControl<std::string>> plain;
};

/// A parsed document and the objects in it that a walk offers to the builders.
class Corpus {
 public:
  explicit Corpus(std::string text);
  Corpus(const Corpus&) = delete;
  Corpus& operator=(const Corpus&) = delete;

  const std::string& text() const noexcept { return text_; }
  const foundation::json::Value& value() const noexcept { return value_; }
  const std::vector<ClaimedObject>& claimed() const noexcept { return claimed_; }
  /// The objects that nobody claims, without the document's root.
  const std::vector<const foundation::json::Value*>& strangers() const noexcept {
    return strangers_;
  }

 private:
  std::string text_;
  foundation::json::Value value_;
  std::vector<ClaimedObject> claimed_;
  std::vector<const foundation::json::Value*> strangers_;
};

/// Controls of one kind, each in a document of its own.
std::vector<std::shared_ptr<const Corpus>> controlsOf(const contract::Kind& kind,
                                                      std::size_t count);

/// Whether the kind has a plain struct, so that there is a baseline of its builds.
bool hasBaseline(const contract::Kind& kind);

}  // namespace benchmarks
