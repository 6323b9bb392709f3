#include "reference_host/diagnosis/knowledge.hpp"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// Enough for kinds ten times as large as any that was seen; a builder that wants more is odd.
constexpr int kMostSteps = 1000;

/// More shapes than any program writes; what has another one is looked at each time.
constexpr std::size_t kMostShapes = 10000;

bool isClaimed(const NamedBuilder& builder, const Value& object) {
  return attempt(builder, importer::Step::kCanBuild, object).claimed;
}

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

/// What the words of an object are, so that objects with the same ones are treated alike.
std::string wordsOf(const Value& object) {
  std::string words;
  std::vector<const Value*> open{&object};
  while (!open.empty()) {
    const auto* members = open.back()->get_if<Value::Object>();
    open.pop_back();
    if (members == nullptr) continue;
    for (const auto& [name, member] : *members) {
      const auto* word = member.get_if<std::string>();
      if (word != nullptr && isWordKey(name)) words.append(name).append("=").append(*word) += '\n';
      open.push_back(&member);
    }
  }
  return words;
}

Remedy remedyIn(const NamedBuilder& builder, const Kind& kind,
                const std::vector<std::string>& words, const std::string& pattern,
                const std::string& held) {
  Remedy remedy;
  const Path place = pathOf(pattern);
  if (valueAt(kind.sample, place) == nullptr) return remedy;
  const auto nodeWith = [&](const Path& other, const Value& word, int variant) {
    Value sample = kind.sample;
    put(sample, other, word);
    put(sample, place, someValueOf(held, variant));
    return nodeBuilt(builder, sample);
  };
  if (std::get_if<std::string>(&place.back()) != nullptr) {
    Value without = kind.sample;
    removeMember(without, place);
    remedy.canBeLeftOut = nodeBuilt(builder, without).has_value();
  }
  for (const char* key : kWordKeys) {
    const Path other = childOf(parentOf(place), key);
    const auto known = kind.places.find(patternOf(other));
    if (known == kind.places.end() || known->second.forRecognition || other == place) continue;
    for (const std::string& word : words) {
      const auto node = nodeWith(other, word, 0);
      if (!node || node == nodeWith(other, word, 1)) continue;
      remedy.wordKey = key;
      remedy.word = word;
      return remedy;
    }
  }
  return remedy;
}

void addOnce(std::vector<std::string>& words, std::string word) {
  if (std::find(words.begin(), words.end(), word) == words.end()) words.push_back(std::move(word));
}

/// Words by which a builder of this name may go: "x::RatingBuilderImpl" suggests "rating",
/// "Rating", "RatingNode" and "RatingControlNode".
std::vector<std::string> wordsOfName(std::string name) {
  name.erase(0, name.rfind(':') + 1);
  for (const std::string_view ending : {"Impl", "Builder", "Node"}) {
    const std::size_t length = name.size() - std::min(name.size(), ending.size());
    if (name.compare(length, ending.size(), ending) == 0) name.erase(length);
  }
  if (name.empty()) return {};
  std::string small = name;
  small.front() = lowered(small.substr(0, 1)).front();
  return {small, name, name + "Node", name + std::string(kClassEnding)};
}

void appendRecognitions(std::vector<Recognition>& found, const NamedBuilder& builder,
                        const std::vector<std::string>& words) {
  for (const std::string& className : words) {
    Recognition recognition{&builder, className, std::nullopt};
    const Attempt asked = attempt(builder, importer::Step::kCanBuild, recognition.sample());
    if (asked.claimed) found.push_back(recognition);
    if (asked.succeeded) continue;
    // The class name is not enough.
    for (const std::string& type : words) {
      recognition.type = type;
      if (isClaimed(builder, recognition.sample())) found.push_back(recognition);
    }
  }
}

class Trial {
 public:
  Trial(const NamedBuilder& builder, const Value& object, Path place)
      : builder_(builder), place_(std::move(place)), object_(withShortArrays(object, place_)) {}

  std::string wantedInstead() const {
    const std::string type = typeNameOf(valueAt(object_, place_));
    std::string wanted;
    std::optional<std::string> indifferent;
    bool passedOver = false;
    for (const char* scalar :
         {traits<std::string>::name, traits<double>::name, traits<bool>::name}) {
      const auto one = nodeWith(someValueOf(scalar));
      if (!one) continue;
      if (one != nodeWith(someValueOf(scalar, 1))) {
        if (wanted.empty()) wanted = scalar;
      } else {
        indifferent = one;
        passedOver = passedOver || scalar == type;
      }
    }
    if (type == traits<Value::Array>::name) {
      passedOver = allAlike({Value::Array(), Value::Array{"text"}, Value::Array{1.0},
                             Value::Array{true}, Value::Array{Value::Object()}});
    } else if (type == traits<Value::Object>::name) {
      passedOver = allAlike({Value::Object(), Value::Object{{"member", 1.0}}});
    } else if (type == traits<foundation::json::Null>::name) {
      passedOver = indifferent && nodeWith(foundation::json::Null()) == indifferent;
    }
    return passedOver ? wanted : std::string();
  }

 private:
  bool allAlike(const std::vector<Value>& values) const {
    const auto first = nodeWith(values.front());
    return first && std::all_of(values.begin() + 1, values.end(),
                                [&](const Value& value) { return nodeWith(value) == first; });
  }

  std::optional<std::string> nodeWith(Value value) const {
    Value with = object_;
    put(with, place_, std::move(value));
    return nodeBuilt(builder_, with);
  }

