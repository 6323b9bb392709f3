#pragma once

/// @file
/// How builders recognise their JSON objects.
///
/// All comparisons are exact: byte for byte, case-sensitive, equal length. The rules never change
/// the value, and allocate nothing.

#include <string_view>

#include "foundation/json.hpp"

namespace tessel::build::json::controls::framework {

/// True when the object's "className" is the word. A value that is no object answers false, with
/// the record "Incoming JSON was not an Object"; an object without "className" answers false.
/// @throws std::runtime_error the conversion error, for a "className" that is not text.
bool recognizeByClassName(const foundation::json::Value& json, std::string_view className);

/// True when the object is a generic control ("className" "LumoControlNode") whose "type" in
/// "context" is the word. Otherwise as `recognizeByClassName`.
/// @throws std::runtime_error the conversion error, for a "className" that is not text, and for a
///         generic control whose "context" is no object or whose "type" is not text or missing.
///         The host answers for a missing "context", by its const `operator[]`.
bool recognizeByTypeWord(const foundation::json::Value& json, std::string_view typeWord);

/// True when the object is a generic control of the type, or when the word is its "className".
/// Otherwise, also in what it throws, as `recognizeByTypeWord`.
bool recognizeByTypeWordOrClassName(const foundation::json::Value& json, std::string_view word);

}  // namespace tessel::build::json::controls::framework
