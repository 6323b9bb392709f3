#include "page/page_style.hpp"

namespace tessel_tool {

// Colours are named by what they are for, once for light and once for dark; each pair that text is
// read in has a contrast of 4.5 or more. What a colour says, a word or a shape says too.
const std::string_view kPageStyle = R"css(
:root {
  color-scheme: light dark;
  --paper: #faf9f6; --card: #fff; --ink: #20252b; --soft: #5a626b; --rule: #dcdad3; --code: #f3f2ed;
  --mark: #1d5b9e; --wash: #e9f0f8; --bad: #a3261d; --bad-wash: #fcf0ee; --odd: #7a5100;
  --odd-wash: #fbf4e2; --good: #1b6a3c;
  --sans: system-ui, "Segoe UI", Roboto, "Noto Sans", "Liberation Sans", sans-serif;
  --mono: ui-monospace, "Cascadia Mono", "SF Mono", "DejaVu Sans Mono", Consolas, monospace;
}
@media (prefers-color-scheme: dark) {
  :root {
    --paper: #15181c; --card: #1b1f24; --ink: #e3e5e8; --soft: #a4acb5; --rule: #363c44; --code: #22272d;
    --mark: #8dbaf0; --wash: #1f3149; --bad: #ff9f94; --bad-wash: #351f1d; --odd: #e7c16d;
    --odd-wash: #302816; --good: #86d19f;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; max-width: 66rem; padding: 2.5rem clamp(1rem, 4vw, 3rem) 5rem;
  background: var(--paper); color: var(--ink); font: 1rem/1.55 var(--sans);
  -webkit-text-size-adjust: 100%; overflow-wrap: break-word;
}
h1, h2 { margin: 0; line-height: 1.2; font-weight: 650; letter-spacing: -.01em; overflow-wrap: anywhere; }
h1 { font-size: clamp(1.2rem, .85rem + 2vw, 2rem); }
h2 { font-size: 1.3rem; }
p { margin: 0; }
code, pre { font-family: var(--mono); }
a { color: var(--mark); text-underline-offset: .18em; text-decoration-thickness: 1px; }
:focus-visible { outline: 2px solid var(--mark); outline-offset: 2px; }

header {
  display: grid; grid-template-columns: fit-content(22rem) 1fr; gap: 1.5rem 3.5rem;
  padding-bottom: 2rem; border-bottom: 1px solid var(--rule);
}
h1, .contents ~ .problems { grid-column: 1 / -1; }
nav { min-width: 0; font-size: .925rem; }
.verdict { display: flex; gap: .6em; align-items: baseline; font-size: 1.15rem; font-weight: 600; }
.verdict::before { content: "\2713"; color: var(--good); }
.verdict.bad::before { content: "\2715"; color: var(--bad); }
.verdict.odd::before { content: "\25B2"; color: var(--odd); font-size: .8em; }
.counts { color: var(--soft); }
.kinds { margin-top: 1rem; border-collapse: collapse; font-size: .925rem; }
.kinds :is(th, td) { padding: .1rem 1.5rem .1rem 0; text-align: start; font-weight: 400; }
.kinds thead th { color: var(--soft); font-size: .8125rem; }
.kinds tr > :last-child { text-align: end; padding-inline-end: 0; font-variant-numeric: tabular-nums; }
nav h2 { font-size: .8125rem; font-weight: 600; color: var(--soft); letter-spacing: 0; }
nav ol { list-style: none; margin: .4rem 0 0; padding: 0; }
nav li { padding: .1rem 0; }
nav a { display: inline-block; min-height: 24px; }
nav .what { color: var(--soft); }
nav details { margin: .4rem 0 0; }

.document { padding-top: 1.75rem; }
.document + .document { margin-top: 2.5rem; border-top: 1px solid var(--rule); }
.document > .verdict { margin: .3rem 0 1rem; font-size: 1rem; }
.part { margin: 0 0 1.4rem; content-visibility: auto; contain-intrinsic-size: auto 7rem; }

.line {
  overflow-x: auto; padding: .55rem .9rem; border: 1px solid var(--rule); border-radius: .5rem;
  background: var(--card); scroll-padding: 1rem;
}
.line > code {
  display: flex; align-items: center; width: max-content; min-width: 100%; min-height: 2.1rem;
  direction: ltr; white-space: pre; font-size: .9375rem;
}
.line > code > span:not(.control) { unicode-bidi: isolate; }
.codeless > code { gap: .6rem; flex-wrap: wrap; width: auto; white-space: normal; }
.codeless { border-style: dashed; }
.control {
  display: inline-flex; align-items: center; gap: .55rem; margin: .1rem .15rem; padding: .15rem .55rem;
  border-radius: .4rem; background: var(--wash); box-shadow: inset 0 0 0 1px var(--mark);
  font: .875rem/1.4 var(--sans); max-width: 60rem;
}
.control:has(> button) { padding: 0; background: none; box-shadow: none; }
.control[data-kind=control] { background: none; box-shadow: inset 0 0 0 1px var(--soft); }
.control label, .range { display: inline-flex; align-items: center; gap: .5rem; }
.control :is(input, select, button) { font: inherit; color: inherit; accent-color: var(--mark); min-height: 24px; }
.control button {
  padding: .2rem .8rem; border: 1px solid var(--mark); border-radius: .4rem; background: var(--wash);
  color: var(--mark); font-weight: 600; cursor: pointer;
}
.control button:active { transform: translateY(1px); }
.control :is(select, [type=text], [type=number], [type=date]) {
  padding: .1rem .35rem; border: 1px solid var(--soft); border-radius: .3rem; background: var(--card);
}
.control [type=range] { width: 8rem; min-height: 24px; }
.control [type=checkbox] { width: 1.1rem; min-width: 24px; height: 1.1rem; margin: 0; }
.control [type=color] { width: 2.4rem; height: 1.6rem; padding: 0; border: 1px solid var(--soft); background: none; }
.control [type=number] { width: 6.5rem; }
.control [type=file] { max-width: 14rem; }
.control [role=switch] {
  appearance: none; width: 2.2rem; height: 1.25rem; min-height: 0; border: 1px solid var(--soft);
  border-radius: 1rem; background: var(--card); cursor: pointer;
}
.control [role=switch]::before {
  content: ""; display: block; width: .85rem; height: .85rem; margin: .13rem; border-radius: 50%;
  background: var(--soft);
}
.control [role=switch]:checked { background: var(--mark); border-color: var(--mark); }
.control [role=switch]:checked::before { background: var(--card); margin-inline-start: 1.05rem; }
.unnamed { font-style: italic; }
.value { font-family: var(--mono); font-size: .8125rem; white-space: pre-wrap; }
.value::before { content: "= "; color: var(--soft); }
.control .blank { accent-color: var(--soft); opacity: .75; }
.control [type=color].blank { border-style: dashed; }
.blank::-webkit-color-swatch { visibility: hidden; }
.blank::-moz-color-swatch { visibility: hidden; }
.format { font-family: var(--mono); }
.scale, .format { color: var(--soft); font-size: .8125rem; font-variant-numeric: tabular-nums; }

.task {
  padding: .8rem 1rem; border: 1px solid var(--rule); border-inline-start: .3rem solid var(--mark);
  border-radius: .5rem; background: var(--card);
}
.task .task { margin-top: .7rem; background: var(--paper); }
.task dl { display: flex; flex-wrap: wrap; gap: .2rem 1.6rem; margin: .4rem 0 0; font-size: .875rem; }
.task dl div { display: flex; gap: .5em; }
.task dt { color: var(--soft); }
.task dd { margin: 0; overflow-wrap: anywhere; }
.task pre { margin: .6rem 0 0; font-size: .875rem; white-space: pre-wrap; overflow-wrap: anywhere; }

.notes { list-style: none; margin: .4rem 0 0; padding: 0; }
.note { color: var(--soft); font-size: .875rem; }
.note::before { content: "\2192\00A0"; }
.left-out { margin-top: .4rem; }

details { display: inline-block; margin: .35rem 1.4rem 0 0; vertical-align: top; font-size: .875rem; }
details[open] { display: block; margin-inline-end: 0; }
summary { display: inline-block; min-height: 24px; padding: .1rem 0; color: var(--soft); cursor: pointer; }
summary::before { content: "\25B8"; display: inline-block; width: 1.1em; }
[open] > summary::before { content: "\25BE"; }
summary b { font-weight: 600; color: var(--ink); }
summary bdi { color: var(--ink); overflow-wrap: anywhere; }
summary .place { margin-inline-start: .5em; }
summary::-webkit-details-marker { display: none; }
.place { color: var(--soft); font-variant-numeric: tabular-nums; }
.covers { margin: .3rem 0; }
.covers code { padding: .1rem .3rem; border-radius: .25rem; background: var(--code); overflow-wrap: anywhere; }
.properties { margin: .5rem 0; border-collapse: collapse; width: 100%; }
.properties :is(th, td) {
  padding: .18rem .9rem .18rem 0; border-bottom: 1px solid var(--rule); text-align: start;
  vertical-align: top; font-weight: 400;
}
.properties thead th { color: var(--soft); font-size: .8125rem; }
.properties td { color: var(--soft); }
.properties td:last-child { color: var(--ink); font-family: var(--mono); overflow-wrap: anywhere; }
.properties .unset { color: var(--soft) !important; font-family: inherit !important; font-style: italic; }
.level1 th { padding-inline-start: 1.2rem; }
.level2 th { padding-inline-start: 2.4rem; }
.level3 th { padding-inline-start: 3.6rem; }
.source, .excerpt {
  margin: .5rem 0; padding: .6rem .8rem; border-radius: .4rem; background: var(--code);
  font-size: .8125rem; line-height: 1.5;
}
.source { white-space: pre-wrap; overflow-wrap: anywhere; }
.excerpt { overflow-x: auto; white-space: pre; }
.log { margin: .5rem 0; padding-inline-start: 2.4rem; font-family: var(--mono); font-size: .8125rem; }
.log li { white-space: pre-wrap; overflow-wrap: anywhere; }

.problem {
  margin-top: .6rem; padding: .65rem .9rem; border-radius: .5rem; scroll-margin: 1rem;
  border-inline-start: .3rem solid var(--bad); background: var(--bad-wash);
}
.problem.warning { border-inline-start: .3rem dashed var(--odd); background: var(--odd-wash); }
.problem:target { outline: 2px solid var(--mark); outline-offset: 2px; }
.problem strong { color: var(--bad); }
.problem strong::before { content: "\2715\00A0"; }
.warning strong { color: var(--odd); }
.warning strong::before { content: "\25B2\00A0"; font-size: .8em; }
.message { overflow-wrap: anywhere; }
.message code { color: var(--soft); font-size: .8125rem; white-space: nowrap; }
.problem .excerpt { background: var(--card); }
.excerpt b { color: var(--bad); }
.warning .excerpt b { color: var(--odd); }
.hint { font-size: .925rem; }
.hint::before { content: "\2192\00A0"; color: var(--soft); }

@media (max-width: 48rem) {
  header { grid-template-columns: minmax(0, 1fr); gap: 1.1rem; }
}
@media (max-width: 30rem) {
  body { padding-top: 1.5rem; }
  .line { padding: .4rem .6rem; }
  .properties { table-layout: fixed; font-size: .75rem; }
  .properties :is(th, td) { padding-inline-end: .4rem; overflow-wrap: anywhere; }
  .properties thead th { width: 28%; }
  .properties thead th:first-child { width: 40%; }
  .properties thead th:last-child { width: auto; }
  .level1 th { padding-inline-start: .5rem; }
  .level2 th { padding-inline-start: 1rem; }
  .level3 th { padding-inline-start: 1.5rem; }
}
@media print {
  body { max-width: none; padding: 0; background: none; font-size: 10pt; }
  .part { content-visibility: visible; break-inside: avoid; }
  .line, .excerpt { overflow: visible; }
  .line > code { display: block; width: auto; white-space: pre-wrap; overflow-wrap: anywhere; }
  .excerpt { white-space: pre-wrap; overflow-wrap: anywhere; }
  .control, .control label { flex-wrap: wrap; }
  .control, .control :is(label, select, input) { min-width: 0; max-width: 100%; }
  .problem, .task, .control { border-color: currentColor; print-color-adjust: exact; }
  nav a { color: inherit; }
}
)css";

}  // namespace tessel_tool
