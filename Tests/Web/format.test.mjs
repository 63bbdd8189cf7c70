import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { Clock } from "../../Web/src/data/clock.js";
import { bytes, change, counted, decimal, duration, whole, withUnit } from "../../Web/src/data/format.js";

process.env.TZ = "Asia/Tokyo"; // nine hours ahead of UTC, all year

const table = JSON.parse(readFileSync(new URL("../Fixtures/figure-texts.json", import.meta.url), "utf8"));

test("figures are spelled as the command line spells them", () => {
  const spell = {
    decimal: ({ value, places }) => decimal(value, places), whole: ({ value }) => whole(value),
    duration: ({ value }) => duration(value), bytes: ({ value }) => bytes(value),
    samples: ({ value }) => counted(value, "sample"),
  };
  assert.ok(table.length > 0);
  for (const figure of table) assert.equal(spell[figure.kind](figure), figure.text, JSON.stringify(figure));
});

test("an absent figure is unknown and has no unit", () => {
  assert.equal(decimal(NaN, 2), "unknown");
  assert.equal(whole(NaN), "unknown");
  assert.equal(withUnit(decimal(undefined, 2), "W"), "unknown");
  assert.equal(withUnit(decimal(0, 2), "W"), "0.00 W");
  assert.equal(change(undefined, 5), "unknown");
  assert.equal(change(98, 96), "98 to 96 %");
});

const moment = Date.UTC(2025, 2, 4, 23, 59, 58) / 1000;

test("a clock in UTC does not depend on where the reader is", () => {
  const clock = new Clock();
  assert.equal(clock.span(moment, moment + 1), "4 Mar 2025, 23:59:58 \u2013 23:59:59 UTC");
  assert.equal(clock.span(moment, moment + 2), "4 Mar 2025, 23:59:58 \u2013 5 Mar 2025, 00:00:00 UTC");
});

test("a clock in local time is that of the reader", () => {
  const clock = new Clock("local");
  assert.equal(clock.time(moment), "08:59:58");
  assert.equal(clock.name, "local time");
});

test("the time of a moment names the day in a session that lasts beyond one, in either zone", () => {
  const at = (zone, seconds) => new Clock(zone, { start: moment, end: moment + seconds }).moment(moment);
  assert.equal(at("utc", 1), "23:59:58");
  assert.equal(at("utc", 2), "4 Mar, 23:59:58");
  assert.equal(at("local", 86400), "5 Mar, 08:59:58");
});

test("ticks are as short as their distance allows, and tell when a day begins", () => {
  const clock = new Clock();
  const midnight = moment + 2;
  assert.equal(clock.tick(midnight, 3600), "5 Mar");
  assert.equal(clock.tick(midnight + 3600, 3600), "01:00");
  assert.equal(clock.tick(midnight, 30), "00:00:00");
  assert.equal(clock.tick(midnight + 86400, 86400), "6 Mar");
});
