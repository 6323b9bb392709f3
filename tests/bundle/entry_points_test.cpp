// The exported functions of the bundle, called as a service runtime calls them, and an error thrown
// in a library that exports none of its types, as the bundle does.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <boost/exception/exception.hpp>
#include <cstddef>
#include <cstring>
#include <exception>
#include <memory>
#include <string>

#include "contract/kinds.hpp"
#include "cppmicroservices/servicecomponent/detail/ComponentInstance.hpp"
#include "foundation/except.hpp"
#include "support/allocation_count.hpp"

namespace {

using cppmicroservices::service::component::detail::ComponentInstance;
using foundation::core::except::Exception;

struct Close {
  void operator()(void* library) const { dlclose(library); }
};
using Library = std::unique_ptr<void, Close>;

Library opened(const char* path) {
  return Library(dlopen(path, RTLD_NOW | RTLD_LOCAL));
}

template <typename Function>
Function* find(const Library& library, const std::string& name) {
  return reinterpret_cast<Function*>(dlsym(library.get(), name.c_str()));
}

class EntryPoints : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(library_, nullptr) << dlerror(); }

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

  const Library library_ = opened(BUNDLE);
};

TEST_F(EntryPoints, EveryComponentIsMadeAndFreedAndNoneWithoutMemory) {
  for (const contract::Kind& kind : contract::kinds()) {
    const std::string path = std::string("tessel_build_json_") +
                             (contract::isControl(kind) ? "controls_" : "widgets_") + kind.builder;
    SCOPED_TRACE(path);
    auto* const make = find<ComponentInstance*()>(library_, "NewInstance_" + path);
    auto* const free = find<void(ComponentInstance*)>(library_, "DeleteInstance_" + path);
    ASSERT_NE(make, nullptr);
    ASSERT_NE(free, nullptr);
    // However many allocations there are, each may be the one that fails.
    ComponentInstance* first = nullptr;
    std::size_t successes = 0;
    for (; first == nullptr && successes < 100; ++successes) {
      bool thrown = false;
      {
        const test_support::AllocationFailure failure(successes);
        try {
          first = make();
        } catch (...) {
          thrown = true;
        }
      }
      EXPECT_FALSE(thrown) << "after " << successes << " allocations";
    }
    EXPECT_GT(successes, 1U) << "made without memory";
    EXPECT_NE(first, nullptr);
    bool isAnother = false;
    const test_support::AllocationTally tally = test_support::tallyOf([&] {
      ComponentInstance* const second = make();
      isAnother = second != nullptr && second != first;
      free(second);
    });
    EXPECT_TRUE(isAnother);
    EXPECT_EQ(tally.freed, tally.count);
    free(first);
    free(nullptr);
  }
}

TEST_F(EntryPoints, TheContextIsKeptUntilItIsTakenBack) {
  auto* const set = find<void(void*)>(
      library_, "_us_set_bundle_context_instance_com_quorvex_tessel_build_json_controls");
  ASSERT_NE(set, nullptr);
  // The slot has no name outside, and nobody reads it: it is seen in the library's own memory.
  int context = 0;
  EXPECT_FALSE(isKept(&context));
  set(&context);
  EXPECT_TRUE(isKept(&context));
  set(nullptr);
  EXPECT_FALSE(isKept(&context));
}

template <typename Caught>
bool isCaughtAs(void (*action)()) {
  try {
    action();
  } catch (const Caught&) {
    return true;
  } catch (...) {
  }
  return false;
}

TEST(CastErrorAcrossLibraries, IsCaughtAsEachOfItsTypes) {
  const Library library = opened(CAST_ERROR_LIBRARY);
  ASSERT_NE(library, nullptr) << dlerror();
  auto* const fail = find<void()>(library, "tessel_test_throw_cast_error");
  ASSERT_NE(fail, nullptr);
  using CannotCast = Exception<gx0::messages::CannotCastIncompatibleTypes, std::exception>;
  EXPECT_TRUE(isCaughtAs<CannotCast>(fail));
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IMsgIDException>(fail));
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IUserException>(fail));
  EXPECT_TRUE(isCaughtAs<foundation::core::except::IException>(fail));
  EXPECT_TRUE(isCaughtAs<boost::exception_detail::clone_base>(fail));
  EXPECT_TRUE(isCaughtAs<boost::exception>(fail));
  EXPECT_TRUE(isCaughtAs<std::exception>(fail));
}

}  // namespace
