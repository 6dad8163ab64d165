// The second click of a double click is meant for what the first one hit: it answers no question,
// closes no message and chooses from no menu that only the first one brought up.

/** @typedef {import("./types").Frame} Frame */

const KEYS_OF_ANY_SCREEN = ".keypad, .controls";

export class DoubleClick {
  constructor() {
    this.top = "";
    this.isPopup = false;
    this.first = { top: "", label: "" };
    document.addEventListener("mousedown", (event) => this.pressed(event), { capture: true });
  }

  /** @param {Frame} frame */
  show({ base, popup }) {
    this.isPopup = popup?.role === "question" || popup?.role === "notification";
    const { role, id, text, title } = popup ?? base;
    this.top = JSON.stringify([role, id, ...(popup ? [text] : [title])]);
  }

  /** @param {MouseEvent} event */
  pressed(event) {
    if (event.detail <= 1)
      this.first = { top: this.top, label: labelOf(event) };
    else if (this.isMisled(event))
      event.preventDefault(); // the focus stays, too
  }

  /** @param {MouseEvent} event */
  isMisled(event) {
    if (event.detail <= 1 || this.top === this.first.top)
      return false;
    const target = event.target instanceof Element ? event.target : null;
    if (target?.closest(KEYS_OF_ANY_SCREEN))
      return this.isPopup;
    if (target?.closest(".soft"))
      return this.isPopup || labelOf(event) !== this.first.label;
    return true;
  }
}

/** @param {Event} event */
function labelOf({ target }) {
  return (target instanceof Element && target.closest("button")?.textContent) || "";
}
