#pragma once

/// @file
/// The exception library: exceptions that carry a message identifier instead of a text.

#include <boost/exception/exception.hpp>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/export.hpp"

namespace foundation::core::except {

/// Anything that the host's libraries throw.
class TESSEL_HOST_TYPE IException {
 public:
  virtual ~IException() = default;
};

/// An exception whose message is for the user of the editor.
class TESSEL_HOST_TYPE IUserException : public IException {};

/// An exception whose text lies in a message catalog, under a key.
class TESSEL_HOST_TYPE IMsgIDException : public IUserException {
 public:
  virtual std::string_view getCatalog() const noexcept = 0;
  virtual std::string_view getKey() const noexcept = 0;
  /// What the text's placeholders stand for, in order; UTF-16.
  virtual const std::vector<std::u16string>& getArguments() const noexcept = 0;
};

/// The exception of one message. Each of its bases is reached on one way only, so that it can be
/// caught as any of them.
/// @tparam Message has the static members `kCatalog` and `kKey`.
/// @tparam StandardBase the standard exception that it also is.
template <typename Message, typename StandardBase>
class TESSEL_HOST_TYPE Exception : public StandardBase,
                                   public IMsgIDException,
                                   public boost::exception,
                                   public boost::exception_detail::clone_base {
 public:
  explicit Exception(std::vector<std::u16string> arguments) : arguments_(std::move(arguments)) {}

  std::string_view getCatalog() const noexcept override { return Message::kCatalog; }
  std::string_view getKey() const noexcept override { return Message::kKey; }
  const std::vector<std::u16string>& getArguments() const noexcept override { return arguments_; }

  /// The key: the text behind it is the catalog's.
  const char* what() const noexcept override { return Message::kKey; }

  const boost::exception_detail::clone_base* clone() const override { return new Exception(*this); }
  void rethrow() const override { throw Exception(*this); }

 private:
  std::vector<std::u16string> arguments_;
};

/// An exception whose message has one argument.
template <typename Exception>
Exception with_argument(std::u16string argument) {
  return Exception({std::move(argument)});
}

}  // namespace foundation::core::except

namespace gx0::messages {

/// A value was to hold a model element and does not. Argument: the name of the value's type.
struct TESSEL_HOST_TYPE CannotCastIncompatibleTypes {
  static constexpr const char* kCatalog = "gx0:messages";
  static constexpr const char* kKey = "CannotCastIncompatibleTypes";
};

}  // namespace gx0::messages
