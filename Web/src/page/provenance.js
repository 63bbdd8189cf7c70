import { element, place, table } from "./dom.js";
import { swatch } from "./swatch.js";

const confidences = {
  batteryTerminal: "Measured at the battery's terminals",
  ioReport: "The manufacturer's energy model",
};

/** Who stands behind a figure. */
export function confidenceText(confidence) {
  return confidences[confidence] ?? confidence;
}

const limits = {
  batteryDischarge: ["The whole machine while unplugged, display included", "A figure for one chip or one program"],
  batteryChargeInput: ["What flows into the battery", "What the machine uses, or what the wall socket gives"],
  batterySupplement: ["What the battery adds to a charger that is too weak", "The whole consumption"],
  ioReportSiliconPower: ["Processor, graphics, neural engine and memory", "Display, drives, radios and losses: it is less than the machine draws"],
};

const others = [
  ["energy", "Energy, Wh", "Computed", "The readings of one source by the trapezoid rule; the time between two readings is bridged", "A sum over different sources; what was used during a gap is a guess"],
  ["batteryPercent", "Battery charge, %", "As the system reports it", "What is left of what the battery holds today", "A part of its capacity when new"],
  ["maxTemperature", "Hottest sensor, \u00b0C", "Read from the sensors", "The highest of all sensors in each sample", "One part of the machine: which sensor it is may change"],
  ["maxFanRPM", "Fastest fan, rpm", "Read from the fans", "The highest of all fans in each sample", "Noise, or the flow of air"],
  ["thermalPressure", "Thermal pressure", "As the system reports it", "How hard the system holds the machine back: 0 not at all, 4 the most", "A temperature"],
  ["score", "Score of a process", "Derived or estimated", "A ranking by processor time, wake-ups and traffic", "Watts"],
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
    .filter(({ kind }) => kind in limits)
    .map(({ kind, label, confidence, summary }) =>
      ({ figure: [swatch(kind), `${label}, W`], confidence: confidenceText(confidence), is: limits[kind][0], note: summary, isNot: limits[kind][1] }));
  const rows = others
    .filter(([name]) => isThere(session, name))
    .map(([, figure, confidence, is, isNot]) => ({ figure: [figure], confidence, is, isNot }));
  place("provenance", table("What each figure is", [
    { heading: "Figure", cell: (row) => row.figure },
    { heading: "Confidence", cell: (row) => row.confidence },
    { heading: "What it is", cell: (row) => [row.is, row.note && element("span", { class: "note" }, row.note)].filter(Boolean) },
    { heading: "What it is not", cell: (row) => row.isNot },
  ], [...powers, ...rows]));
}
