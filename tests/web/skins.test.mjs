// The sample skins in a real browser: every widget stands where the skin puts it, and no text is cut off.

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { Receiver, browserFor, openPage, pictures, samples, waitForText } from "./receiver.mjs";

const skins = [
  { name: "sd", width: 720, height: 576 },
  { name: "hd", width: 1280, height: 720 },
  { name: "fhd", width: 1920, height: 1080 },
];

/** Returns where the skin puts a screen and its widgets: [name, x, y, width, height] each, in the picture's pixels. */
function placesOf(page, skin, screen) {
  const xml = readFileSync(join(samples, `skin_${skin.name}.xml`), "utf8");
  return page.evaluate(({ xml, skin, screen }) => {
    const root = new DOMParser().parseFromString(xml, "text/xml").querySelector(`screen[name="${screen}"]`);
    const numbers = (element, name) => element.getAttribute(name).split(",");
    const [width, height] = numbers(root, "size").map(Number);
    const [x, y] = numbers(root, "position").map((at, axis) =>
      at === "center" ? ([skin.width, skin.height][axis] - [width, height][axis]) / 2 : Number(at));
    const widgets = [...root.querySelectorAll("widget")].map((widget) => {
      const [left, top] = numbers(widget, "position").map(Number);
      return [widget.getAttribute("name") ?? widget.getAttribute("source"), x + left, y + top,
              ...numbers(widget, "size").map(Number)];
    });
    return [[screen, x, y, width, height], ...widgets];
  }, { xml, skin, screen });
}

/** Returns where the browser has drawn them, in the picture's pixels. */
function drawnPlaces(page, skin) {
  return page.evaluate((skin) => {
    const picture = document.querySelector("#television > svg");
    const box = picture.getBoundingClientRect();
    const scale = box.width / skin.width;
    const drawn = [picture.querySelector("[data-screen]"), ...picture.querySelectorAll("[data-widget]")];
    return drawn.map((element) => {
      const place = element.getScreenCTM();
      const rounded = (number) => Math.round(number * 10) / 10;
      return [element.dataset.screen ?? element.dataset.widget, rounded((place.e - box.left) / scale),
              rounded((place.f - box.top) / scale), element.width.baseVal.value, element.height.baseVal.value];
    });
  }, skin);
}

/** Returns the texts that do not fit into the place that the skin gives them. */
function cutTexts(page) {
  return page.evaluate(async () => {
    await document.fonts.ready;
    return [...document.querySelectorAll("#television text")].filter((text) => {
      const { x, width } = text.getBBox();
      const pane = text.parentElement;
      return x < -0.5 || x + width > pane.width.baseVal.value + 0.5;
    }).map((text) => text.textContent);
  });
}

for (const skin of skins) {
  test(`the ${skin.name} skin's screens stand where it puts them, and no text is cut off`, async (t) => {
    const receiver = new Receiver(t);
    const browser = await browserFor(t);
    const file = join(samples, `skin_${skin.name}.xml`);
    const viewport = { width: skin.width + 400, height: skin.height + 300 };
    for (const flavour of ["backup", "restore"]) {
      const desk = await receiver.open("--skin", file, "--menu", flavour);
      const page = await openPage(browser, desk, viewport);
      const { width, height } = await page.$eval("#television > svg", (svg) => ({ width: svg.viewBox.baseVal.width, height: svg.viewBox.baseVal.height }));
      assert.deepEqual([width, height], [skin.width, skin.height]);
      assert.deepEqual(await drawnPlaces(page, skin), await placesOf(page, skin, "Stowline"));
      assert.deepEqual(await cutTexts(page), []);
      await page.screenshot({ path: join(pictures, `${skin.name}-${flavour}.png`) });
      if (flavour === "restore") {
        await page.locator("text=Restore channel settings").click();
        await page.locator('[aria-selected="true"]', { hasText: "Restore channel settings" }).waitFor();
        await page.keyboard.press("Enter");
        await page.locator('[data-screen="StowlineRestore"]').waitFor();
        assert.deepEqual(await drawnPlaces(page, skin), await placesOf(page, skin, "StowlineRestore"));
        assert.deepEqual(await cutTexts(page), []);
        await page.screenshot({ path: join(pictures, `${skin.name}-list.png`) });
      } else {
        await page.keyboard.press("Enter");
        await waitForText(page, "/media/usb");
        assert.deepEqual(await cutTexts(page), []);
        await page.screenshot({ path: join(pictures, `${skin.name}-choice.png`) });
      }
      desk.kill();
      await desk.ended;
    }
  });
}
