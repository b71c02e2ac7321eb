// The page in Chromium, by real input.
import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import type { SceneFile } from "voxam";
import { Visit } from "./browser.js";
import { address, browser, desktop, folder, program, root, savedScene } from "./site.js";

const phone = {
    viewport: { width: 390, height: 844 },
    deviceScaleFactor: 2,
    hasTouch: true,
    isMobile: true,
    colorScheme: "light" as const,
};

test("a structure forms at once, follows the hand, settles and rests", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.forms();
    assert.ok(await visit.page.locator("#invitation").isVisible());
    await visit.reaches("settled");
    const rest = await visit.iteration();
    await visit.page.waitForTimeout(700);
    assert.equal(await visit.iteration(), rest);
    assert.match(await visit.text("announcement"), /^Settled\. Compliance \d/);
    await visit.page.locator("#compliance-note", { hasText: "in black and white" }).waitFor();
    const [above, below] = [await visit.filled(45, 0, 60, 15), await visit.filled(45, 25, 60, 40)];
    assert.ok(Math.abs(above - below) < 0.05, "symmetric at first");
    await visit.drag([60, 18], [60, 6]);
    assert.ok(!(await visit.page.locator("#invitation").isVisible()));
    await visit.forms(rest + 25);
    const moved = await visit.filled(45, 0, 60, 15);
    assert.ok(moved > above + 0.1, `${moved} of the upper corner is filled, before ${above}`);
    const { loads } = await savedScene(visit);
    assert.deepEqual(loads, [{ x: 60, y: 8, fy: 1 }]);
    await visit.page.keyboard.press("Control+z");
    assert.deepEqual((await savedScene(visit)).loads, [{ x: 60, y: 20, fy: 1 }]);
    await visit.page.keyboard.press("Control+y");
    assert.equal((await savedScene(visit)).loads[0]?.y, 8);
    assert.deepEqual(await visit.end(), []);
});

test("every tool works by mouse, and loads by keys", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const { page } = visit;
    await visit.forms(10);
    await page.keyboard.press("4");
    await visit.drag([20, 4], [50, 4]);
    await page.keyboard.press("5");
    await visit.drag([10, 36], [25, 36]);
    await page.getByLabel("Solid, second kind").check();
    await visit.drag([30, 36], [40, 36]);
    await page.keyboard.press("6");
    await visit.drag([30, 20], [33, 20]);
    await page.keyboard.press("3");
    await page.getByLabel("Roller, slides sideways").check();
    await visit.drag([55, 40], [60, 40]);
    await page.keyboard.press("2");
    await visit.drag([30, 30], [31, 30]);
    const scene = await savedScene(visit);
    assert.ok(!Array.isArray(scene.passive) && scene.passive?.void && scene.passive.solid);
    assert.ok(scene.passive.secondSolid && scene.blob);
    assert.deepEqual(scene.supports.at(-1), { x: [55, 60], y: 40, fix: "y" });
    assert.deepEqual(scene.loads[1], { x: 31, y: 30, fy: 1 });
    await visit.forms((await visit.iteration()) + 15);
    assert.ok((await visit.filled(22, 3.3, 48, 4.7)) < 0.25, "void is empty but for its hatching");
    await page.keyboard.press("7");
    await visit.drag([31, 30], [31, 30]);
    await visit.drag([18, 4], [52, 4]);
    const erased = await savedScene(visit);
    assert.equal(erased.loads.length, 1);
    assert.ok(!Array.isArray(erased.passive) && !erased.passive?.void);
    await page.locator("[data-load='0']").focus();
    for (const key of ["ArrowUp", "Shift+ArrowLeft", "]"]) await page.keyboard.press(key);
    const [load] = (await savedScene(visit)).loads;
    assert.deepEqual([load?.x, load?.y], [55, 19]);
    assert.ok(Math.abs(Math.hypot(load?.fx ?? 0, load?.fy ?? 0) - 1) < 1e-5, "magnitude is kept");
    assert.ok((load?.fx ?? 0) < -0.2);
    await page.locator("#plate").focus();
    await page.keyboard.press("4");
    for (const key of ["ArrowRight", "Enter"]) await page.keyboard.press(key);
    const painted = await savedScene(visit);
    assert.ok(!Array.isArray(painted.passive) && painted.passive?.void);
    await page.getByText("Grid", { exact: true }).click();
    await page.getByLabel("Width").fill("30");
    await page.getByLabel("Height").fill("20");
    await page.getByText("Use this grid").click();
    await visit.forms(2);
    const coarse = await savedScene(visit);
    assert.deepEqual(coarse.grid, { width: 30, height: 20 });
    assert.deepEqual([coarse.loads[0]?.x, coarse.supports.at(-1)?.y], [28, 20]);
    await page.click("#undo");
    assert.deepEqual(await savedScene(visit), painted);
    assert.deepEqual(await visit.end(), []);
});

