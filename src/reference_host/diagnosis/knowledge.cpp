#include "reference_host/diagnosis/knowledge.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/culprit.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// The question that these texts are, for one builder: no other texts make the same.
std::string questionTo(const NamedBuilder& builder, const std::vector<std::string>& texts) {
  std::string question = std::to_string(reinterpret_cast<std::uintptr_t>(&builder));
  for (const std::string& text : texts) {
    question.append(1, ' ').append(std::to_string(text.size())).append(1, ':').append(text);
  }
  return question;
}

/// What the words of an object are, and their keys, so that objects with the same ones are treated
/// alike; not those of one value in it.
std::vector<std::string> wordsIn(const Value& object, const Value* without) {
  std::vector<std::string> words;
  std::vector<const Value*> open{&object};
  while (!open.empty()) {
    const Value* value = open.back();
    open.pop_back();
    if (value == without) continue;
    if (const auto* elements = value->get_if<Value::Array>()) {
      for (const Value& element : *elements) open.push_back(&element);
    }
    const auto* members = value->get_if<Value::Object>();
    if (members == nullptr) continue;
    for (const auto& [name, member] : *members) {
      const auto* word = member.get_if<std::string>();
      if (word != nullptr && &member != without && isWordKey(name))
        words.insert(words.end(), {name, *word});
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

class Trial {
 public:
  Trial(const NamedBuilder& builder, const Value& object, Path place)
      : builder_(builder), place_(std::move(place)), object_(withShortArrays(object, place_)) {}

  /// What it depends on.
  std::vector<std::string> question() const {
    const Value* value = valueAt(object_, place_);
    std::vector<std::string> texts = wordsIn(object_, value);
    texts.push_back(patternOf(place_));
    texts.emplace_back(typeNameOf(value));
    return texts;
  }

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
  return knownByClass_.get(questionTo(builder, {className}), [&] {
    return isClaimed(builder, Recognition{&builder, className, {}}.sample());
  });
}

Recognition Knowledge::wordsOf(const NamedBuilder& builder, const Value& object) const {
  const auto wordAt = [&](const Path& place) {
    const std::string* text = textAt(object, place);
    return text == nullptr ? std::string() : *text;
  };
  Recognition words{&builder, wordAt(classNamePlace()), std::nullopt};
  if (!isKnownByClass(builder, words.className)) words.type = wordAt(typePlace());
  return words;
}

std::shared_ptr<const Kind> Knowledge::kindOf(const NamedBuilder& builder,
                                              const Value& object) const {
  const Recognition words = wordsOf(builder, object);
  return kinds_.get(questionTo(builder, {words.className, words.type.value_or("")}), [&] {
    // A builder that goes by other words still builds this object.
    Value sample = words.sample();
    if (!isClaimed(builder, sample)) sample = object;
    return std::make_shared<const Kind>(learnKind(builder, std::move(sample), recognitions()));
  });
}

std::string Knowledge::wantedInstead(const NamedBuilder& builder, const Value& object,
                                     const Path& place) const {
  const Trial trial(builder, object, place);
  return wantedInstead_.get(questionTo(builder, trial.question()),
                            [&] { return trial.wantedInstead(); });
}

Remedy Knowledge::remedyFor(const NamedBuilder& builder, const Value& object, const Path& place,
                            const std::vector<std::string>* moreWords) const {
  const Recognition kindWords = wordsOf(builder, object);
  const std::string pattern = patternOf(place);
  const std::string held = typeNameOf(valueAt(object, place));
  const auto among = [&](const std::vector<std::string>& candidates) {
    return remedyIn(builder, *kindOf(builder, object), candidates, pattern, held);
  };
  Remedy remedy = remedies_.get(
      questionTo(builder, {kindWords.className, kindWords.type.value_or(""), pattern, held}),
      [&] { return among(words()); });
  const bool tryMore = remedy.word.empty() && moreWords != nullptr && !moreWords->empty();
  return tryMore ? among(*moreWords) : remedy;
}

bool Knowledge::isGood(const std::string& shape) const {
  return goodShapes_.find(shape).has_value();
}

void Knowledge::rememberGood(std::string shape) const {
  goodShapes_.remember(std::move(shape), true);
}

}  // namespace reference_host::diagnosis
