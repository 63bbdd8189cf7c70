// Bundles the page of reports. usage: node build.mjs NODE_MODULES TEMPLATE SOURCE_FILE
//
// TEMPLATE gets the page with places for a title and for data, SOURCE_FILE the same as a C++ function.
import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));
const [modules, template, sourceFile] = process.argv.slice(2).map((path) => resolve(path));
const { build } = createRequire(join(modules, "any"))("esbuild");

async function bundle(entry) {
  const result = await build({
    entryPoints: [join(here, "src", entry)],
    nodePaths: [modules],
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    charset: "ascii",
    target: ["chrome100", "firefox100", "safari15"],
    legalComments: "none",
  });
  return result.outputFiles[0].text.trim();
}

function notice(name) {
  const folder = join(modules, name);
  const { version } = JSON.parse(readFileSync(join(folder, "package.json"), "utf8"));
  const licence = readFileSync(join(folder, "LICENSE"), "utf8").trim();
  return `/*! ${name} ${version}\n\n${licence}\n*/\n`;
}

// The browser runs and applies what has these fingerprints, and nothing else.
const fingerprint = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

// Functions as replacements, because a bundle may hold what means something in a replacement text.
function fill(page, place, text) {
  if (page.split(place).length !== 2) throw new Error(`the page has not exactly one ${place}`);
  return page.replace(place, () => text);
}

const script = notice("uplot") + (await bundle("main.js"));
const style = await bundle("style/all.css");
for (const [name, text, closing] of [["script", script, "</script"], ["style", style, "</style"]]) {
  if (text.toLowerCase().includes(closing) || text.includes("<!--")) throw new Error(`the ${name} ends early`);
  if (text.includes("{{")) throw new Error(`the ${name} holds what looks like a place to fill`);
}
const policy = [
  "default-src 'none'",
  `script-src ${fingerprint(script)}`,
  `style-src ${fingerprint(style)}`,
  "base-uri 'none'",
  "form-action 'none'",
].join("; ");

let page = readFileSync(join(here, "src/page.html"), "utf8");
for (const [place, text] of [["{{POLICY}}", policy], ["{{STYLE}}", style], ["{{SCRIPT}}", script]]) {
  page = fill(page, place, text);
}
for (const place of ["{{TITLE}}", "{{DATA}}"]) fill(page, place, "");
const bytes = Buffer.from(page, "utf8");
if (bytes.some((byte) => byte > 126)) throw new Error("the page is not plain ASCII");

const lines = [];
for (let start = 0; start < bytes.length; start += 40) lines.push(bytes.subarray(start, start + 40).join(","));
const source = `#include "quellin/Presentation/ReportPage.h"

namespace {
constexpr char page[] = {
${lines.join(",\n")}};
}  // namespace

std::expected<std::string_view, std::string_view> quellin::cli::builtReportPage() {
  return std::string_view(page, sizeof page);
}
`;
mkdirSync(dirname(template), { recursive: true });
mkdirSync(dirname(sourceFile), { recursive: true });
writeFileSync(sourceFile, source);
writeFileSync(template, page);
