// The corporate directory as a person with a browser meets it.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { FarDirectory, SilentDirectory, Slapd } from "./directory.mjs";
import { Telephone, expectText, openBrowser, openPage, violations } from "./telephone.mjs";

const LONG = "Wolfeschlegelsteinhausenbergerdorffwelchevoralternwarengewissenhaftschafers";
const PEOPLE = [
  { sn: "Adams", givenName: "Bob", telephoneNumber: "+49 30 23125 001", mobile: "+49 171 39200 01", homePhone: "+49 30 23125 002", o: "Example", title: "Engineer", mail: "bob.adams@a-rather-long-name-of-a-company.example" },
  { sn: "Miller", givenName: "Anna", telephoneNumber: "+49 30 23125 003", title: "Analyst" },
  { sn: "Miller", givenName: "John", mobile: "+49 171 39200 02" },
  { sn: "<b>Zed</b>", givenName: "<img src=x onerror=alert(1)>", telephoneNumber: "+49 30 23125 004" },
  { sn: "Øzgür", givenName: "王伟", telephoneNumber: "+49 30 23125 005" },
  { sn: "Øthman", givenName: "عبد الله", telephoneNumber: "+49 30 23125 006" },
  { sn: LONG, givenName: "Hubert", telephoneNumber: "+49 30 23125 007" },
  ...Array.from({ length: 30 }, (_, i) => ({ sn: `Smith ${String(i).padStart(2, "0")}`, givenName: "Sam" })),
];
const SHOWN_AT_MOST = 20;
const WHILE_SEARCHING = 20_000; // ms, which a search that nobody answers outlasts

let browser;
let slapd;
let telephone;
let page;

before(async () => {
  browser = await openBrowser();
  slapd = await new Slapd(PEOPLE).start();
});
after(async () => {
  await browser?.close();
  await slapd?.end();
});

const popup = (role) => page.locator(`#popup [role=${role}]`);
const row = (name) => page.getByRole("option", { name });
const selected = () => page.locator("[role=option][aria-selected=true]");
const field = (name) => page.getByRole("textbox", { name, exact: true });
const tab = (name) => page.getByRole("tab", { name });
const press = async (...keys) => {
  for (const key of keys)
    await page.keyboard.press(key);
};

async function openTelephone(config) {
  telephone = await new Telephone({ config }).start();
  page = await openPage(browser, telephone);
  await page.locator("[data-key=phonebook]").click();
  await press("F6");
  await tab("Directory").and(page.locator("[aria-selected=true]")).waitFor();
}
async function closeTelephone() {
  const { problems } = page;
  await page.context().close();
  await telephone.end();
  assert.deepEqual(problems, []);
}

async function search(text) {
  await popup("status").waitFor({ state: "detached" }); // meanwhile keys are ignored
  await press("Delete");
  await page.keyboard.type(text);
  await expectText(page.locator(".search .found"), text);
  await press("Enter");
}
async function find(name) {
  await search(name.split(",")[0]);
  await row(name).and(selected()).waitFor();
  await popup("status").waitFor({ state: "detached" });
}
async function openMenu() {
  await press("ArrowRight");
  await popup("menu").waitFor();
}
async function choose(name) {
  await popup("menu").getByRole("menuitem", { name, exact: true }).click();
}
async function openDetails(name) {
  await find(name);
  await openMenu();
  await choose("Details");
  await field("Last name").waitFor();
}
async function readMessage() {
  const text = await popup("alert").textContent();
  await press("Enter");
  await popup("alert").waitFor({ state: "detached" });
  return text;
}
async function chooseOption(name) {
  const options = page.getByRole("combobox", { name: "Options" });
  await options.click();
  await options.and(page.locator("[data-focus]")).waitFor();
  if (!(await options.textContent()).includes(name))
    await press("ArrowRight");
  await expectText(options, name);
  await press("Enter");
}
async function saveEntry() {
  await openMenu();
  await choose("Details");
  await field("Last name").waitFor();
  await chooseOption("Save to contacts");
}

