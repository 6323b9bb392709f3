#pragma once

/// @file
/// The receipt for an added listener.

#include <cstdint>
#include <utility>

#include "cppmicroservices/FrameworkExport.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

using ListenerTokenId = std::uint64_t;

/// What adding a listener gives, and what removing it takes. Movable only.
class ListenerToken {
 public:
  ListenerToken() = default;
  ListenerToken(const ListenerToken&) = delete;
  ListenerToken& operator=(const ListenerToken&) = delete;
  ListenerToken(ListenerToken&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
  ListenerToken& operator=(ListenerToken&& other) noexcept {
    id_ = std::exchange(other.id_, 0);
    return *this;
  }
  ~ListenerToken() = default;

  /// True if the token stands for a listener.
  explicit operator bool() const { return id_ != 0; }

 private:
  friend class CoreBundleContext;
  explicit ListenerToken(ListenerTokenId id) : id_(id) {}

  ListenerTokenId id_ = 0;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
