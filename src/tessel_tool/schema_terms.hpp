#pragma once

/// @file
/// What schemas are put together from.

#include <string>
#include <string_view>
#include <vector>

#include "foundation/json.hpp"
#include "reference_host/diagnosis/rules.hpp"

namespace tessel_tool {

/// The way to a place in a value: names of members, and stars for elements.
using Steps = std::vector<std::string>;
Steps stepsOf(std::string_view pattern);

/// The states of a member that is not there, and of any text that is not told from others.
extern const reference_host::diagnosis::State kAbsent;
extern const reference_host::diagnosis::State kAnyText;

/// A member of an object, which is made where there is none.
foundation::json::Value& at(foundation::json::Value& holder, const std::string& name);
/// Appends an element to a member of an object, once.
void append(foundation::json::Value& holder, const std::string& name,
            foundation::json::Value element);

/// The schema of values that meet all of several.
foundation::json::Value allOf(foundation::json::Value::Array schemas);
/// The schema of values that do not meet one.
foundation::json::Value negated(foundation::json::Value schema);
/// The schema of values that meet one of the definitions.
foundation::json::Value reference(const std::string& definition);

/// The schema of objects in which something that meets a schema stands at the end of the steps.
foundation::json::Value having(const Steps& steps, foundation::json::Value schema);

/// The schema of objects in which a place is in one of the states.
/// @param every all states of the place.
foundation::json::Value wherePlaceIs(const Steps& steps,
                                     const reference_host::diagnosis::States& states,
                                     const reference_host::diagnosis::States& every);

/// The schema of what stands at the end of the steps, as part of another one.
foundation::json::Value& inside(foundation::json::Value& schema, const Steps& steps);

/// Lets a place hold the states alone.
void restrict(foundation::json::Value& schema, const Steps& steps,
              const reference_host::diagnosis::States& states,
              const reference_host::diagnosis::States& every);

}  // namespace tessel_tool
