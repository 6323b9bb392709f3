#include "reference_host/diagnosis/document_check.hpp"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "diagnosis/control_check.hpp"
#include "diagnosis/lints.hpp"
#include "diagnosis/shape.hpp"
#include "importer/document_walk.hpp"
#include "reference_host/diagnosis/offered_object.hpp"
#include "reference_host/diagnosis/unclaimed_object.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/text_places.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using importer::DocumentWalk;
using importer::NamedBuilder;

namespace {

/// More new words in one document are no words that builders compare with.
constexpr std::size_t kMostNewWords = 100;
/// Each is tried for each wrong value beside which it may stand.
constexpr std::size_t kMostValueTypes = 10;

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

/// The node; an empty one where the build fails.
document::gxzero::Node nodeOf(const NamedBuilder& builder, const gx::zero::Model& model,
                              const Value& object) {
  try {
    return builder.build(model, object);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return {};
  }
}

class DocumentCheck {
 public:
  DocumentCheck(const Knowledge& knowledge, const Value& document, std::string_view text,
                Warnings warnings, std::size_t firstLine, ImportObserver* observer)
      : knowledge_(knowledge),
        document_(document),
        text_(text),
        warns_(warnings == Warnings::kYes),
        firstLine_(firstLine),
        model_(gx::zero::Model::create()),
        observer_(observer) {}

  DocumentProblems run() {
    DocumentWalk walk(document_);
    while (const Value* object = walk.nextObject()) {
      ++result_.objects;
      if (observer_ != nullptr) observer_->offered();
      const Answer answer = offer(knowledge_.builders(), *object);
      if (answer.claimer != nullptr) {
        ++result_.claimed;
        checkClaimed(*answer.claimer, walk, *object);
      } else if (answer.thrower != nullptr) {
        if (observer_ != nullptr) observer_->failed(walk.pointer());
        const auto culprit = findCulprit(*answer.thrower, importer::Step::kCanBuild, *object);
        result_.problems.push_back(problemOf({knowledge_, *answer.thrower, walk.pointer(), *object},
                                             importer::Step::kCanBuild, culprit, answer.message));
      } else {
        if (warns_) checkUnclaimed(knowledge_.recognitions(), walk, *object);
        anyUnclaimed_ = true;
        walk.goInto();
      }
    }
    if (!withSameId_.empty()) tellSameIds();
    if (!newWords_.empty() && anyUnclaimed_) checkAgainWithNewWords();
    return std::move(result_);
  }

 private:
  void checkClaimed(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object) {
    const bool good = build(builder, walk, object);
    if (good && !warns_) return;
    if (warns_) rememberWords(object);
    std::vector<Problem> found;
    std::string shape = good ? shapeOf(object) : std::string();
    if (!good) {
      found = checkControl({knowledge_, builder, walk.pointer(), object, &valueTypes()});
    } else if (!knowledge_.isGood(shape)) {
      found = checkControl({knowledge_, builder, walk.pointer(), object});
      if (found.empty()) knowledge_.rememberGood(std::move(shape));
    }
    if (warns_) {
      if (good) checkId(builder, object);
      checkValues(builder, walk, object, found);
    } else {
      found.erase(std::remove_if(found.begin(), found.end(),
                                 [](const Problem& problem) { return !isError(problem.code); }),
                  found.end());
    }
    for (Problem& problem : found) result_.problems.push_back(std::move(problem));
  }

  bool build(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object) {
    document::gxzero::Node node = nodeOf(builder, model_, object);
    const bool good = static_cast<bool>(node);
    if (observer_ == nullptr) return good;
    if (good) {
      observer_->built(std::move(node), walk.pointer());
    } else {
      observer_->failed(walk.pointer());
    }
    return good;
  }

  void checkId(const NamedBuilder& builder, const Value& object) {
    const std::string* id = textAt(object, idPlace());
    if (id == nullptr) return;
    const auto [held, isNew] = ids_.try_emplace(*id, Holder{&object, &builder});
    if (isNew || !readsId(builder, object)) return;
    Holder& first = held->second;
    if (!first.isTold) {
      const bool counts = readsId(*first.builder, *first.object);
      if (counts) withSameId_.emplace(first.object, first.builder);
      first = {&object, &builder, counts};
      if (!counts) return;
    }
    withSameId_.emplace(&object, &builder);
  }

