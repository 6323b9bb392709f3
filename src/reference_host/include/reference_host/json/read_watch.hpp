#pragma once

/// @file
/// Watching what a program asks of values.

#include <string>

#include "foundation/export.hpp"
#include "foundation/json.hpp"

namespace reference_host::json {

/// Is told what a thread asks of values, while there is a watch. It must not ask values in these
/// ways itself.
class TESSEL_HOST_API ReadObserver {
 public:
  virtual ~ReadObserver() = default;

  /// The holder, of whatever kind, was asked for a member, by any of the ways to one.
  /// @param answer null, or an Undefined value, when there is none.
  virtual void asked(const foundation::json::Value& holder, const std::string& key,
                     const foundation::json::Value* answer) = 0;
  /// A value was copied.
  virtual void copied(const foundation::json::Value& original,
                      const foundation::json::Value& copy) = 0;
};

/// Has an observer told of the calling thread's reads for as long as this lives. One at a time in a
/// thread; a read of the held alternative itself (`get_if`) is not told of.
class TESSEL_HOST_API ReadWatch {
 public:
  explicit ReadWatch(ReadObserver& observer) noexcept;
  ~ReadWatch();
  ReadWatch(const ReadWatch&) = delete;
  ReadWatch& operator=(const ReadWatch&) = delete;

  /// Who watches the calling thread; null while nobody does.
  static ReadObserver* observer() noexcept;
};

}  // namespace reference_host::json
