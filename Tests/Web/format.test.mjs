import assert from "node:assert/strict";
import { test } from "node:test";
import { Clock } from "../../Web/src/data/clock.js";
import { bytes, change, counted, decimal, duration, whole, withUnit } from "../../Web/src/data/format.js";

test("decimals are rounded to the nearest, of two equally near ones to the even", () => {
  for (const [value, places, text] of [
    [12.3456, 2, "12.35"], [0.125, 2, "0.12"], [0.375, 2, "0.38"], [-0.125, 2, "-0.12"], [2.5, 0, "2"], [3.5, 0, "4"],
    [1.005, 2, "1.00"], [0.004, 2, "0.00"], [-0.004, 2, "0.00"], [1e6, 1, "1000000.0"], [99.995, 2, "100.00"],
    [0.0625, 3, "0.062"], [7, 3, "7.000"],
  ]) assert.equal(decimal(value, places), text, `${value} with ${places}`);
});

test("an absent figure is unknown and has no unit", () => {
  for (const absent of [undefined, NaN]) {
    assert.equal(decimal(absent, 2), "unknown");
    assert.equal(whole(absent), "unknown");
    assert.equal(withUnit(decimal(absent, 2), "W"), "unknown");
  }
  assert.equal(withUnit(decimal(0, 2), "W"), "0.00 W");
  assert.equal(change(undefined, 5), "unknown");
  assert.equal(change(98, 96), "98 to 96 %");
});

test("lengths of time are spelled by their size", () => {
  for (const [seconds, text] of [
    [-3, "0 s"], [0.4, "0 s"], [59.4, "59 s"], [59.6, "1 min 0 s"], [3599, "59 min 59 s"], [3600, "1 h 0 min"],
    [86399, "23 h 59 min"],
  ]) assert.equal(duration(seconds), text);
});

test("bytes and counts", () => {
  assert.deepEqual([0, 999, 1000, 1_250_000, 5e12].map(bytes), ["0 B", "999 B", "1.0 kB", "1.2 MB", "5000.0 GB"]);
  assert.deepEqual([counted(1, "gap"), counted(2, "gap")], ["1 gap", "2 gaps"]);
});

const moment = Date.UTC(2025, 2, 4, 23, 59, 58) / 1000;

test("a clock in UTC does not depend on where the reader is", () => {
  const clock = new Clock();
  assert.equal(clock.span(moment, moment + 1), "4 Mar 2025, 23:59:58 \u2013 23:59:59 UTC");
  assert.equal(clock.span(moment, moment + 2), "4 Mar 2025, 23:59:58 \u2013 5 Mar 2025, 00:00:00 UTC");
});

test("a clock in local time is that of the reader", () => {
  const clock = new Clock("local");
  assert.equal(clock.time(moment), new Date(moment * 1000).toTimeString().slice(0, 8));
  assert.equal(clock.name, "local time");
});

test("ticks are as short as their distance allows, and tell when a day begins", () => {
  const clock = new Clock();
  const midnight = moment + 2;
  assert.equal(clock.tick(midnight, 3600), "5 Mar");
  assert.equal(clock.tick(midnight + 3600, 3600), "01:00");
  assert.equal(clock.tick(midnight, 30), "00:00:00");
  assert.equal(clock.tick(midnight + 86400, 86400), "6 Mar");
});
