// The calls above the screen: whose each is, how it stands, what can be done with it; the lamp of the
// hook key; and the page's title, for who looks at another page.

import { arrange, byId, element, icon, set, setText, update } from "./dom.js";

/**
 * @typedef {import("./types").Call} Call
 * @typedef {import("./types").Signs} Signs
 */

/** @type {Record<Call["state"], string>} */
const ICONS = { calling: "call", alerting: "call", incoming: "bell", connected: "call", held: "call", failed: "error" };

/** "0:07", "12:34", "1:02:03". @param {number} seconds */
export function duration(seconds) {
  const two = (/** @type {number} */ n) => String(n).padStart(2, "0");
  const [hours, minutes] = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60];
  return `${hours > 0 ? `${hours}:${two(minutes)}` : minutes}:${two(seconds % 60)}`;
}

/** @param {Signs} signs */
function lampOf({ offHook, calls }) {
  const some = (/** @type {Call["state"][]} */ ...states) => calls.some(({ state }) => states.includes(state));
  if (some("incoming"))
    return "ringing";
  return some("connected", "held") ? "connected" : offHook && "offHook";
}

export class CallBar {
  /** @param {(key: string) => string} text */
  constructor(text) {
    this.text = text;
    this.bar = byId("calls");
    this.live = byId("callslive");
    this.title = document.title;
    /** By their ids. @type {Map<string, HTMLElement>} */
    this.parts = new Map();
    /** @type {Call[]} */
    this.calls = [];
    setInterval(() => this.count(), 1000);
  }

  /** @param {Signs} signs */
  show(signs) {
    const focused = this.bar.contains(document.activeElement) ? document.activeElement?.closest(".one") : null;
    const before = this.calls;
    this.calls = signs.calls;
    this.bar.hidden = this.calls.length === 0;
    arrange(this.bar, this.calls.map((call) => this.part(call)));
    for (const id of [...this.parts.keys()])
      if (!this.calls.some((call) => call.id === id))
        this.parts.delete(id);
    this.count();
    this.announce(before);
    set(byId("lamp"), { "data-lamp": lampOf(signs) });
    document.title = this.titleNow();
    // A button that has gone leaves the focus to what can be done with its call now.
    if (focused && !this.bar.contains(document.activeElement))
      focused.querySelector("button")?.focus({ preventScroll: true });
  }

  /** @param {Call} call */
  part(call) {
    const part = this.parts.get(call.id) ?? this.make(call.id);
    set(part, { "data-state": call.state, "aria-label": call.name });
    update(/** @type {Element} */ (part.querySelector(".symbol")), [ICONS[call.state]], (symbol) => element("span", {}, icon(symbol)));
    for (const [selector, shown] of [[".caller", call.name], [".number", call.number], [".state", call.text]])
      setText(/** @type {Element} */ (part.querySelector(selector ?? "")), shown ?? "");
    update(/** @type {Element} */ (part.querySelector(".actions")), this.actions(call), (button) => button);
    return part;
  }

  /** @param {string} id */
  make(id) {
    const part = element("div", { class: "one", role: "group" },
      element("span", { class: "symbol" }),
      element("div", { class: "who" },
        element("p", { class: "caller" }),
        element("p", { class: "about" }, element("span", { class: "number" }), " ", element("span", { class: "state" }), " ",
          element("span", { class: "time", role: "timer" }))),
      element("div", { class: "actions" }));
    this.parts.set(id, part);
    return part;
  }

  /** @param {Call} call @returns {HTMLElement[]} */
  actions({ id, state }) {
    const button = (/** @type {string} */ what, /** @type {string} */ key, /** @type {string} */ label) =>
      element("button", { type: "button", class: what, "data-key": `${key}:${id}` }, this.text(label));
    switch (state) {
      case "failed":
        return [];
      case "incoming":
        return [button("answer", "answer", "phone.call.answer"), button("end", "end", "phone.call.reject")];
      default:
        return [button("end", "end", "phone.hangup")];
    }
  }

  /** What rings is what matters most; else the call that came last. */
  titleNow() {
    const call = this.calls.find(({ state }) => state === "incoming") ?? this.calls.at(-1);
    return call ? `${call.name}: ${call.text}` : this.title;
  }

  /** Says what is new, to those who cannot see it. @param {Call[]} before */
  announce(before) {
    const said = (/** @type {Call} */ { name, number, text }) => [name, number, text].filter(Boolean).join(", ");
    const known = new Set(before.map(({ id, text }) => `${id} ${text}`));
    const fresh = this.calls.filter(({ id, text }) => !known.has(`${id} ${text}`));
    if (fresh.length > 0)
      this.live.replaceChildren(...fresh.map((call) => element("span", {}, said(call))));
  }

  /** How long each call has been connected. */
  count() {
    for (const { id, state, since } of this.calls) {
      const isRunning = since > 0 && state !== "failed";
      const seconds = Math.max(0, Math.floor((Date.now() - since) / 1000));
      setText(/** @type {Element} */ (this.parts.get(id)?.querySelector(".time")), isRunning ? duration(seconds) : "");
    }
  }
}
