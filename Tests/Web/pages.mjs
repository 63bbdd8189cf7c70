// Pages of reports in a browser, as a reader has them, for the tests of this folder. With QUELLIN_PICTURES, pictures
// are left in that folder.
import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import { after } from "node:test";
import { Browser } from "./browser.mjs";
import { chromium, Reports } from "./reports.mjs";

export const reports = new Reports();
export const browser = new Browser(chromium);
after(async () => {
  await browser.close();
  reports.remove();
});

/** The report of the whole example trace. */
export const macbook = reports.record("Twenty minutes of a MacBook");

/** Looks at a page, and then that it had nothing to complain of and asked nobody for anything. */
export async function look(address, options, check) {
  const page = await browser.open(address, options);
  await check(page);
  assert.deepEqual(page.complaints, []);
  assert.deepEqual(page.requests, []);
  await page.close();
}

/** Leaves a file in the folder for pictures, where there is one. */
export function keep(name, content) {
  if (process.env.QUELLIN_PICTURES) writeFileSync(join(process.env.QUELLIN_PICTURES, name), content);
}

/** The texts of a table's cells, row by row. */
export const cells = (page, selector) =>
  page.run(`[...document.querySelectorAll('${selector} tbody tr')].map((row) => [...row.cells].map((cell) => cell.innerText.trim()))`);

/** Where the time in view begins, as the table of it says. */
export const range = (page) => page.run("document.querySelector('#values details').open = true").then(() => page.settle())
  .then(() => page.run("document.querySelector('#values tbody tr td').innerText"));

/** One of the values under the cursor. */
export const readout = (page, name) => page.text(`[data-readout=${name}] dd`);

/** The texts of what is wider than the box that it stands in. */
export const cut = (page, selector) => page.run(`[...document.querySelectorAll(${JSON.stringify(selector)})]
  .filter((one) => one.scrollWidth > one.clientWidth).map((one) => one.innerText)`);
