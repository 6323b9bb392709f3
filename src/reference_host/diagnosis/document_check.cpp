#include "reference_host/diagnosis/document_check.hpp"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "diagnosis/control_check.hpp"
#include "diagnosis/lints.hpp"
#include "diagnosis/shape.hpp"
#include "importer/document_walk.hpp"
#include "reference_host/diagnosis/offered_object.hpp"
#include "reference_host/diagnosis/unclaimed_object.hpp"
#include "reference_host/diagnosis/wording.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using importer::DocumentWalk;
using importer::NamedBuilder;

namespace {

/// Who answers for an object.
struct Answer {
  const NamedBuilder* claimer = nullptr;
  const NamedBuilder* thrower = nullptr;  ///< the first, if nobody claims it
  std::string message;                    ///< what it threw
};

Answer offer(const std::vector<NamedBuilder>& builders, const Value& object) {
  Answer answer;
  for (const NamedBuilder& builder : builders) {
    try {
      if (!builder.canBuild(object)) continue;
      answer.claimer = &builder;
      return answer;
    } catch (const std::bad_alloc&) {
      throw;
    } catch (...) {
      if (answer.thrower != nullptr) continue;
      answer.thrower = &builder;
      answer.message = importer::messageOf(std::current_exception());
    }
  }
  return answer;
}

bool builds(const NamedBuilder& builder, const gx::zero::Model& model, const Value& object) {
  try {
    return static_cast<bool>(builder.build(model, object));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return false;
  }
}

class DocumentCheck {
 public:
  DocumentCheck(const Knowledge& knowledge, const Value& document, Warnings warnings)
      : knowledge_(knowledge),
        document_(document),
        warns_(warnings == Warnings::kYes),
        model_(gx::zero::Model::create()) {}

  DocumentProblems run() {
    DocumentWalk walk(document_);
    while (const Value* object = walk.nextObject()) {
      ++result_.objects;
      const Answer answer = offer(knowledge_.builders(), *object);
      if (answer.claimer != nullptr) {
        ++result_.claimed;
        checkClaimed(*answer.claimer, walk, *object);
      } else if (answer.thrower != nullptr) {
        const auto culprit = findCulprit(*answer.thrower, importer::Step::kCanBuild, *object);
        result_.problems.push_back(problemOf({knowledge_, *answer.thrower, walk.pointer(), *object},
                                             importer::Step::kCanBuild, culprit, answer.message));
      } else {
        if (warns_) checkUnclaimed(knowledge_.recognitions(), walk, *object);
        walk.goInto();
      }
    }
    if (!firsts_.empty()) nameFirsts();
    if (!newClasses_.empty()) checkAgainWithNewClasses();
    return std::move(result_);
  }

