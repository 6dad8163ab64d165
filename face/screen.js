// Shows a frame as HTML with the roles that a screen reader knows. It keeps nothing of its own: what
// is to be seen is what the last frame said.

/**
 * @typedef {import("./types").Frame} Frame
 * @typedef {import("./types").Screen} Screen
 * @typedef {import("./types").Row} Row
 * @typedef {import("./types").Field} Field
 */

import { byId, element, icon, set, update } from "./dom.js";

/** @type {Record<number, string>} */
const ROW_ICONS = { 2: "private", 3: "office", 4: "office2", 5: "mobile" };
/** @type {Record<number, string>} */
const FIELD_ICONS = { 1: "office", 2: "office2", 3: "private", 4: "mobile" };
/** @type {Record<number, string>} */
const NOTICE_ICONS = { 1: "success", 2: "error", 3: "error" };

export class ScreenView {
  /** @param {(key: string) => void} press @param {(key: string) => string} text */
  constructor(press, text) {
    this.press = press;
    this.text = text;
    this.display = byId("display");
    this.base = byId("base");
    this.popup = byId("popup");
    this.window = byId("window");
    this.soft = byId("soft");
    this.baseId = -1;
    this.popupId = -1;
    this.display.addEventListener("click", (event) => this.clicked(event));
  }

  /** @param {Frame} frame */
  show(frame) {
    const focusWasHere = this.display.contains(document.activeElement) || document.activeElement === document.body;
    this.showBase(frame);
    this.showPopup(frame.popup);
    this.base.inert = frame.popup !== null;
    this.window.hidden = frame.systemWindow.length === 0;
    update(this.window, frame.systemWindow, (line) => element("div", {}, line));
    this.showSoftKeys(frame.softKeys);
    if (focusWasHere)
      this.focus();
  }

