// The page in a browser: what its controls are to assistive programs, to the keyboard and to the eye.

import assert from "node:assert/strict";
import fs from "node:fs";
import http from "node:http";
import { after, before, test } from "node:test";
import axe from "axe-core";
import { launch, opened, unfold } from "./browser.mjs";
import { answerOf, inCodeLine, manyControls, pageOf, written } from "./documents.mjs";
import { documentOf } from "./hostile.mjs";
import { batches } from "./payloads.mjs";
import { parsed, treeInBrowser } from "./tree.mjs";

let browser;
before(async () => { browser = await launch(); });
after(() => browser.close());

const pageFile = (name, ...words) => written(`${name}.html`, pageOf(...words));

const inContext = (type) => (data) => ({ className: "LumoControlNode", context: { type, data } });
const ofClass = (className) => (data) => ({ className, context: { data } });
const button = inContext("button");
const slider = inContext("slider");
const comboBox = inContext("comboBox");
const editField = inContext("editField");
const spinner = ofClass("SpinnerControlNode");
const rangeSlider = ofClass("RangeSliderControlNode");
const colorPicker = ofClass("ColorPickerControlNode");
const datePicker = ofClass("DatePickerControlNode");
const fileBrowser = ofClass("FileBrowserControlNode");

const bounds = { minimum: -2, maximum: 8, step: 0.5 };
const items = [{ label: "Mean", value: "mean" }, { label: "Median", value: "median" }];

/// A control, what each form control in it is to assistive programs, and what stands beside it as text.
const kinds = [
  { says: "a button", control: button({ text: "Load" }), is: [{ role: "button", name: "Load" }] },
  { says: "a check box", control: inContext("checkBox")({ text: "Grid", defaultValue: true }),
    is: [{ role: "checkbox", name: "Grid", checked: "true" }] },
  { says: "a state button", control: ofClass("StateButtonControlNode")({ text: "Live", defaultValue: false }),
    is: [{ role: "switch", name: "Live", checked: "false" }] },
  { says: "a slider", control: slider({ text: "Weight", ...bounds, defaultValue: 2.5 }),
    is: [{ role: "slider", name: "Weight", value: "2.5", valuemin: -2, valuemax: 8, step: "0.5" }] },
  { says: "a spinner", control: spinner({ text: "Window", ...bounds, defaultValue: 3 }),
    is: [{ role: "spinbutton", name: "Window", value: "3", valuemin: -2, valuemax: 8, step: "0.5" }] },
  { says: "a range slider", control: rangeSlider({ text: "Range", ...bounds, defaultValue: "[2 7.5]" }),
    is: [{ role: "slider", value: "2", valuemin: -2, valuemax: 8, step: "0.5" },
      { role: "slider", value: "7.5", valuemin: -2, valuemax: 8, step: "0.5" }], group: "Range" },
  { says: "a combo box", control: comboBox({ text: "Method", items, defaultValue: "median" }),
    is: [{ role: "combobox", name: "Method", value: "Median" }], options: ["Mean", "Median"] },
  { says: "an edit field for text", control: editField({ text: "Name", valueType: "String", defaultValue: "raw", defaultValueLinkedVariable: "n" }),
    is: [{ role: "textbox", name: "Name", value: "raw" }] },
  { says: "an edit field for a number", control: editField({ text: "Limit", valueType: "Double", defaultValue: 21.5, defaultValueLinkedVariable: "n" }),
    is: [{ role: "spinbutton", name: "Limit", value: "21.5" }] },
  { says: "a colour picker", control: colorPicker({ text: "Colour", colorFormat: "hex", defaultValue: "#0072b2" }),
    is: [{ role: "ColorWell", name: "Colour", input: "#0072b2" }] },
  { says: "a colour that HTML does not know", control: colorPicker({ text: "Ink", colorFormat: "name", defaultValue: "teal" }),
    is: [{ role: "ColorWell", name: "Ink" }], beside: "teal" },
  { says: "a date picker", control: datePicker({ text: "First day", displayFormat: "yyyy-MM-dd", defaultValue: "2026-03-01" }),
    is: [{ role: "Date", name: "First day", input: "2026-03-01" }] },
  { says: "a date in another form", control: datePicker({ text: "Last day", displayFormat: "dd.MM.yyyy", defaultValue: "09.03.2026" }),
    is: [{ role: "Date", name: "Last day", input: "" }], beside: "09.03.2026" },
  { says: "a file browser", control: fileBrowser({ text: "Data", browserType: "file", defaultValue: "/data/run.csv" }),
    is: [{ role: "button", name: /^Data/, input: "" }], beside: "/data/run.csv" },
  { says: "a value above the maximum", control: spinner({ text: "Above", ...bounds, defaultValue: 11 }),
    is: [{ role: "spinbutton", name: "Above" }], beside: "11" },
  { says: "a value off the step", control: slider({ text: "Off", ...bounds, defaultValue: 2.7 }),
    is: [{ role: "slider", name: "Off" }], beside: "2.7" },
  { says: "a value that is no item", control: comboBox({ text: "Other", items, defaultValue: "max" }),
    is: [{ role: "combobox", name: "Other" }], beside: "max", options: ["", "Mean", "Median"] },
  { says: "no choice that is set", control: comboBox({ text: "Open", items }),
    is: [{ role: "combobox", name: "Open" }], options: ["", "Mean", "Median"] },
  { says: "no label", control: { ...button({}), controlId: "run-it" }, is: [{ role: "button", name: /run-it/ }] },
  { says: "a label from right to left", control: button({ text: "שלום (1)" }), is: [{ role: "button", name: "שלום (1)" }] },
];