  bool readsId(const NamedBuilder& builder, const Value& object) const {
    return knowledge_.kindOf(builder, object)->reads(patternOf(idPlace()));
  }

  /// Tells each control whose id is that of one before it in the text.
  void tellSameIds() {
    std::vector<std::pair<const Value*, std::string>> controls;
    std::vector<std::string> members;
    DocumentWalk walk(document_);
    while (const Value* object = walk.nextObject()) {
      if (withSameId_.count(object) != 0) {
        controls.emplace_back(object, walk.pointer());
        members.push_back(controls.back().second + pointerOf(idPlace()));
      }
      walk.goInto();
    }
    const auto places = json::findValues(text_, {members.begin(), members.end()});
    const auto place = [&](std::size_t index) {
      const json::TextPlace& begin = places[index].value.begin;
      return std::tie(begin.line, begin.column);
    };
    std::unordered_map<std::string_view, std::size_t> firsts;
    for (std::size_t index = 0; index != controls.size(); ++index) {
      std::size_t& first = firsts.try_emplace(idOf(*controls[index].first), index).first->second;
      if (place(index) < place(first)) first = index;
    }
    for (std::size_t index = 0; index != controls.size(); ++index) {
      const auto& [object, pointer] = controls[index];
      const std::size_t first = firsts.at(idOf(*object));
      if (index == first) continue;
      const NamedBuilder* builder = withSameId_.at(object);
      result_.problems.push_back(
          {Code::kDuplicateId,
           pointer,
           members[index],
           nameOfObject(knowledge_, builder, *object) + ": another control has this id",
           "write another one; the first is at " +
               lineAndColumn(places[first].value.begin, firstLine_),
           builder->name(),
           {},
           {}});
    }
  }

  static const std::string& idOf(const Value& object) { return *textAt(object, idPlace()); }

  /// @param found the problems that the object has besides.
  void checkValues(const NamedBuilder& builder, const DocumentWalk& walk, const Value& object,
                   std::vector<Problem>& found) {
    const std::vector<UnlikelyValue> unlikely = unlikelyValuesOf(object);
    if (unlikely.empty()) return;
    const auto kind = knowledge_.kindOf(builder, object);
    const std::string name = nameOfObject(knowledge_, &builder, object);
    const std::string pointer = walk.pointer();
    const auto isRead = [&, count = found.size()](const Path& place) {
      const std::string member = pointer + pointerOf(place);
      return kind->reads(patternOf(place)) &&
             std::none_of(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count),
                          [&](const Problem& problem) {
                            return isUnread(problem) && isInside(member, *problem.member);
                          });
    };
    for (const UnlikelyValue& value : unlikely) {
      if (!isRead(value.place) ||
          !std::all_of(value.judgedBy.begin(), value.judgedBy.end(), isRead)) {
        continue;
      }
      found.push_back({Code::kUnlikelyValue,
                       pointer,
                       pointer + pointerOf(value.place),
                       name + ": " + nameOfPlace(value.place) + ' ' + value.what,
                       {},
                       builder.name(),
                       {},
                       {}});
    }
  }

  static bool isUnread(const Problem& problem) {
    return problem.code == Code::kUnknownMember || problem.code == Code::kIgnoredMember;
  }

  static bool isInside(const std::string& pointer, const std::string& outer) {
    return pointer.compare(0, outer.size(), outer) == 0 &&
           (pointer.size() == outer.size() || pointer[outer.size()] == '/');
  }

  void checkUnclaimed(const std::vector<Recognition>& recognitions, const DocumentWalk& walk,
                      const Value& object) {
    const std::string* className = textAt(object, classNamePlace());
    if (className != nullptr && ownClasses_.count(*className) != 0 && !looksLikeControl(object)) {
      return;
    }
    const auto guess = guessFor(object, recognitions);
    if (!guess) {
      if (className != nullptr) ownClasses_.insert(*className);
      return;
    }
    const std::string pointer = walk.pointer();
    Problem problem{guess->code, pointer, {}, {}, guess->hint, {}, {}, {}};
    const std::string name = nameOfObject(knowledge_, nullptr, object);
    if (guess->code == Code::kUnknownType) {
      const std::string* type = textAt(object, typePlace());
      problem.member = pointer + pointerOf(typePlace());
      problem.message =
          name + (type == nullptr ? ": has no type" : ": nobody builds the type " + quoted(*type));
    } else if (className != nullptr) {
      problem.member = pointer + pointerOf(classNamePlace());
      problem.message = name + ": nobody builds the class " + quoted(*className);
    } else {
      problem.member = pointer;
      problem.message = name + ": looks like a control and has no class name";
    }
    result_.problems.push_back(std::move(problem));
  }

