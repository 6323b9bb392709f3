#include "reference_host/diagnosis/knowledge.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/culprit.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// More shapes than any program writes; what has another one is looked at each time.
constexpr std::size_t kMostShapes = 10000;

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

/// The object with at most one element in each array, the one on the way to the place if there is
/// one; the place is changed with it.
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

bool Knowledge::isKnownByClass(const NamedBuilder& builder, const std::string& className) const {
  const std::lock_guard<std::mutex> guard(mutex_);
  const auto [known, isNew] = knownByClass_.try_emplace({&builder, className}, false);
  if (isNew) known->second = isClaimed(builder, Recognition{&builder, className, {}}.sample());
  return known->second;
}

const Kind& Knowledge::kindOf(const NamedBuilder& builder, const Value& object) const {
  const auto wordAt = [&](const Path& place) {
    const std::string* text = textAt(object, place);
    return text == nullptr ? std::string() : *text;
  };
  Recognition words{&builder, wordAt(classNamePlace()), std::nullopt};
  if (!isKnownByClass(builder, words.className)) words.type = wordAt(typePlace());
  const std::vector<Recognition>& known = recognitions();
  const std::lock_guard<std::mutex> guard(mutex_);
  const Words key{&builder, words.className, words.type.value_or("")};
  if (const auto learnt = kinds_.find(key); learnt != kinds_.end()) return learnt->second;
  // A builder that goes by other words still builds this object.
  Value sample = words.sample();
  if (!isClaimed(builder, sample)) sample = object;
  return kinds_.emplace(key, learnKind(builder, std::move(sample), known)).first->second;
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

Remedy Knowledge::remedyFor(const NamedBuilder& builder, const Value& object, const Path& place,
                            const std::vector<std::string>* moreWords) const {
  const Kind& kind = kindOf(builder, object);
  const std::string pattern = patternOf(place);
  const std::string held = typeNameOf(valueAt(object, place));
  const std::lock_guard<std::mutex> guard(mutex_);
  const auto [remedy, isNew] = remedies_.try_emplace({&kind, pattern + ' ' + held});
  if (isNew) remedy->second = remedyIn(builder, kind, words(), pattern, held);
  const bool tryMore = remedy->second.word.empty() && moreWords != nullptr && !moreWords->empty();
  return tryMore ? remedyIn(builder, kind, *moreWords, pattern, held) : remedy->second;
}

bool Knowledge::isGood(const std::string& shape) const {
  const std::shared_lock<std::shared_mutex> guard(shapesMutex_);
  return goodShapes_.count(shape) != 0;
}

void Knowledge::rememberGood(std::string shape) const {
  const std::lock_guard<std::shared_mutex> guard(shapesMutex_);
  if (goodShapes_.size() < kMostShapes) goodShapes_.insert(std::move(shape));
}

}  // namespace reference_host::diagnosis
