import assert from "node:assert/strict";
import { test } from "node:test";
import { lineOf, pickSamples, tableOf } from "../../Web/src/data/line.js";
import { makeTrack } from "../../Web/src/data/track.js";

const seconds = (count) => Float64Array.from({ length: count }, (none, index) => index);
const trackOf = (moments, values, longestCovered, isOn) =>
  makeTrack({ time: moments, seconds: moments, longestCovered }, values, isOn);
const indices = (picked) => picked.map(({ index }) => index);

// The same numbers every time, between 0 and 1.
function* noise(state = 1) {
  for (;;) {
    state = (state * 48271) % 2147483647;
    yield state / 2147483647;
  }
}

test("as few samples as pixels are all drawn", () => {
  const track = trackOf(seconds(5), [1, 2, 3, 2, 1], Infinity);
  assert.deepEqual(indices(pickSamples(track, 0, 4, 100)), [0, 1, 2, 3, 4]);
});

test("every column of pixels keeps its first, lowest, highest and last sample, in order of time", () => {
  const track = trackOf(seconds(9), [5, 1, 7, 6, 5, 9, 4, 3, 8], Infinity);
  assert.deepEqual(indices(pickSamples(track, 0, 9, 1)), [0, 1, 5, 8]);
  assert.deepEqual(indices(pickSamples(track, 0, 9, 2)), [0, 1, 2, 4, 5, 7, 8]);
});

test("a day on any number of columns loses no peak of any column, and no more than four samples a column are drawn", () => {
  const random = noise();
  const values = Float64Array.from({ length: 86400 }, () => random.next().value);
  values[40000] = 1000;
  values[70000] = -1000;
  const track = trackOf(seconds(86400), values, 5);
  for (const columns of [1, 7, 640, 1001]) {
    const picked = pickSamples(track, 0, 86400, columns);
    assert.ok(picked.length <= 4 * columns);
    const drawn = new Map();
    for (const { index, column } of picked) {
      const [low, high] = drawn.get(column) ?? [Infinity, -Infinity];
      drawn.set(column, [Math.min(low, values[index]), Math.max(high, values[index])]);
    }
    const whole = new Map();
    values.forEach((value, index) => {
      const column = Math.floor((index * columns) / 86400);
      const [low, high] = whole.get(column) ?? [Infinity, -Infinity];
      whole.set(column, [Math.min(low, value), Math.max(high, value)]);
    });
    assert.deepEqual(drawn, whole);
  }
});

test("what is in view goes on to the neighbours on either side, however far they are", () => {
  const track = trackOf(seconds(6), [1, NaN, NaN, NaN, NaN, 2], Infinity);
  assert.deepEqual(indices(pickSamples(track, 2.2, 2.8, 10)), [0, 5]);
  assert.deepEqual(indices(pickSamples(trackOf(seconds(6), seconds(6), Infinity), 2.2, 2.8, 10)), [2, 3]);
});

test("samples at one moment are all looked at", () => {
  const track = trackOf([0, 1, 1, 1, 2], [1, 1, 9, 0, 1], Infinity);
  assert.deepEqual(indices(pickSamples(track, 0, 2, 2)), [0, 1, 2, 3, 4]);
});

test("nothing gives nothing", () => {
  assert.deepEqual(lineOf(trackOf([], [], 5), 0, 1, 100), { points: [], lonely: new Set() });
  assert.deepEqual(lineOf(trackOf([0, 1], [NaN, NaN], 5), 0, 1, 100), { points: [], lonely: new Set() });
  assert.equal(trackOf([0], [NaN], 5).isEmpty, true);
  assert.equal(trackOf([0], [0], 5).isEmpty, false);
});

const values = (line) => line.points.map(({ value }) => value);

test("a line is broken where samples are too far apart, and nowhere else", () => {
  const track = trackOf([0, 5, 10.5, 11], [1, 2, 3, 4], 5);
  assert.deepEqual(values(lineOf(track, 0, 11, 100)), [1, 2, null, 3, 4]);
  assert.deepEqual(track.gaps, [{ start: 5, end: 10.5 }]);
});

test("a sample without a value is passed over as long as its neighbours are near", () => {
  assert.deepEqual(values(lineOf(trackOf([0, 2, 4], [1, NaN, 3], 5), 0, 4, 100)), [1, 3]);
  assert.deepEqual(values(lineOf(trackOf([0, 3, 6], [1, NaN, 3], 5), 0, 6, 100)), [1, null, 3]);
});

test("a line is broken where another source comes between, even one without a value", () => {
  const source = [0, 0, 1, 0];
  const isOn = (index) => source[index] === 0;
  const track = trackOf([0, 1, 2, 3], [1, 2, NaN, 4], 5, isOn);
  const line = lineOf(track, 0, 3, 100);
  assert.deepEqual(values(line), [1, 2, null, 4]);
  assert.deepEqual(line.lonely, new Set([3]));
});

test("sources that take turns within one column of pixels are still drawn", () => {
  const time = seconds(1000);
  const track = trackOf(time, time, 5, (index) => index % 2 === 0);
  const line = lineOf(track, 0, 1000, 10);
  assert.equal(line.lonely.size, 0);
  assert.equal(line.points.filter(({ value }) => value === null).length, 9);
});

test("lines stand side by side in one table", () => {
  const time = [0, 1, 2, 3];
  const one = lineOf(trackOf(time, [1, 2, NaN, 4], 5, (index) => index !== 2), 0, 3, 100);
  const other = lineOf(trackOf(time, [NaN, NaN, 7, NaN], 5, (index) => index === 2), 0, 3, 100);
  const { data, lonely } = tableOf([one, other], time);
  assert.deepEqual(data, [[0, 1, 2, 2.5, 3], [1, 2, null, null, 4], [undefined, undefined, 7, undefined, undefined]]);
  assert.deepEqual(lonely, [[4], [2]]);
});
