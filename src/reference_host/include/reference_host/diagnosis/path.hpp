#pragma once

/// @file
/// Places in a JSON value, and what stands there.

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"

namespace reference_host::diagnosis {

/// A member's name, or an element's index.
using PathStep = std::variant<std::string, std::size_t>;
/// The way from a value to one inside it. There need be nothing at its end.
using Path = std::vector<PathStep>;

/// What stands at the end of the path; null when nothing does.
TESSEL_HOST_API const foundation::json::Value* valueAt(const foundation::json::Value& root,
                                                       const Path& path);
foundation::json::Value* valueAt(foundation::json::Value& root, const Path& path);
/// The text at the end of the path; null when there is none.
const std::string* textAt(const foundation::json::Value& root, const Path& path);

/// The path that a JSON pointer (RFC 6901) stands for in a value; where there is nothing in it, a
/// token is a name. @pre the pointer is well-formed.
TESSEL_HOST_API Path pathTo(const foundation::json::Value& root, std::string_view pointer);

/// Puts a value at the end of the path. Objects that are missing on the way are made, and so are
/// those in whose place something else stands. @pre elements on the way are there.
void put(foundation::json::Value& root, const Path& path, foundation::json::Value value);

/// Takes a member away if it is there. @pre the path ends with a member's name.
void removeMember(foundation::json::Value& root, const Path& path);

/// The object with at most one element in each array, the one on the way to the place if there is
/// one; the place is changed with it. What stands at the place is left whole.
foundation::json::Value withShortArrays(const foundation::json::Value& object, Path& place);

/// The path without its last step. @pre it is not empty.
Path parentOf(const Path& path);
/// The path and one more step.
Path childOf(Path path, PathStep step);
/// Whether a path leads to a value or to one inside it.
bool isWithin(const Path& path, const Path& outer);

/// The JSON pointer of the path.
TESSEL_HOST_API std::string pointerOf(const Path& path);

/// The JSON pointer with a star for every index: equal for places that are alike.
TESSEL_HOST_API std::string patternOf(const Path& path);
/// The path that a pattern stands for, in a value whose arrays have one element.
Path pathOf(const std::string& pattern);
/// Appends a step to a pattern.
void appendToPattern(std::string& pattern, const PathStep& step);

/// The name of what a value holds, as in "invalid conversion: A to B".
TESSEL_HOST_API const char* typeNameOf(const foundation::json::Value& value) noexcept;
/// The same for a pointer; `undefined` for null.
const char* typeNameOf(const foundation::json::Value* value) noexcept;

/// Some value of a type, by its name; one is there for every type but `undefined` and `null`.
/// @param variant 0 or 1: two values that differ, for a text, a number and a boolean.
foundation::json::Value someValueOf(std::string_view typeName, int variant = 0);

/// The types that a JSON text can hold and a builder can want, in the order of trial.
inline constexpr const char* kWantedTypes[] = {"object", "array", "string", "double", "bool"};

}  // namespace reference_host::diagnosis
