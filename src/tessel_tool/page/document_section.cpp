#include "page/document_section.hpp"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "page/code_line.hpp"
#include "page/drawn_control.hpp"
#include "page/element_view.hpp"
#include "page/html_writer.hpp"
#include "page/property_table.hpp"
#include "problem_report.hpp"
#include "reference_host/diagnosis/document_check.hpp"
#include "text_form.hpp"

namespace tessel_tool {

using reference_host::diagnosis::Code;
using Object = ReadDocument::Object;

namespace {

/// The pointer of what contains a value.
std::string_view parentOf(std::string_view pointer) {
  return pointer.substr(0, std::min(pointer.size(), pointer.rfind('/')));
}

/// How much of a part there is room for.
enum class Detail {
  kAll,
  kNoSource,  ///< no JSON text, no records
  kNoFolds,   ///< and no properties, no excerpts
  kMessages,  ///< what is wrong and where, without the controls
  kNothing,
};

Detail lessThan(Detail detail) {
  return static_cast<Detail>(static_cast<int>(detail) + 1);
}

Detail moreThan(Detail detail) {
  return detail == Detail::kAll ? detail : static_cast<Detail>(static_cast<int>(detail) - 1);
}

/// Whether a problem is about what looks like a control and is none.
bool looksLikeOne(Code code) {
  return code == Code::kUnknownClass || code == Code::kUnknownType;
}

constexpr const char* kTooLarge = " left out: the page would be too large";

/// Some controls that share a line, and the problems behind it; or problems alone.
struct Part {
  std::size_t firstObject = 0;
  std::size_t objects = 0;
  std::size_t firstProblem = 0;
  std::size_t problems = 0;
};

/// A line with more controls goes on in another one: it would be slow to show.
constexpr std::size_t kMostInLine = 50;
constexpr std::size_t kLeftOutBytes = 250;  // what a sentence about it takes
constexpr std::size_t kSectionEnd = 20;
/// What is kept for each byte of the text to come, beyond what it brings.
constexpr std::size_t kKeptPerByte = 4;
constexpr std::size_t kEndless = static_cast<std::size_t>(-1);
/// A section with less room than this has messages alone.
constexpr std::size_t kTightSection = 700;

class SectionWriter {
 public:
  SectionWriter(HtmlText& out, const ReadDocument& read, DocumentSummary& summary,
                const SectionOptions& options, const std::function<void()>& partEnds)
      : out_(out),
        html_(out),
        read_(read),
        document_(read.check.document),
        text_(document_.content()),
        summary_(summary),
        options_(options),
        partEnds_(partEnds),
        begin_(out.size()),
        prefix_("d" + std::to_string(summary.number)) {}

  void write() {
    html_.begin("section").attribute("class", "document").attribute("id", prefix_);
    html_.attribute("aria-labelledby", prefix_ + "-name").text("");
    if (options_.share + kPageBytesPerByte * text_.size() < kTightSection) {
      detail_ = Detail::kMessages;
    }
    isTight_ = detail_ == Detail::kMessages;
    if (!options_.isAlone) writeHeading();
    if (!read_.check.failure.empty()) writeFailure();
    problemOffsets();
    for (const Object& object : read_.objects) {
      if (object.node == Object::kFailed) failed_.insert(object.pointer);
    }
    while (object_ != read_.objects.size() || problem_ != problems().size()) writePart();
    writeLeftOut();
    html_.end("section");
    out_ += '\n';
    partEnds_();
  }

 private:
  const std::vector<PlacedProblem>& problems() const { return read_.check.problems; }
  const Object& object(std::size_t index) const { return read_.objects[index]; }

  ControlView viewOf(const Object& object) {
    return ControlView(*read_.nodes[object.node].get(), kinds_);
  }

  std::string idOf(char what, std::size_t index) const {
    return prefix_ + '-' + what + std::to_string(index + 1);
  }

  std::size_t lineInInput(std::size_t line) const { return document_.line + line - 1; }

  void writeHeading() {
    html_.begin("h2").attribute("id", prefix_ + "-name").begin("bdi");
    html_.text(summary_.name).end("bdi").end("h2");
    html_.begin("p");
    if (isTight_) {
      html_.attribute("class", "note left-out").text("details left out");
    } else {
      html_.attribute("class", verdictClassOf(summary_)).text(verdictOf(summary_));
    }
    html_.end("p");
  }

