// What a person enters where the page has something editable: typed, composed with dead keys or an
// input method, pasted, dropped, or picked by a touch keyboard. Nothing of it stays in the page: it
// goes to the telephone as keys, and the element shows what the telephone makes of it.

import { cutToMessage } from "./connection.js";
import { isLetter } from "./keyboard.js";

/** @typedef {HTMLElement & {value?: string}} Editable */
/** @typedef {{value: string, caret: number}} Truth what an element has to show; the caret in UTF-16 units */

const letters = new Intl.Segmenter(undefined, { granularity: "grapheme" });
/** @param {string} text */
const countLetters = (text) => [...letters.segment(text)].length;

/** The part of a text that a deletion by a touch keyboard or a shortcut means. @type {Record<string, (truth: Truth) => [number, number]>} */
const DELETIONS = {
  deleteContentForward: ({ value, caret }) => [caret, caret + ([...letters.segment(value.slice(caret))][0]?.segment.length ?? 0)],
  deleteWordBackward: ({ value, caret }) => [value.slice(0, caret).search(/\S*\s*$/u), caret],
  deleteWordForward: ({ value, caret }) => [caret, caret + (/^\s*\S*/u.exec(value.slice(caret))?.[0].length ?? 0)],
  deleteSoftLineBackward: ({ caret }) => [0, caret],
  deleteHardLineBackward: ({ caret }) => [0, caret],
  deleteSoftLineForward: ({ value, caret }) => [caret, value.length],
  deleteHardLineForward: ({ value, caret }) => [caret, value.length],
};

/** One line, without what is no text. @param {string} text */
function asLine(text) {
  return text.replace(/\r\n|[\p{Cc}\p{Zl}\p{Zp}]/gu, " ").replace(/\p{Surrogate}/gu, "\uFFFD");
}

/** How `after` came from `before`: which part of it was replaced by what. @param {Truth} before @param {string} after */
function change({ value, caret }, after) {
  const [left, right] = [[...value], [...after]];
  const shorter = Math.min(left.length, right.length);
  const unchanged = Math.min(shorter, [...value.slice(0, caret)].length);
  let start = 0;
  while (start < unchanged && left[start] === right[start])
    ++start;
  let same = 0;
  while (same < shorter - start && left.at(-1 - same) === right.at(-1 - same))
    ++same;
  return {
    start: left.slice(0, start).join("").length,
    end: left.slice(0, left.length - same).join("").length,
    text: right.slice(start, right.length - same).join(""),
  };
}

export class Typing {
  /** @param {HTMLElement} root what it happens in @param {(key: string) => void} press */
  constructor(root, press) {
    this.press = press;
    /** @type {WeakMap<Editable, Truth>} */
    this.truths = new WeakMap();
    /** @type {{element: Editable, before: Truth} | null} */
    this.composing = null;
    root.addEventListener("keypress", (event) => this.letterPressed(event));
    root.addEventListener("beforeinput", (event) => this.beforeInput(event));
    root.addEventListener("compositionstart", (event) => this.compositionStarts(event));
    root.addEventListener("compositionend", (event) => this.compositionEnds(event));
    root.addEventListener("input", (event) => this.undo(event));
    root.addEventListener("keyup", (event) => this.caretMoved(event));
    root.addEventListener("click", (event) => this.caretMoved(event));
    root.addEventListener("dragstart", (event) => event.preventDefault());
    root.addEventListener("dragover", (event) => event.preventDefault());
    root.addEventListener("drop", (event) => this.dropped(event));
  }

  /** The editable element of ours that an event is about. @param {Event} event @returns {Editable | null} */
  of(event) {
    return event.target instanceof HTMLElement && this.truths.has(event.target) ? event.target : null;
  }

  /**
   * Shows what the telephone says. An element in which letters are being composed is left alone until
   * they are.
   * @param {Editable} element
   * @param {Truth} truth
   */
  show(element, truth) {
    const shown = this.truths.get(element);
    this.truths.set(element, truth);
    if (element !== this.composing?.element && (element.value !== truth.value || shown?.caret !== truth.caret))
      this.restore(element);
  }

  /** @param {Editable} element */
  restore(element) {
    const truth = this.truths.get(element);
    if (!truth || this.composing?.element === element)
      return;
    if (!(element instanceof HTMLInputElement)) {
      if (element.hasChildNodes())
        element.replaceChildren();
      return;
    }
    if (element.value !== truth.value)
      element.value = truth.value;
    if (element === document.activeElement && truth.caret >= 0)
      element.setSelectionRange(truth.caret, truth.caret);
  }

  /** What stands in an element and where its caret is, selected text included. @param {Editable} element @returns {Truth & {end: number}} */
  read(element) {
    if (!(element instanceof HTMLInputElement))
      return { value: element.textContent ?? "", caret: 0, end: 0 };
    return { value: element.value, caret: element.selectionStart ?? 0, end: element.selectionEnd ?? 0 };
  }

