// The colours and patterns of power sources. Hues are those of Okabe and Ito, which readers of every kind of
// colour vision tell apart, darkened or lightened until they stand out from the page; each source has a pattern of
// its own besides, so that nothing depends on its colour.

const patterns = {
  batteryDischarge: "solid",
  batteryChargeInput: "rising",
  batterySupplement: "crossed",
  ioReportSiliconPower: "upright",
};

/** The name of a source's colour in the style sheet. */
export function colourName(kind) {
  return kind in patterns ? `--${kind}` : "--noSource";
}

/** The present value of a colour of the style sheet. */
export function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}

const tile = 7;

function strokes(context, pattern) {
  const lines = {
    solid: [],
    rising: [[0, tile, tile, 0], [-1, 1, 1, -1], [tile - 1, tile + 1, tile + 1, tile - 1]],
    crossed: [[0, 0, tile, tile], [0, tile, tile, 0]],
    upright: [[tile / 2, 0, tile / 2, tile]],
  }[pattern];
  context.beginPath();
  for (const [fromX, fromY, toX, toY] of lines) {
    context.moveTo(fromX, fromY);
    context.lineTo(toX, toY);
  }
  context.stroke();
}

/** What fills an area of a source on a canvas with `ratio` pixels to a point. */
export function sourceFill(context, kind, ratio) {
  const pattern = patterns[kind];
  const ink = colour(colourName(kind));
  if (pattern === "solid") return ink;
  return patternFill(context, ratio, (small) => {
    small.globalAlpha = 0.3;
    small.fillStyle = ink;
    small.fillRect(0, 0, tile, tile);
    small.globalAlpha = 1;
    small.strokeStyle = ink;
    small.lineWidth = 1.6;
    if (pattern) strokes(small, pattern);
  });
}

/** What fills the time without readings. */
export function gapFill(context, ratio) {
  return patternFill(context, ratio, (small) => {
    small.strokeStyle = colour("--gap");
    small.lineWidth = 1;
    strokes(small, "rising");
  });
}

function patternFill(context, ratio, paint) {
  const small = document.createElement("canvas");
  small.width = small.height = Math.round(tile * ratio);
  const inner = small.getContext("2d");
  inner.scale(small.width / tile, small.height / tile);
  paint(inner);
  return context.createPattern(small, "repeat");
}
