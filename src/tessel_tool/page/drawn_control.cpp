#include "page/drawn_control.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>

#include "reference_host/fl/utf16.hpp"
#include "reference_host/json/text_writer.hpp"
#include "text_form.hpp"

namespace tessel_tool {

using gx::zero::ModelElement;
using gx::zero::meta::Property;
using reference_host::i18n::ustringToUtf8;

namespace {

std::string written(double number) {
  std::string text;
  reference_host::json::appendNumber(text, number);
  return text;
}

/// What a control is drawn from, and where to.
struct Drawing {
  HtmlWriter& html;
  const ElementView& data;
  const std::string& name;  ///< its label, or what stands in for one
  bool isLabelled;
  std::string_view valueId;  ///< of the element with a value that HTML does not get
  std::vector<std::string>& notes;
};

void writeName(const Drawing& drawing) {
  HtmlWriter& html = drawing.html;
  html.begin("bdi");
  if (!drawing.isLabelled) html.attribute("class", "unnamed");
  html.text(drawing.name).end("bdi");
}

/// Writes a label around a form control.
template <typename WriteControl>
void writeLabelled(const Drawing& drawing, const WriteControl& writeControl) {
  drawing.html.begin("label");
  writeName(drawing);
  writeControl();
  drawing.html.end("label");
}

HtmlWriter& beginInput(const Drawing& drawing, const char* type) {
  return drawing.html.begin("input").attribute("type", type);
}

/// What becomes of a default value.
enum class Default {
  kUnset,
  kGiven,    ///< HTML gets it
  kRefused,  ///< HTML would refuse or change it: it stands beside the form control
};

/// Writes attributes of a form control that stands on something whether or not a value was set.
void markBlank(const Drawing& drawing, Default state) {
  if (state != Default::kGiven) drawing.html.attribute("class", "blank");
}

/// Ties the form control that has been begun to the value beside it.
void describe(const Drawing& drawing, Default state) {
  if (state == Default::kRefused) drawing.html.attribute("aria-describedby", drawing.valueId);
}

void noteUnset(const Drawing& drawing, Default state) {
  if (state == Default::kUnset) drawing.notes.emplace_back("no default value is set");
}

template <typename Value>
void writeValue(const Drawing& drawing, Value value) {
  drawing.html.begin("bdi").attribute("class", "value").attribute("id", drawing.valueId);
  if constexpr (std::is_same_v<Value, double>) {
    drawing.html.number(value);
  } else {
    drawing.html.text(value);
  }
  drawing.html.end("bdi");
}

/// The lower and the upper end of what is chosen; one number twice where there is one.
using Ends = std::pair<double, double>;

/// Bounds and step as a form control has them.
struct Bounds {
  std::optional<double> min;
  std::optional<double> max;
  std::optional<double> step;  ///< none where any value is on a step

  explicit Bounds(const ElementView& data)
      : min(data.get<double>(u"min")),
        max(data.get<double>(u"max")),
        step(data.get<double>(u"step")) {
    if (step && !(*step > 0)) step.reset();
  }

  /// Whether HTML leaves the value as it is.
  bool hold(double value) const {
    if ((min && value < *min) || (max && value > *max)) return false;
    if (!step || !min) return true;
    constexpr double kRoundingError = 4 * std::numeric_limits<double>::epsilon();
    const double onStep = *min + std::round((value - *min) / *step) * *step;
    return std::abs(value - onStep) <= kRoundingError * std::max(std::abs(value), std::abs(*min));
  }

  Default stateOf(const std::optional<Ends>& value) const {
    if (!value) return Default::kUnset;
    return hold(value->first) && hold(value->second) ? Default::kGiven : Default::kRefused;
  }

  void write(HtmlWriter& html) const {
    if (min) html.attribute("min", *min);
    if (max) html.attribute("max", *max);
    if (step) {
      html.attribute("step", *step);
    } else {
      html.attribute("step", "any");
    }
  }