test("an edit after a change of the timeline goes into that change", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const file = join(folder, "timeline.json");
    const scene = {
        grid: { width: 30, height: 20 },
        volumeFraction: 0.4,
        iterations: 12,
        loads: [{ x: 30, y: 10, fy: 1 }],
        supports: [{ x: 0, y: [0, 20], fix: "xy" }],
        timeline: [
            { iteration: 5, supports: [{ x: 0, y: 10, fix: "xy" }] },
            {
                iteration: 9,
                supports: [{ x: 0, y: [0, 20], fix: "xy" }],
                loads: [{ x: 30, y: 15, fy: 1 }],
            },
        ],
    };
    writeFileSync(file, JSON.stringify(scene));
    await visit.page.setInputFiles("#open-file", file);
    await visit.says("iteration", /^12$/);
    await visit.reaches("settled");
    await visit.page
        .locator("#problem", { hasText: "resumes with the change at iteration 9" })
        .waitFor();
    await visit.drag([30, 14], [30, 4]);
    const { loads, timeline } = await savedScene(visit);
    assert.deepEqual(loads, [{ x: 30, y: 10, fy: 1 }]);
    assert.deepEqual(timeline?.[1]?.loads, [{ x: 30, y: 5, fy: 1 }]);
    await visit.page.click("#undo");
    assert.deepEqual((await savedScene(visit)).timeline?.[1]?.loads, scene.timeline[1]?.loads);
    await visit.page.locator("#view-energies").check();
    await visit.page.locator("#view-deformed").check();
    await visit.forms(20);
    assert.deepEqual(await visit.end(), []);
});

test("links and files are scenes, which the program runs to the same outline", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const scene = JSON.parse(
        readFileSync(join(root, "scenes/l-bracket.json"), "utf8"),
    ) as SceneFile;
    const file = join(folder, "short.json");
    writeFileSync(
        file,
        JSON.stringify({ ...scene, grid: { width: 80, height: 80 }, iterations: 15 }),
    );
    await visit.page.setInputFiles("#open-file", file);
    await visit.page.waitForFunction(() => document.title.startsWith("L-bracket"));
    await visit.reaches("settled");
    assert.equal(await visit.iteration(), 15);
    const numbers = (text: string) =>
        (/ d="([^"]*)"/.exec(text)?.[1]?.match(/[\d.]+/g) ?? []).map(Number);
    const outline = numbers(await visit.download("svg"));
    const native = join(folder, "native.svg");
    writeFileSync(file, await visit.download("save"));
    execFileSync(program, ["optimise", file, "--quiet", "--outline", native]);
    const expected = numbers(readFileSync(native, "utf8"));
    assert.equal(outline.length, expected.length);
    for (const [i, value] of expected.entries())
        assert.ok(Math.abs((outline[i] ?? NaN) - value) < 2e-3);
    assert.match(await visit.download("dxf"), /^0\r\nSECTION[\s\S]*POLYLINE[\s\S]*EOF\r\n$/);
    await visit.page.click("#share-button");
    await visit.page.locator("#share[open]").waitFor();
    const link = new URL(await visit.page.locator("#share-link").inputValue());
    assert.ok(link.hash.length > 50 && link.hash.length < 700);
    const guest = await Visit.start(browser, address, { ...desktop, fragment: link.hash });
    await guest.forms(2);
    assert.deepEqual(await savedScene(guest), JSON.parse(readFileSync(file, "utf8")));
    await guest.page.evaluate(() => (location.hash = "#s=broken"));
    await guest.page.locator("#problem", { hasText: "link is damaged" }).waitFor();
    assert.deepEqual(await guest.end(), []);
    writeFileSync(file, '{"grid": {}}');
    await visit.page.keyboard.press("Escape");
    await visit.page.setInputFiles("#open-file", file);
    await visit.page.locator("#problem", { hasText: "short.json: " }).waitFor();
    assert.deepEqual(await visit.end(), []);
});