const kindsDocument = () => written("kinds.json", JSON.stringify({ children: kinds.map(({ control }) => inCodeLine(control)) }, null, 2));

/// What Chromium tells assistive programs of the form controls in a control.
async function accessible(page, session, control) {
  const found = [];
  for (const element of await control.locator("button, input, select, textarea").elementHandles()) {
    const id = `look-${found.length}`;
    await element.evaluate((node, mark) => { node.dataset.look = mark; }, id);
    const { result } = await session.send("Runtime.evaluate", { expression: `document.querySelector('[data-look=${id}]')` });
    const { nodes } = await session.send("Accessibility.getPartialAXTree", { objectId: result.objectId, fetchRelatives: false });
    const properties = Object.fromEntries(nodes[0].properties.map(({ name, value }) => [name, value.value]));
    const own = await element.evaluate((node) => { delete node.dataset.look; return { step: node.step, input: node.value }; });
    found.push({ ...properties, ...own, role: nodes[0].role.value, name: nodes[0].name?.value, value: nodes[0].value?.value?.toString() });
  }
  return found;
}

test("each kind has its role, name, value and bounds", async (t) => {
  // Otherwise Chromium tells of nothing that is not on the screen.
  const accessibleBrowser = await launch("--force-renderer-accessibility");
  t.after(() => accessibleBrowser.close());
  const { page, said } = await opened(accessibleBrowser, pageFile("kinds", kindsDocument()));
  const session = await page.context().newCDPSession(page);
  const controls = page.locator(".control");
  assert.equal(await controls.count(), kinds.length);
  for (const [index, { says, is, beside, options, group }] of kinds.entries()) {
    await t.test(says, async () => {
      const control = controls.nth(index);
      const found = await accessible(page, session, control);
      assert.equal(found.length, is.length);
      is.forEach((expected, at) => {
        for (const [key, value] of Object.entries(expected)) {
          if (value instanceof RegExp) assert.match(found[at][key], value);
          else assert.deepEqual(found[at][key], value, `${key} of ${JSON.stringify(found[at])}`);
        }
        assert.ok(found[at].disabled !== true && found[at].focusable === true);
      });
      const values = await control.locator(".value").allTextContents();
      assert.equal(values.some((text) => text.includes(beside ?? " ")), beside !== undefined, `${values}`);
      if (options) assert.deepEqual(await control.locator("option").allTextContents(), options);
      if (group) assert.equal(await control.getByRole("group", { name: group }).count(), 1);
    });
  }
  assert.deepEqual(said, []);
});

