#pragma once

/// @file
/// What a control costs when nothing knows of it: three counted structs and their texts.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <cstdint>
#include <string>

#include "plain_controls.hpp"

namespace benchmarks {

template <typename Struct>
using Counted = boost::intrusive_ref_counter<Struct, boost::thread_unsafe_counter>;

struct BarePosition : Counted<BarePosition> {
  std::uint64_t startColumn = 0;
  std::uint64_t endColumn = 0;
};

struct BareButtonData : Counted<BareButtonData> {
  std::u16string label;
  std::u16string code;
  std::u16string executionModel;
};

struct BareButton : Counted<BareButton> {
  std::u16string id;
  boost::intrusive_ptr<BarePosition> position;
  boost::intrusive_ptr<BareButtonData> data;
};

/// A button as three bare structs, with the host's conversion of the texts.
boost::intrusive_ptr<BareButton> createBareButton(const Button<std::string>& button);

}  // namespace benchmarks
