// What goes into the page and out of it: links, files, outlines, and what the browser keeps.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { cpSync, readdirSync, readFileSync, renameSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { deflateRawSync } from "node:zlib";
import type { SceneFile } from "voxam";
import { dist, serve, Visit } from "./browser.js";
import { address, browser, desktop, folder, program, root, savedScene } from "./site.js";

const sceneText = (name: string) => readFileSync(join(root, "scenes", name), "utf8");

const pathOf = (svg: string): number[] =>
    (/ d="([^"]*)"/.exec(svg)?.[1]?.match(/[\d.]+/g) ?? []).map(Number);

/** Every x and y of a DXF file's corners, in order. */
const cornersOf = (dxf: string): number[] =>
    [...dxf.matchAll(/VERTEX\r?\n[\s\S]*?\n *10\r?\n([-\d.]+)\r?\n *20\r?\n([-\d.]+)/g)].flatMap(
        ([, x, y]) => [Number(x), Number(y)],
    );

function assertClose(values: number[], expected: number[]): void {
    assert.ok(expected.length > 20);
    assert.equal(values.length, expected.length);
    for (const [i, value] of expected.entries()) {
        assert.ok(Math.abs((values[i] ?? NaN) - value) < 1e-2, `${i}: ${values[i]}, not ${value}`);
    }
}

test("the whole of a symmetric plate is shown, and outlined at its size", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const grid = { width: 30, height: 20 };
    const common = { grid, elementSize: 5, subdivision: 2, meshFactor: 2 };
    const cases: (Partial<SceneFile> & { box: string; other: [number, number] })[] = [
        {
            symmetry: "left",
            iterations: 12,
            loads: [{ x: 0, y: 0, fy: 1 }],
            supports: [
                { x: 0, y: [0, 20], fix: "x" },
                { x: 30, y: 20, fix: "y" },
            ],
            box: "0 0 300 100",
            other: [-15, 10],
        },
        {
            symmetry: "bottom",
            // A different number tells this run from the previous one.
            iterations: 13,
            loads: [{ x: 30, y: 20, fx: 1 }],
            supports: [
                { x: [0, 30], y: 20, fix: "y" },
                { x: 0, y: 0, fix: "xy" },
            ],
            box: "0 0 150 200",
            other: [15, 30],
        },
    ];
    for (const { box, other, ...half } of cases) {
        const scene = { ...common, volumeFraction: 0.5, ...half };
        const [file = "", svg = "", dxf = ""] = ["json", "svg", "dxf"].map((ending) =>
            join(folder, `half.${ending}`),
        );
        writeFileSync(file, JSON.stringify(scene));
        execFileSync(program, ["optimise", file, "--quiet", "--outline", svg, "--outline", dxf]);
        await visit.open("half.json", JSON.stringify(scene));
        await visit.says("iteration", new RegExp(`^${half.iterations}$`));
        await visit.reaches("settled");
        const [own, native] = [await visit.download("svg"), readFileSync(svg, "utf8")];
        for (const text of [own, native]) assert.ok(text.includes(`viewBox="${box}"`), text);
        assertClose(pathOf(own), pathOf(native));
        assertClose(cornersOf(await visit.download("dxf")), cornersOf(readFileSync(dxf, "utf8")));
        assert.equal(await visit.opacity(15, 10), 1);
        const dimmed = await visit.opacity(...other);
        assert.ok(dimmed > 0.2 && dimmed < 0.6, `the other half has an opacity of ${dimmed}`);
    }
    assert.deepEqual(await visit.end(), []);
});

test("the outline of a drawing is that of the drawing", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.forms(2);
    await visit.page.click("#mode-draw");
    await visit.drag([5, 20], [40, 20]);
    const corners = pathOf(await visit.download("svg"));
    const ys = corners.filter((_, i) => i % 2);
    const xs = corners.filter((_, i) => i % 2 === 0);
    assert.ok(Math.min(...ys) > 17 && Math.max(...ys) < 23, "no higher than the brush");
    assert.ok(Math.min(...xs) > 2 && Math.max(...xs) > 40 && Math.max(...xs) < 43);
    assert.deepEqual(await visit.end(), []);
});

test("a damaged link says so, and the page works", async () => {
    const link = (text: string) => `#s=${deflateRawSync(text).toString("base64url")}`;
    const links: [string, RegExp][] = [
        ["#s=broken", /link is damaged/],
        ["#s=q1Y", /link is damaged/],
        ["#s=aGVsbG8=", /link is damaged/],
        [link("7".repeat(60_000_000)), /link is damaged/],
        [link('{"title": "no scene"}'), /link is damaged.*shared-scene\.json: grid/],
        ["#other", /^$/],
    ];
    for (const [fragment, message] of links) {
        const visit = await Visit.start(browser, address, { ...desktop, fragment });
        await visit.forms(3);
        assert.match(await visit.text("problem"), message, fragment.slice(0, 20));
        assert.equal(await visit.page.locator("#problem").isVisible(), message.source !== "^$");
        assert.deepEqual(await visit.end(), []);
    }
});

