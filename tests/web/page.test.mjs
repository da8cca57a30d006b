// The receiver in a real browser.

import assert from "node:assert/strict";
import { existsSync, mkdirSync, readFileSync, readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { Receiver, browserFor, openPage, pictures, samples, textsOf, waitForText } from "./receiver.mjs";

const backups = "media/hdd/qor-stowline";

const menu = [
  "QOR Stowline (Backup)",
  "Backup/restore device : /media/hdd/", "set device for directory qor-stowline",
  "Backup installed plugins", "creates a list of installed plugins, skins and softcams",
  "Backup channel settings", "save channel and bouquet settings",
  "Backup configurations", "save common configurations for GUI, plugins and softcams",
  "Exit",
];

/** Puts the cursor onto the row with a text, by the mouse, and presses OK by the keyboard. */
async function choose(page, text) {
  const row = page.locator('#television [role="option"]', { hasText: text }).first();
  await row.waitFor();
  if (await row.getAttribute("aria-selected") !== "true") await row.click();
  await page.locator('#television [aria-selected="true"]', { hasText: text }).waitFor();
  await page.keyboard.press("Enter");
}

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

/** What a viewer does with each device. */
const devices = {
  keyboard: {
    context: {},
    async moveTo(page, from, to) {
      for (let at = from; at !== to; at += Math.sign(to - from)) await page.keyboard.press(at < to ? "ArrowDown" : "ArrowUp");
    },
    ok: (page) => page.keyboard.press("Enter"),
    exit: (page) => page.keyboard.press("Escape"),
    green: (page) => page.keyboard.press("F2"),
  },
  mouse: {
    context: {},
    moveTo: (page, from, to) => page.click(`#row-${to}`),
    async ok(page) {
      const row = page.locator('#television [aria-selected="true"]');
      await (await row.count() === 0 ? page.locator("#remote .ok") : row).click();
    },
    exit: (page) => page.click("#remote .exit"),
    green: (page) => page.click('[data-widget="key_green"]'),
  },
  touch: {
    context: { viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true },
    moveTo: (page, from, to) => page.tap(`#row-${to}`),
    ok: (page) => page.tap("#remote .ok"),
    exit: (page) => page.tap("#remote .exit"),
    green: (page) => page.tap("#remote .green"),
  },
};

/** What a backup has to bring back, and the packages that the feed has no more. */
const kept = ["etc/enigma2/lamedb", "etc/enigma2/bouquets.tv", "etc/fstab", "etc/enigma2/settings"];
const lost = ["enigma2-plugin-extensions-webinterface", "enigma2-plugin-settings-meridian"];

for (const [name, device] of Object.entries(devices)) {
  test(`a receiver is backed up, flashed and restored by ${name} alone`, async (t) => {
    const receiver = new Receiver(t);
    const contents = () => kept.map((file) => readFileSync(receiver.path(file), "utf8"));
    const [files, packages] = [contents(), receiver.packages()];
    const context = await (await browserFor(t)).newContext(device.context);
    let page = null;
    const selected = async () =>
      Number((await page.getAttribute('#television [aria-selected="true"]', "id")).replace("row-", ""));
    const press = async (text) => {
      const row = page.locator('#television [role="option"]', { hasText: text }).first();
      await row.waitFor();
      const to = Number((await row.getAttribute("id")).replace("row-", ""));
      const from = await selected();
      if (from !== to) await device.moveTo(page, from, to);
      await page.locator(`#row-${to}[aria-selected="true"]`).waitFor();
      await device.ok(page);
    };

    const backup = await receiver.open();
    page = await openPage(context, backup);
    for (const [row, message] of [
      ["Backup installed plugins", "List of installed plugins was created succesfully"],
      ["Backup channel settings", "Settings backup finished succesfully"],
      ["Backup configurations", "Configuration backup finished succesfully"],
    ]) {
      await press(row);
      await waitForText(page, message);
      if (row.includes("channel")) await page.screenshot({ path: join(pictures, `message-${name}.png`), fullPage: true });
      await device.exit(page);
    }
    await waitForText(page, "Exit");
    await device.exit(page);
    assert.equal(await backup.ended, 0);
    await page.locator("#state", { hasText: "The menu is closed" }).waitFor();
    assert.deepEqual(["settings_", "configuration_", "pluginlist_"].map((kind) => backupsOf(receiver, kind).length > 0),
                     [true, true, true]);

    receiver.flash();
    assert.notDeepEqual(contents(), files);
    assert.notDeepEqual(receiver.packages(), packages);

    const restore = await receiver.open("--menu", "restore");
    page = await openPage(context, restore);
    await press("Restore plugins");
    await press("pluginlist_");
    await waitForText(page, "finished");
    await device.ok(page);
    await press("Restore channel settings");
    await press("settings_");
    await waitForText(page, "Restoring settings finished successfully");
    await device.ok(page);
    await press("Restore configurations");
    await press("configuration_");
    await page.locator('[data-screen="StowlineHelpScreen"]').waitFor();
    await device.green(page);
    await page.locator("#state", { hasText: "The GUI was killed and has been started again." }).waitFor();
    await waitForText(page, "QOR Stowline (Restore)");
    assert.deepEqual(await page.$$eval("#log .notice", (items) => items.map((item) => item.textContent)),
                     ["the GUI was killed", "the GUI was started again"]);
    await device.exit(page);
    assert.equal(await restore.ended, 0);
    assert.deepEqual(contents(), files);
    assert.deepEqual(receiver.packages(), packages.filter((name) => !lost.includes(name)));
  });
}

test("a row and a colour key are pressed beside their letters too", async (t) => {
  const desk = await new Receiver(t).open();
  const page = await openPage(await browserFor(t), desk);
  const press = async (selector, x, y) => {
    const box = await page.locator(selector).boundingBox();
    await page.mouse.click(box.x + box.width * x, box.y + box.height * y);
  };
  await press("#row-3", 0.95, 0.05);
  await page.locator('#row-3[aria-selected="true"]').waitFor();
  await press('[data-widget="key_red"]', 0.9, 0.9);
  assert.equal(await desk.ended, 0);
});

test("the whole page fits on a phone, and the whole picture into a window that is not high", async (t) => {
  const desk = await new Receiver(t).open("--skin", join(samples, "skin_sd.xml"));
  const browser = await browserFor(t);
  for (const [width, height] of [[390, 844], [1366, 768], [1920, 1080], [1280, 400]]) {
    const page = await openPage(browser, desk, { width, height });
    await page.keyboard.press("ArrowDown");
    await page.waitForFunction(() => document.querySelector("#television").style.getPropertyValue("--ratio") === "1.25");
    const { wide, bottom } = await page.evaluate(() => ({
      wide: document.documentElement.scrollWidth,
      bottom: document.querySelector("#television").getBoundingClientRect().bottom,
    }));
    await page.screenshot({ path: join(pictures, `window-${width}x${height}.png`) });
    assert.ok(wide <= width, `${wide} of ${width}`);
    assert.ok(bottom <= height, `${bottom} of ${height}`);
  }
});

test("keys that are pressed faster than they are done are done in their order", async (t) => {
  const receiver = new Receiver(t);
  const page = await openPage(await browserFor(t), await receiver.open());
  await page.evaluate((keys) => {
    const television = document.getElementById("television");
    for (const key of keys) television.dispatchEvent(new KeyboardEvent("keydown", { key, bubbles: true }));
  }, [...Array(25).fill(["ArrowDown", "ArrowUp"]).flat(), "ArrowDown", "ArrowDown", "Enter"]);
  await waitForText(page, "Settings backup finished succesfully");
});

test("a busy receiver says so, and which key it does not take any more", async (t) => {
  const receiver = new Receiver(t);
  receiver.delay("bin/tar", "while [ ! -e /tmp/go ]; do sleep 0.05; done");
  const page = await openPage(await browserFor(t), await receiver.open());
  await choose(page, "Backup channel settings");
  await page.locator("#state", { hasText: "The receiver is busy" }).waitFor();
  await page.screenshot({ path: join(pictures, "busy.png") });
  for (let key = 0; key < 65; ++key) await page.keyboard.press("5");
  await page.locator("#state", { hasText: "Too many keys are waiting: 5 is not taken." }).waitFor();
  writeFileSync(receiver.path("tmp/go"), "");
  await waitForText(page, "Settings backup finished succesfully");
});

/** Notes the texts of every picture from now on, and returns what tells them. */
async function watch(page) {
  await page.evaluate(() => {
    const television = document.getElementById("television");
    window.seen = [];
    new MutationObserver(() => {
      window.seen.push([...television.querySelectorAll("text")].map((text) => text.textContent));
    }).observe(television, { childList: true });
  });
  return () => page.evaluate(() => window.seen);
}

test("a message counts down and closes by itself", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  const seen = await watch(page);
  await choose(page, "Backup channel settings");
  await waitForText(page, "10 s");
  assert.deepEqual(await waitForText(page, "Backup channel settings"), menu);
  const seconds = (await seen()).flat().filter((text) => / s$/.test(text)).map((text) => parseInt(text));
  assert.equal(seconds[0], 10);
  assert.ok(seconds.length > 5 && seconds.every((left, index) => index === 0 || left < seconds[index - 1]), seconds.join());
});

