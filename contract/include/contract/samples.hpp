#pragma once

/// @file
/// Values to offer to the builders, made from the fields of each kind: right ones and wrong ones.

#include <string>
#include <vector>

#include "contract/kinds.hpp"
#include "foundation/json.hpp"

namespace contract {

struct Sample {
  std::string description;
  foundation::json::Value json;
};

/// A value of each of the ten alternatives, under the name that conversion errors give it. Their
/// content is as alike as they allow: a lenient conversion would find something to read.
const std::vector<Sample>& alternatives();

/// An object with what recognition needs and without a field; a control's has its "data".
foundation::json::Value emptyObject(const Kind& kind);
/// The same with the "data", given as JSON text.
foundation::json::Value objectWith(const Kind& kind, const std::string& data);

/// Objects with every field, and with texts that need memory of their own. There is more than one
/// where a field has forms.
std::vector<Sample> wholeObjects(const Kind& kind);
/// The same, but the last thing that is read is of a wrong type.
std::vector<Sample> failingObjects(const Kind& kind);

/// Objects of the kind and what is nearly one: each key alone and each left out, every wrong type
/// and the edges of every right one, "context" and "data" missing or no objects, keys that nobody
/// knows and keys in the wrong place, and what only looks like the kind's word.
std::vector<Sample> samplesOf(const Kind& kind);

/// What no kind has for its own: values that are no objects, and objects whose "className",
/// "context" or "type" is missing or of another type.
std::vector<Sample> strangers();

}  // namespace contract
