// Chromium, a server of static files, and hands for the tests of the page.
import { createServer, type Server } from "node:http";
import { readFileSync } from "node:fs";
import type { AddressInfo } from "node:net";
import { extname, join } from "node:path";
import axe from "axe-core";
import { chromium, type Browser, type BrowserContextOptions, type Page } from "playwright-core";

export const dist = new URL("../dist/", import.meta.url).pathname;
const TYPES: Record<string, string> = {
    ".html": "text/html",
    ".js": "text/javascript",
    ".css": "text/css",
    ".wasm": "application/wasm",
    ".svg": "image/svg+xml",
    ".png": "image/png",
    ".webmanifest": "application/manifest+json",
};
const ARGUMENTS = [
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
];

export const launch = (): Promise<Browser> =>
    chromium.launch({
        executablePath: process.env["VOXAM_CHROMIUM"] ?? "/usr/bin/chromium",
        args: ARGUMENTS,
    });

/** Serves a folder. Browsers may keep its files for some seconds without asking again. */
export async function serve(
    folder = dist,
    freshness = 0,
): Promise<{ server: Server; address: string }> {
    const server = createServer((request, response) => {
        const path = new URL(request.url ?? "/", "http://localhost").pathname;
        try {
            const content = readFileSync(join(folder, path === "/" ? "index.html" : path));
            response.writeHead(200, {
                "Content-Type": TYPES[extname(path)] ?? "text/html",
                ...(freshness > 0 ? { "Cache-Control": `max-age=${freshness}` } : {}),
            });
            response.end(content);
        } catch {
            response.writeHead(404).end();
        }
    });
    await new Promise<void>((resolve) => server.listen(0, "127.0.0.1", resolve));
    return { server, address: `http://127.0.0.1:${(server.address() as AddressInfo).port}/` };
}

/** A page, and all that must not happen on it. */
export class Visit {
    readonly faults: string[] = [];

    private constructor(
        readonly page: Page,
        address: string,
    ) {
        page.on("console", (message) => {
            if (message.type() === "error") this.faults.push(message.text());
        });
        page.on("pageerror", (error) => this.faults.push(error.message));
        page.on("request", (request) => {
            const url = request.url();
            if (!/^(data|blob):/.test(url) && !url.startsWith(address)) this.faults.push(url);
        });
    }

    static async start(
        browser: Browser,
        address: string,
        options: BrowserContextOptions & { fragment?: string } = {},
    ): Promise<Visit> {
        const { fragment = "", ...context } = options;
        const page = await (await browser.newContext(context)).newPage();
        const visit = new Visit(page, address);
        await page.goto(address + fragment);
        return visit;
    }

    async text(id: string): Promise<string> {
        return (await this.page.locator(`#${id}`).textContent()) ?? "";
    }

    async iteration(): Promise<number> {
        return Number(await this.text("iteration"));
    }

    async forms(iterations = 25): Promise<void> {
        const isThere = (least: number) =>
            Number(document.getElementById("iteration")?.textContent) >= least;
        await this.page.waitForFunction(isThere, iterations);
    }

    async reaches(state: string): Promise<void> {
        await this.page.locator(`#state[data-state=${state}]`).waitFor();
    }

    /** Where a place of the plate is on the screen. */
    async at(x: number, y: number): Promise<{ x: number; y: number }> {
        const stage = this.page.locator("#stage");
        const box = await stage.boundingBox();
        const [left = 0, top = 0, scale = 1] = ((await stage.getAttribute("data-place")) ?? "")
            .split(" ")
            .map(Number);
        return { x: (box?.x ?? 0) + left + x * scale, y: (box?.y ?? 0) + top + y * scale };
    }

    async drag(...places: [number, number][]): Promise<void> {
        for (const [i, place] of places.entries()) {
            const { x, y } = await this.at(...place);
            await this.page.mouse.move(x, y, { steps: i ? 8 : 1 });
            if (i === 0) await this.page.mouse.down();
        }
        await this.page.mouse.up();
    }

    /** Waits until the text of an element matches. */
    async says(id: string, pattern: RegExp): Promise<string> {
        const matches = ([id, source]: readonly [string, string]) =>
            new RegExp(source).test(document.getElementById(id)?.textContent ?? "");
        await this.page.waitForFunction(matches, [id, pattern.source] as const);
        return this.text(id);
    }

    async open(name: string, content: string): Promise<void> {
        const buffer = Buffer.from(content);
        await this.page.setInputFiles("#open-file", {
            name,
            mimeType: "application/json",
            buffer,
        });
    }

    /** The share of a rectangle of the plate that is dark, in light colours. */
    async filled(left: number, top: number, right: number, bottom: number): Promise<number> {
        const from = await this.at(left, top);
        const to = await this.at(right, bottom);
        return this.page.evaluate(
            ([from, to]) => {
                const canvas = document.querySelector("canvas");
                const context = canvas?.getContext("2d");
                const box = canvas?.getBoundingClientRect();
                if (!context || !box) return NaN;
                const [x, y] = [from.x - box.x, from.y - box.y].map((v) => v * devicePixelRatio);
                const width = (to.x - from.x) * devicePixelRatio;
                const height = (to.y - from.y) * devicePixelRatio;
                const { data } = context.getImageData(x ?? 0, y ?? 0, width, height);
                let dark = 0;
                for (let i = 0; i < data.length; i += 4) if ((data[i] ?? 255) < 128) ++dark;
                return (4 * dark) / data.length;
            },
            [from, to] as const,
        );
    }

    /** Of the canvas at a place of the plate, 0 to 1. */
    async opacity(x: number, y: number): Promise<number> {
        const at = await this.at(x, y);
        return this.page.evaluate(({ x, y }) => {
            const canvas = document.querySelector("canvas");
            const box = canvas?.getBoundingClientRect() ?? new DOMRect();
            const [left, top] = [(x - box.x) * devicePixelRatio, (y - box.y) * devicePixelRatio];
            const pixel = canvas?.getContext("2d")?.getImageData(left, top, 1, 1).data;
            return (pixel?.[3] ?? NaN) / 255;
        }, at);
    }

    async download(entry: string): Promise<string> {
        await this.page.click("#file-button");
        const waiting = this.page.waitForEvent("download");
        await this.page.click(`#file-${entry}`);
        return readFileSync(await (await waiting).path(), "utf8");
    }

    /** What axe-core finds that is serious or worse. */
    async barriers(): Promise<string[]> {
        // Past the policy of the page, which admits no other scripts.
        await this.page.evaluate(axe.source);
        const { violations } = await this.page.evaluate(async () => {
            const { axe } = window as unknown as { axe: { run(): Promise<AxeResult> } };
            return axe.run();
        });
        return violations
            .filter(({ impact }) => impact === "serious" || impact === "critical")
            .map(({ id, nodes }) => `${id}: ${nodes.map(({ html }) => html).join(", ")}`);
    }

    async end(): Promise<string[]> {
        await this.page.context().close();
        return this.faults;
    }
}

interface AxeResult {
    violations: { id: string; impact: string; nodes: { html: string }[] }[];
}
