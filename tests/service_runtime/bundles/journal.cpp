#include "journal.hpp"

#include <mutex>
#include <utility>

namespace service_runtime_test {

namespace {

std::mutex mutex;
std::vector<std::string> entries;
Hook currentHook;

}  // namespace

void note(const std::string& entry) {
  Hook hook;
  {
    const std::lock_guard lock(mutex);
    entries.push_back(entry);
    hook = currentHook;
  }
  if (hook) hook(entry);
}

std::vector<std::string> takeJournal() {
  const std::lock_guard lock(mutex);
  return std::exchange(entries, {});
}

HookGuard::HookGuard(Hook hook) {
  const std::lock_guard lock(mutex);
  currentHook.swap(hook);
}

HookGuard::~HookGuard() {
  const std::lock_guard lock(mutex);
  currentHook = nullptr;
}

}  // namespace service_runtime_test
