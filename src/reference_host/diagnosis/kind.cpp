#include "reference_host/diagnosis/kind.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <utility>

#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// Enough for kinds ten times as large as any that was seen; a builder that wants more is odd.
constexpr int kMostSteps = 1000;

/// Learns a kind from an object that is recognised: reads what the builder asks for, puts it there,
/// and builds again, until nothing new is asked for.
class Lesson {
 public:
  Lesson(const NamedBuilder& builder, Value sample, const std::vector<Recognition>& recognitions)
      : builder_(builder), sample_(std::move(sample)), recognitions_(recognitions) {}

  Kind learn() {
    learnRecognition();
    for (int step = 0; step != kMostSteps; ++step) {
      const Attempt built = attempt(builder_, importer::Step::kBuild, sample_);
      takeDown(built.trace);
      if (built.succeeded ? !addMember(built.trace) && !addElement() : !correct(built)) break;
    }
    kind_.sample = std::move(sample_);
    return std::move(kind_);
  }

 private:
  void learnRecognition() {
    takeDown(attempt(builder_, importer::Step::kCanBuild, sample_).trace);
    for (const Path* place : {&classNamePlace(), &contextPlace(), &typePlace()}) {
      const Value* value = valueAt(sample_, *place);
      if (value == nullptr) continue;
      Value without = sample_;
      removeMember(without, *place);
      if (isClaimed(builder_, without)) continue;
      PlaceKnowledge& known = kind_.places[patternOf(*place)];
      known.forRecognition = true;
      known.wanted = typeNameOf(*value);
    }
  }

  void takeDown(const ReadTrace& trace) {
    for (const Path& place : trace.askedPlaces()) kind_.places[patternOf(place)];
  }

  /// Puts what is wanted where a build failed; false when that leads nowhere.
  bool correct(const Attempt& failed) {
    const auto culprit = findCulprit(builder_, importer::Step::kBuild, sample_, failed);
    if (!culprit || !corrected_.insert({culprit->place, culprit->wanted}).second) return false;
    fill(culprit->place, culprit->wanted);
    return true;
  }

  void fill(const Path& place, const std::string& wanted) {
    put(sample_, place, someValueOf(wanted));
    kind_.places[patternOf(place)].wanted = wanted;
  }

  /// Puts something where a member was asked for and there was none; false when there is no such
  /// place.
  bool addMember(const ReadTrace& trace) {
    const std::vector<Path> asked = trace.askedPlaces();
    const auto missing = std::find_if(asked.begin(), asked.end(), [&](const Path& place) {
      return valueAt(sample_, place) == nullptr && tried_.insert(place).second;
    });
    if (missing == asked.end()) return false;
    addMemberAt(*missing);
    return true;
  }

  void addMemberAt(const Path& place) {
    const std::string object = traits<Value::Object>::name;
    Value with = sample_;
    put(with, place, Value::Object());
    const Attempt built = attempt(builder_, importer::Step::kBuild, with);
    takeDown(built.trace);
    if (!built.succeeded) {
      const auto culprit = findCulprit(builder_, importer::Step::kBuild, with, built);
      if (culprit) fill(place, culprit->place == place ? culprit->wanted : object);
    } else if (built.trace.wasHolder(place)) {
      fill(place, object);
    } else {
      addScalar(place);
    }
  }

  /// Of the types that are accepted, the first of which a value makes a difference is wanted.
  void addScalar(const Path& place) {
    for (const char* type : {traits<std::string>::name, traits<double>::name, traits<bool>::name}) {
      Value one = sample_;
      Value other = sample_;
      put(one, place, someValueOf(type));
      put(other, place, someValueOf(type, 1));
      const auto node = nodeBuilt(builder_, one);
      if (!node || node == nodeBuilt(builder_, other)) continue;
      fill(place, type);
      return;
    }
  }

  /// Puts an element into an array that has none; false when there is no such array.
  bool addElement() {
    std::optional<Path> path;
    for (const auto& [array, known] : kind_.places) {
      if (known.wanted != traits<Value::Array>::name || !triedArrays_.insert(array).second)
        continue;
      path = pathOfEmptyArray(array);
      if (path) break;
    }
    if (!path) return false;
    addElementTo(*path);
    return true;
  }

