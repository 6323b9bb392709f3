#pragma once

/// @file
/// JSON values out of the fuzzer's bytes.

#include "byte_reader.hpp"
#include "foundation/json.hpp"

namespace fuzz {

/// A value to offer to the builders. Most are an object of a random kind whose keys are there or
/// not and hold what they have to or another alternative, in which then a few members are put in,
/// replaced or taken out; some are anything at all. All ten alternatives occur, with the keys and
/// words of the contract and others. The first byte chooses the kind, by its place in `kinds()`.
foundation::json::Value makeOffer(ByteReader& bytes);

}  // namespace fuzz
