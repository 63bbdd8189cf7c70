// One plot: a canvas of the plotting library that follows the view.
import uPlot from "uplot";
import { lineOf, tableOf } from "../data/line.js";
import { element, foreign } from "../common/dom.js";
import { paintGaps } from "./decor.js";
import { listenToKeys } from "./keys.js";
import { colour } from "../common/palette.js";
import { swatch } from "../common/swatch.js";

const axisWidth = 56;

// Half of the widest label of the axis of time, which may stand at the very end of the plot.
const labelRoom = 28;

const minute = 60;
const hour = 60 * minute;
const day = 24 * hour;
const timeSteps = [
  1, 2, 5, 10, 15, 30, minute, 2 * minute, 5 * minute, 10 * minute, 15 * minute, 30 * minute,
  hour, 2 * hour, 3 * hour, 6 * hour, 12 * hour, day, 2 * day, 7 * day, 14 * day, 28 * day,
];

const timeAxis = (page, isNamed) => ({
  stroke: () => colour("--muted"),
  grid: { stroke: () => colour("--grid"), width: 1 },
  ticks: { stroke: () => colour("--grid"), width: 1, size: 5 },
  font: "11px system-ui, sans-serif",
  size: isNamed ? 30 : 8,
  gap: 4,
  space: (plot) => (plot.width < 500 ? 56 : 84),
  incrs: timeSteps,
  values: (plot, splits, axis, space, step) =>
    splits.map((moment) => (isNamed ? page.clock.tick(moment, step) : "")),
});

const valueAxis = (options) => ({
  stroke: () => colour("--muted"),
  grid: { stroke: () => colour("--grid"), width: 1 },
  ticks: { show: false },
  font: "11px system-ui, sans-serif",
  size: axisWidth,
  gap: 8,
  space: 30,
  values: (plot, splits) => splits.map((value) => `${Number(value.toFixed(2))}${options.suffix ?? ""}`),
  ...options.axis,
});

function seriesOf({ ink, isStepped, isFilled }) {
  return {
    stroke: () => colour(ink),
    fill: isFilled ? () => `${colour(ink)}26` : undefined,
    width: 1.5,
    paths: isStepped ? uPlot.paths.stepped({ align: 1 }) : uPlot.paths.linear(),
  };
}

// The name of a plot, its unit, and what its colours and patterns stand for where there are several.
function captionOf({ title, unit, legend = [] }) {
  const entries = legend.map(({ kind, label }) => element("span", { class: "entry" }, swatch(kind), foreign(label)));
  return element("figcaption", {}, element("span", {}, title, element("span", { class: "unit" }, unit)),
    legend.length > 0 ? element("span", { class: "legend" }, entries) : undefined);
}

/** A plot of `options.lines` in a figure of its own, which can be reached with the keyboard. `page` has the session,
 *  the view and the clock. */
export class Plot {
  #page;
  #options;
  #plot;
  #lonely = [];
  #isFollowing = false;

  constructor(page, options) {
    this.#page = page;
    this.#options = options;
    this.host = element("div", { class: "canvas" });
    this.figure = element("figure", {
      class: "plot", id: `plot-${options.name}`, tabindex: "0", role: "application",
      "aria-roledescription": "plot", "aria-label": options.description, "aria-describedby": "keys",
    }, captionOf(options), this.host);
    listenToKeys(this.figure, page.view, () => this.host.clientWidth - axisWidth - labelRoom);
    page.view.on("range", () => this.#fill());
    page.view.on("cursor", () => this.#follow());
    this.build();
  }

  /** Draws anew from nothing, after the clock or the size have changed. */
  build() {
    this.#plot?.destroy();
    const { lines, height, paintBehind, paintAbove, room = 8 } = this.#options;
    this.#plot = new uPlot({
      width: this.#width(), height, padding: [room, labelRoom, 0, 0], legend: { show: false },
      tzDate: this.#page.clock.zone === "utc" ? (moment) => uPlot.tzDate(new Date(moment * 1000), "UTC") : undefined,
      scales: { x: { time: true, auto: false }, y: { range: (plot, low, high) => this.#options.range(low, high) } },
      axes: [timeAxis(this.#page, this.#options.namesTime), valueAxis(this.#options)],
      series: [{}, ...lines.map((line, index) => ({
        ...seriesOf(line),
        points: { show: true, size: 6, width: 0, fill: () => colour(line.ink), filter: () => this.#lonely[index] ?? [] },
      }))],
      cursor: {
        y: false,
        // A line without a point here shows none, not that of its nearest one.
        dataIdx: (plot, index, row) => (typeof plot.data[index][row] === "number" ? row : null),
        points: { size: 7, width: 2, fill: () => colour("--surface"), stroke: (plot, index) => colour(lines[index - 1].ink) },
        drag: { x: true, y: false, setScale: false },
        bind: { dblclick: () => () => this.#page.view.showAll() },
      },
      hooks: {
        drawAxes: [(plot) => {
          paintBehind?.(plot);
          paintGaps(plot, this.#options.gaps, this.#page.view);
        }],
        draw: [(plot) => paintAbove?.(plot)],
        setCursor: [(plot) => this.#lead(plot)],
        setSelect: [(plot) => this.#zoom(plot)],
      },
    }, [[], ...lines.map(() => [])], this.host);
    this.#fill();
  }

  fit() {
    this.#plot.setSize({ width: this.#width(), height: this.#options.height });
    this.#fill();
  }

  redraw() {
    this.#plot.redraw(false, true);
  }

  #width() {
    return Math.max(Math.floor(this.host.clientWidth), 120);
  }

  #fill() {
    const { session, view } = this.#page;
    const columns = Math.max(this.#width() - axisWidth - labelRoom, 1) * devicePixelRatio;
    const lines = this.#options.lines.map(({ track }) => lineOf(track, view.start, view.end, columns));
    const { data, lonely } = tableOf(lines, session.time);
    this.#lonely = lonely;
    this.#plot.batch(() => {
      this.#plot.setData(data, false);
      this.#plot.setScale("x", { min: view.start, max: view.end });
    });
    this.#follow();
  }

  // The mouse moves the cursor of all plots.
  #lead(plot) {
    if (this.#isFollowing) return;
    const { left } = plot.cursor;
    if (left >= 0) this.#page.view.pointAt(plot.posToVal(left, "x"));
    else if (!this.figure.matches(":focus-visible")) this.#page.view.point(-1);
  }

  #follow() {
    const { session, view } = this.#page;
    this.#isFollowing = true;
    const left = view.cursor < 0 ? -10 : this.#plot.valToPos(session.time[view.cursor], "x");
    const isInView = left >= 0 && left <= this.#plot.over.clientWidth;
    this.#plot.setCursor({ left: isInView ? left : -10, top: isInView ? 0 : -10 }, true, false);
    this.#isFollowing = false;
  }

  #zoom(plot) {
    const { left, width } = plot.select;
    if (width < 4) return;
    plot.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
    this.#page.view.show(plot.posToVal(left, "x"), plot.posToVal(left + width, "x"));
  }
}