test("a drawing is scored within its budget, and keep-outs bind the player", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.forms(5);
    await visit.page.keyboard.press("4");
    await visit.drag([30, 20], [30, 20]);
    await visit.page.click("#mode-draw");
    await visit.says("rival", /\d/);
    await visit.drag([0, 3], [60, 20]);
    await visit.says("percent", /\d/);
    assert.ok(parseFloat(await visit.text("percent")) < 5, "a single bar bends");
    await visit.drag([0, 37], [60, 20]);
    await visit.page.waitForFunction(
        () => parseFloat(document.getElementById("percent")?.textContent ?? "") > 5,
    );
    const percent = parseInt(await visit.text("percent"));
    assert.ok(percent > 20 && percent < 110, `${percent} %`);
    assert.ok(parseInt(await visit.text("best")) >= percent);
    await visit.page.locator("#show-deformed").uncheck();
    await visit.page.locator("#show-energies").uncheck();
    await visit.drag([20, 20], [40, 20], [40, 22], [20, 22]);
    assert.ok((await visit.filled(29.4, 19.4, 30.6, 20.6)) < 0.3, "the void stays empty");
    await visit.page.locator("#brush").fill("8");
    for (let y = 2; y < 40; y += 6) await visit.drag([2, y], [58, y]);
    assert.equal(await visit.text("budget"), "0 %");
    assert.ok((await visit.filled(0.2, 0.2, 59.8, 39.8)) < 0.5, "no more than the budget");
    await visit.page.click("#undo");
    const best = parseInt(await visit.text("best"));
    assert.ok(best >= percent);
    await visit.page.click("#clear");
    await visit.page.locator("#percent", { hasText: "–" }).waitFor();
    assert.ok(parseInt(await visit.text("best")) >= best);
    await visit.page.click("#undo");
    await visit.page.click("#share-button");
    await visit.page.locator("#share[open]").waitFor();
    const { hash } = new URL(await visit.page.locator("#share-link").inputValue());
    const guest = await Visit.start(browser, address, { ...desktop, fragment: hash });
    await guest.says("percent", /\d/);
    const theirs = parseFloat(await guest.text("percent"));
    await visit.says("percent", /\d/);
    assert.equal(parseFloat(await visit.text("percent")), theirs, "a link brings the drawing");
    assert.deepEqual([...(await visit.end()), ...(await guest.end())], []);
});

test("a pen drags a load and draws", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.forms(2);
    const protocol = await visit.page.context().newCDPSession(visit.page);
    const draw = async (...places: [number, number][]) => {
        for (const [i, place] of [...places, places.at(-1) ?? [0, 0]].entries()) {
            const at = await visit.at(...place);
            const isLast = i === places.length;
            const type = i === 0 ? "mousePressed" : isLast ? "mouseReleased" : "mouseMoved";
            const pen = { pointerType: "pen", button: "left", buttons: isLast ? 0 : 1 } as const;
            await protocol.send("Input.dispatchMouseEvent", { type, ...at, ...pen, force: 0.6 });
        }
    };
    await draw([60, 18], [60, 12], [60, 8]);
    assert.equal((await savedScene(visit)).loads[0]?.y, 10);
    await visit.page.click("#mode-draw");
    await draw([0, 4], [30, 4], [58, 12]);
    const { densities } = await savedScene(visit);
    const rows = densities as string[];
    assert.equal(rows.length, 80);
    assert.ok(rows.join("").split("#").length > 200, "the pen leaves material");
    assert.deepEqual(await visit.end(), []);
});

test("touch drags, pinches and scrolls on a phone", async () => {
    const visit = await Visit.start(browser, address, phone);
    await visit.forms();
    const touch = await visit.page.context().newCDPSession(visit.page);
    const send = (
        type: "touchStart" | "touchMove" | "touchEnd",
        touchPoints: { x: number; y: number }[],
    ) => touch.send("Input.dispatchTouchEvent", { type, touchPoints });
    const [from, to] = [await visit.at(60, 18), await visit.at(60, 8)];
    await send("touchStart", [from]);
    await send("touchMove", [{ x: from.x, y: (from.y + to.y) / 2 }]);
    await send("touchMove", [to]);
    await send("touchEnd", []);
    assert.equal((await savedScene(visit)).loads[0]?.y, 10);
    const scale = async () =>
        (await visit.page.locator("#stage").getAttribute("data-place"))?.split(" ")[2];
    const before = Number(await scale());
    const middle = await visit.at(30, 20);
    const spread = (by: number) => [
        { x: middle.x - by, y: middle.y },
        { x: middle.x + by, y: middle.y },
    ];
    await send("touchStart", spread(30));
    for (const by of [40, 60, 90]) await send("touchMove", spread(by));
    await send("touchEnd", []);
    await visit.page.waitForTimeout(100);
    assert.ok(Number(await scale()) > 2.4 * before);
    await visit.page.tap("#fit");
    await visit.page.waitForTimeout(100);
    assert.equal(Number(await scale()), before);
    await visit.page.tap("#mode-draw");
    await visit.says("rival", /\d/);
    await visit.drag([0, 20], [60, 10]);
    const percent = await visit.says("percent", /\d/);
    await send("touchStart", [middle]);
    await send("touchStart", spread(30));
    await send("touchEnd", []);
    assert.equal(await visit.says("percent", /\d/), percent, "a pinch is no stroke");
    const overflow = await visit.page.evaluate(
        () => document.documentElement.scrollWidth - innerWidth,
    );
    assert.equal(overflow, 0);
    assert.deepEqual(await visit.end(), []);
});

