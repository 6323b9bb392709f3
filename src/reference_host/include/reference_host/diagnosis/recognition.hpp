#pragma once

/// @file
/// The words by which builders recognise objects.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// Members whose texts say what an object is, wherever they stand: the words that builders compare
/// with are looked for under them.
inline constexpr const char* kWordKeys[] = {"className", "type", "valueType"};
bool isWordKey(std::string_view name) noexcept;

/// Words by which a builder recognises an object.
struct TESSEL_HOST_API Recognition {
  const importer::NamedBuilder* builder;
  std::string className;
  std::optional<std::string> type;  ///< in "context", where the class name alone is not enough

  /// The least object that is recognised so.
  foundation::json::Value sample() const;
};

/// Words by which a builder of this name may go: "x::RatingBuilderImpl" suggests "rating",
/// "Rating", "RatingNode" and "RatingControlNode".
std::vector<std::string> wordsOfName(std::string name);

/// Appends the recognitions of a builder by words of these.
void appendRecognitions(std::vector<Recognition>& found, const importer::NamedBuilder& builder,
                        const std::vector<std::string>& words);

}  // namespace reference_host::diagnosis
