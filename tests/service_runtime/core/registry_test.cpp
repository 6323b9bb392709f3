// What starting and stopping cost is counted here, in filters evaluated and
// components taken up.

#include "core/registry.hpp"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using cppmicroservices::detail::Component;
using cppmicroservices::detail::ComponentDescription;
using cppmicroservices::detail::EntryPoints;
using cppmicroservices::detail::LdapExpression;
using cppmicroservices::detail::Registry;

constexpr int kNobody = -1;

/// Component number `number`, which offers "I" and refers to the services with those numbers.
Registry::ComponentPtr component(int number, const std::vector<int>& uses) {
  ComponentDescription description;
  description.name = std::to_string(number);
  description.interfaces = {"I"};
  description.properties = {{"number", number}, {"kind", std::string("link")}};
  for (const int used : uses) {
    const std::string target = "(&(kind=link)(number=" + std::to_string(used) + "))";
    description.references.push_back({"r", "I", target, LdapExpression::offering("I", target)});
  }
  return std::make_shared<Component>(std::move(description), static_cast<unsigned long>(number),
                                     nullptr, EntryPoints());
}

/// `count` components; `uses` tells what each refers to.
std::vector<Registry::ComponentPtr> components(int count,
                                               const std::function<std::vector<int>(int)>& uses) {
  std::vector<Registry::ComponentPtr> result;
  for (int i = 0; i < count; ++i) result.push_back(component(i, uses(i)));
  return result;
}

std::vector<std::string> names(const std::vector<Registry::ComponentPtr>& components) {
  std::vector<std::string> result;
  for (const auto& component : components) result.push_back(component->description.name);
  return result;
}

constexpr int kCount = 2000;
constexpr std::size_t kLooksEach = 6;

struct ShapeRow {
  const char* description;
  std::vector<int> (*uses)(int number);
  std::size_t published;
};

TEST(Registry, CostGrowsWithTheNumberOfComponents) {
  const ShapeRow rows[] = {
      {"nothing refers to anything", [](int) { return std::vector<int>(); }, kCount},
      {"chain", [](int i) { return i == 0 ? std::vector<int>() : std::vector<int>{i - 1}; },
       kCount},
      {"reversed chain",
       [](int i) { return i + 1 == kCount ? std::vector<int>() : std::vector{i + 1}; }, kCount},
      {"all refer to the last",
       [](int i) { return i + 1 == kCount ? std::vector<int>() : std::vector{kCount - 1}; },
       kCount},
      {"each refers to the two behind it",
       [](int i) {
         std::vector<int> uses;
         for (int j = i + 1; j <= i + 2 && j < kCount; ++j) uses.push_back(j);
         return uses;
       },
       kCount},
      {"chain that waits for somebody",
       [](int i) { return std::vector<int>{i == 0 ? kNobody : i - 1}; }, 0},
      {"ring", [](int i) { return std::vector<int>{(i + 1) % kCount}; }, 0}};
  for (const ShapeRow& row : rows) {
    SCOPED_TRACE(row.description);
    const auto all = components(kCount, row.uses);
    Registry registry;
    registry.publishSatisfied(all);
    EXPECT_THAT(registry.matching(LdapExpression::offering("I", "")), SizeIs(row.published));
    std::size_t before = registry.looks();
    EXPECT_LE(before, kLooksEach * kCount) << "to start";

    std::vector<Registry::ComponentPtr> waiting;
    for (const auto& component : all) {
      if (!component->record) waiting.push_back(component);
    }
    registry.cycles(waiting, nullptr);
    EXPECT_LE(registry.looks() - before, kLooksEach * kCount) << "to look for cycles";

    before = registry.looks();
    std::vector<Registry::ComponentPtr> withdrawn;
    for (auto component = all.rbegin(); component != all.rend(); ++component) {
      registry.withdraw(*component, withdrawn);
    }
    EXPECT_THAT(withdrawn, SizeIs(row.published));
    EXPECT_LE(registry.looks() - before, kLooksEach * kCount) << "to stop";
  }
}

TEST(Registry, UsersAreWithdrawnFirst) {
  // 0 and 2 use 1, and 3 uses 0 and 2.
  const auto all = components(4, [](int i) {
    return i == 1 ? std::vector<int>() : i == 3 ? std::vector<int>{0, 2} : std::vector<int>{1};
  });
  Registry registry;
  registry.publishSatisfied(all);
  std::vector<Registry::ComponentPtr> withdrawn;
  registry.withdraw(all[2], withdrawn);
  EXPECT_THAT(names(withdrawn), ElementsAre("3", "2"));
  registry.withdraw(all[1], withdrawn);
  EXPECT_THAT(names(withdrawn), ElementsAre("3", "2", "0", "1"));
  EXPECT_THAT(registry.matching(LdapExpression::offering("", "")), IsEmpty());

  // What waits can be published again.
  registry.publishSatisfied(all);
  EXPECT_THAT(registry.matching(LdapExpression::offering("I", "(number>=0)")), SizeIs(4));
}

TEST(Registry, ServicesArePublishedInTheOrderOfPasses) {
  // In the first pass 1, which needs nothing, and then 3; in the second 0 and 2.
  const auto all = components(4, [](int i) {
    return i == 1 ? std::vector<int>() : i == 2 ? std::vector<int>{3, 0} : std::vector<int>{1};
  });
  Registry registry;
  registry.publishSatisfied(all);
  std::vector<long> ids;
  for (const auto& component : all) ids.push_back(component->record->id);
  EXPECT_THAT(ids, ElementsAre(3, 1, 4, 2));
}

TEST(Registry, EachComponentOnACycleIsToldOfOnce) {
  // 0 and 1 use each other, so do 0 and 2; 3 uses itself; 4, 5 and 6 are a ring with a short cut;
  // 7 only leads to a cycle.
  const std::vector<std::vector<int>> uses{{1, 2}, {0}, {0}, {3}, {5}, {6, 4}, {4}, {0}};
  const auto all = components(8, [&](int i) { return uses[static_cast<std::size_t>(i)]; });
  const Registry registry;
  std::vector<std::string> ways;
  for (const auto& cycle : registry.cycles(all, nullptr)) ways.push_back(cycle.way);
  EXPECT_THAT(ways, ElementsAre("0 (reference r) -> 1 (reference r) -> 0",
                                "0 (reference r) -> 2 (reference r) -> 0", "3 (reference r) -> 3",
                                "4 (reference r) -> 5 (reference r) -> 6 (reference r) -> 4"));
}

}  // namespace
}  // namespace service_runtime_test