const focusables = "a[href], button, input, select, textarea, summary, [tabindex]";

test("the keyboard goes through the page in the order of the document", async () => {
  const { page, said } = await opened(browser, pageFile("controls", "examples/controls.json"));
  await page.evaluate((selector) => {
    [...document.querySelectorAll(selector)].filter((node) => node.checkVisibility({ contentVisibilityAuto: false }))
      .forEach((node, index) => { node.dataset.order = index; });
  }, focusables);
  const count = await page.locator("[data-order]").count();
  assert.ok(count > 20, `${count}`);
  const order = [];
  // Inside a date there are several stops.
  for (let stop = 0; stop < 2 * count && order.at(-1) !== count - 1; ++stop) {
    await page.keyboard.press("Tab");
    const at = Number(await page.evaluate(() => document.activeElement.dataset.order ?? -1));
    if (order.at(-1) !== at) order.push(at);
  }
  assert.deepEqual(order, [...Array(count).keys()]);
  const positive = await page.locator("[tabindex]:not([tabindex='0'])").count();
  assert.equal(positive, 0);
  assert.deepEqual(said, []);
});

test("controls can be tried, and nothing happens", async () => {
  const { page, said } = await opened(browser, pageFile("kinds", kindsDocument()));
  const before = await page.evaluate(treeInBrowser);
  for (const input of await page.locator(".control").locator("button, input, select").all()) {
    const type = await input.evaluate((node) => node.type);
    await input.focus();
    assert.ok(await input.evaluate((node) => node === document.activeElement), type);
    if (type === "select-one") await input.selectOption({ index: 0 });
    else if (type === "range") await page.keyboard.press("ArrowRight");
    else if (type === "date") await input.fill("2026-01-02");
    else if (type === "color") await input.fill("#ff0000");
    else if (type === "file") await input.setInputFiles({ name: "a.csv", mimeType: "text/csv", buffer: Buffer.from("1") });
    else if (type === "number") await input.fill("7");
    else if (type === "text") await input.fill("tried");
    else await input.click();
    if (type !== "file" && type !== "color" && type !== "select-one") await page.keyboard.press("Enter");
  }
  await page.waitForTimeout(200);
  assert.deepEqual(said, []);
  assert.deepEqual(await page.evaluate(treeInBrowser), before);
});

test("the page's policy stops scripts, events and requests", async (t) => {
  const requests = [];
  const server = http.createServer((request, response) => { requests.push(request.url); response.end(); });
  await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
  t.after(() => server.close());
  const address = `http://127.0.0.1:${server.address().port}`;
  const html = pageOf("examples/analysis.json");
  const policy = /<meta http-equiv="?Content-Security-Policy[^>]*>/;
  const runs = "document.title = 'ran'";
  const rows = {
    script: `<script>${runs}</script>`,
    "script from elsewhere": `<script src="data:text/javascript,${runs}"></script>`,
    event: `<details open ontoggle="${runs}">x</details>`,
    "event of a picture": `<img src="data:image/gif;base64,R0lGODlhAQABAAAAACw=" onerror="${runs}">`,
    frame: `<iframe srcdoc="<script>parent.${runs}</script>"></iframe>`,
    picture: `<img src="${address}/picture">`,
    "style from elsewhere": `<link rel="stylesheet" href="${address}/style">`,
    import: `<style>@import "${address}/import";</style>`,
    background: `<style>body { background: url(${address}/background) }</style>`,
    form: `<form id="added" action="${address}/form"></form>`,
  };
  for (const [says, added] of Object.entries(rows)) {
    await t.test(says, async () => {
      const takesEffect = async (text) => {
        requests.length = 0;
        const { page } = await opened(browser, written("added.html", text.replace("<body>", `<body>${added}`)));
        await page.evaluate(() => document.getElementById("added")?.submit());
        await page.waitForTimeout(300);
        const effect = requests.length > 0 || (await page.title()) === "ran";
        await page.context().close();
        return effect;
      };
      assert.ok(await takesEffect(html.replace(policy, "")), "nothing happens without the policy, either");
      assert.ok(!(await takesEffect(html)));
    });
  }
});

