// Draw and be scored: the player's design, its budget and its score.
import { ELEMENT, type SceneFile } from "voxam";
import { byId, prefersLessMotion, recall, remember } from "./dom.js";
import { brushed, type Point } from "./edits.js";
import type { Library } from "./library.js";
import { magnificationText, type Plate } from "./plate.js";
import type { DesignScore, DrawnCells } from "./protocol.js";
import type { View } from "./view.js";
import { adviceOn } from "./words.js";

const MAX_CELLS = 12_000;
const MAX_DETAIL = 3;
const FLOATING = "Outlined parts hang on nothing. They do not count.";
const MAX_DRAWN_DETAIL = 16;
const BEND_TIME = 450; // milliseconds
const BEST = "voxam-best "; // and the problem: a key of the local storage

/** Below this many elements, the optimiser gets cells that are finer than elements. */
const MAX_REFINED_ELEMENTS = 6000;

/** Cells per edge of an element at which designs are drawn. */
export function detailOf({ width, height }: { width: number; height: number }): number {
    const detail = Math.floor(Math.sqrt(MAX_CELLS / (width * height)));
    return Math.max(1, Math.min(MAX_DETAIL, detail));
}

/**
 * The scene whose optimum drawings are compared with. Its timeline waits. With one cell per element
 * thin struts come out grey, and hang on nothing in black and white, so the optimiser gets finer ones.
 */
export function rivalScene(scene: SceneFile): SceneFile {
    const { timeline, ...problem } = scene;
    const { subdivision = 1, meshFactor = 1, grid } = problem;
    const isCoarse = subdivision === 1 && meshFactor === 1;
    if (isCoarse && grid.width * grid.height <= MAX_REFINED_ELEMENTS) {
        return { ...problem, subdivision: 2, meshFactor: 2 };
    }
    return timeline ? problem : scene;
}

/** A design that came with a scene. */
export interface Drawn {
    cells: Uint8Array;
    detail: number;
}

/** The design of a scene in black and white; undefined where there is none to draw on. */
export function drawnOf({ densities, grid }: SceneFile): Drawn | undefined {
    if (!Array.isArray(densities) || densities.length === 0) return undefined;
    const solidity = (cell: unknown) => (cell === "#" ? 1 : cell === "." ? 0 : Number(cell) / 10);
    const rows = densities.map((row: unknown) =>
        typeof row === "string" ? Array.from(row, solidity) : (row as number[]),
    );
    const detail = rows.length / grid.height;
    if (detail > MAX_DRAWN_DETAIL) return undefined;
    return { cells: Uint8Array.from(rows.flat(), (value) => Number(value >= 0.5)), detail };
}

const percentText = (percent: number): string =>
    percent < 10 ? percent.toPrecision(2) : String(Math.round(percent));

function fixedCells(kinds: Uint8Array, { width, height }: SceneFile["grid"], detail: number) {
    const columns = width * detail;
    const fixed = new Uint8Array(columns * height * detail);
    for (let i = 0; i < fixed.length; ++i) {
        const x = Math.floor((i % columns) / detail);
        const y = Math.floor(Math.floor(i / columns) / detail);
        const kind = kinds[y * width + x] ?? 0;
        fixed[i] = kind === ELEMENT.VOID || kind >= ELEMENT.BLOB ? 1 : kind > 1 ? 2 : 0;
    }
    return fixed;
}

const number = (value: number): string =>
    value >= 1e5
        ? value.toExponential(2)
        : value.toLocaleString("en", { maximumSignificantDigits: 4 });

/** A drawing, and what undo and redo bring back. */
interface Sheet extends Drawn {
    past: Uint8Array[];
    future: Uint8Array[];
}

const emptySheet = (drawn: Drawn): Sheet => ({ ...drawn, past: [], future: [] });

