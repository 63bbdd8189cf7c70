// Reports of sessions that are out of the ordinary.
import assert from "node:assert/strict";
import { test } from "node:test";
import { Clock } from "../../Web/src/data/clock.js";
import { browser, cells, look, macbook, readout, reports } from "./pages.mjs";

test("hostile names are text and nothing else", async () => {
  const hostile = "</script></title><img src=x onerror=alert(1)><!--<script>alert(2)</script>&amp;\u2028'\"";
  const report = reports.record(hostile, {
    change: (text) => text.replaceAll(/"(clang|Safari)"/g, () => JSON.stringify(hostile)),
    words: ["--for", "3m", "--process-interval", "10s"],
  });
  await look(report.address, {}, async (page) => {
    assert.equal(await page.run("document.querySelector('h1').textContent"), report.shown.session.title);
    const names = await page.run("[...document.querySelectorAll('#contributors bdi')].map((one) => one.textContent)");
    assert.deepEqual(names, report.shown.summary.topContributors.map(({ name }) => name));
    assert.ok(names.includes(hostile), `the hostile process is not among ${names.join()}`);
    assert.equal(await page.run("document.images.length + document.querySelectorAll('script').length"), 2);
  });
});

test("the policy keeps the page from running or asking for anything else", async () => {
  const page = await browser.open(macbook.address);
  await page.run(`(() => {
    window.ran = false;
    const script = document.createElement("script");
    script.textContent = "window.ran = true";
    document.body.append(script);
  })()`);
  assert.equal(await page.run("window.ran"), false);
  assert.equal(await page.run("fetch('https://quellin.invalid/').then(() => 'asked', () => 'kept')"), "kept");
  assert.ok(page.complaints.some((text) => text.includes("Content Security Policy")), page.complaints.join("\n"));
  await page.close();
});

test("an empty session says so", async () => {
  const empty = reports.record("Nothing", { words: ["--for", "1s"], isEmptied: true });
  assert.equal(empty.shown.summary.sampleCount, 0);
  await look(empty.address, {}, async (page) => {
    assert.match(await page.text("main"), /No power was read[^]*nothing to plot[^]*no samples[^]*no figures/);
    assert.deepEqual(await page.texts("#zoom, #readout, #keys, table"), [], "nothing that has nothing to work on");
    assert.equal(await page.text("[data-fact=pressure] dd"), "unknown");
  });
});

test("where no power was read no gaps are listed", async () => {
  const address = reports.replaceData(macbook.path, (data) => {
    data.analysis.coverage.coveredSeconds = 0;
    return data;
  });
  await look(address, {}, async (page) => {
    assert.equal(await page.text("[data-fact=coverage]"), "Coverage\n0.0 %\nof the time has readings of power");
  });
});

test("a thermal pressure that nobody told is no figure", async () => {
  const untold = reports.record("Untold", { change: (text) => text.replaceAll(/"pressureState":\d+,/g, ""), words: ["--for", "1m"] });
  await look(untold.address, {}, async (page) => {
    assert.equal(await page.text("[data-fact=pressure]"), "Thermal pressure\n0 of 4\nor not told by the system");
    assert.equal(await page.run("document.getElementById('plot-thermalPressure')"), null);
    assert.deepEqual((await cells(page, "#provenance")).filter(([figure]) => /pressure/.test(figure)), []);
    await page.focus("#plot-watts");
    await page.press("ArrowRight");
    assert.equal(await readout(page, "thermalPressure"), "unknown");
  });
});

test("a session that is still recorded says so, and when that was", async () => {
  await look(await reports.recordActive("Going on"), {}, async (page) => {
    const { createdAt } = await page.run("JSON.parse(document.getElementById('data').textContent)");
    const clock = new Clock();
    const moment = Date.parse(createdAt) / 1000;
    assert.match(await page.text("#when"),
      new RegExp(` \u00b7 still being recorded, as of ${clock.date(moment)}, ${clock.time(moment)} \u00b7 1 sample,`));
    assert.equal(await page.text("[data-fact=recorder] dd"), "unknown", "what was written is not noted yet");
  });
});
