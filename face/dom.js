// Small helpers for making the page's elements. Texts only ever go in as text.

/**
 * @template {keyof HTMLElementTagNameMap} T
 * @param {T} tag
 * @param {Record<string, string | number | boolean | null>} [attributes] null and false leave one out
 * @param {...(Node | string)} children
 * @returns {HTMLElementTagNameMap[T]}
 */
export function element(tag, attributes = {}, ...children) {
  const made = document.createElement(tag);
  set(made, attributes);
  made.append(...children);
  return made;
}

/** @param {Element} target @param {Record<string, string | number | boolean | null>} attributes */
export function set(target, attributes) {
  for (const [name, value] of Object.entries(attributes)) {
    if (value === null || value === false)
      target.removeAttribute(name);
    else if (target.getAttribute(name) !== String(value))
      target.setAttribute(name, String(value));
  }
}

/** @param {Element} target @param {string} text */
export function setText(target, text) {
  if (target.textContent !== text)
    target.textContent = text;
}

/** A text with its parameters. @param {string} pattern @param {...(string | number)} parameters */
export const filled = (pattern, ...parameters) => pattern.replace(/\{(\d)\}/g, (_, n) => String(parameters[Number(n) - 1]));

/** @param {string} symbol */
export function icon(symbol) {
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("aria-hidden", "true");
  const use = document.createElementNS("http://www.w3.org/2000/svg", "use");
  use.setAttribute("href", `#i-${symbol}`);
  svg.append(use);
  return svg;
}

/** Addresses of pictures that could not be shown. @type {Set<string>} */
const unshowable = new Set();

/** @param {string} name */
const placeholder = (name) => element("span", { class: "picture missing", role: "img", "aria-label": name }, icon("person"));

/**
 * What something has for a picture: nothing, its picture, or what stands for one that cannot be shown.
 * @param {import("./types").Pictured} of
 * @param {string} name
 * @returns {HTMLElement[]}
 */
export function picture({ image: address, imageLost }, name) {
  if (imageLost || unshowable.has(address))
    return [placeholder(name)];
  if (!address)
    return [];
  const image = element("img", { class: "picture", src: address, alt: name, draggable: "false" });
  image.addEventListener("error", () => {
    unshowable.add(address);
    image.replaceWith(placeholder(name));
  });
  return [image];
}

/** For when there is a chance that they can be shown. */
export function tryPicturesAgain() {
  unshowable.clear();
}

/** @param {string} id @returns {HTMLElement} */
export function byId(id) {
  const found = document.getElementById(id);
  if (!found)
    throw new Error(`The page has no ${id}`);
  return found;
}

/**
 * Makes `parent`'s children those that `make` gives for each item, and keeps what is the same, so
 * that a screen reader and the focus stay where they are.
 * @template T
 * @param {Element} parent
 * @param {T[]} items
 * @param {(item: T) => HTMLElement} make
 */
export function update(parent, items, make) {
  items.forEach((item, i) => {
    const wanted = make(item);
    const present = parent.children[i];
    if (!present)
      parent.append(wanted);
    else if (!present.isEqualNode(wanted))
      present.replaceWith(wanted);
  });
  while (parent.children.length > items.length)
    parent.lastElementChild?.remove();
}

/**
 * Scrolls what a part of the screen is in until the part is seen. Never the page: whoever has scrolled
 * it to the keypad goes on pressing there.
 * @param {Element | null} part
 */
export function bringIntoView(part) {
  for (let box = part?.parentElement; part && box && box.id !== "display"; box = box.parentElement) {
    const margin = parseFloat(getComputedStyle(box).scrollPaddingTop) || 0;
    const [at, within] = [part.getBoundingClientRect(), box.getBoundingClientRect()];
    const above = within.top + margin - at.top;
    box.scrollTop += above > 0 ? -above : Math.max(0, at.bottom + margin - within.bottom);
  }
}

/** Makes `parent`'s children `wanted`, without moving any that stays in its order. @param {Element} parent @param {Element[]} wanted */
export function arrange(parent, wanted) {
  for (const child of [...parent.children])
    if (!wanted.includes(child))
      child.remove();
  wanted.forEach((child, i) => {
    if (parent.children[i] !== child)
      parent.insertBefore(child, parent.children[i] ?? null);
  });
}