export class Drawing {
    isOn = false;
    /** By plate of the scene: an edit of the scene keeps the drawing. */
    private readonly sheets = new Map<number, Sheet>();
    private sheet = emptySheet({ cells: new Uint8Array(), detail: 1 });
    private fixed = new Uint8Array(); // 1 stays void, 2 stays solid
    private grid = { width: 1, height: 1 };
    private budget = 0; // cells
    private own: DesignScore | undefined;
    private rival: DesignScore | undefined;
    private rivalReason = ""; // why there is none
    private best = 0;
    private key = ""; // of the problem that is drawn for
    private erases = false;
    private lastPlace: Point | undefined;
    private lastNumber = 0;
    private showsRival = false;
    private bend = 0;
    private bendStart = 0;
    private brush = 3;
    erasing = false;

    constructor(
        private readonly voxam: Library,
        private readonly view: View,
        private readonly plate: Plate,
        private readonly redraw: () => void,
        private readonly announce: (text: string) => void,
    ) {
        voxam.on("score", (report) => this.takeScore(report.number, report.score));
        voxam.on("reference", ({ score, reason }) => this.takeRival(score, reason));
        const brush = byId<HTMLInputElement>("brush");
        const showBrush = () => {
            this.brush = brush.valueAsNumber;
            byId("brush-text").textContent = `${this.brush} wide`;
        };
        brush.addEventListener("input", showBrush);
        showBrush();
        for (const id of ["show-deformed", "show-energies"]) {
            byId(id).addEventListener("change", () => this.show());
        }
        byId("clear").addEventListener("click", () => this.clear());
        byId("show-rival").addEventListener("click", () => {
            this.showsRival = !this.showsRival;
            this.show();
        });
    }

    /** Goes on with the drawing for a plate, or begins one, with what has to be solid. */
    start(scene: SceneFile, kinds: Uint8Array, plate: number): void {
        const { title: _title, description: _description, ...problem } = scene;
        const key = JSON.stringify(problem);
        if (key !== this.key) {
            this.best = 0;
            this.rival = undefined;
            this.rivalReason = "";
        }
        this.key = key;
        this.best = Math.max(this.best, recall(BEST + key));
        this.grid = scene.grid;
        const detail = detailOf(scene.grid);
        const cells = new Uint8Array(scene.grid.width * scene.grid.height * detail ** 2);
        this.sheet = this.sheets.get(plate) ?? emptySheet({ cells, detail });
        this.sheets.set(plate, this.sheet);
        this.fixed = fixedCells(kinds, scene.grid, this.detail);
        this.cells = this.imposed(this.cells);
        this.budget = Math.round((scene.volumeFraction ?? 0.4) * this.cells.length);
        this.showsRival = false;
        this.isOn = true;
        this.voxam.send({ kind: "reference", refinement: this.detail });
        this.score();
        this.show();
    }

    /** A design that came with a scene is its drawing. */
    give(plate: number, drawn: Drawn): void {
        this.sheets.set(plate, emptySheet(drawn));
    }

    private get cells(): Uint8Array {
        return this.sheet.cells;
    }

    private set cells(cells: Uint8Array) {
        this.sheet.cells = cells;
    }

    private get detail(): number {
        return this.sheet.detail;
    }

    /** What the scene keeps void or solid holds for drawings too. */
    private imposed(cells: Uint8Array): Uint8Array {
        return cells.map((cell, i) => (this.fixed[i] ? Number(this.fixed[i] === 2) : cell));
    }

    /** The drawing for a plate as a scene says it. */
    densitiesOf(plate: number, { width }: SceneFile["grid"]): string[] | undefined {
        const sheet = this.sheets.get(plate);
        if (!sheet) return undefined;
        const columns = width * sheet.detail;
        return Array.from({ length: sheet.cells.length / columns }, (_, row) =>
            Array.from(sheet.cells.subarray(row * columns, (row + 1) * columns), (cell) =>
                cell ? "#" : ".",
            ).join(""),
        );
    }

