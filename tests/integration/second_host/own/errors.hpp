#pragma once

/// @file
/// Exceptions of the second host: an exception is made from its message.

#include <boost/exception/exception.hpp>
#include <exception>
#include <string>
#include <utility>

namespace gx0::messages {

struct CannotCastIncompatibleTypes {
  explicit CannotCastIncompatibleTypes(std::u16string name) : typeName(std::move(name)) {}

  std::u16string typeName;
};

}  // namespace gx0::messages

namespace foundation::core::except {

struct IException {
  virtual ~IException() = default;
};
struct IUserException : IException {};
struct IMsgIDException : IUserException {};

template <typename MessageType, typename Base>
class Exception : public Base,
                  public IMsgIDException,
                  public boost::exception,
                  public boost::exception_detail::clone_base {
 public:
  using Message = MessageType;

  explicit Exception(Message message) : message_(std::move(message)) {}
  const Message& message() const { return message_; }
  const clone_base* clone() const override { return new Exception(*this); }
  void rethrow() const override { throw Exception(*this); }

 private:
  Message message_;
};

}  // namespace foundation::core::except