test("a running console moves as it prints", async (t) => {
  const receiver = new Receiver(t);
  mkdirSync(receiver.path(backups), { recursive: true });
  writeFileSync(receiver.path(backups + "/restore_mine.sh"),
                "#!/bin/sh\nfor i in 1 2 3; do echo 'line '$i'    of  3'; while [ ! -e /tmp/go$i ]; do sleep 0.05; done; done\n");
  const page = await openPage(await browserFor(t), await receiver.open("--menu", "restore"));
  await choose(page, "Run personal script");
  await choose(page, "restore_mine.sh");
  await waitForText(page, "yes");
  await page.keyboard.press("Enter");
  for (const number of [1, 2, 3]) {
    const texts = await waitForText(page, `line ${number}    of  3`);
    assert.equal(texts.at(-1), "running");
    const spaces = await page.$$eval("#television text", (all) => all.map((text) => getComputedStyle(text).whiteSpace));
    assert.deepEqual(new Set(spaces), new Set(["pre"]));
    await page.screenshot({ path: join(pictures, `console-${number}.png`) });
    writeFileSync(receiver.path("tmp/go" + number), "");
  }
  await waitForText(page, "finished");
});

test("packages move from waiting to done as they are installed", async (t) => {
  const receiver = new Receiver(t);
  receiver.flash();
  receiver.delay("usr/bin/opkg", "sleep 0.5");
  receiver.addBackup("pluginlist_20260314_10-30_solo2.lst",
                     "enigma2-plugin-extensions-webradiofs\nenigma2-plugin-extensions-foreca\n");
  const page = await openPage(await browserFor(t), await receiver.open("--menu", "restore"));
  await choose(page, "Restore plugins");
  const seen = await watch(page);
  await choose(page, "pluginlist_20260314");
  await page.locator("#television text", { hasText: /^finished$/ }).waitFor();
  const drawn = (await seen()).filter((texts) => ["running", "finished"].includes(texts.at(-1)));
  const distinct = drawn.filter((texts, index) => texts.join() !== drawn[index - 1]?.join());
  await page.screenshot({ path: join(pictures, "packages.png") });
  const [first, second] = ["enigma2-plugin-extensions-webradiofs", "enigma2-plugin-extensions-foreca"];
  assert.deepEqual(distinct.map((texts) => texts.slice(-5)), [
    [first, "running", second, "waiting", "running"],
    [first, "done", second, "running", "running"],
    [first, "done", second, "done", "finished"],
  ]);
});

