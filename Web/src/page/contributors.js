import { decimal } from "../data/format.js";
import { element, foreign, place, table } from "../common/dom.js";

const origins = {
  powermetrics: "Measured by powermetrics",
  proc_pid_rusage: "Estimated from each process's use of processor, wake-ups and disk",
};

function bar(share) {
  const inner = element("span", { class: "fill" });
  inner.style.width = `${Math.max(100 * share, 0.5)}%`;
  return element("span", { class: "bar", "aria-hidden": "true" }, inner);
}

/** The processes that cost the most, each source by itself. */
export function showContributors({ session }) {
  const { topContributors } = session.summary;
  if (topContributors.length === 0) {
    place("contributors", element("p", { class: "notice" }, "No processes were sampled."));
  }
  for (const origin of new Set(topContributors.map(({ source }) => source))) {
    const rows = topContributors.filter(({ source }) => source === origin);
    const highest = Math.max(...rows.map(({ score }) => score));
    const caption = origins[origin] ?? origin;
    place("contributors", element("h3", {}, caption), table(caption, [
      { heading: "Process", cell: (row) => foreign(row.name) },
      { heading: "Share of the highest score", isHeadingUnseen: true, cell: (row) => bar(highest > 0 ? row.score / highest : 0) },
      { heading: "Score", isNumber: true, cell: (row) => decimal(row.score, 1) },
      { heading: "Confidence", cell: (row) => row.confidence },
    ], rows));
  }
}
