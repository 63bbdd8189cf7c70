// As many points of a track as a plot can show. A plot is so many columns of pixels wide; of the samples in one
// column, the first, the lowest, the highest and the last draw the same line as all of them.
import { lowerBound } from "./search.js";

/** The samples of a track that draw it between two moments on `columns` columns, in order, with the neighbours on
 *  either side. Each has the column that it lies in. */
export function pickSamples({ time, values }, start, end, columns) {
  let from = Math.max(lowerBound(time, start) - 1, 0);
  while (from > 0 && Number.isNaN(values[from])) --from;
  let until = Math.min(lowerBound(time, end) + 1, time.length);
  while (until < time.length && Number.isNaN(values[until - 1])) ++until;
  const scale = columns / (end - start || 1);
  const picked = [];
  let column;
  let first = -1, lowest = -1, highest = -1, last = -1;
  const close = () => {
    if (first < 0) return;
    const indices = [first, Math.min(lowest, highest), Math.max(lowest, highest), last];
    for (let place = 0; place < indices.length; ++place) {
      if (place === 0 || indices[place] !== indices[place - 1]) picked.push({ index: indices[place], column });
    }
  };
  for (let index = from; index < until; ++index) {
    const value = values[index];
    if (Number.isNaN(value)) continue;
    const here = Math.floor((time[index] - start) * scale);
    if (here !== column) {
      close();
      column = here;
      first = lowest = highest = index;
    }
    if (value < values[lowest]) lowest = index;
    if (value > values[highest]) highest = index;
    last = index;
  }
  close();
  return picked;
}

/** The line of a track between two moments: its points in order, each with its place among all samples, with the
 *  place half a sample before the next point and no value where the line is broken, and the points that no line
 *  goes to. */
export function lineOf(track, start, end, columns) {
  const picked = pickSamples(track, start, end, columns);
  const isJoined = (one, other) =>
    one.column === other.column || track.breaks[one.index] === track.breaks[other.index];
  const points = [];
  const lonely = new Set();
  picked.forEach((point, place) => {
    const isFree = (neighbour) => !neighbour || !isJoined(neighbour, point);
    if (place > 0 && isFree(picked[place - 1])) points.push({ place: point.index - 0.5, value: null });
    points.push({ place: point.index, value: track.values[point.index] });
    if (isFree(picked[place - 1]) && isFree(picked[place + 1])) lonely.add(point.index);
  });
  return { points, lonely };
}

/** Several lines over the same samples as a table for the plotting library: moments, then the values of each line,
 *  undefined where a line has no point and null wherever it is broken. Also which rows hold a point that no line goes to. */
export function tableOf(lines, time) {
  const places = Float64Array.from(new Set(lines.flatMap(({ points }) => points.map(({ place }) => place)))).sort();
  const moments = Array.from(places, (place) =>
    Number.isInteger(place) ? time[place] : (time[Math.floor(place)] + time[Math.ceil(place)]) / 2);
  const rowOf = new Map(Array.from(places, (place, row) => [place, row]));
  const columns = lines.map(({ points }) => {
    const column = new Array(places.length).fill(undefined);
    let previous = 0;
    let isBroken = false;
    for (const { place, value } of points) {
      const row = rowOf.get(place);
      if (isBroken) column.fill(null, previous + 1, row);
      isBroken = value === null;
      if (isBroken) continue;
      column[row] = value;
      previous = row;
    }
    return column;
  });
  const lonely = lines.map((line) => Array.from(line.lonely, (index) => rowOf.get(index)));
  return { data: [moments, ...columns], lonely };
}
