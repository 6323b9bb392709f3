// The bundle in a service runtime: what is published, and who is given whom. With either runtime.

#include <gmock/gmock.h>

#include <cstddef>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "contract/samples.hpp"
#include "product.hpp"

namespace bundle_test {
namespace {

using cppmicroservices::Bundle;
using service_runtime_test::takeJournal;
using test_support::json;
using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

TEST(Wiring, PublishesItsServicesInTheManifestsOrder) {
  Host host;
  Bundle bundle = installProduct(host);
  EXPECT_EQ(bundle.GetSymbolicName(), "com_quorvex_tessel_build_json_controls");
  EXPECT_THAT(servicesOf(host, bundle), IsEmpty());
  bundle.Start();
  EXPECT_THAT(servicesOf(host, bundle), ElementsAreArray(productServices()));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Wiring, EachNameStandsForItsClass) {
  Host host;
  startProduct(host);
  const auto builders = productBuilders(host);
  for (std::size_t index = 0; index < builders.size(); ++index) {
    SCOPED_TRACE(builders[index].name());
    for (const auto& sample : contract::wholeObjects(contract::kinds()[index])) {
      std::vector<std::string> claimants;
      for (const auto& builder : builders) {
        if (builder.canBuild(sample.json)) claimants.push_back(builder.name());
      }
      EXPECT_THAT(claimants, ::testing::ElementsAre(builders[index].name()));
    }
  }
}

TEST(Wiring, OneInstanceServesAll) {
  Host host;
  startProduct(host);
  std::set<std::shared_ptr<void>> instances;
  const auto expectOne = [&instances](const auto& first, const auto& second) {
    EXPECT_EQ(first, second);
    instances.insert(first);
  };
  for (const contract::Kind& kind : contract::kinds()) {
    const std::string name = componentOf(kind);
    SCOPED_TRACE(name);
    if (contract::isControl(kind)) {
      expectOne(presentServiceOf<CodeElementBuilder>(host, name),
                presentServiceOf<CodeElementBuilder>(host, name));
    } else {
      expectOne(presentServiceOf<NodeBuilder>(host, name),
                presentServiceOf<NodeBuilder>(host, name));
    }
  }
  EXPECT_THAT(instances, SizeIs(contract::kinds().size()));
}

TEST(Wiring, HeaderIsGivenTheInlineBuilderAndNoStranger) {
  for (const bool strangerFirst : {true, false}) {
    SCOPED_TRACE(strangerFirst ? "stranger before the product" : "stranger after the product");
    Host host;
    Bundle stranger = host.install("stranger");
    if (strangerFirst) stranger.Start();
    startProduct(host);
    if (!strangerFirst) stranger.Start();

    const auto header = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(header);
    EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
    EXPECT_THAT(takeJournal(), Not(Contains(HasSubstr("construct"))));
    // The stranger ranks higher: without the target it would have been taken.
    const auto best = host.service<NodeBuilder>();
    ASSERT_TRUE(best);
    EXPECT_EQ(built(*best, "{}"),
              R"({"class":"document::gxzero::LumoAppLineNode","anchorId":"Stranger"})");
    stranger.Stop();
    EXPECT_EQ(serviceOf<NodeBuilder>(host, kHeader), header);
    EXPECT_THAT(host.takeEvents(), IsEmpty());
  }
}

TEST(Wiring, HandlesStayUsableWhileTheyAreHeld) {
  std::shared_ptr<NodeBuilder> header;
  const auto expectUsable = [&header] {
    EXPECT_TRUE(header->canBuild(json(kTask)));
    EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
    EXPECT_THROW(built(*header, "{}"), std::runtime_error);
  };
  {
    Host host;
    Bundle bundle = startProduct(host);
    header = presentServiceOf<NodeBuilder>(host, kHeader);
    bundle.Stop();
    expectUsable();
    bundle.Uninstall();
    expectUsable();
  }
  expectUsable();
}

TEST(Wiring, FrameworksLiveSideBySide) {
  auto first = std::make_unique<Host>();
  startProduct(*first);
  Host second;
  const Bundle bundle = startProduct(second);
  const auto header = presentServiceOf<NodeBuilder>(second, kHeader);
  EXPECT_NE(presentServiceOf<NodeBuilder>(*first, kHeader), header);
  first.reset();
  EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
  EXPECT_THAT(servicesOf(second, bundle), ElementsAreArray(productServices()));
}

}  // namespace
}  // namespace bundle_test
