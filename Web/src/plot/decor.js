// What is drawn behind and above the lines: gaps, and the power sources.
import { visibleBands } from "../data/bands.js";
import { colour, colourName, gapFill, sourceFill } from "../common/palette.js";

const ribbonHeight = 9;
const ribbonGap = 5;

// Where a stretch of time lies on the canvas of a plot.
function extent(plot, { start, end }) {
  const left = plot.valToPos(start, "x", true);
  return { left, width: plot.valToPos(end, "x", true) - left };
}

function inside(plot, paint) {
  plot.ctx.save();
  paint(plot.ctx, plot.bbox, devicePixelRatio);
  plot.ctx.restore();
}

/** Hatches the gaps in view, and says what they are where there is room. */
export function paintGaps(plot, gaps, view, label) {
  inside(plot, (context, box, ratio) => {
    context.fillStyle = gapFill(context, ratio);
    const least = ((view.end - view.start) / box.width) * 0.5;
    const visible = visibleBands(gaps, view.start, view.end, least).map((gap) => extent(plot, gap));
    for (const { left, width } of visible) context.fillRect(left, box.top, Math.max(width, 1), box.height);
    if (!label) return;
    for (const { left, width } of visible) writeAcross(context, label, left + width / 2, box, width, ratio);
  });
}

function writeAcross(context, text, middle, box, width, ratio) {
  context.font = `${11 * ratio}px system-ui, sans-serif`;
  context.textAlign = "center";
  context.textBaseline = "middle";
  const needed = context.measureText(text).width + 10 * ratio;
  if (needed > width) return;
  const top = box.top + box.height / 2;
  context.fillStyle = colour("--surface");
  context.fillRect(middle - needed / 2, top - 9 * ratio, needed, 18 * ratio);
  context.fillStyle = colour("--muted");
  context.fillText(text, middle, top);
}

/** Tints the bands behind the lines. */
export function paintBands(plot, bands, sources, view) {
  inside(plot, (context, box) => {
    const least = ((view.end - view.start) / box.width) * 0.5;
    context.globalAlpha = 0.07;
    for (const band of visibleBands(bands, view.start, view.end, least)) {
      const { left, width } = extent(plot, band);
      context.fillStyle = colour(colourName(sources[band.source].kind));
      context.fillRect(left, box.top, width, box.height);
    }
  });
}

/** The ribbon above the plot, which names the source of each band where there is room. */
export function paintRibbon(plot, bands, sources, view) {
  inside(plot, (context, box, ratio) => {
    const height = ribbonHeight * ratio;
    const top = box.top - height - ribbonGap * ratio;
    const fills = sources.map(({ kind }) => sourceFill(context, kind, ratio));
    const least = ((view.end - view.start) / box.width) * 0.5;
    context.font = `${11 * ratio}px system-ui, sans-serif`;
    context.textAlign = "left";
    context.textBaseline = "alphabetic";
    for (const band of visibleBands(bands, view.start, view.end, least)) {
      const { left, width } = extent(plot, band);
      const { kind, label } = sources[band.source];
      context.fillStyle = fills[band.source];
      context.fillRect(left, top, Math.max(width - ratio, 1), height);
      context.strokeStyle = colour(colourName(kind));
      context.lineWidth = ratio;
      if (width > 4 * ratio) context.strokeRect(left + ratio / 2, top + ratio / 2, width - 2 * ratio, height - ratio);
      context.fillStyle = colour("--ink");
      if (context.measureText(label).width + 4 * ratio < width) context.fillText(label, left, top - 4 * ratio);
    }
  });
}

/** Room for the ribbon and its names, in points. */
export const ribbonRoom = ribbonHeight + ribbonGap + 18;
