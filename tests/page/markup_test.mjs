// The page's markup, read by a parser that tells every error that HTML knows, and what is in it.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { test } from "node:test";
import { answerOf, manyControls, pageOf, place, root, written } from "./documents.mjs";
import { differences, documentOf, harmless, room, shown, smallDocumentOf } from "./hostile.mjs";
import { batches, payloads } from "./payloads.mjs";
import { elementsOf, hasClass, parsed, textOf, withClass } from "./tree.mjs";

const examples = ["examples/analysis.json", "examples/controls.json", "examples/mistakes.json"];

function filesIn(folder) {
  return fs.readdirSync(folder).sort().map((name) => path.join(folder, name));
}

/// Reads a page, which must be without an error, complete in itself, and without a script.
function read(html) {
  const { tree, errors } = parsed(html);
  assert.deepEqual(errors.slice(0, 5), []);
  const elements = [...elementsOf(tree)];
  const ids = elements.map(({ attributes }) => attributes.id).filter((id) => id !== undefined);
  assert.equal(new Set(ids).size, ids.length, "an id is there twice");
  const known = new Set(ids);
  for (const { name, attributes } of elements) {
    assert.ok(!["script", "link", "form", "iframe", "object", "embed", "base", "img", "svg", "#comment"].includes(name), name);
    for (const [attribute, value] of Object.entries(attributes)) {
      assert.ok(!attribute.startsWith("on") && !["src", "srcset", "action", "formaction", "background"].includes(attribute), attribute);
      if (attribute === "href") assert.ok(value.startsWith("#") && known.has(value.slice(1)), value);
      if (["for", "list"].includes(attribute)) assert.ok(known.has(value), `${attribute}=${value}`);
      if (["aria-labelledby", "aria-describedby", "aria-controls"].includes(attribute)) {
        for (const id of value.split(" ")) assert.ok(known.has(id), `${attribute}=${value}`);
      }
    }
  }
  const policies = elements.filter(({ attributes }) => attributes["http-equiv"] === "Content-Security-Policy");
  assert.deepEqual(policies.map(({ attributes }) => attributes.content),
    ["default-src 'none'; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'"]);
  const style = elements.filter(({ name }) => name === "style").map(textOf);
  assert.equal(style.length, 1);
  assert.doesNotMatch(style[0], /url\(|@import|https?:/);
  return tree;
}

test("pages of many documents are without an error, and the same bytes each time", async (t) => {
  const golden = path.join(place, "documents/golden");
  fs.rmSync(golden, { recursive: true, force: true });
  execFileSync("python3", [path.join(place, "golden_inputs.py"), path.join(root, "tests/tessel_tool/golden"), golden]);
  const goldenInputs = filesIn(golden);
  assert.ok(goldenInputs.length > 15, `${goldenInputs.length} golden inputs`);
  const seeds = ["fuzz_import_text", "fuzz_check_text"].flatMap((name) => filesIn(path.join(root, "fuzz/corpus", name)));
  const rows = [
    ...examples.map((file) => [file, file]),
    ["several documents", ...examples],
    ["the log", "--log", ...examples],
    ["lines", "--ndjson", "examples/buttons.ndjson"],
    ["lines that fail", "--ndjson", written("lines.ndjson",
      payloads.map((text) => documentOf(text).trim().replaceAll("\n", " ")).join("\n"))],
    ["what golden tests read", ...goldenInputs],
    ["what golden tests read, line by line", "--ndjson", ...goldenInputs],
    ["what fuzzing began with", ...seeds],
    ["a file that is not there", "examples/nowhere.json"],
    ["a folder", "examples"],
    ["no control", written("none.json", "{}")],
    ["an empty file", written("empty.json", "")],
    ["an empty file of lines", "--ndjson", written("empty.json", "")],
    ["no UTF-8", written("latin1.json", Buffer.from('{"a\xe4\xff": "\xc3"}', "latin1"))],
    ["1,000 levels", written("deep.json", "[".repeat(1000) + "]".repeat(1000))],
    ["1,001 levels", written("deeper.json", "[".repeat(1001) + "]".repeat(1001))],
  ];
  for (const [says, ...words] of rows) {
    await t.test(says, () => {
      const html = pageOf(...words);
      read(html);
      assert.ok(html === pageOf(...words), "two runs differ");
    });
  }
});

/// The examples with something taken away, doubled or put in at some places, the same in each run.
function* spoiltTexts(count) {
  let state = 1;
  const below = (limit) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * limit);
  };
  const texts = examples.map((file) => fs.readFileSync(path.join(root, file), "utf8"));
  const pieces = [...payloads.map((text) => text.slice(0, 100)), ..."[]{}\",:01"];
  for (let number = 0; number !== count; ++number) {
    let text = texts[number % texts.length];
    for (let changes = 1 + below(4); changes !== 0; --changes) {
      const begin = below(text.length);
      const end = begin + below(30);
      text = text.slice(0, begin) + (below(2) ? pieces[below(pieces.length)] : text.slice(begin, end).repeat(2 * below(2))) + text.slice(end);
    }
    yield text;
  }
}

test("any text gives a page without an error", () => {
  const files = [...spoiltTexts(1000)].map((text, number) => written(`spoilt/${number}.json`, text));
  assert.equal(withClass(read(pageOf(...files)), "document").length, files.length);
});

