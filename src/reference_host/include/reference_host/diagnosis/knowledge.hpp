#pragma once

/// @file
/// What can be known of builders by asking them: which objects they recognise, what they read
/// where, and of which type it has to be. Nothing of it is written down anywhere.

#include <map>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/path.hpp"
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

/// What is known of one place of a kind.
struct PlaceKnowledge {
  std::string wanted;           ///< the name of the type that is wanted there; empty if unknown
  bool forRecognition = false;  ///< the builder recognises its objects by it
};

/// What a builder reads of the objects that it recognises by the same words.
struct TESSEL_HOST_API Kind {
  std::map<std::string, PlaceKnowledge> places;  ///< by their patterns (`patternOf`)
  foundation::json::Value sample;  ///< one that is built, with everything in it that is read

  bool reads(const std::string& pattern) const { return places.count(pattern) != 0; }
  bool readsBelow(const std::string& pattern) const;
  /// The members that are read of what stands at a place, in the order of their names.
  std::vector<std::string> membersOf(const std::string& pattern) const;
  /// The objects of a kind in which it reads a member of this name.
  std::vector<std::string> holdersOf(const std::string& name) const;
};

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
  Remedy remedyFor(const importer::NamedBuilder& builder, const Value& object,
                   const Path& place) const;

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
  mutable std::map<Words, Kind> kinds_;
  mutable std::map<Words, std::string> wantedInstead_;
  mutable std::map<std::pair<const Kind*, std::string>, Remedy> remedies_;
  mutable std::shared_mutex shapesMutex_;
  mutable std::unordered_set<std::string> goodShapes_;
};

/// The object with at most one element in each array, the one on the way to the place if there is
/// one; the place is changed with it.
foundation::json::Value withShortArrays(const foundation::json::Value& object, Path& place);

}  // namespace reference_host::diagnosis
