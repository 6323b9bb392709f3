// Debian's Chromium, and a page in it together with everything that it says and asks for.

import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

/// @param more arguments of Chromium's command line
export const launch = (...more) => chromium.launch({
  executablePath: "/usr/bin/chromium",
  chromiumSandbox: process.getuid() !== 0, // which root cannot have
  args: ["--disable-quic", "--disable-gpu", "--disable-background-networking", "--disable-component-update", "--disable-sync",
    ...more],
});

/// Opens a file with the options of a new context. `said` grows with all that is not silent.
export async function opened(browser, file, options = {}) {
  const context = await browser.newContext(options);
  const page = await context.newPage();
  const url = pathToFileURL(file).href;
  const said = [];
  page.on("console", (message) => said.push(`console: ${message.text()}`));
  page.on("pageerror", (error) => said.push(`error: ${error.message}`));
  page.on("dialog", (dialog) => { said.push(`dialog: ${dialog.message()}`); dialog.dismiss(); });
  page.on("popup", () => said.push("popup"));
  page.on("request", (request) => request.url() === url || said.push(`request: ${request.url()}`));
  page.on("framenavigated", (frame) => frame.url().split("#")[0] === url || said.push(`navigation: ${frame.url()}`));
  await page.goto(url);
  return { page, said };
}

/// Opens all folds, and lays out also what is not on the screen, which has but a rough size otherwise.
export const unfold = (page) => page.evaluate(() => {
  for (const fold of document.querySelectorAll("details")) fold.open = true;
  for (const part of document.querySelectorAll(".part")) part.style.contentVisibility = "visible";
});
