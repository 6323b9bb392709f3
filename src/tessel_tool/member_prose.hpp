#pragma once

/// @file
/// What members mean, for the schema's readers. It decides nothing: a member that is not here has a
/// description of what is learnt alone.

#include <string_view>

namespace tessel_tool {

struct MemberProse {
  std::string_view pattern;  ///< where the member is in its object, or how that place ends
  std::string_view text;
};

inline constexpr MemberProse kMemberProse[] = {
    {"/className", "What the object is."},
    {"/context/type", "Which kind of control it is."},
    {"/controlId", "The control's id."},
    {"/startColumn", "The column of the line where the control begins."},
    {"/endColumn", "The column of the line where the control ends."},
    {"/context", "Holds the control's type and its fields."},
    {"/context/data", "The control's own fields."},
    {"/context/data/executionModel", "What runs when the control's value changes."},
    {"/context/data/executionOn", "When the control's value counts as changed."},
    {"/context/data/text", "The label: what the control shows."},
    {"/context/data/minimum", "The least value."},
    {"/context/data/maximum", "The greatest value."},
    {"/context/data/step", "How far two neighbouring values are apart."},
    {"/context/data/defaultValue", "The value at the beginning."},
    {"/context/data/defaultValueLinkedVariable", "The variable that gives the default value."},
    {"/context/data/minLinkedVariable", "The variable that gives the least value."},
    {"/context/data/maxLinkedVariable", "The variable that gives the greatest value."},
    {"/context/data/stepLinkedVariable", "The variable that gives the step."},
    {"/context/data/linkedVariable", "The variable that gives the default value."},
    {"/context/data/items", "The choices, with labels and values."},
    {"/context/data/items/*/label", "What is shown for the choice."},
    {"/context/data/items/*/value", "What the choice stands for."},
    {"/context/data/itemLabels", "The labels of the choices."},
    {"/context/data/valueType", "The type of the value; a number with \"Double\", else a text."},
    {"/context/data/colorFormat", "How colours are written."},
    {"/context/data/displayFormat", "How dates are shown."},
    {"/context/data/browserType", "What is chosen, such as a file or a folder."},
    {"/anchorId", "The line's anchor; it gets the prefix \"M_\" if it has none."},
    {"/children", "What is in the line; the nodes of tasks are built."},
    {"/instanceId", "The task's id in its document."},
    {"/taskID", "Which task it is."},
    {"/collapsed", "Whether the task is shown collapsed, as a text."},
    {"/autorun", "Whether the task runs by itself, as a text."},
    {"/numOfCodeLines", "How many lines of code the task has."},
};

/// The prose for a place; of several that fit, the longest pattern's. Empty if there is none.
inline std::string_view proseFor(std::string_view pattern) {
  MemberProse best{};
  for (const MemberProse& prose : kMemberProse) {
    if (pattern.size() < prose.pattern.size()) continue;
    const std::string_view ending = pattern.substr(pattern.size() - prose.pattern.size());
    if (ending == prose.pattern && ending.size() > best.pattern.size()) best = prose;
  }
  return best.text;
}

}  // namespace tessel_tool
