/// @file
/// What the builders do, beside the least that it takes and beside the letter of their contract.

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bare_structs.hpp"
#include "benchmark/benchmark.h"
#include "corpus.hpp"
#include "floor.hpp"
#include "groups.hpp"
#include "gx/zero.hpp"
#include "literal_recognition.hpp"
#include "reference_host/export/export.hpp"

namespace benchmarks {

namespace {

using document::gxzero::Node;
using foundation::json::Value;
using gx::zero::Model;

using ClaimedObjects = std::vector<const ClaimedObject*>;
using SharedCorpora = std::vector<std::shared_ptr<const Corpus>>;

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

/// Builds all objects in one model, and destroys it.
/// @param make from a model and a claimed object to a node.
template <typename Make>
void makeAll(const ClaimedObjects& objects, const Make& make) {
  const Model model = Model::create();
  std::vector<Node> nodes;
  nodes.reserve(objects.size());
  for (const ClaimedObject* object : objects) nodes.push_back(make(model, *object));
  benchmark::DoNotOptimize(nodes.data());
}

Node makeByBuilder(const Model& model, const ClaimedObject& object) {
  return object.builder->build(model, *object.json);
}

Node makeByFloor(const Model& model, const ClaimedObject& object) {
  return createElements(model, object.plain);
}

ClaimedObjects claimedIn(const SharedCorpora& corpora) {
  ClaimedObjects objects;
  for (const auto& corpus : corpora) {
    for (const ClaimedObject& object : corpus->claimed()) objects.push_back(&object);
  }
  return objects;
}

/// The floor is none unless it makes the very same elements.
void requireSameElements(const ClaimedObjects& objects) {
  for (const ClaimedObject* object : objects) {
    const Model built = Model::create();
    const Model made = Model::create();
    if (reference_host::exporting::toJson(makeByBuilder(built, *object)) !=
        reference_host::exporting::toJson(makeByFloor(made, *object))) {
      throw std::runtime_error("the floor makes other elements than the builder of the " +
                               object->builder->name());
    }
  }
}

Variant buildOf(std::string name, const SharedCorpora& corpora,
                Node (*make)(const Model&, const ClaimedObject&)) {
  const ClaimedObjects objects = claimedIn(corpora);
  return {std::move(name), objects.size(),
          [corpora, objects, make](int) { makeAll(objects, make); }};
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
  requireSameElements(claimedIn(corpora));
  Group group;
  group.name = "build";
  group.unit = "control";
  group.variants = {buildOf("build", corpora, makeByBuilder),
                    buildOf("floor", corpora, makeByFloor),
                    {"walk, recognise, build", corpus->claimed().size(),
                     [corpus](int) { benchmark::DoNotOptimize(importValue(corpus->value())); }}};
  group.rows = {{"build of recognised objects", "floor", 0, 1, Bound::kAtMost, 1.6},
                {"walk, recognise and build", "floor", 2, 1, Bound::kAtMost, 3.0}};
  return group;
}

Group kindsGroup() {
  constexpr std::size_t kControls = 200;
  Group group;
  group.name = "kinds";
  group.unit = "control";
  for (std::size_t index = 0; index < kKindCount; ++index) {
    const Kind kind = static_cast<Kind>(index);
    const SharedCorpora corpora = controlsOf(kind, kControls);
    requireSameElements(claimedIn(corpora));
    const std::string name = nameOf(kind);
    group.variants.push_back(buildOf("build " + name, corpora, makeByBuilder));
    group.variants.push_back(buildOf("floor " + name, corpora, makeByFloor));
    group.rows.push_back({"build: " + name, "floor", 2 * index, 2 * index + 1});
  }
  group.secondsOfRun = 0.02;
  return group;
}

Group bareStructsGroup() {
  const SharedCorpora corpora = controlsOf(Kind::kButton, 2'000);
  std::vector<const Button<std::string>*> buttons;
  for (const ClaimedObject* object : claimedIn(corpora)) {
    buttons.push_back(&std::get<Button<std::string>>(object->plain));
  }
  Group group;
  group.name = "bare structs";
  group.unit = "button";
  group.variants = {buildOf("floor", corpora, makeByFloor),
                    {"bare structs", buttons.size(), [corpora, buttons](int) {
                       std::vector<boost::intrusive_ptr<BareButton>> nodes;
                       nodes.reserve(buttons.size());
                       for (const auto* button : buttons)
                         nodes.push_back(createBareButton(*button));
                       benchmark::DoNotOptimize(nodes.data());
                     }}};
  group.rows = {{"floor", "three bare counted structs, same texts", 0, 1, Bound::kAtMost, 1.5}};
  return group;
}

Group recognitionGroup() {
  const auto corpus = std::make_shared<const Corpus>(generateDocument(kMegabyte / 16));
  Objects controls;
  for (const ClaimedObject& object : corpus->claimed()) controls.push_back(object.json);
  const Objects& strangers = corpus->strangers();
  const Objects runs = textRunsAmong(strangers);
  requireSameAnswers(controls);
  requireSameAnswers(strangers);
  Group group;
  group.name = "recognition";
  group.unit = "round of thirteen questions";
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
