// A contact as a person fills it in: at the keyboard, with dead keys, input methods and the clipboard,
// by touch, or with the telephone's own keys alone.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Telephone, doubleClick, expectText, openBrowser, openPage, violations } from "./telephone.mjs";

const PEOPLE = [{ surname: "Lindqvist", firstname: "Anna", work: "+493023125001", cell: "+4917123456789" }];
const LETTERS = [..."abcdefghijklmnopqrstuvwxyz"];
/** Text in which a lost, doubled or swapped letter cannot go unnoticed. @param {number} length */
const lettersInOrder = (length) => Array.from({ length }, (_, i) => LETTERS[(i * 7 + Math.floor(i / 26)) % 26]).join("");

let browser;
let telephone;
let page;
let devtools;

before(async () => { browser = await openBrowser(); });
after(async () => { await browser.close(); });

const popup = (role) => page.locator(`#popup [role=${role}]`);
const field = (label) => page.getByRole("textbox", { name: label, exact: true });
const selection = (label) => page.getByRole("combobox", { name: label, exact: true });
const press = async (...keys) => { for (const key of keys) await page.keyboard.press(key); };
const key = (name) => page.locator(`button[data-key="${name}"]`);

/** @param {import("playwright-core").Locator} locator */
async function expectFocus(locator) {
  await locator.and(page.locator(":focus")).waitFor();
}

/** What a field says comes from the telephone: waits until it is there. */
async function expectValue(locator, value) {
  await page.locator(".field[data-focused=true]").waitFor();
  for (let tries = 0; (await locator.inputValue()) !== value; ++tries) {
    if (tries > 200)
      assert.equal(await locator.inputValue(), value);
    await locator.evaluate(() => new Promise((resolve) => { requestAnimationFrame(resolve); }));
  }
}

const caretOf = (locator) => locator.evaluate((input) => input.selectionStart);

async function expectCaret(locator, position) {
  for (let tries = 0; (await caretOf(locator)) !== position; ++tries) {
    if (tries > 200)
      assert.equal(await caretOf(locator), position);
    await locator.evaluate(() => new Promise((resolve) => { requestAnimationFrame(resolve); }));
  }
}

async function openMenu() {
  await key("phonebook").click();
  await page.getByRole("listbox").waitFor();
  await press("ArrowRight");
  await popup("menu").waitFor();
}

async function openForm(item = "New contact") {
  await openMenu();
  await page.getByRole("menuitem", { name: item, exact: true }).click();
  await page.getByRole("form").waitFor();
  await expectFocus(field("Last name"));
}

async function goTo(label) {
  await field(label).click();
  await expectFocus(field(label));
  await page.locator(".field[data-focused=true]", { has: field(label) }).waitFor();
}

/** Letters that are not there yet: a dead key or an input method. @param {string} text */
async function compose(text) {
  await devtools.send("Input.imeSetComposition", { text, selectionStart: text.length, selectionEnd: text.length });
}

/** Ends a composition, or enters text without any key as a touch keyboard does. @param {string} text */
async function insert(text) {
  await devtools.send("Input.insertText", { text });
}

async function paste(text) {
  await page.evaluate((copied) => navigator.clipboard.writeText(copied), text);
  await press("Control+V");
}

async function start(config = "", options = {}) {
  telephone = await new Telephone({ contacts: PEOPLE, config }).start();
  page = await openPage(browser, telephone, { permissions: ["clipboard-read", "clipboard-write"], ...options });
  devtools = await page.context().newCDPSession(page);
}

async function end() {
  assert.deepEqual(page.problems, []);
  await page.context().close();
  await telephone.end();
}

