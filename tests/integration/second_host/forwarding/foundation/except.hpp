#pragma once

#include <string>
#include <utility>

#include "own/errors.hpp"

namespace foundation::core::except {

template <typename Exception>
Exception with_argument(std::u16string argument) {
  return Exception(typename Exception::Message(std::move(argument)));
}

}  // namespace foundation::core::except
