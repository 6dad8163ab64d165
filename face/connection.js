// The line to the telephone: opens it, keeps it open, says how it stands.

/** @typedef {import("./types").Message} Message */

const SHORTEST_WAIT = 250; // ms
const LONGEST_WAIT = 4000;
// The telephone cuts a page off that presses more keys than a person can: this stays below that.
const KEYS_AT_ONCE = 50;
const KEYS_A_SECOND = 35;
const LONGEST_TEXT = 900; // bytes of a message that may be text
const TEXT = "text:";

/** How many bytes a text takes in a message. @param {string} text */
function bytesOf(text) {
  return new TextEncoder().encode(JSON.stringify(text)).length;
}

/** As many whole characters of a text as one message holds. @param {string} text */
export function cutToMessage(text) {
  let bytes = 0;
  let end = 0;
  for (const { segment } of new Intl.Segmenter().segment(text)) {
    bytes += bytesOf(segment) - 2;
    if (bytes > LONGEST_TEXT)
      break;
    end += segment.length;
  }
  return text.slice(0, end);
}

/**
 * Keys on their way, in their order. A burst of them leaves at once, the others as fast as the
 * telephone takes them; letters that wait for that travel together.
 */
class KeyQueue {
  /** @param {(key: string) => void} send */
  constructor(send) {
    this.send = send;
    /** @type {string[]} */
    this.waiting = [];
    this.left = KEYS_AT_ONCE;
    this.counted = performance.now();
    this.timer = 0;
  }

  /** @param {string} key */
  add(key) {
    const last = this.waiting.at(-1) ?? "";
    const joined = last + key.slice(TEXT.length);
    if (last.startsWith(TEXT) && key.startsWith(TEXT) && bytesOf(joined) < LONGEST_TEXT)
      this.waiting[this.waiting.length - 1] = joined;
    else
      this.waiting.push(key);
    this.sendWhatMayGo();
  }

  sendWhatMayGo() {
    const now = performance.now();
    this.left = Math.min(KEYS_AT_ONCE, this.left + (KEYS_A_SECOND * (now - this.counted)) / 1000);
    this.counted = now;
    for (; this.left >= 1 && this.waiting.length > 0; this.left -= 1)
      this.send(/** @type {string} */ (this.waiting.shift()));
    clearTimeout(this.timer);
    if (this.waiting.length > 0)
      this.timer = setTimeout(() => this.sendWhatMayGo(), 1000 / KEYS_A_SECOND);
  }

  forget() {
    this.waiting = [];
    this.left = KEYS_AT_ONCE;
  }
}

export class Connection {
  /**
   * @param {string} token
   * @param {(message: Message) => void} onMessage
   * @param {(state: "connected" | "reconnecting" | "refused") => void} onState
   */
  constructor(token, onMessage, onState) {
    this.token = token;
    this.onMessage = onMessage;
    this.onState = onState;
    this.sent = 0;
    this.wait = SHORTEST_WAIT;
    this.keys = new KeyQueue((key) => this.send(key));
    /** @type {WebSocket | null} */
    this.socket = null;
    this.open();
  }

  open() {
    const socket = new WebSocket(`ws://${location.host}/face`, `deskbook.${this.token}`);
    let opened = false;
    socket.onopen = () => { opened = true; };
    socket.onmessage = (event) => {
      const message = JSON.parse(event.data);
      this.onMessage(message);
      if (message.frame && this.socket !== socket)
        this.connected(socket);
    };
    socket.onclose = async () => {
      this.socket = null;
      this.keys.forget(); // they were meant for a screen that may be another one then
      this.onState(!opened && (await this.pageIsServed()) ? "refused" : "reconnecting");
      setTimeout(() => this.open(), this.wait);
      this.wait = Math.min(2 * this.wait, LONGEST_WAIT);
    };
  }

  /** Keys are taken as soon as their screen is there. @param {WebSocket} socket */
  connected(socket) {
    this.socket = socket;
    this.wait = SHORTEST_WAIT;
    this.onState("connected");
  }

  /** A telephone that serves its page but not its screen does not know our token. */
  async pageIsServed() {
    try {
      return (await fetch("/", { method: "HEAD", cache: "no-store" })).ok;
    } catch {
      return false;
    }
  }

  /** Without a connection it does nothing. @param {string} key */
  press(key) {
    if (this.socket?.readyState === WebSocket.OPEN)
      this.keys.add(key);
  }

  /** @param {string} key */
  send(key) {
    this.sent += 1;
    this.socket?.send(JSON.stringify({ n: this.sent, key }));
  }
}
