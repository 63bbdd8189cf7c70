// The report in a browser, as a reader has it. With QUELLIN_PICTURES, pictures are left in that folder.
import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { Clock } from "../../Web/src/data/clock.js";
import { bytes, decimal, duration } from "../../Web/src/data/format.js";
import { Browser } from "./browser.mjs";
import { ribbonRoom } from "../../Web/src/plot/decor.js";
import { chromium, madeUpDay, Reports } from "./reports.mjs";

const reports = new Reports();
const browser = new Browser(chromium);
let macbook;

before(() => {
  macbook = reports.record("Twenty minutes of a MacBook");
});

after(async () => {
  await browser.close();
  reports.remove();
});

// Looks at a page, and then that it had nothing to complain of and asked nobody for anything.
async function look(address, options, check) {
  const page = await browser.open(address, options);
  await check(page);
  assert.deepEqual(page.complaints, []);
  assert.deepEqual(page.requests, []);
  await page.close();
}

async function keepPicture(page, name) {
  if (process.env.QUELLIN_PICTURES) writeFileSync(join(process.env.QUELLIN_PICTURES, `report-${name}.png`), await page.picture());
}

const cells = (page, selector) =>
  page.run(`[...document.querySelectorAll('${selector} tbody tr')].map((row) => [...row.cells].map((cell) => cell.innerText.trim()))`);
const range = (page) => page.run("document.querySelector('#values details').open = true").then(() => page.settle())
  .then(() => page.run("document.querySelector('#values tbody tr td').innerText"));
const readout = (page, name) => page.text(`[data-readout=${name}] dd`);

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
    assert.deepEqual(await page.texts("#cards .remark"), []);
  });
});

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

const ink = (page) => page.run("getComputedStyle(document.body).color");

// What is drawn, as a number that another drawing does not have.
const drawing = (page) => page.run("document.querySelector('#plot-watts .uplot canvas').toDataURL()");

test("both palettes, by the system's wish and by the switch", () => look(macbook.address, {}, async (page) => {
  const [lightInk, lightDrawing] = [await ink(page), await drawing(page)];
  await keepPicture(page, "light");
  await page.click("input[value=dark]");
  await page.settle();
  const [darkInk, darkDrawing] = [await ink(page), await drawing(page)];
  assert.notEqual(darkInk, lightInk);
  assert.notEqual(darkDrawing, lightDrawing);
  await page.click("input[value=auto]");
  await page.prefer("dark");
  await page.settle();
  assert.deepEqual([await ink(page), await drawing(page)], [darkInk, darkDrawing]);
  await keepPicture(page, "dark");
  await page.click("input[value=light]");
  await page.settle();
  assert.deepEqual([await ink(page), await drawing(page)], [lightInk, lightDrawing]);
}));

// What is wider than the box that it stands in.
const cut = (page, selector) => page.run(`[...document.querySelectorAll(${JSON.stringify(selector)})]
  .filter((one) => one.scrollWidth > one.clientWidth).map((one) => one.innerText)`);

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
    await keepPicture(page, "narrow");
  }));

test("a legend tells what the colours and patterns of the plot stand for", () => look(macbook.address, {}, async (page) => {
  assert.deepEqual(await page.texts("#plot-watts .legend .entry"),
    ["Battery draw", "Battery charge input", "IOReport silicon power", "Battery supplement", "no readings"]);
  assert.deepEqual(await page.texts("#plot-maxFanRPM .legend"), []);
}));

test("on paper all boxes are as wide, no figure breaks, and it takes three sheets", () => look(macbook.address, { scheme: "dark" }, async (page) => {
  const paper = (await page.paper()).toString("latin1");
  if (process.env.QUELLIN_PICTURES) writeFileSync(join(process.env.QUELLIN_PICTURES, "report-print.pdf"), paper, "latin1");
  assert.equal(paper.match(/\/Type \/Page\b/g).length, 3);
  await page.settle();
  assert.equal(await page.run("document.documentElement.dataset.theme"), undefined, "the colours for paper stay on paper");
  await page.size(688, 1000);  // a sheet of A4 within its margins
  await page.send("Emulation.setEmulatedMedia", { media: "print" });
  await page.run("dispatchEvent(new Event('beforeprint'))");
  await page.settle();
  const widths = await page.run("[...document.querySelectorAll('.cards, .plots, .scroll')].map((box) => box.offsetWidth)");
  assert.deepEqual(new Set(widths), new Set([widths[0]]));
  assert.ok(await page.run("document.documentElement.scrollWidth") <= 688);
  assert.deepEqual(await cut(page, ".scroll"), []);
  assert.deepEqual(await page.run(`[...document.querySelectorAll(".card dd")].filter((one) => one.scrollWidth > one.clientWidth
    || one.clientHeight > 1.6 * parseFloat(getComputedStyle(one).fontSize) * 1.2).map((one) => one.innerText)`), []);
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

test("an empty session says so", async () => {
  const empty = reports.record("Nothing", { words: ["--for", "1s"], isEmptied: true });
  assert.equal(empty.shown.summary.sampleCount, 0);
  await look(empty.address, {}, async (page) => {
    assert.match(await page.text("main"), /No power was read[^]*nothing to plot[^]*no samples[^]*no figures/);
    assert.deepEqual(await page.texts("#zoom, #readout, #keys, table"), [], "nothing that has nothing to work on");
    assert.equal(await page.text("[data-fact=pressure] dd"), "unknown");
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
  });
});
