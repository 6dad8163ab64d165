// The telephone as a person with a browser meets it.

import assert from "node:assert/strict";
import { request } from "node:http";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Telephone, doubleClick, expectText, openBrowser, openPage, violations } from "./telephone.mjs";

const PEOPLE = [
  { surname: "Adams", firstname: "Alice", work: "+49 30 23125 001" },
  { surname: "Baker", firstname: "Bob", cell: "+49 30 23125 002" },
  { surname: "Miller", firstname: "Mia", work: "+49 30 23125 003" },
  { surname: "Müller", firstname: "Jörg", work: "+49 30 23125 004" },
  { surname: "<b>Zed</b>", firstname: "<img src=x onerror=alert(1)>" },
  ...Array.from({ length: 40 }, (_, i) => ({ surname: `Smith ${String(i).padStart(2, "0")}` })),
];

let browser;
let telephone;
let page;

before(async () => { browser = await openBrowser(); });
after(async () => { await browser.close(); });

const selected = () => page.locator("[role=option][aria-selected=true]");
const popup = (role) => page.locator(`#popup [role=${role}]`);
const row = (name) => page.getByRole("option", { name });

async function openPhonebook() {
  await page.locator("[data-key=phonebook]").click();
  await page.getByRole("listbox").waitFor();
}

async function expectNoViolations(what) {
  assert.deepEqual(await violations(page), [], what);
}

