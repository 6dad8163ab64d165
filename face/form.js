// A form as HTML: its visible fields, each an element of its own for as long as it is visible, so
// that the focus and what a screen reader says follow the telephone's.

import { arrange, bringIntoView, element, filled, icon, picture, set, setText, update } from "./dom.js";
import { ScrollBar } from "./list.js";

/**
 * @typedef {import("./types").Screen} Screen
 * @typedef {import("./types").Field} Field
 * @typedef {import("./typing.js").Typing} Typing
 */

/** @type {Record<number, string>} */
const ICONS = { 1: "office", 2: "office2", 3: "private", 4: "mobile" };
const COUNTS_WITHIN = 10; // characters before the limit
const CARET_MARGIN = 6; // px

/** @typedef {{text: (key: string) => string, typing: Typing, announce: (text: string) => void}} Page */

class FieldView {
  /** @param {Page} page @param {Field} field */
  constructor(page, { kind, position }) {
    this.page = page;
    this.kind = kind;
    this.label = element("span", { class: "label", id: `label-${position}` });
    this.box = element("div", { class: "value" });
    this.root = element("div", { class: "field", "data-kind": kind, "data-key": `row${position + 1}` }, this.label, this.box);
  }

  /** @param {Field} field */
  show({ icon: symbol, label, focused }) {
    if (this.label.textContent !== label || Number(this.label.dataset.icon) !== symbol) {
      const drawn = ICONS[symbol];
      this.label.replaceChildren(...(drawn ? [icon(drawn)] : []), element("span", {}, label));
      this.label.dataset.icon = String(symbol);
    }
    set(this.root, { "data-focused": String(focused) });
  }

  /** The part that has the focus. @returns {HTMLElement} */
  get control() {
    return this.box;
  }

  /** @param {Field} field */
  showFocus({ focused }) {
    set(this.control, { tabindex: focused ? 0 : -1, "data-focus": focused });
  }
}

// A text or a number. What is drawn over it stands in for its caret while the focus is elsewhere, and
// shows the whole of one that is only to be read.
class TextView extends FieldView {
  /** @param {Page} page @param {Field} field */
  constructor(page, field) {
    super(page, field);
    const { position, kind } = field;
    this.input = element("input", {
      type: "text", id: `field-${position}`, dir: "auto", inputmode: kind === "number" ? "tel" : "text", enterkeyhint: "done",
      "aria-labelledby": `label-${position}`,
      autocomplete: "off", autocapitalize: "off", autocorrect: "off", spellcheck: "false",
    });
    this.cursor = element("i", { class: "cursor" });
    this.still = element("span", { class: "still", "aria-hidden": "true", dir: "auto" });
    this.line = element("span", { class: "line" }, this.input, this.still);
    this.count = element("span", { class: "count", id: `count-${position}` });
    /** @type {Field | null} */
    this.shown = null;
    this.call = element("button", { type: "button", class: "step", tabindex: -1, "data-step": "ok", hidden: "" }, icon("call"));
    this.box.append(this.line, this.count, this.call);
  }

  get control() {
    return this.input;
  }

  /** @param {Field} field */
  show(field) {
    super.show(field);
    const characters = [...field.value];
    const before = characters.slice(0, Math.max(field.cursor, 0)).join("");
    this.showCount(field, characters.length);
    this.shown = field;
    const { readOnly, maxLength } = field;
    const isTooLong = !readOnly && maxLength >= 0 && characters.length > maxLength;
    set(this.root, { "data-readonly": readOnly });
    set(this.input, { readonly: readOnly, "data-limit": maxLength, "aria-invalid": isTooLong ? "true" : null });
    this.showCall(field);
    this.showFocus(field);
    this.page.typing.show(this.input, { value: field.value, caret: field.cursor < 0 ? -1 : before.length });
    if (readOnly)
      this.still.replaceChildren(field.value || "–");
    else if (field.focused && field.cursor >= 0)
      this.still.replaceChildren(before, this.cursor, field.value.slice(before.length));
    else
      this.still.replaceChildren();
  }

  /** @param {Field} field @param {number} length */
  showCount({ focused, readOnly, maxLength, value }, length) {
    const counts = focused && !readOnly && maxLength >= 0 && length > maxLength - COUNTS_WITHIN - 1;
    const shown = counts ? `${length}/${maxLength}` : "";
    const isFull = counts && length >= maxLength;
    if (isFull && this.shown?.focused && this.shown.value !== value)
      this.page.announce(this.page.text("phone.fieldFull"));
    setText(this.count, shown);
    set(this.input, { "aria-describedby": counts ? this.count.id : null });
    set(this.count, { "data-full": isFull });
  }

