#include "reference_host/diagnosis/read_trace.hpp"

#include <algorithm>
#include <functional>
#include <utility>

namespace reference_host::diagnosis {

using foundation::json::Undefined;

ReadTrace::ReadTrace(const Value& object) : object_(&object) {
  places_.push_back({kRoot, nullptr, 0});
  remember(object, kRoot);
}

void ReadTrace::asked(const Value& holder, const std::string& key, const Value* answer) {
  const PlaceId holderPlace = placeOf(holder);
  if (holderPlace == kUnknown) return;
  const PlaceId place = member(holderPlace, key);
  places_[holderPlace].holder = true;
  places_[place].asked = true;
  reads_.push_back(place);
  const bool missing = answer == nullptr || answer->get_if<Undefined>() != nullptr;
  if (missing) lastMissing_ = place;
  if (answer != nullptr) remember(*answer, place);
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

ReadTrace::PlaceId ReadTrace::member(PlaceId holder, const std::string& name) {
  const auto [position, isNew] = places_[holder].members.try_emplace(name, places_.size());
  if (isNew) places_.push_back({holder, &position->first, 0});
  return position->second;
}

ReadTrace::PlaceId ReadTrace::element(PlaceId array, std::size_t index) {
  const auto [position, isNew] = places_[array].elements.try_emplace(index, places_.size());
  if (isNew) places_.push_back({array, nullptr, index});
  return position->second;
}

ReadTrace::PlaceId ReadTrace::find(const Path& path) const {
  PlaceId place = kRoot;
  const auto childAt = [](const auto& children, const auto& step) {
    const auto child = children.find(step);
    return child == children.end() ? kUnknown : child->second;
  };
  for (const PathStep& step : path) {
    const auto* name = std::get_if<std::string>(&step);
    place = name != nullptr ? childAt(places_[place].members, *name)
                            : childAt(places_[place].elements, *std::get_if<std::size_t>(&step));
    if (place == kUnknown) break;
  }
  return place;
}

Path ReadTrace::pathOf(PlaceId place) const {
  Path path;
  for (; place != kRoot; place = places_[place].parent) {
    const Place& step = places_[place];
    path.push_back(step.name != nullptr ? PathStep(*step.name) : PathStep(step.index));
  }
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
    return element(array.array, static_cast<std::size_t>(&value - array.begin));
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
        for (const auto& [name, child] : *members) open.emplace_back(&child, member(place, name));
      } else if (const auto* elements = container->get_if<Value::Array>()) {
        for (std::size_t index = 0; index != elements->size(); ++index) {
          open.emplace_back(&(*elements)[index], element(place, index));
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
