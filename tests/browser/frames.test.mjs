// Screens that a telephone seldom shows, made here frame by frame and put into the page's connection.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Telephone, expectText, openBrowser, violations } from "./telephone.mjs";

let browser;
let telephone;
let page;
let connection; // of the page
let shown; // the one on which a test has shown a frame
let pressed; // the keys, one after the other

const popup = (role) => page.locator(`#popup [role=${role}]`);

const screen = (role, rest = {}) => ({
  role, id: 1, type: 0, state: 0, title: "", text: "", image: "", imageLost: false, rows: [], rowCount: rest.rows?.length ?? 0,
  searchOpen: false, search: "", pending: "", asksForText: false, highlighted: true, waiting: false, ...rest,
});
const row = (text, position, rest = {}) => ({ position, icon: 0, text, image: "", imageLost: false, selected: position === 0, ...rest });
const field = (kind, position, rest = {}) => ({
  kind, position, icon: 0, label: `Field ${position}`, value: "", image: "", imageLost: false, choice: -1, choices: 0,
  cursor: -1, maxLength: -1, focused: false, readOnly: false, ...rest,
});
const form = (...fields) => screen("form", { title: "Contact", fields, rowCount: fields.length });
const people = screen("list", { rows: [row("Adams, Alice", 0), row("Baker, Bob", 1)] });

const call = (state, rest = {}) => ({ id: "7", state, name: "Miller, Anna", number: "030 2222", text: "In words", since: 0, ...rest });
const withCalls = (...calls) => ({ signs: { offHook: false, dialPad: false, calls } });
const twoCalls = withCalls(call("connected", { since: Date.now() - 42_000 }), call("incoming", { id: "8", name: "Adams, Bob / Miller, Anna", number: "+49 30 23125 001" }));

const FRAMES = {
  "two calls over a list": { base: people, tabs: ["Contacts"], currentTab: 0, ...twoCalls },
  "a call that has failed over a form": { base: form(field("text", 0, { focused: true, cursor: 0 })), ...withCalls(call("failed", { text: "No such number", number: "" })) },
  "a call that rings at the other end": { base: people, ...withCalls(call("alerting", { name: "W".repeat(60) })) },
  "three tabs, one of a PBX": { tabs: ["Contacts", "Directory", "PBX"], currentTab: 2, base: screen("none", { text: "…" }) },
  "the tab bar with the focus": { tabs: ["Contacts", "Directory"], currentTab: 1, tabBarFocused: true, base: { ...people, highlighted: false } },
  "an empty list that is being filled": { tabs: ["Contacts"], currentTab: 0, base: screen("list", { waiting: true }) },
  "lines of a PBX": { tabs: ["Contacts", "PBX"], currentTab: 1, base: screen("none"), systemWindow: ["Line 1   free", "", "Line 3   busy"] },
  "work in progress over a form": { base: form(field("text", 0, { focused: true, cursor: 0 })), popup: screen("progress", { id: 2, text: "Loading pictures…" }) },
  "a question with its answers as rows": { base: people, popup: screen("question", { id: 2, text: "Delete the group Sales? Its contacts stay.", rows: [row("Delete", 0), row("Cancel", 1)] }) },
  "a menu that shows whom it is about": { base: people, popup: screen("menu", { id: 2, title: "Adams, Alice", image: "icon.svg", rows: [row("Dial", 0), row("Details", 1)] }) },
  "a menu whose picture is lost": { base: people, popup: screen("menu", { id: 2, title: "Adams, Alice", imageLost: true, rows: [row("Dial", 0), row("Details", 1)] }) },
  "rows with pictures": { base: screen("list", { rows: [row("Adams, Alice", 0, { image: "icon.svg" }), row("Baker, Bob", 1, { imageLost: true })] }) },
  "a chosen picture": { base: form(field("selection", 0, { value: "anna.png", image: "icon.svg", choice: 1, choices: 2, focused: true })) },
  "a value that is too long and one that cannot be changed": {
    base: form(field("text", 0, { value: "Lindqvist", maxLength: 5, focused: true, cursor: 9 }), field("number", 1, { value: "4711", readOnly: true })),
  },
  "a dialler": {
    base: people, signs: { offHook: true, dialPad: true, calls: [] },
    popup: screen("dialler", { id: 2, dialler: { prefix: "0", line1: "Adams, Alice", line2: "+4930", edit: "", editMode: false, scrolls: true } }),
  },
};

