// Corporate directories for a test: a real server on a free port of this machine, and one that never answers.

import { spawn, spawnSync } from "node:child_process";
import { copyFileSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { connect, createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";

const BASE = "dc=example,dc=com";
const ATTEMPTS = 5; // somebody else may take the port that was free

/** What a telephone's configuration says of the directory on a port. @param {number} port */
const configurationFor = (port) =>
  `ldap-servers = ["ldap://127.0.0.1:${port}"]\nldap-base = "${BASE}"\nldap-security = "none"\n`;

/** @param {import("node:net").Server} server @returns {Promise<number>} its port */
const listen = (server) => new Promise((resolve) => {
  server.listen(0, "127.0.0.1", () => resolve(/** @type {import("node:net").AddressInfo} */ (server.address()).port));
});

async function freePort() {
  const server = createServer();
  const port = await listen(server);
  await new Promise((resolve) => server.close(resolve));
  return port;
}

/** @param {Record<string, string>[]} people attributes of each; a surname is "sn" */
function ldif(people) {
  const line = (name, value) => `${name}:: ${Buffer.from(value).toString("base64")}`;
  return [
    `dn: ${BASE}\nobjectClass: organization\nobjectClass: dcObject\no: Example\ndc: example\n`,
    ...people.map((person, i) => [
      `dn: employeeNumber=${i},${BASE}`, "objectClass: inetOrgPerson", `employeeNumber: ${i}`, line("cn", person.sn),
      ...Object.entries(person).map(([name, value]) => line(name, value)), "",
    ].join("\n")),
  ].join("\n");
}

// Debian's slapd, for as long as the object lives; it ends with this process, even when that is killed.
export class Slapd {
  /** @param {Record<string, string>[]} people */
  constructor(people) {
    this.folder = mkdtempSync(join(tmpdir(), "deskphone-directory-"));
    mkdirSync(join(this.folder, "database"));
    // The system may confine the server where it is installed, and let it see no folder of ours.
    copyFileSync("/usr/sbin/slapd", join(this.folder, "slapd"));
    writeFileSync(join(this.folder, "people.ldif"), ldif(people));
    writeFileSync(join(this.folder, "slapd.conf"), [
      ...["core", "cosine", "inetorgperson"].map((name) => `include /etc/ldap/schema/${name}.schema`),
      "modulepath /usr/lib/ldap", "moduleload back_mdb", "sizelimit unlimited",
      "database mdb", `suffix ${BASE}`, "directory database", "",
    ].join("\n"));
    const loaded = spawnSync("./slapd", ["-T", "add", "-q", "-f", "slapd.conf", "-l", "people.ldif"], { cwd: this.folder, encoding: "utf8" });
    if (loaded.status !== 0)
      throw new Error(`slapd takes no people: ${loaded.error ?? loaded.stderr}`);
  }

  /** Starts it and waits until it answers. */
  async start() {
    let said = "";
    for (let attempt = 0; attempt < ATTEMPTS; ++attempt) {
      this.port = await freePort();
      said = await this.startOn(this.port);
      if (said === "")
        return this;
    }
    throw new Error(`slapd does not start: ${said}`);
  }

  /** @param {number} port @returns {Promise<string>} what it said if it ended at once */
  startOn(port) {
    this.process = spawn("setpriv", ["--pdeathsig", "KILL", "./slapd", "-d", "none", "-f", "slapd.conf", "-h", `ldap://127.0.0.1:${port}/`], { cwd: this.folder, stdio: ["ignore", "ignore", "pipe"] });
    let said = "";
    return new Promise((resolve) => {
      this.process.stderr.on("data", (chunk) => {
        said += chunk;
        if (said.includes("slapd starting"))
          resolve("");
      });
      this.process.on("close", () => resolve(said || "nothing was said"));
    });
  }

  get config() {
    return configurationFor(this.port);
  }

  async end() {
    if (this.process?.exitCode === null) {
      const ended = new Promise((resolve) => this.process.on("exit", resolve));
      this.process.kill("SIGKILL");
      await ended;
    }
    rmSync(this.folder, { recursive: true, force: true });
  }
}

// A server on a port of its own in a directory's place.
class StandIn {
  /** @param {(socket: import("node:net").Socket) => void} serve */
  constructor(serve) {
    /** @type {Set<import("node:net").Socket>} */
    this.sockets = new Set();
    this.server = createServer((socket) => {
      this.sockets.add(socket);
      socket.on("error", () => {}); // the telephone hangs up as it likes
      socket.on("close", () => this.sockets.delete(socket));
      serve(socket);
    });
  }

  async start() {
    this.port = await listen(this.server);
    return this;
  }

  get config() {
    return configurationFor(this.port);
  }

  async end() {
    for (const socket of this.sockets)
      socket.destroy();
    await new Promise((resolve) => this.server.close(resolve));
  }
}

// A directory's way is long: what it says takes some time.
export class FarDirectory extends StandIn {
  /** @param {Slapd} directory @param {number} delay in ms */
  constructor(directory, delay) {
    super((socket) => {
      const there = connect(directory.port, "127.0.0.1");
      there.on("error", () => {}).on("close", () => socket.destroy());
      socket.on("close", () => there.destroy());
      socket.pipe(there);
      there.on("data", (said) => setTimeout(() => socket.write(said), delay));
    });
  }
}

// Accepts, and never says a word.
export class SilentDirectory extends StandIn {
  constructor() {
    super((socket) => socket.resume());
  }
}
