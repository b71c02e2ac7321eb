// Measures the page in Chromium: frames a second and what a frame takes beyond the library, beside
// the native program; the latency from a hand's move to a changed picture; and the time from an
// empty cache to the first structure. Medians.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import type { CDPSession } from "playwright-core";
import { toFragment } from "../page/src/link.js";
import { launch, serve, Visit } from "./browser.js";

const PLATES = [
    [60, 40, 2],
    [120, 60, 2],
    [150, 100, 1],
] as const;
const SECONDS = 5;
const LATENCIES = 9;
const OPENINGS = 5;

const root = new URL("../../../", import.meta.url).pathname;
const program = join(root, "build/release/hosts/cli/voxam");
const folder = mkdtempSync(join(tmpdir(), "voxam-bench-"));
const options = { viewport: { width: 1280, height: 800 } };

function median(values: number[]): number {
    values.sort((one, other) => one - other);
    return values[Math.floor(values.length / 2)] ?? NaN;
}

const sceneOf = (width: number, height: number, detail: number) => ({
    grid: { width, height },
    subdivision: detail,
    meshFactor: detail,
    volumeFraction: 0.4,
    iterations: 100000,
    loads: [{ x: width, y: height / 2, fy: 1 }],
    supports: [{ x: 0, y: [0, height], fix: "xy" }],
    timeline: [{ iteration: 99999, penalty: 2.9 }], // so that it does not settle
});

/** Milliseconds of an iteration of the native program. */
function nativeTime(scene: object): number {
    const [file, history] = [join(folder, "scene.json"), join(folder, "history.csv")];
    writeFileSync(file, JSON.stringify({ ...scene, iterations: 60, timeline: [] }));
    execFileSync(program, ["optimise", file, "--quiet", "--history", history], { stdio: "ignore" });
    const [head = "", ...rows] = readFileSync(history, "utf8").trim().split("\n");
    const column = head.split(",").findIndex((name) => name.startsWith("total"));
    return median(rows.slice(20).map((row) => Number(row.split(",")[column])));
}

/** Milliseconds of the page's own thread by kind of work, since the counters were switched on. */
async function pageTimes(protocol: CDPSession): Promise<Record<string, number>> {
    const { metrics } = await protocol.send("Performance.getMetrics");
    return Object.fromEntries(metrics.map(({ name, value }) => [name, 1000 * value]));
}

/** Rates while the structure forms. */
async function ratesOf(visit: Visit) {
    const protocol = await visit.page.context().newCDPSession(visit.page);
    await protocol.send("Performance.enable");
    const first = await visit.iteration();
    const before = await pageTimes(protocol);
    const start = performance.now();
    const library: number[] = [];
    while (performance.now() - start < 1000 * SECONDS) {
        await visit.page.waitForTimeout(200);
        library.push(Number(await visit.page.locator("#stage").getAttribute("data-time")));
    }
    const seconds = (performance.now() - start) / 1000;
    const after = await pageTimes(protocol);
    const frames = (await visit.iteration()) - first;
    const each = (name: string) => ((after[name] ?? 0) - (before[name] ?? 0)) / frames;
    return {
        rate: frames / seconds,
        library: median(library),
        page: each("TaskDuration"),
        script: each("ScriptDuration"),
        layout: each("LayoutDuration") + each("RecalcStyleDuration"),
    };
}

/** From the pointer's event to the first picture of a design that knows of it. */
async function latencyOf(visit: Visit, width: number, height: number, i: number): Promise<number> {
    const { page } = visit;
    const from = await visit.at(width, height / 2 + i - 0.5);
    await page.mouse.move(from.x, from.y);
    await page.mouse.down();
    await page.evaluate("globalThis.__name = (value) => value"); // tsx names functions by it
    await page.evaluate(() => {
        const stage = document.getElementById("stage");
        const before = Number(stage?.dataset["revision"]);
        const follow = (move: Event) => {
            const look = () => {
                const isShown = Number(stage?.dataset["revision"]) > before;
                if (isShown)
                    document.body.dataset["latency"] = String(performance.now() - move.timeStamp);
                else requestAnimationFrame(look);
            };
            look();
        };
        delete document.body.dataset["latency"];
        stage?.addEventListener("pointermove", follow, { once: true });
    });
    const to = await visit.at(width, height / 2 + i + 0.5);
    await page.mouse.move(to.x, to.y);
    await page.locator("body[data-latency]").waitFor();
    await page.mouse.up();
    return Number(await page.locator("body").getAttribute("data-latency"));
}

const browser = await launch();
const { server, address } = await serve();

/** Milliseconds from the beginning of the navigation to the first structure, with an empty cache. */
async function openingTime(): Promise<number> {
    const visit = await Visit.start(browser, address, options);
    await visit.forms(1);
    const time = await visit.page.evaluate(async () => {
        await new Promise(requestAnimationFrame);
        return performance.getEntriesByName("first structure")[0]?.startTime ?? NaN;
    });
    await visit.end();
    return time;
}

const row = (name: string, values: number[]) =>
    console.log(name.padEnd(16), ...values.map((value) => value.toFixed(1).padStart(9)));

const openings: number[] = [];
for (let i = 0; i < OPENINGS; ++i) openings.push(await openingTime());
console.log(`Opening to the first structure: ${median(openings).toFixed(0)} ms\n`);
console.log("Milliseconds for each frame: the library, the native program, the page's own thread");
console.log("(of that, its scripts and its layout); and from the pointer to the picture.\n");
console.log(
    "plate            frames/s   library    native      page    script    layout   latency",
);
for (const [width, height, detail] of PLATES) {
    const scene = sceneOf(width, height, detail);
    const fragment = await toFragment(JSON.stringify(scene));
    const visit = await Visit.start(browser, address, { ...options, fragment });
    await visit.forms(20);
    const { rate, library, page, script, layout } = await ratesOf(visit);
    const latencies: number[] = [];
    for (let i = 0; i < LATENCIES; ++i) latencies.push(await latencyOf(visit, width, height, i));
    await visit.end();
    const values = [rate, library, nativeTime(scene), page, script, layout, median(latencies)];
    row(`${width} x ${height} (${detail}, ${detail})`, values);
}
await browser.close();
server.close();
rmSync(folder, { recursive: true });
