// Viewers who are many, slow or hostile: the receiver goes on, and takes no more memory for them.

import assert from "node:assert/strict";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { Agent, request } from "node:http";
import { connect } from "node:net";
import { test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";

import { Receiver } from "./receiver.mjs";

/** Sends a request, and resolves to its status. */
function send(desk, { path = "/press", method = "POST", body = "", headers = {}, agent } = {}) {
  const { hostname, port, search } = desk.address;
  return new Promise((resolve, reject) => {
    const sent = request({ hostname, port, path: path + search, method, headers, agent }, (response) => {
      response.resume();
      response.on("end", () => resolve(response.statusCode));
    });
    sent.on("error", reject);
    sent.end(body);
  });
}

/** Looks at the events as a viewer does, and keeps the last of them, as little as it takes to know the last picture. */
class Viewer {
  constructor(desk) {
    const { hostname, port, search } = desk.address;
    this.chunks = [];
    this.opened = new Promise((resolve, reject) => {
      this.request = request({ hostname, port, path: "/events" + search }, (response) => {
        response.on("data", (chunk) => {
          this.chunks.push(chunk);
          if (this.chunks.length > 100) this.chunks.shift();
          resolve();
        });
        response.on("error", () => {});
      });
      this.request.on("error", reject);
      this.request.end();
    });
  }

  /** Returns the id of the row with the cursor in the last picture. */
  selected() {
    const text = Buffer.concat(this.chunks).toString();
    const pictures = [...text.matchAll(/id=\\"(row-\d+)\\" role=\\"option\\" aria-selected=\\"true\\"/g)];
    return pictures.at(-1)?.[1];
  }
}

/** Asserts that the command has never taken 32 MiB of memory. */
function assertMemory(t, desk) {
  const most = Number(/VmHWM:\s+(\d+)/.exec(readFileSync(`/proc/${desk.process.pid}/status`, "utf8"))[1]);
  if (process.env.STOWLINE_SANITIZED) {
    t.diagnostic(`${most} KiB; not judged: the sanitizer takes memory of its own`);
  } else {
    assert.ok(most < 32 * 1024, `${most} KiB`);
  }
}

test("fifty viewers see the same while a thousand keys a second are pressed", async (t) => {
  const desk = await new Receiver(t).open();
  const viewers = Array.from({ length: 50 }, () => new Viewer(desk));
  t.after(() => viewers.forEach((viewer) => viewer.request.destroy()));
  await Promise.all(viewers.map((viewer) => viewer.opened));
  const agent = new Agent({ keepAlive: true, maxSockets: 20 });
  const statuses = new Map();
  const presses = [];
  for (let round = 0; round < 30; ++round) {
    for (let key = 0; key < 100; ++key) {
      presses.push(send(desk, { body: key % 2 ? "up" : "down", agent }).then((status) =>
        statuses.set(status, (statuses.get(status) ?? 0) + 1)));
    }
    await pause(100);
  }
  await Promise.all(presses);
  agent.destroy();
  assert.deepEqual([...statuses.keys()].filter((status) => status !== 204 && status !== 429), []);
  while (await send(desk, { body: "row:3" }) === 429) await pause(10);
  const end = Date.now() + 20000;
  while (viewers.some((viewer) => viewer.selected() !== "row-3") && Date.now() < end) await pause(20);
  assert.deepEqual(new Set(viewers.map((viewer) => viewer.selected())), new Set(["row-3"]));
  assertMemory(t, desk);
});

test("a viewer who reads nothing holds nobody up", async (t) => {
  const desk = await new Receiver(t).open();
  const { hostname, port, search, host } = desk.address;
  const slow = connect(Number(port), hostname);
  t.after(() => slow.destroy());
  slow.write(`GET /events${search} HTTP/1.1\r\nHost: ${host}\r\n\r\n`);
  slow.pause();
  const viewer = new Viewer(desk);
  t.after(() => viewer.request.destroy());
  await viewer.opened;
  for (let round = 0; round < 500; ++round) {
    while (await send(desk, { body: `row:${round % 4}` }) === 429) await pause(2);
  }
  while (viewer.selected() !== "row-3") await pause(10);
  assertMemory(t, desk);
});

test("a thousand connections that say nothing wait for a receiver that is busy, hold nobody up, and are let go", async (t) => {
  const desk = await new Receiver(t).open();
  const { hostname, port } = desk.address;
  desk.process.kill("SIGSTOP");
  const idle = Array.from({ length: 1000 }, () => connect(Number(port), hostname));
  t.after(() => idle.forEach((socket) => socket.destroy()));
  const gone = idle.map((socket) => new Promise((resolve) => socket.on("close", resolve)));
  for (const [index, socket] of idle.entries()) {
    socket.on("error", () => {});
    if (index % 2) socket.write("POST /press HTTP/1.1\r\nHost: ");
  }
  await Promise.all(idle.map((socket) => once(socket, "connect")));
  desk.process.kill("SIGCONT");
  const viewer = new Viewer(desk);
  t.after(() => viewer.request.destroy());
  await viewer.opened;
  assert.equal(await send(desk, { body: "row:3" }), 204);
  while (viewer.selected() !== "row-3") await pause(10);
  assert.equal(idle.filter((socket) => socket.closed).length, 0);
  await Promise.all(gone);
  assertMemory(t, desk);
});

/** Opens connections that say a beginning, and then a letter at a time for as long as they may. */
function drip(t, desk, count, beginning) {
  const { hostname, port } = desk.address;
  return Array.from({ length: count }, () => {
    const socket = connect(Number(port), hostname);
    socket.on("error", () => {});
    socket.write(beginning);
    const dripping = setInterval(() => socket.write("x"), 300);
    socket.gone = new Promise((resolve) => socket.on("close", resolve)).then(() => clearInterval(dripping));
    t.after(() => socket.destroy());
    return socket;
  });
}

test("who never comes to the end of a request is let go, and holds nobody up for long", async (t) => {
  const desk = await new Receiver(t).open();
  const drips = drip(t, desk, 300, "GET / HTTP/1.1\r\nX-Long: ");
  assert.equal(await send(desk, { body: "down" }), 204);
  await Promise.all(drips.map((socket) => socket.gone));
});

test("who never comes to the end of a request does not keep the command from ending", async (t) => {
  const desk = await new Receiver(t).open();
  const { host, search } = desk.address;
  drip(t, desk, 20, `POST /press${search} HTTP/1.1\r\nHost: ${host}\r\nContent-Length: 1000000\r\n\r\n`);
  drip(t, desk, 20, `POST /press${search} HTTP/1.1\r\nHost: ${host}\r\nContent-Length: 60\r\n\r\n`);
  assert.equal(await send(desk, { body: "exit" }), 204);
  assert.equal(await desk.ended, 0);
});

test("a request without an end takes no memory", async (t) => {
  const desk = await new Receiver(t).open();
  const { hostname, port } = desk.address;
  for (const endless of ["X-Header: " + "x".repeat(1000) + "\r\n", "x".repeat(1000)]) {
    const socket = connect(Number(port), hostname);
    const gone = new Promise((resolve) => socket.on("close", resolve));
    socket.on("error", () => {});
    socket.write("GET / HTTP/1.1\r\n");
    const flood = () => {
      while (!socket.destroyed && socket.write(endless));
    };
    socket.on("drain", flood);
    flood();
    await gone;
    assertMemory(t, desk);
  }
  assert.equal(await send(desk, { body: "down" }), 204);
});

test("what would make an answer larger or dearer is not heeded", async (t) => {
  const desk = await new Receiver(t).open();
  const { hostname, port, host } = desk.address;
  const ranges = Array(500).fill("0-60").join(",");
  const answer = await new Promise((resolve, reject) => {
    const chunks = [];
    const socket = connect(Number(port), hostname);
    socket.on("data", (chunk) => chunks.push(chunk));
    socket.on("error", reject);
    socket.on("close", () => resolve(Buffer.concat(chunks).toString()));
    socket.write(`GET / HTTP/1.1\r\nHost: ${host}\r\nRange: bytes=${ranges}\r\nAccept-Encoding: gzip, br\r\n\r\n`);
  });
  assert.match(answer, /^HTTP\/1.1 403 /);
  assert.match(answer, /\r\nContent-Length: 68\r\n/);
  assert.ok(answer.endsWith("\r\n\r\nThis is not for you: open the address that the command has printed.\n"));
});

test("a signal ends the receiver with a last word to its viewers", async (t) => {
  for (const signal of ["SIGINT", "SIGTERM", "SIGHUP", "SIGQUIT"]) {
    const receiver = new Receiver(t);
    const desk = await receiver.open();
    const viewer = new Viewer(desk);
    await viewer.opened;
    const gone = new Promise((resolve) => viewer.request.on("close", resolve));
    const end = once(desk.process, "exit");
    desk.process.kill(signal);
    assert.deepEqual(await end, [null, signal]);
    await gone;
    assert.match(Buffer.concat(viewer.chunks).toString(), /event: end\ndata: null\n\n$/);
    receiver.flash();
  }
});

test("a port that another receiver is shown on is refused", async (t) => {
  const desk = await new Receiver(t).open();
  const { port } = desk.address;
  assert.deepEqual(new Receiver(t).run("--web", port),
                   { status: 1, said: `stowline: cannot listen on port ${port}: Address already in use\n` });
});

test("requests that are too large are refused", async (t) => {
  const desk = await new Receiver(t).open();
  assert.equal(await send(desk, { body: "x".repeat(65) }), 413);
  assert.equal(await send(desk, { body: "x".repeat(1000000) }), 413);
  for (const [status, large] of [
    [414, { path: "/" + "x".repeat(10000), method: "GET" }],
    [431, { headers: { "X-Long": "x".repeat(12000) }, body: "down" }],
  ]) {
    const outcome = await send(desk, large).catch((error) => error.code);
    assert.ok([status, "ECONNRESET"].includes(outcome), outcome);
  }
  assert.equal(await send(desk, { body: "down" }), 204);
});

test("a request for another host is refused", async (t) => {
  const desk = await new Receiver(t).open();
  for (const host of ["example.com", "example.com:" + desk.address.port, "127.0.0.1", "127.0.0.1:1"]) {
    assert.equal(await send(desk, { headers: { Host: host }, body: "down" }), 403, host);
  }
  assert.equal(await send(desk, { headers: { Host: "localhost:" + desk.address.port }, body: "down" }), 204);
});

test("what is no key is not pressed", async (t) => {
  const desk = await new Receiver(t).open();
  for (const body of ["", "wait", "timeout", "frame", "select:a", "row:", "row:-1", "row:1x", "ok ok", "power"]) {
    assert.equal(await send(desk, { body }), 400, body);
  }
});
