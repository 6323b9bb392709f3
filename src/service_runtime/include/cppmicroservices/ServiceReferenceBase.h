#pragma once

/// @file
/// The handle of a published service, whatever its interface.

#include <memory>
#include <string>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class Bundle;
struct ServiceRecord;

/// A handle of one published service. It tells the service's properties, also after the service has
/// gone, and is what `BundleContext::GetService` takes. Several threads may use copies; one object
/// is not to be assigned while another thread reads it.
class US_ABI_EXPORT ServiceReferenceBase {
 public:
  /// True while the service is published.
  explicit operator bool() const;
  /// True if both stand for the same publication.
  bool operator==(const ServiceReferenceBase& other) const { return record_ == other.record_; }
  bool operator!=(const ServiceReferenceBase& other) const { return !(*this == other); }

  /// The property of that name, without regard to case; empty if there is none.
  Any GetProperty(const std::string& key) const;
  /// The bundle that publishes the service; an empty handle when the service has gone.
  Bundle GetBundle() const;
  /// The interface this handle was looked up for; empty if it stands for the service as a whole.
  const std::string& GetInterfaceId() const { return interfaceId_; }

 protected:
  ServiceReferenceBase() = default;
  /// From now on for that interface; empty if the service is not published under it.
  void bindTo(const std::string& interfaceId);

 private:
  friend class CoreBundleContext;
  ServiceReferenceBase(std::shared_ptr<ServiceRecord> record, std::string interfaceId);

  std::shared_ptr<ServiceRecord> record_;
  std::string interfaceId_;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