  void writeFailure() {
    html_.begin("div").attribute("class", "problem error").attribute("id", idOf('p', 0));
    html_.attribute("data-code", "unreadable").begin("p").attribute("class", "message");
    html_.begin("strong").text("Error").end("strong").text(" ");
    html_.begin("span").attribute("dir", "auto").text(read_.check.failure).end("span");
    html_.end("p").end("div");
    summary_.links.push_back({1, true, 0, 0, read_.check.failure});
  }

  void problemOffsets() {
    Offsets offsets(text_);
    offsets_.reserve(problems().size());
    for (const PlacedProblem& placed : problems()) {
      offsets_.push_back(offsets.of(placed.place.begin));
    }
  }

  /// Takes what comes next in the text.
  Part nextPart() {
    Part part{object_, 0, problem_, 0};
    views_.clear();
    viewed_.clear();
    const auto takeProblems = [&](std::size_t end) {
      while (problem_ != problems().size() && offsets_[problem_] < end) ++problem_;
      part.problems = problem_ - part.firstProblem;
    };
    const bool problemIsNext =
        object_ == read_.objects.size() ||
        (problem_ != problems().size() && offsets_[problem_] < object(object_).begin);
    if (problemIsNext) {
      takeProblems(offsets_[problem_] + 1);
      return part;
    }
    const Object& first = object(object_++);
    if (first.node == Object::kFailed) {
      // What it holds comes behind it.
      const bool isLast = object_ == read_.objects.size();
      takeProblems(isLast ? first.end : std::min(first.end, object(object_).begin));
    } else {
      isContinued_ = std::exchange(goesOn_, false);
      keepView(part.firstObject);
      for (std::size_t next = nextInLine(first); next != read_.objects.size();
           next = nextInLine(first)) {
        goesOn_ = next - part.firstObject >= kMostInLine;
        if (goesOn_) break;
        keepView(next);
        object_ = next + 1;
      }
      takeProblems(object(object_ - 1).end);
    }
    part.objects = object_ - part.firstObject;
    return part;
  }

  void keepView(std::size_t index) {
    views_.push_back(viewOf(object(index)));
    viewed_.push_back(index);
  }

  /// The next control that stands in the line of the first one, behind such as failed; the number
  /// of objects where the line ends.
  std::size_t nextInLine(const Object& first) {
    const std::size_t none = read_.objects.size();
    const ControlView& before = views_.front();
    if (before.isTask() || !isElement(first)) return none;
    std::size_t index = object_;
    while (index != none && object(index).node == Object::kFailed) ++index;
    if (index == none) return none;
    const Object& next = object(index);
    if (parentOf(next.pointer) != parentOf(first.pointer)) return none;
    const ControlView view = viewOf(next);
    if (view.isTask() || view.code() != before.code()) return none;
    // What is wrong between controls of no line is told between them.
    if (before.code().empty() && problem_ != problems().size() && offsets_[problem_] < next.begin) {
      return none;
    }
    return index;
  }

  /// Whether an object stands in an array: a member has a colon before it.
  bool isElement(const Object& object) const {
    const std::size_t before = text_.substr(0, object.begin).find_last_not_of(" \t\r\n");
    return before != std::string_view::npos && text_[before] != ':';
  }

  std::size_t endOf(const Part& part) const {
    std::size_t end = 0;
    if (part.objects != 0) end = object(part.firstObject + part.objects - 1).end;
    if (part.problems != 0) end = std::max(end, offsets_[part.firstProblem + part.problems - 1]);
    return end;
  }

  std::size_t written() const { return left_ + out_.size() - begin_; }

  /// What may be written where so much of the text is shown, beside what is told of the rest.
  std::size_t allowed(std::size_t textEnd, std::size_t share) const {
    const bool isLast = object_ == read_.objects.size() && problem_ == problems().size() &&
                        leftOutControls_ + leftOutProblems_ == 0;
    const std::size_t all = share + kPageBytesPerByte * textEnd;
    return all - std::min(all, isLast ? kSectionEnd : kLeftOutBytes);
  }

