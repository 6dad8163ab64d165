// The phonebook of a PBX as a person with a browser meets it.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Pbx } from "./pbx.mjs";
import { Telephone, expectText, openBrowser, openPage, violations } from "./telephone.mjs";

const CONTACTS = [{ surname: "Adams", firstname: "Bob", work: "030 1111" }, { surname: "Miller", firstname: "Anna", work: "030 2222" }];
const SHOTS = process.env.SCREENSHOTS_DIR; // pictures to look at, if anybody wants to

let browser;
let pbx;
let telephone;
let page;

before(async () => {
  browser = await openBrowser();
});
after(async () => {
  await browser?.close();
});

const popup = (role) => page.locator(`#popup [role=${role}]`);
const tab = (name) => page.getByRole("tab", { name });
const current = (name) => tab(name).and(page.locator("[aria-selected=true]"));
const line = (text) => page.getByRole("option", { name: text, exact: true });
const press = async (...keys) => {
  for (const key of keys)
    await page.keyboard.press(key);
};
const takePicture = async (name) => {
  if (SHOTS)
    await page.screenshot({ path: `${SHOTS}/${name}.png` });
};

async function open(...options) {
  pbx = await new Pbx(...options).start();
  telephone = await new Telephone({ contacts: CONTACTS, config: pbx.config }).start();
  page = await openPage(browser, telephone);
  await page.locator("[data-key=phonebook]").click();
  await tab("System").waitFor();
}
async function close() {
  const { problems } = page;
  await page.context().close();
  await telephone.end();
  await pbx.end();
  assert.deepEqual(problems, []);
}
async function enter() {
  await press("F6", "F6");
  await line("PBX phonebook").waitFor();
}

describe("the phonebook of a PBX", () => {
  beforeEach(() => open());
  afterEach(close);

  test("shows its lines, and takes keys and digits", async () => {
    await enter();
    await line("> Abel, Nora").waitFor();
    assert.equal(await page.locator("#mode").textContent(), ""); // digits are the PBX's
    await takePicture("pbx");
    await press("ArrowDown");
    await line("> Baumann, Timo").waitFor();
    await page.locator("[data-key='5']").click(); // J, K or L
    await line("> Jansen, Kai").waitFor();
    await press("Enter");
    await line("Extension 2110").waitFor();
    await takePicture("pbx-entry");
    await press("Delete");
    await line("> Jansen, Kai").waitFor();
  });

  test("keeps nobody out", async () => {
    assert.deepEqual(await violations(page), []);
    await enter();
    assert.deepEqual(await violations(page), []);
  });

  test("is left with the telephone's tab key, and with Back", async () => {
    await enter();
    await press("F6");
    await current("Contacts").waitFor();
    await expectText(page.locator("[role=option][aria-selected=true]"), "Adams");
    await enter();
    await press("Escape");
    await page.locator(".idle").waitFor();
    await page.locator("[data-key=phonebook]").click();
    await line("PBX phonebook").waitFor();
  });

  test("leaves none of its lines beside the contacts, also in a call", async () => {
    await page.getByRole("option", { name: "Adams, Bob" }).waitFor();
    await press("Enter");
    await expectText(page.locator("#calls .state"), "Connected");
    await enter();
    await press("F6");
    await current("Contacts").waitFor();
    await page.locator("#window").waitFor({ state: "hidden" });
  });

  test("goes when it is switched off, and comes back", async () => {
    await enter();
    await press("ArrowUp");
    await line("> Switch off for 10 s").waitFor();
    await press("Enter");
    await page.locator(".idle").waitFor();
    await page.locator("[data-key=phonebook]").click();
    await current("Directory").waitFor(); // the tab that was passed on the way
    assert.equal(await tab("System").count(), 0);
    await tab("System").waitFor();
    await press("F6");
    await line("PBX phonebook").waitFor();
  });

  test("goes with its PBX over whatever is on the screen, and comes back with it", async () => {
    await enter();
    await pbx.end();
    await page.locator(".idle").waitFor();
    await pbx.start();
    await page.locator("[data-key=phonebook]").click();
    await tab("System").waitFor();
    await press("ArrowRight");
    await popup("menu").waitFor();
    await pbx.end();
    await tab("System").waitFor({ state: "detached" });
    await popup("menu").waitFor();
    await takePicture("pbx-gone");
    assert.deepEqual(await violations(page), []);
  });
});

test("a PBX that changes its display a thousand times a second shows its last change and holds up no key", async (t) => {
  await open("--fail", "flood");
  try {
    await page.evaluate(() => {
      globalThis.pauses = [];
      let last = performance.now();
      const tick = (now) => {
        globalThis.pauses.push(now - last);
        last = now;
        requestAnimationFrame(tick);
      };
      requestAnimationFrame(tick);
    });
    await enter();
    await page.evaluate(() => { globalThis.pauses = []; });
    await line("update 1000 of 1000").waitFor();
    const pauses = (await page.evaluate(() => globalThis.pauses)).sort((a, b) => a - b);
    t.diagnostic(`pauses of the page: median ${pauses[Math.floor(pauses.length / 2)]} ms, longest ${pauses.at(-1)} ms`);
    await takePicture("pbx-flood");
    await press("F6");
    await current("Contacts").waitFor();
    await enter(); // and once more
    await press("ArrowDown"); // is obeyed meanwhile
    await line("> Baumann, Timo").waitFor();
  } finally {
    await close();
  }
});

test("a PBX that opens no phonebook says so", async () => {
  await open("--fail", "refuse");
  try {
    await press("F6", "F6");
    await popup("alert").waitFor();
    await takePicture("pbx-refused");
    assert.deepEqual(await violations(page), []);
    await press("F6");
    await popup("alert").waitFor({ state: "detached" });
    await current("Contacts").waitFor();
  } finally {
    await close();
  }
});
