#include "diagnosis/unread_members.hpp"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// So many members are tried one by one.
constexpr std::size_t kMostTrials = 100;

/// So many names are listed of those that can be added.
constexpr std::size_t kMostToAdd = 12;

constexpr const char* kTakeOut = "take it out";

/// Whether a member is named like a comment, or has a name that is commented out.
bool isLikeComment(std::string_view name) {
  if (name.substr(0, 1) == "#" || name.substr(0, 2) == "//") return true;
  const std::string word =
      lowered(name.substr(std::min(name.find_first_not_of("_$"), name.size())));
  return word == "comment" || word == "comments";
}

std::string didYouMean(const std::vector<std::string>& words, const std::string& where = {}) {
  return "did you mean " + anyOf(words) + where + '?';
}

/// Finds the members of an object that make no difference.
class UnreadSearch {
 public:
  UnreadSearch(const OfferedObject& control, const Value& corrected)
      : control_(control),
        builder_(control.builder),
        kind_(control.kind()),
        corrected_(corrected),
        trace_(attempt(builder_, importer::Step::kBuild, corrected).trace) {}

  std::vector<Problem> run() {
    visitMembers({}, control_.value);
    keepUnread();
    for (const Path& place : unread_) tellUnread(place);
    return std::move(problems_);
  }

 private:
  void visitMembers(const Path& holder, const Value& value) {
    for (const auto& [name, member] : *value.get_if<Value::Object>()) {
      Path place = childOf(holder, name);
      const auto known = kind_->places.find(patternOf(place));
      const bool recognised = known != kind_->places.end() && known->second.forRecognition;
      if (!trace_.wasAsked(place) && !recognised) {
        unread_.push_back(std::move(place));
      } else {
        visitRead(place, member, recognised);
      }
    }
  }

  void visitRead(const Path& place, const Value& value, bool recognised) {
    const bool wrong = typeNameOf(valueAt(corrected_, place)) != std::string(typeNameOf(value));
    if (wrong) return;  // an error
    const bool holder = trace_.wasHolder(place);
    if (const auto* elements = value.get_if<Value::Array>(); elements != nullptr && !holder) {
      visitElements(place, *elements);
    }
    if (holder && value.get_if<Value::Object>() != nullptr) {
      visitMembers(place, value);
    } else if (holder) {
      ignored(place, "is " + heldWords(typeNameOf(value)) + " and passed over",
              "write an object: {...}");
    } else if (!recognised) {
      const std::string wanted = control_.knowledge.wantedInstead(builder_, corrected_, place);
      if (wanted.empty()) return;
      ignored(place, "is " + heldWords(typeNameOf(value)) + " and passed over",
              correctionOr(value, wanted));
    }
  }

  void visitElements(const Path& array, const Value::Array& elements) {
    std::string pattern = patternOf(array) + "/*";
    const bool haveMembers = kind_->readsBelow(pattern);
    for (std::size_t index = 0; index != elements.size(); ++index) {
      const Path place = childOf(array, index);
      if (trace_.wasHolder(place)) {
        if (elements[index].get_if<Value::Object>() != nullptr)
          visitMembers(place, elements[index]);
      } else if (haveMembers) {
        ignored(place, "is none of those that are read, and passed over",
                hintForElement(pattern, elements[index]));
      }
    }
  }

  /// By what the elements that are read are recognised.
  std::optional<std::string> hintForElement(const std::string& pattern,
                                            const Value& element) const {
    const Path className = pathOf(pattern + patternOf(classNamePlace()));
    const auto known = kind_->places.find(patternOf(className));
    const std::string* word = textAt(kind_->sample, className);
    if (known == kind_->places.end() || !known->second.forRecognition || word == nullptr) {
      return std::nullopt;
    }
    const std::string* held = textAt(element, classNamePlace());
    if (held != nullptr && !nearestWord(*held, {*word}).empty()) {
      return "did you mean " + quoted(*word) + '?';
    }
    return "those that are read have \"className\": " + quoted(*word);
  }

  /// Leaves only the members without which the same is built: a builder may go over an object's
  /// members without asking for any.
  void keepUnread() {
    if (unread_.empty()) return;
    const auto node = nodeBuilt(builder_, corrected_);
    const auto buildsTheSameWithout = [&](const std::vector<Path>& places) {
      Value without = corrected_;
      for (const Path& place : places) removeMember(without, place);
      return nodeBuilt(builder_, without) == node;
    };
    if (buildsTheSameWithout(unread_)) return;
    std::vector<Path> kept;
    for (std::size_t index = 0; index != std::min(unread_.size(), kMostTrials); ++index) {
      if (buildsTheSameWithout({unread_[index]})) kept.push_back(unread_[index]);
    }
    unread_ = std::move(kept);
  }

  void tellUnread(const Path& place) {
    const std::string pattern = patternOf(place);
    if (kind_->reads(pattern)) {
      ignored(place, "is not read here", conditionOf(place));
    } else {
      Problem problem = problemAt(place, Code::kUnknownMember, "is not known here");
      problem.hint = hintForUnknown(place);
      problems_.push_back(std::move(problem));
    }
  }

