// What of the session is in view, and which sample the cursor is on. All plots follow it.
import { nearest } from "../data/search.js";

// No plot shows less than this.
const leastSeconds = 0.5;

// A session that took less time stands in the middle of as much.
const leastWholeSeconds = 10;

export class View {
  #session;
  #fullStart;
  #fullEnd;
  #listeners = { range: [], cursor: [] };

  constructor(session) {
    this.#session = session;
    const room = Math.max(leastWholeSeconds - (session.end - session.start), 0) / 2;
    this.start = this.#fullStart = session.start - room;
    this.end = this.#fullEnd = session.end + room;
    this.cursor = -1;
  }

  get isAtStart() {
    return this.start === this.#fullStart;
  }

  get isAtEnd() {
    return this.end === this.#fullEnd;
  }

  get isWhole() {
    return this.isAtStart && this.isAtEnd;
  }

  /** @param {"range" | "cursor"} what */
  on(what, listener) {
    this.#listeners[what].push(listener);
  }

  #tell(what, ...details) {
    for (const listener of this.#listeners[what]) listener(...details);
  }

  /** Shows the time between two moments, or as much as there is. */
  show(start, end) {
    const first = this.#fullStart;
    const length = Math.min(Math.max(end - start, leastSeconds), this.#fullEnd - first);
    const middle = (start + end) / 2;
    this.start = Math.max(middle - length / 2, first);
    this.end = this.start + length;
    if (this.end >= this.#fullEnd) [this.start, this.end] = [this.#fullEnd - length, this.#fullEnd];
    if (length === this.#fullEnd - first) this.start = first;
    this.#tell("range");
  }

  showAll() {
    this.show(this.#fullStart, this.#fullEnd);
  }

  /** Shows `factor` times as much, with the moment of the cursor, or else the middle, where it is. */
  zoom(factor, around = this.#anchor()) {
    this.show(around - (around - this.start) * factor, around + (this.end - around) * factor);
  }

  #anchor() {
    const moment = this.cursor >= 0 ? this.#session.time[this.cursor] : NaN;
    return moment >= this.start && moment <= this.end ? moment : (this.start + this.end) / 2;
  }

  /** Moves on by a part of what is in view. */
  pan(part) {
    const step = (this.end - this.start) * part;
    this.show(this.start + step, this.end + step);
  }

  /** Puts the cursor on a sample; -1 takes it away. `isSpoken` when a reader of the screen is to be told. */
  point(index, isSpoken = false) {
    this.cursor = index;
    this.#tell("cursor", isSpoken);
  }

  pointAt(moment) {
    this.point(nearest(this.#session.time, moment));
  }

  /** Moves the cursor by `steps` of the width of a pixel, or of a sample where samples are wider; what is in view
   *  follows. */
  step(steps, pixels) {
    const { time, count } = this.#session;
    let index = this.cursor;
    if (index < 0) {
      index = nearest(time, steps > 0 ? this.start : this.end);
    } else {
      const moment = time[index] + (steps * (this.end - this.start)) / pixels;
      const target = nearest(time, moment);
      index = target === index ? index + Math.sign(steps) : target;
    }
    index = Math.min(Math.max(index, 0), count - 1);
    if (time[index] < this.start) this.pan(-0.25);
    if (time[index] > this.end) this.pan(0.25);
    this.point(index, true);
  }

  /** The sample at one end of what is in view. */
  stepToEnd(isLast) {
    this.point(nearest(this.#session.time, isLast ? this.end : this.start), true);
  }
}
