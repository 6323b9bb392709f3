#pragma once

/// @file
/// What was read of a JSON object, as places in it.

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/path.hpp"
#include "reference_host/json/read_watch.hpp"

namespace reference_host::diagnosis {

/// Takes down which members of an object a program asks for, also through copies of its parts and
/// where there is nothing.
///
/// A value is known by its address: the object's own, that of an answer, that of a copy, and that
/// of an element of a known array. Any other address is looked for in the object. An Undefined
/// value that is unknown stands for the last member that was not there.
class ReadTrace : public json::ReadObserver {
 public:
  /// @param object outlives the watch, not the trace.
  explicit ReadTrace(const foundation::json::Value& object);
  ReadTrace(ReadTrace&&) = default;
  ReadTrace(const ReadTrace&) = delete;

  void asked(const foundation::json::Value& holder, const std::string& key,
             const foundation::json::Value* answer) override;
  void copied(const foundation::json::Value& original,
              const foundation::json::Value& copy) override;

  /// How often a member was asked for.
  std::size_t readCount() const noexcept { return reads_.size(); }
  /// The member that a read asked for; the first is 0.
  Path placeOfRead(std::size_t read) const { return pathOf(reads_[read]); }

  /// Whether the member was asked for.
  bool wasAsked(const Path& path) const;
  /// Whether a member was asked of what stands at the path.
  bool wasHolder(const Path& path) const;
  /// All members that were asked for, each once, in the order in which they were first.
  std::vector<Path> askedPlaces() const;

 private:
  using Value = foundation::json::Value;
  using PlaceId = std::size_t;
  static constexpr PlaceId kRoot = 0;
  static constexpr PlaceId kUnknown = static_cast<PlaceId>(-1);

  struct Place {
    PlaceId parent;
    const std::string* name;  ///< in the parent's `members`; null for an element
    std::size_t index;        ///< of an element
    std::map<std::string, PlaceId> members{};
    std::map<std::size_t, PlaceId> elements{};
    bool asked = false;
    bool holder = false;
  };
  /// What lies at an address.
  struct Known {
    PlaceId place;
    std::size_t arraysBefore;  ///< so many of `elements_` were remembered before it
  };
  /// Where the elements of an array lie.
  struct Elements {
    const Value* begin;
    const Value* end;
    PlaceId array;
  };

  PlaceId member(PlaceId holder, const std::string& name);
  PlaceId element(PlaceId array, std::size_t index);
  PlaceId find(const Path& path) const;
  Path pathOf(PlaceId place) const;
  PlaceId placeOf(const Value& value);
  PlaceId lookInObject(const Value& value);
  void remember(const Value& value, PlaceId place);

  const Value* object_;
  std::deque<Place> places_;
  std::vector<PlaceId> reads_;
  std::unordered_map<const Value*, Known> addresses_;
  std::vector<Elements> elements_;  // the latest last
  PlaceId lastMissing_ = kUnknown;
  bool objectIsKnown_ = false;  // every address in it
};

}  // namespace reference_host::diagnosis
