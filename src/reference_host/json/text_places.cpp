#include "reference_host/json/text_places.hpp"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <tuple>
#include <utility>

#include "reference_host/json/parse.hpp"
#include "reference_host/json/pointer.hpp"

namespace reference_host::json {

namespace {

/// Counts lines and columns from one offset to the next, which must not be smaller.
class PlaceCounter {
 public:
  explicit PlaceCounter(std::string_view utf8) noexcept : utf8_(utf8) {}

  TextPlace moveTo(std::size_t offset) noexcept {
    std::string_view passed = utf8_.substr(offset_, offset - offset_);
    offset_ = offset;
    for (std::size_t end; (end = passed.find('\n')) != std::string_view::npos;) {
      passed.remove_prefix(end + 1);
      ++place_.line;
      place_.column = 1;
    }
    for (const char character : passed) {
      if ((static_cast<unsigned char>(character) & 0xC0U) != 0x80U) ++place_.column;
    }
    return place_;
  }

 private:
  std::string_view utf8_;
  std::size_t offset_ = 0;
  TextPlace place_;
};

/// A member's name. @param quoted as it stands in a text.
std::string nameIn(std::string_view quoted) {
  if (quoted.find('\\') == std::string_view::npos) {
    return std::string(quoted.substr(1, quoted.size() - 2));
  }
  return std::move(*parse(quoted).get_if<std::string>());
}

/// Reads a text that `parse` accepts, and calls a visitor:
///   beginValue(place), endValue(place)   around every value
///   beginContainer(), endContainer()     around what is in an array or object
///   key(quoted, range)                   before a member's value, with its name as it stands there
///   element()                            before an element's value
/// Places and ranges are functions: they are counted only for who calls them, within the visit.
template <typename Visitor>
class TextWalk {
 public:
  TextWalk(std::string_view utf8, Visitor& visitor)
      : utf8_(utf8), places_(utf8), visitor_(visitor) {}

  void run() {
    do {
      skipSpace();
      visitor_.beginValue([this] { return places_.moveTo(offset_); });
    } while (!passScalarOrOpening() || passValueEnd());
  }

 private:
  static bool isSpace(char character) {
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
  }
  static bool endsScalar(char character) {
    return character == ',' || character == ']' || character == '}' || isSpace(character);
  }

  void skipSpace() {
    constexpr std::string_view kIndentation = "        ";
    const auto isIndented = [&] {
      return offset_ + kIndentation.size() <= utf8_.size() &&
             std::memcmp(utf8_.data() + offset_, kIndentation.data(), kIndentation.size()) == 0;
    };
    while (offset_ < utf8_.size() && isSpace(utf8_[offset_])) {
      ++offset_;
      while (isIndented()) offset_ += kIndentation.size();
    }
  }

  bool nextIs(char character) const {
    return offset_ < utf8_.size() && utf8_[offset_] == character;
  }

  /// @return whether the value is complete.
  bool passScalarOrOpening() {
    if (nextIs('"')) {
      passString();
    } else if (nextIs('[') || nextIs('{')) {
      const bool isArray = nextIs('[');
      ++offset_;
      visitor_.beginContainer();
      isArray_.push_back(isArray);
      skipSpace();
      if (!nextIs(isArray ? ']' : '}')) {
        beginChild();
        return false;
      }
      closeContainer();
    } else {
      while (offset_ < utf8_.size() && !endsScalar(utf8_[offset_])) ++offset_;
    }
    return true;
  }

  /// @return whether another value follows.
  bool passValueEnd() {
    for (;;) {
      visitor_.endValue([this] { return places_.moveTo(offset_); });
      if (isArray_.empty()) return false;
      skipSpace();
      if (nextIs(',')) {
        ++offset_;
        skipSpace();
        beginChild();
        return true;
      }
      closeContainer();
    }
  }

  void beginChild() {
    if (isArray_.back()) {
      visitor_.element();
      return;
    }
    const std::size_t begin = offset_;
    passString();
    visitor_.key(utf8_.substr(begin, offset_ - begin), [&] {
      const TextPlace first = places_.moveTo(begin);
      return TextRange{first, places_.moveTo(offset_)};
    });
    skipSpace();
    ++offset_;
  }

  void closeContainer() {
    ++offset_;
    isArray_.pop_back();
    visitor_.endContainer();
  }

  void passString() {
    std::size_t end = offset_ + 1;
    while (end < utf8_.size() && utf8_[end] != '"') end += utf8_[end] == '\\' ? 2 : 1;
    offset_ = std::min(end + 1, utf8_.size());
  }

