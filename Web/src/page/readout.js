import { decimal, whole, withUnit } from "../data/format.js";
import { element, foreign, place } from "../common/dom.js";
import { swatch } from "../common/swatch.js";

/** The figures of the sample that the cursor is on. */
export function showReadout({ session, view, clock }) {
  const figures = [
    ["watts", "Power", (index) => withUnit(decimal(session.watts[index], 2), "W")],
    ["batteryPercent", "Battery", (index) => withUnit(whole(session.batteryPercent[index]), "%")],
    ["maxTemperature", "Hottest", (index) => withUnit(decimal(session.maxTemperature[index], 1), "\u00b0C")],
    ["maxFanRPM", "Fan", (index) => withUnit(whole(session.maxFanRPM[index]), "rpm")],
    ["thermalPressure", "Pressure", (index) => withUnit(whole(session.thermalPressure[index]), "of 4")],
  ];
  const cells = new Map();
  const cell = (name, heading) => {
    const value = element("dd", {}, "\u2013");
    cells.set(name, value);
    return element("div", { "data-readout": name }, element("dt", {}, heading), value);
  };
  place("readout", element("dl", {}, cell("time", "Time"), cell("source", "Source"),
    figures.map(([name, heading]) => cell(name, heading))));
  const swatches = session.sources.map(({ kind }) => swatch(kind));

  view.on("cursor", (isSpoken) => {
    const index = view.cursor;
    const isOn = index >= 0;
    const source = session.sources[session.source[index]];
    cells.get("time").textContent = isOn ? clock.moment(session.time[index]) : "\u2013";
    cells.get("source").replaceChildren(...(isOn ? [swatches[session.source[index]], foreign(source.label)] : ["\u2013"]));
    for (const [name, , text] of figures) cells.get(name).textContent = isOn ? text(index) : "\u2013";
    if (!isSpoken || !isOn) return;
    document.getElementById("spoken").textContent =
      [clock.moment(session.time[index]), source.label, ...figures.map(([, heading, text]) => `${heading} ${text(index)}`)]
        .join(", ");
  });
}

/** Buttons that zoom and move on. */
export function showZoom({ view }) {
  const button = (label, name, act) =>
    element("button", { type: "button", "aria-label": name, title: name, onclick: act }, label);
  const all = button("Whole session", "Show the whole session", () => view.showAll());
  const earlier = button("\u2039", "Earlier", () => view.pan(-0.5));
  const later = button("\u203a", "Later", () => view.pan(0.5));
  place("zoom", earlier, later, button("\u2212", "Zoom out", () => view.zoom(2)), button("+", "Zoom in", () => view.zoom(0.5)), all);
  const update = () => {
    all.disabled = view.isWhole;
    earlier.disabled = view.isAtStart;
    later.disabled = view.isAtEnd;
  };
  view.on("range", update);
  update();
}
