import { change, decimal, duration } from "../data/format.js";
import { element, place, table } from "../common/dom.js";
import { swatch } from "../common/swatch.js";

const charger = (isConnected) => (isConnected === undefined ? "unknown" : isConnected ? "connected" : "none");

/** The table of segments; each row leads to its stretch in the plots. */
export function showSegments({ session, view, clock }) {
  const { powerSegments } = session.summary;
  if (powerSegments.length === 0) {
    place("segments", element("p", { class: "notice" }, "There are no samples."));
    return;
  }
  const moment = (instant) => Date.parse(instant) / 1000;
  const look = ({ startedAt, durationSeconds }) => {
    const start = moment(startedAt);
    view.show(start, start + durationSeconds);
    document.getElementById("power").scrollIntoView();
  };
  place("segments", table("Segments", [
    { heading: "#", isNumber: true, cell: (row) => element("button", {
      type: "button", class: "link", "aria-label": `Show segment ${row.index} in the plots`, onclick: () => look(row),
    }, String(row.index)) },
    { heading: "Source", cell: (row) => [swatch(row.sourceKind), row.sourceLabel] },
    { heading: "Charger", cell: (row) => charger(row.acConnected) },
    { heading: "Started", cell: (row) => element("time", { datetime: row.startedAt }, clock.moment(moment(row.startedAt))) },
    { heading: "Duration", isNumber: true, cell: (row) => duration(row.durationSeconds) },
    { heading: "Avg W", isNumber: true, cell: (row) => decimal(row.averageWatts, 2) },
    { heading: "Min W", isNumber: true, cell: (row) => decimal(row.minWatts, 2) },
    { heading: "Max W", isNumber: true, cell: (row) => decimal(row.maxWatts, 2) },
    { heading: "Wh", isNumber: true, cell: (row) => decimal(row.totalWattHours, 3) },
    { heading: "Battery", cell: (row) => change(row.batteryPercentStart, row.batteryPercentEnd) },
    { heading: "Samples", isNumber: true, cell: (row) => String(row.sampleCount) },
  ], powerSegments));
}

/** Writes the moments of the table in the time of the page's clock. */
export function retimeSegments({ clock }) {
  for (const time of document.querySelectorAll("#segments time")) {
    time.textContent = clock.moment(Date.parse(time.dateTime) / 1000);
  }
}
