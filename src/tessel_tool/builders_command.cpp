#include "builders_command.hpp"

#include <string>
#include <vector>

#include "console.hpp"
#include "reference_host/json/text_writer.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

using reference_host::json::JsonWriter;

void writeComponent(JsonWriter& writer, const ComponentDescription& component) {
  writer.key("component").value(component.name);
  writer.key("interfaces").beginArray();
  for (const std::string& interface : component.interfaces) writer.value(interface);
  writer.endArray();
  writer.key("properties").beginObject();
  for (const auto& [key, value] : component.properties) writer.key(key).raw(value);
  writer.endObject();
}

void writeReference(JsonWriter& writer, const MissingReference& reference) {
  writer.beginObject();
  writer.key("reference").value(reference.name).key("interface").value(reference.interface);
  writer.key("target").value(reference.target);
  writer.endObject();
}

std::string asJson(const BuilderServices& services) {
  std::string out;
  JsonWriter writer(out, JsonWriter::Layout::kPretty);
  writer.beginObject();
  writer.key("bundle").value(services.bundleName());
  writer.key("published").beginArray();
  for (const ComponentDescription& component : services.published()) {
    writer.beginObject();
    writeComponent(writer, component);
    writer.endObject();
  }
  writer.endArray();
  writer.key("waiting").beginArray();
  for (const WaitingComponent& waiting : services.waiting()) {
    writer.beginObject();
    writeComponent(writer, waiting.component);
    writer.key("waitsFor").beginArray();
    for (const MissingReference& reference : waiting.waitsFor) writeReference(writer, reference);
    writer.endArray();
    writer.endObject();
  }
  writer.endArray();
  writer.endObject();
  out += '\n';
  return out;
}

void appendComponent(std::string& out, const ComponentDescription& component) {
  out += "  " + visible(component.name) + '\n';
  for (const std::string& interface : component.interfaces) {
    out += "    interface " + visible(interface) + '\n';
  }
  for (const auto& [key, value] : component.properties) {
    out += "    property " + visible(key) + ": " + visible(value) + '\n';
  }
}

std::string asText(const BuilderServices& services) {
  std::string out;
  const std::vector<ComponentDescription> published = services.published();
  out +=
      std::to_string(published.size()) + " published by " + visible(services.bundleName()) + '\n';
  for (const ComponentDescription& component : published) appendComponent(out, component);
  const std::vector<WaitingComponent> waiting = services.waiting();
  if (waiting.empty()) return out;
  out += std::to_string(waiting.size()) + " not published\n";
  for (const WaitingComponent& component : waiting) {
    appendComponent(out, component.component);
    for (const MissingReference& reference : component.waitsFor) {
      out += "    waits for " + visible(reference.name) + ": " + visible(reference.interface);
      if (!reference.target.empty()) out += " with " + visible(reference.target);
      out += '\n';
    }
  }
  return out;
}

}  // namespace

ExitStatus runBuilders(BuilderServices& services, bool json) {
  writeResult(json ? asJson(services) : asText(services));
  return ExitStatus::kSuccess;
}

}  // namespace tessel_tool