test("work survives another page, a reload and another scene", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const { page } = visit;
    await visit.forms(5);
    await visit.drag([60, 18], [60, 8]);
    await page.click("#mode-draw");
    await visit.drag([10, 10], [40, 10]);
    const drawn = await savedScene(visit);
    await page.click("#why-link");
    await page.click("text=Back to the plate");
    await page.locator("#draw-panel").waitFor();
    await visit.says("rival", /\d/);
    assert.deepEqual(await savedScene(visit), drawn, "after another page");
    await page.click("#mode-optimise");
    for (const volume of ["41", "40"]) await page.locator("#volume").fill(volume);
    await page.click("#mode-draw");
    assert.deepEqual(await savedScene(visit), drawn, "after the material went there and back");
    await page.click("#mode-optimise");
    const edited = await savedScene(visit);
    await page.click("#share-button");
    await page.locator("#share[open]").waitFor();
    const shared = await page.locator("#share-link").inputValue();
    await page.keyboard.press("Escape");
    await visit.open("wheel.json", sceneText("wheel.json"));
    await page.waitForFunction(() => document.title.startsWith("Wheel"));
    assert.equal(new URL(page.url()).hash, "", "the link was that of another scene");
    await page.reload();
    await visit.forms(2);
    assert.match(await page.title(), /^Wheel/);
    await visit.open("pipe.json", sceneText("pipe.json"));
    await page.waitForFunction(() => !document.title.startsWith("Wheel"));
    await page.keyboard.press("Control+z");
    assert.match(await page.title(), /^Wheel/);
    assert.deepEqual(
        (await savedScene(visit)).grid,
        (JSON.parse(sceneText("wheel.json")) as SceneFile).grid,
    );
    await page.goto(shared);
    await page.reload();
    await page.waitForFunction(() => !document.title.startsWith("Wheel"));
    assert.deepEqual(await savedScene(visit), edited);
    assert.deepEqual(await visit.end(), []);
});

test("without a clipboard the link can be copied by hand", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.page.evaluate(() =>
        Object.defineProperty(navigator, "clipboard", { value: undefined }),
    );
    await visit.forms(2);
    await visit.page.click("#share-button");
    await visit.page.click("#share-copy");
    await visit.says("share-copy", /Ctrl\+C/);
    assert.deepEqual(await visit.end(), []);
});

test("a new version takes over as a whole, past the browser's cache", async () => {
    const site = join(folder, "site");
    cpSync(dist, site, { recursive: true });
    const { server, address } = await serve(site, 600);
    const context = await browser.newContext(desktop);
    const visit = async () => {
        const page = await context.newPage();
        await page.goto(address);
        await page.waitForFunction(() => document.getElementById("iteration")?.textContent !== "–");
        await page.evaluate(() => navigator.serviceWorker.ready);
        await page.waitForFunction(() => navigator.serviceWorker.controller !== null);
        return page;
    };
    const scriptOf = (html: string) => /assets\/index-[^"]*\.js/.exec(html)?.[0] ?? "";
    const first = await visit();
    const old = scriptOf(await first.content());
    // The next version: its script has another name, and the old one is gone.
    const fresh = old.replace(".js", "-next.js");
    renameSync(join(site, old), join(site, fresh));
    for (const name of ["index.html", "service-worker.js"]) {
        const text = readFileSync(join(site, name), "utf8");
        const version = text.replace(/voxam-[0-9a-f]{12}/, "voxam-next").replaceAll(old, fresh);
        writeFileSync(join(site, name), version);
    }
    assert.ok(readdirSync(join(site, "assets")).some((name) => fresh.endsWith(name)));
    await first.evaluate(async () => {
        const registration = await navigator.serviceWorker.ready;
        await registration.update();
    });
    await first.waitForFunction(async () => {
        const registration = await navigator.serviceWorker.ready;
        return registration.waiting !== null;
    });
    await first.close();
    await context.newPage().then((page) => page.waitForTimeout(300));
    const second = await visit();
    assert.equal(scriptOf(await second.content()), fresh);
    await context.setOffline(true);
    await second.reload();
    await second.waitForFunction(() => document.getElementById("iteration")?.textContent !== "–");
    await context.close();
    server.close();
});