  /// The missing member that makes another one read.
  std::optional<std::string> conditionOf(Path place) const {
    const Value object = withShortArrays(corrected_, place);
    for (const auto& [pattern, known] : kind_->places) {
      if (known.wanted.empty() || pattern.find('*') != std::string::npos) continue;
      const Path other = pathOf(pattern);
      if (valueAt(object, other) != nullptr) continue;
      Value with = object;
      put(with, other, someValueOf(known.wanted));
      if (attempt(builder_, importer::Step::kBuild, with).trace.wasAsked(place)) {
        return "it is read only where there is " + nameOfHolder(pattern);
      }
    }
    return std::nullopt;
  }

  std::string hintForUnknown(const Path& place) const {
    const std::string& name = *std::get_if<std::string>(&place.back());
    if (isLikeComment(name)) return kTakeOut;
    const std::string holder = patternOf(parentOf(place));
    std::vector<std::string> free;
    for (const std::string& member : kind_->membersOf(holder)) {
      if (valueAt(control_.value, childOf(parentOf(place), member)) == nullptr)
        free.push_back(member);
    }
    std::vector<std::string> meant = nearestWords(name, free);
    if (!meant.empty()) return didYouMean(meant);
    const std::vector<std::string> holders = kind_->holdersOf(name);
    if (!holders.empty()) return hintForStray(name, holders.front());
    meant = relatedWords(name, free);
    if (meant.empty() && free.size() == 1 && isMissing(free.front(), place)) meant = free;
    if (!meant.empty()) return didYouMean(meant);
    // It may be a misspelling of what belongs elsewhere.
    std::set<std::string> names;
    for (const auto& [pattern, known] : kind_->places) {
      const std::size_t slash = pattern.rfind('/');
      if (pattern.substr(0, slash) == holder) continue;
      names.insert(json::nameOf(std::string_view(pattern).substr(slash + 1)));
    }
    meant = nearestWords(name, {names.begin(), names.end()});
    if (meant.empty()) meant = relatedWords(name, {names.begin(), names.end()});
    if (meant.size() == 1) {
      for (const std::string& other : kind_->holdersOf(meant.front())) {
        if (other != holder) return didYouMean(meant, " in " + nameOfHolder(other));
      }
    }
    if (free.empty()) return kTakeOut;
    // Those first that hold what it holds.
    const std::string type = typeNameOf(valueAt(control_.value, place));
    std::stable_partition(free.begin(), free.end(), [&](const std::string& member) {
      return kind_->places.at(patternOf(childOf(parentOf(place), member))).wanted == type;
    });
    return "what can be added here: " + listed(free, kMostToAdd);
  }

  /// For a member that is known in another object.
  std::string hintForStray(const std::string& name, const std::string& holder) const {
    std::string other = holder;
    appendToPattern(other, name);
    const bool isThere =
        other.find('*') == std::string::npos && valueAt(control_.value, pathOf(other)) != nullptr;
    if (!isThere) return quoted(name) + " belongs in " + nameOfHolder(holder);
    return "take it out: there is one in " + nameOfHolder(holder) + " already";
  }

  /// Whether a member, the only one that is missing beside a place, is required, and what stands
  /// there is unknown, alone in that, and of its type.
  bool isMissing(const std::string& member, const Path& place) const {
    const Path holder = parentOf(place);
    const bool isAlone = std::all_of(unread_.begin(), unread_.end(), [&](const Path& other) {
      return other == place || parentOf(other) != holder || kind_->reads(patternOf(other));
    });
    const Value* required = valueAt(corrected_, childOf(holder, member));
    return isAlone && required != nullptr &&
           typeNameOf(required) == std::string(typeNameOf(valueAt(control_.value, place)));
  }

  void ignored(const Path& place, const std::string& what, std::optional<std::string> hint) {
    Problem problem = problemAt(place, Code::kIgnoredMember, what);
    problem.hint = std::move(hint);
    problems_.push_back(std::move(problem));
  }

  Problem problemAt(const Path& place, Code code, const std::string& what) {
    if (name_.empty()) name_ = nameOfObject(control_.knowledge, &builder_, control_.value);
    Problem problem{code,
                    control_.pointer,
                    control_.pointer + pointerOf(place),
                    name_ + ": " + nameOfPlace(place) + ' ' + what,
                    {},
                    builder_.name(),
                    {},
                    {}};
    problem.atKey = true;
    return problem;
  }

  const OfferedObject& control_;
  const NamedBuilder& builder_;
  std::shared_ptr<const Kind> kind_;
  const Value& corrected_;
  ReadTrace trace_;
  std::string name_;
  std::vector<Path> unread_;
  std::vector<Problem> problems_;
};

}  // namespace

std::vector<Problem> unreadMembersOf(const OfferedObject& control, const Value& corrected) {
  return UnreadSearch(control, corrected).run();
}

}  // namespace reference_host::diagnosis
