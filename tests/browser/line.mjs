// A line for a telephone, with people at its other end: the demo's, where the number says what they do; and
// callers.

import { spawn } from "node:child_process";
import { createSocket } from "node:dgram";
import { once } from "node:events";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

const SOURCE = new URL("../..", import.meta.url).pathname;
const SCENARIOS = join(SOURCE, "tests/phone/calls/sip/scenarios");
const PORTS = [20001, 31999]; // below those that the system gives to others

/** @param {number} port */
const isFree = (port) => new Promise((resolve) => {
  const socket = createSocket("udp4");
  socket.on("error", () => resolve(false));
  socket.bind(port, "127.0.0.1", () => socket.close(() => resolve(true)));
});

/** Where callers find the telephone. The port behind it is the engine's too. */
async function freePort() {
  for (;;) {
    const port = PORTS[0] + Math.floor(Math.random() * (PORTS[1] - PORTS[0]));
    if (await isFree(port) && await isFree(port + 1))
      return port;
  }
}

export class Line {
  /** Starts it and waits until it can be called. */
  async start() {
    this.port = await freePort();
    this.process = spawn("/usr/bin/python3", [join(SOURCE, "demo/line/serve")], { stdio: ["ignore", "pipe", "inherit"] });
    let said = "";
    for await (const chunk of this.process.stdout)
      said += chunk;
    this.settings = said.trim().split("\n").map((line) => line.split("="));
    return this;
  }

  /** For a telephone's configuration. */
  get config() {
    return `${this.settings.map(([item, value]) => `${item} = "${value}"`).join("\n")}\nsip-port = ${this.port}\nsip-audio = "none"\n`;
  }

  /** Somebody calls. @param {string} scenario @param {string} from `"Name" <sip:number@host>` */
  calls(scenario, from) {
    return new Caller(scenario, from, this.port);
  }

  async end() {
    if (this.process?.exitCode !== null)
      return;
    const ended = once(this.process, "exit");
    this.process.kill("SIGTERM");
    await ended;
  }
}

export class Caller {
  constructor(scenario, from, port) {
    this.folder = mkdtempSync(join(tmpdir(), "deskphone-caller-"));
    this.process = spawn("setpriv", ["--pdeathsig", "KILL", "/usr/bin/sipp", "-nostdin", "-sf", join(SCENARIOS, `${scenario}.xml`),
      "-i", "127.0.0.1", "-m", "1", "-timeout", "60", "-s", "100", "-key", "caller", from,
      "-trace_err", "-error_file", join(this.folder, "errors"), `127.0.0.1:${port}`], { stdio: "ignore" });
    this.ended = once(this.process, "exit").then(([code]) => code);
  }

  /** Waits until the call is over, as the scenario says: then this is "". */
  async outcome() {
    const code = await this.ended;
    const errors = code === 0 ? "" : `${code}: ${readFileSync(join(this.folder, "errors"), { encoding: "utf8", flag: "a+" })}`;
    rmSync(this.folder, { recursive: true, force: true });
    return errors;
  }

  async end() {
    this.process.kill("SIGKILL");
    await this.ended;
    rmSync(this.folder, { recursive: true, force: true });
  }
}
