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

/**
 * The telephone's name for a key, or "" for one that is the browser's.
 * @param {KeyboardEvent} event
 * @param {boolean} onButton whether the key also presses a button of the page
 */
export function keyOf(event, onButton) {
  if (event.ctrlKey || event.altKey || event.metaKey || event.isComposing)
    return "";
  if (onButton && (event.key === "Enter" || event.key === " "))
    return "";
  const named = NAMED[event.key];
  if (named)
    return event.repeat && !REPEATING.has(named) ? "" : named;
  return [...event.key].length === 1 ? `text:${event.key}` : "";
}
