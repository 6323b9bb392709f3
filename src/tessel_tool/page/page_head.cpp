#include "page/page_head.hpp"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "page/html_writer.hpp"
#include "page/page_style.hpp"
#include "text_form.hpp"

namespace tessel_tool {

namespace {

constexpr std::size_t kOpenLinks = 12;  // a longer list is folded
constexpr std::size_t kEndOfList = 500;

class HeadWriter {
 public:
  HeadWriter(HtmlText& out, const PageContents& contents, std::size_t room)
      : out_(out), html_(out), contents_(contents), end_(out.size() + room) {}

  void write() {
    writeDocumentHead();
    html_.begin("body").begin("header").begin("h1");
    if (contents_.isAlone) html_.attribute("id", "d1-name");
    html_.begin("bdi").text(title()).end("bdi").end("h1");
    writeSummary();
    if (!contents_.isAlone) writeContents();
    writeProblems();
    html_.end("header").begin("main").text("");
  }

 private:
  std::string title() const {
    if (contents_.isAlone) return contents_.total.name;
    return counted(contents_.read, contents_.isOfLines ? "line" : "document");
  }

  void writeDocumentHead() {
    html_.doctype().begin("html").attribute("lang", "en").begin("head");
    html_.begin("meta").attribute("charset", "utf-8");
    html_.begin("meta").attribute("http-equiv", "Content-Security-Policy");
    html_.attribute("content",
                    "default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; "
                    "form-action 'none'");
    html_.begin("meta").attribute("name", "viewport");
    html_.attribute("content", "width=device-width, initial-scale=1");
    html_.begin("meta").attribute("name", "color-scheme").attribute("content", "light dark");
    html_.begin("title").text(title() + " \xE2\x80\x93 controls").end("title");
    html_.style(kPageStyle).end("head");
    out_ += '\n';
  }

  std::string verdict() const {
    if (contents_.isAlone || contents_.unreadable == 0) return verdictOf(contents_.total);
    std::string unreadable =
        std::to_string(contents_.unreadable) + " of " + title() + " could not be read";
    if (contents_.unreadable == contents_.read) return unreadable;
    return unreadable + "; in the others " + verdictOf(contents_.total);
  }

  void writeSummary() {
    const DocumentSummary& total = contents_.total;
    html_.begin("div").attribute("class", "summary");
    html_.begin("p").attribute("class", verdictClassOf(total)).text(verdict()).end("p");
    std::string counts = problemCountsOf(total);
    if (!contents_.isAlone && contents_.failed != 0) {
      counts += (counts.empty() ? "" : "; ") +
                counted(contents_.failed, contents_.isOfLines ? "line" : "document") + " failed";
    }
    if (contents_.isStopped) {
      counts +=
          "; stopped at the first error: nothing after it was imported, and only problems are "
          "told of it";
    }
    if (!counts.empty()) html_.begin("p").attribute("class", "counts").text(counts).end("p");
    const std::size_t lost = total.expected - total.arrived;
    if (!total.kinds.empty() || lost != 0) {
      html_.begin("table").attribute("class", "kinds").begin("thead").begin("tr");
      html_.begin("th").text("kind").begin("th").text("controls").begin("tbody");
      for (const auto& [name, count] : total.kinds) {
        html_.begin("tr").begin("th").text(name).begin("td").number(std::uint64_t{count});
      }
      if (lost != 0) {
        html_.begin("tr").begin("th").text("not arrived").begin("td").number(std::uint64_t{lost});
      }
      html_.end("table");
    }
    html_.end("div");
    out_ += '\n';
  }

  bool isFull() const { return out_.size() + kEndOfList > end_; }

  void writeMore(std::size_t count, const char* what, const char* which = "") {
    if (count == 0) return;
    html_.begin("p").attribute("class", "note").text("and " + counted(count, what)).text(which);
    html_.end("p");
  }