  std::optional<Path> pathOfEmptyArray(const std::string& pattern) const {
    for (const Path& place : filled()) {
      if (patternOf(place) == pattern) return place;
    }
    return std::nullopt;
  }

  /// The places of all empty arrays in the sample.
  std::vector<Path> filled() const {
    std::vector<Path> found;
    std::vector<std::pair<const Value*, Path>> open{{&sample_, {}}};
    while (!open.empty()) {
      const auto [value, path] = std::move(open.back());
      open.pop_back();
      if (const auto* members = value->get_if<Value::Object>()) {
        for (const auto& [name, member] : *members) open.emplace_back(&member, childOf(path, name));
      } else if (const auto* elements = value->get_if<Value::Array>()) {
        if (elements->empty()) found.push_back(path);
        for (std::size_t index = 0; index != elements->size(); ++index) {
          open.emplace_back(&(*elements)[index], childOf(path, index));
        }
      }
    }
    return found;
  }

  void addElementTo(const Path& array) {
    const Path element = childOf(array, std::size_t{0});
    Value with = sample_;
    put(with, array, Value::Array{Value::Object()});
    const Attempt built = attempt(builder_, importer::Step::kBuild, with);
    takeDown(built.trace);
    if (!built.succeeded) {
      const auto culprit = findCulprit(builder_, importer::Step::kBuild, with, built);
      if (!culprit || !isWithin(culprit->place, element)) return;
      sample_ = std::move(with);
      if (culprit->place == element) fill(element, culprit->wanted);
    } else if (built.trace.wasHolder(element)) {
      sample_ = std::move(with);
    } else {
      addRecognizedElement(array, element);
    }
  }

  /// For arrays whose elements another builder has to recognise.
  void addRecognizedElement(const Path& array, const Path& element) {
    for (const Recognition& recognition : recognitions_) {
      Value with = sample_;
      put(with, array, Value::Array{recognition.sample()});
      if (!attempt(builder_, importer::Step::kBuild, with).trace.wasHolder(element)) continue;
      sample_ = std::move(with);
      Path className = element;
      className.insert(className.end(), classNamePlace().begin(), classNamePlace().end());
      kind_.places[patternOf(className)] = {traits<std::string>::name, true};
      return;
    }
  }

  const NamedBuilder& builder_;
  Value sample_;
  const std::vector<Recognition>& recognitions_;
  Kind kind_;
  std::set<std::pair<Path, std::string>> corrected_;
  std::set<Path> tried_;
  std::set<std::string> triedArrays_;
};

}  // namespace

bool Kind::readsBelow(const std::string& pattern) const {
  const auto next = places.lower_bound(pattern + '/');
  return next != places.end() && next->first.compare(0, pattern.size() + 1, pattern + '/') == 0;
}

std::vector<std::string> Kind::membersOf(const std::string& pattern) const {
  std::vector<std::string> names;
  const std::string prefix = pattern + '/';
  for (auto place = places.lower_bound(prefix);
       place != places.end() && place->first.compare(0, prefix.size(), prefix) == 0; ++place) {
    std::string token = place->first.substr(prefix.size());
    if (token.find('/') == std::string::npos && token != "*") {
      names.push_back(token == "~2" ? "*" : json::nameOf(token));
    }
  }
  return names;
}

std::vector<std::string> Kind::holdersOf(const std::string& name) const {
  std::string ending;
  appendToPattern(ending, name);
  std::vector<std::string> holders;
  for (const auto& [pattern, known] : places) {
    if (pattern.size() < ending.size()) continue;
    const std::size_t length = pattern.size() - ending.size();
    if (pattern.compare(length, ending.size(), ending) == 0) {
      holders.push_back(pattern.substr(0, length));
    }
  }
  return holders;
}

Kind learnKind(const NamedBuilder& builder, Value sample,
               const std::vector<Recognition>& recognitions) {
  return Lesson(builder, std::move(sample), recognitions).learn();
}

}  // namespace reference_host::diagnosis