    /** What is shown, unless that is the optimiser's design. */
    get shown(): DrawnCells | undefined {
        if (!this.isOn || this.showsRival) return undefined;
        return { cells: this.cells, refinement: this.detail };
    }

    stop(): void {
        this.isOn = false;
        this.plate.look = undefined;
    }

    press(at: Point): boolean {
        if (this.showsRival) {
            this.showsRival = false;
            this.show();
        }
        this.sheet.past.push(this.cells.slice());
        this.sheet.future = [];
        this.lastPlace = undefined;
        this.erases = this.erasing;
        this.stopBending();
        this.move(at);
        return true;
    }

    move(at: Point): void {
        const place = this.view.toPlate(at);
        const from = this.lastPlace ?? place;
        const steps = Math.max(1, Math.ceil(Math.hypot(place.x - from.x, place.y - from.y) * 2));
        for (let i = 1; i <= steps; ++i) {
            const t = i / steps;
            this.dab({ x: from.x + (place.x - from.x) * t, y: from.y + (place.y - from.y) * t });
        }
        this.lastPlace = place;
        this.show();
    }

    release(): void {
        this.score();
    }

    cancel(): void {
        this.cells = this.sheet.past.pop() ?? this.cells;
        this.score();
        this.show();
    }

    /** The brush at a place of the plate, for the keyboard. */
    stamp(place: Point, erases: boolean): void {
        this.sheet.past.push(this.cells.slice());
        this.sheet.future = [];
        this.erases = erases;
        this.dab(place);
        this.score();
        this.show();
    }

    get brushSize(): number {
        return this.brush;
    }

    get canUndo(): boolean {
        return this.sheet.past.length > 0;
    }

    get canRedo(): boolean {
        return this.sheet.future.length > 0;
    }

    undo(): void {
        this.step(this.sheet.past, this.sheet.future);
    }

    redo(): void {
        this.step(this.sheet.future, this.sheet.past);
    }

    private step(from: Uint8Array[], to: Uint8Array[]): void {
        const cells = from.pop();
        if (!cells) return;
        to.push(this.cells);
        this.cells = this.imposed(cells);
        this.score();
        this.show();
    }

    private clear(): void {
        this.sheet.past.push(this.cells);
        this.sheet.future = [];
        this.cells = this.fixed.map((value) => (value === 2 ? 1 : 0));
        this.showsRival = false;
        this.score();
        this.show();
    }

    private dab(place: Point): void {
        const { width, height } = this.grid;
        const grid = { width: width * this.detail, height: height * this.detail };
        const at = { x: place.x * this.detail, y: place.y * this.detail };
        let left = this.left;
        for (const cell of brushed(grid, at, this.brush * this.detail)) {
            if (this.fixed[cell]) continue;
            if (this.erases) {
                this.cells[cell] = 0;
            } else if (!this.cells[cell] && left > 0) {
                this.cells[cell] = 1;
                --left;
            }
        }
    }

    private get left(): number {
        return this.budget - this.cells.reduce((sum, cell) => sum + cell, 0);
    }

    private score(): void {
        this.stopBending();
        this.showNumbers();
        const request = { number: ++this.lastNumber, cells: this.cells, refinement: this.detail };
        this.voxam.send({ kind: "score", ...request });
        this.redraw();
    }

    private takeScore(number: number, score: DesignScore): void {
        if (number !== this.lastNumber || !this.isOn) return;
        this.own = score;
        this.rememberBest();
        this.startBending();
        this.show();
        const percent = this.percent;
        const floating = score.floating.length > 0 ? ` ${FLOATING}` : "";
        if (percent !== undefined)
            this.announce(
                `${percentText(percent)} per cent of the optimiser's stiffness.${floating}`,
            );
        else if (score.problem && this.left < this.budget) this.announce(score.problem);
    }