for (const [variant, config] of [["with soft keys", ""], ["without soft keys", "soft-key-bar = false\n"]]) {
  describe(`the directory on a telephone ${variant}`, () => {
    beforeEach(() => openTelephone(`${slapd.config}${config}ldap-size-limit = ${SHOWN_AT_MOST}\n`));
    afterEach(closeTelephone);

    test("says how to search until something is found", async () => {
      const list = page.getByRole("listbox");
      const how = page.locator(".how");
      await expectText(how, "Type a last name");
      assert.equal(await list.getAttribute("aria-describedby"), await how.getAttribute("id"));
      await page.keyboard.type("mil");
      await expectText(page.locator(".search .found"), "mil");
      assert.equal(await how.isVisible(), true);
      await press("Enter");
      await row("Miller, Anna").and(selected()).waitFor();
      assert.equal(await how.isVisible(), false);
      assert.equal(await list.getAttribute("aria-describedby"), null);
    });

    test("finds people by their names, and says how many", async () => {
      await find("Miller, Anna");
      await row("Miller, John").waitFor();
      await expectText(page.locator("#live"), "Entries: 2");
      await find(`${LONG}, Hubert`);
      await expectText(page.locator("#live"), "Entries: 1");
    });

    test("finds people without OK when nothing is typed for a while", async () => {
      await page.keyboard.type("adams");
      await row("Adams, Bob").waitFor();
    });

    test("shows names of all scripts, and markup as the text that it is", async () => {
      await search("Ø");
      await row("Øzgür, 王伟").waitFor();
      await row("Øthman, عبد الله").waitFor();
      await search("<b");
      await row("<b>Zed</b>, <img src=x onerror=").waitFor();
      assert.equal(await page.locator("#base img, #base b").count(), 0);
    });

    test("says that nobody was found, and that too many were", async () => {
      await search("xyz");
      assert.match(await readMessage(), /No matches/);
      await search("smith");
      assert.match(await readMessage(), /Too many/);
      await row("Smith 00, Sam").waitFor();
    });

    test("shows whom it found in full, to be read only", async () => {
      await openDetails("Adams, Bob");
      for (const [name, value] of [["Last name", "Adams"], ["First name", "Bob"], ["Office", "+493023125001"], ["Office 2", ""]]) {
        assert.equal(await field(name).inputValue(), value);
        assert.equal(await field(name).getAttribute("readonly"), "true");
      }
      await page.keyboard.type("x");
      assert.equal(await field("Last name").inputValue(), "Adams");
    });

    test("shows a long value whole, and calls it no mistake", async () => {
      await openDetails("Adams, Bob");
      for (let i = 0; i < 10; ++i)
        await press("ArrowDown");
      await field("E-mail").waitFor();
      assert.equal(await field("E-mail").getAttribute("aria-invalid"), null);
      const shown = page.locator(".field", { has: field("E-mail") }).locator(".still");
      await expectText(shown, "a-rather-long-name-of-a-company.example");
      assert.equal(await shown.evaluate((element) => element.scrollWidth <= element.clientWidth), true);
    });

    test("offers to dial a number where it is read", async () => {
      await openDetails("Adams, Bob");
      const dial = page.locator(".field").getByRole("button", { name: "Dial" });
      assert.equal(await dial.count(), 0);
      await press("ArrowDown", "ArrowDown");
      await dial.click();
      assert.match(await readMessage(), /No line/);
    });

    test("saves whom it found once", async () => {
      await find("Adams, Bob");
      await saveEntry();
      assert.match(await readMessage(), /Saved to contacts/);
      await row("Adams, Bob").and(selected()).waitFor();
      await saveEntry();
      assert.match(await readMessage(), /already saved/);
      await press("F6");
      await tab("Contacts").and(page.locator("[aria-selected=true]")).waitFor();
      await row("Adams, Bob").waitFor();
    });

    test("searches by other fields", async () => {
      await find("Adams, Bob");
      await openMenu();
      await choose("Advanced search");
      await field("First name").click();
      await page.keyboard.type("jo*");
      await chooseOption("Find");
      await row("Miller, John").waitFor();
      await row("Adams, Bob").waitFor({ state: "detached" });
    });

    test("writes names as is chosen, and sets beside them what is chosen", async () => {
      await find("Miller, Anna");
      const openOptions = async (name) => {
        if (variant === "without soft keys") // there they are in the menu of the list's first row
          for (let at = await selected().textContent(); at !== "Options"; at = await selected().textContent()) {
            await press("ArrowUp");
            await selected().filter({ hasNotText: at }).waitFor();
          }
        await openMenu();
        await choose(name);
      };
      await openOptions("Name format");
      await row("First name, last name").click();
      await press("Escape");
      await row("Anna Miller").waitFor();
      await openOptions("Shown beside the name");
      await row("Job title").click();
      await press("Escape");
      await row("Anna Miller (Analyst)").waitFor();
    });

    test("has no accessibility violations on any screen", async () => {
      const expectNone = async (what) => assert.deepEqual(await violations(page), [], what);
      await expectNone("before a search");
      await find("Adams, Bob");
      await expectNone("whom it found");
      await openMenu();
      await expectNone("menu");
      await choose("Details");
      await field("Last name").waitFor();
      await expectNone("details");
      await press("ArrowDown", "ArrowDown");
      await page.locator(".field").getByRole("button", { name: "Dial" }).waitFor();
      await expectNone("details of a number");
      await page.emulateMedia({ colorScheme: "dark" });
      await expectNone("details in the dark");
      await chooseOption("Save to contacts");
      await popup("alert").waitFor();
      await expectNone("message in the dark");
      await readMessage();
      await openMenu();
      await choose("Advanced search");
      await field("First name").waitFor();
      await expectNone("advanced search in the dark");
      await page.setViewportSize({ width: 320, height: 700 });
      await expectNone("advanced search in a narrow window");
    });
  });
}

