import { element, place, table } from "../common/dom.js";
import { swatch } from "../common/swatch.js";

const confidences = {
  batteryTerminal: "Measured at the battery's terminals",
  ioReport: "The manufacturer's energy model",
};

/** Who stands behind a figure. */
export function confidenceText(confidence) {
  return confidences[confidence] ?? confidence;
}

// The figures that are no power readings: name, heading, who stands behind it, what it is, and what it is not. What
// a power reading is comes with the data.
const others = [
  ["energy", "Energy, Wh", "Computed", "The readings of one source by the trapezoid rule; the time between two readings is bridged", "a sum over different sources; what was used during a gap is a guess"],
  ["batteryPercent", "Battery charge, %", "As the system reports it", "What is left of what the battery holds today", "a part of its capacity when new"],
  ["maxTemperature", "Hottest sensor, \u00b0C", "Read from the sensors", "The highest of all sensors in each sample", "one part of the machine: which sensor it is may change"],
  ["maxFanRPM", "Fastest fan, rpm", "Read from the fans", "The highest of all fans in each sample", "noise, or the flow of air"],
  ["thermalPressure", "Thermal pressure", "As the system reports it", "How hard the system holds the machine back: 0 not at all or not told, 4 the most", "a temperature"],
  ["score", "Score of a process", "Derived or estimated", "A ranking by what a process used: processor time, wake-ups, disk and, where it is measured, energy", "watts"],
];

// Which of the other figures this session has.
function isThere(session, name) {
  if (name === "energy") return session.sourceTotals.length > 0;
  if (name === "score") return session.summary.topContributors.length > 0;
  return session[name].some((value) => !Number.isNaN(value));
}

/** Which physical quantity each figure of the page is. */
export function showProvenance({ session }) {
  const powers = session.sources
    .filter(({ summary }) => summary !== undefined)
    .map(({ kind, label, confidence, summary }) =>
      ({ figure: [swatch(kind), `${label}, W`], confidence: confidenceText(confidence), is: summary }));
  const rows = others
    .filter(([name]) => isThere(session, name))
    .map(([, figure, confidence, is, isNot]) => ({ figure: [figure], confidence, is, isNot }));
  if (powers.length + rows.length === 0) {
    place("provenance", element("p", { class: "notice" }, "There are no figures."));
    return;
  }
  const meaning = ({ is, isNot }) => [is, isNot && element("span", { class: "note" }, `Not: ${isNot}`)];
  place("provenance", table("What each figure is", [
    { heading: "Figure", cell: (row) => row.figure },
    { heading: "Confidence", cell: (row) => row.confidence },
    { heading: "What it is, and what it is not", cell: (row) => meaning(row).filter(Boolean) },
  ], [...powers, ...rows]));
}
