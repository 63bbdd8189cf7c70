import { decimal, whole } from "../data/format.js";
import { slicesOf } from "../data/slices.js";
import { element, place, table } from "../common/dom.js";

const sliceCount = 40;

function range(extent, text) {
  if (!extent) return "\u2013";
  const [low, high] = [text(extent.low), text(extent.high)];
  return low === high ? low : `${low}\u2013${high}`;
}

function powers(slice) {
  if (slice.powers.length === 0) return "\u2013";
  return slice.powers.map(({ source, range: extent }) =>
    element("span", { class: "power" }, `${range(extent, (watts) => decimal(watts, 2))} `,
      element("span", { class: "note" }, source.label)));
}

/** The time in view as a table, for readers who have no use for plots. It is worked out when it is opened. */
export function showValues({ session, view, clock }) {
  const content = element("div");
  const details = element("details", {}, element("summary", {}, "The time in view as a table: lowest to highest in each slice"), content);
  const fill = () => {
    if (!details.open) return;
    content.replaceChildren(table("The time in view", [
      { heading: `From, ${clock.name}`, cell: (row) => clock.moment(row.start) },
      { heading: "Samples", isNumber: true, cell: (row) => String(row.samples) },
      { heading: "Power, W", cell: powers },
      { heading: "Battery, %", isNumber: true, cell: (row) => range(row.batteryPercent, whole) },
      { heading: "Hottest, \u00b0C", isNumber: true, cell: (row) => range(row.maxTemperature, (value) => decimal(value, 1)) },
      { heading: "Fan, rpm", isNumber: true, cell: (row) => range(row.maxFanRPM, whole) },
      { heading: "Pressure", isNumber: true, cell: (row) => range(row.thermalPressure, whole) },
    ], slicesOf(session, view.start, view.end, sliceCount)));
  };
  details.addEventListener("toggle", fill);
  view.on("range", fill);
  place("values", details);
  return fill;
}
