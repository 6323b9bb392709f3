// Makes a picture of the page of an example: node picture.mjs FILE

import { launch, opened } from "./browser.mjs";
import { pageOf, written } from "./documents.mjs";

const [file] = process.argv.slice(2);
const width = 900;
const browser = await launch();
const { page } = await opened(browser, written("picture.html", pageOf("examples/analysis.json")),
  { viewport: { width, height: 2000 }, colorScheme: "light" });
const { y, height } = await page.locator("main").boundingBox();
await page.screenshot({ path: file, clip: { x: 0, y: 0, width, height: Math.ceil(y + height) + 32 } });
await browser.close();
