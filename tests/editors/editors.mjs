// Tries what the tool gives to editors in programs that editors are made of: the JSON Schema in a second
// validator and in the language service of VS Code, and SARIF by its own schema.
//
// usage: node editors.mjs SCHEMA VALUES SARIF SARIF_SCHEMA
//   VALUES has a line {"value": ..., "built": true | false} for each value that was imported.

import assert from "node:assert/strict";
import fs from "node:fs";
import readline from "node:readline";
import { test } from "node:test";
import Ajv from "ajv";
import Ajv2020 from "ajv/dist/2020.js";
import languageService from "vscode-json-languageservice";

const { getLanguageService, TextDocument } = languageService;

const [schemaFile, valuesFile, sarifFile, sarifSchemaFile] = process.argv.slice(2);
const schema = JSON.parse(fs.readFileSync(schemaFile, "utf8"));

test("a second validator accepts what an import builds, and nothing else", async () => {
  const validate = new Ajv2020({ allErrors: false, strict: true, strictTypes: false, strictRequired: false })
    .compile(schema);
  const differences = [];
  let count = 0;
  for await (const line of readline.createInterface({ input: fs.createReadStream(valuesFile) })) {
    const { value, built } = JSON.parse(line);
    ++count;
    if (validate(value) !== built) differences.push(line);
  }
  assert.deepEqual(differences.slice(0, 5), []);
  assert.ok(count >= 20000, `${count} values`);
  console.log(`${count} values, no difference`);
});

test("SARIF is what its schema asks for", () => {
  const sarif = JSON.parse(fs.readFileSync(sarifSchemaFile, "utf8"));
  // It calls itself draft 4, and has nothing in it that later drafts read otherwise but its name's key.
  const { id, $schema, ...rest } = sarif;
  assert.match($schema, /draft-0[47]/);
  const validate = new Ajv({ strict: false, validateFormats: false, unicodeRegExp: false }).compile(rest);
  const log = JSON.parse(fs.readFileSync(sarifFile, "utf8"));
  validate(log);
  assert.deepEqual(validate.errors, null);
  assert.ok(log.runs[0].results.length > 10);
  log.runs[0].results[0].level = "bad";
  assert.equal(validate(log), false);
});

// A text with the cursor at the bar.
function opened(text) {
  const service = getLanguageService({});
  const uri = "file:///report.json";
  service.configure({ validate: true, schemas: [{ uri: "tessel.schema.json", fileMatch: ["*.json"], schema }] });
  const offset = text.indexOf("|");
  const document = TextDocument.create(uri, "json", 1, text.replace("|", ""));
  return { service, document, parsed: service.parseJSONDocument(document), offset };
}

async function completions(text) {
  const { service, document, parsed, offset } = opened(text);
  const list = await service.doComplete(document, document.positionAt(offset), parsed);
  return list.items.map((item) => item.label);
}

async function diagnostics(text) {
  const { service, document, parsed } = opened(text);
  const found = await service.doValidation(document, parsed, undefined, schema);
  return found.map(({ range, message }) => [document.getText(range), message]);
}

const inSlider = (data) =>
  `{"children": [{"className": "LumoControlNode", "context": {"type": "slider", "data": {${data}}}}]}`;

test("the language service completes words and members", async () => {
  const classes = await completions('{"children": [{"className": |}]}');
  assert.ok(classes.includes('"SpinnerControlNode"') && classes.includes('"LumoControlNode"'), String(classes));
  const types = await completions('[{"className": "LumoControlNode", "context": {"type": |}}]');
  const known = schema.$defs["any.LumoControlNode"].properties.context.properties.type.anyOf[0].enum;
  assert.ok(known.includes("slider"), String(known));
  assert.deepEqual(types.filter((label) => label.startsWith('"')).sort(), known.map((type) => `"${type}"`).sort());
  const members = await completions(inSlider("|"));
  assert.ok(members.includes("minimum") && members.includes("stepLinkedVariable"), String(members));
  assert.ok(!members.includes("browserType"), String(members));
  const ofSpinner = await completions('{"className": "SpinnerControlNode", |}');
  assert.ok(ofSpinner.includes("context") && ofSpinner.includes("controlId"), String(ofSpinner));
});

test("the language service shows what a member means", async () => {
  const { service, document, parsed, offset } = opened(inSlider('"min|imum": 0'));
  const hover = await service.doHover(document, document.positionAt(offset), parsed);
  assert.match(JSON.stringify(hover.contents), /least value.*number/);
});

test("the language service tells mistakes where they are", async () => {
  assert.deepEqual(await diagnostics(inSlider('"minimum": 0')), []);
  assert.deepEqual(await diagnostics(inSlider('"minimum": "0"')),
    [['"0"', 'Incorrect type. Expected "number".']]);
  const [[place, message]] = await diagnostics('{"className": "LumoAppLineNode"}');
  assert.match(message, /Missing property "children"/);
  assert.ok(place.length > 0);
  assert.deepEqual(await diagnostics('{"className": "TextNode", "$schema": "x", "any": [{"thing": 1}]}'), []);
});
