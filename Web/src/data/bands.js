// Stretches on one power source, to be drawn behind the plot.
import { isCovered } from "./session.js";

/** The stretches of a session, in order. One lasts until the next begins, or, before a gap, until its last sample. */
export function bandsOf(samples) {
  const { time, source, count } = samples;
  const bands = [];
  for (let index = 0; index < count; ++index) {
    const band = bands.at(-1);
    const isNear = index > 0 && isCovered(samples, index - 1, index);
    if (band && isNear) band.end = time[index];
    if (!band || !isNear || band.source !== source[index]) {
      bands.push({ source: source[index], start: time[index], end: time[index] });
    }
  }
  return bands;
}

/** The part of the bands between two moments, those of less than `least` seconds left out. */
export function visibleBands(bands, start, end, least) {
  return bands
    .filter((band) => band.end > start && band.start < end && band.end - band.start >= least)
    .map((band) => ({ ...band, start: Math.max(band.start, start), end: Math.min(band.end, end) }));
}
