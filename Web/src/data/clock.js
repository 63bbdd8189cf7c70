// Moments, in seconds since 1970, as text in UTC or in the reader's own time.

const months = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"];

const two = (number) => String(number).padStart(2, "0");

export class Clock {
  /** @param {"utc" | "local"} zone
   *  @param session the moments at which it starts and ends */
  constructor(zone = "utc", { start, end } = { start: 0, end: 0 }) {
    this.zone = zone;
    this.start = start;
    this.end = end;
  }

  get name() {
    return this.zone === "utc" ? "UTC" : "local time";
  }

  #parts(moment) {
    const date = new Date(moment * 1000);
    const of = (what) => date[(this.zone === "utc" ? "getUTC" : "get") + what]();
    return {
      year: of("FullYear"), month: of("Month"), day: of("Date"),
      hours: of("Hours"), minutes: of("Minutes"), seconds: of("Seconds"),
    };
  }

  date(moment) {
    const { year, month, day } = this.#parts(moment);
    return `${day} ${months[month]} ${year}`;
  }

  time(moment) {
    const { hours, minutes, seconds } = this.#parts(moment);
    return `${two(hours)}:${two(minutes)}:${two(seconds)}`;
  }

  /** The time of a moment of the session, with the day where the session lasts beyond one. */
  moment(moment) {
    if (this.date(this.start) === this.date(this.end)) return this.time(moment);
    const { month, day } = this.#parts(moment);
    return `${day} ${months[month]}, ${this.time(moment)}`;
  }

  /** As short as ticks `step` seconds apart allow; the day where one begins. */
  tick(moment, step) {
    const { month, day, hours, minutes } = this.#parts(moment);
    if (step >= 86400) return `${day} ${months[month]}`;
    if (step < 60) return this.time(moment);
    return hours === 0 && minutes === 0 ? `${day} ${months[month]}` : `${two(hours)}:${two(minutes)}`;
  }

  span(start, end) {
    const sameDay = this.date(start) === this.date(end);
    const until = sameDay ? this.time(end) : `${this.date(end)}, ${this.time(end)}`;
    return `${this.date(start)}, ${this.time(start)} \u2013 ${until} ${this.name}`;
  }
}
