// The page of the stand-in receiver: it shows the picture that the server draws and presses what its viewer does.

const token = document.getElementById("program").dataset.token;
const television = document.getElementById("television");
const state = document.getElementById("state");
const announcement = document.getElementById("announcement");
const log = document.getElementById("log");

const mostLines = 500;

// The keys of the keyboard that are the remote control's, as on the terminal.
const keys = {
  ArrowUp: "up", ArrowDown: "down", ArrowLeft: "left", ArrowRight: "right",
  Enter: "ok", Escape: "exit", Backspace: "exit", q: "exit",
  F1: "red", F2: "green", F3: "yellow", F4: "blue", r: "red", g: "green", y: "yellow", b: "blue",
};
for (const digit of "0123456789") keys[digit] = digit;

function address(path) {
  return path + "?token=" + token;
}

async function send(word) {
  try {
    const answer = await fetch(address("/press"), { method: "POST", body: word });
    if (answer.status === 429) state.textContent = "Too many keys are waiting: " + word + " is not taken.";
  } catch {
    // The events' own connection says that the receiver is not to be reached.
  }
}

// One after another: what is pressed arrives in its order.
let sent = Promise.resolve();

function press(word) {
  sent = sent.then(() => send(word));
}

// The skin's fonts are loaded when a text first asks for them.
const fonts = new Set();

function loadFont(family) {
  const name = family.split(",")[0];
  if (!name.startsWith("skin-") || fonts.has(name)) return;
  fonts.add(name);
  const url = address("/font/" + encodeURIComponent(name.replace("skin-", "")));
  document.fonts.add(new FontFace(name, "url(" + url + ")"));
}

// Tells the style sheet how wide the picture is for its height.
function fit() {
  const { width, height } = television.firstElementChild.viewBox.baseVal;
  television.style.setProperty("--ratio", width / height);
}

function showPicture(picture) {
  const drawn = new DOMParser().parseFromString(picture.svg, "image/svg+xml").documentElement;
  for (const text of drawn.querySelectorAll("text")) loadFont(text.getAttribute("font-family"));
  television.replaceChildren(document.importNode(drawn, true));
  fit();
  const selected = television.querySelector('[aria-selected="true"]');
  if (selected) {
    television.setAttribute("aria-activedescendant", selected.id);
  } else {
    television.removeAttribute("aria-activedescendant");
  }
  document.title = picture.title || "Stowline";
  state.textContent = picture.state;
  if (announcement.textContent !== picture.announcement) announcement.textContent = picture.announcement;
}

function addLine(line) {
  const isAtEnd = log.scrollTop + log.clientHeight >= log.scrollHeight - 4;
  const item = document.createElement("li");
  item.className = line.kind;
  item.textContent = line.text;
  log.append(item);
  if (log.children.length > mostLines) log.firstChild.remove();
  if (isAtEnd) log.scrollTop = log.scrollHeight;
}

let events = null;
let hasEnded = false;
let silence = 0;

// Something is heard of the receiver every second.
function hear() {
  clearTimeout(silence);
  silence = setTimeout(loseConnection, 5000);
}

function loseConnection() {
  events.close();
  state.textContent = "The connection is lost. Trying again …";
  clearTimeout(silence);
  silence = setTimeout(connect, 1000);
}

// A browser has few connections to one server: a window that nobody sees leaves its own to the others.
function connect() {
  events?.close();
  clearTimeout(silence);
  if (hasEnded || document.visibilityState === "hidden") return;
  events = new EventSource(address("/events"));
  events.addEventListener("open", () => {
    log.replaceChildren();
    state.textContent = "";
    hear();
  });
  events.addEventListener("alive", hear);
  events.addEventListener("picture", (event) => {
    hear();
    showPicture(JSON.parse(event.data));
  });
  events.addEventListener("log", (event) => {
    hear();
    addLine(JSON.parse(event.data));
  });
  events.addEventListener("end", () => {
    hasEnded = true;
    connect();
    state.textContent = "The menu is closed, and the receiver with it.";
  });
  events.addEventListener("error", loseConnection);
  hear();
}

document.addEventListener("keydown", (event) => {
  const word = keys[event.key];
  if (!word || event.ctrlKey || event.altKey || event.metaKey) return;
  if (event.target.closest("button") && event.key === "Enter") return;
  if (event.target === log && event.key.startsWith("Arrow")) return;
  event.preventDefault();
  press(word);
});

document.getElementById("remote").addEventListener("click", (event) => {
  const button = event.target.closest("button");
  if (button) press(button.dataset.word);
});

// A click on a row puts the cursor there, one on the row with the cursor is OK; one on a colour key's text is that key.
television.addEventListener("click", (event) => {
  const row = event.target.closest('[role="option"]');
  const key = event.target.closest('[data-widget^="key_"]');
  if (row) {
    press(row.getAttribute("aria-selected") === "true" ? "ok" : "row:" + row.id.replace("row-", ""));
  } else if (key && key.textContent.trim()) {
    press(key.dataset.widget.replace("key_", ""));
  }
});

document.addEventListener("visibilitychange", connect);
television.focus({ preventScroll: true });
connect();
