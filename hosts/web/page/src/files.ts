// Files and links: what comes in and what can be taken along.
import type { Outline, SceneFile } from "voxam";
import type { SceneDocument } from "./document.js";
import { byId, html } from "./dom.js";
import type { Library } from "./library.js";
import { toFragment } from "./link.js";
import { toDxf, toSvg } from "./outline.js";
import type { DrawnCells } from "./protocol.js";

const MAX_FILE = 8_000_000;

function download(name: string, content: Blob): void {
    const address = URL.createObjectURL(content);
    html("a", { href: address, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(address), 10_000);
}

export class Files {
    constructor(
        private readonly scene: SceneDocument,
        private readonly sceneToShare: () => SceneFile,
        private readonly drawing: () => DrawnCells | undefined,
        private readonly voxam: Library,
        private readonly openText: (text: string, name: string) => void,
        private readonly paintPicture: () => HTMLCanvasElement,
        private readonly complain: (text: string) => void,
    ) {
        this.makeMenu();
        this.makeShare();
        const input = byId<HTMLInputElement>("open-file");
        input.addEventListener("change", () => {
            void this.openFile(input.files?.[0]);
            input.value = "";
        });
        document.addEventListener("dragover", (event) => event.preventDefault());
        document.addEventListener("drop", (event) => {
            event.preventDefault();
            void this.openFile(event.dataTransfer?.files[0]);
        });
    }

    private get stem(): string {
        return this.scene.name.replace(/\.json$/, "");
    }

    private async openFile(file: File | undefined): Promise<void> {
        if (!file) return;
        if (file.size > MAX_FILE) this.complain(`${file.name}: too large for a scene`);
        else this.openText(await file.text(), file.name);
    }

    private makeMenu(): void {
        const menu = byId("file-menu");
        const button = byId<HTMLButtonElement>("file-button");
        const entries: [string, string, () => void | Promise<void>][] = [
            ["open", "Open a scene …", () => byId("open-file").click()],
            ["save", "Save the scene", () => this.saveScene()],
            ["png", "Picture (PNG)", () => this.savePicture()],
            ["svg", "Outline (SVG)", () => this.saveOutline("svg", "image/svg+xml", toSvg)],
            ["dxf", "Outline for CAD (DXF)", () => this.saveOutline("dxf", "image/vnd.dxf", toDxf)],
        ];
        const show = (isOpen: boolean) => {
            menu.hidden = !isOpen;
            button.setAttribute("aria-expanded", String(isOpen));
            if (!isOpen) return;
            const { bottom, right } = button.getBoundingClientRect();
            menu.style.top = `${bottom + 6}px`;
            menu.style.right = `${Math.max(8, innerWidth - right)}px`;
            (menu.firstElementChild as HTMLElement).focus();
        };
        for (const [id, label, action] of entries) {
            const entry = html("button", { role: "menuitem", id: `file-${id}` }, label);
            entry.addEventListener("click", () => {
                show(false);
                button.focus();
                Promise.resolve(action()).catch((error: unknown) =>
                    this.complain((error as Error).message),
                );
            });
            menu.append(entry);
        }
        button.addEventListener("click", () => show(menu.hidden));
        menu.addEventListener("keydown", (event) => {
            const items = [...menu.children] as HTMLElement[];
            const at = items.indexOf(document.activeElement as HTMLElement);
            const next = {
                ArrowDown: (at + 1) % items.length,
                ArrowUp: (at + items.length - 1) % items.length,
                Home: 0,
                End: items.length - 1,
            }[event.key];
            if (next !== undefined) {
                items[next]?.focus();
                event.preventDefault();
            } else if (event.key === "Escape" || event.key === "Tab") {
                show(false);
                button.focus(); // from where Tab goes on
            }
        });
        document.addEventListener("pointerdown", (event) => {
            const target = event.target as Node;
            if (!menu.hidden && !menu.contains(target) && !button.contains(target)) show(false);
        });
    }

    private makeShare(): void {
        const dialog = byId<HTMLDialogElement>("share");
        const field = byId<HTMLInputElement>("share-link");
        const copy = byId<HTMLButtonElement>("share-copy");
        byId("share-button").addEventListener("click", () => {
            void toFragment(JSON.stringify(this.sceneToShare())).then((fragment) => {
                history.replaceState(null, "", fragment); // until another scene is opened
                field.value = location.href;
                copy.textContent = "Copy";
                dialog.showModal();
                field.select();
            });
        });
        copy.addEventListener("click", () => {
            field.select();
            // Without HTTPS a browser has no clipboard.
            const clipboard = navigator.clipboard as Clipboard | undefined;
            (clipboard?.writeText(field.value) ?? Promise.reject(new Error("no clipboard")))
                .then(() => (copy.textContent = "Copied"))
                .catch(() => (copy.textContent = "Press Ctrl+C to copy"));
        });
    }

    private async saveScene(): Promise<void> {
        const question = { text: JSON.stringify(this.sceneToShare()), name: this.scene.name };
        const text = await this.voxam.ask<string>({ kind: "format", ...question });
        download(`${this.stem}.json`, new Blob([text], { type: "application/json" }));
    }

    private savePicture(): void {
        this.paintPicture().toBlob((blob) => blob && download(`${this.stem}.png`, blob));
    }

    private async saveOutline(
        ending: string,
        type: string,
        encode: (outline: Outline) => string,
    ): Promise<void> {
        const drawing = this.drawing();
        const question = { kind: "outline" as const, ...(drawing ? { drawing } : {}) };
        const content = encode(await this.voxam.ask<Outline>(question));
        download(`${this.stem}.${ending}`, new Blob([content], { type }));
    }
}