let number = 1e6;
/** Shows a frame and waits until the page has it. */
async function show(frame) {
  number += 1;
  shown = connection;
  connection.send(JSON.stringify({
    frame: { number, tabs: [], currentTab: -1, tabBarFocused: false, popup: null, softKeys: [`Frame ${number}`], systemWindow: [], signs: { offHook: false, dialPad: false, calls: [] }, ...frame },
  }));
  await expectText(page.locator("#soft button"), `Frame ${number}`);
}

before(async () => {
  browser = await openBrowser();
  telephone = await new Telephone().start();
});
after(async () => {
  await browser.close();
  await telephone.end();
});

beforeEach(async () => {
  const context = await browser.newContext({ viewport: { width: 520, height: 1000 } });
  page = await context.newPage();
  pressed = [];
  await page.routeWebSocket(/\/face$/, (socket) => {
    connection = socket;
    const server = socket.connectToServer();
    socket.onMessage((message) => { pressed.push(JSON.parse(message).key); server.send(message); });
    // The telephone's own frames, such as each minute's, would take the place of what a test shows.
    server.onMessage((message) => {
      const { frame, ...rest } = JSON.parse(message);
      socket.send(JSON.stringify(shown === socket ? rest : { frame, ...rest }));
    });
  });
  await page.goto(telephone.address);
  await page.locator(".idle").waitFor();
});
afterEach(() => page.context().close());

