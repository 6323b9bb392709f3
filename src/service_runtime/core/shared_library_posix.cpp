#include "core/shared_library.hpp"

#include <dlfcn.h>

#include <mutex>
#include <stdexcept>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

// The system's loader has such a lock itself, but race detectors do not see it. Recursive like that
// one: loading and unloading run code of the library, which may load and unload others.
std::recursive_mutex& loaderMutex() {
  static std::recursive_mutex mutex;
  return mutex;
}

}  // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& path) {
  const std::lock_guard lock(loaderMutex());
  // Absolute: a bare file name would be looked for in the system's folders.
  handle_ = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle_) {
    const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe): the thread's own
    throw std::runtime_error(std::string("cannot be loaded: ") + (reason ? reason : "unknown"));
  }
}

SharedLibrary::~SharedLibrary() {
  const std::lock_guard lock(loaderMutex());
  dlclose(handle_);
}

void* SharedLibrary::symbol(const std::string& name) const {
  return dlsym(handle_, name.c_str());
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
