// The figures of a report's page.
import assert from "node:assert/strict";
import { test } from "node:test";
import { bytes, decimal, duration } from "../../Web/src/data/format.js";
import { cells, look, macbook, range, reports } from "./pages.mjs";

test("the numbers in the page are those of the summary", () => look(macbook.address, {}, async (page) => {
  const { session, summary, coverage } = macbook.shown;
  assert.equal(await page.text("h1"), session.title);
  assert.equal(await page.run("document.title"), session.title);
  assert.deepEqual(await cells(page, "#segments"), summary.powerSegments.map((segment) => [
    String(segment.index), segment.sourceLabel, segment.acConnected ? "connected" : "none",
    segment.startedAt.slice(11, 19), duration(segment.durationSeconds),
    decimal(segment.averageWatts, 2), decimal(segment.minWatts, 2), decimal(segment.maxWatts, 2),
    decimal(segment.totalWattHours, 3), `${segment.batteryPercentStart} to ${segment.batteryPercentEnd} %`,
    String(segment.sampleCount),
  ]));
  assert.deepEqual(await cells(page, "#contributors"),
    summary.topContributors.map(({ name, score, confidence }) => [name, "", decimal(score, 1), confidence]));
  const fact = (name) => page.text(`[data-fact=${name}] dd`);
  assert.equal(await fact("samples"), String(summary.sampleCount));
  assert.equal(await fact("battery"), `${summary.batteryPercentStart} to ${summary.batteryPercentEnd} %`);
  assert.equal(await fact("temperature"), `${decimal(summary.maxTemperature, 1)} \u00b0C`);
  assert.equal(await fact("fan"), `${summary.maxFanRPM} rpm`);
  assert.equal(await fact("pressure"), `${summary.maxThermalPressure} of 4`);
  const { cpuSeconds, bytesWritten } = macbook.shown.recorderCost;
  assert.equal(await fact("recorder"), `${decimal(cpuSeconds, 2)} s`);
  assert.equal(await page.text("[data-fact=recorder] .note"), `of CPU time; ${bytes(bytesWritten)} written to the log`);
  assert.equal(await fact("coverage"), `${decimal((100 * coverage.coveredSeconds) / coverage.durationSeconds, 1)} %`);
  assert.equal(await page.text("[data-fact=coverage] .note"),
    `of the time has readings of power; 1 gap, the longest ${duration(coverage.longestGapSeconds)}`);
}));

test("energy of different kinds stands apart and is never added", () => look(macbook.address, {}, async (page) => {
  const energies = new Map();
  for (const { sourceLabel, totalWattHours } of macbook.shown.summary.powerSegments) {
    energies.set(sourceLabel, (energies.get(sourceLabel) ?? 0) + totalWattHours);
  }
  const shown = await page.texts(".card h3").then(async (labels) => {
    const values = await page.texts(".card .energy strong");
    return labels.map((label, index) => [label, values[index]]);
  });
  assert.deepEqual(shown, [...energies].map(([label, energy]) => [label, decimal(energy, 3)]));
  assert.match(await page.text("#cards .remark"), /different quantities/);
}));

test("every power source says what it is and who stands behind it", () => look(macbook.address, {}, async (page) => {
  const rows = await cells(page, "#provenance");
  const sources = await page.run("JSON.parse(document.getElementById('data').textContent).analysis.series.sources");
  assert.equal(sources.length, 4);
  for (const { label, summary } of sources) {
    const [, confidence, meaning] = rows.find(([figure]) => figure === `${label}, W`);
    assert.notEqual(confidence, "");
    assert.equal(meaning, summary, "in the words of the program and in no others");
  }
}));

test("a session on one source has its own average", async () => {
  const single = reports.record("One source", { words: ["--for", "1m"] });
  await look(single.address, {}, async (page) => {
    const { summary } = single.shown;
    assert.equal(summary.averageWattsNote, undefined);
    assert.equal(await page.text(".card .energy strong"), decimal(summary.totalWattHours, 3));
    assert.equal(await page.text(".card dd"), `${decimal(summary.averageWatts, 2)} W`);
    assert.deepEqual(await page.texts("#cards .remark, #cards .note"), []);
  });
  await look(reports.replaceData(single.path, (document) => {
    const { summary } = document.analysis;
    return { ...document, analysis: { ...document.analysis, summary: { ...summary, averageWatts: summary.minWatts / 2 } } };
  }), {}, async (page) => {
    assert.equal(await page.text(".card dd"), `${decimal(single.shown.summary.minWatts / 2, 2)} W`);
    assert.deepEqual(await page.texts("#cards .note"), ["over the whole time, also where no readings are"]);
  });
});

test("where the only source went away there are no different quantities", async () => {
  const withoutEnergy = ({ energy, ...tick }) => tick;
  const withoutBattery = ({ battery, ...tick }) => tick;
  const interrupted = reports.record("Interrupted", {
    words: ["--for", "1m"],
    change: (text) => text.trimEnd().split("\n").map((line) => withoutEnergy(JSON.parse(line)))
      .map((line, index) => JSON.stringify(index > 6 ? withoutBattery(line) : line)).join("\n") + "\n",
  });
  const { summary } = interrupted.shown;
  assert.deepEqual(summary.powerSegments.map(({ sourceKind }) => sourceKind), ["batteryDischarge", "unavailable"]);
  assert.notEqual(summary.averageWattsNote, undefined);
  await look(interrupted.address, {}, async (page) => {
    const [drawn] = summary.powerSegments;
    assert.deepEqual(await page.texts(".card h3"), [drawn.sourceLabel]);
    assert.equal(await page.text(".card .energy strong"), decimal(drawn.totalWattHours, 3));
    assert.deepEqual(await page.texts("#cards .remark"), []);
  });
});

test("every column of a table has a name", () => look(macbook.address, {}, async (page) => {
  await range(page);
  const names = await page.run("[...document.querySelectorAll('th')].map((one) => one.textContent)");
  assert.deepEqual(names.filter((name) => name === ""), []);
}));

test("moments can be told in the reader's own time", () => look(macbook.address, {}, async (page) => {
  await page.send("Emulation.setTimezoneOverride", { timezoneId: "Asia/Tokyo" });
  await page.click("input[value=local]");
  await page.settle();
  assert.match(await page.text("#when"), /18:40:00 \u2013 18:59:55 local time/);
  assert.equal((await cells(page, "#segments"))[0][3], "18:40:00");
  await page.click("input[value=utc]");
  await page.settle();
  assert.match(await page.text("#when"), /09:40:00 \u2013 09:59:55 UTC/);
}));

test("the data can be downloaded", () => {
  // Where a browser would save a file, the test looks at what it is handed.
  const beforeLoad = `
    const make = URL.createObjectURL;
    URL.createObjectURL = (blob) => ((window.saved = blob), make(blob));
    HTMLAnchorElement.prototype.click = function () { window.savedAs = this.download; };`;
  return look(macbook.address, { beforeLoad }, async (page) => {
    await page.click("#download");
    const saved = JSON.parse(await page.run("saved.text()"));
    assert.deepEqual(saved.analysis.summary, macbook.shown.summary);
    assert.deepEqual(saved.analysis.coverage, macbook.shown.coverage);
    assert.equal(await page.run("savedAs"), `quellin-${macbook.shown.session.id.slice(0, 8)}.json`);
  });
});
