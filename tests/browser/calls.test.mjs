// Real calls, as a person with a browser meets them.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Line } from "./line.mjs";
import { Telephone, expectText, openBrowser, openPage, violations } from "./telephone.mjs";

const ANNA = "+49 30 2312 5010";
const CONTACTS = [
  { surname: "Busy", firstname: "Bob", work: "486" },
  { surname: "Miller", firstname: "Anna", work: ANNA },
  { surname: "Colleague", firstname: "Cora", work: "201" },
  { surname: "Nobody", work: "404" },
  { surname: "Refuses", firstname: "Rita", work: "603" },
  { surname: "Short", firstname: "Sam", work: "302" },
  { surname: "Zander", firstname: "Max" },
];
const fromAnna = '<sip:+493023125010@127.0.0.1>';

let browser;
let line;
let telephone;
let page;

before(async () => {
  browser = await openBrowser();
  line = await new Line().start();
});
after(async () => {
  await browser?.close();
  await line?.end();
});

const bar = () => page.getByRole("region", { name: "Calls" });
const call = (name) => bar().getByRole("group", { name });
const state = (name) => call(name).locator(".state");
const row = (name) => page.getByRole("option", { name });
const dialler = () => page.locator("#popup[data-role=dialler]");
const press = async (...keys) => {
  for (const key of keys)
    await page.keyboard.press(key);
};
const isGone = (name) => call(name).waitFor({ state: "detached" });

async function openPhonebook() {
  await page.locator("[data-key=phonebook]").click();
  await row("Busy, Bob").waitFor();
}
async function select(name) {
  await page.keyboard.type(name.slice(0, 3).toLowerCase());
  await row(name).and(page.locator("[aria-selected=true]")).waitFor();
}

