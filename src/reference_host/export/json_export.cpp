#include "export/element_walk.hpp"
#include "reference_host/export/export.hpp"

namespace reference_host::exporting {

namespace {

class JsonVisitor final : public ElementVisitor {
 public:
  explicit JsonVisitor(json::JsonWriter& writer) : writer_(writer) {}

  void beginElement(std::string_view qualifiedClassName) override {
    writer_.beginObject().quotedKey(R"("class")").raw(qualifiedClassName);
  }
  void endElement() override { writer_.endObject(); }
  void property(std::string_view name) override { writer_.quotedKey(name); }
  void beginSequence() override { writer_.beginArray(); }
  void endSequence() override { writer_.endArray(); }
  void text(std::u16string_view text) override { writer_.value(text); }
  void number(double number) override { writer_.value(number); }
  void boolean(bool boolean) override { writer_.value(boolean); }
  void integer(std::uint64_t integer) override { writer_.value(integer); }

 private:
  json::JsonWriter& writer_;
};

}  // namespace

void Exporter::writeJson(json::JsonWriter& writer, const gx::zero::ModelElement& element,
                         const PartEnds& partEnds) {
  if (!element) {
    writer.null();
    return;
  }
  JsonVisitor visitor(writer);
  walkElement(classes_, element, visitor, partEnds);
}

std::string toJson(const gx::zero::ModelElement& element) {
  std::string out;
  json::JsonWriter writer(out);
  Exporter().writeJson(writer, element);
  return out;
}

}  // namespace reference_host::exporting
