#include "reference_host/diagnosis/read_trace.hpp"

#include <algorithm>
#include <functional>
#include <utility>

namespace reference_host::diagnosis {

using foundation::json::Undefined;

ReadTrace::ReadTrace(const Value& object) : object_(&object) {
  places_.push_back({kRoot, {}, {}});
  remember(object, kRoot);
}

void ReadTrace::asked(const Value& holder, const std::string& key, const Value* answer) {
  const PlaceId holderPlace = placeOf(holder);
  if (holderPlace == kUnknown) return;
  const PlaceId member = child(holderPlace, key);
  places_[holderPlace].holder = true;
  places_[member].asked = true;
  reads_.push_back(member);
  const bool missing = answer == nullptr || answer->get_if<Undefined>() != nullptr;
  if (missing) lastMissing_ = member;
  if (answer != nullptr) remember(*answer, member);
}

void ReadTrace::copied(const Value& original, const Value& copy) {
  const PlaceId place = placeOf(original);
  if (place != kUnknown) remember(copy, place);
}

bool ReadTrace::wasAsked(const Path& path) const {
  const PlaceId place = find(path);
  return place != kUnknown && places_[place].asked;
}

bool ReadTrace::wasHolder(const Path& path) const {
  const PlaceId place = find(path);
  return place != kUnknown && places_[place].holder;
}

std::vector<Path> ReadTrace::askedPlaces() const {
  std::vector<Path> paths;
  std::vector<bool> taken(places_.size());
  for (const PlaceId read : reads_) {
    if (!taken[read]) paths.push_back(pathOf(read));
    taken[read] = true;
  }
  return paths;
}

ReadTrace::PlaceId ReadTrace::child(PlaceId parent, const PathStep& step) {
  const auto [position, isNew] = places_[parent].children.emplace(step, places_.size());
  const PlaceId place = position->second;
  if (isNew) places_.push_back({parent, step, {}});
  return place;
}

ReadTrace::PlaceId ReadTrace::find(const Path& path) const {
  PlaceId place = kRoot;
  for (const PathStep& step : path) {
    const auto& children = places_[place].children;
    const auto next = children.find(step);
    if (next == children.end()) return kUnknown;
    place = next->second;
  }
  return place;
}

Path ReadTrace::pathOf(PlaceId place) const {
  Path path;
  for (; place != kRoot; place = places_[place].parent) path.push_back(places_[place].step);
  std::reverse(path.begin(), path.end());
  return path;
}

ReadTrace::PlaceId ReadTrace::placeOf(const Value& value) {
  // What was remembered last holds: memory is used again.
  const auto known = addresses_.find(&value);
  const std::size_t older = known == addresses_.end() ? 0 : known->second.arraysBefore;
  const std::less<> before;
  for (std::size_t index = elements_.size(); index-- > older;) {
    const Elements& array = elements_[index];
    if (before(&value, array.begin) || !before(&value, array.end)) continue;
    return child(array.array, static_cast<std::size_t>(&value - array.begin));
  }
  if (known != addresses_.end()) return known->second.place;
  if (value.get_if<Undefined>() != nullptr) return lastMissing_;
  return lookInObject(value);
}

/// For who gets at a value by going over an object's members or an array that was not asked for.
ReadTrace::PlaceId ReadTrace::lookInObject(const Value& value) {
  if (!std::exchange(objectIsKnown_, true)) {
    std::vector<std::pair<const Value*, PlaceId>> open{{object_, kRoot}};
    while (!open.empty()) {
      const auto [container, place] = open.back();
      open.pop_back();
      if (const auto* members = container->get_if<Value::Object>()) {
        for (const auto& [name, member] : *members) open.emplace_back(&member, child(place, name));
      } else if (const auto* elements = container->get_if<Value::Array>()) {
        for (std::size_t index = 0; index != elements->size(); ++index) {
          open.emplace_back(&(*elements)[index], child(place, index));
        }
      }
      addresses_.emplace(container, Known{place, elements_.size()});
    }
  }
  const auto known = addresses_.find(&value);
  return known == addresses_.end() ? kUnknown : known->second.place;
}

void ReadTrace::remember(const Value& value, PlaceId place) {
  addresses_[&value] = {place, elements_.size()};
  const auto* elements = value.get_if<Value::Array>();
  if (elements == nullptr || elements->empty()) return;
  elements_.push_back({elements->data(), elements->data() + elements->size(), place});
}

}  // namespace reference_host::diagnosis
