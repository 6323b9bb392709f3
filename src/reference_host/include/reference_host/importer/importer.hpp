#pragma once

/// @file
/// The host's import: a walk over a JSON document that offers its objects to the builders.

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "document/gxzero.hpp"
#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "tessel/build/json/builders.hpp"

namespace reference_host::importer {

/// A builder of either interface, with the name under which errors speak of it.
class TESSEL_HOST_API NamedBuilder {
 public:
  using Service = std::variant<std::shared_ptr<const tessel::build::json::code::CodeElementBuilder>,
                               std::shared_ptr<const tessel::build::json::NodeBuilder>>;

  /// @pre the service is not null.
  NamedBuilder(std::string name, Service service);

  const std::string& name() const noexcept { return name_; }
  bool canBuild(const foundation::json::Value& json) const;
  document::gxzero::Node build(const gx::zero::Model& model,
                               const foundation::json::Value& json) const;

 private:
  std::string name_;
  Service service_;
};

enum class Step { kCanBuild, kBuild };

/// The step's name: "canBuild" or "build".
TESSEL_HOST_API const char* stepName(Step step) noexcept;

/// What went wrong with one object.
struct ImportError {
  std::string pointer;  ///< JSON pointer (RFC 6901) to the object; empty for the whole document
  std::string builder;  ///< the name of the builder that failed
  Step step;
  std::string message;
  foundation::json::Value object{};  ///< the object itself, of a document that was given up
};

/// Counts of JSON objects.
struct Summary {
  std::size_t objects = 0;  ///< offered to the builders
  std::size_t claimed = 0;  ///< of those, claimed by some builder
  std::size_t built = 0;    ///< of those, built
  std::size_t failed = 0;   ///< offered objects with an error
};

struct ImportResult {
  std::vector<document::gxzero::Node> nodes;  ///< in document order
  std::vector<ImportError> errors;            ///< in document order
  Summary summary;
};

enum class OnError { kContinue, kStop };

/// What an exception says: its text if it is a `std::exception`, else that it says nothing.
TESSEL_HOST_API std::string messageOf(const std::exception_ptr& exception);

/// Walks a document depth first, members in the map's order, and builds what is recognised.
///
/// Each object is offered to the builders in order until one claims it; a builder whose `canBuild`
/// throws does not stop the asking. A claimed object is built, and the walk does not go into it,
/// built or failed. If nobody claims it and somebody threw, that is one error, the first thrower's,
/// and the walk does not go into it either. Every other object's members are walked. A builder that
/// returns an empty node has failed.
///
/// Works at any nesting depth. Exceptions of builders become errors, whatever they are, except that
/// memory ran out: that is no fault of an object's.
/// @param onError whether the walk ends with the first error.
/// @throws std::bad_alloc wherever memory ran out.
TESSEL_HOST_API ImportResult importDocument(const std::vector<NamedBuilder>& builders,
                                            const gx::zero::Model& model,
                                            const foundation::json::Value& document,
                                            OnError onError = OnError::kContinue);

/// The same for a document that is given up, which takes less memory: of what the walk has left
/// nothing is kept but the objects that failed.
/// @param document what it holds afterwards is not specified.
TESSEL_HOST_API ImportResult importDocument(const std::vector<NamedBuilder>& builders,
                                            const gx::zero::Model& model,
                                            foundation::json::Value&& document,
                                            OnError onError = OnError::kContinue);

}  // namespace reference_host::importer