  void writeContents() {
    if (contents_.documents.empty() && contents_.withWarnings == 0) return;
    html_.begin("nav").attribute("class", "contents").attribute("aria-label", "Documents");
    html_.begin("h2").text(contents_.isOfLines ? "Lines" : "Documents").end("h2").begin("ol");
    std::size_t listed = 0;
    // Half of the room is for the problems.
    const std::size_t end = out_.size() + (end_ - std::min(end_, out_.size())) / 2;
    for (; listed != contents_.documents.size(); ++listed) {
      const std::size_t mark = out_.size();
      const DocumentSummary& summary = contents_.documents[listed];
      html_.begin("li");
      const bool isLinked = contents_.hasSection[listed];
      if (isLinked) html_.begin("a").attribute("href", "#d" + std::to_string(summary.number));
      html_.begin("bdi").text(summary.name).end("bdi");
      if (isLinked) html_.end("a");
      html_.text(" ").begin("span").attribute("class", "what").text(verdictOf(summary));
      const std::string counts = problemCountsOf(summary);
      if (!counts.empty()) html_.text("; " + counts);
      html_.end("span");
      if (out_.size() + kEndOfList > end) {
        out_.truncate(mark);
        break;
      }
    }
    html_.end("ol");
    const std::size_t more = contents_.documents.size() - listed + contents_.unlisted;
    writeMore(more, contents_.isOfLines ? "more line" : "more document",
              contents_.isOfLines ? " that failed or lost a control" : "");
    if (contents_.withWarnings != 0) {
      html_.begin("p").attribute("class", "note");
      html_.text(counted(contents_.withWarnings, "line")).text(" with warnings only not shown");
      html_.end("p");
    }
    html_.end("nav");
    out_ += '\n';
  }

  void writeProblems() {
    const std::size_t all = contents_.total.errors + contents_.total.warnings;
    std::size_t links = 0;
    for (const DocumentSummary& summary : contents_.documents) links += summary.links.size();
    if (links == 0) return;
    html_.begin("nav").attribute("class", "problems").attribute("aria-label", "Problems");
    const bool isFolded = links > kOpenLinks;
    if (isFolded) {
      html_.begin("details").begin("summary").text(counted(all, "problem")).end("summary");
    } else {
      html_.begin("h2").text("Problems").end("h2");
    }
    html_.begin("ol");
    std::size_t written = 0;
    bool full = false;
    for (std::size_t index = 0; index != contents_.documents.size() && !full; ++index) {
      if (!contents_.hasSection[index]) continue;
      const DocumentSummary& summary = contents_.documents[index];
      for (const DocumentSummary::Link& link : summary.links) {
        const std::size_t mark = out_.size();
        writeLink(summary, link);
        full = written == kMostLinks || isFull();
        if (full) {
          out_.truncate(mark);
          break;
        }
        ++written;
      }
    }
    html_.end("ol");
    writeMore(all - written, "more problem");
    if (isFolded) html_.end("details");
    html_.end("nav");
    out_ += '\n';
  }

  void writeLink(const DocumentSummary& summary, const DocumentSummary::Link& link) {
    const std::string prefix = "#d" + std::to_string(summary.number) + "-p";
    html_.begin("li").begin("a").attribute("href", prefix + std::to_string(link.problem));
    if (!contents_.isAlone) html_.begin("bdi").text(summary.name).end("bdi").text(" ");
    html_.text(link.isError ? "Error" : "Warning");
    if (link.line != 0) {
      html_.text(" " + std::to_string(link.line) + ':' + std::to_string(link.column));
    }
    html_.end("a").text(" ").begin("span").attribute("class", "what").attribute("dir", "auto");
    html_.text(link.message).end("span");
  }

  HtmlText& out_;
  HtmlWriter html_;
  const PageContents& contents_;
  std::size_t end_;  // of what it may hold
};

}  // namespace

void appendPageHead(HtmlText& out, const PageContents& contents, std::size_t room) {
  HeadWriter(out, contents, room).write();
}

void appendPageEnd(HtmlText& out) {
  HtmlWriter(out).end("main").end("body").end("html");
  out += '\n';
}

}  // namespace tessel_tool
