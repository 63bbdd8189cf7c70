import { element, place } from "../common/dom.js";

/** Where the page comes from. */
export function showFooter({ session }) {
  const { appVersion, createdAt } = session.document;
  place("footer",
    element("p", {}, `Session ${session.session.id}. Written by quellin ${appVersion}, ${createdAt}. `,
      "This file holds all of its data and asks no network for anything."),
    element("p", {}, "Plots by uPlot, \u00a9 2022 Leon Sorokin, MIT licence; the notice is in the source of this page."));
}
