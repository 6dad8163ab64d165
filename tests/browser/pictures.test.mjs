// Pictures from the profile's folder to the screen: what the telephone serves is what the browser shows.

import assert from "node:assert/strict";
import { readdirSync, rmSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { fileURLToPath } from "node:url";
import { Telephone, expectText, openBrowser, openPage } from "./telephone.mjs";

const DEMO = fileURLToPath(new URL("../../demo/contacts.vcf", import.meta.url));
const FIELDS_ABOVE_THE_PICTURE = 14;

describe("a contact's picture", () => {
  let telephone;
  let browser;
  let page;
  before(async () => {
    telephone = new Telephone();
    telephone.run("import", DEMO);
    await telephone.start();
    browser = await openBrowser();
  });
  after(async () => {
    await browser?.close();
    await telephone?.end();
  });

  const press = async (...keys) => {
    for (const key of keys)
      await page.keyboard.press(key);
  };
  // Its width tells that it was fetched and decoded.
  const width = (picture) => picture.evaluate(async (image) => {
    await image.decode();
    return image.naturalWidth;
  });
  const openMenu = async () => {
    page = await openPage(browser, telephone);
    await page.locator("button[data-key=phonebook]").click();
    await page.getByRole("option", { selected: true }).waitFor();
    await press("a", "b", "e", "ArrowRight");
    await expectText(page.locator("#popup"), "Abel, Greta");
  };

  test("heads the contact's menu and stands in its form", async () => {
    await openMenu();
    assert.equal(await width(page.locator("#popup img.picture")), 96);
    await press("ArrowDown", "Enter");
    await page.getByRole("textbox", { name: "Last name" }).waitFor();
    await press(...Array(FIELDS_ABOVE_THE_PICTURE).fill("ArrowDown"));
    assert.equal(await width(page.locator("img.picture")), 96);
    assert.deepEqual(page.problems, []);
    await press("Escape");
    await page.getByRole("option", { selected: true }).waitFor();
    await press("Home");
  });

  test("leaves a placeholder when its file is gone", async () => {
    const folder = join(telephone.profile, "pictures");
    for (const file of readdirSync(folder))
      rmSync(join(folder, file));
    await openMenu();
    await page.locator("#popup .picture.missing").waitFor();
    assert.deepEqual(page.problems, []);
  });
});
