#pragma once

/// @file
/// What a builder reads of one kind of object.

#include <map>
#include <string>
#include <vector>

#include "foundation/export.hpp"
#include "foundation/json.hpp"
#include "reference_host/diagnosis/recognition.hpp"
#include "reference_host/importer/importer.hpp"

namespace reference_host::diagnosis {

/// What is known of one place of a kind.
struct PlaceKnowledge {
  std::string wanted;           ///< the name of the type that is wanted there; empty if unknown
  bool forRecognition = false;  ///< the builder recognises its objects by it
};

/// What a builder reads of the objects that it recognises by the same words.
struct TESSEL_HOST_API Kind {
  std::map<std::string, PlaceKnowledge> places;  ///< by their patterns (`patternOf`)
  foundation::json::Value sample;  ///< one that is built, with everything in it that is read

  bool reads(const std::string& pattern) const { return places.count(pattern) != 0; }
  bool readsBelow(const std::string& pattern) const;
  /// The members that are read of what stands at a place, in the order of their names.
  std::vector<std::string> membersOf(const std::string& pattern) const;
  /// The objects of a kind in which it reads a member of this name.
  std::vector<std::string> holdersOf(const std::string& name) const;
};

/// Learns a kind from an object that the builder claims.
/// @param recognitions those of all builders, for arrays whose elements one of them has to
/// recognise.
Kind learnKind(const importer::NamedBuilder& builder, foundation::json::Value sample,
               const std::vector<Recognition>& recognitions);

}  // namespace reference_host::diagnosis
