#pragma once

/// @file
/// Which value a builder failed on.

#include <optional>
#include <string>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/attempt.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// The value that was read and did not hold what was wanted.
struct Culprit {
  Path place;        ///< in the object; nothing stands there when `held` is `undefined`
  std::string held;  ///< type names as in "invalid conversion: A to B"
  std::string wanted;
};

/// Members that builders recognise objects by. Recognition may look at them without asking the
/// value for them.
const Path& classNamePlace();
const Path& contextPlace();
const Path& typePlace();

/// The culprit of a call that failed. It is tried: with a value of the wanted type in its place,
/// the call succeeds or gets further. Nothing when no value explains the failure.
/// @param failed how the call went for this object.
std::optional<Culprit> findCulprit(const importer::NamedBuilder& builder, importer::Step step,
                                   const foundation::json::Value& object, const Attempt& failed);

/// The same, after a call that is made now; nothing when it succeeds, too.
TESSEL_HOST_API std::optional<Culprit> findCulprit(const importer::NamedBuilder& builder,
                                                   importer::Step step,
                                                   const foundation::json::Value& object);

/// What is to blame for a culprit: for a value that is missing because what should hold it is no
/// object, that one.
Culprit blamedFor(Culprit culprit, const foundation::json::Value& object);

}  // namespace reference_host::diagnosis
