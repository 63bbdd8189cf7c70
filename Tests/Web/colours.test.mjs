import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";

const sheet = readFileSync(new URL("../../Web/src/style/colours.css", import.meta.url), "utf8");

// The colours that a rule of the sheet sets, as [red, green, blue] from 0 to 255.
function paletteOf(selector) {
  const start = sheet.indexOf(`${selector} {`);
  assert.ok(start >= 0, selector);
  const body = sheet.slice(start, sheet.indexOf("}", start));
  return Object.fromEntries(Array.from(body.matchAll(/(--\w+): #(..)(..)(..);/g),
    ([, name, ...parts]) => [name, parts.map((part) => parseInt(part, 16))]));
}

const palettes = {
  light: paletteOf(":root"), darkBySystem: paletteOf(':root:not([data-theme="light"])'), darkBySwitch: paletteOf(':root[data-theme="dark"]'),
};

const linear = (colour) => colour.map((part) => {
  const share = part / 255;
  return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
});
const times = (matrix, vector) => matrix.map((row) => row.reduce((sum, factor, index) => sum + factor * vector[index], 0));
const toXYZ = [[0.4124, 0.3576, 0.1805], [0.2126, 0.7152, 0.0722], [0.0193, 0.1192, 0.9505]];

// Relative luminance and contrast as WCAG 2 defines them.
const luminance = (colour) => times(toXYZ, linear(colour))[1];

function contrast(one, other) {
  const [low, high] = [luminance(one), luminance(other)].sort((left, right) => left - right);
  return (high + 0.05) / (low + 0.05);
}

test("the dark colours are the same by the system's wish and by the switch, and as many as the light ones", () => {
  assert.deepEqual(palettes.darkBySystem, palettes.darkBySwitch);
  assert.deepEqual(Object.keys(palettes.darkBySwitch), Object.keys(palettes.light));
});

test("text stands out from what is behind it, and so do lines and patterns, in either palette", () => {
  const least = {
    "--ink": 7, "--muted": 4.5, "--accent": 4.5, "--figure": 4.5, "--batteryDischarge": 3, "--batteryChargeInput": 3,
    "--batterySupplement": 3, "--ioReportSiliconPower": 3, "--noSource": 3,
  };
  for (const [name, palette] of Object.entries(palettes)) {
    for (const [colour, ratio] of Object.entries(least)) {
      for (const behind of ["--page", "--surface"]) {
        const found = contrast(palette[colour], palette[behind]);
        assert.ok(found >= ratio, `${colour} on ${behind}, ${name}: ${found.toFixed(2)}`);
      }
    }
  }
});

// What is left of red, green and blue, on linear light, without the cones for red and without those for green
// (Vienot, Brettel and Mollon 1999).
const visions = {
  "all cones": [[1, 0, 0], [0, 1, 0], [0, 0, 1]],
  "none for red": [[0.11238, 0.88762, 0], [0.11238, 0.88762, 0], [0.00401, -0.00401, 1]],
  "none for green": [[0.29275, 0.70725, 0], [0.29275, 0.70725, 0], [-0.02234, 0.02234, 1]],
};

// Lightness, green to red, blue to yellow: CIELAB under daylight.
function lab(colour, vision) {
  const white = times(toXYZ, [1, 1, 1]);
  const [x, y, z] = times(toXYZ, times(vision, linear(colour))).map((part, index) => {
    const share = part / white[index];
    return share > 216 / 24389 ? Math.cbrt(share) : (24389 / 27 * share + 16) / 116;
  });
  return [116 * y - 16, 500 * (x - y), 200 * (y - z)];
}

test("the power sources look different to readers of every kind of colour vision", () => {
  const sources = ["--batteryDischarge", "--batteryChargeInput", "--batterySupplement", "--ioReportSiliconPower", "--noSource"];
  for (const [name, palette] of Object.entries(palettes)) {
    for (const [lacking, vision] of Object.entries(visions)) {
      for (const [index, one] of sources.entries()) {
        for (const other of sources.slice(index + 1)) {
          const [left, right] = [one, other].map((source) => lab(palette[source], vision));
          const difference = Math.hypot(...left.map((part, axis) => part - right[axis]));
          assert.ok(difference >= 20, `${one} and ${other}, ${name}, ${lacking}: ${difference.toFixed(1)}`);
        }
      }
    }
  }
});
