import { counted, duration, decimal } from "../data/format.js";
import { choice, element, foreign, place } from "../common/dom.js";
import { themeSwitch } from "./theme.js";

function download(session) {
  const text = document.getElementById("data").textContent;
  const address = URL.createObjectURL(new Blob([text], { type: "application/json" }));
  element("a", { href: address, download: `quellin-${session.session.id.slice(0, 8)}.json` }).click();
  URL.revokeObjectURL(address);
}

function statusText({ session, document }, clock) {
  if (session.status !== "active") return session.status;
  const written = Date.parse(document.createdAt) / 1000;
  return `still being recorded, as of ${clock.date(written)}, ${clock.time(written)}`;
}

/** When the session was, in the time of the page's clock. */
export function showWhen({ session, clock }) {
  const { sampleInterval } = session.session;
  const pieces = [
    clock.span(session.start, session.end), duration(session.end - session.start), statusText(session, clock),
    `${counted(session.summary.sampleCount, "sample")}, one every ${Number(decimal(sampleInterval, 3))} s`,
  ];
  // A line may break between the pieces, and only there as long as one fits on a line.
  document.getElementById("when").replaceChildren(...pieces.flatMap((piece, place) =>
    [place > 0 ? " \u00b7 " : "", element("span", { class: "piece" }, piece)]));
}

/** The head of the page: what it is about, and its switches. */
export function showMasthead(page, { onTheme, onClock }) {
  const { session, clock } = page;
  place("title", foreign(session.session.title));
  showWhen(page);
  const zone = choice("Time", "zone", { utc: "UTC", local: "Local time" }, (chosen) => {
    clock.zone = chosen;
    onClock();
  });
  place("controls", themeSwitch(onTheme), zone,
    element("button", { type: "button", id: "print", onclick: () => print() }, "Print"),
    element("button", { type: "button", id: "download", onclick: () => download(session) }, "Download data"));
}
