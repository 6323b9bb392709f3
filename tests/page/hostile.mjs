// Documents in which every text that somebody can write is the same one, and what a page has to show of it.

import fs from "node:fs";
import path from "node:path";
import { root } from "./documents.mjs";
import { hasClass } from "./tree.mjs";

/// A control covers the second character of its code.
function columnsIn(text) {
  const [first, second] = text;
  return { startColumn: first.length, endColumn: first.length + (second ?? "?").length };
}

const numbers = { minimum: 0, maximum: 10, step: 1, defaultValue: 3, numOfCodeLines: 1 };

const schema = JSON.parse(fs.readFileSync(path.join(root, "schema/tessel.schema.json"), "utf8"));

/// What the schema describes, with the text wherever one may stand.
function valueOf({ const: word, type, properties, items }, key, text, columns) {
  if (word !== undefined) return word;
  if (properties) {
    return Object.fromEntries(Object.entries(properties).map(([name, kind]) => [name, valueOf(kind, name, text, columns)]));
  }
  if (type === "array") {
    const item = valueOf(items, key, text, columns);
    return [items.properties?.className ? { ...item, className: "LumoAppIntegratedInlineNode" } : item];
  }
  if (type === "number") return { ...numbers, ...columns }[key];
  return type === "boolean" ? true : text;
}

const ofEveryKind = (text, columns) => Object.values(schema.$defs)
  .filter(({ properties }) => properties?.className?.const)
  .map((kind) => valueOf(kind, "", text, columns));

/// The same control with a number where a text is wanted.
function broken(control) {
  const copy = structuredClone(control);
  copy.context.data.text = 7;
  return copy;
}

/// So much room that a page leaves nothing out of what it has to show of the rest.
export const room = `${" ".repeat(50000)}\n`;

/// A document in which the text stands in every place: in each property of every kind, in the id and the
/// source of one that fails, in the name of a class, a type, an unknown member and of what holds it all.
/// @param like the text that the columns are for.
export function documentOf(text, like = text) {
  const kinds = ofEveryKind(text, columnsIn(like));
  const rows = [
    ...kinds,
    broken(kinds[0]),
    { [text]: text, ...kinds[0] },
    { className: text, context: { type: text, data: { text } } },
    { className: "LumoControlNode", controlId: text, context: { type: text } },
    { [text]: { className: "button", text: 7 } },
  ].map((row) => JSON.stringify(row));
  const name = JSON.stringify(text);
  return `${room}{"className": ${name}, ${name}: [\n${rows.join(",\n")}\n]}\n`;
}

/// A document with one control, of which there are few records in the log.
export const smallDocumentOf = (text, like = text) =>
  `${room}${JSON.stringify(ofEveryKind(text, columnsIn(like))[0])}`;

/// A text as the tool shows it to people: what would not show but act is written as JSON's escapes, and so
/// is what no HTML may hold.
const unsafe = /[\0-\x1f\x7f-\x9f\u2028-\u202e\u2066-\u2069]|\p{Noncharacter_Code_Point}/gu;
const short = { "\b": "\\b", "\t": "\\t", "\n": "\\n", "\f": "\\f", "\r": "\\r" };
const escaped = (character) => short[character] ??
  character.split("").map((unit) => `\\u${unit.charCodeAt(0).toString(16).padStart(4, "0")}`).join("");
