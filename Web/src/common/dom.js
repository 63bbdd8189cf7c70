// Elements. What comes from a session gets into the page as text and in no other way.

/** An element with attributes, listeners (`onclick` and the like) and children. */
export function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith("on")) made.addEventListener(key.slice(2), value);
    else if (value !== undefined) made.setAttribute(key, value);
  }
  made.append(...children.flat().filter((child) => child !== undefined));
  return made;
}

export function place(id, ...children) {
  document.getElementById(id).append(...children.flat().filter((child) => child !== undefined));
}

/** Text of somebody else's: set apart, so that its direction of writing stays its own. */
export function foreign(text) {
  return element("bdi", {}, text);
}

/** A table of `columns`, each with a `heading`, a `cell` for a row and, for figures, `isNumber`; a heading may be
 *  for readers of the screen alone (`isHeadingUnseen`). It can be scrolled with the keyboard where it is wider than
 *  the page. It says that it is a table, because one that the style sheet stacks no longer is one by itself. */
export function table(caption, columns, rows) {
  const classOf = ({ isNumber }) => (isNumber ? "number" : undefined);
  const headingOf = ({ heading, isHeadingUnseen }) =>
    isHeadingUnseen ? element("span", { class: "unseen" }, heading) : heading;
  const head = columns.map((column) => element("th", { scope: "col", role: "columnheader", class: classOf(column) }, headingOf(column)));
  const body = rows.map((row) =>
    element("tr", { role: "row" }, columns.map((column) =>
      element("td", { role: "cell", class: classOf(column), "data-heading": column.heading }, column.cell(row)))));
  return element("div", { class: "scroll", tabindex: "0", role: "region", "aria-label": caption },
    element("table", { role: "table" }, element("caption", { class: "unseen" }, caption),
      element("thead", { role: "rowgroup" }, element("tr", { role: "row" }, head)),
      element("tbody", { role: "rowgroup" }, body)));
}

/** A choice between a few things, the first of which is chosen; `onChoice` gets the key of the chosen one. */
export function choice(legend, name, options, onChoice) {
  const inputs = Object.entries(options).map(([key, label], index) => {
    const input = element("input", { type: "radio", name, value: key, onchange: () => onChoice(key) });
    input.checked = index === 0;
    return element("label", {}, input, element("span", {}, label));
  });
  return element("fieldset", { class: "switch" }, element("legend", { class: "unseen" }, legend), inputs);
}