  void writePart() {
    const Part part = nextPart();
    // What failed together with what it stands in has told nothing of its own.
    if (views_.empty() && part.problems == 0 && object(part.firstObject).records.empty()) return;
    const std::size_t end = endOf(part);
    const std::size_t mark = out_.size();
    const Part leftOut{0, leftOutControls_, 0, leftOutProblems_};
    // Details do not take the place of controls and problems that are to come.
    const std::size_t kept = std::min(options_.share / 4 * 3, kKeptPerByte * (text_.size() - end));
    const std::size_t limit = allowed(end, options_.share - kept);
    // Where there was no room, there will hardly be more than a little.
    if (!isTight_) detail_ = moreThan(detail_);
    const auto tryPart = [&](Detail detail, std::size_t room) {
      out_.truncate(mark);
      leftOutControls_ = leftOut.objects;
      leftOutProblems_ = leftOut.problems;
      detail_ = detail;
      room_ = room;
      writeLeftOut();
      writePart(part);
    };
    const Detail wanted = detail_;
    if (wanted == Detail::kAll) tryPart(wanted, kEndless);
    if (wanted != Detail::kAll || written() > limit) {
      for (Detail least = std::max(wanted, Detail::kNoFolds);; least = lessThan(least)) {
        if (least == Detail::kNothing) {
          out_.truncate(mark);
          detail_ = least;
          leftOutControls_ = leftOut.objects + views_.size();
          leftOutProblems_ = leftOut.problems + part.problems;
          return;
        }
        tryPart(least, 0);
        if (written() <= allowed(end, options_.share)) break;
      }
      // The rest of the room is for details of as many as it is enough for.
      if (detail_ == Detail::kNoFolds && wanted < Detail::kNoFolds && written() < limit) {
        tryPart(wanted, limit - written());
      }
    }
    for (std::size_t index = part.firstProblem;
         index != part.firstProblem + part.problems && summary_.links.size() != kMostLinks;
         ++index) {
      const auto& [problem, place] = problems()[index];
      summary_.links.push_back({index + 1, isError(problem.code), lineInInput(place.begin.line),
                                place.begin.column, problem.message});
    }
    const std::size_t size = out_.size();
    partEnds_();
    left_ += size - out_.size();
  }

  void writePart(const Part& part) {
    isWithoutDetails_ = false;
    if (detail_ == Detail::kMessages) {
      leftOutControls_ += views_.size();
      for (std::size_t index = 0; index != part.problems; ++index) {
        writeProblem(part.firstProblem + index);
      }
      return;
    }
    html_.begin("div").attribute("class", "part");
    if (views_.empty()) {
      // What is wrong says what it is.
    } else if (views_.front().isTask()) {
      writeTask(part.firstObject);
    } else {
      writeLine();
    }
    for (std::size_t index = 0; index != part.problems; ++index) {
      writeProblem(part.firstProblem + index);
    }
    for (std::size_t index = part.firstObject; index != part.firstObject + part.objects; ++index) {
      if (object(index).node == Object::kFailed) writeFailedFold(object(index));
    }
    if (isWithoutDetails_) {
      html_.begin("p").attribute("class", "note left-out").text("details").text(kTooLarge).end("p");
    }
    html_.end("div");
    out_ += '\n';
  }

  /// Writes what a part can do without, if there is room: with less and less detail, and from there
  /// on no more of the others either.
  template <typename Write>
  void writeDetails(const Write& write) {
    const std::size_t mark = out_.size();
    for (; detail_ < Detail::kNoFolds; detail_ = lessThan(detail_)) {
      write();
      const std::size_t size = out_.size() - mark;
      if (size <= room_) {
        room_ -= size;
        return;
      }
      out_.truncate(mark);
    }
    isWithoutDetails_ = true;
  }

  void writeFailedFold(const Object& failed) {
    if (failed.records.empty()) return;
    writeDetails([&] {
      html_.begin("details").begin("summary").text("what did not arrive, line ");
      html_.number(std::uint64_t{lineInInput(failed.line)}).end("summary");
      writeOrigin(failed);
      html_.end("details");
    });
  }

