// A list as HTML. The element with the focus is editable, so that dead keys, input methods and paste
// search as plain letters do; to a screen reader it is the list, and the rows are its own.

import { bringIntoView, element, icon, picture, set, setText, update } from "./dom.js";

/**
 * @typedef {import("./types").Screen} Screen
 * @typedef {import("./types").Row} Row
 */

/** @type {Record<number, string>} */
const ICONS = { 2: "private", 3: "office", 4: "office2", 5: "mobile" };

/** @param {Row} row @param {string} pictureName */
export function rowContent(row, pictureName) {
  const symbol = ICONS[row.icon];
  return [
    ...(symbol ? [icon(symbol)] : []),
    ...picture(row, pictureName),
    element("span", { class: "text" }, row.text),
  ];
}

// Tells which part of all rows is to be seen.
export class ScrollBar {
  constructor() {
    this.thumb = element("div");
    this.root = element("div", { class: "bar", "aria-hidden": "true" }, this.thumb);
  }

  /** @param {{position: number}[]} shown @param {number} count */
  show(shown, count) {
    this.root.hidden = shown.length >= count;
    if (this.root.hidden)
      return;
    const size = Math.max(8, (100 * shown.length) / count);
    this.thumb.style.height = `${size}%`;
    this.thumb.style.top = `${((100 - size) * (shown[0]?.position ?? 0)) / (count - shown.length)}%`;
  }
}

export class ListView {
  /** @param {(key: string) => string} text @param {import("./typing.js").Typing} typing */
  constructor(text, typing) {
    this.text = text;
    this.typing = typing;
    this.found = element("span", { class: "found" });
    this.editable = element("div", { class: "typing", role: "listbox", tabindex: 0, "data-focus": "", "aria-owns": "rows", autocapitalize: "off", autocorrect: "off", spellcheck: "false", enterkeyhint: "search" });
    this.search = element("div", { class: "search" }, icon("search"), this.found, this.editable);
    this.rows = element("ul", { class: "rows", id: "rows", role: "presentation" });
    this.bar = new ScrollBar();
    this.list = element("div", { class: "list" }, this.rows, this.bar.root);
    this.hint = element("p", { class: "how", id: "how" });
    this.list.prepend(this.hint);
    this.legend = element("p", { class: "legend", id: "legend" });
  }

  /** @param {HTMLElement} content @param {Screen} screen */
  show(content, screen) {
    if (this.list.parentElement !== content)
      content.replaceChildren(this.search, this.list, this.legend);
    this.showSearch(screen);
    this.showHint(screen);
    this.showLegend(screen);
    const selected = screen.rows.find((row) => row.selected);
    set(this.editable, {
      contenteditable: screen.role === "list",
      "aria-label": screen.title || this.text("phone.rows"),
      "aria-activedescendant": selected && screen.highlighted ? `row-${selected.position}` : null,
      "aria-busy": String(screen.waiting),
      "aria-describedby": [this.hint, this.legend].find(({ hidden }) => !hidden)?.id ?? null,
    });
    set(this.list, { "data-role": screen.role });
    this.typing.show(this.editable, { value: "", caret: 0 });
    set(this.rows, { "data-highlighted": String(screen.highlighted) });
    update(this.rows, screen.rows, (row) => element("li", {
      id: `row-${row.position}`,
      role: "option",
      "aria-selected": String(row.selected),
      "aria-setsize": screen.rowCount,
      "aria-posinset": row.position + 1,
      "data-key": `row${row.position + 1}`,
    }, ...rowContent(row, this.text("picture"))));
    bringIntoView(this.rows.querySelector("[aria-selected=true]"));
    this.bar.show(screen.rows, screen.rowCount);
  }

  /** @param {Screen} screen */
  showSearch(screen) {
    set(this.search, { "data-open": String(screen.searchOpen || screen.search !== "" || screen.pending !== "") });
    if (screen.pending === "")
      setText(this.found, screen.search);
    else
      this.found.replaceChildren(screen.search, element("u", {}, screen.pending));
    this.found.scrollLeft = this.found.scrollWidth; // of a long text the end is to be seen
  }

  /** Where nothing is found yet, the empty room tells how to search. @param {Screen} screen */
  showHint({ asksForText }) {
    this.hint.hidden = !asksForText;
    setText(this.hint, this.text("phone.searchHint"));
  }

  /** One of several choices is taken by leaving them, which nobody would guess. @param {Screen} screen */
  showLegend({ role }) {
    this.legend.hidden = role !== "exclusive";
    setText(this.legend, this.text("phone.backSaves"));
  }

  /** Brings up a touch keyboard when the list gets the focus, or does not. @param {boolean} wanted */
  setTouchKeyboard(wanted) {
    set(this.editable, { inputmode: wanted ? "search" : "none" });
  }
}