  std::string_view utf8_;
  PlaceCounter places_;
  Visitor& visitor_;
  std::size_t offset_ = 0;
  std::vector<bool> isArray_;  // of the containers that are open
};

/// Shorter tokens come first: the elements of an array stand in their order.
bool isTokenBefore(std::string_view left, std::string_view right) {
  return left.size() != right.size() ? left.size() < right.size() : left < right;
}

/// Whether a pointer comes before another one, by the first token in which they differ.
bool isBefore(std::string_view left, std::string_view right) {
  // Most pointers of a document begin alike: eight characters at a time.
  const std::size_t shorter = std::min(left.size(), right.size());
  constexpr std::size_t kBlock = 8;
  std::size_t same = 0;
  while (same + kBlock <= shorter &&
         std::memcmp(left.data() + same, right.data() + same, kBlock) == 0) {
    same += kBlock;
  }
  while (same < shorter && left[same] == right[same]) ++same;
  const std::string_view leftToken = left.substr(same, left.find('/', same) - same);
  const std::string_view rightToken = right.substr(same, right.find('/', same) - same);
  if (leftToken.empty() && rightToken.empty()) return left.size() < right.size();
  return isTokenBefore(leftToken, rightToken);
}

/// Notes the places of the requested values.
class ValueFinder {
 public:
  /// @param pointers whose texts outlive this, in any order.
  explicit ValueFinder(const std::vector<std::string_view>& pointers)
      : pointers_(pointers), nodeOf_(pointers.size()) {
    std::vector<std::size_t> sorted(pointers.size());
    for (std::size_t index = 0; index != sorted.size(); ++index) sorted[index] = index;
    const auto order = [&](std::size_t left, std::size_t right) {
      return isBefore(pointers[left], pointers[right]);
    };
    // A walk over a document meets them in this order.
    if (!std::is_sorted(sorted.begin(), sorted.end(), order)) {
      std::sort(sorted.begin(), sorted.end(), order);
    }
    nodes_.emplace_back();
    std::deque<Pointers> open{
        {sorted.begin(), sorted.end(), 0}};  // of the nodes without children yet
    for (std::size_t node = 0; !open.empty(); ++node) {
      nodes_[node].children = nodes_.size();
      addChildren(node, open.front(), open);
      nodes_[node].childrenEnd = nodes_.size();
      open.pop_front();
    }
  }

  /// @param index of the pointer.
  ValuePlace placeOf(std::size_t index) const {
    std::size_t node = nodeOf_[index];
    std::size_t missing = 0;
    for (; node != kRoot && !nodes_[node].isThere; node = nodes_[node].parent) ++missing;
    return {nodes_[node].value, nodes_[node].key, missing};
  }

  void beginContainer() { elements_.push_back(0); }
  void endContainer() { elements_.pop_back(); }

  template <typename Range>
  void key(std::string_view quoted, const Range& range) {
    next_ = kNone;
    if (!isAroundOne()) return;
    std::string token;
    appendToken(token, nameIn(quoted));
    next_ = childOf(open_.back(), std::string_view(token).substr(1));
    if (next_ != kNone) nodes_[next_].key = range();
  }
  void element() {
    const std::size_t index = elements_.back()++;
    next_ = isAroundOne() ? childOf(open_.back(), std::to_string(index)) : kNone;
  }

  template <typename Place>
  void beginValue(const Place& place) {
    if (next_ != kNone) {
      Node& node = nodes_[next_];
      if (node.isThere) forgetBelow(node);
      node.isThere = true;
      node.value.begin = place();
    }
    open_.push_back(next_);
  }
  template <typename Place>
  void endValue(const Place& place) {
    if (open_.back() != kNone) nodes_[open_.back()].value.end = place();
    open_.pop_back();
  }

 private:
  /// A value that is asked for, or that is around one. As many as there are errors in a document:
  /// they are kept small.
  struct Node {
    std::string_view token;
    std::size_t parent = 0;
    std::size_t children = 0;  // where they are in `nodes_`, by their tokens
    std::size_t childrenEnd = 0;
    bool isThere = false;
    TextRange value;
    std::optional<TextRange> key;
  };

  /// Pointers that go through one value, and how many of their characters lead to it.
  struct Pointers {
    std::vector<std::size_t>::const_iterator begin;
    std::vector<std::size_t>::const_iterator end;
    std::size_t length;
  };

