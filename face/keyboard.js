// What the computer's own keys mean to the telephone.

/** @type {Record<string, string>} */
const NAMED = {
  Enter: "ok",
  Escape: "back",
  ArrowUp: "up",
  ArrowDown: "down",
  ArrowLeft: "left",
  ArrowRight: "right",
  ContextMenu: "menu",
  Backspace: "clear",
  Delete: "clearall",
  Home: "home",
  F2: "save",
  F6: "tab",
};
const REPEATING = new Set(["up", "down", "left", "right", "clear"]);
const IN_COMPOSITION = 229; // some browsers say so of a key that ends one

/** @param {KeyboardEvent} event */
const isShortcut = (event) => (event.ctrlKey || event.altKey || event.metaKey) && !event.getModifierState("AltGraph");

/** Whether a key enters a character. @param {KeyboardEvent} event */
export const isLetter = (event) => !isShortcut(event) && [...event.key].length === 1;

/**
 * The telephone's name for a key, or "" for one that is the browser's.
 * @param {KeyboardEvent} event
 * @param {"button" | "editable" | "other"} on what has the focus: a button is pressed by some keys,
 *   and letters reach the telephone from what is editable
 */
export function keyOf(event, on) {
  if (isShortcut(event) || event.isComposing || event.keyCode === IN_COMPOSITION)
    return "";
  if (on === "button" && (event.key === "Enter" || event.key === " "))
    return "";
  const named = NAMED[event.key];
  if (named)
    return event.repeat && !REPEATING.has(named) ? "" : named;
  return on !== "editable" && isLetter(event) ? `text:${event.key}` : "";
}
