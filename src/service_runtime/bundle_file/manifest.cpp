#include "bundle_file/manifest.hpp"

#include <algorithm>
#include <initializer_list>
#include <stdexcept>

#include "bundle_file/manifest_json.hpp"
#include "filter/property_names.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

using List = std::vector<Any>;

std::string join(const std::string& path, const std::string& name) {
  return path.empty() ? name : path + "." + name;
}

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
  throw std::runtime_error(path.empty() ? reason : path + ": " + reason);
}

template <class T>
constexpr const char* kKind = nullptr;
template <>
constexpr const char* kKind<std::string> = "text";
template <>
constexpr const char* kKind<bool> = "true or false";
template <>
constexpr const char* kKind<int> = "an integer";
template <>
constexpr const char* kKind<List> = "an array";
template <>
constexpr const char* kKind<AnyMap> = "an object";

const char* kindOf(const Any& value) {
  if (value.Type() == typeid(std::string)) return kKind<std::string>;
  if (value.Type() == typeid(bool)) return kKind<bool>;
  if (value.Type() == typeid(List)) return kKind<List>;
  if (value.Type() == typeid(AnyMap)) return kKind<AnyMap>;
  return "a number";
}

/// The value as a `T`; anything else is an error that names the path.
template <class T>
const T& as(const std::string& path, const Any& value) {
  const T* typed = any_cast<T>(&value);
  if (typed != nullptr) return *typed;
  fail(path, std::string("expected ") + kKind<T> + ", found " + kindOf(value));
}

/// An object of the manifest and where it stands.
class Object {
 public:
  Object(std::string path, const AnyMap& members) : path_(std::move(path)), members_(members) {}
  Object(const std::string& path, const Any& value) : Object(path, as<AnyMap>(path, value)) {}

  std::string path(const std::string& name) const { return join(path_, name); }

  /// The member, or null if there is none.
  template <class T>
  const T* find(const std::string& name) const {
    const auto member = members_.find(name);
    return member == members_.end() ? nullptr : &as<T>(path(name), member->second);
  }

  template <class T>
  const T& get(const std::string& name) const {
    const T* member = find<T>(name);
    if (!member) fail(path(name), "missing");
    return *member;
  }

  /// A text that is not empty.
  const std::string& text(const std::string& name) const {
    const auto& value = get<std::string>(name);
    if (value.empty()) fail(path(name), "empty");
    return value;
  }

  /// A member that may be there if it says what holds without it.
  template <class T>
  void onlyDefault(const std::string& name, const T& value) const {
    const T* member = find<T>(name);
    if (member && *member != value) {
      fail(path(name), Any(*member).ToJSON() + " is not supported, only " + Any(value).ToJSON());
    }
  }

  void onlyMembers(std::initializer_list<const char*> names) const {
    for (const auto& [name, value] : members_) {
      if (std::find(names.begin(), names.end(), name) == names.end()) {
        fail(path(name), "not supported");
      }
    }
  }

 private:
  std::string path_;
  const AnyMap& members_;
};

bool isClassName(const std::string& name) {
  const auto isLetter = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
  };
  bool atStart = true;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!atStart && name.compare(i, 2, "::") == 0) {
      ++i;
      atStart = true;
    } else if (isLetter(name[i]) || (!atStart && name[i] >= '0' && name[i] <= '9')) {
      atStart = false;
    } else {
      return false;
    }
  }
  return !atStart;
}

/// An interface name; the global scope may be written before it.
std::string interfaceName(const std::string& path, const std::string& name) {
  const std::size_t start = name.compare(0, 2, "::") == 0 ? 2 : 0;
  if (start == name.size()) fail(path, "empty");
  return name.substr(start);
}

std::vector<std::string> interfacesOf(const Object& component) {
  const Object service(component.path("service"), component.get<AnyMap>("service"));
  service.onlyMembers({"interfaces", "scope"});
  service.onlyDefault<std::string>("scope", "singleton");
  std::vector<std::string> interfaces;
  for (const Any& element : service.get<List>("interfaces")) {
    const std::string path =
        service.path("interfaces") + "[" + std::to_string(interfaces.size()) + "]";
    std::string name = interfaceName(path, as<std::string>(path, element));
    if (std::find(interfaces.begin(), interfaces.end(), name) != interfaces.end()) {
      fail(path, "given twice");
    }
    interfaces.push_back(std::move(name));
  }
  if (interfaces.empty()) fail(service.path("interfaces"), "empty");
  return interfaces;
}

