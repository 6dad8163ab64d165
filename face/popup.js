// The popup on top as HTML: a menu, a question, a message, work in progress, the dialler.

import { bringIntoView, element, icon, picture, set, setText, update } from "./dom.js";
import { rowContent } from "./list.js";

/**
 * @typedef {import("./types").Screen} Screen
 * @typedef {import("./types").Row} Row
 */

/** By the icons of rows. @type {Record<number, string>} */
const NUMBER_KINDS = { 2: "private", 3: "business1", 4: "business2", 5: "mobile" };
/** @type {Record<number, string>} */
const NOTICE_ICONS = { 1: "success", 2: "error", 3: "error" };

export class PopupView {
  /** @param {HTMLElement} popup @param {(key: string) => string} text */
  constructor(popup, text) {
    this.popup = popup;
    this.text = text;
    this.shown = "";
  }

  /** @param {Screen | null} screen */
  show(screen) {
    this.popup.hidden = screen === null;
    if (!screen) {
      this.popup.replaceChildren();
      this.shown = "";
      return;
    }
    set(this.popup, { "data-role": screen.role, "data-type": screen.type });
    // What a notification says has to come into the page as a whole, or it is not read out.
    const shown = JSON.stringify([screen.id, screen.role, ...(screen.role === "notification" ? [screen.type, screen.text] : [])]);
    if (shown !== this.shown)
      this.popup.replaceChildren(this.make(screen));
    this.shown = shown;
    this.fill(screen);
  }

  /** @param {Screen} screen */
  make(screen) {
    switch (screen.role) {
      case "menu":
        return element("div", { class: "menu" }, element("div", { class: "head" }), this.rows());
      case "question":
        return this.dialog("alertdialog", "said", icon("notice"), element("p", { id: "said" }));
      case "dialler":
        return this.dialog("dialog", "said", element("p", { class: "line1", id: "said" }), element("p", { class: "line2", id: "number" }));
      case "progress":
        return element("div", { class: "message", role: "status", tabindex: -1, "data-focus": "", "aria-labelledby": "said" }, element("div", { class: "spinner" }), element("p", { id: "said" }));
      default:
        return element("div", { class: "message", role: "alert", tabindex: -1, "data-focus": "", "data-key": "ok" },
          icon(NOTICE_ICONS[screen.type] ?? "notice"), element("p", { id: "said" }, screen.text));
    }
  }

  rows() {
    return element("ul", { class: "rows", role: "menu", tabindex: 0, "data-focus": "" });
  }

  /** @param {string} role @param {string} labelledBy @param {...Element} parts */
  dialog(role, labelledBy, ...parts) {
    return element("div", { class: `message ${role}`, role, "aria-modal": "true", "aria-labelledby": labelledBy }, ...parts, this.rows());
  }

  /** @param {Screen} screen */
  fill(screen) {
    const said = this.popup.querySelector("#said");
    if (said)
      setText(said, screen.dialler ? [screen.dialler.prefix, screen.dialler.line1].filter(Boolean).join(" ") : screen.text);
    const head = this.popup.querySelector(".head");
    if (head instanceof HTMLElement)
      this.fillHead(head, screen);
    if (screen.dialler)
      this.fillNumber(screen.dialler);
    const rows = this.popup.querySelector(".rows");
    if (rows instanceof HTMLElement)
      this.fillRows(rows, screen);
  }

  /** What a menu is about. @param {HTMLElement} head @param {Screen} screen */
  fillHead(head, screen) {
    const parts = [...picture(screen, this.text("picture")), ...(screen.title ? [element("p", {}, screen.title)] : [])];
    head.hidden = parts.length === 0;
    update(head, parts, (part) => part);
  }

  /** @param {import("./types").Dialler} lines */
  fillNumber(lines) {
    const line = /** @type {HTMLElement} */ (this.popup.querySelector("#number"));
    // A number that is being edited may be empty: the one it replaces is not shown in its place.
    const number = lines.edit || (lines.editMode ? "" : lines.line2);
    line.replaceChildren(number, ...(lines.edit || lines.editMode ? [element("i", { class: "cursor" })] : []));
    set(/** @type {Element} */ (line.parentElement), { "aria-describedby": "number" });
  }

  /** Where there are soft keys for them, a popup has no rows for its commands. @param {HTMLElement} rows @param {Screen} screen */
  fillRows(rows, screen) {
    const isPlain = screen.rows.length === 0 && screen.role !== "menu";
    rows.hidden = isPlain;
    set(rows, { "data-focus": isPlain ? null : "" });
    if (screen.role !== "menu")
      set(/** @type {Element} */ (rows.parentElement), { tabindex: isPlain ? 0 : null, "data-focus": isPlain ? "" : null });
    const selected = screen.rows.find((row) => row.selected);
    set(rows, {
      "aria-label": screen.title || screen.text || this.text("phone.menu"),
      "aria-activedescendant": selected ? `choice-${selected.position}` : null,
    });
    update(rows, screen.rows, (row) => this.choice(row, screen));
    bringIntoView(rows.querySelector(".selected"));
  }

  /** Of several numbers, which one a choice is about. @param {Row} row */
  numberKind({ icon: symbol }) {
    const name = NUMBER_KINDS[symbol];
    return name ? [element("span", { class: "kind" }, this.text(name))] : [];
  }

  /** @param {Row} row @param {Screen} screen */
  choice(row, screen) {
    return element("li", {
      id: `choice-${row.position}`,
      role: "menuitem",
      class: row.selected ? "selected" : null,
      "aria-setsize": screen.rowCount,
      "aria-posinset": row.position + 1,
      "data-key": `row${row.position + 1}`,
    }, ...rowContent(row, this.text("picture")), ...this.numberKind(row));
  }
}
