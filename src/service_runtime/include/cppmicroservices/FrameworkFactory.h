#pragma once

/// @file
/// Makes frameworks.

#include "cppmicroservices/GlobalConfig.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class Framework;

/// Makes frameworks.
class US_ABI_EXPORT FrameworkFactory {
 public:
  /// A new framework, not yet started.
  Framework NewFramework();
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