  focus() {
    const target = (this.popup.hidden ? this.base : this.popup).querySelector("[tabindex]");
    if (target instanceof HTMLElement && target !== document.activeElement)
      target.focus({ preventScroll: true });
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

  /** @param {Frame} frame */
  showBase(frame) {
    const { base } = frame;
    if (base.id !== this.baseId || this.base.dataset.role !== base.role) {
      this.baseId = base.id;
      this.base.dataset.role = base.role;
      this.base.replaceChildren(
        element("div", { class: "tabs", role: "tablist" }),
        element("p", { class: "title" }),
        element("p", { class: "search" }, icon("search"), element("span")),
        element("div", { class: "content", id: "content" }));
    }
    const [tabs, title, search, content] = /** @type {HTMLElement[]} */ ([...this.base.children]);
    set(tabs, { hidden: frame.tabs.length === 0, "aria-label": this.text("phone.tab"), "data-focused": frame.tabBarFocused });
    update(tabs, frame.tabs.map((label, i) => ({ label, i })), ({ label, i }) =>
      element("div", { class: "tab", role: "tab", "aria-selected": String(i === frame.currentTab), "aria-controls": "content", "data-key": `tab${i + 1}` }, label));
    if (frame.tabs.length === 0)
      tabs.removeAttribute("role");
    else
      tabs.setAttribute("role", "tablist");
    title.textContent = base.title;
    title.hidden = base.title === "" || base.role === "idle";
    this.showSearch(search, base);
    set(content, { role: frame.tabs.length === 0 ? null : "tabpanel", "aria-label": frame.tabs[frame.currentTab] ?? null });
    this.showContent(content, base);
    this.display.dataset.waiting = String(base.waiting);
  }

  /** @param {HTMLElement} search @param {Screen} base */
  showSearch(search, base) {
    search.hidden = base.role !== "list" || !(base.searchOpen || base.search !== "" || base.pending !== "");
    const field = /** @type {HTMLElement} */ (search.lastElementChild);
    field.replaceChildren(base.search);
    if (base.pending !== "")
      field.append(element("u", {}, base.pending));
    field.scrollLeft = field.scrollWidth; // of a long text the end is to be seen
    set(search, { "aria-label": this.text("phone.search") });
  }

  /** @param {HTMLElement} content @param {Screen} screen */
  showContent(content, screen) {
    switch (screen.role) {
      case "list":
      case "exclusive":
        return this.showList(content, screen);
      case "form":
        return this.showForm(content, screen);
      case "idle":
        return update(content, [screen], () => element("div", { class: "idle", tabindex: 0 },
          element("p", { class: "clock" }, screen.title),
          element("p", { class: "date" }, screen.text),
          ...screen.rows.map((row) => element("p", {}, row.text))));
      default:
        return update(content, [screen], () => element("div", { class: "empty", tabindex: 0 }, screen.text));
    }
  }

  /** @param {HTMLElement} content @param {Screen} screen */
  showList(content, screen) {
    let list = content.firstElementChild;
    if (!list || list.getAttribute("role") !== "listbox") {
      list = element("ul", { class: "rows", role: "listbox", tabindex: 0 });
      content.replaceChildren(list, element("div", { class: "bar", "aria-hidden": "true" }, element("div")));
    }
    const selected = screen.rows.find((row) => row.selected);
    set(list, {
      "aria-label": screen.title || this.text("phone.rows"),
      "aria-activedescendant": selected && screen.highlighted ? `row-${selected.position}` : null,
      "data-highlighted": String(screen.highlighted),
      "aria-busy": String(screen.waiting),
    });
    update(list, screen.rows, (row) => element("li", {
      id: `row-${row.position}`,
      role: "option",
      "aria-selected": String(row.selected),
      "aria-setsize": screen.rowCount,
      "aria-posinset": row.position + 1,
      "data-key": `row${row.position + 1}`,
    }, ...this.rowContent(row)));
    if (list.scrollHeight > list.clientHeight)
      list.querySelector("[aria-selected=true]")?.scrollIntoView({ block: "nearest" });
    this.showBar(/** @type {HTMLElement} */ (content.lastElementChild), screen);
  }

  /** @param {Row} row */
  rowContent(row) {
    const symbol = ROW_ICONS[row.icon];
    return [...(symbol ? [icon(symbol)] : []), element("span", { class: "text" }, row.text)];
  }

  /** @param {HTMLElement} bar @param {Screen} screen */
  showBar(bar, screen) {
    const shown = screen.rows.length;
    bar.hidden = shown >= screen.rowCount;
    if (bar.hidden)
      return;
    const thumb = /** @type {HTMLElement} */ (bar.firstElementChild);
    const first = screen.rows[0]?.position ?? 0;
    const size = Math.max(8, (100 * shown) / screen.rowCount);
    thumb.style.height = `${size}%`;
    thumb.style.top = `${((100 - size) * first) / (screen.rowCount - shown)}%`;
  }

  /** @param {HTMLElement} content @param {Screen} screen */
  showForm(content, screen) {
    let form = content.firstElementChild;
    if (!form || form.getAttribute("role") !== "form") {
      form = element("div", { class: "fields", role: "form", tabindex: 0 });
      content.replaceChildren(form);
    }
    set(form, { "aria-label": screen.title || this.text("phone.screen") });
    update(form, screen.fields ?? [], (field) => this.field(field));
    form.querySelector("[data-focused=true]")?.scrollIntoView({ block: "nearest" });
  }

  /** @param {Field} field */
  field(field) {
    const symbol = FIELD_ICONS[field.icon];
    const characters = [...field.value];
    const value = element("span", {
      class: "value",
      role: field.kind === "selection" ? "combobox" : "textbox",
      "aria-label": field.label,
      "aria-readonly": String(field.readOnly),
      "aria-expanded": field.kind === "selection" ? "false" : null,
    });
    if (field.focused && field.cursor >= 0)
      value.append(characters.slice(0, field.cursor).join(""), element("i", { class: "cursor" }), characters.slice(field.cursor).join(""));
    else
      value.append(field.value);
    return element("div", { class: "field", "data-focused": String(field.focused), "data-kind": field.kind },
      element("span", { class: "label", "aria-hidden": "true" }, ...(symbol ? [icon(symbol)] : []), field.label), value);
  }

  /** @param {Screen | null} screen */
  showPopup(screen) {
    this.popup.hidden = screen === null;
    if (!screen) {
      this.popup.replaceChildren();
      this.popupId = -1;
      return;
    }
    if (screen.id !== this.popupId) {
      this.popup.replaceChildren();
      this.popupId = screen.id;
    }
    this.popup.dataset.role = screen.role;
    this.popup.dataset.type = String(screen.type);
    const make = {
      menu: () => this.menu(screen),
      question: () => this.question(screen),
      dialler: () => this.dialler(screen),
      progress: () => element("div", { class: "message", role: "status", "aria-busy": "true", tabindex: -1 }, element("div", { class: "spinner" }), element("p", {}, screen.text)),
    }[/** @type {string} */ (screen.role)] ?? (() => this.notification(screen));
    update(this.popup, [screen], make);
  }

  /** @param {Screen} screen */
  menu(screen) {
    return element("ul", { class: "rows", role: "menu", tabindex: 0, "aria-label": screen.title || screen.text || this.text("phone.menu"), ...this.activeRow(screen) },
      ...screen.rows.map((row) => element("li", this.choice(row, screen, "menuitem"), ...this.rowContent(row))));
  }

  /** @param {Screen} screen */
  question(screen) {
    return element("div", { class: "message", role: "alertdialog", "aria-modal": "true", "aria-label": screen.text, tabindex: this.isPlain(screen) ? 0 : null },
      icon("notice"), element("p", {}, screen.text), this.answers(screen));
  }

  /** @param {Screen} screen */
  notification(screen) {
    return element("div", { class: "message", role: "alert", tabindex: -1, "data-key": "ok" },
      icon(NOTICE_ICONS[screen.type] ?? "notice"), element("p", {}, screen.text));
  }

  /** @param {Screen} screen */
  dialler(screen) {
    const lines = screen.dialler;
    if (!lines)
      return element("div");
    // A number that is being edited may be empty: the one it replaces is not shown in its place.
    const number = lines.edit || (lines.editMode ? "" : lines.line2);
    return element("div", { class: "message dialler", role: "dialog", "aria-modal": "true", "aria-label": lines.line1, "aria-describedby": "number", tabindex: this.isPlain(screen) ? 0 : null },
      element("p", { class: "line1" }, lines.prefix ? `${lines.prefix} ${lines.line1}` : lines.line1),
      element("p", { class: "line2", id: "number" }, number, ...(lines.edit || lines.editMode ? [element("i", { class: "cursor" })] : [])),
      this.answers(screen));
  }

  /** Whether a popup has its commands on the soft keys. @param {Screen} screen */
  isPlain(screen) {
    return screen.rows.length === 0;
  }

  /** The commands of a popup as rows, where there are no soft keys for them. @param {Screen} screen */
  answers(screen) {
    return this.isPlain(screen) ? element("div") : this.menu(screen);
  }

  /** @param {Screen} screen */
  activeRow(screen) {
    const selected = screen.rows.find((row) => row.selected);
    return { "aria-activedescendant": selected ? `choice-${selected.position}` : null };
  }

  /** @param {Row} row @param {Screen} screen @param {string} role */
  choice(row, screen, role) {
    return {
      id: `choice-${row.position}`,
      role,
      class: row.selected ? "selected" : null,
      "aria-setsize": screen.rowCount,
      "aria-posinset": row.position + 1,
      "data-key": `row${row.position + 1}`,
    };
  }

  /** @param {Event} event */
  clicked(event) {
    const target = event.target instanceof Element ? event.target.closest("[data-key]") : null;
    const key = target?.getAttribute("data-key");
    if (key)
      this.press(key);
    this.focus();
  }
}