test("after the first visit the page works without a network", async () => {
    const visit = await Visit.start(browser, address, desktop);
    await visit.forms(2);
    await visit.page.evaluate(() => navigator.serviceWorker.ready);
    await visit.page.waitForFunction(() => navigator.serviceWorker.controller !== null);
    await visit.page.context().setOffline(true);
    await visit.page.reload();
    await visit.forms(5);
    await visit.page.click("#gallery-button");
    await visit.page.click(".exhibit >> nth=0");
    await visit.forms(3);
    assert.deepEqual(await visit.end(), []);
});

test("nothing serious stands in the way of anybody, in light and in dark", async () => {
    for (const options of [desktop, { ...phone, colorScheme: "dark" as const }]) {
        const visit = await Visit.start(browser, address, { ...options, reducedMotion: "reduce" });
        await visit.forms(3);
        assert.deepEqual(await visit.barriers(), []);
        await visit.page.click("#gallery-button");
        assert.deepEqual(await visit.barriers(), []);
        await visit.page.keyboard.press("Escape");
        await visit.page.click("#mode-draw");
        assert.deepEqual(await visit.barriers(), []);
        await visit.page.goto(`${address}why.html`);
        assert.deepEqual(await visit.barriers(), []);
        assert.deepEqual(await visit.end(), []);
    }
});

const held = [{ x: 0, y: [0, 20] as [number, number], fix: "xy" as const }];
const small: SceneFile = {
    grid: { width: 30, height: 20 },
    volumeFraction: 0.4,
    iterations: 20,
    loads: [{ x: 30, y: 10, fy: 1 }],
    supports: held,
};

test("the state is that of the run, whatever is pressed", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const { page } = visit;
    const pauses = async (state: string) => {
        await page.click("#pause");
        await visit.reaches(state === "stopped" ? "stopped" : "paused");
        await page.click("#pause");
        await visit.reaches(state);
    };
    const hole = [{ x: 15, y: 10, radius: 3 }];
    await visit.open("small.json", JSON.stringify({ ...small, blob: hole }));
    await visit.says("iteration", /^20$/);
    await visit.reaches("settled");
    await pauses("settled");
    await page.click("#pause");
    await page.getByLabel("Let the hole find its place").check();
    await page.waitForTimeout(200);
    await visit.reaches("paused");
    await page.click("#pause");
    await visit.forms(25);
    // A scene that cannot run shows nothing of the one before it.
    await visit.open("faulty.json", JSON.stringify({ ...small, loads: [{ x: 0, y: 5, fy: 1 }] }));
    await visit.reaches("stopped");
    await visit.says("problem", /^Every force acts where/);
    await pauses("stopped");
    await page.waitForTimeout(300);
    for (const id of ["compliance", "iteration", "filled"]) assert.equal(await visit.text(id), "–");
    assert.equal(await visit.filled(2, 1, 28, 19), 0);
    await page.click("#undo");
    await visit.forms(5);
    assert.deepEqual(await visit.end(), []);
});

