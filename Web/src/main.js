// Entry: reads the embedded data and fills the page.
import { Clock } from "./data/clock.js";
import { readSession } from "./data/session.js";
import { showContributors } from "./page/contributors.js";
import { element, place } from "./common/dom.js";
import { showFooter } from "./page/footer.js";
import { showGlance } from "./page/glance.js";
import { showMasthead, showWhen } from "./page/masthead.js";
import { showProvenance } from "./page/provenance.js";
import { showReadout, showZoom } from "./page/readout.js";
import { retimeSegments, showSegments } from "./page/segments.js";
import { repaintSwatches } from "./common/swatch.js";
import { onPaper } from "./page/theme.js";
import { showValues } from "./page/values.js";
import { makePlots } from "./plot/plots.js";
import { View } from "./plot/view.js";

// As wide as all is on paper.
const paperWidth = "680px";

function showPlots(page) {
  const host = document.getElementById("plots");
  const plots = makePlots(page);
  if (plots.length === 0) {
    host.className = "notice";
    host.append("There is nothing to plot.");
    document.getElementById("power").replaceChildren(document.getElementById("power-heading"), host);
    return { plots, fillValues: () => {} };
  }
  showReadout(page);
  showZoom(page);
  host.append(...plots.map(({ figure }) => figure));
  let width = 0;
  new ResizeObserver(() => {
    if (host.clientWidth === width) return;
    width = host.clientWidth;
    for (const plot of plots) plot.fit();
  }).observe(host);
  return { plots, fillValues: showValues(page) };
}

function showPage() {
  const session = readSession(JSON.parse(document.getElementById("data").textContent));
  const page = { session, clock: new Clock("utc", session), view: new View(session) };
  let shown = { plots: [] };
  const recolour = () => {
    repaintSwatches();
    for (const plot of shown.plots) plot.redraw();
  };
  const retime = () => {
    showWhen(page);
    retimeSegments(page);
    shown.fillValues();
    for (const plot of shown.plots) plot.build();
    page.view.point(page.view.cursor);
  };
  showMasthead(page, { onTheme: recolour, onClock: retime });
  showGlance(page);
  shown = showPlots(page);
  showSegments(page);
  showContributors(page);
  showProvenance(page);
  showFooter(page);
  onPaper((isPaper) => {
    document.getElementById("plots").style.width = isPaper ? paperWidth : "";
    for (const plot of shown.plots) plot.fit();
    recolour();
  });
}

try {
  showPage();
} catch (error) {
  place("glance", element("p", { class: "notice", role: "alert" }, `This page cannot be shown: ${error.message}`));
  throw error;
}
