#pragma once

#include <string>
#include <utility>

#include "foreign/foundation/except.hpp"

namespace foundation::core::except {

template <typename Exception>
Exception with_argument(std::u16string argument) {
  return foreign_with_argument<Exception>(std::move(argument));
}

}  // namespace foundation::core::except