test("a screen reader hears what a screen says, what is going on, and the row with the cursor", async (t) => {
  const receiver = new Receiver(t);
  const name = "configuration_ver_c_20260314_10-30_solo2.tar.gz";
  receiver.addBackup(name);
  receiver.addBackup("restore_mine.sh", "#!/bin/sh\necho one\necho two\n");
  const page = await openPage(await browserFor(t), await receiver.open("--menu", "restore"));
  const heard = (text) => page.locator("#announcement", { hasText: text }).waitFor({ state: "attached" });
  await choose(page, "Restore configurations");
  await heard(name);
  await page.keyboard.press("Enter");
  await heard(/Are you sure you want to restore\s+following backup:\s+configuration_ver_c.*System will restart/s);
  await page.keyboard.press("Escape");
  await page.keyboard.press("Escape");
  await choose(page, "Run personal script");
  await choose(page, "restore_mine.sh");
  await heard(/restore_mine.sh.*yes$/s);
  await page.keyboard.press("Enter");
  await heard(/two.*finished$/s);
});

test("a screen reader finds the list, its rows and the one with the cursor", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  const rows = page.getByRole("listbox").getByRole("option");
  assert.deepEqual((await rows.allTextContents()).map((text) => text.replace(/\s+/g, " ").trim()), [
    "Backup/restore device : /media/hdd/ set device for directory qor-stowline",
    "Backup installed plugins creates a list of installed plugins, skins and softcams",
    "Backup channel settings save channel and bouquet settings",
    "Backup configurations save common configurations for GUI, plugins and softcams",
  ]);
  for (const row of ["row-0", "row-1", "row-2"]) {
    await page.locator(`#television[aria-activedescendant="${row}"]`).waitFor();
    assert.deepEqual(await page.getByRole("option", { selected: true }).evaluateAll((all) => all.map((one) => one.id)), [row]);
    await page.keyboard.press("ArrowDown");
  }
  assert.equal(await page.evaluate(() => document.activeElement.id), "television");
  assert.deepEqual(await page.getByRole("group", { name: "Remote control" }).getByRole("button").allTextContents().then((all) => all.length), 20);
});