  static constexpr std::size_t kRoot = 0;
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  void addChildren(std::size_t node, const Pointers& pointers, std::deque<Pointers>& open) {
    const auto rest = [&](std::size_t index) { return pointers_[index].substr(pointers.length); };
    auto next = pointers.begin;
    for (; next != pointers.end && rest(*next).empty(); ++next) nodeOf_[*next] = node;
    while (next != pointers.end) {
      const std::string_view first = rest(*next);
      const std::string_view step = first.substr(0, first.find('/', 1));
      const auto isThrough = [&](std::string_view other) {
        return other.substr(0, step.size()) == step &&
               (other.size() == step.size() || other[step.size()] == '/');
      };
      const auto begin = next;
      while (next != pointers.end && isThrough(rest(*next))) ++next;
      Node& child = nodes_.emplace_back();
      child.token = step.substr(1);
      child.parent = node;
      open.push_back({begin, next, pointers.length + step.size()});
    }
  }

  /// Whether the innermost value is around one that is asked for.
  bool isAroundOne() const {
    const std::size_t node = open_.back();
    return node != kNone && nodes_[node].children != nodes_[node].childrenEnd;
  }

  std::size_t childOf(std::size_t node, std::string_view token) const {
    const auto begin = nodes_.begin() + static_cast<std::ptrdiff_t>(nodes_[node].children);
    const auto end = nodes_.begin() + static_cast<std::ptrdiff_t>(nodes_[node].childrenEnd);
    const auto child =
        std::lower_bound(begin, end, token, [](const Node& candidate, std::string_view wanted) {
          return isTokenBefore(candidate.token, wanted);
        });
    if (child == end || child->token != token) return kNone;
    return static_cast<std::size_t>(child - nodes_.begin());
  }

  /// The value comes a second time: what was in the first one counts no longer.
  void forgetBelow(const Node& node) {
    for (std::size_t child = node.children; child != node.childrenEnd; ++child) {
      // A missing value contains no value either.
      if (std::exchange(nodes_[child].isThere, false)) forgetBelow(nodes_[child]);
    }
  }

  const std::vector<std::string_view>& pointers_;
  std::vector<std::size_t> nodeOf_;    // of each pointer
  std::deque<Node> nodes_;             // the first is the outermost value
  std::size_t next_ = kRoot;           // the node of the value to come
  std::vector<std::size_t> open_;      // the nodes of the values around it
  std::vector<std::size_t> elements_;  // of the containers that are open: how many so far
};

/// Notes the members that a later one replaces.
class DuplicateFinder {
 public:
  std::vector<DuplicateMember> take() {
    std::sort(found_.begin(), found_.end(), [](const auto& left, const auto& right) {
      const auto order = [](const TextPlace& place) { return std::tie(place.line, place.column); };
      return order(left.key.begin) < order(right.key.begin);
    });
    return std::move(found_);
  }

  void beginContainer() { open_.emplace_back(); }
  void endContainer() { open_.pop_back(); }

  template <typename Range>
  void key(std::string_view quoted, const Range& rangeOf) {
    Container& object = open_.back();
    object.token = nameIn(quoted);
    const TextRange range = rangeOf();
    const auto [member, isNew] = object.keys.try_emplace(object.token, range);
    if (isNew) return;
    found_.push_back({object.token, pointer(), std::exchange(member->second, range), range});
  }
  void element() { open_.back().token = std::to_string(open_.back().elements++); }

  template <typename Place>
  void beginValue(const Place&) {}
  template <typename Place>
  void endValue(const Place&) {}

 private:
  struct Container {
    std::map<std::string, TextRange> keys;  // so far, the last of each name
    std::size_t elements = 0;
    std::string token;  // of the value that comes next, or is being read
  };

  std::string pointer() const {
    std::string pointer;
    for (const Container& container : open_) appendToken(pointer, container.token);
    return pointer;
  }

  std::vector<Container> open_;
  std::vector<DuplicateMember> found_;
};

}  // namespace

TextPlace placeAt(std::string_view utf8, std::size_t offset) {
  return PlaceCounter(utf8).moveTo(offset);
}

std::vector<ValuePlace> findValues(std::string_view utf8,
                                   const std::vector<std::string_view>& pointers) {
  ValueFinder finder(pointers);
  TextWalk(utf8, finder).run();
  std::vector<ValuePlace> places;
  places.reserve(pointers.size());
  for (std::size_t index = 0; index != pointers.size(); ++index) {
    places.push_back(finder.placeOf(index));
  }
  return places;
}

std::vector<DuplicateMember> findDuplicates(std::string_view utf8) {
  DuplicateFinder finder;
  TextWalk(utf8, finder).run();
  return finder.take();
}

}  // namespace reference_host::json
