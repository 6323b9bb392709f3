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
  static constexpr std::string_view kSpace = " \t\n\r";
  static constexpr std::string_view kScalarEnd = ",]} \t\n\r";

  void skipSpace() { offset_ = std::min(utf8_.find_first_not_of(kSpace, offset_), utf8_.size()); }

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
      offset_ = std::min(utf8_.find_first_of(kScalarEnd, offset_), utf8_.size());
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
    ++offset_;
    while (offset_ < utf8_.size() && utf8_[offset_] != '"') {
      offset_ += utf8_[offset_] == '\\' ? 2 : 1;
    }
    offset_ = std::min(offset_ + 1, utf8_.size());
  }

  std::string_view utf8_;
  PlaceCounter places_;
  Visitor& visitor_;
  std::size_t offset_ = 0;
  std::vector<bool> isArray_;  // of the containers that are open
};

/// Whether a pointer comes before another one in an order in which those with the same first tokens
/// stand together.
bool isBefore(std::string_view left, std::string_view right) {
  const auto rank = [](char character) {
    return character == '/' ? 0 : static_cast<unsigned char>(character) + 1;
  };
  // Most pointers of a document begin alike: eight characters at a time.
  const std::size_t shorter = std::min(left.size(), right.size());
  constexpr std::size_t kBlock = 8;
  std::size_t same = 0;
  while (same + kBlock <= shorter &&
         std::memcmp(left.data() + same, right.data() + same, kBlock) == 0) {
    same += kBlock;
  }
  while (same < shorter && left[same] == right[same]) ++same;
  if (same == shorter) return left.size() < right.size();
  return rank(left[same]) < rank(right[same]);
}

/// Notes the places of the requested values.
class ValueFinder {
 public:
  /// @param sorted pointers whose texts outlive this, in any order.
  explicit ValueFinder(std::vector<std::string_view> sorted) {
    std::sort(sorted.begin(), sorted.end(), isBefore);
    nodes_.emplace_back();
    std::deque<Pointers> open{
        {sorted.begin(), sorted.end(), 0}};  // of the nodes without children yet
    for (std::size_t node = 0; !open.empty(); ++node) {
      nodes_[node].children = nodes_.size();
      addChildren(open.front(), open);
      nodes_[node].childrenEnd = nodes_.size();
      open.pop_front();
    }
  }

  ValuePlace placeOf(std::string_view pointer) const {
    const std::vector<std::string_view> tokens = tokensOf(pointer);
    std::size_t node = kRoot;
    std::size_t found = 0;
    for (; found != tokens.size(); ++found) {
      const std::size_t child = childOf(node, tokens[found]);
      if (!nodes_[child].isThere) break;
      node = child;
    }
    return {nodes_[node].value, nodes_[node].key, tokens.size() - found};
  }

  void beginContainer() { elements_.push_back(0); }
  void endContainer() { elements_.pop_back(); }

  template <typename Range>
  void key(std::string_view quoted, const Range& range) {
    next_ = kNone;
    if (open_.back() == kNone) return;
    std::string token;
    appendToken(token, nameIn(quoted));
    next_ = childOf(open_.back(), std::string_view(token).substr(1));
    if (next_ != kNone) nodes_[next_].key = range();
  }
  void element() {
    const std::size_t index = elements_.back()++;
    next_ = open_.back() == kNone ? kNone : childOf(open_.back(), std::to_string(index));
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
    std::size_t children = 0;  // where they are in `nodes_`, by their tokens
    std::size_t childrenEnd = 0;
    bool isThere = false;
    TextRange value;
    std::optional<TextRange> key;
  };

  /// Pointers that go through one value, and how many of their characters lead to it.
  struct Pointers {
    std::vector<std::string_view>::const_iterator begin;
    std::vector<std::string_view>::const_iterator end;
    std::size_t length;
  };

  static constexpr std::size_t kRoot = 0;
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  void addChildren(Pointers pointers, std::deque<Pointers>& open) {
    auto pointer = pointers.begin;
    while (pointer != pointers.end && pointer->size() == pointers.length) ++pointer;
    while (pointer != pointers.end) {
      const std::size_t tokenBegin = pointers.length + 1;
      const std::string_view token =
          pointer->substr(tokenBegin, pointer->find('/', tokenBegin) - tokenBegin);
      const std::size_t length = tokenBegin + token.size();
      const auto first = pointer;
      while (pointer != pointers.end && pointer->substr(0, length) == first->substr(0, length) &&
             (pointer->size() == length || (*pointer)[length] == '/')) {
        ++pointer;
      }
      nodes_.emplace_back().token = token;
      open.push_back({first, pointer, length});
    }
  }

  std::size_t childOf(std::size_t node, std::string_view token) const {
    const auto begin = nodes_.begin() + static_cast<std::ptrdiff_t>(nodes_[node].children);
    const auto end = nodes_.begin() + static_cast<std::ptrdiff_t>(nodes_[node].childrenEnd);
    const auto child = std::lower_bound(
        begin, end, token,
        [](const Node& candidate, std::string_view wanted) { return candidate.token < wanted; });
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
  for (const std::string_view pointer : pointers) places.push_back(finder.placeOf(pointer));
  return places;
}

std::vector<DuplicateMember> findDuplicates(std::string_view utf8) {
  DuplicateFinder finder;
  TextWalk(utf8, finder).run();
  return finder.take();
}

}  // namespace reference_host::json
