// A telephone of its own for a test, and its page in a real browser.

import { spawn, spawnSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const BIN = process.env.BIN_DIR ?? new URL("../../build/dev/bin", import.meta.url).pathname;
const PROGRAM = join(BIN, "deskphone");
const AXE = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
const ADDRESS = /http:\/\/127\.0\.0\.1:\d+\/#[0-9a-f]{32}/;

/** @param {{surname: string, firstname?: string, work?: string, cell?: string}[]} contacts */
function vcards(contacts) {
  return contacts.map(({ surname, firstname = "", work, cell }) => [
    "BEGIN:VCARD", "VERSION:3.0", `N:${surname};${firstname};;;`, `FN:${firstname} ${surname}`,
    ...(work ? [`TEL;TYPE=WORK,VOICE:${work}`] : []),
    ...(cell ? [`TEL;TYPE=CELL:${cell}`] : []),
    "END:VCARD", "",
  ].join("\r\n")).join("");
}

export class Telephone {
  /** @param {{contacts?: object[], config?: string}} [options] */
  constructor({ contacts = [], config = "" } = {}) {
    this.profile = mkdtempSync(join(tmpdir(), "deskphone-browser-"));
    writeFileSync(join(this.profile, "config.toml"), `language = "en"\n${config}`);
    if (contacts.length > 0) {
      const file = join(this.profile, "contacts.vcf");
      writeFileSync(file, vcards(contacts));
      this.run("import", file);
    }
  }

  /** @param {...string} words */
  run(...words) {
    const done = spawnSync(PROGRAM, [...words, "--profile", this.profile], { encoding: "utf8" });
    if (done.status !== 0)
      throw new Error(`deskphone ${words.join(" ")}: ${done.status} ${done.stdout} ${done.stderr}`);
    return done.stdout;
  }

  /** Starts it and waits until it has printed its page's address. */
  async start() {
    this.process = spawn(PROGRAM, ["--profile", this.profile, "--no-open"], { stdio: ["pipe", "pipe", "pipe"] });
    let printed = "";
    this.address = await new Promise((resolve, reject) => {
      const read = (chunk) => {
        printed += chunk;
        const address = printed.match(ADDRESS);
        if (address)
          resolve(address[0]);
      };
      this.process.stdout.on("data", read);
      this.process.stderr.on("data", read);
      this.process.on("exit", (code) => reject(new Error(`deskphone ended with ${code}: ${printed}`)));
    });
    return this;
  }

  async stop() {
    if (!this.process || this.process.exitCode !== null || this.process.signalCode !== null)
      return;
    const ended = new Promise((resolve) => this.process.on("exit", resolve));
    this.process.kill("SIGTERM");
    await ended;
  }

  async end() {
    await this.stop();
    rmSync(this.profile, { recursive: true, force: true });
  }
}

export async function openBrowser() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync"],
  });
}

/** The page, connected, with what goes wrong in it kept in `page.problems`. */
export async function openPage(browser, telephone, options = {}) {
  const context = await browser.newContext({ viewport: { width: 520, height: 1000 }, ...options });
  const page = await context.newPage();
  page.problems = [];
  page.on("pageerror", (error) => page.problems.push(String(error)));
  page.on("console", (message) => message.type() === "error" && page.problems.push(message.text()));
  await page.goto(telephone.address);
  await page.locator("body[data-state=connected]").waitFor();
  return page;
}

/**
 * Waits for what an assertion would race with. Always by a locator: a condition that the page itself
 * evaluates again and again is refused by the page's policy.
 */
export async function expectText(locator, text) {
  await locator.filter({ hasText: text }).waitFor();
}

/**
 * Clicks twice as a person does: the second time on what the first click has brought up meanwhile.
 * @param {import("playwright-core").Page} page
 * @param {import("playwright-core").Locator} at
 * @param {import("playwright-core").Locator} until what the first click brings up
 */
export async function doubleClick(page, at, until) {
  const { x, y, width, height } = await at.boundingBox();
  await page.mouse.move(x + width / 2, y + height / 2);
  await page.mouse.down({ clickCount: 1 });
  await page.mouse.up({ clickCount: 1 });
  await until.waitFor();
  await page.mouse.down({ clickCount: 2 });
  await page.mouse.up({ clickCount: 2 });
}

/** What keeps some people from using what the page shows now. */
export async function violations(page) {
  await page.evaluate(AXE);
  const { violations: found } = await page.evaluate(() => globalThis.axe.run(document, { resultTypes: ["violations"] }));
  return found.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html).join(" ")}`);
}
