// The embedded data of a report, laid out for plotting: one typed array a figure, NaN where it is absent.

/** All values of a column of `count` samples, absent ones as NaN. */
export function expand({ values, absent }, count) {
  const all = new Float64Array(count);
  let next = 0;
  let taken = 0;
  const take = (until) => {
    while (next < until) all[next++] = values[taken++];
  };
  for (const run of absent) {
    take(run.first);
    all.fill(NaN, run.first, run.first + run.count);
    next = run.first + run.count;
  }
  take(count);
  return all;
}

// A session keeps 0 also where the system tells none: where there is nothing else, none may have been told.
function toldPressure(values) {
  return Float64Array.from(values, values.some((value) => value > 0) ? undefined : () => NaN);
}

/** Whether the time between two samples with readings is short enough to count as measured. It is taken between their
 *  places in the session: the moments of `time` are rounded. */
export function isCovered({ seconds, longestCovered }, from, to) {
  return seconds[to] - seconds[from] <= longestCovered;
}

/** Reads the document of a report. Moments are seconds since 1970 from here on. */
export function readSession(document) {
  if (document.format !== "quellin-report" || document.majorVersion !== 1) {
    throw new Error("these are not the data of a report that this page understands");
  }
  const { session, summary, coverage, gaps, sourceTotals, recorderCost, series, longestCoveredSeconds } = document.analysis;
  const count = series.seconds.length;
  const start = series.startedAt;
  const end = start + Math.max(summary.durationSeconds, series.seconds.at(-1) ?? 0);
  return {
    document, session, summary, coverage, recorderCost, sourceTotals, count, start, end,
    sources: series.sources,
    seconds: series.seconds,
    time: Float64Array.from(series.seconds, (seconds) => start + seconds),
    source: Uint16Array.from(series.source),
    watts: expand(series.watts, count),
    batteryPercent: expand(series.batteryPercent, count),
    maxTemperature: expand(series.maxTemperature, count),
    maxFanRPM: expand(series.maxFanRPM, count),
    thermalPressure: toldPressure(series.thermalPressure),
    gaps: gaps.map((gap) => ({ start: start + gap.startSeconds, end: start + gap.endSeconds })),
    longestCovered: longestCoveredSeconds ?? Infinity,
  };
}
