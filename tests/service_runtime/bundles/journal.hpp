#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace service_runtime_test {

using Hook = std::function<void(const std::string& entry)>;

/// Adds an entry to the process's journal, in which test bundles write what happens, and then runs
/// the hook, if there is one.
void note(const std::string& entry);

/// Takes all entries out of the journal.
std::vector<std::string> takeJournal();

/// Sets what runs at each entry, on the thread that makes it; null for nothing.
void setHook(Hook hook);

/// A hook for the time of a block.
class HookGuard {
 public:
  explicit HookGuard(Hook hook) { setHook(std::move(hook)); }
  ~HookGuard() { setHook(nullptr); }
  HookGuard(const HookGuard&) = delete;
  HookGuard& operator=(const HookGuard&) = delete;
};

}  // namespace service_runtime_test
