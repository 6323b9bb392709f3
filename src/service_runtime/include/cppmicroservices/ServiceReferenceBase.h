#pragma once

/// @file
/// The handle of a published service, whatever its interface.

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "cppmicroservices/Any.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class Bundle;
struct ServiceRecord;

/// A handle of one published service. It tells the service's properties, also after the service has
/// gone, and is what `BundleContext::GetService` takes. Several threads may use copies; one object
/// is not to be assigned while another thread reads it.
class US_Framework_EXPORT ServiceReferenceBase {
 public:
  /// True while the service is published.
  explicit operator bool() const;

  ServiceReferenceBase& operator=(std::nullptr_t);

  /// The property of that name, without regard to case; empty if there is none.
  Any GetProperty(const std::string& key) const;
  /// The names of all properties, in order.
  std::vector<std::string> GetPropertyKeys() const;

  /// The bundle that publishes the service; an empty handle when the service has gone.
  Bundle GetBundle() const;

  /// The interface this handle was looked up for; empty if it stands for the service as a whole.
  const std::string& GetInterfaceId() const { return interfaceId_; }
  /// Whether the service is published under that interface too.
  bool IsConvertibleTo(const std::string& interfaceId) const;

  /// Orders by "service.ranking"; of two with the same rank the one published later is the less. An
  /// empty handle is less than any other.
  bool operator<(const ServiceReferenceBase& other) const;
  /// True if both stand for the same publication.
  bool operator==(const ServiceReferenceBase& other) const { return record_ == other.record_; }
  bool operator!=(const ServiceReferenceBase& other) const { return !(*this == other); }

  std::size_t Hash() const { return std::hash<std::shared_ptr<ServiceRecord>>()(record_); }

 protected:
  ServiceReferenceBase() = default;
  void bindTo(const std::string& interfaceId);

 private:
  friend class CoreBundleContext;
  ServiceReferenceBase(std::shared_ptr<ServiceRecord> record, std::string interfaceId);

  std::shared_ptr<ServiceRecord> record_;
  std::string interfaceId_;
};

US_Framework_EXPORT std::ostream& operator<<(std::ostream& os, const ServiceReferenceBase& service);

}  // namespace embedded_v1
}  // namespace cppmicroservices