/// What is no character has a replacement in excerpts, so that the caret stays under its place.
const withoutNoncharacters = (text) => text.replace(/\p{Noncharacter_Code_Point}/gu, "\ufffd");

/// The problems of each document, as `tessel check` tells them.
function toldProblems(files) {
  const excerpts = [];
  const lines = answerOf("check", ...files).split("\n");
  lines.forEach((line, at) => /^ *\d+ \| /.test(line) && excerpts.push(`${line}\n${lines[at + 1]}`));
  const documents = answerOf("check", "--format", "json", ...files).split(/^(?=\{)/m).map((text) => JSON.parse(text));
  const told = documents.map(({ problems }) => problems.map(({ code, line, column, message, hint }) => ({
    code, message: shown(message), place: `${line}:${column}`, hint: shown(hint ?? ""),
    excerpt: withoutNoncharacters(excerpts.shift()),
  })));
  assert.deepEqual(excerpts, []);
  return told;
}

/// The problems that a section of the page shows.
const shownProblems = (section) => withClass(section, "problem").map((problem) => {
  const partOf = (name) => withClass(problem, name).map(textOf).join("");
  const code = problem.attributes["data-code"];
  const message = partOf("message").replace(/^(Error|Warning) /, "").slice(0, -` ${code}`.length).replace(/ did not arrive$/, "");
  return { code, message: message.slice(partOf("place").length + 1), place: partOf("place"), hint: partOf("hint"), excerpt: partOf("excerpt") };
});

/// A lone surrogate makes a document that cannot be read.
const isWellFormed = (text) => !/\p{Surrogate}/u.test(text);

const assertDiffersBy = (text, harmlessTree, tree) =>
  assert.deepEqual(differences(harmlessTree, tree, text).slice(0, 5), [], text.slice(0, 100));

/// The files with these documents, and their sections of a page.
function sectionsOf(documents, ...words) {
  const files = documents.map((document, index) => written(`hostile/${index}.json`, document));
  return { files, sections: withClass(read(pageOf(...words, ...files)), "document") };
}

test("hostile texts stay texts, in every place where somebody can write", async (t) => {
  assert.ok(payloads.length >= 200);
  assert.equal(new Set(payloads).size, payloads.length);
  for (const { names, texts } of batches()) {
    await t.test(names, () => {
      const expected = sectionsOf(texts.map((text) => documentOf(harmless(text), text)));
      const { files, sections } = sectionsOf(texts.map((text) => documentOf(text)));
      const told = toldProblems(files);
      texts.forEach((text, index) => {
        const section = sections[index];
        assert.deepEqual(withClass(section, "left-out"), []);
        if (isWellFormed(text)) assertDiffersBy(text, expected.sections[index], section);
        assert.deepEqual(shownProblems(section), told[index], text);
      });
    });
  }
});

test("hostile texts stay texts in the log", () => {
  const texts = payloads.filter(isWellFormed);
  const expected = sectionsOf(texts.map((text) => smallDocumentOf(harmless(text), text)), "--log").sections;
  const { sections } = sectionsOf(texts.map((text) => smallDocumentOf(text)), "--log");
  assert.ok(withClass(sections[0], "log").length > 0);
  texts.forEach((text, index) => assertDiffersBy(text, expected[index], sections[index]));
});

test("hostile texts stay texts as names of files and as documents that cannot be read", () => {
  const nameOf = (text, number) => `${number} ${text.replaceAll("/", "\u2215").replaceAll("\0", "").slice(0, 50)}`;
  fs.rmSync(path.join(place, "documents/names"), { recursive: true, force: true });
  const files = payloads.map((text, number) => written(`names/${nameOf(text, number)}`, `${room}{"a": ${text}`));
  const tree = read(pageOf(...files));
  const sections = withClass(tree, "document");
  const told = toldProblems(files);
  assert.equal(sections.length, payloads.length);
  const contents = withClass(tree, "contents").map(textOf).join("");
  sections.forEach((section, number) => {
    const name = shown(nameOf(payloads[number], number));
    assert.ok(textOf(section.children[0]).endsWith(name), `${textOf(section.children[0])} instead of ${name}`);
    assert.ok(contents.includes(name), name);
    assert.deepEqual(shownProblems(section), told[number]);
    const skeleton = [...elementsOf(section)].filter((element) => !hasClass(element, "hint")).map((element) => element.name).join(" ");
    assert.equal(skeleton, "section h2 bdi p div div p strong span span code pre b");
  });
});

test("a page is at most 100 KB and eight times its documents", async (t) => {
  const rows = [
    ...examples.map((file) => [file, file]),
    ["all examples", ...examples],
    ["20,000 controls", written("many.json", manyControls(20000))],
    ["20,000 of the smallest controls", written("small.json", `[${Array(20000).fill('{"className":"button"}')}]`)],
    ["20,000 controls that fail", written("failing.json", `[${Array(20000).fill('{"className":"button","text":7}')}]`)],
  ];
  for (const [says, ...files] of rows) {
    await t.test(says, () => {
      const read = files.reduce((bytes, file) => bytes + fs.statSync(path.resolve(root, file)).size, 0);
      const made = Buffer.byteLength(pageOf(...files));
      t.diagnostic(`${says}: ${made} bytes, ${(made / read).toFixed(1)} times the documents' ${read}`);
      assert.ok(made <= 100 * 1024 + 8 * read, `${made} bytes of ${read}`);
    });
  }
});
