#include "cppmicroservices/Framework.h"

#include "core.hpp"
#include "cppmicroservices/FrameworkEvent.h"
#include "cppmicroservices/FrameworkFactory.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

void Framework::Init() {
  c->init();
}

FrameworkEvent Framework::WaitForStop(const std::chrono::milliseconds& timeout) {
  return c->waitForStop(timeout);
}

Framework FrameworkFactory::NewFramework() {
  auto core = CoreBundleContext::make();
  auto bundle = core->systemBundle();
  return {std::move(bundle), std::move(core)};
}

}  // namespace embedded_v1
}  // namespace cppmicroservices
