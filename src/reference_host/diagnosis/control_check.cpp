#include "diagnosis/control_check.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "diagnosis/shape.hpp"
#include "diagnosis/unread_members.hpp"
#include "reference_host/diagnosis/attempt.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

struct Correction {
  Culprit culprit;
  Value fitting;  ///< what makes it right
};
using Corrections = std::vector<Correction>;

/// The first array on the way to a place, behind the first steps; empty if there is none.
Path arrayOnTheWay(const Path& place, std::size_t behind) {
  const auto index =
      std::find_if(place.begin() + static_cast<std::ptrdiff_t>(behind), place.end(),
                   [](const PathStep& step) { return std::get_if<std::size_t>(&step) != nullptr; });
  return index == place.end() ? Path() : Path(place.begin(), index);
}

/// Finds the errors of an object one after the other, each in a copy in which those before it are
/// made right.
class ErrorSearch {
 public:
  explicit ErrorSearch(const OfferedObject& control)
      : control_(control), builder_(control.builder), corrected_(control.value) {}

  std::vector<Problem> run() {
    const Outcome outcome = correct(corrected_, {});
    for (const Correction& correction : outcome.corrections) note(correction.culprit);
    if (outcome.message) tell(std::nullopt, *outcome.message);
    builds_ = outcome.builds;
    return std::move(problems_);
  }

  /// The object with all errors made right; it builds if `builds` says so.
  const Value& corrected() const { return corrected_; }
  bool builds() const { return builds_; }

 private:
  struct Outcome {
    Corrections corrections;
    bool builds = false;
    std::optional<std::string> message;  ///< of a failure that no value explains
  };

  /// Makes right what is wrong in a part of an object, until the object builds or fails elsewhere.
  Outcome correct(Value& object, const Path& part) const {
    Outcome outcome;
    std::set<Path> corrected;
    std::set<Path> searched;
    const auto take = [&](Correction correction) {
      put(object, correction.culprit.place, correction.fitting);
      corrected.insert(correction.culprit.place);
      outcome.corrections.push_back(std::move(correction));
    };
    for (;;) {
      const Attempt built = attempt(builder_, importer::Step::kBuild, object);
      outcome.builds = built.succeeded;
      if (built.succeeded) break;
      const auto found = findCulprit(builder_, importer::Step::kBuild, object, built);
      if (!found) {
        outcome.message = built.message;
        break;
      }
      const Culprit culprit = blamedFor(*found, object);
      // A builder that wants now this and now that of one value is not followed for ever.
      if (!isWithin(culprit.place, part) || corrected.count(culprit.place) != 0) break;
      const Path array = arrayOnTheWay(culprit.place, part.size());
      if (!array.empty() && searched.insert(array).second) {
        const std::size_t first = *std::get_if<std::size_t>(&culprit.place[array.size()]);
        for (Correction& next : correctionsOfElements(object, array, first)) take(std::move(next));
        if (corrected.count(culprit.place) != 0) continue;
      }
      take({culprit, fittingFor(culprit, object)});
    }
    return outcome;
  }

  /// What is wrong in the elements of an array, from the first wrong one on. Each is looked at
  /// alone, so that the work does not grow with the square of their number, and those of one shape
  /// once.
  Corrections correctionsOfElements(const Value& object, const Path& array,
                                    std::size_t first) const {
    Corrections found;
    std::unordered_map<std::string, Corrections> known;
    Path part = childOf(array, first);
    Value alone = withShortArrays(object, part);
    const auto& elements = *valueAt(object, array)->get_if<Value::Array>();
    for (std::size_t index = first; index != elements.size(); ++index) {
      const auto [alike, isNew] = known.try_emplace(shapeOf(elements[index]));
      if (isNew) {
        put(alone, part, elements[index]);
        alike->second = correct(alone, part).corrections;
      }
      bool inArray = false;
      for (Correction correction : alike->second) {
        Path& place = correction.culprit.place;
        inArray = inArray || !arrayOnTheWay(place, part.size()).empty();
        Path inObject = childOf(array, index);
        inObject.insert(inObject.end(), place.begin() + static_cast<std::ptrdiff_t>(part.size()),
                        place.end());
        place = std::move(inObject);
        found.push_back(std::move(correction));
      }
      // Arrays of one shape need not have as many elements.
      if (inArray) known.erase(alike);
    }
    return found;
  }

  void note(const Culprit& culprit) {
    Path container = culprit.place;
    while (!container.empty() && emptied_.count(container) == 0) container.pop_back();
    if (container.empty()) tell(culprit, {});
    const Value empty = someValueOf(culprit.wanted);
    if (culprit.held != traits<Undefined>::name &&
        (empty.get_if<Value::Object>() != nullptr || empty.get_if<Value::Array>() != nullptr)) {
      emptied_.insert(culprit.place);
    }
  }

  void tell(const std::optional<Culprit>& culprit, const std::string& message) {
    problems_.push_back(problemOf(control_, importer::Step::kBuild, culprit, message));
  }

  /// Of the values that a right one may be, the one with which most is read: a word may decide what
  /// else is read, and of which type it has to be.
  Value fittingFor(const Culprit& culprit, const Value& object) const {
    Value best = someValueOf(culprit.wanted);
    const auto* name = std::get_if<std::string>(&culprit.place.back());
    if (best.get_if<std::string>() == nullptr || name == nullptr || !isWordKey(*name)) return best;
    auto most = readsWith(object, culprit.place, best);
    for (const std::string& word : control_.knowledge.words()) {
      const auto reads = readsWith(object, culprit.place, word);
      if (reads <= most) continue;
      most = reads;
      best = word;
    }
    return best;
  }

  /// Whether anything is read of what holds the place, and how much is read in all.
  std::pair<bool, std::size_t> readsWith(const Value& object, const Path& place,
                                         const Value& value) const {
    Value with = object;
    put(with, place, value);
    const ReadTrace trace = attempt(builder_, importer::Step::kBuild, with).trace;
    return {trace.wasHolder(parentOf(place)), trace.readCount()};
  }

  const OfferedObject& control_;
  const NamedBuilder& builder_;
  Value corrected_;
  bool builds_ = false;
  std::set<Path> emptied_;
  std::vector<Problem> problems_;
};

}  // namespace

std::vector<Problem> checkControl(const OfferedObject& control) {
  ErrorSearch errors(control);
  std::vector<Problem> problems = errors.run();
  if (!errors.builds()) return problems;
  std::vector<Problem> unread = unreadMembersOf(control, errors.corrected());
  std::move(unread.begin(), unread.end(), std::back_inserter(problems));
  return problems;
}

}  // namespace reference_host::diagnosis