describe("the page", () => {
  beforeEach(async () => {
    telephone = await new Telephone({ contacts: PEOPLE }).start();
    page = await openPage(browser, telephone);
  });
  afterEach(async () => {
    assert.deepEqual(page.problems, []);
    await page.context().close();
    await telephone.end();
  });

  test("opens the phonebook and finds a name by typing", async () => {
    await openPhonebook();
    await page.keyboard.type("mi");
    await row("Miller, Mia").and(selected()).waitFor();
    assert.equal(await page.locator(".search .found").textContent(), "mi");
  });

  test("tells a screen reader where in how many rows it is", async () => {
    await openPhonebook();
    assert.equal(await selected().getAttribute("aria-setsize"), String(PEOPLE.length));
    const list = page.getByRole("listbox");
    assert.equal(await list.getAttribute("aria-activedescendant"), await selected().getAttribute("id"));
    assert.equal(await list.evaluate((element) => document.activeElement === element), true);
  });

  test("scrolls through the rows with the arrows and only ever holds the visible ones", async () => {
    await openPhonebook();
    for (let i = 0; i < 20; ++i)
      await page.keyboard.press("ArrowDown");
    await page.locator("[role=option][aria-selected=true][aria-posinset='21']").waitFor();
    assert.ok(await page.getByRole("option").count() < 15);
  });

  test("loses no key and keeps its connection however fast keys are pressed", async () => {
    await openPhonebook();
    for (const [key, position] of [["ArrowDown", PEOPLE.length], ["ArrowUp", 1]]) {
      for (let i = 1; i < PEOPLE.length; ++i)
        await page.keyboard.press(key);
      await page.locator(`[role=option][aria-selected=true][aria-posinset='${position}']`).waitFor();
    }
    await page.keyboard.press("ArrowUp");
    await page.locator("[role=tab]:focus").waitFor();
    await page.locator("body[data-state=connected]").waitFor();
  });

  test("enters letters by repeated presses of the digit keys", async () => {
    await openPhonebook();
    const six = page.locator("#keypad button[data-key='6']");
    await six.click();
    await page.locator("#keypad button[data-key='4']").click({ clickCount: 3 });
    await page.locator("#keypad button[data-key='5']").click();
    await row("Miller, Mia").and(selected()).waitFor();
  });

  test("shows markup in names as the text that it is", async () => {
    await openPhonebook();
    await row("<b>Zed</b>, <img src=x onerror=").waitFor();
    assert.equal(await page.locator("#base img, #base b").count(), 0);
  });

  test("opens the menu with the right arrow and leaves it with Escape", async () => {
    await openPhonebook();
    await page.keyboard.type("ba");
    await row("Baker, Bob").and(selected()).waitFor();
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    await page.getByRole("menuitem", { name: "Details" }).waitFor();
    await page.keyboard.press("Escape");
    await popup("menu").waitFor({ state: "detached" });
    await row("Baker, Bob").and(selected()).waitFor();
  });

  test("says that there is no line, and the message goes by a key", async () => {
    await openPhonebook();
    await page.keyboard.type("ad");
    await row("Adams, Alice").and(selected()).waitFor();
    await page.keyboard.press("Enter");
    await popup("alert").waitFor();
    assert.match(await popup("alert").textContent(), /No line/);
    await page.keyboard.press("ArrowDown");
    await popup("alert").waitFor({ state: "detached" });
    await row("Adams, Alice").and(selected()).waitFor(); // the key only closed the message
  });

  test("says that there is no line, and the message goes by itself", async () => {
    await openPhonebook();
    await page.keyboard.type("ad");
    await row("Adams, Alice").and(selected()).waitFor();
    await page.keyboard.press("Enter");
    await popup("alert").waitFor();
    await popup("alert").waitFor({ state: "detached" });
  });

  test("deletes a contact after asking", async () => {
    await openPhonebook();
    await page.keyboard.type("ba");
    await row("Baker, Bob").and(selected()).waitFor();
    await page.keyboard.press("ArrowRight");
    await page.getByRole("menuitem", { name: "Delete", exact: true }).click();
    await popup("alertdialog").waitFor();
    assert.match(await popup("alertdialog").textContent(), /Baker, Bob/);
    await page.locator("#soft button").first().click();
    await popup("alert").waitFor();
    await page.keyboard.press("Enter");
    await popup("alert").waitFor({ state: "detached" });
    await row("Baker, Bob").waitFor({ state: "detached" });
  });

  test("changes the tab with F6, and the browser's Tab key moves the focus", async () => {
    await openPhonebook();
    await page.keyboard.press("F6");
    await page.locator("[role=tab][aria-selected=true]", { hasNotText: /^$/ }).nth(0).waitFor();
    await page.locator("[role=tab]:nth-child(2)[aria-selected=true]").waitFor();
    const before = await page.evaluate(() => document.activeElement?.outerHTML);
    await page.keyboard.press("Tab");
    assert.notEqual(await page.evaluate(() => document.activeElement?.outerHTML), before);
  });

  test("returns to the idle screen and back to the same place", async () => {
    await openPhonebook();
    await page.keyboard.type("mi");
    await row("Miller, Mia").and(selected()).waitFor();
    await page.keyboard.press("Home");
    await page.locator(".idle").waitFor();
    await openPhonebook();
    await row("Miller, Mia").and(selected()).waitFor();
  });

  test("speaks the language it is switched to while it is open", async () => {
    await openPhonebook();
    telephone.run("config", "set", "language", "de");
    await page.locator("html[lang=de]").waitFor();
    await page.getByRole("button", { name: "Auflegen" }).waitFor();
  });

  test("has no accessibility violations on any screen", async () => {
    await expectNoViolations("idle");
    await openPhonebook();
    await expectNoViolations("list");
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    await expectNoViolations("menu");
    await page.getByRole("menuitem", { name: "Delete", exact: true }).click();
    await popup("alertdialog").waitFor();
    await expectNoViolations("question");
    await page.keyboard.press("Escape");
    await popup("menu").waitFor();
    await page.keyboard.press("Escape");
    await page.keyboard.press("Enter");
    await popup("alert").waitFor();
    await expectNoViolations("message");
    await page.emulateMedia({ colorScheme: "dark" });
    await expectNoViolations("message in the dark");
    await popup("alert").waitFor({ state: "detached" });
    await expectNoViolations("list in the dark");
    await page.getByRole("button", { name: "Speaker" }).click();
    await popup("dialog").waitFor();
    await expectNoViolations("dialler");
  });

  test("fits a narrow window at 200 % text", async () => {
    await openPhonebook();
    await page.setViewportSize({ width: 640, height: 900 });
    await page.addStyleTag({ content: "html { font-size: 200% }" }).catch(() => page.evaluate(() => { document.documentElement.style.fontSize = "200%"; }));
    page.problems.length = 0; // the policy rightly refuses a style of ours
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
  });

  test("shows its screen and the soft keys at once in a low window, with the selected row", async () => {
    await page.setViewportSize({ width: 740, height: 360 });
    await openPhonebook();
    for (let i = 0; i < 6; ++i)
      await page.keyboard.press("ArrowDown");
    const last = page.locator("[aria-selected=true][aria-posinset='7']");
    await last.waitFor();
    await page.evaluate(() => scrollTo(0, 0));
    const bottomOf = async (shown) => { const { y, height } = await shown.boundingBox(); return y + height; };
    assert.ok(await bottomOf(page.locator("#soft")) <= 360);
    assert.ok(await bottomOf(last) <= await bottomOf(page.locator("#rows")));
    await expectNoViolations("a low window");
    await page.locator("#rows").hover();
    await page.mouse.wheel(0, 40);
    await page.locator("[aria-selected=true][aria-posinset='8']").waitFor();
  });

  test("overlaps no choices and hides no menu behind its heading where all of it is large", async () => {
    await openPhonebook();
    await page.setViewportSize({ width: 320, height: 600 });
    await page.evaluate(() => { document.documentElement.style.fontSize = "200%"; });
    await page.keyboard.type("<");
    await row("<b>Zed</b>").and(selected()).waitFor();
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    const heading = await page.locator(".head").boundingBox();
    const choices = await popup("menu").boundingBox();
    assert.ok(heading.height < choices.height, `${heading.height} ${choices.height}`);
    await page.getByRole("menuitem", { name: "Name format", exact: true }).click();
    await page.locator(".legend").waitFor();
    const overflows = await page.locator(".list li, .legend").evaluateAll((shown) =>
      shown.filter((part) => part.scrollHeight > part.clientHeight || part.scrollWidth > part.clientWidth).map((part) => part.textContent));
    assert.deepEqual(overflows, []);
  });

  test("keeps the names of its keys whole in a narrow window", async () => {
    await openPhonebook();
    await page.setViewportSize({ width: 320, height: 900 });
    telephone.run("config", "set", "language", "fr");
    await page.locator("html[lang=fr]").waitFor();
    await page.locator("[data-key=hook]").click();
    await popup("dialog").waitFor();
    const broken = await page.evaluate(() => {
      const range = document.createRange();
      const linesOf = (text, word) => {
        range.setStart(text, word.index);
        range.setEnd(text, word.index + word[0].length);
        return new Set([...range.getClientRects()].map(({ top }) => top)).size;
      };
      return [...document.querySelectorAll("#soft button, .controls button span")]
        .flatMap(({ firstChild: text }) => [...text.data.matchAll(/[^\s-]+/g)]
          .filter((word) => linesOf(text, word) > 1).map((word) => word[0]));
    });
    assert.deepEqual(broken, []);
  });

  test("shows the end of a long search text in one line", async () => {
    await openPhonebook();
    const field = page.locator(".search .found");
    await page.keyboard.type("a");
    await expectText(field, "a");
    const { height } = await field.boundingBox();
    await page.keyboard.type(" name that is far too long for the search field of this screen");
    await expectText(field, "this screen");
    assert.equal((await field.boundingBox()).height, height);
    assert.ok(await field.evaluate((span) => span.scrollLeft > 0 && span.scrollLeft + span.clientWidth >= span.scrollWidth - 1));
  });

  test("leaves the focus on a soft key whose name changes", async () => {
    await openPhonebook();
    await page.locator("#soft button").nth(1).focus();
    await page.keyboard.press("Enter");
    await popup("menu").waitFor();
    assert.equal(await page.evaluate(() => document.activeElement?.getAttribute("data-key")), "soft2");
  });

  test("presses a key once however long Enter is held down on it", async () => {
    await openPhonebook();
    await page.locator("#soft button").nth(1).focus();
    await page.keyboard.down("Enter");
    await popup("menu").waitFor();
    await page.keyboard.down("Enter"); // repeats: it would be Back now
    await page.keyboard.up("Enter");
    await page.keyboard.press("ArrowDown");
    await page.locator("#popup #choice-1.selected").waitFor();
  });

  test("moves through the rows with the mouse wheel, and never off to the tabs", async () => {
    await openPhonebook();
    const at = (position) => page.locator(`[role=option][aria-selected=true][aria-posinset='${position}']`);
    await page.locator("#rows").hover();
    await page.mouse.wheel(0, 120);
    await at(4).waitFor();
    for (let i = 0; i < 10; ++i)
      await page.mouse.wheel(0, -120);
    await at(1).waitFor();
    await page.keyboard.press("ArrowDown");
    await at(2).waitFor(); // after all that the wheel pressed
  });

  test("leaves a menu and a message when one clicks beside them", async () => {
    await openPhonebook();
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    await page.locator("#popup").click({ position: { x: 3, y: 60 } });
    await popup("menu").waitFor({ state: "detached" });
    await page.keyboard.press("Enter");
    await popup("alert").waitFor();
    await page.locator("#popup").click({ position: { x: 3, y: 60 } });
    await popup("alert").waitFor({ state: "detached" });
    await row("<b>Zed</b>").and(selected()).waitFor();
  });

  test("asks before it deletes even whom clicks twice", async () => {
    await openPhonebook();
    await page.keyboard.type("ba");
    await row("Baker, Bob").and(selected()).waitFor();
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    for (let i = 0; i < 5; ++i)
      await page.keyboard.press("ArrowDown");
    await page.locator("#popup .selected", { hasText: /^Delete$/ }).waitFor();
    await doubleClick(page, page.locator("#soft button").first(), popup("alertdialog"));
    await page.keyboard.press("Escape");
    await popup("menu").waitFor();
    await page.keyboard.press("Escape");
    await row("Baker, Bob").and(selected()).waitFor();
  });

  test("does not close a message with the second click of what brought it up", async () => {
    await openPhonebook();
    await row("Baker, Bob").click();
    await row("Baker, Bob").and(selected()).waitFor();
    await doubleClick(page, page.locator(".nav .ok"), popup("alert"));
    await page.locator("body").click({ position: { x: 2, y: 2 } });
    assert.equal(await popup("alert").count(), 1);
    await page.locator(".nav .ok").click(); // a click of its own does
    await popup("alert").waitFor({ state: "detached" });
  });

  test("presses digits as often as they are clicked", async () => {
    await openPhonebook();
    await page.locator("#keypad button[data-key='2']").click({ clickCount: 3 });
    await expectText(page.locator(".search .found"), /^c$/);
  });

  test("says how one of several choices is taken, and loses none by a double click", async () => {
    await openPhonebook();
    await selected().waitFor();
    await page.keyboard.press("ArrowRight");
    await page.getByRole("menuitem", { name: "Name format", exact: true }).click();
    const choice = row("First name, last name");
    await expectText(page.locator(".legend"), "Back saves the choice.");
    assert.equal(await page.getByRole("listbox").getAttribute("aria-describedby"), "legend");
    await expectNoViolations("choices");
    await choice.dblclick();
    await choice.and(selected()).waitFor();
    await choice.click();
    await page.keyboard.press("Escape");
    await row("Alice Adams").waitFor();
    assert.equal(await page.locator(".legend").isVisible(), false);
  });

  test("keeps no empty strip above the tabs, and its signs off their names", async () => {
    await openPhonebook();
    const display = await page.locator("#display").boundingBox();
    const tabs = await page.getByRole("tablist").boundingBox();
    assert.ok(tabs.y - display.y < 10, `${tabs.y - display.y} px`);
    const lastTab = await page.getByRole("tab").last().boundingBox();
    const mode = await page.locator("#mode").boundingBox();
    assert.ok(lastTab.x + lastTab.width <= mode.x);
    await page.locator("[data-key=hook]").click();
    await popup("dialog").waitFor();
    await page.getByRole("img", { name: "Off-hook" }).click({ trial: true }); // nothing lies over it
  });

  test("dims its keys while they press nothing", async () => {
    const opacity = () => page.locator(".nav .ok").evaluate((button) => Number(getComputedStyle(button).opacity));
    assert.equal(await opacity(), 1);
    await telephone.stop();
    await page.locator("#cover").waitFor();
    assert.ok(await opacity() < 1);
    page.problems.length = 0; // the browser reports each refused connection
  });

  test("shows an emptied number as empty while it is edited", async () => {
    await openPhonebook();
    await page.keyboard.type("ba");
    await row("Baker, Bob").and(selected()).waitFor();
    await page.getByRole("button", { name: "Speaker" }).click();
    await popup("dialog").waitFor();
    const number = page.locator("#popup .line2");
    await page.getByRole("button", { name: "Edit number" }).click();
    await expectText(number, "002");
    await page.locator("#popup .cursor").waitFor();
    await page.keyboard.press("Delete");
    await page.locator("#popup .line2:not(:has-text('0'))").waitFor({ state: "attached" });
    assert.equal(await number.textContent(), "");
  });

  test("frames popups where the system chooses the colours", async () => {
    await page.emulateMedia({ forcedColors: "active" });
    await openPhonebook();
    await page.keyboard.press("ArrowRight");
    await popup("menu").waitFor();
    assert.notEqual(await page.locator("#popup > *").evaluate((menu) => getComputedStyle(menu).borderTopStyle), "none");
  });

  test("says when the telephone is gone, and comes back with it", async () => {
    await openPhonebook();
    await telephone.stop();
    await page.locator("#cover").waitFor();
    page.problems.length = 0; // the browser reports each refused connection
    await telephone.start();
    await page.locator("body[data-state=connected]").waitFor({ timeout: 15000 });
    page.problems.length = 0;
    await page.locator("#cover").waitFor({ state: "hidden" });
    await openPhonebook();
  });

  test("says that its address is not valid any more when the token is wrong", async () => {
    const other = await page.context().newPage();
    await other.goto(telephone.address.replace(/#.*/, `#${"0".repeat(32)}`));
    await other.locator("body[data-state=refused]").waitFor();
    assert.match(await other.locator("#cover").textContent(), /no longer valid/);
    await other.close();
  });

  for (const [what, headers, status] of [
    ["a foreign Host", { Host: "phone.example" }, 403],
    ["a foreign Origin", { Origin: "http://evil.example" }, 403],
    ["no Origin", { Origin: undefined }, 403],
    ["a wrong token", { "Sec-WebSocket-Protocol": `deskbook.${"0".repeat(32)}` }, 401],
    ["no token", { "Sec-WebSocket-Protocol": undefined }, 401],
  ])
    test(`refuses ${what}`, async () => {
      const { host, hash } = new URL(telephone.address);
      const all = {
        Host: host, Origin: `http://${host}`, Connection: "Upgrade", Upgrade: "websocket", "Sec-WebSocket-Version": "13",
        "Sec-WebSocket-Key": "dGhlIHNhbXBsZSBub25jZQ==", "Sec-WebSocket-Protocol": `deskbook.${hash.slice(1)}`, ...headers,
      };
      const given = Object.fromEntries(Object.entries(all).filter(([, value]) => value !== undefined));
      const answer = await new Promise((resolve, reject) => {
        const asked = request(`http://${host}/face`, { headers: given });
        asked.on("response", resolve).on("upgrade", resolve).on("error", reject).end();
      });
      assert.equal(answer.statusCode, status);
      answer.destroy();
    });
});

describe("the page of a telephone without soft keys", () => {
  beforeEach(async () => {
    telephone = await new Telephone({ contacts: PEOPLE, config: "soft-key-bar = false\n" }).start();
    page = await openPage(browser, telephone);
  });
  afterEach(async () => {
    assert.deepEqual(page.problems, []);
    await page.context().close();
    await telephone.end();
  });

  test("has its options as first row and a popup's answers as rows", async () => {
    await openPhonebook();
    assert.equal(await page.locator("#soft button").count(), 0);
    await page.keyboard.type("ba");
    await row("Baker, Bob").and(selected()).waitFor();
    await page.keyboard.press("ArrowRight");
    await page.getByRole("menuitem", { name: "Delete", exact: true }).click();
    await popup("alertdialog").waitFor();
    const focused = page.locator("#popup :focus");
    assert.equal(await focused.getAttribute("aria-activedescendant"), "choice-0");
    await page.keyboard.press("ArrowDown");
    await page.locator("#popup :focus[aria-activedescendant=choice-1]").waitFor();
    await expectNoViolations("question without soft keys");
    await page.getByRole("menuitem", { name: "Cancel" }).click();
    await popup("alertdialog").waitFor({ state: "detached" });
    await expectNoViolations("menu without soft keys");
  });
});

describe("the page of a telephone with more rows than fit", () => {
  test("keeps the selected row in sight", async () => {
    telephone = await new Telephone({ contacts: PEOPLE, config: "visible-rows = 20\n" }).start();
    page = await openPage(browser, telephone);
    await openPhonebook();
    for (let i = 1; i < 20; ++i)
      await page.keyboard.press("ArrowDown");
    await page.locator("[role=option][aria-selected=true][aria-posinset='20']").waitFor();
    const list = await page.locator("#rows").boundingBox();
    const last = await selected().boundingBox();
    assert.ok(last.height > 20);
    assert.ok(last.y >= list.y && last.y + last.height <= list.y + list.height);
    await page.context().close();
    await telephone.end();
  });
});

describe("the page of an empty phonebook", () => {
  test("says how to add contacts", async () => {
    telephone = await new Telephone().start();
    page = await openPage(browser, telephone);
    await expectText(page.locator("#display"), "Phonebook > Menu > New contact");
    await page.context().close();
    await telephone.end();
  });
});
