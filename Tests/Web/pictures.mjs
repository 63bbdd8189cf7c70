// Draws the pictures of the README anew, one in either palette. usage: node pictures.mjs FOLDER
//
// It wants the environment of the browser tests. ImageMagick's "convert IN +dither -colors 128 PNG8:OUT" makes them small.
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import { Browser } from "./browser.mjs";
import { chromium, Reports } from "./reports.mjs";

const reports = new Reports();
const browser = new Browser(chromium);
try {
  const { address } = reports.record("Twenty minutes of a MacBook");
  for (const [scheme, name] of [["light", "report.png"], ["dark", "report-dark.png"]]) {
    const page = await browser.open(address, { width: 1120, scheme });
    writeFileSync(join(process.argv[2], name), await page.picture("#plots", 8));
  }
} finally {
  await browser.close();
  reports.remove();
}