  /// Takes down words that are no candidates, and by which a builder claims an object all the same.
  void rememberWords(const Value& object) {
    const std::string* className = textAt(object, classNamePlace());
    if (className == nullptr) return;
    const std::string* type = textAt(object, typePlace());
    const auto& known = knowledge_.recognitions();
    const bool isKnown = std::any_of(known.begin(), known.end(), [&](const auto& recognition) {
      return recognition.className == *className &&
             (!recognition.type || (type != nullptr && *recognition.type == *type));
    });
    if (isKnown) return;
    for (const std::string* word : {className, type}) {
      if (word != nullptr && newWords_.size() != kMostNewWords) newWords_.insert(*word);
    }
  }

  /// For builders whose words nobody has told: those that the document itself shows.
  void checkAgainWithNewWords() {
    std::vector<std::string> words = knowledge_.words();
    for (const std::string& word : words) newWords_.erase(word);
    words.insert(words.end(), newWords_.begin(), newWords_.end());
    const std::vector<Recognition> recognitions = knowledge_.recognitionsAmong(words);
    ownClasses_.clear();
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

  /// The texts of the document under "valueType" that are no candidates.
  const std::vector<std::string>& valueTypes() {
    if (valueTypes_) return *valueTypes_;
    const std::vector<std::string>& known = knowledge_.words();
    std::vector<std::string>& found = valueTypes_.emplace();
    const auto isIn = [](const std::vector<std::string>& words, const std::string& word) {
      return std::find(words.begin(), words.end(), word) != words.end();
    };
    const Path place{"valueType"};
    DocumentWalk walk(document_);
    for (const Value* object = nullptr;
         found.size() != kMostValueTypes && (object = walk.nextObject()) != nullptr;) {
      const std::string* word = textAt(*object, place);
      if (word != nullptr && !isIn(known, *word) && !isIn(found, *word)) found.push_back(*word);
      walk.goInto();
    }
    return found;
  }

  const Knowledge& knowledge_;
  const Value& document_;
  std::string_view text_;
  bool warns_;
  std::size_t firstLine_;
  gx::zero::Model model_;
  ImportObserver* observer_;
  struct Holder {
    const Value* object;
    const NamedBuilder* builder;
    bool isTold = false;  ///< it counts, and is not the only one
  };
  std::unordered_map<std::string_view, Holder> ids_;  // of what was built
  // The controls that do not have their id alone.
  std::unordered_map<const Value*, const NamedBuilder*> withSameId_;
  std::set<std::string> newWords_;
  std::unordered_set<std::string> ownClasses_;  // of the document, like none that is recognised
  bool anyUnclaimed_ = false;
  std::optional<std::vector<std::string>> valueTypes_;
  DocumentProblems result_;
};

}  // namespace

DocumentProblems checkDocument(const Knowledge& knowledge, const Value& document,
                               std::string_view text, Warnings warnings, std::size_t firstLine,
                               ImportObserver* observer) {
  return DocumentCheck(knowledge, document, text, warnings, firstLine, observer).run();
}

std::string OfferedObjects::around(const std::string& pointer) {
  Path path = pathTo(document_, pointer);
  std::size_t offered = 0;  // so many steps lead to it
  const Value* value = &document_;
  for (std::size_t depth = 0; depth != path.size() && value != nullptr; ++depth) {
    if (value->get_if<Value::Object>() != nullptr) {
      offered = depth;
      if (!isGoneInto(*value)) break;
    }
    value = valueAt(*value, {path[depth]});
  }
  path.resize(offered);
  return pointerOf(path);
}

bool OfferedObjects::isGoneInto(const Value& object) {
  const auto [known, isNew] = goneInto_.try_emplace(&object, false);
  if (isNew) {
    const Answer answer = offer(knowledge_.builders(), object);
    known->second = answer.claimer == nullptr && answer.thrower == nullptr;
  }
  return known->second;
}

}  // namespace reference_host::diagnosis
