#pragma once

#include "core/core.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {

/// The right to change bundles, which one thread has at a time, any number of times over.
class CoreBundleContext::Lifecycle {
 public:
  explicit Lifecycle(CoreBundleContext& core) : core_(core) {
    const auto me = std::this_thread::get_id();
    Lock lock(core_.mutex_);
    if (core_.lifecycleThread_ != me) {
      core_.waitingForLifecycle_.insert(me);
      core_.changed_.notify_all();
      core_.changed_.wait(lock, [this] { return core_.lifecycleThread_ == std::thread::id(); });
      core_.waitingForLifecycle_.erase(me);
      core_.lifecycleThread_ = me;
    }
    ++core_.lifecycleDepth_;
  }

  ~Lifecycle() {
    const Lock lock(core_.mutex_);
    if (--core_.lifecycleDepth_ == 0) {
      core_.lifecycleThread_ = std::thread::id();
      core_.changed_.notify_all();
    }
  }

  Lifecycle(const Lifecycle&) = delete;
  Lifecycle& operator=(const Lifecycle&) = delete;

 private:
  CoreBundleContext& core_;
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
