// A receiver in a directory of its own, and the command stowline that shows it in a browser.

import { execFileSync, spawn } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";

import { chromium } from "playwright-core";

export const stowline = process.env.STOWLINE_COMMAND;
export const samples = process.env.STOWLINE_SKINS;

/** Where screenshots are kept for a person to look at. */
export const pictures = process.env.STOWLINE_SCREENSHOTS;

/** A receiver tree that goes with its test. */
export class Receiver {
  constructor(test) {
    this.directory = mkdtempSync(join(tmpdir(), "stowline-web-"));
    this.tree = join(this.directory, "receiver");
    this.test = test;
    test.after(() => rmSync(this.directory, { recursive: true, force: true }));
    execFileSync(stowline, ["receiver", "new", this.tree]);
  }

  path(name) {
    return join(this.tree, name);
  }

  /** Opens the menu on a port, and resolves to what stands for the command. */
  async open(...options) {
    const desk = new Desk(spawn(stowline, ["desk", "--receiver", this.tree, "--web", "0", ...options]));
    this.test.after(() => desk.kill());
    await desk.start();
    return desk;
  }
}

/** The running command. */
export class Desk {
  constructor(process) {
    this.process = process;
    this.ended = new Promise((resolve) => process.on("exit", resolve));
  }

  /** Waits for the page's address. */
  async start() {
    for await (const line of createInterface({ input: this.process.stdout })) {
      this.address = new URL(line);
      return;
    }
    throw new Error("the command has printed no address");
  }

  kill() {
    this.process.kill("SIGKILL");
  }
}

/** A browser that goes with its test. */
export async function browserFor(test) {
  const browser = await chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
  test.after(() => browser.close());
  return browser;
}

/** Opens the page, in a window of its own, and waits for the picture. What the page should not say fails the test. */
export async function openPage(browser, desk, viewport = { width: 1280, height: 900 }) {
  const page = await browser.newPage({ viewport });
  page.on("pageerror", (error) => { throw error; });
  await page.goto(desk.address.href);
  await page.waitForSelector("#television [data-screen]");
  return page;
}

/** Returns the texts of the picture, in the order in which they are drawn. */
export function textsOf(page) {
  return page.$$eval("#television text", (texts) => texts.map((text) => text.textContent));
}

/** Waits until the picture shows a text, and returns all of its texts. */
export async function waitForText(page, text) {
  await page.locator("#television text", { hasText: text }).first().waitFor();
  return textsOf(page);
}
