// Figures as text, spelled as the command line spells them.

export const unknown = "unknown";

/** A number with so many digits behind the point; of two equally near spellings the even one. */
export function decimal(value, places) {
  if (value === undefined || Number.isNaN(value)) return unknown;
  if (Math.abs(value) < 10 ** -places / 2) return (0).toFixed(places);
  const text = value.toFixed(places);
  const halves = value * 2 ** (places + 1);
  const isTie = Number.isInteger(halves) && Math.abs(halves % 2) === 1;
  if (!isTie || Number(text.at(-1)) % 2 === 0) return text;
  return ((Math.sign(value) * Math.floor(Math.abs(value) * 10 ** places)) / 10 ** places).toFixed(places);
}

export function whole(value) {
  return value === undefined || Number.isNaN(value) ? unknown : String(Math.round(value));
}

/** A figure and its unit; an unknown one has none. */
export function withUnit(text, unit) {
  return text === unknown ? text : `${text} ${unit}`;
}

export function duration(seconds) {
  const all = Math.round(Math.max(seconds, 0));
  if (all < 60) return `${all} s`;
  if (all < 3600) return `${Math.floor(all / 60)} min ${all % 60} s`;
  return `${Math.floor(all / 3600)} h ${Math.floor((all % 3600) / 60)} min`;
}

export function bytes(count) {
  const units = ["B", "kB", "MB", "GB"];
  let unit = 0;
  while (count >= 1000 && unit + 1 < units.length) {
    count /= 1000;
    unit += 1;
  }
  return `${decimal(count, unit === 0 ? 0 : 1)} ${units[unit]}`;
}

export function counted(count, thing) {
  return `${count} ${thing}${count === 1 ? "" : "s"}`;
}

/** From one percentage to another. */
export function change(from, to) {
  return from === undefined || to === undefined ? unknown : `${from} to ${to} %`;
}
