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
import { repaintSwatches } from "./page/swatch.js";
import { onPaper } from "./page/theme.js";
import { showValues } from "./page/values.js";
import { makePlots } from "./plot/plots.js";
import { View } from "./plot/view.js";

// As wide as all is on paper.
const paperWidth = "680px";

function showPlots(page) {
  showReadout(page);
  showZoom(page);
  const host = document.getElementById("plots");
  const plots = makePlots(page);
  host.append(...plots.map(({ figure }) => figure));
  if (plots.length === 0) host.append(element("p", { class: "notice" }, "There is nothing to plot."));
  let width = 0;
  new ResizeObserver(() => {
    if (host.clientWidth === width) return;
    width = host.clientWidth;
    for (const plot of plots) plot.fit();
  }).observe(host);
  return plots;
}

function showPage() {
  const session = readSession(JSON.parse(document.getElementById("data").textContent));
  const page = { session, clock: new Clock(), view: new View(session) };
  let plots = [];
  let refillValues = () => {};
  const recolour = () => {
    repaintSwatches();
    for (const plot of plots) plot.redraw();
  };
  const retime = () => {
    showWhen(page);
    retimeSegments(page);
    refillValues();
    for (const plot of plots) plot.build();
    page.view.point(page.view.cursor);
  };
  showMasthead(page, { onTheme: recolour, onClock: retime });
  showGlance(page);
  plots = showPlots(page);
  showSegments(page);
  showContributors(page);
  showProvenance(page);
  refillValues = showValues(page);
  showFooter(page);
  onPaper((isPaper) => {
    document.getElementById("plots").style.width = isPaper ? paperWidth : "";
    for (const plot of plots) plot.fit();
    recolour();
  });
}

try {
  showPage();
} catch (error) {
  place("glance", element("p", { class: "notice", role: "alert" }, `This page cannot be shown: ${error.message}`));
  throw error;
}
