// Small helpers for making the page's elements. Texts only ever go in as text.

/**
 * @param {string} tag
 * @param {Record<string, string | number | boolean | null>} [attributes] null and false leave one out
 * @param {...(Node | string)} children
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

/** @param {string} symbol */
export function icon(symbol) {
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("aria-hidden", "true");
  const use = document.createElementNS("http://www.w3.org/2000/svg", "use");
  use.setAttribute("href", `#i-${symbol}`);
  svg.append(use);
  return svg;
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
