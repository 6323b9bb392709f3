#pragma once

/// @file
/// A kind of control described as data, and what follows from a description: control objects of the
/// kind, and what a build of each of them has to leave behind.

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "foundation/json.hpp"
#include "support/build_outcome.hpp"
#include "support/records.hpp"
#include "tessel/build/json/builders.hpp"

namespace test_support {

/// Which values a builder claims.
enum class Recognition {
  kClassName,            ///< objects with the word as class name
  kTypeWord,             ///< generic controls with the word as type
  kTypeWordOrClassName,  ///< both
  kHostClassName,        ///< objects with the word as class name, in the host's judgement
};

/// What a field holds. A column is a number that is stored as an integer.
enum class FieldType { kText, kNumber, kColumn, kFlag, kList };

/// A JSON key and what becomes of it.
struct Field {
  enum class Place { kControl, kData };
  enum class Holder { kNode, kPosition, kRecord, kElement };
  enum class Presence {
    kOptional,          ///< passed over when missing
    kRequired,          ///< read without a test
    kReadWithPrevious,  ///< read without a test if the field before it is there, else never
  };

  std::string key;
  FieldType type;
  foundation::json::Value sample;
  std::string property;  ///< in the holder
  std::string exported;  ///< the property as JSON, for the sample
  Records before;        ///< once the key is found
  Records after;         ///< once the property is set
  Presence presence = Presence::kOptional;
  Holder holder = Holder::kRecord;
  Place place = Place::kData;
  bool ignoresOtherTypes = false;
};

/// An element that a build makes by itself and then hands to a slot of the record.
struct AttachedElement {
  std::string slot;
  std::string className;
  std::vector<std::string> properties;  ///< in exported order
};

/// A kind of control.
struct ControlKind {
  std::string name;
  std::shared_ptr<const tessel::build::json::code::CodeElementBuilder> builder;
  Recognition recognition;
  std::string word;  ///< the class name, or the type word of a generic control
  std::string recognitionText;
  std::string startText;
  std::string nodeClass;  ///< without its namespace, as the other classes
  std::string slot;       ///< the node's property that holds the record
  std::string recordClass;
  bool guarded;                               ///< "context" and "data" may be missing
  std::vector<Field> ownFields;               ///< in reading order
  std::vector<std::string> recordProperties;  ///< the kind's own ones, in exported order
  std::vector<std::string> laterElements;  ///< classes of what the samples create after the record
  AttachedElement element = {};

  friend std::ostream& operator<<(std::ostream& stream, const ControlKind& kind) {
    return stream << kind.name;
  }
};

std::string nodeClassName(const std::string& name);
std::string recordClassName(const std::string& name);

/// The fields of every kind, in reading order: these, then the kind's own.
std::vector<Field> fieldsOf(const ControlKind& kind);

/// An alternative of a JSON value, with the name that conversion errors give it.
struct Alternative {
  std::string name;
  foundation::json::Value value;
};

/// All ten, with content as alike as they allow: a lenient conversion would find something to read.
const std::vector<Alternative>& alternatives();
std::vector<Alternative> alternativesExcept(const std::string& name);

/// The name of the alternative that a field of the type has to hold.
std::string alternativeNameOf(FieldType type);

/// A control object put together field by field. It starts with "context" and "data", both without
/// a field.
class ControlCase {
 public:
  explicit ControlCase(const ControlKind& kind);

  /// Puts in every field's sample, or one's. A field is named by its index in `fieldsOf`.
  ControlCase& giveAll();
  ControlCase& give(std::size_t field);
  ControlCase& give(std::size_t field, foundation::json::Value value, std::string exported);
  ControlCase& giveOther(std::size_t field, const Alternative& other);
  ControlCase& remove(std::size_t field);
  /// The same for a field of the kind's own, named by its key.
  ControlCase& giveOther(const std::string& key, const Alternative& other);
  ControlCase& remove(const std::string& key);

  ControlCase& replaceContext(foundation::json::Value other);  ///< no object
  ControlCase& replaceData(foundation::json::Value other);     ///< no object
  ControlCase& removeContext();
  ControlCase& removeData();
  /// Puts in members that no builder knows.
  ControlCase& addToControl(const std::string& key, foundation::json::Value value);
  ControlCase& addToContext(const std::string& key, foundation::json::Value value);
  ControlCase& addToData(const std::string& key, foundation::json::Value value);

  foundation::json::Value json() const;
  /// What its build has to leave behind.
  Outcome expected() const;

 private:
  struct Given {
    foundation::json::Value value;
    std::string typeName;
    std::string exported;  // empty when nothing is stored
    bool fits;
  };
  struct Leftover;
  enum class State { kObject, kReplaced, kAbsent };

  std::size_t ownField(const std::string& key) const;
  std::optional<Given> given(std::size_t field) const;
  bool reachesRecordFields(Records& records) const;
  bool readField(std::size_t field, Leftover& leftover) const;
  std::string nameOfReplacement() const;  // as alternatives() calls it; "undefined" for none
  bool readFields(std::size_t begin, std::size_t end, Leftover& leftover) const;

  ControlKind kind_;
  std::vector<Field> fields_;
  std::vector<std::optional<Given>> given_;
  foundation::json::Value::Object control_;  // without "context"
  foundation::json::Value::Object context_;  // without "data"
  foundation::json::Value::Object data_;     // without the fields
  State contextState_ = State::kObject;
  State dataState_ = State::kObject;
  foundation::json::Value replacement_;
};

/// What a build has to leave behind, in words of its own. Neither id nor column is given.
/// @param record the record's properties as exported, after its class.
/// @param records after the dump of the value.
/// @param strays exported elements that stay roots beside the node.
Outcome outcomeOf(const ControlKind& kind, const foundation::json::Value& json,
                  const std::string& record, const std::string& error, const Records& records,
                  const std::string& strays = "");

/// A control whose "data" is given, and what its build has to leave behind.
struct DataRow {
  const char* description;
  std::string data;         ///< JSON text
  std::string record;       ///< the record's properties as exported, after its class
  std::string error;        ///< empty when the build succeeds
  Records records;          ///< after those for "context" and "data"
  std::string strays = "";  ///< exported elements that stay roots beside the node
};

/// A control object of the kind with the "data", given as JSON text.
foundation::json::Value controlWith(const ControlKind& kind, const std::string& data);

void expectRows(const ControlKind& kind, const std::vector<DataRow>& rows);

}  // namespace test_support