const documents = [
  ["analysis", "examples/analysis.json"],
  ["controls", "examples/controls.json"],
  ["mistakes", "--log", "examples/mistakes.json"],
  ["several", "examples/analysis.json", "examples/controls.json", "examples/mistakes.json"],
  ["lines", "--ndjson", "examples/buttons.ndjson"],
];
const views = {
  "a wide window": { viewport: { width: 1280, height: 800 } },
  "a telephone": { viewport: { width: 320, height: 640 } },
  "200 %": { viewport: { width: 640, height: 400 }, deviceScaleFactor: 2 },
};
const levels = ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22a", "wcag22aa"];

async function violations(page) {
  await page.evaluate(axe.source);
  const results = await page.evaluate((tags) => window.axe.run(document, {
    runOnly: { type: "tag", values: tags },
    rules: { "target-size": { enabled: true } }, // which it does not ask for by itself
    resultTypes: ["violations"],
  }), levels);
  return results.violations.map(({ id, help, nodes }) => `${id}: ${help}: ${nodes.slice(0, 3).map(({ html, failureSummary }) => `${html} ${failureSummary}`).join("; ")}`);
}

test("the page can be used by everybody: WCAG 2.2 AA, as far as axe-core sees", async (t) => {
  for (const [name, ...words] of documents) {
    const file = pageFile(`axe-${name}`, ...words);
    for (const colorScheme of ["light", "dark"]) {
      for (const [view, options] of Object.entries(views)) {
        await t.test(`${name}, ${colorScheme}, ${view}`, async () => {
          const { page, said } = await opened(browser, file, { ...options, colorScheme });
          await unfold(page);
          assert.deepEqual(await violations(page), []);
          assert.deepEqual(said, []);
          await page.context().close();
        });
      }
    }
  }
});

/// What is cut off, or makes the page scroll sideways; runs in the browser.
function cutOff() {
  const found = [];
  const isOnScreen = matchMedia("screen").matches;
  const edge = document.documentElement.clientWidth;
  const pageScrolls = document.documentElement.scrollWidth > edge;
  for (const node of document.querySelectorAll("body *")) {
    const name = `${node.localName}.${node.className}`;
    const inBox = isOnScreen && node.parentElement.closest(".line, .excerpt");
    if (pageScrolls && !inBox && node.getBoundingClientRect().right > edge) found.push(`${name} makes the page wide`);
    if (node.scrollWidth <= node.clientWidth + 1 || node.clientWidth === 0) continue;
    const { overflowX } = getComputedStyle(node);
    if (overflowX === "visible" || node.matches("button, input, select, option")) continue;
    const isScrolledByKeyboard = node.tabIndex === 0 || node.querySelector("button, input, select");
    if (!isOnScreen || !["auto", "scroll"].includes(overflowX) || !isScrolledByKeyboard) found.push(`${name} is cut off`);
  }
  return found;
}

/// What a printer would leave out; runs in the browser.
function missingOnPaper() {
  const skipped = [...document.querySelectorAll(".part")].filter((part) => getComputedStyle(part).contentVisibility !== "visible");
  const hidden = [...document.querySelectorAll("summary")].filter((summary) => !summary.checkVisibility());
  return [...skipped, ...hidden].map((node) => `${node.localName}.${node.className}`);
}

const paper = { width: 720, height: 1000 };

