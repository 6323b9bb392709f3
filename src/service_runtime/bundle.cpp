#include "cppmicroservices/Bundle.h"

#include <ostream>
#include <stdexcept>
#include <utility>

#include "core.hpp"
#include "cppmicroservices/BundleContext.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

namespace {

template <class T>
T& checked(const std::shared_ptr<T>& pointer) {
  if (!pointer) throw std::invalid_argument("the bundle handle is empty");
  return *pointer;
}

}  // namespace

Bundle::Bundle() = default;
Bundle::Bundle(const Bundle& other) = default;
Bundle::Bundle(Bundle&& other) noexcept = default;
Bundle& Bundle::operator=(const Bundle& other) = default;
Bundle& Bundle::operator=(Bundle&& other) noexcept = default;
Bundle::~Bundle() = default;

Bundle::Bundle(std::shared_ptr<BundlePrivate> bundle, std::shared_ptr<CoreBundleContext> core)
    : d(std::move(bundle)), c(std::move(core)) {}

Bundle& Bundle::operator=(std::nullptr_t) {
  return *this = Bundle();
}

bool Bundle::operator<(const Bundle& other) const {
  if (!d || !other.d) return !d && other.d;
  return d->id < other.d->id;
}

Bundle::State Bundle::GetState() const {
  return checked(c).state(checked(d));
}

long Bundle::GetBundleId() const {
  return checked(d).id;
}

std::string Bundle::GetLocation() const {
  return checked(d).location;
}

std::string Bundle::GetSymbolicName() const {
  return checked(d).file.manifest.symbolicName;
}

const AnyMap& Bundle::GetHeaders() const {
  return checked(d).file.manifest.headers;
}

BundleContext Bundle::GetBundleContext() const {
  return checked(c).context(checked(d));
}

std::vector<ServiceReferenceU> Bundle::GetRegisteredServices() const {
  std::vector<ServiceReferenceU> result;
  for (const auto& record : checked(c).servicesOf(checked(d))) {
    result.emplace_back(CoreBundleContext::reference(record, std::string()));
  }
  return result;
}

void Bundle::Start() {
  checked(c).start(d);
}
void Bundle::Stop() {
  checked(c).stop(d);
}
void Bundle::Uninstall() {
  checked(c).uninstall(d);
}

std::ostream& operator<<(std::ostream& os, const Bundle& bundle) {
  if (!bundle) return os << "no bundle";
  return os << bundle.GetSymbolicName() << " (" << bundle.GetBundleId() << ", "
            << bundle.GetLocation() << ")";
}

std::ostream& operator<<(std::ostream& os, Bundle::State state) {
  switch (state) {
    case Bundle::STATE_UNINSTALLED:
      return os << "UNINSTALLED";
    case Bundle::STATE_INSTALLED:
      return os << "INSTALLED";
    case Bundle::STATE_RESOLVED:
      return os << "RESOLVED";
    case Bundle::STATE_STARTING:
      return os << "STARTING";
    case Bundle::STATE_STOPPING:
      return os << "STOPPING";
    case Bundle::STATE_ACTIVE:
      return os << "ACTIVE";
  }
  return os << "unknown";
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
