// The page on a server of its own, and Chromium, for the file of tests that imports this.
import { mkdtempSync, rmSync } from "node:fs";
import type { Server } from "node:http";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before } from "node:test";
import type { Browser } from "playwright-core";
import type { SceneFile } from "voxam";
import { launch, serve, type Visit } from "./browser.js";

export const root = new URL("../../../", import.meta.url).pathname;
export const program = join(root, "build/release/hosts/cli/voxam");
/** A folder for the files of the tests, which is removed after them. */
export const folder = mkdtempSync(join(tmpdir(), "voxam-web-"));
export let browser: Browser;
export let address: string;
let server: Server;

before(async () => {
    browser = await launch();
    ({ server, address } = await serve());
});
after(async () => {
    await browser.close();
    server.close();
    rmSync(folder, { recursive: true });
});

export const desktop = { viewport: { width: 1280, height: 800 }, colorScheme: "light" as const };
export const savedScene = async (visit: Visit) =>
    JSON.parse(await visit.download("save")) as SceneFile;
