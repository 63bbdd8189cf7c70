// What a reader does with a report's page.
import assert from "node:assert/strict";
import { test } from "node:test";
import { ribbonRoom } from "../../Web/src/plot/decor.js";
import { cells, cut, look, macbook, range, readout, reports } from "./pages.mjs";
import { madeUpDay } from "./reports.mjs";

test("the keyboard moves the cursor, zooms, and goes back", () => look(macbook.address, {}, async (page) => {
  const all = await range(page);
  await page.focus("#plot-watts");
  await page.press("ArrowRight");
  assert.equal(await readout(page, "time"), "09:40:00");
  await page.press("End");
  assert.equal(await readout(page, "time"), "09:59:55");
  assert.equal(await readout(page, "source"), "Battery draw");
  assert.match(await page.run("document.getElementById('spoken').textContent"), /^09:59:55, Battery draw, Power \d+\.\d\d W/);
  await page.press("ArrowLeft");
  assert.equal(await readout(page, "time"), "09:59:50");
  await page.press("+", { times: 3 });
  const zoomed = await range(page);
  assert.notEqual(zoomed, all);
  await page.press("-");
  assert.notEqual(await range(page), zoomed);
  await page.press("Escape");
  assert.equal(await range(page), all);
  assert.equal(await readout(page, "time"), "\u2013");
}));

test("the mouse reads values and drags a zoom, on every plot alike", () => look(macbook.address, {}, async (page) => {
  const all = await range(page);
  for (const plot of ["#plot-watts", "#plot-maxTemperature"]) {
    await page.run(`document.querySelector('${plot}').scrollIntoView({ block: "center", behavior: "instant" })`);
    const box = await page.run(`(() => {
      const { x, y, width, height } = document.querySelector('${plot} .u-over').getBoundingClientRect();
      return { x, y: y + height / 2, width };
    })()`);
    await page.mouse("mouseMoved", box.x + box.width / 4, box.y);
    await page.settle();
    const moment = 4 * 60 + 58.75;
    const index = await page.run(`(() => {
      const { seconds } = JSON.parse(document.getElementById("data").textContent).analysis.series;
      return seconds.findLastIndex((second) => second <= ${moment} + 2.5);
    })()`);
    assert.equal(await readout(page, "watts"), await page.run(`JSON.parse(document.getElementById("data").textContent)
      .analysis.series.watts.values[${index}].toFixed(2) + " W"`));
    assert.equal(await page.run(`[...document.querySelectorAll("#plot-watts .u-cursor-pt")]
      .filter((point) => !point.classList.contains("u-off") && point.getBoundingClientRect().x > 0).length`), 1, "one source, one point");
    await page.mouse("mousePressed", box.x + box.width / 4, box.y, 1);
    await page.mouse("mouseMoved", box.x + box.width / 2, box.y, 1);
    await page.mouse("mouseReleased", box.x + box.width / 2, box.y);
    await page.settle();
    assert.match(await range(page), /^09:4[45]:/, plot);
    await page.click("#zoom button:last-child");
    await page.settle();
    assert.equal(await range(page), all);
  }
}));

test("a segment leads to its stretch", () => look(macbook.address, {}, async (page) => {
  await page.click("#segments tbody tr:nth-child(4) button");
  await page.settle();
  assert.match(await range(page), /^09:53:00/);
}));

test("buttons move the view on, and none leads out of the session", () => look(macbook.address, {}, async (page) => {
  const press = async (name) => {
    await page.click(`#zoom [aria-label="${name}"]`);
    await page.settle();
    return range(page);
  };
  const isOff = (name) => page.run(`document.querySelector('#zoom [aria-label="${name}"]').disabled`);
  assert.deepEqual([await isOff("Earlier"), await isOff("Later")], [true, true]);
  assert.match(await press("Zoom in"), /^09:44:5/);
  assert.match(await press("Earlier"), /^09:40:0/);
  assert.deepEqual([await isOff("Earlier"), await isOff("Later")], [true, false]);
  assert.match(await press("Later"), /^09:44:5/);
  assert.match(await press("Later"), /^09:49:5/);
  assert.deepEqual([await isOff("Earlier"), await isOff("Later")], [false, true]);
}));

test("a zoom over 86,400 samples draws each plot once and four points a column at most, and the one peak is there", async () => {
  const address = reports.replaceData(macbook.path, madeUpDay);
  await look(address, {}, async (page) => {
    const highest = await page.run(`(() => {
      const canvas = document.querySelector("#plot-watts .uplot canvas");
      const { width, height } = canvas;
      const pixels = canvas.getContext("2d").getImageData(0, 0, width, height).data;
      const colour = getComputedStyle(document.documentElement).getPropertyValue("--batteryChargeInput").trim();
      const ink = [1, 3, 5].map((place) => parseInt(colour.slice(place, place + 2), 16));
      const isInk = (x, y) => ink.every((part, index) => Math.abs(pixels[4 * (y * width + x) + index] - part) < 70);
      const below = Math.ceil(${ribbonRoom} * devicePixelRatio) + 2;
      for (let y = below; y < height; ++y) {
        for (let x = Math.floor(width * 0.6); x < width * 0.68; ++x) if (isInk(x, y)) return y / height;
      }
      return 1;
    })()`);
    assert.ok(highest < 0.3, `the peak of one second reaches up to ${highest} of the plot`);
    const { plots, columns, zooms } = await page.run(`(async () => {
      const frame = () => new Promise((done) => requestAnimationFrame(done));
      const counts = { draws: 0, points: 0 };
      const count = (prototype, method, what) => {
        const before = prototype[method];
        prototype[method] = function (...where) {
          counts[what] += 1;
          return before.apply(this, where);
        };
      };
      count(Path2D.prototype, "lineTo", "points");
      count(Path2D.prototype, "moveTo", "points");
      count(CanvasRenderingContext2D.prototype, "clearRect", "draws");
      const zooms = [];
      for (const key of ["+", "+", "-", "-"]) {
        document.querySelector("#plot-watts").dispatchEvent(new KeyboardEvent("keydown", { key }));
        await frame();
        await frame();
        zooms.push({ ...counts });
        counts.draws = counts.points = 0;
      }
      const canvases = document.querySelectorAll(".uplot canvas");
      return { plots: canvases.length, columns: canvases[0].width, zooms };
    })()`);
    assert.equal(plots, 5);
    await page.focus("#plot-watts");
    await page.press("End");
    assert.equal(await readout(page, "time"), "5 Mar, 09:39:59");
    assert.equal((await cells(page, "#segments"))[0][3], "4 Mar, 09:40:00");
    assert.deepEqual(await cut(page, ".readout dd"), []);
    for (const { draws, points } of zooms) {
      assert.equal(draws, plots, "each plot is drawn once");
      assert.ok(points > columns && points <= 4 * columns * plots, `${points} points on ${plots} plots of ${columns} columns`);
    }
  });
});
