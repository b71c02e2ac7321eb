// The size of the grid and its detail. Another grid starts the design anew.
import type { SceneDocument } from "./document.js";
import { byId, html } from "./dom.js";
import type { Library } from "./library.js";
import type { SceneFile } from "voxam";
import { refusalInWords } from "./words.js";

const MOST_ELEMENTS = 40_000; // an iteration of more takes longer than a hand waits
const MOST_DETAIL = 4;

export class GridFields {
    private readonly width = byId<HTMLInputElement>("grid-width");
    private readonly height = byId<HTMLInputElement>("grid-height");
    private readonly detail = byId<HTMLSelectElement>("grid-detail");
    private shown: SceneFile | undefined;

    constructor(
        private readonly scene: SceneDocument,
        private readonly voxam: Library,
        private readonly complain: (text: string) => void,
    ) {
        for (let detail = 1; detail <= MOST_DETAIL; ++detail) {
            this.detail.append(html("option", { value: detail }, `${detail} × ${detail}`));
        }
        byId("grid-form").addEventListener("submit", (event) => {
            event.preventDefault();
            this.apply().catch((error: unknown) =>
                complain(refusalInWords((error as Error).message)),
            );
        });
    }

    show(): void {
        const { whole } = this.scene.state;
        const { grid, subdivision = 1 } = whole;
        const isSame =
            this.shown?.grid.width === grid.width &&
            this.shown.grid.height === grid.height &&
            (this.shown.subdivision ?? 1) === subdivision;
        this.shown = whole;
        if (isSame) return;
        this.width.value = String(grid.width);
        this.height.value = String(grid.height);
        this.detail.value = String(subdivision);
    }

    private async apply(): Promise<void> {
        const [width, height] = [this.width.valueAsNumber, this.height.valueAsNumber];
        const detail = Number(this.detail.value) || 1;
        if (width * height > MOST_ELEMENTS) {
            this.complain(
                `${width} × ${height} elements are too many for a page. Make it coarser.`,
            );
            return;
        }
        const { whole } = this.scene.state;
        const text = JSON.stringify({ ...whole, subdivision: detail, meshFactor: detail });
        const question = { text, name: this.scene.name, width, height };
        const answer = await this.voxam.ask<string>({ kind: "resize", ...question });
        this.scene.open(JSON.parse(answer) as SceneFile, this.scene.name);
    }
}
