#pragma once

#include <filesystem>
#include <string>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

/// A loaded shared library. Whatever may run code of the library holds a std::shared_ptr to this;
/// the last one unloads it. Loading and unloading run code of the library.
class SharedLibrary {
 public:
  /// Loads the library with its symbols bound and visible to nobody else.
  /// @throws std::runtime_error with the system's reason
  explicit SharedLibrary(const std::filesystem::path& path);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  /// The exported function of that name; null if there is none.
  template <class Function>
  Function* function(const std::string& name) const {
    return reinterpret_cast<Function*>(symbol(name));
  }

 private:
  void* symbol(const std::string& name) const;

  void* handle_ = nullptr;
};

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
