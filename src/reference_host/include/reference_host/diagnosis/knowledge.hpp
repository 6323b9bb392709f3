#pragma once

/// @file
/// What can be known of builders by asking them: which objects they recognise, what they read
/// where, and of which type it has to be. Nothing of it is written down anywhere.

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/kind.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/diagnosis/recognition.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// What can be done about a value of a wrong type but writing another one.
struct Remedy {
  bool canBeLeftOut = false;
  std::string wordKey;  ///< a member beside it, with which the value is right; empty if none
  std::string word;     ///< what that member has to hold
};

/// Answers by their questions. It holds no more than so many, whatever it is asked: when it is
/// full, it forgets them all.
template <typename Answer>
class Answers {
 public:
  explicit Answers(std::size_t most) : most_(most) {}

  std::optional<Answer> find(const std::string& question) const {
    const std::shared_lock<std::shared_mutex> guard(mutex_);
    const auto known = answers_.find(question);
    return known == answers_.end() ? std::nullopt : std::optional<Answer>(known->second);
  }

  void remember(std::string question, Answer answer) {
    if (question.size() > kLongest) return;
    const std::lock_guard<std::shared_mutex> guard(mutex_);
    length_ += question.size();
    if (answers_.size() >= most_ || length_ > most_ * kUsualLength) {
      answers_.clear();
      length_ = question.size();
    }
    answers_.insert_or_assign(std::move(question), std::move(answer));
  }

  /// The answer, made if it is not remembered; several threads may make it at a time.
  template <typename Make>
  Answer get(std::string question, const Make& make) {
    if (auto known = find(question)) return *std::move(known);
    Answer answer = make();
    remember(std::move(question), answer);
    return answer;
  }

 private:
  static constexpr std::size_t kUsualLength = 1000;
  static constexpr std::size_t kLongest = 100 * kUsualLength;

  std::size_t most_;
  mutable std::shared_mutex mutex_;
  std::unordered_map<std::string, Answer> answers_;
  std::size_t length_ = 0;  // of all questions
};

/// Learns when it is asked for the first time, and remembers what is asked often. Works for any
/// builder; any number of threads may ask.
class TESSEL_HOST_API Knowledge {
 public:
  using Value = foundation::json::Value;
  using Builders = std::vector<importer::NamedBuilder>;

  /// @param builders outlive this.
  /// @param words candidates for the words that builders compare with, beside those that a
  /// builder's
  ///   own name suggests. One counts only where a builder reacts to it.
  Knowledge(const Builders& builders, std::vector<std::string> words);

  const Builders& builders() const noexcept { return builders_; }
  /// The candidates that were given, and those of the builders' names that they react to.
  const std::vector<std::string>& words() const;

  /// By which of the words objects are recognised, in the builders' order.
  const std::vector<Recognition>& recognitions() const;
  /// The same for words that are no candidates, such as those of one document.
  std::vector<Recognition> recognitionsAmong(const std::vector<std::string>& words) const;

  /// Whether the builder claims objects of a class by its name alone.
  bool isKnownByClass(const importer::NamedBuilder& builder, const std::string& className) const;

  /// The kind of an object that the builder claims.
  std::shared_ptr<const Kind> kindOf(const importer::NamedBuilder& builder,
                                     const Value& object) const;

  /// For a value that is passed over, the type of which one would count: the builder accepts any
  /// value of the type that is there, and none makes a difference. Empty for every other value.
  /// @param object one that the builder builds, with a value at the place.
  std::string wantedInstead(const importer::NamedBuilder& builder, const Value& object,
                            const Path& place) const;

  /// What else helps where the value at a place is of a wrong type. It is tried on a good object of
  /// the kind.
  /// @param object one that the builder claims, with a value at the place.
  /// @param moreWords are tried where none of the known ones helps; null for none.
  Remedy remedyFor(const importer::NamedBuilder& builder, const Value& object, const Path& place,
                   const std::vector<std::string>* moreWords) const;

  /// Whether objects of this shape have been found to be without a problem.
  bool isGood(const std::string& shape) const;
  void rememberGood(std::string shape) const;

 private:
  void learnRecognitions() const;
  Recognition wordsOf(const importer::NamedBuilder& builder, const Value& object) const;

  const Builders& builders_;
  mutable std::vector<std::string> words_;
  mutable std::once_flag recognitionsOnce_;
  mutable std::vector<Recognition> recognitions_;
  mutable Answers<bool> knownByClass_{10000};
  mutable Answers<std::shared_ptr<const Kind>> kinds_{1000};
  mutable Answers<std::string> wantedInstead_{10000};
  mutable Answers<Remedy> remedies_{10000};
  mutable Answers<bool> goodShapes_{10000};
};

}  // namespace reference_host::diagnosis
