// What is drawn behind and above the lines: gaps, and the power sources. A legend tells what they are.
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

/** Hatches the gaps in view. */
export function paintGaps(plot, gaps, view) {
  inside(plot, (context, box, ratio) => {
    context.fillStyle = gapFill(context, ratio);
    const least = ((view.end - view.start) / box.width) * 0.5;
    for (const gap of visibleBands(gaps, view.start, view.end, least)) {
      const { left, width } = extent(plot, gap);
      context.fillRect(left, box.top, Math.max(width, 1), box.height);
    }
  });
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

/** The ribbon above the plot: the source of each band, as a swatch shows it. */
export function paintRibbon(plot, bands, sources, view) {
  inside(plot, (context, box, ratio) => {
    const height = ribbonHeight * ratio;
    const top = box.top - height - ribbonGap * ratio;
    const fills = sources.map(({ kind }) => sourceFill(context, kind, ratio));
    const least = ((view.end - view.start) / box.width) * 0.5;
    for (const band of visibleBands(bands, view.start, view.end, least)) {
      const { left, width } = extent(plot, band);
      const { kind } = sources[band.source];
      context.fillStyle = fills[band.source];
      context.fillRect(left, top, Math.max(width - ratio, 1), height);
      context.strokeStyle = colour(colourName(kind));
      context.lineWidth = ratio;
      if (width > 4 * ratio) context.strokeRect(left + ratio / 2, top + ratio / 2, width - 2 * ratio, height - ratio);
    }
  });
}

/** Room for the ribbon, in points. */
export const ribbonRoom = ribbonHeight + ribbonGap + 4;
