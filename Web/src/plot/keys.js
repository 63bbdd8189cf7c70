// The keyboard of a plot.

/** Lets the keys that arrive at `target` move the view; `pixels` tells how wide a plot is. */
export function listenToKeys(target, view, pixels) {
  const actions = {
    ArrowLeft: (event) => view.step(event.shiftKey ? -20 : -1, pixels()),
    ArrowRight: (event) => view.step(event.shiftKey ? 20 : 1, pixels()),
    Home: () => view.stepToEnd(false),
    End: () => view.stepToEnd(true),
    PageUp: () => view.pan(-0.5),
    PageDown: () => view.pan(0.5),
    "+": () => view.zoom(0.5),
    "=": () => view.zoom(0.5),
    "-": () => view.zoom(2),
    0: () => view.showAll(),
    Escape: () => {
      view.point(-1);
      view.showAll();
    },
  };
  target.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey || !(event.key in actions)) return;
    actions[event.key](event);
    event.preventDefault();
  });
}
