// Places in an ascending array.

/** The first index whose value is not less than `value`. */
export function lowerBound(array, value) {
  let low = 0;
  let high = array.length;
  while (low < high) {
    const middle = (low + high) >>> 1;
    if (array[middle] < value) low = middle + 1;
    else high = middle;
  }
  return low;
}

/** The index of the value nearest to `value`; -1 in an empty array. */
export function nearest(array, value) {
  const after = lowerBound(array, value);
  if (after === 0) return array.length > 0 ? 0 : -1;
  if (after === array.length) return after - 1;
  return value - array[after - 1] <= array[after] - value ? after - 1 : after;
}
