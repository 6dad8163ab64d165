// The line to the telephone: opens it, keeps it open, says how it stands.

/** @typedef {import("./types").Message} Message */

const SHORTEST_WAIT = 250; // ms
const LONGEST_WAIT = 4000;

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
    /** @type {WebSocket | null} */
    this.socket = null;
    this.open();
  }

  open() {
    const socket = new WebSocket(`ws://${location.host}/face`, `deskbook.${this.token}`);
    let opened = false;
    socket.onopen = () => {
      opened = true;
      this.socket = socket;
      this.wait = SHORTEST_WAIT;
      this.onState("connected");
    };
    socket.onmessage = (event) => this.onMessage(JSON.parse(event.data));
    socket.onclose = async () => {
      this.socket = null;
      this.onState(!opened && (await this.pageIsServed()) ? "refused" : "reconnecting");
      setTimeout(() => this.open(), this.wait);
      this.wait = Math.min(2 * this.wait, LONGEST_WAIT);
    };
  }

  /** A telephone that serves its page but not its screen does not know our token. */
  async pageIsServed() {
    try {
      return (await fetch("/", { method: "HEAD", cache: "no-store" })).ok;
    } catch {
      return false;
    }
  }

  /** @param {string} key @returns {number} the number that its acknowledgement will carry; 0 when not sent */
  press(key) {
    if (!this.socket || this.socket.readyState !== WebSocket.OPEN)
      return 0;
    this.sent += 1;
    this.socket.send(JSON.stringify({ n: this.sent, key }));
    return this.sent;
  }
}
