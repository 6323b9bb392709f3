#pragma once

/// @file
/// What can be wrong with a document, and how it is told.

#include <optional>
#include <string>

#include "foundation/export.hpp"

namespace reference_host::diagnosis {

/// In the order in which problems of one place are told.
enum class Code {
  kSyntax,         ///< the text is no JSON, or beyond a limit
  kWrongType,      ///< a member holds another type than is wanted
  kMissingMember,  ///< a required member is not there
  kCannotTell,     ///< nobody claims the object, and a builder could not tell
  kBuildFailed,    ///< any other failure of a build
  kUnknownClass,   ///< nobody claims the object, which looks like a control
  kUnknownType,    ///< a generic control of a type that nobody claims
  kUnknownMember,  ///< a member that its control's builder never reads there
  kIgnoredMember,  ///< a member that is known and not read here
  kDuplicateMember,
  kDuplicateId,
  kUnlikelyValue,  ///< it is stored as it is, and can hardly be meant
};

/// The code's name, such as "wrong-type".
TESSEL_HOST_API const char* codeName(Code code) noexcept;
/// Whether the code is one of an error; the others are of warnings.
TESSEL_HOST_API bool isError(Code code) noexcept;

/// One thing that is wrong with a value of a document.
struct Problem {
  Code code;
  std::string pointer;                ///< JSON pointer of the object that was offered
  std::optional<std::string> member;  ///< JSON pointer of the value meant; none if it is the object
  std::string message;                ///< for people, without the place
  std::optional<std::string> hint;    ///< what to write instead
  std::optional<std::string> builder;
  std::optional<std::string> held;  ///< type names, as in "invalid conversion: A to B"
  std::optional<std::string> wanted;
  bool atKey = false;  ///< the place is that of the member's name, not of its value
};

}  // namespace reference_host::diagnosis
