#pragma once

/// @file
/// What each kind of object must become, as data: the one list of the kinds. It is written down
/// apart from the builders and never includes them.

#include <string>
#include <vector>

namespace contract {

/// Which values a builder claims, by its word.
enum class Rule {
  kClassName,            ///< objects with the word as class name
  kHostClassName,        ///< the same, in the host's judgement
  kTypeWord,             ///< generic controls with the word as type
  kTypeWordOrClassName,  ///< both
};

/// How a build gets at its fields.
enum class Shape {
  kGuarded,    ///< a control whose data is read if "context" and "data" are there
  kUnguarded,  ///< a control whose data is read in any case
  kTask,       ///< a flat object whose keys feed one struct
  kHeader,     ///< a line with children
};

/// What a key has to hold, and how it is stored.
enum class Type {
  kText,
  kTextOrNothing,  ///< a text; a value of another type is passed over
  kAnchor,         ///< the host's anchor: a text that gets a prefix; empty for another type
  kNumber,
  kColumn,     ///< a number that is stored in 64 bits
  kLineCount,  ///< a number that is stored in 16 bits
  kFlag,
  kValueType,      ///< a text that says what a default value in an element of its own is
  kDefault,        ///< the default value that is put into an element of its own
  kDefaultLinked,  ///< the linked variable in that element: read with it, never alone
  kItems,          ///< a combo box's choices
  kItemLabels,     ///< a combo box's labels
  kChildren,       ///< what a header offers to the task's builder
};

/// How a field looks in documents. What is made up for measuring goes by it.
struct Usage {
  unsigned percent = 100;                ///< of the objects have it
  std::vector<std::string> values = {};  ///< JSON text, one of them; empty for words or numbers
  std::size_t words = 1;                 ///< of a text without values
};

/// A field: a JSON key, and what has to become of it.
struct FieldSpec {
  enum class Place { kData, kObject };            ///< in "context"."data", on the object itself
  enum class Holder { kData, kPosition, kNode };  ///< of the property

  std::string key;
  Type type;
  std::string property;
  std::string found;  ///< the log record before it is read; empty for none
  std::string set;    ///< the log record after it is set; empty for none
  Place place = Place::kData;
  Holder holder = Holder::kData;
  bool required = false;  ///< read without a test
  Usage usage = {};
};

struct Kind {
  std::string name;     ///< in tables
  std::string builder;  ///< the class, without its namespace as the other classes
  Rule rule;
  std::string word;   ///< the type of a generic control, else the class name
  std::string asked;  ///< the log record of a recognition
  std::string start;  ///< the log record at the start of a build
  std::string node;
  std::string slot;  ///< the node's property that holds the data object
  std::string dataClass;
  Shape shape;
  std::vector<FieldSpec> fields;  ///< in reading order, those of every control included
};

/// All kinds, in the manifest's order.
const std::vector<Kind>& kinds();

/// @throws std::invalid_argument when the builder has none.
const Kind& kindOf(const std::string& builder);

/// The kind that a header's children are.
const Kind& taskKind();

inline bool isControl(const Kind& kind) {
  return kind.shape == Shape::kGuarded || kind.shape == Shape::kUnguarded;
}

extern const char* const kGenericControl;

/// Whether objects of the kind may be generic controls.
inline bool isGeneric(const Kind& kind) {
  return kind.rule == Rule::kTypeWord || kind.rule == Rule::kTypeWordOrClassName;
}

/// The qualified name of a class of nodes, and one of data objects.
std::string nodeClass(const std::string& name);
std::string qualifiedDataClass(const std::string& name);

}  // namespace contract