test("nothing is cut off, and only boxes of their own scroll sideways", async (t) => {
  const long = written("long.json", JSON.stringify({ children: [
    inCodeLine({ ...button({ text: "A label of many words that goes on and on, longer than a telephone is wide" }), text: "call(".repeat(60), startColumn: 5, endColumn: 9 }),
    inCodeLine({ ...editField({ text: "x".repeat(300), defaultValue: "y".repeat(300), defaultValueLinkedVariable: "z".repeat(300) }), controlId: "i".repeat(300) }),
    inCodeLine({ ...comboBox({ text: "Choice", items: [{ label: "l".repeat(300), value: "v" }] }) }),
    { className: "LumoAppLineNode", anchorId: "a".repeat(300), children: [{ className: "LumoAppIntegratedInlineNode", text: "t".repeat(300), taskID: "k".repeat(300) }] },
    inCodeLine({ ...button({ text: 7 }), controlId: "j".repeat(300) }),
  ] }));
  for (const [name, ...words] of [...documents, ["long texts", long]]) {
    const file = pageFile(`fit-${name}`, ...words);
    for (const [view, options] of Object.entries(views)) {
      await t.test(`${name}, ${view}`, async () => {
        const { page } = await opened(browser, file, options);
        assert.deepEqual(await page.evaluate(cutOff), []);
        await unfold(page);
        assert.deepEqual(await page.evaluate(cutOff), []);
        await page.context().close();
      });
    }
    await t.test(`${name}, on paper`, async () => {
      const { page } = await opened(browser, file, { viewport: paper });
      await page.emulateMedia({ media: "print" });
      assert.deepEqual(await page.evaluate(cutOff), []);
      assert.deepEqual(await page.evaluate(missingOnPaper), []);
      await page.context().close();
    });
  }
});

test("right-to-left texts keep their direction, and code its own", async () => {
  const rtl = "שלום עולם";
  const { page } = await opened(browser, pageFile("directions", written("directions.json", JSON.stringify(
    inCodeLine({ ...button({ text: rtl }), text: "a = שלום(b, c) + 1;", startColumn: 16, endColumn: 17 })))));
  const directions = await page.evaluate((text) => [...document.querySelectorAll(".control *")]
    .filter((node) => [...node.childNodes].some((child) => child.data === text)).map((node) => getComputedStyle(node).direction), rtl);
  assert.ok(directions.length > 0 && directions.every((direction) => direction === "rtl"), `${directions}`);
  assert.equal(await page.evaluate(() => getComputedStyle(document.querySelector(".line code")).direction), "ltr");
});

test("a browser reads hostile texts as the parser does, and stays silent", async (t) => {
  for (const { names, texts } of batches()) {
    await t.test(names, async () => {
      const html = pageOf(...texts.map((text, index) => written(`in-browser/${index}.json`, documentOf(text))));
      const { page, said } = await opened(browser, written("in-browser.html", html));
      const { tree } = parsed(html);
      assert.ok(JSON.stringify(await page.evaluate(treeInBrowser)) === JSON.stringify(tree));
      assert.deepEqual(said, []);
      await page.context().close();
    });
  }
});

test("20,000 controls are painted within two seconds", async (t) => {
  const json = written("painted.json", manyControls(20000));
  const timeOf = (format) => {
    const begin = performance.now();
    answerOf("import", "--format", format, json);
    return performance.now() - begin;
  };
  const times = ["html", "json"].map((format) => Math.min(timeOf(format), timeOf(format), timeOf(format)));
  t.diagnostic(`made in ${(times[0] / times[1]).toFixed(1)} times the time of --format json`);
  const paints = [];
  const file = pageFile("painted", json);
  for (let run = 0; run !== 3; ++run) {
    const { page, said } = await opened(browser, file);
    paints.push(await page.evaluate(() => new Promise((resolve) => {
      new PerformanceObserver((list) => list.getEntriesByName("first-contentful-paint").forEach(({ startTime }) => resolve(startTime)))
        .observe({ type: "paint", buffered: true });
    })));
    assert.equal(await page.locator(".control").count(), 20000);
    assert.deepEqual(said, []);
    await page.context().close();
  }
  t.diagnostic(`first paint of ${(fs.statSync(file).size / 1e6).toFixed(1)} MB after ${paints.map(Math.round).join(", ")} ms`);
  assert.ok(Math.min(...paints) < 2000, `${paints}`);
});
