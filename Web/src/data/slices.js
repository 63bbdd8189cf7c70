// The plots as rows of a table: equal slices of the time in view.
import { lowerBound } from "./search.js";

function extent(values, from, until, isOn = () => true) {
  let low = Infinity;
  let high = -Infinity;
  for (let index = from; index < until; ++index) {
    if (Number.isNaN(values[index]) || !isOn(index)) continue;
    low = Math.min(low, values[index]);
    high = Math.max(high, values[index]);
  }
  return low <= high ? { low, high } : undefined;
}

/** What was read in each of at most `count` slices between two moments; slices without samples are left out.
 *  Watts stand apart for each power source. */
export function slicesOf(session, start, end, count) {
  const slices = [];
  const edge = (index) => start + ((end - start) * index) / count;
  for (let slice = 0; slice < count; ++slice) {
    const from = lowerBound(session.time, edge(slice));
    const isLast = slice + 1 === count;
    let until = lowerBound(session.time, edge(slice + 1));
    while (isLast && until < session.count && session.time[until] <= end) ++until;
    if (from >= until) continue;
    const powers = session.sources
      .map((source, index) => ({
        source, range: extent(session.watts, from, until, (sample) => session.source[sample] === index),
      }))
      .filter(({ range }) => range);
    const of = (name) => extent(session[name], from, until);
    slices.push({
      start: edge(slice), end: edge(slice + 1), samples: until - from, powers,
      batteryPercent: of("batteryPercent"), maxTemperature: of("maxTemperature"),
      maxFanRPM: of("maxFanRPM"), thermalPressure: of("thermalPressure"),
    });
  }
  return slices;
}