  /// The JSON of an object, and its records.
  void writeOrigin(const Object& object) {
    if (detail_ == Detail::kAll) {
      writeSource(object);
      writeRecords(object);
    } else {
      html_.begin("p").attribute("class", "note left-out");
      html_.text(object.records.empty() ? "JSON" : "JSON and records").text(kTooLarge).end("p");
    }
  }

  void writeLeftOut() {
    const std::size_t controls = std::exchange(leftOutControls_, 0);
    const std::size_t problems = std::exchange(leftOutProblems_, 0);
    if (controls + problems == 0) return;
    html_.begin("p").attribute("class", "note left-out");
    html_.text(counted(controls, "control") + " and " + counted(problems, "problem"));
    html_.text(kTooLarge).text("; tessel check tells all problems");
    html_.end("p");
    out_ += '\n';
  }

  void beginControl(std::size_t index, const ControlView& view, const char* element,
                    const char* cssClass) {
    html_.begin(element).attribute("class", cssClass).attribute("id", idOf('c', index));
    html_.attribute("data-kind", view.word());
    html_.attribute("data-pointer", object(index).pointer);
  }

  void writeTask(std::size_t index) {
    const ControlView& view = views_.front();
    beginControl(index, view, "div", "task");
    view.drawTask(html_, kinds_);
    html_.end("div");
    writeFold(index, view, {});
  }

  void writeLine() {
    const bool isAlone = views_.size() == 1;
    std::vector<Columns> columns;
    for (const ControlView& view : views_) columns.push_back(view.columns());
    const std::u16string_view code = views_.front().code();
    const std::vector<LinePiece> pieces = divideLine(code, columns);
    std::vector<std::string> notes;
    html_.begin("div").attribute("class", code.empty() ? "line codeless" : "line").begin("code");
    for (const LinePiece& piece : pieces) {
      if (piece.control == LinePiece::kText) {
        html_.begin("span").text(code.substr(piece.begin, piece.end - piece.begin)).end("span");
        continue;
      }
      const ControlView& view = views_[piece.control];
      beginControl(viewed_[piece.control], view, "span", "control");
      std::vector<std::string> own;
      view.draw(html_, idOf('c', viewed_[piece.control]) + "-value", own);
      html_.end("span");
      if (!code.empty()) noteColumns(piece, columns[piece.control], code.size(), own);
      for (std::string& note : own) {
        notes.push_back(isAlone ? std::move(note) : view.title() + ": " + note);
      }
    }
    html_.end("code").end("div");
    if (code.empty()) {
      notes.insert(notes.begin(),
                   isAlone ? R"(no line of code is set ("text" of the control))"
                           : R"(no line of code is set ("text" of each of these controls))");
    }
    if (isContinued_) notes.insert(notes.begin(), "continued");
    writeNotes(notes);
    for (const LinePiece& piece : pieces) {
      if (piece.control == LinePiece::kText) continue;
      writeFold(viewed_[piece.control], views_[piece.control], piece.covered);
    }
  }

  static void noteColumns(const LinePiece& piece, const Columns& columns, std::size_t length,
                          std::vector<std::string>& notes) {
    const auto range = [&] {
      return "columns " + std::to_string(*columns.start) + " to " + std::to_string(*columns.end);
    };
    if (piece.faults.missing) {
      notes.emplace_back(!columns.start && !columns.end ? "no columns are set"
                         : columns.start                ? "no end column is set"
                                                        : "no start column is set");
    }
    if (piece.faults.reversed) notes.push_back(range() + " end before they begin");
    if (piece.faults.beyond) {
      notes.push_back(range() + " go beyond the line, which ends at " + std::to_string(length));
    }
    if (piece.faults.overlap) notes.push_back(range() + " overlap those of another control");
  }

  void writeNotes(const std::vector<std::string>& notes) {
    if (notes.empty()) return;
    html_.begin("ul").attribute("class", "notes");
    for (const std::string& note : notes) {
      html_.begin("li").attribute("class", "note").attribute("dir", "auto").text(note);
    }
    html_.end("ul");
  }

  void writeFold(std::size_t index, const ControlView& view, std::u16string_view covered) {
    writeDetails([&] { writeWholeFold(index, view, covered); });
  }