  void noteFaults(const Drawing& drawing) const {
    if (min && max && *min > *max) {
      drawing.notes.push_back("the minimum, " + written(*min) + ", is above the maximum, " +
                              written(*max));
    }
    const auto given = drawing.data.get<double>(u"step");
    if (given && !step) {
      drawing.notes.push_back("the step is not positive: " + written(*given));
    }
  }
};

/// A slider ends somewhere: where nothing is set, where HTML has it end, or farther away, so that
/// it has room for the other bound and the default value.
Bounds sliderBounds(const Drawing& drawing, const std::optional<Ends>& value) {
  constexpr double kLeast = 0;
  constexpr double kGreatest = 100;
  Bounds bounds(drawing.data);
  bounds.noteFaults(drawing);
  const bool hasMin = bounds.min.has_value();
  const bool hasMax = bounds.max.has_value();
  if (!hasMin) {
    const bool isBelow = hasMax && *bounds.max <= kLeast;
    bounds.min = isBelow ? *bounds.max - (kGreatest - kLeast) : kLeast;
    if (value) bounds.min = std::min(*bounds.min, value->first);
    // Steps are counted from the minimum: one that was not set has the value on a step.
    if (value && bounds.step && !bounds.hold(value->first)) {
      const double below = value->first - *bounds.min;
      bounds.min = value->first - std::floor(below / *bounds.step) * *bounds.step;
    }
    drawing.notes.push_back("no minimum is set; drawn with " + written(*bounds.min));
  }
  if (!hasMax) {
    bounds.max = *bounds.min < kGreatest ? kGreatest : *bounds.min + (kGreatest - kLeast);
    if (value) bounds.max = std::max(*bounds.max, value->second);
    drawing.notes.push_back("no maximum is set; drawn with " + written(*bounds.max));
  }
  return bounds;
}

/// Writes the value, which a slider does not show, and between which bounds it is.
void writeScale(const Drawing& drawing, const Bounds& bounds, const std::optional<Ends>& value) {
  constexpr std::string_view kDash = "\xE2\x80\x93";
  if (!bounds.min && !bounds.max) return;
  HtmlWriter& html = drawing.html;
  html.begin("span").attribute("class", "scale");
  if (value) {
    html.number(value->first);
    if (value->first < value->second) html.text(kDash).number(value->second);
    html.text(" in ");
  }
  if (!bounds.max) {
    html.text("from ").number(*bounds.min);
  } else if (!bounds.min) {
    html.text("up to ").number(*bounds.max);
  } else {
    html.number(*bounds.min).text(kDash).number(*bounds.max);
  }
  html.end("span");
}

void drawButton(const Drawing& drawing) {
  drawing.html.begin("button").attribute("type", "button");
  writeName(drawing);
  drawing.html.end("button");
}

void drawFlag(const Drawing& drawing, bool isSwitch) {
  writeLabelled(drawing, [&] {
    beginInput(drawing, "checkbox");
    if (isSwitch) drawing.html.attribute("role", "switch");
    if (drawing.data.get<bool>(u"defaultValue").value_or(false)) drawing.html.attribute("checked");
  });
}

void drawCheckBox(const Drawing& drawing) {
  drawFlag(drawing, false);
}

void drawStateButton(const Drawing& drawing) {
  drawFlag(drawing, true);
}

std::optional<Ends> defaultNumber(const ElementView& data) {
  const auto value = data.get<double>(u"defaultValue");
  return value ? std::optional(Ends(*value, *value)) : std::nullopt;
}

void drawSlider(const Drawing& drawing) {
  const auto value = defaultNumber(drawing.data);
  const Bounds bounds = sliderBounds(drawing, value);
  const Default state = bounds.stateOf(value);
  writeLabelled(drawing, [&] {
    bounds.write(beginInput(drawing, "range"));
    if (state == Default::kGiven) drawing.html.attribute("value", value->first);
    markBlank(drawing, state);
    describe(drawing, state);
  });
  if (state == Default::kRefused) writeValue(drawing, value->first);
  writeScale(drawing, bounds, state == Default::kGiven ? value : std::nullopt);
  noteUnset(drawing, state);
}

void drawSpinner(const Drawing& drawing) {
  const auto value = defaultNumber(drawing.data);
  const Bounds bounds(drawing.data);
  bounds.noteFaults(drawing);
  const Default state = bounds.stateOf(value);
  writeLabelled(drawing, [&] {
    bounds.write(beginInput(drawing, "number"));
    if (state == Default::kGiven) drawing.html.attribute("value", value->first);
    describe(drawing, state);
  });
  if (state == Default::kRefused) writeValue(drawing, value->first);
  writeScale(drawing, bounds, std::nullopt);
}

/// The two numbers of a text such as "[2 8]" or "[2, 8]".
std::optional<Ends> rangeOf(std::u16string_view value) {
  const std::string text = ustringToUtf8(value);
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto skipSpaces = [&] {
    while (at != end && *at == ' ') ++at;
  };
  const auto take = [&](char expected) {
    skipSpaces();
    if (at == end || *at != expected) return false;
    ++at;
    return true;
  };
  const auto takeNumber = [&](double& number) {
    skipSpaces();
    const auto read = std::from_chars(at, end, number);
    const bool isNumber = read.ec == std::errc() && std::isfinite(number);
    if (isNumber) at = read.ptr;
    return isNumber;
  };
  Ends ends;
  if (!take('[') || !takeNumber(ends.first)) return std::nullopt;
  const bool isSeparated = at != end && (*at == ' ' || *at == ',');
  take(',');
  if (!isSeparated || !takeNumber(ends.second) || !take(']') || at != end) return std::nullopt;
  return ends.first <= ends.second ? std::optional(ends) : std::nullopt;
}

void drawRangeSlider(const Drawing& drawing) {
  HtmlWriter& html = drawing.html;
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  const auto range = rangeOf(value);
  const Bounds bounds = sliderBounds(drawing, range);
  const Default state = !range && !value.empty() ? Default::kRefused : bounds.stateOf(range);
  html.begin("span").attribute("role", "group").attribute("aria-label", drawing.name);
  html.attribute("class", "range");
  writeName(drawing);
  for (const bool upper : {false, true}) {
    bounds.write(beginInput(drawing, "range"));
    html.attribute("aria-label", drawing.name + (upper ? ", upper end" : ", lower end"));
    if (state == Default::kGiven) html.attribute("value", upper ? range->second : range->first);
    markBlank(drawing, state);
    describe(drawing, state);
  }
  html.end("span");
  if (state == Default::kRefused) writeValue(drawing, value);
  writeScale(drawing, bounds, state == Default::kGiven ? range : std::nullopt);
  noteUnset(drawing, state);
}

struct Choice {
  std::u16string_view label;
  std::u16string_view value;
};

void drawComboBox(const Drawing& drawing) {
  HtmlWriter& html = drawing.html;
  const auto& items = drawing.data.elements(u"items");
  const auto& labels = drawing.data.elements(u"itemLabels");
  std::vector<Choice> choices;
  for (const ModelElement::Impl* item : items) {
    const ElementView view(*item);
    choices.push_back({view.text(u"label"), view.text(u"item")});
  }
  if (items.empty()) {
    for (const ModelElement::Impl* item : labels) {
      const std::u16string_view label = ElementView(*item).text(u"label");
      choices.push_back({label, label});
    }
  }

  const auto value = drawing.data.get<std::u16string_view>(u"defaultValue");
  const auto find = [&](std::u16string_view Choice::*text) {
    return std::find_if(choices.begin(), choices.end(),
                        [&](const Choice& choice) { return choice.*text == *value; });
  };
  auto chosen = choices.end();
  if (value) chosen = find(&Choice::value);
  if (value && chosen == choices.end()) chosen = find(&Choice::label);
  const bool isAmongThem = chosen != choices.end();
  const Default state = isAmongThem                ? Default::kGiven
                        : value && !value->empty() ? Default::kRefused
                                                   : Default::kUnset;
  writeLabelled(drawing, [&] {
    html.begin("select").attribute("dir", "auto");
    describe(drawing, state);
    // Otherwise the first choice would look like the default one.
    if (!isAmongThem) html.begin("option").attribute("selected").attribute("value", "");
    for (auto choice = choices.begin(); choice != choices.end(); ++choice) {
      html.begin("option").attribute("value", choice->value);
      if (choice == chosen) html.attribute("selected");
      html.attribute("dir", "auto").text(choice->label);
    }
    html.end("select");
  });
  if (state == Default::kRefused) writeValue(drawing, *value);
  if (items.empty() || labels.empty()) return;
  std::string note = "labels beside the items:";
  for (const ModelElement::Impl* label : labels) {
    note +=
        (label == labels.front() ? " " : ", ") + ustringToUtf8(ElementView(*label).text(u"label"));
  }
  drawing.notes.push_back(std::move(note));
}

Default stateOf(std::u16string_view value, bool isTaken) {
  if (value.empty()) return Default::kUnset;
  return isTaken ? Default::kGiven : Default::kRefused;
}

/// A field whose text is one that HTML takes for its type, or none.
/// @param writeMore writes more attributes of the field.
template <typename WriteMore>
void drawText(const Drawing& drawing, const char* type, std::u16string_view value, Default state,
              const WriteMore& writeMore) {
  writeLabelled(drawing, [&] {
    beginInput(drawing, type);
    writeMore();
    if (state == Default::kGiven) drawing.html.attribute("value", value);
    describe(drawing, state);
  });
  if (state == Default::kRefused) writeValue(drawing, value);
}

void drawText(const Drawing& drawing, const char* type, std::u16string_view value, Default state) {
  drawText(drawing, type, value, state, [] {});
}

void drawEditField(const Drawing& drawing) {
  const auto holder = drawing.data.element(u"defaultValueData");
  const auto number = holder ? holder->get<double>(u"defaultValue") : std::nullopt;
  if (number || drawing.data.text(u"valueType") == u"Double") {
    writeLabelled(drawing, [&] {
      beginInput(drawing, "number").attribute("step", "any");
      if (number) drawing.html.attribute("value", *number);
    });
  } else {
    const auto value = holder ? holder->text(u"defaultValue") : std::u16string_view();
    drawText(drawing, "text", value, stateOf(value, isShownAsIs(value)),
             [&] { drawing.html.attribute("dir", "auto"); });
  }
}

bool isOneOf(char16_t unit, std::u16string_view units) {
  return units.find(unit) != std::u16string_view::npos;
}

void drawColorPicker(const Drawing& drawing) {
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  const bool isTaken = value.size() == 7 && value.front() == u'#' &&
                       std::all_of(value.begin() + 1, value.end(), [](char16_t unit) {
                         return isOneOf(unit, u"0123456789abcdef");
                       });
  const Default state = stateOf(value, isTaken);
  drawText(drawing, "color", value, state, [&] { markBlank(drawing, state); });
  noteUnset(drawing, state);
}

/// Whether a text is a date of the calendar, as HTML writes them.
bool isDate(std::u16string_view text) {
  constexpr std::size_t kLength = 10;
  if (text.size() != kLength || text[4] != u'-' || text[7] != u'-') return false;
  const auto numberAt = [&](std::size_t begin, std::size_t length) {
    unsigned number = 0;
    for (const char16_t unit : text.substr(begin, length)) {
      if (!isOneOf(unit, u"0123456789")) return 0U;
      number = 10 * number + (unit - unsigned{u'0'});
    }
    return number;
  };
  const unsigned year = numberAt(0, 4);
  const unsigned month = numberAt(5, 2);
  const unsigned day = numberAt(8, 2);
  if (year == 0 || month == 0 || month > 12 || day == 0) return false;
  constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return day <= kDays[month - 1] + (month == 2 && isLeap ? 1U : 0U);
}

void drawDatePicker(const Drawing& drawing) {
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  drawText(drawing, "date", value, stateOf(value, isDate(value)));
  // A browser shows days as its reader writes them.
  const std::u16string_view format = drawing.data.text(u"displayFormat");
  if (format.empty()) return;
  drawing.html.begin("bdi").attribute("class", "format").text(format).end("bdi");
}

void drawFileBrowser(const Drawing& drawing) {
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  drawText(drawing, "file", value, stateOf(value, false));
}

/// Says which variables supply what the control starts with.
void noteVariables(const ElementView& data, std::vector<std::string>& notes) {
  constexpr std::pair<std::u16string_view, const char*> kVariables[] = {
      {u"defaultLinkedVariable", "default value"},
      {u"linkedVariable", "value"},
      {u"minimumLinkedVariable", "minimum"},
      {u"maximumLinkedVariable", "maximum"},
      {u"stepLinkedVariable", "step"},
  };
  for (const auto& [property, what] : kVariables) {
    const std::u16string_view variable = data.text(property);
    if (variable.empty()) continue;
    notes.push_back(std::string("the ") + what + " comes from the variable " +
                    ustringToUtf8(variable));
  }
}

}  // namespace

/// How a control is drawn whose data is of a class. A null pointer is a task, which is none.
struct DrawnKind {
  std::u16string_view className;  ///< of the data; of the node itself where it has none
  const char* word;
  const char* name;
  void (*draw)(const Drawing& drawing);
};

namespace {

constexpr DrawnKind kKinds[] = {
    {u"lumocode::contentmodel::gxzero::ButtonData", "button", "button", drawButton},
    {u"lumocode::contentmodel::gxzero::CheckboxData", "check-box", "check box", drawCheckBox},
    {u"lumocode::contentmodel::gxzero::ColorPickerData", "color-picker", "color picker",
     drawColorPicker},
    {u"lumocode::contentmodel::gxzero::ComboboxData", "combo-box", "combo box", drawComboBox},
    {u"lumocode::contentmodel::gxzero::DatePickerData", "date-picker", "date picker",
     drawDatePicker},
    {u"lumocode::contentmodel::gxzero::EditFieldData", "edit-field", "edit field", drawEditField},
    {u"lumocode::contentmodel::gxzero::FileBrowserData", "file-browser", "file browser",
     drawFileBrowser},
    {u"lumocode::contentmodel::gxzero::RangeSliderData", "range-slider", "range slider",
     drawRangeSlider},
    {u"lumocode::contentmodel::gxzero::SliderData", "slider", "slider", drawSlider},
    {u"lumocode::contentmodel::gxzero::SpinnerData", "spinner", "spinner", drawSpinner},
    {u"lumocode::contentmodel::gxzero::StateButtonData", "state-button", "state button",
     drawStateButton},
    {u"document::gxzero::LumoAppLineNode", "task-header", "task header", nullptr},
    {u"document::gxzero::LumoAppIntegratedInlineNode", "task", "task", nullptr},
};

const DrawnKind* kindOf(std::u16string_view className) {
  const auto* const kind =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&](const DrawnKind& row) { return row.className == className; });
  return kind == std::end(kKinds) ? nullptr : kind;
}

}  // namespace

