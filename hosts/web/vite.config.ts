import { createHash } from "node:crypto";
import { cpSync, existsSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join, relative, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { defineConfig, type Plugin } from "vite";

const root = fileURLToPath(new URL(".", import.meta.url));

const dist = resolve(root, "dist");

/** Nothing from other hosts, no inline scripts; WebAssembly may be compiled. */
const POLICY = [
    "default-src 'none'",
    "script-src 'self' 'wasm-unsafe-eval'",
    "worker-src 'self'",
    "style-src 'self'",
    "style-src-attr 'unsafe-inline'",
    "img-src 'self' data: blob:",
    "connect-src 'self'",
    "manifest-src 'self'",
    "base-uri 'none'",
    "form-action 'none'",
].join("; ");

/** The GPL asks whoever serves the page to offer its source. */
function sourceLink(address: string | undefined): string {
    if (!address) return "";
    if (!URL.canParse(address)) throw new Error(`VOXAM_SOURCE: ${address} is not an address`);
    return ` · <a href="${encodeURI(address).replaceAll('"', "%22")}">Source</a>`;
}

/** Adds the policy to the pages, and a service worker that knows every file of the build. */
function sealed(): Plugin {
    return {
        name: "voxam-sealed",
        apply: "build",
        transformIndexHtml: (html) => ({
            html: html.replace("<!-- source -->", sourceLink(process.env["VOXAM_SOURCE"])),
            tags: [
                {
                    tag: "meta",
                    attrs: { "http-equiv": "Content-Security-Policy", content: POLICY },
                    injectTo: "head-prepend",
                },
            ],
        }),
        closeBundle() {
            const licences = resolve(root, "package/licences");
            if (existsSync(licences)) cpSync(licences, join(dist, "licences"), { recursive: true });
            const names = readdirSync(dist, { recursive: true, withFileTypes: true })
                .filter((entry) => entry.isFile())
                .map((entry) => relative(dist, join(entry.parentPath, entry.name)))
                .sort();
            const hash = createHash("sha256");
            for (const name of names) hash.update(readFileSync(join(dist, name)));
            const source = readFileSync(join(root, "page/service-worker.js"), "utf8")
                .replace("__FILES__", JSON.stringify(["./", ...names]))
                .replace("__VERSION__", hash.digest("hex").slice(0, 12));
            writeFileSync(join(dist, "service-worker.js"), source);
        },
    };
}

export default defineConfig({
    root: resolve(root, "page"),
    base: "./",
    plugins: [sealed()],
    worker: { format: "es" },
    server: { fs: { allow: [resolve(root, "../..")] } },
    build: {
        outDir: dist,
        emptyOutDir: true,
        target: "es2022",
        assetsInlineLimit: 0,
        modulePreload: { polyfill: false },
        rollupOptions: {
            input: [resolve(root, "page/index.html"), resolve(root, "page/why.html")],
        },
    },
});