  void writeWholeFold(std::size_t index, const ControlView& view, std::u16string_view covered) {
    const Object& folded = object(index);
    html_.begin("details").begin("summary").begin("b").text(view.name()).end("b");
    const std::string own = view.ownName();
    if (!own.empty()) html_.text(" ").begin("bdi").text(own).end("bdi");
    html_.text(" ").begin("span").attribute("class", "place").text("line ");
    html_.number(std::uint64_t{lineInInput(folded.line)}).end("span").end("summary");
    if (!covered.empty()) {
      const Columns columns = view.columns();
      html_.begin("p").attribute("class", "covers").text("covers columns ");
      html_.number(*columns.start).text(" to ").number(*columns.end).text(": ");
      html_.begin("code").text(covered).end("code").end("p");
    }
    writeProperties(html_, classes_, ElementView(*read_.nodes[folded.node].get()));
    writeOrigin(folded);
    html_.end("details");
  }

  void writeRecords(const Object& object) {
    if (object.records.empty()) return;
    html_.begin("ol").attribute("class", "log");
    for (const std::string& record : object.records) html_.begin("li").lines(record);
    html_.end("ol");
  }

  /// The lines of an object, with no more indentation than they have among themselves.
  void writeSource(const Object& object) {
    const auto indentOf = [](std::string_view line) {
      const auto isSpace = [](char character) { return character == ' ' || character == '\t'; };
      return static_cast<std::size_t>(std::find_if_not(line.begin(), line.end(), isSpace) -
                                      line.begin());
    };
    std::string_view left = text_.substr(object.begin, object.end - object.begin);
    std::size_t indent = 0;
    if (left.find('\n') != std::string_view::npos) {  // else its line may be endless
      const std::size_t lineBegin = text_.rfind('\n', object.begin) + 1;  // 0 where there is none
      indent = indentOf(text_.substr(lineBegin, object.begin - lineBegin));
    }
    const std::size_t first = lineInInput(object.line);
    const auto further = static_cast<std::size_t>(std::count(left.begin(), left.end(), '\n'));
    const std::size_t width = std::to_string(first + further).size();
    html_.begin("pre").attribute("class", "source");
    for (std::size_t line = first;; ++line) {
      const std::size_t length = std::min(left.size(), left.find('\n'));
      std::string_view shown = left.substr(0, length);
      if (!shown.empty() && shown.back() == '\r') shown.remove_suffix(1);
      if (left.data() != text_.data() + object.begin) {
        shown.remove_prefix(indentOf(shown.substr(0, indent)));
        html_.lineEnd();
      }
      const std::string number = std::to_string(line);
      html_.text(std::string(width - number.size(), ' ')).text(number).text(" | ").text(shown);
      if (length == left.size()) break;
      left.remove_prefix(length + 1);
    }
    html_.end("pre");
  }

  void writeProblem(std::size_t index) {
    const auto& [problem, place] = problems()[index];
    const bool error = isError(problem.code);
    const std::size_t line = lineInInput(place.begin.line);
    html_.begin("div").attribute("class", error ? "problem error" : "problem warning");
    html_.attribute("id", idOf('p', index)).attribute("data-code", codeName(problem.code));
    if (detail_ != Detail::kMessages) html_.attribute("data-pointer", problem.pointer);
    html_.begin("p").attribute("class", "message");
    html_.begin("strong").text(error ? "Error" : "Warning").end("strong").text(" ");
    html_.begin("span").attribute("class", "place").number(std::uint64_t{line}).text(":");
    html_.number(std::uint64_t{place.begin.column}).end("span").text(" ");
    html_.begin("span").attribute("dir", "auto").text(problem.message).end("span");
    if (looksLikeOne(problem.code) || failed_.count(problem.pointer) != 0) {
      html_.text(" ").begin("strong").text("did not arrive").end("strong");
    }
    if (detail_ != Detail::kMessages) {
      html_.text(" ").begin("code").text(codeName(problem.code)).end("code");
    }
    html_.end("p");
    if (detail_ != Detail::kMessages) {
      writeDetails([&] { writeExcerpt(index, line); });
    }
    html_.end("div");
  }