const ControlKinds::Known& ControlKinds::of(const gx::zero::meta::Class::Impl& described) {
  const auto known = known_.find(&described);
  if (known != known_.end()) return known->second;
  Known kind{kindOf(described.getQualifiedName()), {}};
  for (const Property& property : described.getProperties()) {
    if (property.getKind() == Property::Kind::kContained && property.getName() != u"position") {
      kind.dataHolders.push_back(&property);
    }
  }
  return known_.emplace(&described, std::move(kind)).first->second;
}

ControlView::ControlView(const ModelElement::Impl& node, ControlKinds& kinds) : node_(node) {
  const ControlKinds::Known& known = kinds.of(node_.metaClass());
  drawn_ = known.drawn;
  if (drawn_ != nullptr) return;
  for (const Property* property : known.dataHolders) {
    data_ = node_.element(*property);
    if (!data_) continue;
    drawn_ = kinds.of(data_->metaClass()).drawn;
    code_ = data_->text(u"code");
    return;
  }
}

const char* ControlView::word() const {
  return drawn_ != nullptr ? drawn_->word : "control";
}

std::string ControlView::name() const {
  if (drawn_ != nullptr) return drawn_->name;
  return std::string(shortName(ustringToUtf8(node_.className())));
}

bool ControlView::isTask() const {
  return drawn_ != nullptr && drawn_->draw == nullptr;
}

