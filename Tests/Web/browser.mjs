// A headless Chromium, driven over a pipe. It is given no network, and what it would have asked of one is noted.
import { spawn } from "node:child_process";
import { mkdtempSync } from "node:fs";
import { rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";

const flags = [
  "--headless=new", "--remote-debugging-pipe", "--no-first-run", "--disable-gpu", "--disable-dev-shm-usage",
  "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-extensions",
  "--hide-scrollbars", "--force-device-scale-factor=1", "--host-resolver-rules=MAP * ~NOTFOUND",
];

export class Browser {
  #process;
  #folder = mkdtempSync(join(tmpdir(), "quellin-browser-"));
  #waiting = new Map();
  #listeners = new Set();
  #lastId = 0;
  #rest = "";

  /** @param {string} executable the path of Chromium */
  constructor(executable) {
    // Chromium refuses to sandbox what root starts.
    const asRoot = process.getuid() === 0 ? ["--no-sandbox"] : [];
    this.#process = spawn(executable, [...flags, ...asRoot, `--user-data-dir=${this.#folder}`, "about:blank"],
      { stdio: ["ignore", "ignore", "ignore", "pipe", "pipe"] });
    this.ended = new Promise((resolve) => this.#process.once("exit", resolve));
    this.#process.once("error", (error) => this.#failAll(error));
    this.#process.once("exit", () => this.#failAll(new Error("the browser has ended")));
    this.#process.stdio[4].setEncoding("utf8").on("data", (text) => this.#read(text));
  }

  #failAll(error) {
    for (const { reject } of this.#waiting.values()) reject(error);
    this.#waiting.clear();
  }

  #read(text) {
    const messages = (this.#rest + text).split("\0");
    this.#rest = messages.pop();
    for (const message of messages.map((piece) => JSON.parse(piece))) {
      const waiting = this.#waiting.get(message.id);
      this.#waiting.delete(message.id);
      if (message.error) waiting?.reject(new Error(message.error.message));
      else if (waiting) waiting.resolve(message.result);
      else for (const listener of this.#listeners) listener(message);
    }
  }

  /** Sends one command of the DevTools protocol. */
  send(method, params = {}, sessionId = undefined) {
    const id = ++this.#lastId;
    return new Promise((resolve, reject) => {
      this.#waiting.set(id, { resolve, reject });
      this.#process.stdio[3].write(`${JSON.stringify({ id, method, params, sessionId })}\0`);
    });
  }

  on(listener) {
    this.#listeners.add(listener);
  }

  /** A page with this address, once it has loaded. */
  async open(address, { width = 1280, height = 900, scheme = "light", beforeLoad = "" } = {}) {
    const { targetId } = await this.send("Target.createTarget", { url: "about:blank" });
    const { sessionId } = await this.send("Target.attachToTarget", { targetId, flatten: true });
    const page = new Page(this, targetId, sessionId);
    await page.load(address, { width, height, scheme, beforeLoad });
    return page;
  }

  async close() {
    // Asked to, it ends its own processes first, so that none of them writes to the folder any more.
    await this.send("Browser.close");
    await this.ended;
    await rm(this.#folder, { recursive: true, force: true, maxRetries: 10 });
  }
}

class Page {
  /** What the page said on its console, errors that nobody caught, and what the policy forbade. */
  complaints = [];
  /** Every address that the page asked for but its own. */
  requests = [];
  #browser;
  #targetId;
  #sessionId;
  #loaded;

  constructor(browser, targetId, sessionId) {
    this.#browser = browser;
    this.#targetId = targetId;
    this.#sessionId = sessionId;
    this.#loaded = new Promise((resolve) => {
      browser.on((message) => {
        if (message.sessionId === sessionId) this.#note(message, resolve);
      });
    });
  }

  #note({ method, params }, loaded) {
    if (method === "Page.loadEventFired") loaded();
    if (method === "Runtime.consoleAPICalled") {
      this.complaints.push(params.args.map(({ value, description }) => value ?? description).join(" "));
    }
    if (method === "Runtime.exceptionThrown") this.complaints.push(params.exceptionDetails.exception.description);
    if (method === "Log.entryAdded") this.complaints.push(params.entry.text);
    if (method === "Page.javascriptDialogOpening") this.complaints.push(`a dialog: ${params.message}`);
    if (method === "Network.requestWillBeSent" && params.request.url !== this.address) this.requests.push(params.request.url);
  }

  send(method, params) {
    return this.#browser.send(method, params, this.#sessionId);
  }

  async load(address, { width, height, scheme, beforeLoad }) {
    this.address = address;
    for (const domain of ["Page", "Runtime", "Log", "Network"]) await this.send(`${domain}.enable`);
    await this.size(width, height);
    await this.prefer(scheme);
    if (beforeLoad) await this.send("Page.addScriptToEvaluateOnNewDocument", { source: beforeLoad });
    await this.send("Page.navigate", { url: address });
    await this.#loaded;
    await this.settle();
  }

  /** Two frames later, when what was asked for has been drawn. */
  settle() {
    return this.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => done(true))))");
  }

  size(width, height) {
    return this.send("Emulation.setDeviceMetricsOverride", { width, height, deviceScaleFactor: 1, mobile: false });
  }

  /** As a system that prefers "light" or "dark". */
  prefer(scheme) {
    return this.send("Emulation.setEmulatedMedia", { features: [{ name: "prefers-color-scheme", value: scheme }] });
  }

  /** The value of an expression in the page. */
  async run(expression) {
    const { result, exceptionDetails } =
      await this.send("Runtime.evaluate", { expression, awaitPromise: true, returnByValue: true });
    if (exceptionDetails) throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
    return result.value;
  }

  text(selector) {
    return this.run(`document.querySelector(${JSON.stringify(selector)}).innerText`);
  }

  texts(selector) {
    return this.run(`[...document.querySelectorAll(${JSON.stringify(selector)})].map((one) => one.innerText)`);
  }

  click(selector) {
    return this.run(`document.querySelector(${JSON.stringify(selector)}).click()`);
  }

  focus(selector) {
    return this.run(`document.querySelector(${JSON.stringify(selector)}).focus()`);
  }

  /** Presses a key, as a keyboard would, `times` times. */
  async press(key, { times = 1, shift = false } = {}) {
    const text = key.length === 1 ? key : undefined;
    for (let time = 0; time < times; ++time) {
      const params = { key, modifiers: shift ? 8 : 0 };
      await this.send("Input.dispatchKeyEvent", { type: text ? "keyDown" : "rawKeyDown", text, ...params });
      await this.send("Input.dispatchKeyEvent", { type: "keyUp", ...params });
    }
    await this.settle();
  }

  async mouse(type, x, y, buttons = 0) {
    await this.send("Input.dispatchMouseEvent",
      { type, x, y, buttons, button: buttons || type === "mouseReleased" ? "left" : "none", clickCount: 1 });
  }

  /** A picture of the whole page, or of its beginning down to `room` below what a selector names, as PNG. */
  async picture(selector = "html", room = 0) {
    const clip = await this.run(`(() => {
      const { bottom } = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
      return { x: 0, y: 0, width: innerWidth, height: bottom + scrollY + ${room}, scale: 1 };
    })()`);
    const { data } = await this.send("Page.captureScreenshot", { clip, captureBeyondViewport: true });
    return Buffer.from(data, "base64");
  }

  async paper() {
    const { data } = await this.send("Page.printToPDF", { printBackground: true, preferCSSPageSize: true, paperWidth: 8.27, paperHeight: 11.69 });
    return Buffer.from(data, "base64");
  }

  close() {
    return this.#browser.send("Target.closeTarget", { targetId: this.#targetId });
  }
}
