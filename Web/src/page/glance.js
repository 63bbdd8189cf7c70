import { bytes, change, counted, decimal, duration, unknown, whole, withUnit } from "../data/format.js";
import { confidenceText } from "./provenance.js";
import { element, place } from "../common/dom.js";
import { swatch } from "../common/swatch.js";

// Energy over the whole time may come to less than each reading where these cover little of it. A difference that
// is not seen is one of rounding.
function averageNote({ averageWatts, minWatts }) {
  const isBelowEveryReading = averageWatts < minWatts && decimal(averageWatts, 2) !== decimal(minWatts, 2);
  return isBelowEveryReading ? "over the whole time, also where no readings are" : undefined;
}

// Watt-hours and the like of one power source.
function card({ kind, label, confidence, totals }) {
  const figures = [
    ["Average", withUnit(decimal(totals.averageWatts, 2), "W"), averageNote(totals)],
    ["Lowest", withUnit(decimal(totals.minWatts, 2), "W")],
    ["Highest", withUnit(decimal(totals.maxWatts, 2), "W")],
    ["Time", duration(totals.durationSeconds)],
  ];
  return element("article", { class: "card", "data-source": kind },
    element("h3", {}, swatch(kind), label),
    element("p", { class: "energy" }, element("strong", {}, decimal(totals.totalWattHours, 3)),
      totals.totalWattHours === undefined ? "" : " Wh"),
    element("dl", {}, figures.map(([name, value, note]) =>
      element("div", {}, element("dt", {}, name), element("dd", {}, value),
        note && element("dd", { class: "note" }, note)))),
    confidence && element("p", { class: "confidence" }, confidenceText(confidence)));
}

// One card for each source; in a session on a single one, that of the whole session.
function cards({ sources, sourceTotals, summary }) {
  const isMixed = summary.averageWattsNote !== undefined;
  return sourceTotals.map((totals) => {
    const { confidence } = sources.find(({ kind }) => kind === totals.sourceKind) ?? {};
    return card({
      kind: totals.sourceKind, label: totals.sourceLabel, confidence, totals: isMixed ? totals : summary,
    });
  });
}

// How much of the session was measured, and what the rest of it is.
function coverageFact({ durationSeconds, coveredSeconds, gapCount, longestGapSeconds }) {
  if (!(durationSeconds > 0)) return [unknown];
  const part = `${decimal((100 * coveredSeconds) / durationSeconds, 1)} %`;
  const meaning = "of the time has readings of power";
  if (!(coveredSeconds > 0) || longestGapSeconds === undefined) return [part, meaning];
  return [part, `${meaning}; ${counted(gapCount, "gap")}, the longest ${duration(longestGapSeconds)}`];
}

function costFact(cost) {
  // The first part is noted before anything is written.
  if (!cost || cost.bytesWritten === 0) return [unknown];
  return [`${decimal(cost.cpuSeconds, 2)} s`, `of CPU time; ${bytes(cost.bytesWritten)} written to the log`];
}

// Nothing above 0 may be what nobody told.
function pressureFact({ sampleCount, maxThermalPressure }) {
  if (sampleCount === 0) return [unknown];
  return [`${maxThermalPressure} of 4`, maxThermalPressure > 0 ? "at most" : "or not told by the system"];
}

/** What the session comes to. */
export function showGlance({ session }) {
  const { summary, coverage } = session;
  place("cards", cards(session));
  if (session.sourceTotals.length === 0) {
    place("cards", element("p", { class: "notice" }, "No power was read in this session."));
  }
  if (session.sourceTotals.length > 1) {
    place("cards", element("p", { class: "remark" },
      "These are different quantities, so there is no sum and no average over all of the session."));
  }
  const facts = {
    coverage: ["Coverage", ...coverageFact(coverage)],
    samples: ["Samples", String(summary.sampleCount), `${summary.wattSampleCount} with watts`],
    battery: ["Battery", change(summary.batteryPercentStart, summary.batteryPercentEnd)],
    temperature: ["Hottest sensor", withUnit(decimal(summary.maxTemperature, 1), "\u00b0C"), "at most"],
    fan: ["Fastest fan", withUnit(whole(summary.maxFanRPM), "rpm"), "at most"],
    pressure: ["Thermal pressure", ...pressureFact(summary)],
    recorder: ["Recorder's own cost", ...costFact(session.recorderCost)],
  };
  place("facts", Object.entries(facts).map(([name, [term, text, note]]) =>
    element("div", { "data-fact": name }, element("dt", {}, term), element("dd", {}, text),
      note && text !== unknown ? element("dd", { class: "note" }, note) : undefined)));
}