  const NamedBuilder& builder_;
  Path place_;
  Value object_;
};

}  // namespace

bool isWordKey(std::string_view name) noexcept {
  return std::find(std::begin(kWordKeys), std::end(kWordKeys), name) != std::end(kWordKeys);
}

Value Recognition::sample() const {
  Value::Object members{{"className", className}};
  if (type) members["context"] = Value::Object{{"type", *type}};
  return members;
}

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

Knowledge::Knowledge(const Builders& builders, std::vector<std::string> words)
    : builders_(builders), words_(std::move(words)) {}

const std::vector<std::string>& Knowledge::words() const {
  recognitions();
  return words_;
}

const std::vector<Recognition>& Knowledge::recognitions() const {
  std::call_once(recognitionsOnce_, [this] { learnRecognitions(); });
  return recognitions_;
}

void Knowledge::learnRecognitions() const {
  for (const NamedBuilder& builder : builders_) {
    std::vector<std::string> candidates = words_;
    for (std::string& word : wordsOfName(builder.name())) addOnce(candidates, std::move(word));
    appendRecognitions(recognitions_, builder, candidates);
  }
  for (const Recognition& recognition : recognitions_) {
    addOnce(words_, recognition.className);
    if (recognition.type) addOnce(words_, *recognition.type);
  }
}

std::vector<Recognition> Knowledge::recognitionsAmong(const std::vector<std::string>& words) const {
  std::vector<Recognition> found;
  for (const NamedBuilder& builder : builders_) appendRecognitions(found, builder, words);
  return found;
}

const Kind& Knowledge::kindOf(const NamedBuilder& builder, const Value& object) const {
  const auto wordAt = [&](const Path& place) {
    const std::string* text = textAt(object, place);
    return text == nullptr ? std::string() : *text;
  };
  Recognition words{&builder, wordAt(classNamePlace()), std::nullopt};
  if (!isClaimed(builder, words.sample())) words.type = wordAt(typePlace());
  const std::vector<Recognition>& known = recognitions();
  const std::lock_guard<std::mutex> guard(mutex_);
  const Words key{&builder, words.className, words.type.value_or("")};
  if (const auto learnt = kinds_.find(key); learnt != kinds_.end()) return learnt->second;
  // A builder that goes by other words still builds this object.
  Value sample = words.sample();
  if (!isClaimed(builder, sample)) sample = object;
  return kinds_.emplace(key, Lesson(builder, std::move(sample), known).learn()).first->second;
}

std::string Knowledge::wantedInstead(const NamedBuilder& builder, const Value& object,
                                     const Path& place) const {
  const Words key{&builder, patternOf(place) + ' ' + typeNameOf(valueAt(object, place)),
                  wordsOf(object)};
  const std::lock_guard<std::mutex> guard(mutex_);
  if (const auto tried = wantedInstead_.find(key); tried != wantedInstead_.end()) {
    return tried->second;
  }
  return wantedInstead_.emplace(key, Trial(builder, object, place).wantedInstead()).first->second;
}

Remedy Knowledge::remedyFor(const NamedBuilder& builder, const Value& object,
                            const Path& place) const {
  const Kind& kind = kindOf(builder, object);
  const std::string pattern = patternOf(place);
  const std::string held = typeNameOf(valueAt(object, place));
  const std::lock_guard<std::mutex> guard(mutex_);
  const auto [remedy, isNew] = remedies_.try_emplace({&kind, pattern + ' ' + held});
  if (isNew) remedy->second = remedyIn(builder, kind, words(), pattern, held);
  return remedy->second;
}

bool Knowledge::isGood(const std::string& shape) const {
  const std::shared_lock<std::shared_mutex> guard(shapesMutex_);
  return goodShapes_.count(shape) != 0;
}

void Knowledge::rememberGood(std::string shape) const {
  const std::lock_guard<std::shared_mutex> guard(shapesMutex_);
  if (goodShapes_.size() < kMostShapes) goodShapes_.insert(std::move(shape));
}

Value withShortArrays(const Value& object, Path& place) {
  // One level after the other; the way to the place goes along.
  struct Pending {
    const Value* source;
    Value* target;
    std::size_t depth;  // of steps of the way that lead here
    bool onTheWay;
  };
  Value result;
  std::vector<Pending> open{{&object, &result, 0, true}};
  while (!open.empty()) {
    const Pending pending = open.back();
    open.pop_back();
    const bool goesOn = pending.onTheWay && pending.depth < place.size();
    if (const auto* members = pending.source->get_if<Value::Object>()) {
      auto& copies = pending.target->emplace<Value::Object>();
      for (const auto& [name, member] : *members) {
        const bool next = goesOn && place[pending.depth] == PathStep(name);
        open.push_back({&member, &copies[name], pending.depth + 1, next});
      }
    } else if (const auto* elements = pending.source->get_if<Value::Array>()) {
      auto& copies = pending.target->emplace<Value::Array>();
      if (elements->empty()) continue;
      std::size_t index = 0;
      if (goesOn) {
        index = *std::get_if<std::size_t>(&place[pending.depth]);
        place[pending.depth] = std::size_t{0};
      }
      open.push_back({&(*elements)[index], &copies.emplace_back(), pending.depth + 1, goesOn});
    } else {
      *pending.target = *pending.source;
    }
  }
  return result;
}

}  // namespace reference_host::diagnosis