ReferenceDescription referenceOf(const Object& object) {
  object.onlyMembers(
      {"cardinality", "interface", "name", "policy", "policy-option", "scope", "target"});
  object.onlyDefault<std::string>("cardinality", "1..1");
  object.onlyDefault<std::string>("policy", "static");
  object.onlyDefault<std::string>("policy-option", "reluctant");
  object.onlyDefault<std::string>("scope", "bundle");

  ReferenceDescription reference;
  reference.name = object.text("name");
  reference.interfaceName = interfaceName(object.path("interface"), object.text("interface"));
  if (const auto* target = object.find<std::string>("target")) reference.target = *target;
  try {
    reference.filter = LdapExpression::offering(reference.interfaceName, reference.target);
  } catch (const std::invalid_argument& error) {
    fail(object.path("target"), error.what());
  }
  return reference;
}

std::vector<ReferenceDescription> referencesOf(const Object& component) {
  std::vector<ReferenceDescription> references;
  const auto* list = component.find<List>("references");
  if (!list) return references;
  for (const Any& element : *list) {
    const std::string path =
        component.path("references") + "[" + std::to_string(references.size()) + "]";
    const Object object(path, element);
    ReferenceDescription reference = referenceOf(object);
    if (std::any_of(references.begin(), references.end(),
                    [&](const auto& other) { return other.name == reference.name; })) {
      fail(object.path("name"), "given twice");
    }
    references.push_back(std::move(reference));
  }
  return references;
}

AnyMap propertiesOf(const Object& component) {
  const auto* given = component.find<AnyMap>("properties");
  if (!given) return {};
  const Object properties(component.path("properties"), *given);
  for (const std::string& name : {property_names::kInterfaces, property_names::kServiceId,
                                  property_names::kComponentName, property_names::kComponentId}) {
    if (given->count(name) != 0) fail(properties.path(name), "set by the runtime itself");
  }
  properties.find<int>(property_names::kRanking);
  return *given;
}

ComponentDescription componentOf(const Object& object) {
  ComponentDescription component;
  component.implementationClass = object.text("implementation-class");
  if (!isClassName(component.implementationClass)) {
    fail(object.path("implementation-class"), "not a class name");
  }
  object.onlyMembers({"enabled", "immediate", "implementation-class", "inject-references", "name",
                      "properties", "references", "service"});
  object.onlyDefault("enabled", true);
  object.onlyDefault("immediate", false);
  // What it asks for is settled by the class whose holder the bundle's NewInstance_ makes.
  object.find<bool>("inject-references");

  component.name =
      object.find<std::string>("name") ? object.text("name") : component.implementationClass;
  component.interfaces = interfacesOf(object);
  component.properties = propertiesOf(object);
  component.references = referencesOf(object);
  return component;
}

/// How messages call a component before it is read: by its name if it has one.
std::string labelOf(const Any& element, std::size_t index) {
  if (const auto* members = any_cast<AnyMap>(&element)) {
    for (const char* name : {"name", "implementation-class"}) {
      const auto member = members->find(name);
      if (member == members->end()) continue;
      const auto* text = any_cast<std::string>(&member->second);
      if (text && !text->empty()) return *text;
    }
  }
  return "number " + std::to_string(index + 1);
}

/// The components of the manifest, still unread; null if it has no block for them.
const List* componentsOf(const Object& manifest) {
  const auto* block = manifest.find<AnyMap>("scr");
  if (!block) return nullptr;
  const Object scr("scr", *block);
  scr.onlyMembers({"components", "version"});
  if (const int version = scr.get<int>("version"); version != 1) {
    fail(scr.path("version"), std::to_string(version) + " is not supported, only 1");
  }
  return &scr.get<List>("components");
}

/// Runs `read`; an error gets the place put before it.
template <class Read>
void at(const std::string& place, Read read) {
  try {
    read();
  } catch (const std::runtime_error& error) {
    fail(place, error.what());
  }
}

}  // namespace

BundleManifest parseManifest(const std::string& json) {
  BundleManifest result;
  AnyMap members;
  at("manifest.json", [&] {
    members = parseJsonObject(json);
    result.symbolicName = Object("", members).text("bundle.symbolic_name");
  });
  const std::string bundle = "bundle " + result.symbolicName;
  const List* components = nullptr;
  at(bundle, [&] {
    const Object manifest("", members);
    manifest.find<std::string>("bundle.version");
    manifest.onlyDefault("bundle.activator", false);
    components = componentsOf(manifest);
  });
  if (!components) return result;
  for (const Any& element : *components) {
    at(bundle + ", component " + labelOf(element, result.components.size()),
       [&] { result.components.push_back(componentOf(Object("", as<AnyMap>("", element)))); });
  }
  return result;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
