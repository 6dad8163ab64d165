// The ring of this page, for whoever has the telephone without a loudspeaker or in another room. It is off
// until it is asked for; the browser remembers that.

import { byId, set } from "./dom.js";

const PAUSE = 3000; // ms from ring to ring
const TONES = [[0, 660], [0.22, 528]]; // s after its beginning, Hz
const LENGTH = 0.2; // s
const EDGE = 0.02; // s, without which a tone clicks
const LOUDNESS = 0.1;

export class Ring {
  constructor() {
    this.button = byId("ring");
    this.isOn = localStorage.getItem("ring") === "on";
    this.isNeeded = false;
    this.timer = 0;
    /** @type {AudioContext | null} */
    this.sound = null;
    set(this.button, { "aria-pressed": String(this.isOn) });
    this.button.addEventListener("click", () => this.turn(!this.isOn));
    // A browser lets a page be heard only when somebody has touched it.
    for (const touch of ["pointerdown", "keydown"])
      addEventListener(touch, () => this.isOn && this.sound === null && this.wake());
  }

  /** @param {boolean} on */
  async turn(on) {
    this.isOn = on;
    localStorage.setItem("ring", on ? "on" : "off");
    set(this.button, { "aria-pressed": String(on) });
    if (on)
      await this.wake();
    this.follow();
    if (on && !this.isNeeded)
      this.play(); // this is how it sounds
  }

  /** Whether a call rings. @param {boolean} isNeeded */
  show(isNeeded) {
    if (this.isNeeded === isNeeded)
      return;
    this.isNeeded = isNeeded;
    this.follow();
  }

  async wake() {
    this.sound ??= new AudioContext();
    await this.sound.resume();
  }

  follow() {
    clearInterval(this.timer);
    if (!this.isOn || !this.isNeeded)
      return;
    this.play();
    this.timer = setInterval(() => this.play(), PAUSE);
  }

  play() {
    if (this.sound?.state === "running")
      for (const [after, pitch] of TONES)
        playTone(this.sound, this.sound.currentTime + (after ?? 0), pitch ?? 0);
  }
}

/** @param {AudioContext} sound @param {number} at s @param {number} pitch Hz */
function playTone(sound, at, pitch) {
  const tone = sound.createOscillator();
  const loudness = sound.createGain();
  tone.frequency.value = pitch;
  loudness.gain.setValueAtTime(0, at);
  loudness.gain.linearRampToValueAtTime(LOUDNESS, at + EDGE);
  loudness.gain.setValueAtTime(LOUDNESS, at + LENGTH - EDGE);
  loudness.gain.linearRampToValueAtTime(0, at + LENGTH);
  tone.connect(loudness).connect(sound.destination);
  tone.start(at);
  tone.stop(at + LENGTH);
}