describe("a telephone without soft keys", () => {
  before(() => openTelephone(`${slapd.config}soft-key-bar = false\n`));
  after(closeTelephone);

  test("says which of somebody's numbers a choice dials", async () => {
    await find("Adams, Bob");
    await openMenu();
    for (const name of ["Office", "Mobile", "Private"])
      assert.equal(await popup("menu").getByRole("menuitem", { name: `Dial ${name}` }).count(), 1, name);
  });
});

describe("a directory far away", () => {
  let far;
  before(async () => {
    far = await new FarDirectory(slapd, 100).start();
    await openTelephone(far.config);
  });
  after(async () => {
    await closeTelephone();
    await far.end();
  });

  test("leaves an input method its place, wherever it was searched from", async () => {
    await openMenu();
    await choose("Advanced search");
    await field("First name").click();
    await page.keyboard.type("an*");
    await chooseOption("Find");
    await row("Miller, Anna").waitFor();
    await page.keyboard.insertText("Øz");
    await expectText(page.locator(".search .found"), "Øz");
    await press("Enter");
    await popup("status").waitFor();
    await row("Øzgür, 王伟").waitFor();
    await page.keyboard.insertText("Ø");
    await expectText(page.locator(".search .found"), /^Ø$/);
  });
});

describe("a directory that stays silent", () => {
  let silent;
  before(async () => { silent = await new SilentDirectory().start(); });
  after(() => silent.end());

  const searching = () => popup("status");

  describe("for long", () => {
    beforeEach(async () => {
      await openTelephone(`${silent.config}ldap-search-timeout = 60\n`);
      await search("mil");
      await searching().waitFor();
    });
    afterEach(closeTelephone);

    test("is said to be searched", async () => {
      await expectText(searching(), "Searching the directory…");
      await searching().and(page.locator(":focus")).waitFor();
      assert.deepEqual(await violations(page), []);
    });

    test("is said to be searched to who has the focus elsewhere", async () => {
      await press("Home");
      await page.locator(".idle").waitFor();
      await page.locator("[data-key=phonebook]").click();
      await page.getByRole("listbox").waitFor();
      await page.locator("[data-key=ok]").focus();
      await press("Enter");
      await expectText(page.locator("#live"), "Searching the directory…");
    });

    test("holds up no key: each is answered meanwhile", async (t) => {
      await page.evaluate(() => {
        const hint = document.getElementById("hint");
        const delays = globalThis.delays = [];
        let pressed = 0;
        document.addEventListener("keydown", () => { pressed = performance.now(); }, { capture: true });
        new MutationObserver(() => {
          if (!hint.textContent)
            return;
          delays.push(performance.now() - pressed);
          document.body.dataset.answered = String(delays.length);
        }).observe(hint, { childList: true });
      });
      const hint = page.locator("#hint");
      const keys = ["Enter", "ArrowDown", "ArrowRight", "x", "Escape", "F6"];
      for (const [i, key] of keys.entries()) {
        await press(key);
        await page.locator(`body[data-answered="${i + 1}"]`).waitFor();
        await expectText(hint, "Busy: key ignored");
      }
      const delays = (await page.evaluate(() => globalThis.delays)).sort((a, b) => a - b);
      t.diagnostic(`a key was answered in ${delays[delays.length / 2]} ms (median), ${delays.at(-1)} ms (longest)`);
      await searching().waitFor();
    });

    test("holds up nobody who goes to the idle screen", async () => {
      await press("Home");
      await page.locator(".idle").waitFor({ timeout: WHILE_SEARCHING });
      await page.locator("[data-key=phonebook]").click();
      await page.getByRole("listbox").waitFor({ timeout: WHILE_SEARCHING });
      assert.equal(await popup("alert").count(), 0);
      assert.equal(await page.locator(".search .found").textContent(), "mil");
      await press("Enter"); // and can be asked again
      await searching().waitFor();
    });

    test("holds up nobody who lifts the handset", async () => {
      await page.getByRole("button", { name: "Speaker" }).click();
      await popup("dialog").waitFor({ timeout: WHILE_SEARCHING });
      await expectText(popup("dialog"), "Please dial");
      await page.getByRole("button", { name: "Hang up" }).click();
      await popup("dialog").waitFor({ state: "detached", timeout: WHILE_SEARCHING });
    });
  });

  test("is given up in time, and no key that was pressed meanwhile acts on what follows", async () => {
    await openTelephone(`${silent.config}ldap-search-timeout = 2\n`);
    await search("mil");
    await searching().waitFor();
    await press("Enter", "x", "ArrowRight", "Escape");
    assert.match(await readMessage(), /cannot be reached/);
    assert.equal(await page.locator(".search .found").textContent(), "mil");
    assert.equal(await page.locator("#popup").isVisible(), false);
    await closeTelephone();
  });
});
