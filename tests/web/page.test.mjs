// The receiver in a real browser.

import assert from "node:assert/strict";
import { existsSync, readdirSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { Receiver, browserFor, openPage, pictures, textsOf, waitForText } from "./receiver.mjs";

const backups = "media/hdd/qor-stowline";

const menu = [
  "QOR Stowline (Backup)",
  "Backup/restore device : /media/hdd/", "set device for directory qor-stowline",
  "Backup installed plugins", "creates a list of installed plugins, skins and softcams",
  "Backup channel settings", "save channel and bouquet settings",
  "Backup configurations", "save common configurations for GUI, plugins and softcams",
  "Exit",
];

/** Returns the backups of a kind. */
function backupsOf(receiver, kind) {
  if (!existsSync(receiver.path(backups))) return [];
  return readdirSync(receiver.path(backups)).filter((name) => name.startsWith(kind));
}

test("the first picture is the menu, with the cursor on its first row", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  assert.deepEqual(await textsOf(page), menu);
  assert.equal(await page.title(), "QOR Stowline (Backup)");
  assert.equal(await page.getAttribute("#television", "aria-activedescendant"), "row-0");
  await page.screenshot({ path: join(pictures, "menu.png") });
});

test("the channel settings are backed up by the keyboard alone", async (t) => {
  const receiver = new Receiver(t);
  const page = await openPage(await browserFor(t), await receiver.open());
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("ArrowDown");
  await page.locator('#row-2[aria-selected="true"]').waitFor();
  await page.keyboard.press("Enter");
  await waitForText(page, "Settings backup finished succesfully");
  await page.screenshot({ path: join(pictures, "message.png") });
  assert.equal(backupsOf(receiver, "settings_").length, 1);
  await page.keyboard.press("Escape");
  assert.deepEqual(await waitForText(page, "Backup channel settings"), menu);
});

test("the channel settings are backed up by the mouse alone", async (t) => {
  const receiver = new Receiver(t);
  const desk = await receiver.open();
  const page = await openPage(await browserFor(t), desk);
  await page.click("#row-2");
  await page.locator('#row-2[aria-selected="true"]').waitFor();
  await page.click("#row-2");
  await waitForText(page, "Settings backup finished succesfully");
  assert.equal(backupsOf(receiver, "settings_").length, 1);
  await page.click("#remote >> text=exit");
  await waitForText(page, "Backup channel settings");
  await page.click('[data-widget="key_red"]');
  assert.equal(await desk.ended, 0);
  await page.locator("#state", { hasText: "The menu is closed" }).waitFor();
});

test("a message counts down and closes by itself", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  await page.click("#row-2");
  await page.locator('#row-2[aria-selected="true"]').waitFor();
  await page.keyboard.press("Enter");
  const left = page.locator('[data-widget="timeout"] text');
  for (const seconds of ["10 s", "9 s", "8 s"]) await page.locator(`text="${seconds}"`).waitFor();
  await left.waitFor({ state: "detached" });
  assert.deepEqual(await waitForText(page, "Backup channel settings"), menu);
});

test("several windows show the same receiver", async (t) => {
  const desk = await new Receiver(t).open();
  const browser = await browserFor(t);
  const pages = [await openPage(browser, desk), await openPage(browser, desk)];
  await pages[0].keyboard.press("ArrowDown");
  for (const page of pages) await page.locator('#row-1[aria-selected="true"]').waitFor();
});

test("a connection that is lost is said, and made again", async (t) => {
  const receiver = new Receiver(t);
  const desk = await receiver.open();
  const page = await openPage(await browserFor(t), desk);
  await page.route("**/events?*", (route) => route.abort());
  await page.reload();
  await page.locator("#state", { hasText: "The connection is lost" }).waitFor();
  await page.unroute("**/events?*");
  await page.locator("#television [data-screen]").waitFor();
});

test("the log has what the module prints and the commands that it runs", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  await page.click("#row-2");
  await page.locator('#row-2[aria-selected="true"]').waitFor();
  await page.keyboard.press("Enter");
  await waitForText(page, "Settings backup finished succesfully");
  const lines = await page.$$eval("#log .command", (items) => items.map((item) => item.textContent));
  assert.equal(lines.length, 1);
  assert.match(lines[0], /^tar czf \/media\/hdd\/qor-stowline\/settings_\d{8}_\d\d-\d\d_solo2\.tar\.gz .*/);
});

test("what has no token, another host or another origin is refused", async (t) => {
  const { address } = await new Receiver(t).open();
  const status = async (path, headers = {}, method = "GET") =>
    (await fetch(new URL(path, address), { headers, method })).status;
  const token = address.search;
  assert.equal(await status("/" + token), 200);
  for (const path of ["/", "/events", "/page.js", "/font/Regular", "/picture/etc/passwd", "/?token=", "/?token=0"]) {
    assert.equal(await status(path), 403, path);
  }
  assert.equal(await status("/press", {}, "POST"), 403);
  assert.equal(await status("/" + token, { Origin: "http://example.com" }), 403);
  assert.equal(await status("/" + token, { Origin: address.origin }), 200);
});

test("nothing is served but the page, its fonts and the pictures that the skin names", async (t) => {
  const { address } = await new Receiver(t).open();
  const get = async (path) => (await fetch(new URL(path + address.search, address))).status;
  for (const path of ["/picture/etc/passwd", "/picture/usr/../etc/passwd", "/etc/passwd", "/font/..%2f..%2fetc%2fpasswd%00", "/other"]) {
    assert.notEqual(await get(path), 500, path);
  }
  assert.equal(await get("/picture/etc/passwd"), 404);
  assert.equal(await get("/other"), 404);
});
