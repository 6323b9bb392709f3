#include "diagnosis/control_check.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "diagnosis/shape.hpp"
#include "diagnosis/unread_members.hpp"
#include "reference_host/diagnosis/attempt.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// Finds the errors of an object one after the other, each in a copy in which those before it are
/// made right.
class ErrorSearch {
 public:
  explicit ErrorSearch(const OfferedObject& control)
      : control_(control), builder_(control.builder), corrected_(control.value) {}

  std::vector<Problem> run() {
    for (;;) {
      const Attempt built = attempt(builder_, importer::Step::kBuild, corrected_);
      if (built.succeeded) {
        builds_ = true;
        break;
      }
      const auto found = findCulprit(builder_, importer::Step::kBuild, corrected_, built);
      if (!found) {
        tell(std::nullopt, built.message);
        break;
      }
      const Culprit culprit = blamedFor(*found, corrected_);
      // A builder that wants now this and now that of one value is not followed for ever.
      if (!blamed_.insert(culprit.place).second) break;
      correctAlike(culprit);
    }
    return std::move(problems_);
  }

  /// The object with all errors made right; it builds if `builds` says so.
  const Value& corrected() const { return corrected_; }
  bool builds() const { return builds_; }

 private:
  /// Makes a culprit right, and its like in the array that it is in.
  void correctAlike(const Culprit& culprit) {
    const auto index = std::find_if(
        culprit.place.rbegin(), culprit.place.rend(),
        [](const PathStep& step) { return std::get_if<std::size_t>(&step) != nullptr; });
    if (index == culprit.place.rend()) {
      correct(culprit);
      return;
    }
    const auto depth = static_cast<std::size_t>(culprit.place.rend() - index) - 1;
    const Path array(culprit.place.begin(),
                     culprit.place.begin() + static_cast<std::ptrdiff_t>(depth));
    const std::size_t first = *std::get_if<std::size_t>(&culprit.place[depth]);
    const std::size_t count = valueAt(corrected_, array)->get_if<Value::Array>()->size();
    const std::string shape = shapeOf(*valueAt(corrected_, childOf(array, first)));
    const Value fitting = correct(culprit);
    for (std::size_t next = first + 1; next < count; ++next) {
      if (shapeOf(*valueAt(corrected_, childOf(array, next))) != shape) continue;
      Culprit alike = culprit;
      alike.place[depth] = next;
      note(alike);
      put(corrected_, alike.place, fitting);
      blamed_.insert(alike.place);
    }
  }

  /// @return the value that was put in the culprit's place.
  Value correct(const Culprit& culprit) {
    note(culprit);
    Value fitting = fittingFor(culprit);
    put(corrected_, culprit.place, fitting);
    return fitting;
  }

  void note(const Culprit& culprit) {
    const bool inEmptied =
        std::any_of(emptied_.begin(), emptied_.end(),
                    [&](const Path& container) { return isWithin(culprit.place, container); });
    if (!inEmptied) tell(culprit, {});
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
  Value fittingFor(const Culprit& culprit) const {
    Value best = someValueOf(culprit.wanted);
    const auto* name = std::get_if<std::string>(&culprit.place.back());
    if (best.get_if<std::string>() == nullptr || name == nullptr || !isWordKey(*name)) return best;
    auto most = readsWith(culprit.place, best);
    for (const std::string& word : control_.knowledge.words()) {
      const auto reads = readsWith(culprit.place, word);
      if (reads <= most) continue;
      most = reads;
      best = word;
    }
    return best;
  }

  /// Whether anything is read of what holds the place, and how much is read in all.
  std::pair<bool, std::size_t> readsWith(const Path& place, const Value& value) const {
    Value with = corrected_;
    put(with, place, value);
    const ReadTrace trace = attempt(builder_, importer::Step::kBuild, with).trace;
    return {trace.wasHolder(parentOf(place)), trace.readCount()};
  }

  const OfferedObject& control_;
  const NamedBuilder& builder_;
  Value corrected_;
  bool builds_ = false;
  std::set<Path> blamed_;
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
