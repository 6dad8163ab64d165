// The mouse wheel and a finger that swipes, as the arrow keys that move through rows and fields.

/** @typedef {import("./types").Screen} Screen */

const WHEEL_STEP = 40; // px of wheel a row
const LINE = 16; // px, where the wheel counts lines
const SWIPE_STEP = 36; // px of finger a row
const STEPS_AT_ONCE = 3;
const ON_THE_WAY = 500; // ms after which a step is no longer waited for

/** The row or field with the focus, -1 without one. @param {Screen} screen */
function placeOn({ rows, fields, highlighted }) {
  const row = highlighted ? rows.find(({ selected }) => selected) : undefined;
  return (fields?.find(({ focused }) => focused) ?? row)?.position ?? -1;
}

/** Whether the browser itself still has something to scroll there. @param {Event} event @param {number} way */
function scrollsByItself({ target }, way) {
  const box = target instanceof Element ? target.closest(".fields, .popup .rows, .popup > *") : null;
  if (!box || box.scrollHeight <= box.clientHeight + 1)
    return false;
  return way < 0 ? box.scrollTop > 0 : box.scrollTop + box.clientHeight < box.scrollHeight - 1;
}

export class Scrolling {
  /** @param {HTMLElement} root @param {(key: string) => void} press */
  constructor(root, press) {
    this.press = press;
    this.id = -1;
    this.shown = -1; // the place that the telephone shows
    this.ahead = -1; // where it will be after the steps on their way
    this.last = -1;
    this.stepped = -Infinity; // when
    this.rest = 0; // of what was moved, less than a step
    this.finger = 0;
    root.addEventListener("wheel", (event) => this.wheeled(event), { passive: false });
    root.addEventListener("touchstart", ({ touches: [finger] }) => {
      this.rest = 0;
      this.finger = finger?.clientY ?? 0;
    }, { passive: true });
    root.addEventListener("touchmove", (event) => this.swiped(event), { passive: true });
  }

  /** @param {Screen} screen what the arrow keys go to */
  show(screen) {
    if (screen.id !== this.id)
      this.stepped = -Infinity;
    this.id = screen.id;
    this.shown = placeOn(screen);
    this.last = screen.rowCount - 1;
  }

  /** @param {WheelEvent} event */
  wheeled(event) {
    if (event.ctrlKey || event.shiftKey || event.deltaY === 0 || scrollsByItself(event, event.deltaY))
      return;
    if (this.shown >= 0 && this.last > 0)
      event.preventDefault();
    this.move(event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? event.deltaY : event.deltaY * LINE, WHEEL_STEP);
  }

  /** @param {TouchEvent} event */
  swiped({ touches }) {
    const finger = touches[0];
    if (touches.length !== 1 || !finger)
      return;
    this.move(this.finger - finger.clientY, SWIPE_STEP);
    this.finger = finger.clientY;
  }

  /**
   * Never past the first or the last: beyond the first row are the tabs, which nobody scrolls to.
   * @param {number} distance
   * @param {number} step
   */
  move(distance, step) {
    this.rest = Math.sign(distance) === -Math.sign(this.rest) ? distance : this.rest + distance;
    const steps = Math.trunc(this.rest / step);
    this.rest -= steps * step;
    if (this.shown < 0 || steps === 0)
      return;
    const now = performance.now();
    const from = now - this.stepped < ON_THE_WAY ? this.ahead : this.shown;
    const wanted = from + Math.max(-STEPS_AT_ONCE, Math.min(STEPS_AT_ONCE, steps));
    this.ahead = Math.max(0, Math.min(this.last, wanted));
    for (let left = Math.abs(this.ahead - from); left > 0; --left)
      this.press(this.ahead < from ? "up" : "down");
    this.stepped = now;
  }
}
