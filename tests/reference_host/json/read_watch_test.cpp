#include "reference_host/json/read_watch.hpp"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/json.hpp"

namespace reference_host::json {

namespace {

using foundation::json::find_member;
using foundation::json::Undefined;
using foundation::json::Value;
using test_support::json;
using ::testing::ElementsAre;

class Recorder final : public ReadObserver {
 public:
  void asked(const Value& holder, const std::string& key, const Value* answer) override {
    const bool none = answer == nullptr || answer->get_if<Undefined>() != nullptr;
    events.push_back(std::string(holder.get_if<Value::Object>() != nullptr ? "object" : "text") +
                     ' ' + key + (none ? " missing" : ""));
  }
  void copied(const Value& original, const Value& copy) override {
    events.push_back(original == copy ? "copied" : "copied wrongly");
  }

  std::vector<std::string> events;
};

TEST(ReadWatchTest, EveryWayToAMemberAndEveryCopyIsTold) {
  Value object = json(R"({"a": 1})");
  const Value& constant = object;
  Value text("text");
  Recorder recorder;
  const ReadWatch watch(recorder);
  const auto told = [&recorder] { return std::exchange(recorder.events, {}); };
  find_member(object, "a");
  find_member(object, "b");
  EXPECT_THAT(told(), ElementsAre("object a", "object b missing"));
  constant["a"];
  constant[std::string("b")];
  constant.hasOwnProperty("a");
  object["a"];
  EXPECT_THAT(told(), ElementsAre("object a", "object b missing", "object a", "object a"));
  find_member(text, "a");
  EXPECT_THROW(text["b"], std::runtime_error);
  EXPECT_THAT(told(), ElementsAre("text a missing", "text b missing"));
  const Value constructed(object);
  EXPECT_THAT(told(), ElementsAre("copied"));
  text = object;
  EXPECT_EQ(told().back(), "copied");
}

TEST(ReadWatchTest, AWatchIsItsThreadsOwnAndEnds) {
  const Value object = json(R"({"a": 1})");
  Recorder recorder;
  {
    const ReadWatch watch(recorder);
    std::thread([&] { find_member(object, "a"); }).join();
  }
  find_member(object, "a");
  EXPECT_THAT(recorder.events, ElementsAre());
  EXPECT_EQ(ReadWatch::observer(), nullptr);
}

}  // namespace

}  // namespace reference_host::json