  void writeExcerpt(std::size_t index, std::size_t line) {
    const auto& [problem, place] = problems()[index];
    std::string excerpt;
    appendExcerpt(excerpt, text_, offsets_[index], line, place);
    excerpt.pop_back();
    const std::size_t caret = excerpt.find('^', excerpt.find('\n'));
    html_.begin("pre").attribute("class", "excerpt").attribute("tabindex", "0");
    html_.attribute("role", "group").attribute("aria-label", "line " + std::to_string(line));
    html_.lines(std::string_view(excerpt).substr(0, caret));
    html_.begin("b").text(std::string_view(excerpt).substr(caret)).end("b").end("pre");
    if (problem.hint) {
      html_.begin("p").attribute("class", "hint").attribute("dir", "auto").text(*problem.hint);
      html_.end("p");
    }
  }

  HtmlText& out_;
  HtmlWriter html_;
  const ReadDocument& read_;
  const Document& document_;
  std::string_view text_;
  DocumentSummary& summary_;
  const SectionOptions& options_;
  const std::function<void()>& partEnds_;
  std::size_t begin_;     // where the section began in the string
  std::size_t left_ = 0;  // what has been taken away from the string
  std::string prefix_;    // of ids
  ClassNames classes_;
  ControlKinds kinds_;
  std::vector<ControlView> views_;               // of the controls in a part
  std::vector<std::size_t> viewed_;              // which objects they are
  bool goesOn_ = false;                          // the line of the last part, in the next one
  bool isContinued_ = false;                     // the line of this part
  std::unordered_set<std::string_view> failed_;  // the pointers of what failed
  std::vector<std::size_t> offsets_;             // of the problems
  std::size_t object_ = 0;                       // the next one
  std::size_t problem_ = 0;
  Detail detail_ = Detail::kAll;   // of the last part, and of what comes next in it
  bool isTight_ = false;           // there is room for messages alone
  std::size_t room_ = 0;           // for details of a part
  bool isWithoutDetails_ = false;  // some of the part's were left out
  std::size_t leftOutControls_ = 0;
  std::size_t leftOutProblems_ = 0;
};

}  // namespace

DocumentSummary summaryOf(const ReadDocument& document, std::size_t number) {
  DocumentSummary summary;
  summary.name = document.check.document.name;
  summary.number = number;
  summary.failure = document.failure();
  summary.errors = document.check.errors + (document.check.failure.empty() ? 0 : 1);
  summary.warnings = document.check.warnings;
  ControlKinds kinds;
  const auto count = [&](const ControlView& view) {
    ++summary.kinds[view.name()];
    ++summary.arrived;
  };
  for (const auto& node : document.nodes) {
    const ControlView view(*node.get(), kinds);
    count(view);
    if (!view.isTask()) continue;
    for (const auto* child : view.children()) count(ControlView(*child, kinds));
  }
  const auto isNone = [](const PlacedProblem& placed) { return looksLikeOne(placed.problem.code); };
  const auto& problems = document.check.problems;
  summary.expected =
      summary.arrived + document.failedObjects + document.passedOver +
      static_cast<std::size_t>(std::count_if(problems.begin(), problems.end(), isNone));
  return summary;
}

std::string verdictOf(const DocumentSummary& summary) {
  if (!summary.failure.empty()) return "the document could not be read";
  if (summary.expected == 0) return "no controls";
  if (summary.arrived == summary.expected) {
    return "all " + counted(summary.expected, "control") + " arrived";
  }
  return std::to_string(summary.arrived) + " of " + counted(summary.expected, "control") +
         " arrived";
}

const char* verdictClassOf(const DocumentSummary& summary) {
  if (summary.errors != 0 || !summary.failure.empty()) return "verdict bad";
  return summary.warnings != 0 || summary.arrived != summary.expected ? "verdict odd" : "verdict";
}

std::string problemCountsOf(const DocumentSummary& summary) {
  std::string text;
  if (summary.errors != 0) text += counted(summary.errors, "error");
  if (summary.errors != 0 && summary.warnings != 0) text += ", ";
  if (summary.warnings != 0) text += counted(summary.warnings, "warning");
  return text;
}

void appendSection(HtmlText& out, const ReadDocument& document, DocumentSummary& summary,
                   const SectionOptions& options, const std::function<void()>& partEnds) {
  SectionWriter(out, document, summary, options, partEnds).write();
}

}  // namespace tessel_tool