  /** Whether a key of the keyboard is for the browser: it selects text, or does something to the selected. @param {KeyboardEvent} event */
  isSelecting(event) {
    const element = this.of(event);
    if (!(element instanceof HTMLInputElement))
      return false;
    if (event.shiftKey && ["ArrowLeft", "ArrowRight", "Home", "End"].includes(event.key))
      return true;
    const { caret, end } = this.read(element);
    return caret !== end && (event.key === "Backspace" || event.key === "Delete");
  }

  /**
   * A browser may lose a letter that follows at once upon a change of what is editable: it is taken
   * where the key is, not left to what the browser makes of it.
   * @param {KeyboardEvent} event
   */
  letterPressed(event) {
    const element = this.of(event);
    if (!element || this.composing || !isLetter(event))
      return;
    event.preventDefault();
    this.insert(element, event.key);
  }

  /** @param {Editable} element @param {string} text for what is selected there, or at the caret */
  insert(element, text) {
    const { caret, end } = this.read(element);
    if (caret === end)
      this.enter(text);
    else
      this.replace(/** @type {Truth} */ (this.truths.get(element)), caret, end, text);
    this.restore(element);
  }

  /** @param {InputEvent} event */
  beforeInput(event) {
    const element = this.of(event);
    if (!element || this.composing)
      return;
    event.preventDefault();
    const truth = /** @type {Truth} */ (this.truths.get(element));
    const { caret, end } = this.read(element);
    const entered = event.data ?? event.dataTransfer?.getData("text/plain") ?? "";
    if (event.inputType === "insertLineBreak" || event.inputType === "insertParagraph")
      this.press("ok");
    else if (event.inputType.startsWith("insert"))
      this.insert(element, entered);
    else if (caret !== end)
      this.replace(truth, caret, end, "");
    else if (event.inputType === "deleteContentBackward")
      this.press("clear");
    else if (event.inputType in DELETIONS)
      this.replace(truth, ...(/** @type {(truth: Truth) => [number, number]} */ (DELETIONS[event.inputType]))(truth), "");
    this.restore(element);
  }

  /** Dropped text goes where the telephone's caret is. @param {DragEvent} event */
  dropped(event) {
    event.preventDefault();
    const element = this.of(event);
    element?.focus();
    if (element || !(event.target instanceof Element && event.target.closest(".popup")))
      this.enter(event.dataTransfer?.getData("text/plain") ?? "");
  }

  /** Nothing else changes what an element shows. @param {Event} event */
  undo(event) {
    const element = this.of(event);
    if (element)
      this.restore(element);
  }

  /** @param {string} text */
  enter(text) {
    const line = cutToMessage(asLine(text));
    if (line !== "")
      this.press(`text:${line}`);
  }

  /**
   * Puts `text` in the place of a part of what stands there, with the keys that the telephone has.
   * @param {Truth} truth
   * @param {number} start
   * @param {number} end
   * @param {string} text
   */
  replace({ value, caret }, start, end, text) {
    if (start === 0 && end === value.length && value !== "") {
      this.press("clearall");
    } else {
      this.moveCaret(value, caret, end);
      for (let count = countLetters(value.slice(start, end)); count > 0; --count)
        this.press("clear");
    }
    this.enter(text);
  }

  /** @param {string} value @param {number} from @param {number} to */
  moveCaret(value, from, to) {
    const key = to < from ? "left" : "right";
    for (let count = countLetters(value.slice(Math.min(from, to), Math.max(from, to))); count > 0; --count)
      this.press(key);
  }

  /** The caret was put somewhere with the pointer or the keyboard. @param {Event} event */
  caretMoved(event) {
    const element = this.of(event);
    if (!(element instanceof HTMLInputElement) || this.composing || element !== document.activeElement)
      return;
    const truth = /** @type {Truth} */ (this.truths.get(element));
    const { caret, end } = this.read(element);
    if (caret !== end || caret === truth.caret || truth.caret < 0)
      return;
    this.restore(element);
    this.moveCaret(truth.value, truth.caret, caret);
  }

  /** @param {CompositionEvent} event */
  compositionStarts(event) {
    const element = this.of(event);
    if (element)
      this.composing = { element, before: this.read(element) };
  }

  /** @param {CompositionEvent} event */
  compositionEnds(event) {
    const element = this.of(event);
    if (!element || !this.composing)
      return;
    const { before } = this.composing;
    const { start, end, text } = change(before, this.read(element).value);
    this.composing = null;
    const truth = /** @type {Truth} */ (this.truths.get(element));
    // What came up meanwhile, a message or another field, was not what the letters were for.
    if (element.closest("[inert]") || truth.caret < 0)
      return this.restore(element);
    if (before.value === truth.value)
      this.replace(truth, start, end, text);
    else
      this.enter(text);
    this.restore(element);
  }
}