describe("a form", () => {
  beforeEach(() => start());
  afterEach(end);

  test("is filled from the keyboard and saved", async () => {
    await openForm();
    await page.keyboard.type("Núñez Ångström");
    await press("Tab");
    await expectFocus(field("First name"));
    await page.keyboard.type("Zoë");
    await press("ArrowDown");
    await expectFocus(field("Office"));
    await page.keyboard.type("+49 (30) 77-1");
    await expectValue(field("Office"), "+4930771");
    await press("F2");
    await expectText(popup("alert"), "saved");
    await press("Escape");
    await page.getByRole("option", { name: "Núñez Ångström, Zoë" }).waitFor();
  });

  test("is filled with the telephone's keys alone", async () => {
    await openForm();
    for (const digit of ["6", "6", "4", "4", "4"])
      await key(digit).click();
    await expectValue(field("Last name"), "Ni");
    for (const name of ["down", "down", "5", "0", "clear", "5"])
      await key(name).click();
    await expectValue(field("Office"), "55");
    for (const name of [...Array(9).fill("down"), "6", "*", "*", "3"])
      await key(name).click();
    await expectValue(field("E-mail"), "m@d");
    await key("save").or(page.locator("#soft button", { hasText: "Save" })).click();
    await expectText(popup("alert"), "saved");
    await key("ok").click();
    await page.getByRole("option", { name: "Ni", exact: true }).waitFor();
  });

  test("takes a digit for a letter's key that is held down, and the plus sign for 0 in a number", async () => {
    const hold = (name) => key(name).click({ delay: 800 });
    await openForm();
    await key("2").click();
    await hold("2");
    await hold("0");
    await expectValue(field("Last name"), "A20");
    await press("ArrowDown", "ArrowDown");
    await expectFocus(field("Office"));
    await hold("0");
    await key("4").click();
    await hold("9");
    await expectValue(field("Office"), "+49");
  });

  test("loses, doubles and swaps no letter however fast one types", async () => {
    await openForm();
    const limit = Number(await field("Last name").evaluate((input) => input.dataset.limit));
    const typed = lettersInOrder(200);
    await page.keyboard.type(typed);
    await expectValue(field("Last name"), typed.slice(0, limit));
  });

  test("lets a dead key and an input method finish their letters", async () => {
    await openForm();
    await page.keyboard.type("Ren");
    await expectValue(field("Last name"), "Ren");
    await compose("´");
    await expectValue(field("Last name"), "Ren´");
    await insert("é");
    await expectValue(field("Last name"), "René");
    await press("ArrowLeft");
    await expectCaret(field("Last name"), 3);
    await compose("に");
    await compose("日本");
    await insert("日本");
    await expectValue(field("Last name"), "Ren日本é");
    await expectCaret(field("Last name"), 5);
  });

  test("gives up a composition that a person gives up", async () => {
    await openForm();
    await page.keyboard.type("a");
    await compose("´");
    await compose("");
    await page.keyboard.type("b");
    await expectValue(field("Last name"), "ab");
  });

  test("takes a word back into the composition as touch keyboards do", async () => {
    await openForm();
    await insert("Hanna");
    await expectValue(field("Last name"), "Hanna");
    await devtools.send("Input.imeSetComposition", { text: "Johanna", selectionStart: 7, selectionEnd: 7, replacementStart: 0, replacementEnd: 5 });
    await insert("Johanna");
    await expectValue(field("Last name"), "Johanna");
  });

  test("takes what a touch keyboard enters and deletes", async () => {
    await openForm();
    await insert("Lund");
    await expectValue(field("Last name"), "Lund");
    await field("Last name").evaluate((input) => input.dispatchEvent(
      new InputEvent("beforeinput", { inputType: "deleteContentBackward", bubbles: true, cancelable: true })));
    await expectValue(field("Last name"), "Lun");
  });

  test("asks touch keyboards for letters or numbers", async () => {
    await openForm();
    assert.equal(await field("Last name").getAttribute("inputmode"), "text");
    assert.equal(await field("Mobile").getAttribute("inputmode"), "tel");
    for (const name of ["autocomplete", "autocapitalize"])
      assert.equal(await field("Last name").getAttribute(name), "off");
    assert.equal(await field("Last name").getAttribute("maxlength"), null); // the telephone judges
  });

  test("takes a paste as one line, cut at whole characters where it is too long", async () => {
    await openForm();
    await paste("van\r\nder\tBerg");
    await expectValue(field("Last name"), "van der Berg");
    await press("Delete");
    await paste("👩‍🚀".repeat(2000));
    await page.locator(".count[data-full=true]").waitFor();
    const value = await field("Last name").inputValue();
    assert.match(value, /^(👩‍?🚀?‍?)+$/u);
    assert.ok(!value.includes("\uFFFD"));
    await page.locator("body[data-state=connected]").waitFor();
    await expectText(page.locator("#live"), "Field full");
  });

  test("says that it leaves letters out of a number, which may be another one without them", async () => {
    const hint = page.locator("#hint");
    await openForm();
    await paste("ext.");
    await goTo("Office");
    await paste("(030) 77-1");
    await expectValue(field("Office"), "030771");
    assert.equal(await hint.textContent(), "");
    await paste(" ext. 6");
    await expectText(hint, "Only digits");
    await expectValue(field("Office"), "0307716");
    assert.deepEqual(await violations(page), []);
  });

  test("says nothing of a full field that one only comes by", async () => {
    await openForm();
    await page.keyboard.type("x".repeat(Number(await field("Last name").evaluate((input) => input.dataset.limit))));
    await expectText(page.locator("#live"), "Field full");
    await press("ArrowDown");
    await expectFocus(field("First name"));
    await page.evaluate(() => document.querySelector("#live").replaceChildren());
    await press("ArrowUp");
    await page.locator(".count[data-full=true]").waitFor();
    assert.equal(await page.locator("#live").textContent(), "");
  });

  test("is scrolled through with the mouse wheel", async () => {
    await openForm();
    await field("Mobile").hover();
    for (let i = 0; i < 8; ++i)
      await page.mouse.wheel(0, 120);
    await expectFocus(selection("Picture"));
    for (let i = 0; i < 8; ++i)
      await page.mouse.wheel(0, -120);
    await expectFocus(selection("Options"));
  });

  test("has all that was typed when the page is loaded anew, and takes more", async () => {
    await openForm();
    await page.keyboard.type("Berg");
    await press("Tab");
    await page.keyboard.type("Jo");
    await expectValue(field("First name"), "Jo");
    await page.reload();
    await expectValue(field("First name"), "Jo");
    assert.equal(await field("Last name").inputValue(), "Berg");
    await expectFocus(field("First name"));
    await page.goto("about:blank");
    await page.goBack();
    await expectValue(field("First name"), "Jo");
    await page.keyboard.type("e");
    await expectValue(field("First name"), "Joe");
  });

  test("is the same on two pages, whichever is typed at", async () => {
    await openForm();
    const other = await page.context().newPage();
    await other.goto(telephone.address);
    const there = (label) => other.getByRole("textbox", { name: label, exact: true });
    await there("Last name").and(other.locator(":focus")).waitFor();
    await other.keyboard.type("ab");
    await expectValue(field("Last name"), "ab");
    await page.bringToFront();
    await page.keyboard.type("c");
    await expectValue(there("Last name"), "abc");
    await there("Office").click();
    await expectFocus(field("Office"));
    await page.keyboard.type("1");
    await expectValue(there("Office"), "1");
    await other.keyboard.type("2");
    await expectValue(field("Office"), "12");
    await other.close();
  });

  test("leaves the focus where a form begins when its menu was clicked twice", async () => {
    await openMenu();
    await doubleClick(page, page.getByRole("menuitem", { name: "New contact", exact: true }), page.getByRole("form"));
    await page.keyboard.type("Berg");
    await expectValue(field("Last name"), "Berg");
  });

  test("takes dropped text where the telephone's caret is", async () => {
    await openForm();
    await page.keyboard.type("ab");
    await press("ArrowLeft");
    await expectCaret(field("Last name"), 1);
    await field("Last name").evaluate((input) => {
      const dataTransfer = new DataTransfer();
      dataTransfer.setData("text/plain", "-\n-");
      input.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
    });
    await expectValue(field("Last name"), "a- -b");
  });

  test("replaces what a person has selected", async () => {
    await openForm("Details");
    await press("Control+A");
    await page.keyboard.type("Berg");
    await expectValue(field("Last name"), "Berg");
    await press("Shift+ArrowLeft", "Shift+ArrowLeft", "Backspace");
    await expectValue(field("Last name"), "Be");
    await page.keyboard.type(" two words");
    await expectValue(field("Last name"), "Be two words");
    await press("Control+Backspace");
    await expectValue(field("Last name"), "Be two ");
  });

  test("copies what a person has selected, and cuts it", async () => {
    await openForm("Details");
    await press("Control+A", "Control+C");
    assert.equal(await page.evaluate(() => navigator.clipboard.readText()), "Lindqvist");
    await press("Control+X");
    await expectValue(field("Last name"), "");
    await press("Control+V");
    await expectValue(field("Last name"), "Lindqvist");
  });

  test("puts the telephone's caret where a person clicks in the field, and End to its end", async () => {
    await openForm("Details");
    await expectCaret(field("Last name"), 9);
    await field("Last name").click({ position: { x: 2, y: 10 } });
    await expectCaret(field("Last name"), 0);
    await page.keyboard.type("X");
    await expectValue(field("Last name"), "XLindqvist");
    await press("End");
    await page.keyboard.type("Y");
    await expectValue(field("Last name"), "XLindqvistY");
  });

  test("gives a field that is pointed at the focus, and changes nothing in it", async () => {
    await openForm("Details");
    await field("First name").click({ position: { x: 12, y: 10 } });
    await expectFocus(field("First name"));
    await page.locator(".field[data-focused=true]", { has: field("First name") }).waitFor();
    await expectCaret(field("First name"), 4);
    await page.getByText("Mobile", { exact: true }).click();
    await expectFocus(field("Mobile"));
    assert.equal(await field("First name").inputValue(), "Anna");
    assert.equal(await field("Mobile").inputValue(), "+4917123456789");
  });

  test("gives a field that assistive technology focuses to the telephone", async () => {
    await openForm("Details");
    await field("Mobile").focus();
    await page.locator(".field[data-focused=true]", { has: field("Mobile") }).waitFor();
    await page.keyboard.type("1");
    await expectValue(field("Mobile"), "+49171234567891");
  });

  test("is walked through with the browser's Tab key, and left at its end", async () => {
    await openForm();
    await press("Tab", "Tab");
    await expectFocus(field("Office"));
    await press("Shift+Tab");
    await expectFocus(field("First name"));
    await press(...Array(12).fill("Tab"));
    await expectFocus(selection("Picture"));
    await press("Tab");
    await expectFocus(page.locator("#soft button").first());
    await press("Shift+Tab");
    await expectFocus(selection("Picture"));
  });

  test("counts the characters when the limit is near, and says that a field is full", async () => {
    await openForm();
    const limit = Number(await field("Last name").evaluate((input) => input.dataset.limit));
    await page.keyboard.type("x".repeat(limit - 11));
    await expectValue(field("Last name"), "x".repeat(limit - 11));
    assert.equal(await page.locator(".count").first().isVisible(), false);
    await page.keyboard.type("x");
    await expectText(page.locator(".count:visible"), `${limit - 10}/${limit}`);
    await page.keyboard.type("x".repeat(10));
    await expectText(page.locator(".count[data-full=true]"), `${limit}/${limit}`);
    await expectText(page.locator("#live"), "Field full");
    await page.keyboard.type("more");
    await press("ArrowDown");
    await page.locator(".count:visible").waitFor({ state: "hidden" });
    assert.equal(await field("Last name").inputValue(), "x".repeat(limit));
  });

  test("keeps the caret of a long text in sight", async () => {
    await openForm();
    await press(...Array(11).fill("ArrowDown"));
    await expectFocus(field("E-mail"));
    const shownRange = () => field("E-mail").evaluate((input) => [input.scrollLeft, input.scrollLeft + input.clientWidth, input.scrollWidth]);
    await page.keyboard.type("a.very.long.address@example.org");
    await expectValue(field("E-mail"), "a.very.long.address@example.org");
    const [, right, width] = await shownRange();
    assert.ok(right >= width - 8, `${right} of ${width}`);
    await press(...Array(31).fill("ArrowLeft"));
    await expectCaret(field("E-mail"), 0);
    assert.equal((await shownRange())[0], 0);
    await press("ArrowUp");
    await expectFocus(field("Job title"));
    assert.equal((await shownRange())[0], 0); // the beginning is to be seen of what is not being typed
  });

  test("shows the telephone's caret while the focus is on a key", async () => {
    await openForm("Details");
    await key("left").focus();
    await press("Enter");
    const caret = page.locator(".field[data-focused=true] .still");
    await caret.waitFor();
    await page.locator(".field[data-focused=true] .still .cursor").waitFor({ state: "attached" });
    assert.equal(await caret.textContent(), "Lindqvist");
  });

  test("steps through choices with arrows that can be clicked, and says where it is", async () => {
    await openForm("Details");
    await selection("Default number").click();
    await expectFocus(selection("Default number"));
    await expectText(selection("Default number"), "Office");
    assert.equal(await selection("Default number").evaluate((shown) => document.getElementById(shown.getAttribute("aria-describedby")).textContent), "1 of 2");
    const steps = page.locator(".field", { has: selection("Default number") }).locator("[data-step]");
    await steps.nth(1).click();
    await expectText(selection("Default number"), "Mobile");
    await expectText(page.locator("#live"), "Mobile, 2 of 2");
    await expectFocus(selection("Default number"));
    await press("ArrowLeft");
    await expectText(selection("Default number"), "Office");
  });

  test("goes to the choices whose arrow is clicked", async () => {
    await openForm("Details");
    await page.locator(".field", { has: selection("Default number") }).locator("[data-step=right]").click();
    await expectFocus(selection("Default number"));
    await expectText(selection("Default number"), "Mobile");
  });

  test("keeps the focus and what was typed through its question", async () => {
    await openForm("Details");
    await goTo("Mobile");
    await page.keyboard.type("5");
    await press("Escape");
    await popup("alertdialog").waitFor();
    await press("Escape");
    await popup("alertdialog").waitFor({ state: "detached" });
    await expectFocus(field("Mobile"));
    await page.keyboard.type("6");
    await expectValue(field("Mobile"), "+491712345678956");
  });

  test("says what is wrong, and has the focus back in the field", async () => {
    await openForm();
    await goTo("Office");
    await page.keyboard.type("55");
    await press("F2");
    await popup("alert").waitFor();
    assert.match(await popup("alert").textContent(), /name/);
    await expectFocus(popup("alert"));
    await press("Escape");
    await popup("alert").waitFor({ state: "detached" });
    await page.locator(".field[data-focused=true] :focus").waitFor();
    assert.equal(await field("Office").inputValue(), "55");
  });

  test("drops a composition that a message comes over", async () => {
    await openForm();
    await page.keyboard.type("a");
    await compose("´");
    await page.evaluate(() => document.querySelector("#soft button[data-key=soft3]").click());
    await popup("alertdialog").waitFor();
    await press("Escape");
    await expectFocus(field("Last name"));
    await page.keyboard.type("b");
    await expectValue(field("Last name"), "ab");
  });

  test("shows as desk telephones do what its digit keys enter", async () => {
    const mode = page.locator("#mode");
    await openForm();
    for (const letters of [/^Abc$/, /^abc$/, /^ABC$/, /^Abc$/]) {
      await expectText(mode, letters);
      await key("#").click();
    }
    await press("ArrowDown", "ArrowDown");
    await expectText(mode, "123");
    await press("ArrowUp", "ArrowUp", "ArrowUp");
    await expectFocus(selection("Options"));
    assert.equal(await mode.textContent(), "");
  });

  test("fits a narrow window at 200 % text, and names stand above what is filled in", async () => {
    await openForm("Details");
    await page.setViewportSize({ width: 480, height: 900 });
    await page.evaluate(() => { document.documentElement.style.fontSize = "200%"; });
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
    const label = await page.getByText("First name", { exact: true }).boundingBox();
    const value = await field("First name").boundingBox();
    assert.ok(label.y + label.height <= value.y + 4);
    await expectNoClippedLetters();
  });

  test("marks the field with the focus where the system chooses the colours", async () => {
    await page.emulateMedia({ forcedColors: "active" });
    await openForm();
    const focused = page.locator(".field[data-focused=true]");
    assert.notEqual(await focused.evaluate((shown) => getComputedStyle(shown).outlineStyle), "none");
  });

  test("has a caret that does not blink for whom that disturbs", async () => {
    await page.emulateMedia({ reducedMotion: "reduce" });
    await openForm("Details");
    await key("up").focus();
    assert.equal(await page.locator(".still .cursor").evaluate((caret) => getComputedStyle(caret).animationName), "none");
  });

  for (const language of ["de", "el"])
    test(`clips no letter in ${language}`, async () => {
      await openForm("Details");
      await press("Escape");
      telephone.run("config", "set", "language", language);
      await page.locator(`html[lang=${language}]`).waitFor();
      await press("ArrowRight");
      await popup("menu").waitFor();
      await press("ArrowDown", "Enter");
      await page.getByRole("form").waitFor();
      await expectNoClippedLetters();
      await press(...Array(14).fill("ArrowDown"));
      await page.locator(".field:last-child[data-focused=true]").waitFor();
      await expectNoClippedLetters();
    });
});

