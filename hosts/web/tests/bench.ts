// Frames a second, the page's own share and the latency from a hand's move to a changed picture, in
// Chromium; and the time from an empty cache to the first structure.
import { launch, serve, Visit } from "./browser.js";
import { toFragment } from "../page/src/link.js";

const PLATES = [
    [60, 40, 2],
    [120, 60, 2],
    [150, 100, 1],
] as const;
const SECONDS = 5;

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
const options = { viewport: { width: 1280, height: 800 } };
console.log("plate          frames/s   iteration ms   latency ms   tenth iteration s");
for (const [width, height, detail] of PLATES) {
    const scene = {
        grid: { width, height },
        subdivision: detail,
        meshFactor: detail,
        volumeFraction: 0.4,
        iterations: 100000,
        loads: [{ x: width, y: height / 2, fy: 1 }],
        supports: [{ x: 0, y: [0, height], fix: "xy" }],
        timeline: [{ iteration: 99999, penalty: 2.9 }], // so that it does not settle
    };
    const fragment = await toFragment(JSON.stringify(scene));
    const start = performance.now();
    const visit = await Visit.start(browser, address, { ...options, fragment });
    await visit.forms(10);
    const opening = (performance.now() - start) / 1000;
    const sample = async () => ({
        iteration: await visit.iteration(),
        time: performance.now(),
    });
    const from = await sample();
    await visit.page.waitForTimeout(1000 * SECONDS);
    const to = await sample();
    const rate = (1000 * (to.iteration - from.iteration)) / (to.time - from.time);
    const latencies: number[] = [];
    for (let i = 0; i < 9; ++i) latencies.push(await latencyOf(visit, width, height, i));
    latencies.sort((one, other) => one - other);
    const columns = [rate, 1000 / rate, latencies[4] ?? NaN, opening].map((value) =>
        value.toFixed(1),
    );
    console.log(`${width}x${height} (${detail}, ${detail})`.padEnd(15), columns.join("        "));
    await visit.end();
}
await browser.close();
server.close();
