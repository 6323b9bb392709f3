#pragma once

/// @file
/// Writing model elements, by reflection alone: as JSON for programs, as a tree for people.
///
/// Both forms show an element's class, then the properties that were set, in the class's order and
/// under their own names. A contained element is shown in place, also one of which nothing was set;
/// so is a sequence of elements that is not empty. Both work at any nesting depth.

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/export.hpp"
#include "gx/zero.hpp"
#include "reference_host/json/text_writer.hpp"

namespace reference_host::exporting {

/// What is shown of the elements of a class, with the names as JSON texts, in their quotes.
struct ShownClass {
  struct ShownProperty {
    const gx::zero::meta::Property* property;
    std::string name;
  };

  std::string qualifiedName;
  std::vector<ShownProperty> properties;
};

using ShownClasses = std::unordered_map<const gx::zero::meta::Class::Impl*, ShownClass>;

/// Called behind each element that was written, a contained one too: what the text holds by then
/// may be taken away.
using PartEnds = std::function<void()>;

/// Writes elements, and keeps the names of their classes for those to come. One thread at a time
/// uses it.
class TESSEL_HOST_API Exporter {
 public:
  /// Writes an element as a JSON object: the qualified class name under "class", then the
  /// properties. Numbers are in the shortest form that reads back the same, integers have all their
  /// digits. An empty handle is written as `null`.
  void writeJson(json::JsonWriter& writer, const gx::zero::ModelElement& element,
                 const PartEnds& partEnds = nullptr);

  /// Appends an element as an indented tree, a line a property, each line ending with a line feed:
  ///
  ///     ButtonNode
  ///       id: "run"
  ///       position: LumoControlPosition
  ///         startColumn: 4
  ///
  /// Class names go without their namespace, texts as `json::appendVisible` quotes them. An
  /// element of which nothing was set says so behind its class name, the elements of a sequence
  /// have their index in front. The indentation stops growing at `kDeepestIndent` levels.
  /// @param level how many levels the element itself is indented.
  /// @pre the element is not empty.
  void appendTree(std::string& out, const gx::zero::ModelElement& element, std::size_t level = 0,
                  const PartEnds& partEnds = nullptr);

 private:
  ShownClasses classes_;
};

/// An element as one line of JSON.
TESSEL_HOST_API std::string toJson(const gx::zero::ModelElement& element);

constexpr std::size_t kDeepestIndent = 50;

}  // namespace reference_host::exporting
