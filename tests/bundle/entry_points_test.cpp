// The exported functions of the bundle, called as a service runtime calls them.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "support/allocation_count.hpp"
#include "support/json.hpp"

namespace {

using cppmicroservices::service::component::detail::ComponentInstance;
using foundation::json::Value;

struct Close {
  void operator()(void* library) const { dlclose(library); }
};

class EntryPoints : public ::testing::Test {
 protected:
  EntryPoints() : library_(dlopen(BUNDLE, RTLD_NOW | RTLD_LOCAL)) {
    std::ifstream file(MANIFEST);
    manifest_ = test_support::json(std::string(std::istreambuf_iterator<char>(file), {}));
  }

  void SetUp() override { ASSERT_NE(library_, nullptr) << dlerror(); }

  /// The exported names of the manifest's components, without `NewInstance_`.
  std::vector<std::string> classPaths() const {
    std::vector<std::string> paths;
    const Value& components = manifest_["scr"]["components"];
    for (const Value& component : *components.get_if<Value::Array>()) {
      std::string path = *component["implementation-class"].get_if<std::string>();
      for (auto colons = path.find("::"); colons != std::string::npos; colons = path.find("::")) {
        path.replace(colons, 2, "_");
      }
      paths.push_back(path);
    }
    return paths;
  }

  template <typename Function>
  Function* find(const std::string& name) const {
    return reinterpret_cast<Function*>(dlsym(library_.get(), name.c_str()));
  }

  /// What stands there. A sanitizer has room of its own between the library's variables.
  [[gnu::no_sanitize_address]] static const void* wordAt(const char* place) {
    return *reinterpret_cast<const void* const volatile*>(place);
  }

  /// Whether a pointer stands in the memory that the library writes to.
  static bool isKept(const void* pointer) {
    struct Search {
      const void* pointer;
      bool found;
    } search{pointer, false};
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* data) {
          auto& sought = *static_cast<Search*>(data);
          if (std::strcmp(info->dlpi_name, BUNDLE) != 0) return 0;
          for (ElfW(Half) index = 0; index < info->dlpi_phnum; ++index) {
            const ElfW(Phdr)& segment = info->dlpi_phdr[index];
            if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) == 0) continue;
            const auto* begin = reinterpret_cast<const char*>(info->dlpi_addr + segment.p_vaddr);
            for (std::size_t at = 0; at + sizeof(void*) <= segment.p_memsz; at += sizeof(void*)) {
              sought.found = sought.found || wordAt(begin + at) == sought.pointer;
            }
          }
          return 1;
        },
        &search);
    return search.found;
  }

  std::unique_ptr<void, Close> library_;
  Value manifest_;
};

TEST_F(EntryPoints, EveryComponentIsMadeAndFreed) {
  const std::vector<std::string> paths = classPaths();
  ASSERT_FALSE(paths.empty());
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    auto* const make = find<ComponentInstance*()>("NewInstance_" + path);
    auto* const free = find<void(ComponentInstance*)>("DeleteInstance_" + path);
    ASSERT_NE(make, nullptr);
    ASSERT_NE(free, nullptr);
    ComponentInstance* const first = make();
    ComponentInstance* const second = make();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(first, second);
    free(first);
    free(second);
    free(nullptr);
  }
}

TEST_F(EntryPoints, NothingIsMadeWithoutMemory) {
  for (const std::string& path : classPaths()) {
    SCOPED_TRACE(path);
    auto* const make = find<ComponentInstance*()>("NewInstance_" + path);
    auto* const free = find<void(ComponentInstance*)>("DeleteInstance_" + path);
    ASSERT_NE(make, nullptr);
    ASSERT_NE(free, nullptr);
    // However many allocations there are, each may be the one that fails.
    ComponentInstance* made = nullptr;
    std::size_t successes = 0;
    for (; made == nullptr && successes < 100; ++successes) {
      bool thrown = false;
      {
        const test_support::AllocationFailure failure(successes);
        try {
          made = make();
        } catch (...) {
          thrown = true;
        }
      }
      EXPECT_FALSE(thrown) << "after " << successes << " allocations";
    }
    EXPECT_GT(successes, 1U) << "made without memory";
    EXPECT_NE(made, nullptr);
    free(made);
  }
}

TEST_F(EntryPoints, TheContextIsKeptUntilItIsTakenBack) {
  auto* const set = find<void(void*)>("_us_set_bundle_context_instance_" +
                                      *manifest_["bundle.symbolic_name"].get_if<std::string>());
  ASSERT_NE(set, nullptr);
  // The slot has no name outside, and nobody reads it: it is seen in the library's own memory.
  int context = 0;
  EXPECT_FALSE(isKept(&context));
  set(&context);
  EXPECT_TRUE(isKept(&context));
  set(nullptr);
  EXPECT_FALSE(isKept(&context));
}

}  // namespace
