import assert from "node:assert/strict";
import { test } from "node:test";
import { bandsOf, visibleBands } from "../../Web/src/data/bands.js";
import { lowerBound, nearest } from "../../Web/src/data/search.js";
import { expand, readSession } from "../../Web/src/data/session.js";
import { slicesOf } from "../../Web/src/data/slices.js";
import { makeTrack } from "../../Web/src/data/track.js";

test("absent values stand where they are absent", () => {
  const column = (values, absent) => [...expand({ values, absent: absent.map(([first, count]) => ({ first, count })) }, 5)];
  assert.deepEqual(column([1, 2, 3, 4, 5], []), [1, 2, 3, 4, 5]);
  assert.deepEqual(column([1, 2], [[0, 1], [2, 2]]), [NaN, 1, NaN, NaN, 2]);
  assert.deepEqual(column([], [[0, 5]]), [NaN, NaN, NaN, NaN, NaN]);
  assert.deepEqual(column([9], [[1, 4]]), [9, NaN, NaN, NaN, NaN]);
});

test("places in an array", () => {
  const array = [1, 3, 3, 8];
  assert.deepEqual([0, 1, 2, 3, 4, 9].map((value) => lowerBound(array, value)), [0, 0, 1, 1, 3, 4]);
  assert.deepEqual([-5, 1.9, 2.1, 5.5, 5.6, 99].map((value) => nearest(array, value)), [0, 0, 1, 2, 3, 3]);
  assert.equal(nearest([], 1), -1);
});

const document = {
  format: "quellin-report", majorVersion: 1,
  analysis: {
    session: {}, summary: { durationSeconds: 60 }, coverage: {}, sourceTotals: [], longestCoveredSeconds: 10,
    gaps: [{ startSeconds: 12, endSeconds: 50 }],
    series: {
      startedAt: 1000.5, sources: [{ kind: "a" }, { kind: "b" }],
      seconds: [0, 6, 12, 50, 56], source: [0, 1, 1, 1, 0],
      watts: { values: [1, 5, 3, 4], absent: [{ first: 3, count: 1 }] },
      batteryPercent: { values: [], absent: [{ first: 0, count: 5 }] },
      maxTemperature: { values: [40, 41, 42, 43, 44], absent: [] },
      maxFanRPM: { values: [0, 0, 0, 0, 0], absent: [] },
      thermalPressure: [0, 0, 1, 1, 0],
    },
  },
};

test("the embedded data are laid out by moments since 1970", () => {
  const session = readSession(document);
  assert.deepEqual([...session.time], [1000.5, 1006.5, 1012.5, 1050.5, 1056.5]);
  assert.equal(session.end, 1060.5);
  assert.deepEqual(session.gaps, [{ start: 1012.5, end: 1050.5 }]);
  assert.deepEqual([...session.watts], [1, 5, 3, NaN, 4]);
});

test("a thermal pressure that never rises from 0 may be one that nobody told: it is absent", () => {
  const told = (thermalPressure) => {
    const { analysis } = document;
    const series = { ...analysis.series, thermalPressure };
    return [...readSession({ ...document, analysis: { ...analysis, series } }).thermalPressure];
  };
  assert.deepEqual(told([0, 0, 0, 0, 0]), [NaN, NaN, NaN, NaN, NaN]);
  assert.deepEqual(told([0, 0, 1, 0, 0]), [0, 0, 1, 0, 0]);
});

test("without a limit nothing is too long, and other data are refused", () => {
  const { longestCoveredSeconds, ...analysis } = document.analysis;
  assert.equal(longestCoveredSeconds, 10);
  assert.equal(readSession({ ...document, analysis }).longestCovered, Infinity);
  assert.throws(() => readSession({ ...document, majorVersion: 2 }), /not the data/);
  assert.throws(() => readSession({ ...document, format: "trace" }), /not the data/);
});

test("time of just the longest covered length is no gap, whatever the moment of the start", () => {
  const start = 1000.5;
  assert.ok(start + 0.7 - start > 0.7, "the sum is rounded upwards");
  const samples = {
    seconds: [0, 0.7], time: [start, start + 0.7], source: [0, 0], count: 2, longestCovered: 0.7,
  };
  assert.deepEqual(bandsOf(samples), [{ source: 0, start, end: start + 0.7 }]);
  assert.deepEqual(makeTrack(samples, [5, 6]).gaps, []);
  const shorter = { ...samples, longestCovered: 0.6 };
  assert.equal(bandsOf(shorter).length, 2);
  assert.deepEqual(makeTrack(shorter, [5, 6]).gaps, [{ start, end: start + 0.7 }]);
});

test("a band lasts until the next one, or until a gap", () => {
  const bands = bandsOf(readSession(document));
  assert.deepEqual(bands, [
    { source: 0, start: 1000.5, end: 1006.5 }, { source: 1, start: 1006.5, end: 1012.5 },
    { source: 1, start: 1050.5, end: 1056.5 }, { source: 0, start: 1056.5, end: 1056.5 },
  ]);
  assert.deepEqual(visibleBands(bands, 1010, 1052, 0), [
    { source: 1, start: 1010, end: 1012.5 }, { source: 1, start: 1050.5, end: 1052 },
  ]);
  assert.equal(visibleBands(bands, 1000, 1060, 1).length, 3, "one of no length is left out");
});

test("slices hold every sample once, and watts of each source apart", () => {
  const session = readSession(document);
  const slices = slicesOf(session, session.start, session.end, 3);
  assert.deepEqual(slices.map(({ samples }) => samples), [3, 2], "the middle one has none");
  assert.deepEqual(slices[0].powers.map(({ source, range }) => [source.kind, range]),
    [["a", { low: 1, high: 1 }], ["b", { low: 3, high: 5 }]]);
  assert.deepEqual(slices[1].powers.map(({ source }) => source.kind), ["a"]);
  assert.equal(slices[0].batteryPercent, undefined);
  assert.deepEqual(slices[1].maxTemperature, { low: 43, high: 44 });
});

test("a sample at the very end belongs to the last slice", () => {
  const session = readSession(document);
  assert.deepEqual(slicesOf(session, 1000.5, 1056.5, 2).map(({ samples }) => samples), [3, 2]);
});