test("keys do what they say wherever the focus is, and are heard", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const { page } = visit;
    await visit.forms(2);
    const tool = () => page.locator("#tools [aria-pressed=true]:visible").textContent();
    await page.locator("#volume").focus();
    await page.keyboard.press("ArrowRight");
    assert.equal(await visit.text("volume-text"), "41 %");
    await page.keyboard.press("Control+z");
    assert.equal(await visit.text("volume-text"), "40 %");
    await page.locator("#view-energies").focus();
    await page.keyboard.press("4");
    assert.equal(await tool(), "Void");
    await page.getByText("Grid", { exact: true }).focus();
    await page.keyboard.press("Space");
    assert.ok(await page.locator("#grid-detail").isVisible());
    await page.locator("#grid-detail").focus();
    for (const key of ["3", "Space", "Escape"]) await page.keyboard.press(key);
    assert.equal(await tool(), "Void");
    assert.equal(await page.locator("#pause").getAttribute("aria-label"), "Pause");
    // A load: heard when it moves, erased by Enter, and never the last one.
    await page.keyboard.press("Escape");
    await page.locator("#plate").focus();
    for (const key of ["2", "ArrowLeft", "Enter"]) await page.keyboard.press(key);
    await page.locator("[data-load='1']").focus();
    await page.keyboard.press("ArrowLeft");
    await visit.says("announcement", /^Load 2 at x 28, y 20: 1 down$/);
    for (const key of ["7", "Enter"]) await page.keyboard.press(key);
    await visit.says("announcement", /^Load 2 removed/);
    assert.ok(await page.locator("[data-load='0']").evaluate((e) => e === document.activeElement));
    await page.keyboard.press("Delete");
    await visit.says("problem", /only load/);
    assert.equal((await savedScene(visit)).loads.length, 1);
    // Escape takes a drag back.
    await page.keyboard.press("1");
    const [from, to] = [await visit.at(60, 18), await visit.at(60, 8)];
    await page.mouse.move(from.x, from.y);
    await page.mouse.down();
    await page.mouse.move(to.x, to.y, { steps: 4 });
    await page.keyboard.press("Escape");
    await page.mouse.up();
    assert.equal((await savedScene(visit)).loads[0]?.y, 20);
    await page.click("#file-button");
    await page.keyboard.press("End");
    assert.ok(await page.locator("#file-dxf").evaluate((e) => e === document.activeElement));
    await page.keyboard.press("Tab");
    assert.ok(!(await page.locator("#file-menu").isVisible()));
    assert.deepEqual(await visit.end(), []);
});

test("the page warns as the program does, in its own words", async () => {
    const visit = await Visit.start(browser, address, desktop);
    const { page } = visit;
    const coarse = join(folder, "coarse.json");
    const bridge = readFileSync(join(root, "scenes/bridge.json"), "utf8");
    const { densities: _densities, ...scene } = JSON.parse(bridge) as SceneFile;
    const text = JSON.stringify({ ...scene, volumeFraction: 0.25, iterations: 100 });
    writeFileSync(coarse, text);
    const report = spawnSync(program, ["optimise", coarse], { encoding: "utf8" });
    const told = report.stderr.match(/at x \d+, y \d+|[\d.]+ % instead of [\d.]+ %/g) ?? [];
    assert.equal(told.length, 3, report.stderr);
    await visit.open("coarse.json", text);
    const warning = await visit.says("warnings", /instead of/);
    for (const part of told) assert.ok(warning.includes(part), warning);
    assert.match(warning, /^Load 1: as drawn, acts where there is no material/);
    assert.doesNotMatch(warning, /passive|"|volumeFraction/);
    // The rival has finer cells, in which its thin struts hold together in black and white.
    await visit.open("bridge.json", bridge);
    const percent = parseFloat(await visit.says("percent", /\d/));
    assert.ok(percent > 60 && percent < 140, `${percent} %`);
    await page.click("#mode-optimise");
    await page.getByText("Grid", { exact: true }).click();
    for (const [id, value] of [
        ["width", "200"],
        ["height", "150"],
    ])
        await page.fill(`#grid-${id}`, value ?? "");
    await page.selectOption("#grid-detail", "4");
    await page.getByText("Use this grid").click();
    const refusal = await visit.says("problem", /Detail/);
    assert.doesNotMatch(refusal, /meshFactor|\.json/);
    assert.deepEqual((await savedScene(visit)).grid, scene.grid, "the plate stays");
    await visit.open(
        "free.json",
        JSON.stringify({ ...small, supports: [{ x: 0, y: 5, fix: "y" }] }),
    );
    await visit.reaches("stopped");
    await page.click("#mode-draw");
    await visit.says("rival", /none/);
    await visit.says("draw-lead", /nothing to compare with/);
    assert.deepEqual(await visit.end(), []);
});

test("arrows and their numbers stay on the stage", async () => {
    for (const options of [desktop, phone, { ...phone, viewport: { width: 844, height: 390 } }]) {
        const visit = await Visit.start(browser, address, options);
        await visit.open("wheel.json", readFileSync(join(root, "scenes/wheel.json"), "utf8"));
        await visit.forms(2);
        const stage = (await visit.page.locator("#stage").boundingBox()) ?? assert.fail();
        for (const part of await visit.page.locator(".load text, .load .tail").all()) {
            const { x, y, width, height } = (await part.boundingBox()) ?? assert.fail();
            assert.ok(x >= stage.x && x + width <= stage.x + stage.width, `${x}`);
            assert.ok(y >= stage.y && y + height <= stage.y + stage.height, `${y}`);
        }
        assert.deepEqual(await visit.end(), []);
    }
});
