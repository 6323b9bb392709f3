#pragma once

/// @file
/// The contract of the thirteen builders as a table, written down apart from the builders.

#include <string>
#include <vector>

namespace fuzz {

/// Which values a builder claims, by its word.
enum class Rule {
  kClassName,            ///< objects with the word as class name
  kHostClassName,        ///< the same, in the host's judgement
  kTypeWord,             ///< generic controls with the word as type
  kTypeWordOrClassName,  ///< both
};

/// How a build gets at its keys.
enum class Shape {
  kAlways,   ///< a control: its fields are read in any case
  kGuarded,  ///< a control: its fields are read if "context" and "data" are there
  kTask,     ///< a flat object whose keys feed one record that is a value
  kHeader,   ///< an object with children
};

/// What a key has to hold.
enum class Type {
  kText,
  kNumber,
  kFlag,
  kItems,       ///< a combo box's choices
  kItemLabels,  ///< a combo box's labels
  kDefault,     ///< an edit field's default value, with its linked variable
  kLineCount,   ///< a number that is stored in 16 bits
};

/// A key under "data" (of a task: of the object itself), and what becomes of it.
struct Field {
  std::string key;
  Type type;
  std::string property;
  std::string found;      ///< the record before it is read; empty if there is none
  std::string set;        ///< the record after it is set; empty if there is none
  bool required = false;  ///< read without a test
};

struct Kind {
  std::string builder;
  Rule rule;
  std::string word;
  std::string asked;  ///< the record of a recognition
  std::string start;  ///< the record at the start of a build
  std::string node;   ///< classes and slots without their namespaces
  std::string slot;
  std::string record;
  Shape shape;
  std::vector<Field> fields;  ///< the kind's own ones, in reading order
};

/// In the manifest's order.
const std::vector<Kind>& kinds();

extern const char* const kGenericControl;

/// The qualified name of a class of nodes, and of one of records.
std::string nodeClass(const std::string& name);
std::string recordClass(const std::string& name);

}  // namespace fuzz
