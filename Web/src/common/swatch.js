import { gapFill, sourceFill } from "./palette.js";
import { element } from "./dom.js";

const size = 14;

// A canvas element is kept with the kind that it shows, none for a gap, to be painted anew in other colours.
const painted = new Map();

function paint(canvas, kind) {
  const ratio = Math.max(devicePixelRatio, 2);
  canvas.width = canvas.height = size * ratio;
  const context = canvas.getContext("2d");
  context.fillStyle = kind ? sourceFill(context, kind, ratio) : gapFill(context, ratio);
  context.fillRect(0, 0, canvas.width, canvas.height);
}

/** Colour and pattern of a power source, or without one those of a gap, as the plots have them. */
export function swatch(kind) {
  const canvas = element("canvas", { class: "swatch", "aria-hidden": "true" });
  painted.set(canvas, kind);
  paint(canvas, kind);
  return canvas;
}

/** Paints all swatches in the present colours. */
export function repaintSwatches() {
  for (const [canvas, kind] of painted) paint(canvas, kind);
}