describe("the page", () => {
  for (const [what, frame] of Object.entries(FRAMES))
    test(`can be used by everybody: ${what}`, async () => {
      for (const [media, size] of [[{ colorScheme: "light" }, 100], [{ colorScheme: "dark" }, 100], [{ colorScheme: "light" }, 200]]) {
        await page.emulateMedia(media);
        await page.evaluate((percent) => { document.documentElement.style.fontSize = `${percent}%`; }, size);
        await show(frame);
        assert.deepEqual(await violations(page), []);
        assert.equal(await page.evaluate(() => document.activeElement?.closest("#display") !== null), true);
      }
    });

  test("takes no keys before its screen is there, and gives it the keyboard then", async () => {
    const late = await page.context().newPage();
    let letThrough = () => {};
    let speaks = () => {};
    const screenIsThere = new Promise((resolve) => { letThrough = resolve; });
    const textsAreThere = new Promise((resolve) => { speaks = resolve; });
    await late.routeWebSocket(/\/face$/, (socket) => {
      const server = socket.connectToServer();
      socket.onMessage((message) => server.send(message));
      server.onMessage(async (message) => {
        if (JSON.parse(message).frame)
          await screenIsThere;
        socket.send(message);
        speaks();
      });
    });
    await late.goto(telephone.address);
    await textsAreThere;
    await late.locator("button[data-key=phonebook]").click();
    assert.equal(await late.evaluate(() => document.body.dataset.state), "reconnecting");
    letThrough();
    await late.locator("body[data-state=connected] .idle").waitFor();
    await late.locator("button[data-key=phonebook]").click();
    await late.getByRole("listbox").and(late.locator(":focus")).waitFor();
    await late.locator("button[data-key=home]").click();
    await late.locator(".idle").waitFor();
  });

  test("shows how long a call has been connected", async () => {
    await page.clock.install({ time: 0 });
    await page.reload();
    await page.locator(".idle").waitFor();
    const now = 1e12;
    await page.clock.pauseAt(now);
    const timer = page.locator("#calls [role=timer]");
    await show({ base: people, ...withCalls(call("connected", { since: now - 3_599_000 })) });
    assert.equal(await timer.textContent(), "59:59");
    await page.clock.runFor(5000); // the page counts in seconds of its own
    assert.match(await timer.textContent(), /^1:00:0[34]$/);
    await show({ base: people, ...withCalls(call("connected", { since: now + 60_000 })) });
    assert.equal(await timer.textContent(), "0:00");
    await show({ base: people, ...withCalls(call("alerting")) });
    assert.equal(await timer.textContent(), "");
  });

  test("offers what can be done with a call, by mouse and by keyboard, and keeps the focus there", async () => {
    await show({ base: people, ...twoCalls });
    const bar = page.getByRole("region", { name: "Calls" });
    const second = bar.getByRole("group", { name: "Adams, Bob / Miller, Anna" });
    assert.deepEqual(await second.getByRole("button").allTextContents(), ["Answer", "Reject"]);
    assert.deepEqual(await bar.getByRole("group", { name: "Miller, Anna", exact: true }).getByRole("button").allTextContents(), ["Hang up"]);
    await second.getByRole("button", { name: "Reject" }).click();
    await second.getByRole("button", { name: "Answer" }).focus();
    await page.keyboard.press("Enter");
    await show({ base: people, ...withCalls(twoCalls.signs.calls[0], { ...twoCalls.signs.calls[1], state: "connected", text: "Connected" }) });
    assert.deepEqual(pressed, ["end:8", "answer:8"]);
    assert.equal(await page.evaluate(() => document.activeElement?.getAttribute("data-key")), "end:8");
    await show({ base: people });
    assert.equal(await bar.count(), 0);
    assert.equal(await page.evaluate(() => document.activeElement?.closest("#display") !== null), true);
  });

  test("rings while a call does, if it is asked to", async () => {
    await page.addInitScript(() => {
      globalThis.tones = 0;
      const gain = { setValueAtTime() {}, linearRampToValueAtTime() {} };
      globalThis.AudioContext = class {
        state = "running";
        currentTime = 0;
        async resume() {}
        createGain() { return { gain, connect: (to) => to }; }
        createOscillator() { return { frequency: {}, connect: (to) => to, start() { globalThis.tones += 1; }, stop() {} }; }
      };
    });
    await page.clock.install();
    await page.reload();
    await page.locator(".idle").waitFor();
    const tones = () => page.evaluate(() => globalThis.tones);
    const incoming = { base: people, ...withCalls(call("incoming")) };
    await show(incoming);
    await page.clock.runFor(10_000);
    assert.equal(await tones(), 0);
    await show({ base: people });

    const setting = page.getByRole("button", { name: "Ring on this page" });
    await setting.click();
    await setting.and(page.locator("[aria-pressed=true]")).waitFor();
    assert.equal(await tones(), 2); // how it sounds
    await show(incoming);
    assert.equal(await tones(), 4);
    await page.clock.runFor(3000);
    assert.equal(await tones(), 6);
    await show({ base: people, ...withCalls(call("connected")) });
    await page.clock.runFor(10_000);
    assert.equal(await tones(), 6);

    await page.reload();
    await page.locator(".idle").waitFor();
    await setting.and(page.locator("[aria-pressed=true]")).waitFor();
    await setting.click();
    await setting.and(page.locator("[aria-pressed=false]")).waitFor();
    await show(incoming);
    assert.equal(await tones(), 0);
  });

  test("keeps calls within a narrow page, however long names and numbers are", async () => {
    await page.setViewportSize({ width: 320, height: 800 });
    for (const size of [100, 200]) {
      await page.evaluate((percent) => { document.documentElement.style.fontSize = `${percent}%`; }, size);
      await show({ base: people, ...withCalls(call("incoming", { name: "W".repeat(120), number: "1".repeat(200) }), call("failed", { id: "8", name: "عبد الله", text: "No such number" })) });
      assert.equal(await page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth), 0);
      const { height } = await page.locator(".one").first().boundingBox();
      assert.ok(height < 600, `${height}`);
    }
  });

  test("leaves its parts in their places whether there are calls or not", async () => {
    await page.setViewportSize({ width: 1000, height: 700 });
    const order = async () => {
      const tops = [];
      for (const part of [".display", ".help", ".settings"])
        tops.push((await page.locator(part).boundingBox()).y);
      return tops;
    };
    for (const frame of [{ base: people }, { base: people, ...twoCalls }]) {
      await show(frame);
      const tops = await order();
      assert.deepEqual(tops, [...tops].sort((a, b) => a - b));
    }
  });

  test("says what becomes of a call to those who cannot see it, once", async () => {
    const said = page.locator("#callslive");
    assert.equal(await said.getAttribute("role"), "alert");
    await show({ base: people, ...withCalls(call("incoming", { text: "Incoming call" })) });
    assert.equal(await said.textContent(), "Miller, Anna, 030 2222, Incoming call");
    await said.evaluate((element) => { element.dataset.seen = "yes"; element.firstElementChild.dataset.seen = "yes"; });
    await show({ base: form(field("text", 0)), ...withCalls(call("incoming", { text: "Incoming call" })) });
    assert.equal(await said.locator("[data-seen]").count(), 1);
    await show({ base: people, ...withCalls(call("failed", { text: "Busy" })) });
    assert.equal(await said.textContent(), "Miller, Anna, 030 2222, Busy");
  });

  test("shows on the lamp of the hook key that a call rings or is connected, or the handset lifted", async () => {
    const lamp = async () => page.locator("#lamp").getAttribute("data-lamp");
    for (const [signs, shown] of [
      [twoCalls.signs, "ringing"],
      [withCalls(call("connected")).signs, "connected"],
      [withCalls(call("held")).signs, "connected"],
      [{ offHook: true, dialPad: false, calls: [call("alerting")] }, "offHook"],
      [withCalls().signs, null],
    ]) {
      await show({ base: people, signs });
      assert.equal(await lamp(), shown);
    }
  });

  test("covers no row, no key and no tab with calls, in no window", async () => {
    const tabbed = { base: people, tabs: ["Contacts", "Directory"], currentTab: 0, ...twoCalls };
    for (const [width, height, size] of [[520, 1000, 100], [320, 640, 100], [1000, 700, 100], [520, 700, 200]]) {
      await page.setViewportSize({ width, height });
      await page.evaluate((percent) => { document.documentElement.style.fontSize = `${percent}%`; }, size);
      await show(tabbed);
      for (const part of await page.locator("#calls button, .tab, [role=option], #soft button, [data-key=ok], [data-key='5']").all()) {
        await part.scrollIntoViewIfNeeded();
        assert.equal(await part.evaluate((element) => {
          const { left, top, width: wide, height: high } = element.getBoundingClientRect();
          return element.contains(document.elementFromPoint(left + wide / 2, top + high / 2));
        }), true, `${width}x${height} ${size} %: ${await part.textContent()}`);
      }
      const wide = await page.evaluate(() => document.documentElement.scrollWidth);
      assert.ok(wide <= width, `${wide} of ${width}`);
    }
  });

  test("shows a picture, and a placeholder for one that is lost or cannot be shown", async () => {
    await show(FRAMES["a menu that shows whom it is about"]);
    const picture = page.locator("#popup img.picture");
    await picture.waitFor();
    assert.equal(await picture.getAttribute("alt"), "Picture");
    const { width, height } = await picture.boundingBox();
    assert.equal(width, height);
    await show(FRAMES["a menu whose picture is lost"]);
    await page.locator("#popup .picture.missing").waitFor();
    assert.equal(await picture.count(), 0);
    const placeholder = await page.locator("#popup .picture.missing").boundingBox();
    assert.deepEqual([placeholder.width, placeholder.height], [width, height]);
    await show({ base: form(field("selection", 0, { value: "gone.png", image: "gone.png", choice: 0, choices: 1, focused: true })) });
    await page.locator("#base .picture.missing").waitFor();
    assert.equal(await page.locator("#base img").count(), 0);
  });

  test("calls a field invalid that holds more than it may", async () => {
    await show(FRAMES["a value that is too long and one that cannot be changed"]);
    assert.equal(await page.getByRole("textbox", { name: "Field 0" }).getAttribute("aria-invalid"), "true");
    assert.equal(await page.getByRole("textbox", { name: "Field 1" }).getAttribute("aria-invalid"), null);
    assert.equal(await page.getByRole("textbox", { name: "Field 1" }).getAttribute("readonly"), "true");
    await expectText(page.locator(".count[data-full=true]"), "9/5");
  });

  test("leaves a field alone in which letters are being composed, and then shows the telephone's truth", async () => {
    const devtools = await page.context().newCDPSession(page);
    const shown = (value) => ({ base: form(field("text", 0, { value, cursor: value.length, focused: true })) });
    await show(shown("Re"));
    const input = page.getByRole("textbox", { name: "Field 0" });
    await input.and(page.locator(":focus")).waitFor();
    await devtools.send("Input.imeSetComposition", { text: "´", selectionStart: 1, selectionEnd: 1 });
    await show(shown("Re"));
    assert.equal(await input.inputValue(), "Re´");
    await show(shown("Rex"));
    assert.equal(await input.inputValue(), "Re´");
    await devtools.send("Input.imeSetComposition", { text: "", selectionStart: 0, selectionEnd: 0 });
    assert.equal(await input.inputValue(), "Rex");
  });

  test("gives the focus to the first field that is wrong, when the message about it is gone", async () => {
    const fields = (focused) => form(...[0, 1, 2].map((position) => field("text", position, { focused: position === focused, cursor: 0 })));
    await show({ base: fields(2) });
    await page.getByRole("textbox", { name: "Field 2" }).and(page.locator(":focus")).waitFor();
    await show({ base: fields(0), popup: screen("notification", { id: 2, type: 2, text: "A contact needs a name." }) });
    await popup("alert").and(page.locator(":focus")).waitFor();
    await show({ base: fields(0) });
    await page.getByRole("textbox", { name: "Field 0" }).and(page.locator(":focus")).waitFor();
  });

  test("keeps a menu's element while its selection moves", async () => {
    const menu = (selected) => ({ base: people, popup: screen("menu", { id: 2, rows: ["Dial", "Details"].map((text, i) => row(text, i, { selected: i === selected })) }) });
    await show(menu(0));
    const list = await popup("menu").elementHandle();
    await show(menu(1));
    assert.equal(await list.evaluate((menuNow) => menuNow.isConnected && menuNow === document.activeElement), true);
    assert.equal(await list.getAttribute("aria-activedescendant"), "choice-1");
  });

  test("keeps the focus where it is when fields scroll", async () => {
    const part = (first, focused) => ({ ...form(...[0, 1, 2].map((i) => field("text", first + i, { focused: first + i === focused, cursor: 0 }))), rowCount: 9 });
    await show({ base: part(0, 2) });
    await page.getByRole("textbox", { name: "Field 2" }).and(page.locator(":focus")).waitFor();
    const kept = await page.getByRole("textbox", { name: "Field 2" }).elementHandle();
    await show({ base: part(1, 2) });
    assert.equal(await kept.evaluate((input) => input === document.activeElement), true);
    await show({ base: part(2, 4) });
    await page.getByRole("textbox", { name: "Field 4" }).and(page.locator(":focus")).waitFor();
  });
});
