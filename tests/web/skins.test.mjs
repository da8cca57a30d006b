// The sample skins in a real browser: every widget stands where the skin puts it, and no text is cut off.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { Receiver, browserFor, openPage, pictures, samples, translationsInto } from "./receiver.mjs";

const skins = [
  { name: "sd", width: 720, height: 576 },
  { name: "hd", width: 1280, height: 720 },
  { name: "fhd", width: 1920, height: 1080 },
];

/**
 * Returns where a layout puts a screen, its widgets and its pictures: [name, x, y, width, height] each, in the
 * picture's pixels.
 */
function placesOf(page, skin, xml, screen) {
  return page.evaluate(({ xml, skin, screen }) => {
    const root = new DOMParser().parseFromString(xml, "text/xml").querySelector(`screen[name="${screen}"]`);
    const numbers = (element, name) => element.getAttribute(name).split(",");
    const [width, height] = numbers(root, "size").map(Number);
    const [x, y] = numbers(root, "position").map((at, axis) =>
      at === "center" ? Math.trunc(([skin.width, skin.height][axis] - [width, height][axis]) / 2) : Number(at));
    const elements = [...root.querySelectorAll("widget, ePixmap")].map((element) => {
      const [left, top] = numbers(element, "position").map(Number);
      const name = ["pixmap", "name", "source"].map((name) => element.getAttribute(name)).find((name) => name);
      return [name, x + left, y + top, ...numbers(element, "size").map(Number)];
    });
    return [[screen, x, y, width, height], ...elements.sort()];
  }, { xml, skin, screen });
}

/** Returns where the browser has drawn them, in the picture's pixels. */
function drawnPlaces(page, skin) {
  return page.evaluate((skin) => {
    const picture = document.querySelector("#television > svg");
    const whole = picture.getScreenCTM();
    const place = (element) => {
      const own = element.getScreenCTM();
      const rounded = (number) => Math.round(number * 10) / 10;
      const { screen, widget, picture } = element.dataset;
      return [screen ?? widget ?? picture, rounded((own.e - whole.e) / whole.a), rounded((own.f - whole.f) / whole.d),
              element.width.baseVal.value, element.height.baseVal.value];
    };
    const elements = [...picture.querySelectorAll("[data-widget], [data-picture]")].map(place);
    return [place(picture.querySelector("[data-screen]")), ...elements.sort()];
  }, skin);
}

/** Returns the texts that do not fit into the place that the skin gives them. */
function cutTexts(page) {
  return page.evaluate(async () => {
    await document.fonts.ready;
    return [...document.querySelectorAll("#television text")].filter((text) => {
      const { x, y, width, height } = text.getBBox();
      const pane = text.parentElement;
      return x < -0.5 || x + width > pane.width.baseVal.value + 0.5
          || y < -1 || y + height > pane.height.baseVal.value + 1;
    }).map((text) => text.textContent);
  });
}

/** Returns the words of what a screen reader says of the picture that are not to be seen in it. */
function missingWords(page) {
  return page.evaluate(() => {
    const words = (text) => text.split(/[\s.]+/).filter((word) => word !== "");
    const texts = [...document.querySelectorAll("#television text")].map((text) => text.textContent);
    const shown = new Set(words(texts.join(" ")));
    return words(document.getElementById("announcement").textContent).filter((word) => !shown.has(word));
  });
}

/** What is pressed in a flavour of the menu to come to each of its screens, and the screen that it comes to. */
const walks = {
  backup: [
    ["menu", [], "Stowline"],
    ["choice", ["row:0", "ok"], "ChoiceBox"],
    ["message", ["exit", "row:2", "ok"], "MessageBox"],
  ],
  restore: [
    ["restore-menu", [], "Stowline"],
    ["list", ["row:2", "ok"], "StowlineRestore"],
    ["question", ["yellow"], "MessageBox"],
    ["configurations", ["exit", "exit", "row:3", "ok"], "StowlineRestore"],
    ["confirmation", ["ok"], "StowlineHelpScreen"],
    ["console", ["exit", "exit", "row:5", "ok", "ok", "ok"], "Console"],
  ],
};

/** Presses words one after another, each when the picture that follows the one before is there. */
async function walk(page, words, screen) {
  for (const word of words) {
    await page.evaluate((word) => new Promise((resolve) => {
      const television = document.getElementById("television");
      const watch = new MutationObserver(() => {
        watch.disconnect();
        resolve();
      });
      watch.observe(television, { childList: true });
      fetch("/press" + location.search, { method: "POST", body: word });
    }), word);
  }
  await page.locator(`[data-screen="${screen}"]`).waitFor();
}

for (const skin of skins) {
  for (const language of ["en", "de"]) {
    test(`the ${skin.name} skin shows everything where it belongs, and cuts no text off (${language})`, async (t) => {
      const receiver = new Receiver(t);
      receiver.addBackup("settings_20260314_10-30_solo2.tar.gz");
      receiver.addBackup("configuration_ver_c_20260314_10-30_solo2.tar.gz");
      receiver.addBackup("restore_mine.sh", "#!/bin/sh\necho done\n");
      const browser = await browserFor(t);
      const viewport = { width: skin.width + 400, height: skin.height + 300 };
      const file = join(samples, `skin_${skin.name}.xml`);
      const layouts = {
        Stowline: readFileSync(file, "utf8"),
        StowlineRestore: readFileSync(file, "utf8"),
        StowlineHelpScreen: receiver.play("row:3 ok ok", "--menu", "restore").at(-1).skin,
      };
      for (const [flavour, steps] of Object.entries(walks)) {
        const desk = await receiver.open("--skin", file, "--menu", flavour,
                                         ...translationsInto(language, receiver.directory));
        const page = await openPage(browser, desk, viewport);
        for (const [name, words, screen] of steps) {
          await walk(page, words, screen);
          assert.deepEqual(await cutTexts(page), [], name);
          assert.deepEqual(await missingWords(page), [], name);
          if (layouts[screen]) {
            assert.deepEqual(await drawnPlaces(page, skin), await placesOf(page, skin, layouts[screen], screen));
          }
          await page.screenshot({ path: join(pictures, `${skin.name}-${language}-${name}.png`) });
        }
        desk.kill();
        await desk.ended;
      }
    });
  }
}
