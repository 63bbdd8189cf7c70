// How a report's page looks: in both palettes, on narrow screens and on paper.
import assert from "node:assert/strict";
import { test } from "node:test";
import { cells, cut, keep, look, macbook, readout, reports } from "./pages.mjs";
import { madeUpDay } from "./reports.mjs";

const ink = (page) => page.run("getComputedStyle(document.body).color");

// What is drawn, as a number that another drawing does not have.
const drawing = (page) => page.run("document.querySelector('#plot-watts .uplot canvas').toDataURL()");

test("both palettes, by the system's wish and by the switch", () => look(macbook.address, {}, async (page) => {
  const [lightInk, lightDrawing] = [await ink(page), await drawing(page)];
  keep("report-light.png", await page.picture());
  await page.click("input[value=dark]");
  await page.settle();
  const [darkInk, darkDrawing] = [await ink(page), await drawing(page)];
  assert.notEqual(darkInk, lightInk);
  assert.notEqual(darkDrawing, lightDrawing);
  await page.click("input[value=auto]");
  await page.prefer("dark");
  await page.settle();
  assert.deepEqual([await ink(page), await drawing(page)], [darkInk, darkDrawing]);
  keep("report-dark.png", await page.picture());
  await page.click("input[value=light]");
  await page.settle();
  assert.deepEqual([await ink(page), await drawing(page)], [lightInk, lightDrawing]);
}));

test("on a telephone nothing is cut off, and every figure of a segment has its name", () =>
  look(macbook.address, { width: 390, height: 800, scheme: "dark" }, async (page) => {
    assert.equal(await page.run("document.documentElement.scrollWidth"), 390);
    assert.deepEqual(await cut(page, ".scroll, .card, .legend"), []);
    await page.focus("#plot-watts");
    await page.press("End");
    await page.press("ArrowLeft", { shift: true, times: 2 });
    assert.match(await readout(page, "maxFanRPM"), /^\d{4} rpm$/);
    assert.deepEqual(await cut(page, ".readout dd"), []);
    assert.equal(await page.run("getComputedStyle(document.querySelector('#segments td:nth-child(6)'), '::before').content"), '"Avg W"');
    keep("report-narrow.png", await page.picture());
  }));

test("a legend tells what the colours and patterns of the plot stand for", () => look(macbook.address, {}, async (page) => {
  assert.deepEqual(await page.texts("#plot-watts .legend .entry"),
    ["Battery draw", "Battery charge input", "IOReport silicon power", "Battery supplement", "no readings"]);
  assert.deepEqual(await page.texts("#plot-maxFanRPM .legend"), []);
}));

async function putOnPaper(page) {
  await page.size(688, 1000);  // a sheet of A4 within its margins
  await page.send("Emulation.setEmulatedMedia", { media: "print" });
  await page.run("dispatchEvent(new Event('beforeprint'))");
  await page.settle();
}

test("on paper all boxes are as wide, no figure breaks, and it takes three sheets", () => look(macbook.address, { scheme: "dark" }, async (page) => {
  const paper = await page.paper();
  keep("report-print.pdf", paper);
  assert.equal(paper.toString("latin1").match(/\/Type \/Page\b/g).length, 3);
  await page.settle();
  assert.equal(await page.run("document.documentElement.dataset.theme"), undefined, "the colours for paper stay on paper");
  await putOnPaper(page);
  const widths = await page.run("[...document.querySelectorAll('.cards, .plots, .scroll')].map((box) => box.offsetWidth)");
  assert.deepEqual(new Set(widths), new Set([widths[0]]));
  assert.ok(await page.run("document.documentElement.scrollWidth") <= 688);
  assert.deepEqual(await cut(page, ".scroll"), []);
  assert.deepEqual(await page.run(`[...document.querySelectorAll(".card dd")].filter((one) => one.scrollWidth > one.clientWidth
    || one.clientHeight > 1.6 * parseFloat(getComputedStyle(one).fontSize) * 1.2).map((one) => one.innerText)`), []);
}));

test("on paper the segments of several days keep within their box", () =>
  look(reports.replaceData(macbook.path, madeUpDay), {}, async (page) => {
    await putOnPaper(page);
    assert.match((await cells(page, "#segments"))[0][3], /^4 Mar,\s09:40:00$/);
    assert.deepEqual(await cut(page, ".scroll"), []);
  }));

test("every label of an axis is written whole", () => {
  const beforeLoad = `
    const write = CanvasRenderingContext2D.prototype.fillText;
    window.cut = [];
    window.written = 0;
    CanvasRenderingContext2D.prototype.fillText = function (text, x, y, ...rest) {
      const width = this.measureText(text).width;
      const left = x - { left: 0, start: 0, center: width / 2, right: width, end: width }[this.textAlign];
      window.written += 1;
      if (left < 0 || left + width > this.canvas.width) window.cut.push(text);
      return write.call(this, text, x, y, ...rest);
    };`;
  return look(macbook.address, { beforeLoad }, async (page) => {
    await page.focus("#plot-watts");
    for (const key of ["+", "+", "+", "PageUp", "PageUp", "+", "PageDown", "+", "PageDown"]) await page.press(key);
    assert.ok(await page.run("window.written") > 50);
    assert.deepEqual(await page.run("window.cut"), []);
  });
});
