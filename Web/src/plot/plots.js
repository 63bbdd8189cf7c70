// The plots of a session: watts, and whatever else was recorded.
import { bandsOf } from "../data/bands.js";
import { makeTrack } from "../data/track.js";
import { paintBands, paintRibbon, ribbonRoom } from "./decor.js";
import { colourName } from "../common/palette.js";
import { Plot } from "./plot.js";

// Up to `least` where nothing is higher.
const fromZero = (least) => (low, high) => [0, Math.max(high * 1.1, least)];

// At least ten percent, within what a battery can hold.
function percentRange(low, high) {
  const middle = ((low ?? 0) + (high ?? 100)) / 2;
  const half = Math.max(((high ?? 100) - (low ?? 0)) * 0.6, 5);
  const start = Math.min(Math.max(middle - half, 0), Math.max(100 - 2 * half, 0));
  return [start, Math.min(start + 2 * half, 100) + half * 0.08];
}

function temperatureRange(low, high) {
  if (low === null || low === undefined) return [0, 100];
  const room = Math.max((high - low) * 0.1, 1);
  return [low - room, high + room];
}

function powerPlot(page) {
  const { session } = page;
  const lines = session.sources.map(({ kind }, index) => ({
    track: makeTrack(session, session.watts, (sample) => session.source[sample] === index),
    ink: colourName(kind), isFilled: true,
  })).filter(({ track }) => !track.isEmpty);
  if (lines.length === 0) return undefined;
  const bands = bandsOf(session);
  return {
    name: "watts", title: "Power", unit: "W", height: 270, room: ribbonRoom, lines,
    description: "Power in watts over time, with the power source of each stretch",
    gaps: session.gaps, range: fromZero(1),
    legend: [...session.sources, ...(session.gaps.length > 0 ? [{ label: "no readings" }] : [])],
    paintBehind: (plot) => paintBands(plot, bands, session.sources, page.view),
    paintAbove: (plot) => paintRibbon(plot, bands, session.sources, page.view),
  };
}

// A plot of one figure; none where it was never read.
function figurePlot({ session }, name, options) {
  const track = makeTrack(session, session[name]);
  if (track.isEmpty) return undefined;
  return { name, gaps: track.gaps, height: 110, ...options, lines: [{ track, ink: "--figure", ...options.line }] };
}

/** The plots of the page's session, in the order in which they stand. */
export function makePlots(page) {
  const options = [
    powerPlot(page),
    figurePlot(page, "batteryPercent", {
      title: "Battery charge", unit: "%", description: "Battery charge in percent over time",
      range: percentRange, line: { isStepped: true },
    }),
    figurePlot(page, "maxTemperature", {
      title: "Hottest sensor", unit: "\u00b0C", description: "Temperature of the hottest sensor over time",
      range: temperatureRange,
    }),
    figurePlot(page, "maxFanRPM", {
      title: "Fastest fan", unit: "rpm", description: "Speed of the fastest fan over time", range: fromZero(1000),
    }),
    figurePlot(page, "thermalPressure", {
      title: "Thermal pressure", unit: "0 none, 4 most", description: "Thermal pressure from 0 to 4 over time",
      height: 116, range: () => [0, 4.2], line: { isStepped: true, isFilled: true },
      axis: { splits: () => [0, 1, 2, 3, 4], space: 10 },
    }),
  ];
  const shown = options.filter(Boolean);
  // All share one axis of time; it is written below the first and the last.
  return shown.map((option, place) =>
    new Plot(page, { ...option, namesTime: place === 0 || place + 1 === shown.length }));
}