std::u16string_view ControlView::id() const {
  const std::u16string_view id = node_.text(u"id");
  return id.empty() ? node_.text(u"anchorId") : id;
}

Columns ControlView::columns() const {
  const auto position = node_.element(u"position");
  if (!position) return {};
  return {position->get<std::uint64_t>(u"startColumn"), position->get<std::uint64_t>(u"endColumn")};
}

std::string ControlView::label() const {
  return ustringToUtf8((data_ ? *data_ : node_).text(u"label"));
}

std::string ControlView::ownName() const {
  const std::string id = ustringToUtf8(this->id());
  return reference_host::json::isBlank(id) ? label() : id;
}

std::string ControlView::title() const {
  std::string title = name();
  const std::string own = ownName();
  if (!reference_host::json::isBlank(own)) title.append(" ").append(own);
  return title;
}

void ControlView::draw(HtmlWriter& html, std::string_view valueId,
                       std::vector<std::string>& notes) const {
  const ElementView& data = data_ ? *data_ : node_;
  std::string name = label();
  const bool isLabelled = !reference_host::json::isBlank(name);
  if (!isLabelled) name = title();
  const Drawing drawing{html, data, name, isLabelled, valueId, notes};
  if (drawn_ != nullptr) {
    drawn_->draw(drawing);
  } else {
    writeName(drawing);
  }
  noteVariables(data, notes);
  if (const auto value = data.element(u"defaultValueData")) noteVariables(*value, notes);
}

