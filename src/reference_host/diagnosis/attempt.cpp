#include "reference_host/diagnosis/attempt.hpp"

#include <exception>
#include <new>

#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;
using importer::NamedBuilder;

Attempt attempt(const NamedBuilder& builder, importer::Step step, const Value& object) {
  Attempt result{true, false, {}, ReadTrace(object)};
  const json::ReadWatch watch(result.trace);
  try {
    if (step == importer::Step::kCanBuild) {
      result.claimed = builder.canBuild(object);
    } else if (!builder.build(gx::zero::Model::create(), object)) {
      result.succeeded = false;
    }
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    result.succeeded = false;
    result.message = importer::messageOf(std::current_exception());
  }
  return result;
}

bool isClaimed(const NamedBuilder& builder, const Value& object) {
  return attempt(builder, importer::Step::kCanBuild, object).claimed;
}

std::optional<std::string> nodeBuilt(const NamedBuilder& builder, const Value& object) {
  try {
    const auto model = gx::zero::Model::create();
    const auto node = builder.build(model, object);
    if (!node) return std::nullopt;
    return exporting::toJson(node);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace reference_host::diagnosis
