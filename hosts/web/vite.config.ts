import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { resolve } from "node:path";
import { defineConfig, type Plugin } from "vite";

const root = import.meta.dirname ?? process.cwd();

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

/** Adds the policy to the pages, and a service worker that knows every file of the build. */
function sealed(): Plugin {
    return {
        name: "voxam-sealed",
        apply: "build",
        transformIndexHtml: () => [
            {
                tag: "meta",
                attrs: { "http-equiv": "Content-Security-Policy", content: POLICY },
                injectTo: "head-prepend",
            },
        ],
        generateBundle(_, bundle) {
            const names = Object.keys(bundle).filter((name) => !name.endsWith(".map"));
            const files = [...names, "icon.svg", "manifest.webmanifest"].sort();
            const hash = createHash("sha256");
            for (const name of names.sort()) {
                const part = bundle[name];
                hash.update(part?.type === "chunk" ? part.code : (part?.source ?? ""));
            }
            const source = readFileSync(resolve(root, "page/service-worker.js"), "utf8")
                .replace("__FILES__", JSON.stringify(["./", ...files]))
                .replace("__VERSION__", hash.digest("hex").slice(0, 12));
            this.emitFile({ type: "asset", fileName: "service-worker.js", source });
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
        outDir: resolve(root, "dist"),
        emptyOutDir: true,
        target: "es2022",
        assetsInlineLimit: 0,
        modulePreload: { polyfill: false },
        rollupOptions: {
            input: [resolve(root, "page/index.html"), resolve(root, "page/why.html")],
        },
    },
});
