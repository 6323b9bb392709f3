#include "located_error.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "reference_host/diagnosis/culprit.hpp"
#include "reference_host/diagnosis/offered_object.hpp"
#include "reference_host/diagnosis/syntax_hint.hpp"

namespace tessel_tool {

namespace {

using foundation::json::Value;
using reference_host::diagnosis::Culprit;
using reference_host::diagnosis::Knowledge;
using reference_host::importer::ImportError;
using reference_host::importer::NamedBuilder;

const NamedBuilder& builderOf(const Knowledge& knowledge, const ImportError& error) {
  return *std::find_if(
      knowledge.builders().begin(), knowledge.builders().end(),
      [&](const NamedBuilder& builder) { return builder.name() == error.builder; });
}

}  // namespace

std::vector<LocatedError> locate(const Knowledge& knowledge, std::vector<ImportError>& errors,
                                 const Value* object, const Document& document, Tell tell) {
  namespace diagnosis = reference_host::diagnosis;
  std::vector<LocatedError> located;
  located.reserve(errors.size());
  for (ImportError& error : errors) {
    const NamedBuilder& builder = builderOf(knowledge, error);
    const Value own = std::move(error.object);
    const Value& failed = object != nullptr ? *object : own;
    const std::optional<Culprit> culprit = diagnosis::findCulprit(builder, error.step, failed);
    LocatedError next;
    if (culprit) {
      next.location.member = error.pointer + diagnosis::pointerOf(culprit->place);
      next.location.held = culprit->held;
      next.location.wanted = culprit->wanted;
    }
    if (tell == Tell::kPeople) {
      next.told = std::make_unique<PlacedProblem>(
          PlacedProblem{diagnosis::problemOf({knowledge, builder, error.pointer, failed},
                                             error.step, culprit, error.message),
                        {}});
    }
    located.push_back(std::move(next));
  }
  if (located.empty()) return located;
  // For each error that of the value and, where people are told, that of what they are told of.
  std::vector<std::string_view> pointers;
  pointers.reserve(errors.size() * (tell == Tell::kPeople ? 2 : 1));
  const auto addPointer = [&](const std::optional<std::string>& member, const std::string& own) {
    pointers.push_back(member ? *member : own);
  };
  for (std::size_t index = 0; index != located.size(); ++index) {
    const LocatedError& error = located[index];
    addPointer(error.location.member, errors[index].pointer);
    if (error.told) addPointer(error.told->problem.member, errors[index].pointer);
  }
  const auto places = reference_host::json::findValues(document.content(), pointers);
  auto place = places.begin();
  for (LocatedError& error : located) {
    error.location.place = (place++)->value.begin;
    error.location.place->line += document.line - 1;
    if (error.told) error.told->place = (place++)->value;
  }
  return located;
}

PlacedProblem syntaxProblem(const reference_host::json::ParseError& error,
                            const Document& document) {
  using reference_host::diagnosis::Code;
  using reference_host::diagnosis::hintForSyntax;
  const reference_host::json::TextPlace begin{error.line() - document.line + 1, error.column()};
  const std::size_t length = endsLine(document.content(), begin) ? 0 : 1;
  return {{Code::kSyntax,
           {},
           {},
           error.reason(),
           hintForSyntax(document.content(), error, document.line),
           {},
           {},
           {}},
          {begin, {begin.line, begin.column + length}}};
}

TextOrigin originOf(const Document& document) {
  return {document.path, document.content(), document.line};
}

void writeLocation(reference_host::json::JsonWriter& writer, const Location& location) {
  writer.key("member");
  writeOptional(writer, location.member);
  writer.key("line");
  if (location.place) {
    writer.value(location.place->line).key("column").value(location.place->column);
  } else {
    writer.null().key("column").null();
  }
  writer.key("held");
  writeOptional(writer, location.held);
  writer.key("wanted");
  writeOptional(writer, location.wanted);
}

}  // namespace tessel_tool
