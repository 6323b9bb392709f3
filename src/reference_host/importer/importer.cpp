#include "reference_host/importer/importer.hpp"

#include <new>
#include <type_traits>
#include <utility>

#include "importer/document_walk.hpp"

namespace reference_host::importer {

namespace {

using document::gxzero::Node;
using foundation::json::Value;

/// @tparam Document a constant value, or one that is given up.
template <typename Document>
class Import {
 public:
  Import(const std::vector<NamedBuilder>& builders, const gx::zero::Model& model,
         Document& document)
      : builders_(builders), model_(model), walk_(document) {}

  ImportResult run(OnError onError) {
    while (Document* object = walk_.nextObject()) {
      ++result_.summary.objects;
      offer(*object);
      if (onError == OnError::kStop && !result_.errors.empty()) break;
    }
    return std::move(result_);
  }

 private:
  void offer(Document& object) {
    const NamedBuilder* firstThrower = nullptr;
    std::exception_ptr firstThrown;
    for (const NamedBuilder& builder : builders_) {
      bool claims = false;
      try {
        claims = builder.canBuild(object);
      } catch (const std::bad_alloc&) {
        throw;
      } catch (...) {
        if (firstThrower != nullptr) continue;
        firstThrower = &builder;
        firstThrown = std::current_exception();
      }
      if (claims) {
        ++result_.summary.claimed;
        build(builder, object);
        return;
      }
    }
    if (firstThrower == nullptr) {
      walk_.goInto();
    } else {
      fail(*firstThrower, Step::kCanBuild, messageOf(firstThrown), object);
    }
  }

  void build(const NamedBuilder& builder, Document& object) {
    Node node;
    try {
      node = builder.build(model_, object);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (...) {
      fail(builder, Step::kBuild, messageOf(std::current_exception()), object);
      return;
    }
    if (!node) {
      fail(builder, Step::kBuild, "the builder returned no node", object);
      return;
    }
    result_.nodes.push_back(std::move(node));
    ++result_.summary.built;
  }

  void fail(const NamedBuilder& builder, Step step, std::string message, Document& object) {
    ImportError error{walk_.pointer(), builder.name(), step, std::move(message)};
    if constexpr (!std::is_const_v<Document>) error.object = std::move(object);
    result_.errors.push_back(std::move(error));
    ++result_.summary.failed;
  }

  const std::vector<NamedBuilder>& builders_;
  const gx::zero::Model& model_;
  BasicDocumentWalk<Document> walk_;
  ImportResult result_;
};

}  // namespace

NamedBuilder::NamedBuilder(std::string name, Service service)
    : name_(std::move(name)), service_(std::move(service)) {}

bool NamedBuilder::canBuild(const Value& json) const {
  return std::visit([&](const auto& builder) { return builder->canBuild(json); }, service_);
}

Node NamedBuilder::build(const gx::zero::Model& model, const Value& json) const {
  return std::visit([&](const auto& builder) { return builder->build(model, json); }, service_);
}

const char* stepName(Step step) noexcept {
  return step == Step::kCanBuild ? "canBuild" : "build";
}

std::string messageOf(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "an exception that is no std::exception";
  }
}

ImportResult importDocument(const std::vector<NamedBuilder>& builders, const gx::zero::Model& model,
                            const Value& document, OnError onError) {
  return Import(builders, model, document).run(onError);
}

ImportResult importDocument(const std::vector<NamedBuilder>& builders, const gx::zero::Model& model,
                            Value&& document, OnError onError) {
  return Import(builders, model, document).run(onError);
}

}  // namespace reference_host::importer
