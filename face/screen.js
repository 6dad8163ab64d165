// Shows a frame as HTML with the roles that a screen reader knows. It keeps nothing of its own: what
// is to be seen is what the last frame said.

/**
 * @typedef {import("./types").Frame} Frame
 * @typedef {import("./types").Screen} Screen
 */

import { byId, element, filled, icon, set, setText, update } from "./dom.js";
import { DoubleClick } from "./doubleclick.js";
import { FormView } from "./form.js";
import { ListView } from "./list.js";
import { PopupView } from "./popup.js";
import { Scrolling } from "./scrolling.js";
import { Typing } from "./typing.js";

/** The keys that a click beside a popup presses. @type {Record<string, string>} */
const AWAY = { menu: "back", notification: "ok" };

export class ScreenView {
  /** @param {(key: string) => void} press @param {(key: string) => string} text */
  constructor(press, text) {
    this.press = press;
    this.text = text;
    this.display = byId("display");
    this.base = byId("base");
    this.popupBox = byId("popup");
    this.window = byId("window");
    this.soft = byId("soft");
    this.live = byId("live");
    this.tabs = element("div", { class: "tabs" });
    this.content = element("div", { class: "content", id: "content" });
    this.base.append(this.tabs, this.content);
    this.typing = new Typing(this.display, press);
    this.list = new ListView(text, this.typing);
    this.form = new FormView({ text, typing: this.typing, announce: (said) => this.announce(said) });
    this.popup = new PopupView(this.popupBox, text);
    this.scrolling = new Scrolling(this.display, press);
    this.doubleClick = new DoubleClick();
    this.role = "";
    this.popupRole = "";
    this.mode = ""; // what the digit keys enter
    this.asking = -1; // the list that asks for text, or -1
    this.display.addEventListener("click", (event) => this.clicked(event));
    this.display.addEventListener("focusin", (event) => this.focused(event));
    new ResizeObserver(() => this.form.keepCaretInSight()).observe(this.display);
  }

  /** @param {Frame} frame */
  show(frame) {
    const focusWasHere = this.display.contains(document.activeElement) || document.activeElement === document.body;
    this.showStrip(frame);
    this.showBase(frame);
    this.popup.show(frame.popup);
    this.announceProgress(frame, focusWasHere);
    this.popupRole = frame.popup?.role ?? "";
    this.asking = frame.base.asksForText ? frame.base.id : -1;
    this.scrolling.show(frame.popup ?? frame.base);
    this.doubleClick.show(frame);
    this.base.inert = frame.popup !== null;
    this.window.hidden = frame.systemWindow.length === 0;
    update(this.window, frame.systemWindow, (line) => element("div", {}, line));
    this.showSoftKeys(frame.softKeys);
    if (focusWasHere)
      this.focus();
  }

  /** Says something that is seen on the screen to those who cannot see it. @param {string} said */
  announce(said) {
    this.live.replaceChildren(element("span", {}, said));
  }

  /**
   * Says that something is under way, where the focus does not come upon it, and how many rows came of it.
   * @param {Frame} frame
   * @param {boolean} focusIsHere
   */
  announceProgress({ base, popup, softKeys }, focusIsHere) {
    if (popup?.role === "progress" && this.popupRole !== "progress" && !focusIsHere)
      this.announce(popup.text);
    const mayHaveFound = this.popupRole === "progress" || this.asking === base.id;
    if (!mayHaveFound || popup || base.role !== "list" || base.asksForText)
      return;
    const rowsOfOptions = softKeys.length === 0 ? 1 : 0;
    this.announce(filled(this.text("phone.rowCount"), base.rowCount - rowsOfOptions));
  }

  focus() {
    const target = (this.popupBox.hidden ? this.base : this.popupBox).querySelector("[data-focus]");
    if (!(target instanceof HTMLElement) || target === document.activeElement)
      return;
    target.focus({ preventScroll: true });
    this.typing.restore(target);
    this.form.keepCaretInSight();
  }

  /** Brings up a touch keyboard only for a finger on what is to be typed at. @param {Event} event */
  pointed(event) {
    const byTouch = event instanceof PointerEvent && event.pointerType === "touch";
    const atText = event.target instanceof Element && event.target.closest(".search, .field") !== null;
    this.list.setTouchKeyboard(!byTouch || atText);
    if (!byTouch || atText || this.role !== "form")
      this.focus();
  }

  /** The key that the browser's own Tab key stands for, "" when it leaves the screen. @param {boolean} back */
  tabKey(back) {
    const onForm = this.role === "form" && this.popupBox.hidden && this.content.contains(document.activeElement);
    return onForm ? this.form.stepKey(back) : "";
  }

  /** A soft key that has the focus gives it to the one that takes its place. @param {string[]} labels */
  showSoftKeys(labels) {
    const focused = [...this.soft.children].findIndex((key) => key === document.activeElement);
    update(this.soft, labels.map((label, i) => ({ label, i })), ({ label, i }) =>
      element("button", { type: "button", "data-key": `soft${i + 1}` }, label));
    if (focused < 0)
      return;
    const successor = this.soft.children[focused];
    if (successor instanceof HTMLElement)
      successor.focus({ preventScroll: true });
    else
      this.focus();
  }