/** No name of a field or key is cut off, or broken inside a word. */
async function expectNoClippedLetters() {
  const clipped = await page.evaluate(() => [...document.querySelectorAll(".label span, #soft button, .controls button span, .title, .choice .text")]
    .filter((shown) => {
      const box = shown.closest(".field, button, .strip").getBoundingClientRect();
      const range = document.createRange();
      range.selectNodeContents(shown);
      const { top, bottom, left, right } = range.getBoundingClientRect();
      const isCut = shown.scrollWidth > shown.clientWidth + 1 || shown.scrollHeight > 1.4 * shown.clientHeight;
      return (isCut && getComputedStyle(shown).display !== "inline") ||
        top < box.top - 1 || bottom > box.bottom + 1 || left < box.left - 1 || right > box.right + 1;
    }).map((shown) => shown.textContent));
  assert.deepEqual(clipped, []);
}

describe("the list's search", () => {
  beforeEach(() => start());
  afterEach(end);
  const found = () => page.locator(".search .found");

  async function openList() {
    await key("phonebook").click();
    await page.getByRole("listbox").waitFor();
    await expectFocus(page.getByRole("listbox"));
  }

  test("loses, doubles and swaps no letter however fast one types", async () => {
    await openList();
    const typed = lettersInOrder(200);
    await page.keyboard.type(typed);
    await expectText(found(), new RegExp(`^${typed}$`));
  });

  test("finds what is typed with dead keys and input methods", async () => {
    await openList();
    await compose("´");
    await page.locator(".search .typing", { hasText: "´" }).waitFor();
    await insert("é");
    await expectText(found(), /^é$/);
    await compose("リ");
    await insert("リンド");
    await expectText(found(), /^éリンド$/);
    assert.equal(await page.getByRole("listbox").textContent(), "");
  });

  test("finds what is pasted", async () => {
    await openList();
    await paste("lind\n");
    await expectText(found(), "lind");
    await page.getByRole("option", { name: "Lindqvist, Anna", selected: true }).waitFor();
  });

  test("is a list to a screen reader, with the row that the telephone selects", async () => {
    await openList();
    await page.keyboard.type("li");
    await expectText(found(), "li");
    const list = page.getByRole("listbox");
    await expectFocus(list);
    const row = page.getByRole("option", { selected: true });
    assert.equal(await list.getAttribute("aria-activedescendant"), await row.getAttribute("id"));
    assert.equal(await list.getAttribute("aria-owns"), await row.evaluate((option) => option.parentElement.id));
  });
});

