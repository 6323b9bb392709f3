#include "page/drawn_control.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
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

template <typename Value>
void writeValue(const Drawing& drawing, Value value) {
  drawing.html.begin("bdi").attribute("class", "value");
  if constexpr (std::is_same_v<Value, double>) {
    drawing.html.number(value);
  } else {
    drawing.html.text(value);
  }
  drawing.html.end("bdi");
}

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
    constexpr double kRoundingError = 1e-9;
    if ((min && value < *min) || (max && value > *max)) return false;
    if (!step || !min) return true;
    const double steps = (value - *min) / *step;
    return std::abs(steps - std::round(steps)) <= kRoundingError * std::max(1.0, std::abs(steps));
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

/// A slider ends somewhere: where nothing is set, where HTML has it end.
Bounds sliderBounds(const Drawing& drawing) {
  constexpr double kLeast = 0;
  constexpr double kGreatest = 100;
  Bounds bounds(drawing.data);
  bounds.noteFaults(drawing);
  const auto fill = [&](std::optional<double>& bound, double value, const char* what) {
    if (bound) return;
    bound = value;
    drawing.notes.push_back(std::string("no ") + what + " is set; drawn with " + written(value));
  };
  fill(bounds.min, kLeast, "minimum");
  fill(bounds.max, kGreatest, "maximum");
  return bounds;
}

void writeScale(const Drawing& drawing, const Bounds& bounds) {
  HtmlWriter& html = drawing.html;
  html.begin("span").attribute("class", "scale").number(*bounds.min).text("\xE2\x80\x93");
  html.number(*bounds.max).end("span");
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

void drawNumber(const Drawing& drawing, const char* type, const Bounds& bounds) {
  const auto value = drawing.data.get<double>(u"defaultValue");
  const bool fits = value && bounds.hold(*value);
  writeLabelled(drawing, [&] {
    bounds.write(beginInput(drawing, type));
    if (fits) drawing.html.attribute("value", *value);
  });
  if (value && !fits) writeValue(drawing, *value);
}

void drawSlider(const Drawing& drawing) {
  const Bounds bounds = sliderBounds(drawing);
  drawNumber(drawing, "range", bounds);
  writeScale(drawing, bounds);
}

void drawSpinner(const Drawing& drawing) {
  const Bounds bounds(drawing.data);
  bounds.noteFaults(drawing);
  drawNumber(drawing, "number", bounds);
}

/// The number that a text begins with, which is taken off it with what separates it from the next.
std::optional<double> takeNumber(std::string& text) {
  const std::size_t length = text.find_first_of(" ,");
  const std::string digits = text.substr(0, length);
  if (digits.find_first_not_of("0123456789+-.eE") != std::string::npos) return std::nullopt;
  double number = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  text.erase(0, std::min(text.size(), text.find_first_not_of(" ,", digits.size())));
  return number;
}

/// The two numbers of a text such as "[2 8]".
std::optional<std::pair<double, double>> rangeOf(std::u16string_view value) {
  std::string text = ustringToUtf8(value);
  if (text.size() < 2 || text.front() != '[' || text.back() != ']') return std::nullopt;
  text = text.substr(1, text.size() - 2);
  const auto lower = takeNumber(text);
  const auto upper = lower ? takeNumber(text) : std::nullopt;
  if (!upper || !text.empty() || *lower > *upper) return std::nullopt;
  return std::pair(*lower, *upper);
}

void drawRangeSlider(const Drawing& drawing) {
  HtmlWriter& html = drawing.html;
  const Bounds bounds = sliderBounds(drawing);
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  auto range = rangeOf(value);
  if (range && !(bounds.hold(range->first) && bounds.hold(range->second))) range.reset();
  html.begin("span").attribute("role", "group").attribute("aria-label", drawing.name);
  html.attribute("class", "range");
  writeName(drawing);
  for (const bool upper : {false, true}) {
    bounds.write(beginInput(drawing, "range"));
    html.attribute("aria-label", drawing.name + (upper ? ", upper end" : ", lower end"));
    if (range) html.attribute("value", upper ? range->second : range->first);
  }
  html.end("span");
  if (!range && !value.empty()) writeValue(drawing, value);
  writeScale(drawing, bounds);
}

void drawComboBox(const Drawing& drawing) {
  HtmlWriter& html = drawing.html;
  const std::u16string_view value = drawing.data.text(u"defaultValue");
  const auto& items = drawing.data.elements(u"items");
  const auto& labels = drawing.data.elements(u"itemLabels");
  bool isAmongThem = value.empty();
  writeLabelled(drawing, [&] {
    html.begin("select");
    for (const bool isLabel : {false, true}) {
      if (isLabel && !items.empty()) break;
      for (const ModelElement::Impl* choice : isLabel ? labels : items) {
        const ElementView view(*choice);
        const std::u16string_view label = view.text(u"label");
        const std::u16string_view item = isLabel ? label : view.text(u"item");
        html.begin("option").attribute("value", item);
        if (!value.empty() && !isAmongThem && (item == value || label == value)) {
          html.attribute("selected");
          isAmongThem = true;
        }
        html.text(label);
      }
    }
    html.end("select");
  });
  if (!isAmongThem) writeValue(drawing, value);
  if (items.empty() || labels.empty()) return;
  std::string note = "labels beside the items:";
  for (const ModelElement::Impl* label : labels) {
    note +=
        (label == labels.front() ? " " : ", ") + ustringToUtf8(ElementView(*label).text(u"label"));
  }
  drawing.notes.push_back(std::move(note));
}

/// A field whose text is one that HTML takes for its type, or none.
void drawText(const Drawing& drawing, const char* type, std::u16string_view value, bool isTaken) {
  writeLabelled(drawing, [&] {
    beginInput(drawing, type);
    if (isTaken && !value.empty()) drawing.html.attribute("value", value);
  });
  if (!isTaken && !value.empty()) writeValue(drawing, value);
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
    drawText(drawing, "text", value, isShownAsIs(value));
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
  drawText(drawing, "color", value, isTaken);
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
  drawText(drawing, "date", value, isDate(value));
}

void drawFileBrowser(const Drawing& drawing) {
  drawText(drawing, "file", drawing.data.text(u"defaultValue"), false);
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

std::string ControlView::title() const {
  std::string title = name();
  const std::string id = ustringToUtf8(this->id());
  if (!reference_host::json::isBlank(id)) title.append(" ").append(id);
  return title;
}

void ControlView::draw(HtmlWriter& html, std::vector<std::string>& notes) const {
  const ElementView& data = data_ ? *data_ : node_;
  std::string name = ustringToUtf8(data.text(u"label"));
  const bool isLabelled = !reference_host::json::isBlank(name);
  if (!isLabelled) name = title();
  const Drawing drawing{html, data, name, isLabelled, notes};
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
  for (const ModelElement::Impl* child : node_.elements(u"children")) {
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
