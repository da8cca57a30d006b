// How soon the page shows the picture, and how soon a key press is drawn, measured in the browser.
//
//     node page.mjs STOWLINE

import { execFileSync, spawn } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";

import { chromium } from "../../tests/web/node_modules/playwright-core/index.mjs";

const rounds = 20;
const presses = 200;

/** Prints the median and the most of some milliseconds. */
function report(name, values) {
  const sorted = [...values].sort((one, other) => one - other);
  const median = sorted[Math.floor(sorted.length / 2)];
  console.log(`${name.padEnd(44)} ${median.toFixed(1).padStart(8)} ${sorted.at(-1).toFixed(1).padStart(8)}`);
}

/** Returns how long the page has taken from its request until its first picture is painted. */
async function firstPicture(browser, address) {
  const page = await browser.newPage();
  await page.addInitScript(() => {
    const isThere = () => document.querySelector("#television [data-screen]") !== null;
    window.painted = new Promise((resolve) => {
      const watch = new MutationObserver(() => {
        if (!isThere()) return;
        watch.disconnect();
        requestAnimationFrame(() => setTimeout(() => resolve(performance.now())));
      });
      watch.observe(document, { childList: true, subtree: true });
    });
  });
  await page.goto(address);
  const time = await page.evaluate(() => window.painted);
  await page.close();
  return time;
}

/** Returns how long each of the key presses has taken until its picture is painted. */
function keyPresses(page, count) {
  return page.evaluate(async (count) => {
    const television = document.getElementById("television");
    const times = [];
    for (let press = 0; press < count; ++press) {
      const begin = performance.now();
      await new Promise((resolve) => {
        new MutationObserver((_, watch) => {
          watch.disconnect();
          requestAnimationFrame(() => setTimeout(resolve));
        }).observe(television, { childList: true });
        const key = press % 2 ? "ArrowUp" : "ArrowDown";
        television.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
      });
      times.push(performance.now() - begin);
    }
    return times;
  }, count);
}

const stowline = process.argv[2];
const directory = mkdtempSync(join(tmpdir(), "stowline-bench-"));
const tree = join(directory, "receiver");
execFileSync(stowline, ["receiver", "new", tree]);
const desk = spawn(stowline, ["desk", "--receiver", tree, "--web"]);
const browser = await chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
try {
  const lines = createInterface({ input: desk.stdout })[Symbol.asyncIterator]();
  const address = (await lines.next()).value;
  const loads = [];
  for (let round = 0; round < rounds; ++round) loads.push(await firstPicture(browser, address));
  const page = await browser.newPage();
  await page.goto(address);
  await page.waitForSelector("#television [data-screen]");
  const keys = await keyPresses(page, presses);
  console.log(`${"".padEnd(44)} ${"median".padStart(8)} ${"most".padStart(8)} ms`);
  report(`from the page's load to its first picture, ${rounds}x`, loads);
  report(`from a key press to its picture, ${presses}x`, keys);
} finally {
  await browser.close();
  desk.kill("SIGKILL");
  rmSync(directory, { recursive: true, force: true });
}