describe("a telephone with a line", () => {
  beforeEach(async () => {
    telephone = await new Telephone({ contacts: CONTACTS, config: line.config }).start();
    page = await openPage(browser, telephone);
    await expectText(page.locator(".idle"), "Line ready");
  });
  afterEach(async () => {
    const { problems } = page;
    await page.context().close();
    await telephone.end();
    assert.deepEqual(problems, []);
  });

  test("says who calls, and takes the call with a key of the keyboard", async () => {
    const caller = line.calls("calls", fromAnna);
    await expectText(state("Miller, Anna"), "Incoming call");
    assert.equal(await call("Miller, Anna").locator(".number").textContent(), "030 23125010");
    assert.equal(await page.title(), "Miller, Anna: Incoming call");
    assert.equal(await page.locator("#lamp").getAttribute("data-lamp"), "ringing");
    await expectText(page.locator("#callslive"), "Miller, Anna, 030 23125010, Incoming call");
    assert.deepEqual(await violations(page), []);

    await press("Shift+Tab", "Shift+Tab");
    await call("Miller, Anna").getByRole("button", { name: "Answer" }).and(page.locator(":focus")).waitFor();
    await press("Enter");
    await expectText(state("Miller, Anna"), "Connected");
    assert.equal(await page.locator("#lamp").getAttribute("data-lamp"), "connected");
    await expectText(call("Miller, Anna").getByRole("timer"), "0:01");
    assert.deepEqual(await violations(page), []);

    await call("Miller, Anna").getByRole("button", { name: "Hang up" }).and(page.locator(":focus")).waitFor();
    await press("Enter");
    await isGone("Miller, Anna");
    assert.equal(await caller.outcome(), "");
    assert.equal(await page.title(), "Deskbook");
  });

  test("takes a call with its speaker key, and ends it with it", async () => {
    const caller = line.calls("calls", '"Reception" <sip:4711@127.0.0.1>');
    await expectText(state("Reception"), "Incoming call");
    await page.locator("[data-key=hook]").click();
    await expectText(state("Reception"), "Connected");
    await page.locator("[data-key=hook]").click();
    await isGone("Reception");
    assert.equal(await caller.outcome(), "");
  });

  test("rejects a call, and stays where it was", async () => {
    await openPhonebook();
    const caller = line.calls("calls-in-vain", fromAnna);
    await call("Miller, Anna").getByRole("button", { name: "Reject" }).click();
    await isGone("Miller, Anna");
    assert.equal(await caller.outcome(), "");
    await row("Busy, Bob").waitFor();
  });

  test("calls a contact, counts the time, and hangs up", async () => {
    await openPhonebook();
    await select("Miller, Anna");
    await press("Enter");
    await expectText(state("Miller, Anna"), "Connected");
    await expectText(call("Miller, Anna").getByRole("timer"), "0:01");
    await page.locator("[data-key=hangup]").click();
    await isGone("Miller, Anna");
    await row("Miller, Anna").and(page.locator("[aria-selected=true]")).waitFor();
  });

  test("sees that the other one hangs up", async () => {
    await openPhonebook();
    await select("Short, Sam");
    await press("Enter");
    await expectText(state("Short, Sam"), "Connected");
    await isGone("Short, Sam");
  });

  test("shows no call any more when nobody can say how it stands", async () => {
    await openPhonebook();
    await select("Miller, Anna");
    await press("Enter");
    await expectText(state("Miller, Anna"), "Connected");
    telephone.process.kill("SIGKILL");
    await page.locator("#cover").waitFor();
    await isGone("Miller, Anna");
    assert.equal(await page.title(), "Deskbook");
    assert.equal(await page.locator("#lamp").getAttribute("data-lamp"), null);
    page.problems.length = 0; // the browser reports each refused connection
  });

  test("calls through the dialler, which closes when somebody answers", async () => {
    await openPhonebook();
    await select("Miller, Anna");
    await page.locator("[data-key=hook]").click();
    await dialler().waitFor();
    await expectText(dialler(), "Miller, Anna");
    assert.deepEqual(await violations(page), []);
    await page.getByRole("button", { name: "Dial", exact: true }).click();
    await expectText(state("Miller, Anna"), "Connected");
    await dialler().waitFor({ state: "hidden" });
    await page.locator("[data-key=hook]").click();
    await isGone("Miller, Anna");
  });

  test("picks up the call that rings at a colleague's, from the menu", async () => {
    await openPhonebook();
    await select("Colleague, Cora");
    await page.locator("[data-key=menu]").click();
    await page.getByRole("menuitem", { name: "Pick up call" }).click();
    await expectText(state("Colleague, Cora"), "Connected");
    await page.locator("[data-key=hangup]").click();
    await isGone("Colleague, Cora");
  });

  test("redials who was called last, where nobody is selected who could be called", async () => {
    await openPhonebook();
    await select("Miller, Anna");
    await press("Enter");
    await expectText(state("Miller, Anna"), "Connected");
    await page.locator("[data-key=hangup]").click();
    await isGone("Miller, Anna");
    await select("Zander, Max");
    await page.locator("[data-key=hook]").click();
    await dialler().waitFor();
    await page.getByRole("button", { name: `Redial ${ANNA}` }).click();
    await expectText(state("Miller, Anna"), "Connected");
    await page.locator("[data-key=hook]").click();
    await isGone("Miller, Anna");
  });

  test("says that the line is in use, and leaves the call that uses it alone", async () => {
    await openPhonebook();
    await select("Miller, Anna");
    await press("Enter");
    await expectText(state("Miller, Anna"), "Connected");
    await press("Delete");
    await select("Busy, Bob");
    await press("Enter");
    await expectText(state("Busy, Bob"), "Line in use");
    await isGone("Busy, Bob");
    await expectText(state("Miller, Anna"), "Connected");
  });

  for (const [name, why] of [["Busy, Bob", "Busy"], ["Nobody", "No such number"], ["Refuses, Rita", "Declined"]])
    test(`says why a call has failed: ${why}`, async () => {
      await openPhonebook();
      await select(name);
      await press("Enter");
      await expectText(state(name), why);
      assert.equal(await page.locator("#popup").isVisible(), false);
      assert.equal(await call(name).getByRole("button").count(), 0);
      await expectText(page.locator("#callslive"), why);
      assert.deepEqual(await violations(page), []);
      await isGone(name);
    });
});
