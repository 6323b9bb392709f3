#include <algorithm>
#include <ostream>
#include <utility>

#include "core.hpp"
#include "cppmicroservices/ServiceReferenceBase.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

ServiceReferenceBase::ServiceReferenceBase(std::shared_ptr<ServiceRecord> record,
                                           std::string interfaceId)
    : record_(std::move(record)), interfaceId_(std::move(interfaceId)) {}

ServiceReferenceBase::operator bool() const {
  return record_ && record_->published;
}

ServiceReferenceBase& ServiceReferenceBase::operator=(std::nullptr_t) {
  return *this = ServiceReferenceBase();
}

void ServiceReferenceBase::bindTo(const std::string& interfaceId) {
  if (interfaceId_ == interfaceId) return;
  if (IsConvertibleTo(interfaceId)) {
    interfaceId_ = interfaceId;
  } else {
    *this = nullptr;
  }
}

Any ServiceReferenceBase::GetProperty(const std::string& key) const {
  if (!record_) return {};
  const auto property = record_->properties.find(key);
  return property == record_->properties.end() ? Any() : property->second;
}

std::vector<std::string> ServiceReferenceBase::GetPropertyKeys() const {
  std::vector<std::string> keys;
  if (!record_) return keys;
  for (const auto& [name, value] : record_->properties) keys.push_back(name);
  return keys;
}

Bundle ServiceReferenceBase::GetBundle() const {
  if (!*this) return {};
  const auto core = record_->core.lock();
  return core ? core->handle(record_->bundle.lock()) : Bundle();
}

bool ServiceReferenceBase::IsConvertibleTo(const std::string& interfaceId) const {
  return record_ && std::find(record_->interfaces.begin(), record_->interfaces.end(),
                              interfaceId) != record_->interfaces.end();
}

bool ServiceReferenceBase::operator<(const ServiceReferenceBase& other) const {
  if (!record_ || !other.record_) return !record_ && other.record_;
  return record_->ranking != other.record_->ranking ? record_->ranking < other.record_->ranking
                                                    : record_->id > other.record_->id;
}

std::ostream& operator<<(std::ostream& os, const ServiceReferenceBase& service) {
  if (!service) return os << "no service";
  os << "service (";
  const char* separator = "";
  for (const std::string& key : service.GetPropertyKeys()) {
    os << separator << key << "=" << service.GetProperty(key).ToString();
    separator = ",";
  }
  return os << ")";
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
