// The demonstration's PBX, for as long as the object lives; it ends with this process, even when that is killed.

import { spawn } from "node:child_process";

const PROGRAM = new URL("../../demo/pbx/serve", import.meta.url).pathname;

export class Pbx {
  /** @param {...string} options */
  constructor(...options) {
    this.options = options;
    this.port = 0; // a free one at first, and the same after that
  }

  /** Starts it and waits until it can be reached. */
  async start() {
    this.process = spawn("setpriv", ["--pdeathsig", "KILL", PROGRAM, "--port", String(this.port), ...this.options], { stdio: ["ignore", "pipe", "inherit"] });
    let said = "";
    this.port = await new Promise((resolve, reject) => {
      this.process.stdout.on("data", (chunk) => {
        said += chunk;
        const port = said.match(/pbx-server=127\.0\.0\.1:(\d+)\n/);
        if (port)
          resolve(Number(port[1]));
      });
      this.process.on("exit", (code) => reject(new Error(`the PBX ended with ${code}: ${said}`)));
    });
    return this;
  }

  /** What a telephone's configuration says of it. */
  get config() {
    return `pbx-server = "127.0.0.1:${this.port}"\npbx-device = "100"\n`;
  }

  async end() {
    if (this.process?.exitCode !== null || this.process.signalCode !== null)
      return;
    const ended = new Promise((resolve) => this.process.on("exit", resolve));
    this.process.kill("SIGKILL");
    await ended;
  }
}