describe("a finger", () => {
  beforeEach(() => start("", { hasTouch: true }));
  afterEach(end);

  test("on the telephone's keys brings up no touch keyboard, and the caret is to be seen all the same", async () => {
    await openForm("Details");
    await key("5").tap();
    await expectValue(field("Last name"), "Lindqvistj");
    assert.equal(await page.evaluate(() => document.activeElement instanceof HTMLInputElement), false);
    await page.locator(".field[data-focused=true] .still").waitFor();
    await field("First name").tap();
    await expectFocus(field("First name"));
  });

  test("on the keypad finds it where it was, however far from the field", async () => {
    await openForm();
    await page.setViewportSize({ width: 320, height: 500 });
    await page.evaluate(() => scrollTo(0, document.body.scrollHeight));
    const scrolled = await page.evaluate(() => scrollY);
    await key("2").tap();
    await key("2").tap();
    await expectValue(field("Last name"), "B");
    assert.equal(await page.evaluate(() => scrollY), scrolled);
  });

  test("that swipes goes through the form", async () => {
    await openForm();
    const { x, y } = await field("Default number").or(field("Private")).first().boundingBox();
    const touch = (type, at) => devtools.send("Input.dispatchTouchEvent", { type, touchPoints: at === undefined ? [] : [{ x, y: at }] });
    await touch("touchStart", y);
    for (let moved = 20; moved <= 120; moved += 20)
      await touch("touchMove", y - moved);
    await touch("touchEnd");
    await page.locator(".field[data-focused=true]", { has: field("Office 2") }).waitFor();
  });

  test("on a row brings up no touch keyboard, on the search does", async () => {
    await key("phonebook").tap();
    const list = page.getByRole("listbox");
    await list.and(page.locator("[inputmode=none]")).waitFor();
    await key("5").tap();
    await expectText(page.locator(".search .found"), "j");
    await page.locator(".search").tap();
    await expectFocus(list.and(page.locator("[inputmode=search]")));
    await insert("o");
    await expectText(page.locator(".search .found"), "jo");
  });
});

