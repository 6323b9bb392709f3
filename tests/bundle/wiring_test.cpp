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
  EXPECT_THAT(host.context().GetServiceReferences<CodeElementBuilder>(),
              SizeIs(countOf(kControlInterface)));
  EXPECT_THAT(host.context().GetServiceReferences<NodeBuilder>(), SizeIs(countOf(kNodeInterface)));
  EXPECT_THAT(host.takeEvents(), IsEmpty());
}

TEST(Wiring, EachNameStandsForItsClass) {
  Host host;
  startProduct(host);
  const auto builders = productBuilders(host);
  ASSERT_EQ(builders.size(), productComponents().size());
  for (std::size_t index = 0; index < builders.size(); ++index) {
    const Component& component = productComponents()[index];
    SCOPED_TRACE(component.service.component);
    for (const contract::Sample& sample : contract::wholeObjects(*component.kind)) {
      std::vector<std::string> claimants;
      for (const auto& builder : builders) {
        if (builder.canBuild(sample.json)) claimants.push_back(builder.name());
      }
      EXPECT_THAT(claimants, ::testing::ElementsAre(component.service.component));
      EXPECT_EQ(contract::answerOf(builders[index], sample.json),
                contract::expectedAnswer(*component.kind, sample.json));
      EXPECT_EQ(contract::buildOf(builders[index], sample.json),
                contract::expectedBuild(*component.kind, sample.json));
    }
  }
}

TEST(Wiring, OneInstanceServesAll) {
  Host host;
  startProduct(host);
  std::set<const void*> instances;
  for (const Component& component : productComponents()) {
    const std::string& name = component.service.component;
    SCOPED_TRACE(name);
    if (component.service.interface == kNodeInterface) {
      const auto first = serviceOf<NodeBuilder>(host, name);
      ASSERT_TRUE(first);
      EXPECT_EQ(serviceOf<NodeBuilder>(host, name), first);
      instances.insert(first.get());
    } else {
      const auto first = serviceOf<CodeElementBuilder>(host, name);
      ASSERT_TRUE(first);
      EXPECT_EQ(serviceOf<CodeElementBuilder>(host, name), first);
      instances.insert(first.get());
    }
  }
  EXPECT_THAT(instances, SizeIs(productComponents().size()));
}

TEST(Wiring, HeaderIsGivenTheInlineBuilderAndNoStranger) {
  struct Row {
    const char* description;
    bool strangersFirst;
  };
  for (const Row& row :
       {Row{"strangers before the product", true}, Row{"strangers after the product", false}}) {
    SCOPED_TRACE(row.description);
    Host host;
    if (row.strangersFirst) host.start("strangers");
    startProduct(host);
    if (!row.strangersFirst) host.start("strangers");
    ASSERT_THAT(host.context().GetServiceReferences<NodeBuilder>(),
                SizeIs(countOf(kNodeInterface) + 3));

    const auto header = serviceOf<NodeBuilder>(host, kHeader);
    ASSERT_TRUE(header);
    EXPECT_EQ(built(*header, kTask), builtTask(kEmptyInlineNode));
    EXPECT_THAT(takeJournal(), Not(Contains(HasSubstr("construct"))));
    // The strangers rank higher: without the target one of them would have been taken.
    const auto best = host.service<NodeBuilder>();
    ASSERT_TRUE(best);
    EXPECT_EQ(built(*best, "{}"),
              R"({"class":"document::gxzero::LumoAppLineNode","anchorId":"Anonymous"})");
    EXPECT_THAT(host.takeEvents(), IsEmpty());
  }
}

TEST(Wiring, StrangersComeAndGoWithoutEffect) {
  Host host;
  const Bundle product = startProduct(host);
  const auto header = host.context().GetServiceReference<NodeBuilder>();
  const auto before = serviceOf<NodeBuilder>(host, kHeader);
  Bundle strangers = host.start("strangers");
  strangers.Stop();
  EXPECT_TRUE(header);
  EXPECT_EQ(serviceOf<NodeBuilder>(host, kHeader), before);
  EXPECT_THAT(servicesOf(host, product), ElementsAreArray(productServices()));
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

TEST(Wiring, WhatWasBuiltOutlivesTheBundle) {
  const auto model = gx::zero::Model::create();
  document::gxzero::Node node;
  {
    Host host;
    startProduct(host);
    node = presentServiceOf<NodeBuilder>(host, kHeader)->build(model, json(kTask));
  }
  EXPECT_EQ(reference_host::exporting::toJson(node), builtTask(kEmptyInlineNode));
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

TEST(Wiring, ADocumentIsBuiltByThePublishedServices) {
  Host host;
  startProduct(host);
  const auto model = gx::zero::Model::create();
  const auto result = reference_host::importer::importDocument(
      productBuilders(host), model, json(R"({"className":"DocumentNode","children":[
        {"className":"ParagraphNode","children":[{"className":"TextNode","text":"Hello"}]},
        {"className":"LumoAppLineNode","anchorId":"t","children":[
          {"className":"TextNode","text":"dropped"},
          {"className":"LumoAppIntegratedInlineNode"},
          {"className":"LumoControlNode","context":{"type":"button"}}]},
        {"className":"CodeLineNode","children":[
          {"className":"LumoControlNode","controlId":"b","context":{"type":"button"}},
          {"className":"StateButtonControlNode","controlId":5},
          {"className":"LumoControlNode","context":{"type":"wheel"}},
          {"className":"SpinnerControlNode","startColumn":"1"},
          {"className":"LumoAppLineNode"}]}]})"));

  const std::string position = R"("position":{"class":"document::gxzero::LumoControlPosition"})";
  const std::string data = "lumocode::contentmodel::gxzero::";
  EXPECT_EQ(foundation::json::Value(contract::rootsOf(model)),
            json(R"([{"class":"document::gxzero::LumoAppLineNode","anchorId":"M_t","children":[)" +
                 kEmptyInlineNode + "]}," +  //
                 R"({"class":"document::gxzero::ButtonNode","id":"b",)" + position +
                 R"(,"buttonData":{"class":")" + data + R"(ButtonData"}},)" +
                 R"({"class":"document::gxzero::StateButtonNode",)" + position +
                 R"(,"stateButtonData":{"class":")" + data + R"(StateButtonData"}},)" +
                 R"({"class":"document::gxzero::SpinnerNode",)" + position + "}," +
                 R"({"class":"document::gxzero::LumoAppLineNode","anchorId":""}])"));
  std::vector<std::string> errors;
  for (const auto& error : result.errors) {
    errors.push_back(error.pointer + " " + error.builder + " " + stepName(error.step) + " " +
                     error.message);
  }
  EXPECT_THAT(errors, ::testing::ElementsAre("/children/2/children/3 " + kControls +
                                                 "SpinnerNodeBuilderImpl build "
                                                 "invalid conversion: string to double",
                                             "/children/2/children/4 " + kHeader +
                                                 " build invalid conversion: undefined to array"));
  EXPECT_THAT(result.nodes, SizeIs(3));
  EXPECT_EQ(result.summary.objects, 11U);
  EXPECT_EQ(result.summary.claimed, 5U);
  EXPECT_EQ(result.summary.built, 3U);
  EXPECT_EQ(result.summary.failed, 2U);
}

}  // namespace
}  // namespace bundle_test
