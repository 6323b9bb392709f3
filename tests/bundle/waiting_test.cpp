// The product without its inline builder: the header's builder waits for one of another bundle.
// With either runtime.

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>

#include "cppmicroservices/servicecomponent/runtime/ServiceComponentRuntime.hpp"
#include "product.hpp"

namespace bundle_test {
namespace {

using cppmicroservices::Bundle;
using cppmicroservices::service::component::runtime::ServiceComponentRuntime;
using service_runtime_test::takeJournal;
using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
namespace dto = cppmicroservices::service::component::runtime::dto;

const std::string kStandInsLine =
    R"({"class":"document::gxzero::LumoAppLineNode","anchorId":"StandIn"})";

dto::ComponentConfigurationDTO headerConfiguration(Host& host, const Bundle& product) {
  const auto runtime = host.service<ServiceComponentRuntime>();
  for (const auto& description : runtime->GetComponentDescriptionDTOs({product})) {
    if (description.name != kHeader) continue;
    const auto configurations = runtime->GetComponentConfigurationDTOs(description);
    EXPECT_EQ(configurations.size(), 1U);
    return configurations.at(0);
  }
  throw std::runtime_error("the runtime does not know the header's builder");
}

void expectWaiting(Host& host, const Bundle& product) {
  EXPECT_THAT(servicesOf(host, product), ElementsAreArray(productServices({kInline, kHeader})));
  EXPECT_EQ(serviceOf<NodeBuilder>(host, kHeader), nullptr);
  const auto configuration = headerConfiguration(host, product);
  EXPECT_EQ(configuration.state, dto::ComponentState::UNSATISFIED_REFERENCE);
  ASSERT_EQ(configuration.unsatisfiedReferences.size(), 1U);
  EXPECT_EQ(configuration.unsatisfiedReferences.front().name, "lumoAppIntegratedInlineNodeBuilder");
  EXPECT_EQ(configuration.unsatisfiedReferences.front().target,
            "(test_id=LumoTaskIntegratedInlineNodeBuilderImpl)");
}

long headersInstances() {
  const auto journal = takeJournal();
  return std::count(journal.begin(), journal.end(), "construct StandIn");
}

TEST(Waiting, HeaderComesAndGoesWithTheInlineBuilder) {
  Host host;
  Bundle product = host.start("product_without_inline");
  host.start("stranger");
  expectWaiting(host, product);
  EXPECT_TRUE(presentServiceOf<CodeElementBuilder>(host, kControls + "ButtonBuilderImpl")
                  ->canBuild(test_support::json(R"({"className":"button"})")))
      << "controls need nobody";
  product.Stop();
  EXPECT_THAT(servicesOf(host, product), IsEmpty());
  product.Start();
  expectWaiting(host, product);

  Bundle standIn = host.start("stand_in");
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    EXPECT_THAT(servicesOf(host, product), ElementsAreArray(productServices({kInline})));
    EXPECT_EQ(headerConfiguration(host, product).state, dto::ComponentState::SATISFIED);
    EXPECT_EQ(headersInstances(), 0) << "nobody has asked yet";

    const auto header = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(header);
    EXPECT_EQ(built(*header, kTask), builtTask(kStandInsLine));
    EXPECT_EQ(headersInstances(), 1);
    EXPECT_EQ(headerConfiguration(host, product).state, dto::ComponentState::ACTIVE);

    standIn.Stop();
    expectWaiting(host, product);
    EXPECT_EQ(built(*header, kTask), builtTask(kStandInsLine)) << "held, and so alive";

    standIn.Start();
    const auto next = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(next);
    EXPECT_NE(next, header);
    EXPECT_EQ(headersInstances(), 1);
    standIn.Stop();
    standIn.Start();
  }
  EXPECT_THAT(takeJournal(), Not(Contains(HasSubstr("construct Stranger"))));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Waiting, ReleasesWhatItUsedWhenItIsLetGo) {
  Host host;
  host.start("stand_in");
  Bundle product = host.start("product_without_inline");
  EXPECT_THAT(servicesOf(host, product), ElementsAreArray(productServices({kInline})));
  auto header = serviceOf<NodeBuilder>(host, kHeader);
  ASSERT_TRUE(header);
  takeJournal();
  product.Stop();
  EXPECT_EQ(built(*header, kTask), builtTask(kStandInsLine));
  EXPECT_THAT(takeJournal(), Not(Contains("destroy StandIn")));
  header.reset();
  host.framework().Stop();
  host.framework().WaitForStop(std::chrono::milliseconds::zero());
  EXPECT_THAT(takeJournal(), Contains("destroy StandIn"));
}

}  // namespace
}  // namespace bundle_test
