import { choice } from "../common/dom.js";

function apply(theme) {
  if (theme === "auto") delete document.documentElement.dataset.theme;
  else document.documentElement.dataset.theme = theme;
}

/** The switch between light and dark. `onChange` is called whenever colours have changed, also by the system. */
export function themeSwitch(onChange) {
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", onChange);
  return choice("Colours", "theme", { auto: "Auto", light: "Light", dark: "Dark" }, (theme) => {
    apply(theme);
    onChange();
  });
}

/** Runs `draw` with the colours for paper, and once more when the paper is done. */
export function onPaper(draw) {
  let chosen;
  addEventListener("beforeprint", () => {
    chosen = document.documentElement.dataset.theme ?? "auto";
    apply("light");
    draw(true);
  });
  addEventListener("afterprint", () => {
    apply(chosen);
    draw(false);
  });
}
