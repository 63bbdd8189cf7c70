// A line to be drawn: the samples that it goes through, and where it is broken.
import { isCovered } from "./session.js";

/** The samples that carry `values`, of all or of those that `isOn` takes. The line is broken where the time
 *  between two of them is not covered, and where a sample that is not on it lies between. */
export function makeTrack(samples, values, isOn = () => true) {
  const { time } = samples;
  const on = Float64Array.from(values, (value, index) => (isOn(index) ? value : NaN));
  const breaks = new Uint32Array(on.length);  // before or at each sample
  const gaps = [];
  let count = 0;
  let last = -1;
  let isCut = false;
  for (let index = 0; index < on.length; ++index) {
    isCut ||= !isOn(index);
    breaks[index] = count;
    if (Number.isNaN(on[index])) continue;
    if (last >= 0 && !isCovered(samples, last, index)) {
      gaps.push({ start: time[last], end: time[index] });
      isCut = true;
    }
    if (last >= 0 && isCut) breaks[index] = ++count;
    last = index;
    isCut = false;
  }
  return { time, values: on, breaks, gaps, isEmpty: last < 0 };
}