 private:
  void checkClaimed(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object) {
    const bool good = builds(builder, model_, object);
    std::string shape;
    if (good) {
      if (!warns_) return;
      shape = shapeOf(object);
      if (!knowledge_.isGood(shape)) {
        std::vector<Problem> found = checkControl({knowledge_, builder, walk.pointer(), object});
        if (found.empty()) knowledge_.rememberGood(std::move(shape));
        take(std::move(found));
      }
      rememberClass(object);
      checkId(builder, walk, object);
    } else {
      std::vector<Problem> found = checkControl({knowledge_, builder, walk.pointer(), object});
      if (!warns_) {
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [](const Problem& problem) { return !isError(problem.code); }),
                    found.end());
      }
      take(std::move(found));
    }
    if (warns_) checkValues(builder, walk, object);
  }

  void checkId(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object) {
    const std::string* id = textAt(object, idPlace());
    if (id == nullptr) return;
    const auto [first, isNew] = ids_.emplace(*id, &object);
    if (isNew || !knowledge_.kindOf(builder, object).reads(patternOf(idPlace()))) return;
    const std::string pointer = walk.pointer();
    firsts_.emplace_back(result_.problems.size(), first->second);
    result_.problems.push_back(
        {Code::kDuplicateId,
         pointer,
         pointer + pointerOf(idPlace()),
         nameOfObject(knowledge_, &builder, object) + ": another control has this id",
         {},
         builder.name(),
         {},
         {}});
  }

  /// Says of each id that is there twice where it is first: in one walk for all of them.
  void nameFirsts() {
    std::unordered_map<const Value*, std::string> pointers;
    for (const auto& [problem, first] : firsts_) pointers[first];
    DocumentWalk walk(document_);
    while (const Value* object = walk.nextObject()) {
      const auto first = pointers.find(object);
      if (first != pointers.end()) first->second = walk.pointer();
      walk.goInto();
    }
    for (const auto& [problem, first] : firsts_) {
      result_.problems[problem].hint = "write another one; the first is at " + pointers[first];
    }
  }

  void checkValues(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object) {
    const std::vector<UnlikelyValue> unlikely = unlikelyValuesOf(object);
    if (unlikely.empty()) return;
    const Kind& kind = knowledge_.kindOf(builder, object);
    const std::string name = nameOfObject(knowledge_, &builder, object);
    const std::string pointer = walk.pointer();
    for (const UnlikelyValue& value : unlikely) {
      if (!kind.reads(patternOf(value.place))) continue;
      result_.problems.push_back({Code::kUnlikelyValue,
                                  pointer,
                                  pointer + pointerOf(value.place),
                                  name + ": " + nameOfPlace(value.place) + ' ' + value.what,
                                  {},
                                  builder.name(),
                                  {},
                                  {}});
    }
  }

  void checkUnclaimed(const std::vector<Recognition>& recognitions, const DocumentWalk& walk,
                      const Value& object) {
    const auto guess = guessFor(object, recognitions);
    if (!guess) return;
    const std::string pointer = walk.pointer();
    Problem problem{guess->code, pointer, {}, {}, guess->hint, {}, {}, {}};
    const std::string name = nameOfObject(knowledge_, nullptr, object);
    if (guess->code == Code::kUnknownType) {
      const std::string* type = textAt(object, typePlace());
      problem.member = pointer + pointerOf(typePlace());
      problem.message =
          name + (type == nullptr ? ": has no type" : ": nobody builds the type " + quoted(*type));
    } else if (const std::string* className = textAt(object, classNamePlace())) {
      problem.member = pointer + pointerOf(classNamePlace());
      problem.message = name + ": nobody builds the class " + quoted(*className);
    } else {
      problem.member = pointer;
      problem.message = name + ": looks like a control and has no class name";
    }
    result_.problems.push_back(std::move(problem));
  }

  /// Takes down a class name that is no candidate, but that a builder claims all the same.
  void rememberClass(const Value& object) {
    const std::string* className = textAt(object, classNamePlace());
    if (className == nullptr) return;
    const auto& known = knowledge_.recognitions();
    const bool isKnown = std::any_of(known.begin(), known.end(), [&](const auto& recognition) {
      return recognition.className == *className;
    });
    if (isKnown) return;
    newClasses_.insert(*className);
    if (const std::string* type = textAt(object, typePlace())) newClasses_.insert(*type);
  }

  /// For builders whose words nobody has told: those that the document itself shows.
  void checkAgainWithNewClasses() {
    std::vector<Recognition> recognitions =
        knowledge_.recognitionsAmong({newClasses_.begin(), newClasses_.end()});
    const auto& known = knowledge_.recognitions();
    recognitions.insert(recognitions.end(), known.begin(), known.end());
    const auto first = std::remove_if(
        result_.problems.begin(), result_.problems.end(), [](const Problem& problem) {
          return problem.code == Code::kUnknownClass || problem.code == Code::kUnknownType;
        });
    result_.problems.erase(first, result_.problems.end());
    DocumentWalk walk(document_);
    while (const Value* object = walk.nextObject()) {
      const Answer answer = offer(knowledge_.builders(), *object);
      if (answer.claimer != nullptr || answer.thrower != nullptr) continue;
      checkUnclaimed(recognitions, walk, *object);
      walk.goInto();
    }
  }

  void take(std::vector<Problem> found) {
    for (Problem& problem : found) result_.problems.push_back(std::move(problem));
  }

  const Knowledge& knowledge_;
  const Value& document_;
  bool warns_;
  gx::zero::Model model_;
  std::unordered_map<std::string_view, const Value*> ids_;  // of what was built
  // The problems of ids that are there twice, and who has them first.
  std::vector<std::pair<std::size_t, const Value*>> firsts_;
  std::set<std::string> newClasses_;
  DocumentProblems result_;
};

}  // namespace

DocumentProblems checkDocument(const Knowledge& knowledge, const Value& document,
                               Warnings warnings) {
  return DocumentCheck(knowledge, document, warnings).run();
}

std::string offeredAround(const Knowledge& knowledge, const Value& document,
                          const std::string& pointer) {
  Path offered;
  Path path;
  for (const PathStep& step : pathTo(document, pointer)) {
    const Value* value = valueAt(document, path);
    if (value == nullptr) break;
    if (value->get_if<Value::Object>() != nullptr) {
      offered = path;
      const Answer answer = offer(knowledge.builders(), *value);
      if (answer.claimer != nullptr || answer.thrower != nullptr) break;
    }
    path.push_back(step);
  }
  return pointerOf(offered);
}

}  // namespace reference_host::diagnosis
