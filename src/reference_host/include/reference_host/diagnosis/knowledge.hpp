#pragma once

/// @file
/// What can be known of builders by asking them: which objects they recognise, what they read
/// where, and of which type it has to be. Nothing of it is written down anywhere.

#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/kind.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/diagnosis/recognition.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// What can be done about a value of a wrong type but writing another one.
struct Remedy {
  bool canBeLeftOut = false;
  std::string wordKey;  ///< a member beside it, with which the value is right; empty if none
  std::string word;     ///< what that member has to hold
};

/// Learns when it is asked for the first time, and remembers. Works for any builder; any number of
/// threads may ask.
class TESSEL_HOST_API Knowledge {
 public:
  using Value = foundation::json::Value;
  using Builders = std::vector<importer::NamedBuilder>;

  /// @param builders outlive this.
  /// @param words candidates for the words that builders compare with, beside those that a
  /// builder's
  ///   own name suggests. One counts only where a builder reacts to it.
  Knowledge(const Builders& builders, std::vector<std::string> words);

  const Builders& builders() const noexcept { return builders_; }
  /// The candidates that were given, and those of the builders' names that they react to.
  const std::vector<std::string>& words() const;

  /// By which of the words objects are recognised, in the builders' order.
  const std::vector<Recognition>& recognitions() const;
  /// The same for words that are no candidates, such as those of one document.
  std::vector<Recognition> recognitionsAmong(const std::vector<std::string>& words) const;

  /// Whether the builder claims objects of a class by its name alone.
  bool isKnownByClass(const importer::NamedBuilder& builder, const std::string& className) const;

  /// The kind of an object that the builder claims.
  const Kind& kindOf(const importer::NamedBuilder& builder, const Value& object) const;

  /// For a value that is passed over, the type of which one would count: the builder accepts any
  /// value of the type that is there, and none makes a difference. Empty for every other value.
  /// @param object one that the builder builds, with a value at the place.
  std::string wantedInstead(const importer::NamedBuilder& builder, const Value& object,
                            const Path& place) const;

  /// What else helps where the value at a place is of a wrong type. It is tried on a good object of
  /// the kind.
  /// @param object one that the builder claims, with a value at the place.
  /// @param moreWords are tried where none of the known ones helps; null for none.
  Remedy remedyFor(const importer::NamedBuilder& builder, const Value& object, const Path& place,
                   const std::vector<std::string>* moreWords) const;

  /// Whether objects of this shape have been found to be without a problem.
  bool isGood(const std::string& shape) const;
  void rememberGood(std::string shape) const;

 private:
  using Words = std::tuple<const importer::NamedBuilder*, std::string, std::string>;

  void learnRecognitions() const;

  const Builders& builders_;
  mutable std::vector<std::string> words_;
  mutable std::once_flag recognitionsOnce_;
  mutable std::vector<Recognition> recognitions_;
  mutable std::mutex mutex_;
  mutable std::map<std::pair<const importer::NamedBuilder*, std::string>, bool> knownByClass_;
  mutable std::map<Words, Kind> kinds_;
  mutable std::map<Words, std::string> wantedInstead_;
  mutable std::map<std::pair<const Kind*, std::string>, Remedy> remedies_;
  mutable std::shared_mutex shapesMutex_;
  mutable std::unordered_set<std::string> goodShapes_;
};

}  // namespace reference_host::diagnosis
