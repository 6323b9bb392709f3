#pragma once

#include <functional>
#include <string>
#include <vector>

namespace service_runtime_test {

using Hook = std::function<void(const std::string& entry)>;

/// Adds an entry to the process's journal, in which test bundles write what happens, and then runs
/// the hook, if there is one.
void note(const std::string& entry);

/// Takes all entries out of the journal.
std::vector<std::string> takeJournal();

/// What runs at each entry while the guard lives, on the thread that makes the entry.
class HookGuard {
 public:
  explicit HookGuard(Hook hook);
  ~HookGuard();
  HookGuard(const HookGuard&) = delete;
  HookGuard& operator=(const HookGuard&) = delete;
};

}  // namespace service_runtime_test
