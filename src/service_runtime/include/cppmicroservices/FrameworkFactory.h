#pragma once

/// @file
/// Makes frameworks.

#include "cppmicroservices/FrameworkConfig.h"

namespace cppmicroservices {
inline namespace embedded_v1 {

class Framework;

/// Makes frameworks.
class US_Framework_EXPORT FrameworkFactory {
 public:
  /// A new framework, not yet initialised.
  Framework NewFramework();
};

}  // namespace embedded_v1
}  // namespace cppmicroservices