    private takeRival(score: DesignScore | undefined, reason: string): void {
        if (!this.isOn) return;
        this.rival = score;
        this.rivalReason = reason && `There is nothing to compare with. ${adviceOn(reason)}`;
        if (reason) this.announce(this.rivalReason);
        if (!score?.supported) {
            this.show();
            return;
        }
        // The optimiser's design, drawn in black and white, may have come out a little heavier.
        this.budget = Math.max(this.budget, Math.round(score.volume * this.cells.length));
        this.rememberBest();
        this.show();
    }

    /** Stiffness is the inverse of compliance. */
    private get percent(): number | undefined {
        if (!this.own?.supported || !this.rival?.supported || this.left < 0) return undefined;
        return (100 * this.rival.compliance) / this.own.compliance;
    }

    private rememberBest(): void {
        const { percent = 0 } = this;
        if (percent <= this.best) return;
        this.best = percent;
        remember(BEST + this.key, percent);
    }

    private startBending(): void {
        this.bend = prefersLessMotion() ? 1 : 0;
        this.bendStart = performance.now();
        if (this.bend === 0) this.bendFurther();
    }

    private bendFurther(): void {
        requestAnimationFrame((now) => {
            if (!this.own) return;
            const t = Math.min(1, (now - this.bendStart) / BEND_TIME);
            this.bend = t * t * (3 - 2 * t);
            this.show();
            if (t < 1) this.bendFurther();
        });
    }

    private stopBending(): void {
        ++this.lastNumber; // the score of an older drawing may still come
        this.own = undefined;
        this.bend = 0;
    }

    show(): void {
        if (!this.isOn) return;
        const isBent = byId<HTMLInputElement>("show-deformed").checked;
        const showEnergies = byId<HTMLInputElement>("show-energies").checked;
        const rival = this.showsRival ? this.rival : undefined;
        const cells = rival ? Uint8Array.from(rival.design) : this.cells;
        this.plate.look = {
            cells,
            refinement: this.detail,
            score: rival ?? this.own,
            showEnergies,
            bend: isBent ? (rival ? 1 : this.bend) : 0,
        };
        byId("bend-factor").textContent = magnificationText(this.plate.look, this.grid);
        byId("energy-scale").hidden = !showEnergies;
        this.showNumbers();
        this.redraw();
    }

    private showNumbers(): void {
        const { percent, own, rival } = this;
        const share = Math.max(0, Math.round((100 * this.left) / Math.max(1, this.budget)));
        byId("percent").textContent = percent === undefined ? "–" : `${percentText(percent)} %`;
        byId("draw-lead").textContent = this.lead(share);
        byId("budget").textContent = `${share} %`;
        byId("meter").setAttribute("aria-valuenow", String(share));
        byId("meter").style.setProperty("--share", `${share}%`);
        byId("own").textContent = own?.supported ? number(own.compliance) : "–";
        const isWaiting = this.rivalReason === "";
        byId("rival").textContent = rival?.supported
            ? number(rival.compliance)
            : isWaiting
              ? "…"
              : "none";
        byId("best").textContent = this.best > 0 ? `${percentText(this.best)} %` : "–";
        byId("show-rival").setAttribute("aria-pressed", String(this.showsRival));
        byId<HTMLButtonElement>("show-rival").disabled = !rival;
    }

    /** What to do next, or what is wrong. `share` of the budget is left, in per cent. */
    private lead(share: number): string {
        const { own, rivalReason } = this;
        const isEmpty = !this.cells.some((cell, i) => cell && this.fixed[i] !== 2);
        if (rivalReason) return rivalReason;
        if (isEmpty) return "Draw a structure that carries the load to the supports.";
        if (own && !own.supported) return own.problem;
        if (this.left < 0) return "This drawing uses more material than there is. Rub some out.";
        if (own && own.floating.length > 0) return FLOATING;
        if (share === 0) return "All material is used. Rub some out to put it elsewhere.";
        return "";
    }
}
