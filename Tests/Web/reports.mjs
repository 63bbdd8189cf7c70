// Reports as the program writes them, for the tests that look at them in a browser.
import { execFileSync, spawn } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

function required(name) {
  const value = process.env[name];
  if (!value) throw new Error(`${name} is not set: these tests are run by ctest`);
  return value;
}

const python = required("QUELLIN_PYTHON");
const quellin = required("QUELLIN_EXECUTABLE");
const macbook = join(required("QUELLIN_EXAMPLES"), "macbook.trace.jsonl");
export const chromium = required("QUELLIN_CHROMIUM");

/** A folder with a store, sessions recorded from traces, and their reports. */
export class Reports {
  folder = mkdtempSync(join(tmpdir(), "quellin-reports-"));

  #run(...words) {
    return execFileSync(quellin, [...words, "--store", join(this.folder, "store")],
      { encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
  }

  // Takes all samples out of the store.
  #empty() {
    const program = "import sqlite3, sys; store = sqlite3.connect(sys.argv[1]); "
      + "store.execute('DELETE FROM PowerSessionSample'); store.commit()";
    execFileSync(python, ["-c", program, join(this.folder, "store")]);
  }

  /** Records the example trace, changed by `change`, loses the samples when `isEmptied`, and returns the report's address and what `show` says. */
  record(title, { change = (text) => text, words = [], isEmptied = false } = {}) {
    const trace = join(this.folder, "trace.jsonl");
    writeFileSync(trace, change(readFileSync(macbook, "utf8")));
    this.#run("record", "--source", trace, "--title", title, ...words);
    if (isEmptied) this.#empty();
    const shown = JSON.parse(this.#run("show", "last", "--json"));
    const path = join(this.folder, `${shown.session.id}.html`);
    this.#run("report", "last", "-o", path);
    this.#run("delete", "last");
    return { shown, path, address: pathToFileURL(path).href };
  }

  /** The report of the example trace, recorded up to its first sample and then left to itself. */
  recordActive(title) {
    const recording = spawn(quellin, ["record", "--source", macbook, "--speed", "1", "--title", title, "--store", join(this.folder, "active")],
      { stdio: ["ignore", "ignore", "pipe"] });
    return new Promise((resolve, reject) => {
      let said = "";
      recording.once("exit", () => reject(new Error(`the recording has ended: ${said}`)));
      recording.stderr.setEncoding("utf8").on("data", (text) => {
        said += text;
        if (!said.includes("1 sample")) return;
        recording.removeAllListeners("exit").once("exit", () => {
          const path = join(this.folder, "active.html");
          execFileSync(quellin, ["report", "last", "-o", path, "--store", join(this.folder, "active")], { stdio: "pipe" });
          resolve(pathToFileURL(path).href);
        });
        recording.kill("SIGKILL");
      });
    });
  }

  /** The report at `path` with other data. */
  replaceData(path, change) {
    const [, before, data, after] = readFileSync(path, "utf8").match(/^([^]*type="application\/json">)(.*?)(<\/script>[^]*)$/);
    const other = join(this.folder, "other.html");
    writeFileSync(other, before + JSON.stringify(change(JSON.parse(data))) + after);
    return pathToFileURL(other).href;
  }

  remove() {
    rmSync(this.folder, { recursive: true, force: true });
  }
}

/** A day of one sample a second in the place of what was recorded: watts with noise on two sources, one peak. */
export function madeUpDay(document) {
  const count = 86400;
  const numbers = (make) => Array.from({ length: count }, (none, index) => make(index));
  const column = (make) => ({ values: numbers(make), absent: [] });
  const { analysis } = document;
  const series = {
    ...analysis.series, seconds: numbers((index) => index), source: numbers((index) => (index < count / 2 ? 0 : 1)),
    watts: column((index) => (index === 54321 ? 99.5 : 10 + 5 * Math.sin(index / 900) + ((index * 7919) % 100) / 50)),
    batteryPercent: column((index) => 100 - Math.floor(index / 1000)),
    maxTemperature: column((index) => 45 + 10 * Math.sin(index / 900) + ((index * 104729) % 100) / 100),
    maxFanRPM: column((index) => 1200 + Math.round(800 * Math.sin(index / 900))),
    thermalPressure: numbers((index) => (index % 20000 > 19000 ? 1 : 0)),
  };
  const summary = { ...analysis.summary, durationSeconds: count };
  return { ...document, analysis: { ...analysis, summary, gaps: [], series } };
}
