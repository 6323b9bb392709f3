// The bundle in a service runtime: what is published, and who is given whom. With either runtime.

#include <gmock/gmock.h>

#include <cstddef>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "contract/outcome.hpp"
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
    const contract::Kind& kind = contract::kinds()[index];
    for (const contract::Sample& sample : contract::wholeObjects(kind)) {
      std::vector<std::string> claimants;
      for (const auto& builder : builders) {
        if (builder.canBuild(sample.json)) claimants.push_back(builder.name());
      }
      EXPECT_THAT(claimants, ::testing::ElementsAre(builders[index].name()));
      EXPECT_EQ(contract::answerOf(builders[index], sample.json),
                contract::expectedAnswer(kind, sample.json));
      EXPECT_EQ(contract::buildOf(builders[index], sample.json),
                contract::expectedBuild(kind, sample.json));
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

TEST(Wiring, StopsAndStartsAgain) {
  Host host;
  Bundle bundle = startProduct(host);
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    EXPECT_THAT(servicesOf(host, bundle), ElementsAreArray(productServices()));
    const auto reference = host.context().GetServiceReference<NodeBuilder>();
    const auto header = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(header);
    EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));

    bundle.Stop();
    EXPECT_FALSE(reference);
    EXPECT_EQ(host.service<NodeBuilder>(), nullptr);
    EXPECT_EQ(host.service<CodeElementBuilder>(), nullptr);
    EXPECT_THAT(servicesOf(host, bundle), IsEmpty());

    bundle.Start();
    const auto next = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(next);
    EXPECT_NE(next, header) << "the old one is still held";
  }
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Wiring, HandlesStayUsableWhileTheyAreHeld) {
  const std::string slider = R"({"className":"LumoControlNode","context":{"type":"slider"}})";
  std::shared_ptr<NodeBuilder> header;
  std::shared_ptr<CodeElementBuilder> control;
  std::string builtSlider;
  const auto expectUsable = [&] {
    EXPECT_TRUE(header->canBuild(json(kTask)));
    EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
    EXPECT_EQ(built(*control, slider), builtSlider);
    EXPECT_THROW(control->build(gx::zero::Model::create(), json(R"({"startColumn":""})")),
                 std::runtime_error);
  };
  {
    Host host;
    Bundle bundle = startProduct(host);
    header = serviceOf<NodeBuilder>(host, kHeader);
    control = serviceOf<CodeElementBuilder>(host, kControls + "SliderNodeBuilderImpl");
    ASSERT_TRUE(header);
    ASSERT_TRUE(control);
    builtSlider = built(*control, slider);
    EXPECT_THAT(builtSlider, HasSubstr("SliderNode"));
    bundle.Stop();
    expectUsable();
    bundle.Uninstall();
    expectUsable();
  }
  expectUsable();
}

TEST(Wiring, FrameworksLiveSideBySide) {
  auto first = std::make_unique<Host>();
  const Bundle firstBundle = startProduct(*first);
  Host second;
  const Bundle secondBundle = startProduct(second);
  EXPECT_THAT(servicesOf(*first, firstBundle), ElementsAreArray(productServices()));
  EXPECT_THAT(servicesOf(second, secondBundle), ElementsAreArray(productServices()));
  EXPECT_EQ(built(*presentServiceOf<NodeBuilder>(*first, kHeader), kTask),
            builtTask(kEmptyInlineNode));
  const auto header = serviceOf<NodeBuilder>(second, kHeader);
  EXPECT_NE(serviceOf<NodeBuilder>(*first, kHeader), header);
  first.reset();
  EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
  EXPECT_THAT(servicesOf(second, secondBundle), ElementsAreArray(productServices()));
}

}  // namespace
}  // namespace bundle_test
