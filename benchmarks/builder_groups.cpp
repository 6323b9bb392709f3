/// @file
/// What the builders do, beside the least that it takes and beside the letter of their contract.

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bare_structs.hpp"
#include "baseline.hpp"
#include "benchmark/benchmark.h"
#include "corpus.hpp"
#include "groups.hpp"
#include "gx/zero.hpp"
#include "literal_recognition.hpp"
#include "reference_host/export/export.hpp"

namespace benchmarks {

namespace {

using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;

using SharedCorpora = std::vector<std::shared_ptr<const Corpus>>;

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

/// What a builder is given.
struct Recognised {
  const NamedBuilder* builder;
  const Value* json;
};

/// What the baseline is given.
using Plain = PlainControl<std::string>;

/// The claimed objects of all corpora that have a baseline, each as what one variant needs of it
/// and nothing else: what lies between two of them would be fetched along with them.
template <typename Item>
std::vector<Item> itemsOf(const SharedCorpora& corpora, Item (*take)(const ClaimedObject&)) {
  std::vector<Item> items;
  for (const auto& corpus : corpora) {
    for (const ClaimedObject& object : corpus->claimed()) {
      if (object.plain) items.push_back(take(object));
    }
  }
  return items;
}

Recognised recognisedIn(const ClaimedObject& object) {
  return {object.builder, object.json};
}

Plain plainIn(const ClaimedObject& object) {
  return *object.plain;
}

Node build(const Model& model, const Recognised& object) {
  return object.builder->build(model, *object.json);
}

/// Makes all nodes in one model, and destroys it.
template <typename Item>
void makeAll(const std::vector<Item>& items, Node (*make)(const Model&, const Item&)) {
  const Model model = Model::create();
  std::vector<Node> nodes;
  nodes.reserve(items.size());
  for (const Item& item : items) nodes.push_back(make(model, item));
  benchmark::DoNotOptimize(nodes.data());
}

/// @param corpora kept, because the items may refer to them.
template <typename Item>
Variant making(std::string name, const SharedCorpora& corpora, std::vector<Item> items,
               Node (*make)(const Model&, const Item&)) {
  const std::size_t count = items.size();
  return {std::move(name), count,
          [corpora, items = std::move(items), make](int) { makeAll(items, make); }};
}

Variant buildOf(std::string name, const SharedCorpora& corpora) {
  return making(std::move(name), corpora, itemsOf(corpora, recognisedIn), build);
}

Variant baselineOf(std::string name, const SharedCorpora& corpora) {
  return making(std::move(name), corpora, itemsOf(corpora, plainIn), createElements);
}

/// The baseline is none unless it makes the very same elements.
void requireSameElements(const SharedCorpora& corpora) {
  for (const auto& corpus : corpora) {
    for (const ClaimedObject& object : corpus->claimed()) {
      if (!object.plain) continue;
      const Model built = Model::create();
      const Model made = Model::create();
      if (reference_host::exporting::toJson(build(built, recognisedIn(object))) !=
          reference_host::exporting::toJson(createElements(made, *object.plain))) {
        throw std::runtime_error("the baseline makes other elements than the builder of the " +
                                 object.builder->name());
      }
    }
  }
}

using Objects = std::vector<const Value*>;

Variant recognitionOf(std::string name, const std::shared_ptr<const Corpus>& corpus,
                      const Objects& objects, std::size_t (*ask)(const Value&)) {
  return {std::move(name), objects.size(), [corpus, objects, ask](int) {
            std::size_t claims = 0;
            for (const Value* object : objects) claims += ask(*object);
            benchmark::DoNotOptimize(claims);
          }};
}

void requireSameAnswers(const Objects& objects) {
  for (const Value* object : objects) {
    if (recognize(*object) != recognizeLiterally(*object)) {
      throw std::runtime_error("recognition to the letter answers otherwise");
    }
  }
}

Objects textRunsAmong(const Objects& objects) {
  Objects runs;
  for (const Value* object : objects) {
    if ((*object)["children"].get_if<Value::Array>() == nullptr) runs.push_back(object);
  }
  return runs;
}

}  // namespace

Group buildGroup() {
  const auto corpus = std::make_shared<const Corpus>(generateDocument(kMegabyte));
  const SharedCorpora corpora = {corpus};
  requireSameElements(corpora);
  if (recognizeAll(corpus->value()) != corpus->claimed().size()) {
    throw std::runtime_error("the walk finds other controls");
  }
  Group group;
  group.name = "build";
  group.unit = "control";
  const std::size_t controls = corpus->claimed().size();
  group.variants = {buildOf("build", corpora),
                    baselineOf("baseline", corpora),
                    {"walk, recognise, build", controls,
                     [corpus](int) { benchmark::DoNotOptimize(importValue(corpus->value())); }},
                    {"walk, recognise", controls,
                     [corpus](int) { benchmark::DoNotOptimize(recognizeAll(corpus->value())); }}};
  group.rows = {
      {"build of objects just recognised", "baseline", 2, 1, Bound::kAtMost, 1.6,
       [](const RoundTimes& times) { return (times[2] - times[3]) / times[1]; }},
      {"walk, recognise and build", "baseline", 2, 1, Bound::kAtMost, 3.0},
      {"walk and recognise", "baseline", 3, 1},
      // Nothing has read these before: it shows what else works on the processor's caches.
      {"build of objects that nobody has read", "baseline", 0, 1}};
  return group;
}

Group kindsGroup() {
  constexpr std::size_t kControls = 200;
  Group group;
  group.name = "kinds";
  group.unit = "control";
  for (const contract::Kind* kind : measuredKinds()) {
    if (!hasBaseline(*kind)) continue;
    const SharedCorpora corpora = controlsOf(*kind, kControls);
    requireSameElements(corpora);
    const std::string& name = kind->name;
    const std::size_t first = group.variants.size();
    group.variants.push_back(buildOf("build " + name, corpora));
    group.variants.push_back(baselineOf("baseline " + name, corpora));
    group.rows.push_back({"build: " + name, "baseline", first, first + 1});
  }
  group.secondsOfRun = 0.02;
  return group;
}

Group bareStructsGroup() {
  const SharedCorpora corpora = controlsOf(contract::kindOf(Button<std::string>::kBuilder), 2'000);
  std::vector<Button<std::string>> buttons;
  for (const Plain& plain : itemsOf(corpora, plainIn)) {
    buttons.push_back(std::get<Button<std::string>>(plain));
  }
  Group group;
  group.name = "bare structs";
  group.unit = "button";
  group.variants = {baselineOf("baseline", corpora),
                    {"bare structs", buttons.size(), [buttons](int) {
                       std::vector<boost::intrusive_ptr<BareButton>> nodes;
                       nodes.reserve(buttons.size());
                       for (const Button<std::string>& button : buttons) {
                         nodes.push_back(createBareButton(button));
                       }
                       benchmark::DoNotOptimize(nodes.data());
                     }}};
  group.rows = {{"baseline", "three bare counted structs, same texts", 0, 1, Bound::kAtMost, 1.5}};
  return group;
}

Group recognitionGroup() {
  const auto corpus = std::make_shared<const Corpus>(generateDocument(kMegabyte));
  Objects controls;
  for (const ClaimedObject& object : corpus->claimed()) controls.push_back(object.json);
  const Objects& strangers = corpus->strangers();
  const Objects runs = textRunsAmong(strangers);
  requireSameAnswers(controls);
  requireSameAnswers(strangers);
  Group group;
  group.name = "recognition";
  group.unit = "round of a question to each";
  group.variants = {recognitionOf("controls", corpus, controls, recognize),
                    recognitionOf("controls to the letter", corpus, controls, recognizeLiterally),
                    recognitionOf("strangers", corpus, strangers, recognize),
                    recognitionOf("strangers to the letter", corpus, strangers, recognizeLiterally),
                    recognitionOf("text runs", corpus, runs, recognize),
                    recognitionOf("text runs to the letter", corpus, runs, recognizeLiterally)};
  group.rows = {{"recognition of controls", "the literal reading", 0, 1, Bound::kAtMost, 1.0 / 25},
                {"recognition of what is nothing of ours", "the literal reading", 2, 3,
                 Bound::kAtMost, 1.0 / 40},
                {"recognition of text runs alone", "the literal reading", 4, 5}};
  return group;
}

}  // namespace benchmarks
