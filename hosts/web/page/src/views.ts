// How the optimiser's design bends and where it works hard, while it forms.
import { byId } from "./dom.js";
import { detailOf } from "./drawing.js";
import type { Library } from "./library.js";
import { magnificationText, type Plate } from "./plate.js";
import type { DesignScore } from "./protocol.js";

interface Grid {
    width: number;
    height: number;
}

/** The design is scored in black and white, as a drawing is. */
export class Views {
    private readonly deformed = byId<HTMLInputElement>("view-deformed");
    private readonly energies = byId<HTMLInputElement>("view-energies");
    private detail = 0;
    private score: DesignScore | undefined;

    constructor(
        private readonly voxam: Library,
        private readonly plate: Plate,
        private readonly grid: () => Grid,
        private readonly isDrawing: () => boolean,
        private readonly redraw: () => void,
    ) {
        for (const box of [this.deformed, this.energies]) {
            box.addEventListener("change", () => this.follow());
        }
        voxam.on("view", ({ score }) => {
            this.score = score;
            this.show();
        });
    }

    /** The checkboxes, or the grid, have changed. */
    follow(): void {
        const isWanted = this.deformed.checked || this.energies.checked;
        const detail = isWanted ? detailOf(this.grid()) : 0;
        if (detail !== this.detail) this.score = undefined;
        if (isWanted || this.detail > 0) this.voxam.send({ kind: "view", refinement: detail });
        this.detail = detail;
        byId("view-scale").hidden = !this.energies.checked;
        this.show();
    }

    /** Another scene, or a drawing, takes the plate. */
    clear(): void {
        this.score = undefined;
        this.detail = 0;
        this.plate.look = undefined;
        this.voxam.send({ kind: "view", refinement: 0 });
    }

    private show(): void {
        if (this.isDrawing()) return;
        const { score, detail } = this;
        const { width, height } = this.grid();
        const fits = score?.supported && score.design.length === width * height * detail * detail;
        this.plate.look = fits
            ? {
                  cells: Uint8Array.from(score.design),
                  refinement: detail,
                  score,
                  showEnergies: this.energies.checked,
                  bend: this.deformed.checked ? 1 : 0,
              }
            : undefined;
        byId("view-factor").textContent = magnificationText(this.plate.look, this.grid());
        this.redraw();
    }
}