void ControlView::drawTask(HtmlWriter& html, ControlKinds& kinds) const {
  html.begin("p").attribute("class", "name").begin("strong").text(name()).end("strong");
  html.text(" ").begin("bdi").text(id()).end("bdi").end("p");
  if (const auto task = node_.element(u"lumoTaskData")) {
    html.begin("dl");
    constexpr std::pair<std::u16string_view, const char*> kShown[] = {
        {u"taskId", "task"},         {u"appIdentifier", "app"},      {u"view", "view"},
        {u"collapsed", "folded up"}, {u"autoRun", "runs by itself"}, {u"executionModel", "runs"},
    };
    for (const auto& [property, what] : kShown) {
      const std::u16string_view value = task->text(property);
      if (value.empty()) continue;
      html.begin("div").begin("dt").text(what).begin("dd").attribute("dir", "auto").text(value);
      html.end("dd").end("div");
    }
    html.end("dl");
    const std::u16string_view code = task->text(u"text");
    if (!code.empty()) {
      html.begin("pre").begin("code").attribute("dir", "ltr").lines(ustringToUtf8(code));
      html.end("code").end("pre");
    }
  }
  for (const ModelElement::Impl* child : children()) {
    const ControlView view(*child, kinds);
    html.begin("div").attribute("class", "task").attribute("data-kind", view.word());
    if (view.isTask()) {
      view.drawTask(html, kinds);
    } else {
      html.text(view.title());
    }
    html.end("div");
  }
}

}  // namespace tessel_tool