  /** The title, and what the telephone shows of itself: its hook, and what its digit keys do. @param {Frame} frame */
  showStrip(frame) {
    const { offHook, dialPad } = frame.signs;
    const title = frame.base.role === "idle" ? "" : frame.base.title;
    setText(byId("title"), title);
    set(this.display, { "data-titled": String(title !== "") });
    update(byId("signs"), [...(offHook ? ["offHook"] : []), ...(dialPad ? ["dialPad"] : [])], (sign) =>
      element("span", { class: "sign", role: "img", "aria-label": this.text(sign === "offHook" ? "phone.offHook" : "phone.dialPadOn") },
        icon(sign === "offHook" ? "call" : "pad")));
    this.mode = this.inputMode(frame);
    setText(byId("mode"), this.mode);
  }

  /**
   * Whether there is something in what was typed or pasted that a number does not take. Without the blanks and
   * brackets that people write into numbers it is the same number, without letters it may be another one.
   * @param {string} key
   */
  leavesOut(key) {
    return this.mode === "123" && key.startsWith("text:") && /\p{L}/u.test(key.slice("text:".length));
  }

  /**
   * What a digit key gives that is held down: where it enters letters the digit, elsewhere the 0 the plus sign.
   * @param {string} key
   */
  heldKey(key) {
    if (/^[0-9]$/.test(key) && /abc/i.test(this.mode))
      return `text:${key}`;
    return key === "0" ? "text:+" : "";
  }

  /** What the digit keys enter, as desk telephones write it; "" when they dial or mean nothing. @param {Frame} frame */
  inputMode({ base, popup, signs, tabBarFocused }) {
    if (popup?.role === "dialler")
      return "123";
    if (popup || signs.offHook || signs.dialPad)
      return "";
    if (base.role === "list")
      return base.highlighted || tabBarFocused ? "abc" : ""; // a list without a selection takes no text
    const field = base.fields?.find(({ focused }) => focused);
    return !field || field.readOnly ? "" : { text: field.letters, number: "123", selection: "" }[field.kind];
  }

  /** @param {Frame} frame */
  showBase(frame) {
    this.role = frame.base.role;
    this.base.dataset.role = this.role;
    this.showTabs(frame);
    set(this.content, { role: frame.tabs.length === 0 ? null : "tabpanel", "aria-label": frame.tabs[frame.currentTab] ?? null });
    this.showContent(frame.base);
    this.display.dataset.waiting = String(frame.base.waiting);
  }

  /** @param {Frame} frame */
  showTabs({ tabs, currentTab, tabBarFocused }) {
    set(this.tabs, {
      hidden: tabs.length === 0, role: tabs.length === 0 ? null : "tablist",
      "aria-label": this.text("phone.tab"), "data-focused": tabBarFocused,
    });
    update(this.tabs, tabs.map((label, i) => ({ label, i })), ({ label, i }) => {
      const hasFocus = tabBarFocused && i === currentTab;
      return element("div", {
        class: "tab", role: "tab", "aria-selected": String(i === currentTab), "aria-controls": "content",
        "data-key": `tab${i + 1}`, tabindex: hasFocus ? 0 : null, "data-focus": hasFocus,
      }, label);
    });
  }

  /** @param {Screen} screen */
  showContent(screen) {
    switch (screen.role) {
      case "list":
      case "exclusive":
        return this.list.show(this.content, screen);
      case "form":
        return this.form.show(this.content, screen);
      case "idle":
        return update(this.content, [screen], () => element("div", { class: "idle", tabindex: 0, "data-focus": "" },
          element("p", { class: "clock" }, screen.title),
          element("p", { class: "date" }, screen.text),
          ...screen.rows.map((row) => element("p", {}, row.text))));
      default:
        return update(this.content, [screen], () => element("div", { class: "empty", tabindex: 0, "data-focus": "" }, screen.text));
    }
  }

  /** @param {MouseEvent} event */
  clicked(event) {
    if (this.doubleClick.isMisled(event))
      return;
    const target = event.target instanceof Element ? event.target : null;
    const row = target?.closest("[data-key]");
    if (row && !this.isThere(row, event))
      this.press(row.getAttribute("data-key") ?? "");
    else if (target === this.popupBox && this.popupRole in AWAY)
      this.press(AWAY[this.popupRole] ?? "");
    const step = target?.closest("[data-step]")?.getAttribute("data-step");
    if (step)
      this.press(step);
    this.pointed(event);
  }

  /**
   * Whether to point at something changes nothing. A field that is typed into takes the focus as soon as
   * it is pointed at, see focused(); the choice of several that is marked already stays marked, where
   * pressed again it would be OK, which leaves it.
   * @param {Element} row
   * @param {MouseEvent} event
   */
  isThere(row, { target, detail }) {
    const isChosen = this.role === "exclusive" && (row.getAttribute("aria-selected") === "true" || detail > 1);
    return target instanceof HTMLInputElement || row.getAttribute("data-focused") === "true" || isChosen;
  }

  /** A field that got the focus by the pointer, or by what assists a person, is to be the telephone's. @param {FocusEvent} event */
  focused(event) {
    const field = event.target instanceof HTMLInputElement ? event.target.closest(".field") : null;
    if (field && field.getAttribute("data-focused") !== "true")
      this.press(field.getAttribute("data-key") ?? "");
  }
}
