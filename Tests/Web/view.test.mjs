import assert from "node:assert/strict";
import { test } from "node:test";
import { View } from "../../Web/src/plot/view.js";

// A minute from 100 on, a sample a second.
function view(count = 61) {
  const time = Float64Array.from({ length: count }, (none, index) => 100 + index);
  return new View({ time, count, start: 100, end: 160 });
}

const range = ({ start, end }) => [start, end];

test("all is in view at first, and again after showAll", () => {
  const shown = view();
  assert.deepEqual(range(shown), [100, 160]);
  assert.equal(shown.isWhole, true);
  shown.show(110, 120);
  assert.equal(shown.isWhole, false);
  shown.showAll();
  assert.equal(shown.isWhole, true);
});

test("zooming keeps the cursor where it is, or else the middle", () => {
  const shown = view();
  shown.zoom(0.5);
  assert.deepEqual(range(shown), [115, 145]);
  shown.showAll();
  shown.point(15);
  shown.zoom(0.5);
  assert.deepEqual(range(shown), [107.5, 137.5]);
  shown.zoom(2);
  assert.deepEqual(range(shown), [100, 160]);
});

test("a cursor out of view does not draw the zoom away", () => {
  const shown = view();
  shown.point(0);
  shown.show(120, 140);
  shown.zoom(0.5);
  assert.deepEqual(range(shown), [125, 135]);
});

test("no view is outside the session, wider than it, or of no width", () => {
  const shown = view();
  shown.show(90, 110);
  assert.deepEqual(range(shown), [100, 120]);
  shown.pan(-1);
  assert.deepEqual(range(shown), [100, 120]);
  shown.pan(10);
  assert.deepEqual(range(shown), [140, 160]);
  shown.zoom(100);
  assert.deepEqual(range(shown), [100, 160]);
  shown.show(130, 130);
  assert.deepEqual(range(shown), [129.75, 130.25]);
});

test("a step moves to another sample, and the view follows", () => {
  const shown = view();
  shown.step(1, 1000);
  assert.equal(shown.cursor, 0, "the first step is on to the edge");
  shown.step(1, 1000);
  assert.equal(shown.cursor, 1, "a sample is wider than a pixel");
  shown.step(20, 60);
  assert.equal(shown.cursor, 21);
  shown.step(-100, 60);
  assert.equal(shown.cursor, 0);
  shown.show(100, 110);
  shown.stepToEnd(true);
  assert.equal(shown.cursor, 10);
  shown.step(1, 10);
  assert.equal(shown.cursor, 11);
  assert.ok(shown.start <= 111 && shown.end >= 111);
});

test("a session without samples has a view and no cursor", () => {
  const shown = new View({ time: new Float64Array(0), count: 0, start: 100, end: 100 });
  assert.ok(shown.end > shown.start);
  shown.step(1, 100);
  shown.pointAt(100);
  assert.equal(shown.cursor, -1);
});

test("a session of hardly any time stands in the middle of more, and zooming out goes no further", () => {
  const shown = new View({ time: Float64Array.of(100), count: 1, start: 100, end: 100 });
  assert.deepEqual(range(shown), [95, 105]);
  assert.equal(shown.isWhole, true);
  shown.zoom(0.5);
  assert.deepEqual(range(shown), [97.5, 102.5]);
  shown.zoom(100);
  assert.deepEqual(range(shown), [95, 105]);
  assert.equal(shown.isWhole, true);
});

test("listeners hear of what changes", () => {
  const shown = view();
  const heard = [];
  shown.on("range", () => heard.push("range"));
  shown.on("cursor", (isSpoken) => heard.push(isSpoken ? "spoken" : "cursor"));
  shown.pan(0.5);
  shown.pointAt(130);
  shown.step(1, 100);
  assert.deepEqual(heard, ["range", "cursor", "spoken"]);
});
