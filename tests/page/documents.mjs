// Documents for the tests, and the pages that the tool makes of them.

import { spawnSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";

export const root = path.resolve(process.env.TESSEL_ROOT ?? ".");
const tool = path.join(root, "build/release/bin/tessel");
export const place = path.join(root, "build/page");

/// What the tool answers. Documents with mistakes have status 1.
export function answerOf(...words) {
  const done = spawnSync(tool, words, { cwd: root, maxBuffer: 1 << 30 });
  if (done.status !== 0 && done.status !== 1) throw new Error(`tessel ${words.join(" ")}: ${done.stderr}`);
  return done.stdout.toString("utf8");
}

export const pageOf = (...words) => answerOf("import", "--format", "html", ...words);

/// Writes a file below build/page and gives its path.
export function written(name, content) {
  const file = path.join(place, "documents", name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, content);
  return file;
}

/// A line of code with one control in it.
export const inCodeLine = (control) => ({
  className: "CodeLineNode",
  children: [{ text: "x = value(1);", startColumn: 4, endColumn: 12, ...control }],
});

/// A document with so many controls: the lines of code of the example with every kind, again and again.
export function manyControls(count) {
  const { children } = JSON.parse(fs.readFileSync(path.join(root, "examples/controls.json"), "utf8"));
  const lines = children.filter(({ className, children: controls }) =>
    className === "CodeLineNode" && controls.every(({ startColumn }) => startColumn !== undefined));
  const rows = [];
  for (let number = 0; number < count;) {
    const line = structuredClone(lines[rows.length % lines.length]);
    line.children = line.children.slice(0, count - number);
    for (const control of line.children) control.controlId = `${control.controlId}-${number++}`;
    rows.push(line);
  }
  return JSON.stringify({ className: "DocumentNode", children: rows }, null, 2);
}
