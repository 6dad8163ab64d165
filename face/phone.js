// The telephone's page: puts the connection, the screen and the keys together.

import { CallBar } from "./calls.js";
import { Connection } from "./connection.js";
import { byId, element, tryPicturesAgain } from "./dom.js";
import { keyOf } from "./keyboard.js";
import { Ring } from "./ring.js";
import { ScreenView } from "./screen.js";

const HOLD = 600; // ms until a key counts as held down
const HINT = 1200; // ms that a hint stays
const LONG_HINT = 3000; // ms, for one that is not expected
const LETTERS = ["", "ABC", "DEF", "GHI", "JKL", "MNO", "PQRS", "TUV", "WXYZ"];
/** @type {Record<string, string>} */
const OTHERS = { "0": "␣", "*": "@/+", "#": "Aa" };

/** @type {Record<string, string>} */
let texts = {};
/** @param {string} key */
const text = (key) => texts[key] ?? key;

const cover = byId("cover");
const hint = byId("hint");
let hintTimer = 0;

/** @param {string} shown @param {number} time */
function showHint(shown, time = HINT) {
  hint.textContent = shown;
  clearTimeout(hintTimer);
  hintTimer = setTimeout(() => { hint.textContent = ""; }, time);
}

/** @param {import("./types").Signs} signs */
function showCalls(signs) {
  calls.show(signs);
  ring.show(signs.calls.some(({ state }) => state === "incoming"));
}

/** @param {"connected" | "reconnecting" | "refused"} state */
function showState(state) {
  document.body.dataset.state = state;
  tryPicturesAgain();
  cover.hidden = state === "connected";
  if (state !== "connected") // nobody could say when they are over
    showCalls({ offHook: false, dialPad: false, calls: [] });
  if (state === "refused")
    cover.textContent = texts["phone.wrongToken"] ?? "This page's address is no longer valid. Start the telephone again and open the address it prints.";
  else if (state === "reconnecting")
    cover.textContent = texts["phone.reconnecting"] ?? "No connection to the telephone. Trying again…";
}

function translatePage() {
  for (const part of document.querySelectorAll("[data-text]"))
    part.textContent = texts[part.getAttribute("data-text") ?? ""] ?? part.textContent;
  for (const part of document.querySelectorAll("[data-label]"))
    part.setAttribute("aria-label", texts[part.getAttribute("data-label") ?? ""] ?? part.getAttribute("aria-label") ?? "");
}

/** @param {import("./types").Message} message */
function received(message) {
  if (message.texts) {
    texts = message.texts;
    document.documentElement.lang = message.language ?? "en";
    translatePage();
  }
  if (message.frame) {
    showCalls(message.frame.signs);
    screen.show(message.frame);
  }
  for (const [, verdict] of message.acks ?? [])
    if (verdict === "busy")
      showHint(text("phone.busyKeyDropped"));
}

const calls = new CallBar(text);
const ring = new Ring();
const screen = new ScreenView(pressedOnKeyboard, text);
const connection = new Connection(location.hash.slice(1), received, showState);

/** @param {string} key */
function press(key) {
  connection.press(key);
}

/** @param {string} key */
function pressedOnKeyboard(key) {
  press(key);
  if (screen.leavesOut(key))
    showHint(text("phone.digitsOnly"), LONG_HINT);
  flash(key);
}

function buildKeypad() {
  const pad = byId("keypad");
  [..."123456789*0#"].forEach((digit, i) => {
    const letters = LETTERS[i] ?? OTHERS[digit] ?? "";
    pad.append(element("button", { type: "button", "data-key": digit },
      element("b", {}, digit), " ", element("small", { "aria-hidden": digit in OTHERS ? "true" : null }, letters)));
  });
}

// A click presses a button's key; held down, some have another one.
let heldKey = "";
let holdTimer = 0;
document.addEventListener("pointerdown", (event) => {
  const button = event.target instanceof Element ? event.target.closest("button[data-key]") : null;
  const held = button?.getAttribute("data-hold") ?? screen.heldKey(button?.getAttribute("data-key") ?? "");
  heldKey = "";
  clearTimeout(holdTimer);
  if (held)
    holdTimer = setTimeout(() => {
      heldKey = held;
      press(heldKey);
    }, HOLD);
});
document.addEventListener("pointerup", () => clearTimeout(holdTimer));
document.addEventListener("pointercancel", () => clearTimeout(holdTimer));
document.addEventListener("click", (event) => {
  if (screen.doubleClick.isMisled(event))
    return;
  const button = event.target instanceof Element ? event.target.closest("button[data-key]") : null;
  if (button && heldKey === "")
    press(button.getAttribute("data-key") ?? "");
  heldKey = "";
  // Whoever points at keys goes on typing at the screen; whoever came with the Tab key stays.
  if (button && event.detail > 0)
    screen.pointed(event);
});

/** What the keyboard's keys go to. @returns {"button" | "editable" | "other"} */
function keysGoTo() {
  const focused = document.activeElement;
  if (focused instanceof HTMLButtonElement)
    return "button";
  const isEditable = focused instanceof HTMLInputElement || (focused instanceof HTMLElement && focused.isContentEditable);
  return isEditable ? "editable" : "other";
}

document.addEventListener("keydown", (event) => {
  if (document.activeElement === document.body)
    screen.focus();
  const on = keysGoTo();
  if (on === "button" && event.key === "Enter" && event.repeat)
    event.preventDefault(); // held down, the browser would press the button again and again
  if (screen.typing.isSelecting(event))
    return;
  const isTab = event.key === "Tab" && !event.ctrlKey && !event.altKey && !event.metaKey;
  const key = isTab ? screen.tabKey(event.shiftKey) : keyOf(event, on);
  if (key === "")
    return;
  event.preventDefault();
  pressedOnKeyboard(key);
});

/** Shows on the telephone which of its keys the keyboard pressed. @param {string} key */
function flash(key) {
  const button = document.querySelector(`button[data-key="${CSS.escape(key.replace(/^text:/, ""))}"]`);
  button?.classList.add("pressed");
  setTimeout(() => button?.classList.remove("pressed"), 120);
}

addEventListener("hashchange", () => location.reload());
buildKeypad();
showState("reconnecting");