test("several windows show the same receiver", async (t) => {
  const desk = await new Receiver(t).open();
  const browser = await browserFor(t);
  const pages = [await openPage(browser, desk), await openPage(browser, desk)];
  await pages[0].keyboard.press("ArrowDown");
  for (const page of pages) await page.locator('#row-1[aria-selected="true"]').waitFor();
});

test("a window that nobody sees leaves its connection to others, and is up to date when it is seen again", async (t) => {
  const desk = await new Receiver(t).open();
  const browser = await browserFor(t);
  const context = await browser.newContext();
  const see = (page, visibility) => page.evaluate((visibility) => {
    Object.defineProperty(document, "visibilityState", { value: visibility, configurable: true });
    document.dispatchEvent(new Event("visibilitychange"));
  }, visibility);
  const hidden = [];
  for (let window = 0; window < 8; ++window) {
    hidden.push(await openPage(context, desk));
    await see(hidden.at(-1), "hidden");
  }
  const seen = await openPage(context, desk);
  await seen.keyboard.press("ArrowDown");
  await seen.locator('#row-1[aria-selected="true"]').waitFor();
  assert.equal(await hidden[0].getAttribute('#television [aria-selected="true"]', "id"), "row-0");
  await see(hidden[0], "visible");
  await hidden[0].locator('#row-1[aria-selected="true"]').waitFor();
});

test("a connection that is lost is said, and made again", async (t) => {
  const desk = await new Receiver(t).open();
  const page = await openPage(await browserFor(t), desk);
  await page.route("**/events?*", (route) => route.abort());
  await page.reload();
  await page.locator("#state", { hasText: "The connection is lost" }).waitFor();
  await page.unroute("**/events?*");
  await page.locator("#state", { hasText: /^$/ }).waitFor({ state: "attached" });
  await page.keyboard.press("ArrowDown");
  await page.locator('#row-1[aria-selected="true"]').waitFor();
  desk.kill();
  await page.locator("#state", { hasText: "The connection is lost" }).waitFor();
  await page.screenshot({ path: join(pictures, "lost.png") });
});

test("the surround is dark or light as the viewer's system is", async (t) => {
  const page = await openPage(await browserFor(t), await new Receiver(t).open());
  for (const [colorScheme, letters] of [["dark", "rgb(255, 255, 255)"], ["light", "rgb(0, 0, 0)"]]) {
    await page.emulateMedia({ colorScheme });
    assert.equal(await page.evaluate(() => getComputedStyle(document.body).color), letters);
    await page.screenshot({ path: join(pictures, colorScheme + ".png") });
  }
});

