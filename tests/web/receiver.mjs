// A receiver in a directory of its own, and the command stowline that shows it in a browser.

import { execFileSync, spawn, spawnSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, renameSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { after } from "node:test";

import { chromium } from "playwright-core";

export const stowline = process.env.STOWLINE_COMMAND;
export const samples = process.env.STOWLINE_SKINS;

/** Compiles the translations into a language, and returns what the command takes for them. */
export function translationsInto(language, directory) {
  if (language === "en") return [];
  const catalogue = join(directory, language + ".mo");
  execFileSync("msgfmt", ["-o", catalogue, join(process.env.STOWLINE_TRANSLATIONS, language + ".po")]);
  return ["--translations", catalogue];
}

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

  /** Puts a backup into the backup directory: some bytes, as many as the restore list asks for. */
  addBackup(name, content = "x".repeat(20000)) {
    const directory = this.path("media/hdd/qor-stowline/");
    mkdirSync(directory, { recursive: true });
    writeFileSync(Buffer.concat([Buffer.from(directory), Buffer.from(name, "latin1")]), content);
  }

  /** Returns the names of the installed packages. */
  packages() {
    const status = readFileSync(this.path("var/lib/opkg/status"), "utf8");
    return [...status.matchAll(/^Package: (.*)$/gm)].map(([, name]) => name).sort();
  }

  /** Puts the receiver back to factory state. */
  flash() {
    execFileSync(stowline, ["receiver", "flash", this.tree]);
  }

  /** Makes a tool run a command first. */
  delay(tool, command) {
    renameSync(this.path(tool), this.path(tool + ".real"));
    writeFileSync(this.path(tool), `#!/bin/sh\n${command}\nexec /${tool}.real "$@"\n`, { mode: 0o755 });
  }

  /** Writes a file beside the receiver, and returns its path. */
  write(name, text) {
    writeFileSync(join(this.directory, name), text);
    return join(this.directory, name);
  }

  /** Plays a script, and returns the frames. */
  play(words, ...options) {
    const printed = execFileSync(stowline, ["desk", "--receiver", this.tree, "--play", words, "--frames", "json", ...options]);
    return printed.toString().trim().split("\n").map((line) => JSON.parse(line));
  }

  /** Runs the command on the receiver to its end, and returns its status and what it says on standard error. */
  run(...options) {
    const { status, stderr } = spawnSync(stowline, ["desk", "--receiver", this.tree, ...options]);
    return { status, said: stderr.toString() };
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

let launched = null;
after(async () => (await launched)?.close());

/** The browser of all the tests of a file; its windows go with their test. */
export async function browserFor(test) {
  launched ??= chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
  const browser = await launched;
  test.after(() => Promise.all(browser.contexts().map((context) => context.close())));
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
