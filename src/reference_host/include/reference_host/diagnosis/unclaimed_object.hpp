#pragma once

/// @file
/// What an object that nobody claims may have been meant as.

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/knowledge.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/diagnosis/problem.hpp"

namespace reference_host::diagnosis {

struct Guess {
  Code code;  ///< `kUnknownClass` or `kUnknownType`
  std::optional<std::string> hint;
};

/// What is wrong with an object that nobody claims; nothing for one that is none of ours, such as
/// prose.
std::optional<Guess> guessFor(const foundation::json::Value& object,
                              const std::vector<Recognition>& recognitions);

/// The class names that are recognised, each once.
std::vector<std::string> classNames(const std::vector<Recognition>& recognitions);
/// The types by which objects of a class are told apart.
std::vector<std::string> typesOf(const std::string& className,
                                 const std::vector<Recognition>& recognitions);

/// Whether objects of the class are told apart by their type.
TESSEL_HOST_API bool isGeneric(const std::string& className,
                               const std::vector<Recognition>& recognitions);

/// Whether an object has one of the members by which it looks like a control.
TESSEL_HOST_API bool looksLikeControl(const foundation::json::Value& object);

/// The members by which an object looks like a control, whatever its class.
TESSEL_HOST_API const std::vector<Path>& controlMarks();

/// The class names, in small letters, that stand for something known when they are written in any
/// case: the classes themselves, and the words for a kind with and without "ControlNode".
TESSEL_HOST_API std::set<std::string> likelyNames(const std::vector<Recognition>& recognitions);

}  // namespace reference_host::diagnosis