test("names that are no text, or look like a page's, are shown as they are", async (t) => {
  const receiver = new Receiver(t);
  const names = ["\x01\x1b[31m", "\xff", "\xef\xbf\xbe", "\xc3\xbc", "<script>&amp;"];
  for (const name of names) receiver.addBackup(`settings_${name}_solo2.tar.gz`);
  const page = await openPage(await browserFor(t), await receiver.open("--menu", "restore"));
  await choose(page, "Restore channel");
  const texts = await waitForText(page, "settings_");
  const shown = ["\\x01\\x1b[31m", "\\xff", "\\xef\\xbf\\xbe", "\u00fc", "<script>&amp;"];
  assert.deepEqual(texts.slice(1, 1 + names.length).sort(), shown.map((name) => `settings_${name}_solo2.tar.gz`).sort());
});

test("what a skin asks for and is not understood is named once in the log", async (t) => {
  const receiver = new Receiver(t);
  const skin = receiver.write("skin.xml", `<skin>
<output><resolution xres="1280" yres="720"/></output>
<screen name="Stowline" position="0,0" size="1280,720" flags="wfNoBorder">
<panel/><panel/>
<widget source="title" position="0,0" size="10" font="Regular;30"/>
<widget source="title" position="100,40" size="900,50" font="Bold" glow="1"/>
</screen></skin>`);
  const page = await openPage(await browserFor(t), await receiver.open("--skin", skin));
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("ArrowUp");
  const lines = page.locator("#log .notice");
  await lines.nth(3).waitFor();
  assert.deepEqual(await lines.allTextContents(), [
    'skin: the element "panel" is not understood',
    'skin: line 5, column 2: the element "widget" has no usable size: "10"; it is left out',
    'skin: the attribute "glow" of the element "widget" is not understood',
    'skin: line 6, column 2: the element "widget" has no usable font: "Bold"',
  ]);
  assert.deepEqual(await textsOf(page), ["QOR Stowline (Backup)"]);
});

test("a broken skin ends the command with the line and column", async (t) => {
  const receiver = new Receiver(t);
  const broken = receiver.write("broken.xml", '<skin>\n<screen name="Stowline"\n</skin>');
  const none = receiver.write("none.xml", "<html/>");
  const missing = join(receiver.directory, "missing.xml");
  const pictures = ["--play", "down", "--pictures", join(receiver.directory, "pictures")];
  for (const [skin, said] of [
    [broken, `${broken}: line 3, column 1: Error parsing start element tag`],
    [none, `${none}: line 1, column 2: the element "html" is no skin`],
    [missing, `No such file or directory: '${missing}'`],
  ]) {
    for (const front of [["--web"], pictures]) {
      assert.deepEqual(receiver.run(...front, "--skin", skin), { status: 1, said: `stowline: ${said}\n` });
    }
  }
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
  for (const path of ["/", "/events", "/page.js", "/font/Regular", "/picture/1", "/?token=", "/?token=0"]) {
    assert.equal(await status(path), 403, path);
  }
  assert.equal(await status("/press", {}, "POST"), 403);
  assert.equal(await status("/" + token, { Origin: "http://example.com" }), 403);
  assert.equal(await status("/" + token, { Origin: address.origin }), 200);
});

/** Returns the path of a picture in the first drawing. */
async function shownPicture(address) {
  const { body } = await fetch(new URL("/events" + address.search, address));
  let text = "";
  for await (const chunk of body.pipeThrough(new TextDecoderStream())) {
    text += chunk;
    const found = /\/picture\/\d+/.exec(text);
    if (found) return found[0];
  }
  throw new Error("no picture is shown");
}

test("nothing is served but the page, its fonts and the pictures that the skin names", async (t) => {
  const { address } = await new Receiver(t).open();
  const served = async (path) => {
    const answer = await fetch(new URL(path + address.search, address));
    return `${answer.status} ${answer.headers.get("Content-Type")}`;
  };
  for (const [path, expected] of [
    ["/", "200 text/html; charset=utf-8"],
    ["/page.css", "200 text/css; charset=utf-8"],
    ["/page.js", "200 text/javascript; charset=utf-8"],
    ["/font/Regular", "200 font/ttf"],
    ["/font/..%2f..%2fetc%2fpasswd", "404 null"],
    [await shownPicture(address), "200 image/png"],
    ["/picture/0", "404 null"],
    ["/picture/1000", "404 null"],
    ["/picture/..%2fetc%2fpasswd", "404 null"],
    ["/etc/passwd", "404 null"],
    ["/other", "404 null"],
  ]) {
    assert.equal(await served(path), expected, path);
  }
});