describe("the telephone's signs", () => {
  beforeEach(() => start());
  afterEach(end);

  test("say that the handset is lifted, and that digits are dialled", async () => {
    await key("dialpad").click();
    await page.getByRole("img", { name: "Dial pad on" }).waitFor();
    await key("dialpad").click();
    await page.getByRole("img", { name: "Dial pad on" }).waitFor({ state: "detached" });
    await key("hook").click();
    await page.getByRole("img", { name: "Off-hook" }).waitFor();
    await key("hangup").click();
    await page.getByRole("img", { name: "Off-hook" }).waitFor({ state: "detached" });
  });
});

describe("every screen", () => {
  const LOOKS = [
    ["light", {}, 100],
    ["dark", { colorScheme: "dark" }, 100],
    ["at 200 %", {}, 200],
  ];

  /** Goes from screen to screen, and to each one says its name. @param {(what: string) => Promise<void>} at */
  async function visit(at) {
    await at("idle screen");
    await key("phonebook").click();
    await page.getByRole("option", { name: "Lindqvist, Anna" }).waitFor();
    await at("list");
    await page.keyboard.type("li");
    await expectText(page.locator(".search .found"), "li");
    await at("list with a search");
    await press("ArrowRight");
    await popup("menu").waitFor();
    await at("menu");
    await page.getByRole("menuitem", { name: "Details", exact: true }).click();
    await page.getByRole("form").waitFor();
    await expectFocus(field("Last name"));
    await at("form, a text");
    await press("ArrowUp");
    await expectFocus(selection("Options"));
    await at("form, its options");
    await press("ArrowDown", "ArrowDown", "ArrowDown");
    await expectFocus(field("Office"));
    await at("form, a number");
    await press(...Array(10).fill("ArrowDown"));
    await expectFocus(selection("Group"));
    await at("form, the group");
    await press("ArrowDown");
    await expectFocus(selection("Picture"));
    await at("form, the picture");
    await goTo("Company");
    await page.keyboard.type("x");
    await press("Escape");
    await popup("alertdialog").waitFor();
    await at("question over the form");
    await press("Escape");
    await popup("alertdialog").waitFor({ state: "detached" });
    await press("F2");
    await popup("alert").waitFor();
    await at("success over the form");
    await press("Escape");
    await page.getByRole("option", { name: "Lindqvist, Anna" }).waitFor();
    await openMenuItem("New contact");
    await page.getByRole("form").waitFor();
    await press("F2");
    await popup("alert").waitFor();
    await at("error over the form");
    await press("Escape");
    await popup("alert").waitFor({ state: "detached" });
    await press("Escape");
    await page.getByRole("listbox").waitFor();
    await openMenuItem("Name format");
    await page.locator("#base[data-role=exclusive]").or(page.getByRole("form")).first().waitFor();
    await at("name formats");
    await press("Escape");
    await page.getByRole("option", { name: "Lindqvist, Anna" }).waitFor();
    await openMenuItem("Groups");
    await page.locator("#title", { hasText: /./ }).waitFor();
    await at("groups");
    await openMenuItem("New group");
    await expectFocus(field("Group name"));
    await page.keyboard.type("Sales");
    await at("form of a group");
    await press("F2");
    await popup("alert").waitFor();
    await press("Escape");
    await page.getByRole("option", { name: "Sales" }).click();
    await page.getByRole("option", { name: "Sales", selected: true }).waitFor();
    await press("ArrowRight");
    await popup("menu").waitFor();
    await at("menu of a group");
    await page.getByRole("menuitem", { name: "Delete", exact: true }).click();
    await popup("alertdialog").waitFor();
    await at("question whether to delete a group");
    await press("Escape", "Escape", "Escape");
    await page.getByRole("option", { name: "Lindqvist, Anna" }).waitFor();
    await press("F6");
    await page.locator("[role=tab]:nth-child(2)[aria-selected=true]").waitFor();
    await at("other tab");
  }

  /** Without soft keys, what is not about a contact is in the menu of the first row. */
  async function openMenuItem(name) {
    const first = page.getByRole("option").first();
    if ((await page.locator("#soft button").count()) === 0 && (await first.getAttribute("aria-selected")) === "false")
      await first.click();
    await first.and(page.locator("[aria-selected=true]")).waitFor();
    await press("ArrowRight");
    await page.getByRole("menuitem", { name, exact: true }).click();
    await popup("menu").waitFor({ state: "detached" });
  }

  for (const [bar, config] of [["", ""], [" without soft keys", "soft-key-bar = false\n"]])
    for (const [look, media, size] of LOOKS)
      test(`can be used by everybody: ${look}${bar}`, async () => {
        await start(config);
        await page.emulateMedia(media);
        await page.setViewportSize({ width: 640, height: 1000 });
        await page.evaluate((percent) => { document.documentElement.style.fontSize = `${percent}%`; }, size);
        const found = [];
        await visit(async (what) => found.push(...(await violations(page)).map((violation) => `${what}: ${violation}`)));
        assert.deepEqual(found, []);
        await end();
      });
});