  /** A number that is only to be read is there to be dialled. @param {Field} field */
  showCall({ focused, readOnly, value }) {
    this.call.hidden = !(this.kind === "number" && focused && readOnly && value !== "");
    set(this.call, { "aria-label": this.page.text("dial") });
  }

  /** Of a text longer than the field, the part around the caret is to be seen. */
  keepCaretInSight() {
    if (!this.cursor.isConnected) {
      this.input.scrollLeft = 0;
      return;
    }
    const at = this.cursor.offsetLeft;
    const width = this.still.clientWidth;
    const shown = this.input.scrollLeft;
    const wanted = Math.min(Math.max(shown, at + CARET_MARGIN - width), at - CARET_MARGIN);
    this.still.scrollLeft = wanted;
    this.input.scrollLeft = wanted;
  }
}

// One of several choices, between the arrows that step through them.
class SelectionView extends FieldView {
  /** @param {Page} page @param {Field} field */
  constructor(page, field) {
    super(page, field);
    const { position } = field;
    this.pictured = element("span", { class: "pictured" });
    this.shown = element("span", { class: "text" });
    this.combobox = element("div", {
      class: "choice", id: `field-${position}`, role: "combobox", "aria-expanded": "false",
      "aria-labelledby": `label-${position}`, "aria-describedby": `place-${position}`,
    }, this.pictured, this.shown);
    this.place = element("span", { class: "place", id: `place-${position}` });
    this.arrows = [this.arrow("left", "‹"), this.arrow("right", "›")];
    this.box.append(this.combobox, ...this.arrows, this.place);
  }

  /** @param {string} key @param {string} sign */
  arrow(key, sign) {
    return element("button", { type: "button", class: "step", tabindex: -1, "data-step": key }, sign);
  }

  get control() {
    return this.combobox;
  }

  /** @param {Field} field */
  show(field) {
    super.show(field);
    const { text, announce } = this.page;
    const place = field.choice >= 0 && field.choices > 1 ? filled(text("phone.position"), field.choice + 1, field.choices) : "";
    for (const arrow of this.arrows)
      set(arrow, { "aria-label": text(`phone.${arrow.dataset.step}`), disabled: field.choices < 2 && field.choice >= 0 });
    if (field.focused && this.combobox.tabIndex === 0 && this.shown.textContent !== field.value)
      announce([field.value, place].filter(Boolean).join(", "));
    this.showFocus(field);
    setText(this.shown, field.value);
    setText(this.place, place);
    update(this.pictured, picture(field, text("picture")), (shown) => shown);
  }
}

export class FormView {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    this.form = element("div", { class: "fields", role: "form" });
    this.bar = new ScrollBar();
    this.id = -1;
    /** @type {Map<number, FieldView>} */
    this.fields = new Map();
    this.rowCount = 0;
    this.focused = -1;
  }

  /** @param {HTMLElement} content @param {Screen} screen */
  show(content, screen) {
    const fields = screen.fields ?? [];
    if (screen.id !== this.id || this.form.parentElement !== content) {
      this.id = screen.id;
      this.fields.clear();
      content.replaceChildren(this.form, this.bar.root);
    }
    this.rowCount = screen.rowCount;
    this.focused = fields.find(({ focused }) => focused)?.position ?? -1;
    set(this.form, { "aria-label": screen.title || this.page.text("phone.screen"), "aria-busy": String(screen.waiting) });
    const views = fields.map((field) => this.viewOf(field));
    this.fields = new Map(fields.map(({ position }, i) => [position, /** @type {FieldView} */ (views[i])]));
    arrange(this.form, views.map(({ root }) => root));
    fields.forEach((field, i) => views[i]?.show(field));
    bringIntoView(this.form.querySelector("[data-focused=true]"));
    this.bar.show(fields, screen.rowCount);
    this.keepCaretInSight();
  }

  /** @param {Field} field */
  viewOf(field) {
    const present = this.fields.get(field.position);
    if (present?.kind === field.kind)
      return present;
    return field.kind === "selection" ? new SelectionView(this.page, field) : new TextView(this.page, field);
  }

  keepCaretInSight() {
    for (const view of this.fields.values())
      if (view instanceof TextView)
        view.keepCaretInSight();
  }

  /** The key that goes to the next field, or to the one before; "" at the form's end. @param {boolean} back */
  stepKey(back) {
    if (back)
      return this.focused > 0 ? "up" : "";
    return this.focused < this.rowCount - 1 ? "down" : "";
  }
}