const wellFormed = (text) => Buffer.from(text, "utf8").toString("utf8"); // lone surrogates are replaced
export const shown = (text) => wellFormed(text).replace(unsafe, escaped);
const quoted = (text) => shown(wellFormed(text).replace(/["\\]/g, "\\$&"));
const source = (text) => shown(JSON.stringify(text).slice(1, -1));
const inPointers = (text) => shown(text.replaceAll("~", "~0").replaceAll("/", "~1"));
const inLines = (text) => text.split("\n").map(shown).join("\n");

/// Which of these forms a text in an element has.
function formOf(ancestors, attribute) {
  if (attribute === "data-pointer") return inPointers;
  if (ancestors.some((element) => ["source", "log"].some((name) => hasClass(element, name)))) return source;
  if (ancestors.some((element) => hasClass(element, "properties"))) return quoted;
  return ancestors.some(({ name }) => name === "pre") ? inLines : shown;
}

/// The letters of harmless texts, none of which a page has of its own: one that can be seen, one that
/// cannot, and of each one that is written as an escape.
const letters = ["\ua64e", "\u200b", "\ufdd1", "\x86"];
const isBlank = (text) => /^[\p{White_Space}\p{Default_Ignorable_Code_Point}\0-\x1f\x7f-\x9f\u2066-\u2069]*$/u.test(text);

/// A text as long as another, of which a page shows the same, but nothing that HTML or CSS could mean.
export const harmless = (text) => letters[(isBlank(text) ? 1 : 0) + (shown(text) === wellFormed(text) ? 0 : 2)].repeat(text.length);

const shownLetters = letters.map(shown);
const run = new RegExp(`((?:${shownLetters.map((letter) => letter.replace("\\", "\\\\")).join("|")})+)`);

/// What a problem says does not come from the page.
const isOfProblem = (element) => ["message", "hint", "excerpt"].some((name) => hasClass(element, name));

/// Where a page is not the harmless one with the hostile text in the place of the harmless one.
export function differences(harmlessTree, hostileTree, text) {
  const found = [];
  // A line of code is cut where a control begins and where it ends.
  const { startColumn, endColumn } = columnsIn(text);
  const cuts = [0, startColumn, endColumn, text.length];
  const pieces = new Map();
  for (const begin of cuts) {
    for (const end of cuts) {
      if (begin < end && end <= text.length) pieces.set(end - begin, [...(pieces.get(end - begin) ?? []), text.slice(begin, end)]);
    }
  }
  const literal = (string) => string.replace(/[\\^$.*+?()[\]{}|]/g, "\\$&");
  const fits = (expected, actual, form) => {
    const parts = expected.split(run);
    if (parts.length === 1) return expected === actual;
    const pattern = parts.map((part, index) => {
      if (index % 2 === 0) return literal(part);
      const length = shownLetters.reduce((count, letter) => count + part.split(letter).length - 1, 0);
      return `(?:${(pieces.get(length) ?? []).map((piece) => literal(form(piece))).join("|")})`;
    });
    return new RegExp(`^${pattern.join("")}$`, "s").test(actual);
  };
  const compare = (expected, actual, ancestors) => {
    const where = ancestors.map(({ name }) => name).join(" ");
    if (typeof expected === "string" || typeof actual === "string") {
      if (typeof expected !== typeof actual) {
        found.push(`${where}: an element or a text is missing`);
      } else if (!ancestors.some(isOfProblem) && !fits(expected, actual, formOf(ancestors))) {
        found.push(`${where}: ${JSON.stringify(actual).slice(0, 300)} instead of ${JSON.stringify(expected).slice(0, 300)}`);
      }
      return;
    }
    const inside = [...ancestors, expected];
    const names = Object.keys(expected.attributes);
    if (expected.name !== actual.name || names.join() !== Object.keys(actual.attributes).join() ||
        expected.children.length !== actual.children.length) {
      found.push(`${where}: <${actual.name} ${Object.keys(actual.attributes)}> with ${actual.children.length} children` +
        ` instead of <${expected.name} ${names}> with ${expected.children.length}`);
      return;
    }
    for (const name of names) {
      if (!fits(expected.attributes[name], actual.attributes[name], formOf(inside, name))) {
        found.push(`${where} ${name}: ${JSON.stringify(actual.attributes[name]).slice(0, 300)}` +
          ` instead of ${JSON.stringify(expected.attributes[name]).slice(0, 300)}`);
      }
    }
    expected.children.forEach((child, index) => compare(child, actual.children[index], inside));
  };
  compare(harmlessTree, hostileTree, []);
  return found;
}
