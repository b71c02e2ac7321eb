// The plate on its canvas: material, and what the elements are.
import { ELEMENT, type SceneFile } from "voxam";
import {
    plateColours,
    printColours,
    rgb,
    workColour,
    inkTable,
    type PlateColours,
} from "./colours.js";
import type { Point } from "./edits.js";
import type { DesignScore } from "./protocol.js";
import type { Mirror } from "./symmetry.js";
import type { View } from "./view.js";

const MAX_PIXELS = 500_000;
const HATCH = 7;
const DIMMED = 0.62;
const BEND_SHARE = 0.07; // of the plate's longer side, which the largest displacement is drawn as

export interface Bitmap {
    cells: Uint8Array;
    width: number;
    height: number;
}

/** What a drawn design looks like. */
export interface Look {
    cells: Uint8Array;
    refinement: number;
    score: DesignScore | undefined;
    showEnergies: boolean;
    /** How far it is bent: 0 not at all, 1 as far as it is shown. */
    bend: number;
}

/** Grey values between the cells, so that the edges of the material run smoothly. */
function enlarged({ cells, width, height }: Bitmap, factor: number, table: Uint32Array): ImageData {
    const columns = width * factor;
    const pixels = new Uint32Array(columns * height * factor);
    const mixed = new Float32Array(width);
    const shares = Array.from({ length: factor }, (_, i) => (i + 0.5) / factor - 0.5);
    let next = 0;
    for (let row = 0; row < height * factor; ++row) {
        const y = (row + 0.5) / factor - 0.5;
        const upper = width * Math.max(0, Math.floor(y));
        const lower = width * Math.min(height - 1, Math.floor(y) + 1);
        const share = y - Math.floor(y);
        for (let x = 0; x < width; ++x) {
            const above = cells[upper + x] as number;
            mixed[x] = 0.5 + above + ((cells[lower + x] as number) - above) * share;
        }
        for (let x = 0; x < width; ++x) {
            const here = mixed[x] as number;
            const left = here - (mixed[x > 0 ? x - 1 : 0] as number);
            const right = (mixed[x + 1 < width ? x + 1 : x] as number) - here;
            for (const at of shares) {
                pixels[next++] = table[(here + at * (at < 0 ? left : right)) | 0] as number;
            }
        }
    }
    return new ImageData(new Uint8ClampedArray(pixels.buffer), columns, height * factor);
}

/** Of an element: towards which neighbour, and from where to where. */
const SIDES = [
    [0, -1, 0, 0, 1, 0],
    [0, 1, 0, 1, 1, 1],
    [-1, 0, 0, 0, 0, 1],
    [1, 0, 1, 0, 1, 1],
] as const;

/** The border of the elements for which `isIn` holds. */
function borderOf(width: number, height: number, isIn: (x: number, y: number) => boolean): Path2D {
    const path = new Path2D();
    const at = (x: number, y: number) => x >= 0 && y >= 0 && x < width && y < height && isIn(x, y);
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) {
            if (!at(x, y)) continue;
            for (const [dx, dy, fromX, fromY, toX, toY] of SIDES) {
                if (at(x + dx, y + dy)) continue;
                path.moveTo(x + fromX, y + fromY);
                path.lineTo(x + toX, y + toY);
            }
        }
    }
    return path;
}

function cellsOf(width: number, height: number, isIn: (x: number, y: number) => boolean): Path2D {
    const path = new Path2D();
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) {
            const from = x;
            while (x < width && isIn(x, y)) ++x;
            if (x > from) path.rect(from, y, x - from, 1);
        }
    }
    return path;
}

interface Mark {
    border: Path2D;
    area: Path2D;
    kind: number;
}

export class Plate {
    private readonly context: CanvasRenderingContext2D;
    private readonly buffer = document.createElement("canvas");
    private marks: Mark[] = [];
    private grid = { width: 1, height: 1 };
    private table: Uint32Array;
    private bitmap: Bitmap | undefined;
    private isStale = true;

    /** The element under the keyboard's cursor. */
    cursor: { at: Point; size: number } | undefined;
    /** When there is one, it is drawn instead of the optimiser's design. */
    look: Look | undefined;
    /** Where the other half of a symmetric plate is. It cannot be edited, so that it is dimmed. */
    mirror: Mirror | undefined;

    /** `isPrint`: for a picture in a file, always the same whatever the screen is like. */
    constructor(
        private readonly canvas: HTMLCanvasElement,
        private readonly view: View,
        private readonly isPrint = false,
    ) {
        this.table = inkTable(this.colours);
        const context = canvas.getContext("2d");
        if (!context) throw new Error("This browser has no canvas");
        this.context = context;
    }

    private get colours(): PlateColours {
        return this.isPrint ? printColours : plateColours();
    }

    setKinds(grid: { width: number; height: number }, kinds: Uint8Array): void {
        this.grid = grid;
        const { width, height } = grid;
        const mark = (kind: number, test: (value: number) => boolean): Mark[] => {
            if (!kinds.some(test)) return [];
            const isIn = (x: number, y: number) => test(kinds[y * width + x] ?? 0);
            const border = borderOf(width, height, isIn);
            return [{ kind, border, area: cellsOf(width, height, isIn) }];
        };
        this.marks = [
            ...mark(ELEMENT.VOID, (value) => value % 4 === ELEMENT.VOID),
            ...mark(ELEMENT.SOLID, (value) => value % 4 === ELEMENT.SOLID),
            ...mark(ELEMENT.SECOND_SOLID, (value) => value % 4 === ELEMENT.SECOND_SOLID),
            ...mark(ELEMENT.BLOB, (value) => value >= ELEMENT.BLOB),
        ];
    }

    setPicture(bitmap: Bitmap | undefined): void {
        this.bitmap = bitmap;
        this.isStale = true;
    }

    /** After a change between light and dark. */
    changeColours(): void {
        this.table = inkTable(this.colours);
        this.isStale = true;
    }

    draw(): void {
        const { context, canvas, view, colours, mirror } = this;
        const ratio = this.isPrint ? 1 : devicePixelRatio;
        const width = Math.round(view.width * ratio);
        const height = Math.round(view.height * ratio);
        if (canvas.width !== width || canvas.height !== height) {
            canvas.width = width;
            canvas.height = height;
        }
        context.setTransform(ratio, 0, 0, ratio, 0, 0);
        context.fillStyle = rgb(colours.paper);
        if (this.isPrint) context.fillRect(0, 0, view.width, view.height);
        else context.clearRect(0, 0, view.width, view.height);
        context.translate(view.left, view.top);
        context.scale(view.scale, view.scale);
        if (mirror) {
            context.save();
            context.transform(...mirror);
            this.drawHalf(colours);
            if (!this.isPrint) this.dim();
            context.restore();
        }
        this.drawHalf(colours);
        this.drawCursor(colours);
    }

    /** What the scene describes: all of a plate without symmetry. */
    private drawHalf(colours: PlateColours): void {
        const { context, view, grid } = this;
        context.fillStyle = rgb(colours.paper);
        context.fillRect(0, 0, grid.width, grid.height);
        if (this.look) this.drawDesign(this.look, colours);
        else this.drawMaterial();
        for (const mark of this.marks) this.drawMark(mark, colours);
        context.lineWidth = 1 / view.scale;
        context.strokeStyle = colours.edge;
        context.strokeRect(0, 0, grid.width, grid.height);
    }

    /** Makes what was drawn transparent, and what is bent beyond the plate. */
    private dim(): void {
        const { context, grid } = this;
        const around = 2 * BEND_SHARE * Math.max(grid.width, grid.height);
        context.globalCompositeOperation = "destination-out";
        context.globalAlpha = DIMMED;
        context.fillRect(-around, -around, grid.width + 2 * around, grid.height + 2 * around);
    }

    private drawMaterial(): void {
        const { bitmap, context, grid } = this;
        if (!bitmap) return;
        if (this.isStale) {
            const room = MAX_PIXELS / (bitmap.width * bitmap.height);
            const factor = Math.max(1, Math.min(3, Math.floor(Math.sqrt(room))));
            const image = enlarged(bitmap, factor, this.table);
            this.buffer.width = image.width;
            this.buffer.height = image.height;
            this.buffer.getContext("2d")?.putImageData(image, 0, 0);
            this.isStale = false;
        }
        context.imageSmoothingEnabled = true;
        context.imageSmoothingQuality = "high";
        context.drawImage(this.buffer, 0, 0, grid.width, grid.height);
    }

    private drawDesign(look: Look, colours: PlateColours): void {
        const { context, grid } = this;
        const { cells, refinement, score } = look;
        const width = grid.width * refinement;
        const height = grid.height * refinement;
        const size = 1 / refinement;
        const place = placesOf(look, grid);
        const paths = new Map<string, Path2D>();
        const colourOf = cellColours(look, colours);
        for (let y = 0; y < height; ++y) {
            for (let x = 0; x < width; ++x) {
                const cell = y * width + x;
                if (!cells[cell]) continue;
                const colour = colourOf(cell);
                const path = paths.get(colour) ?? new Path2D();
                paths.set(colour, path);
                if (place) addQuad(path, place, x, y);
                else path.rect(x * size, y * size, size, size);
            }
        }
        context.save();
        context.lineWidth = 1 / this.view.scale; // closes the seams between cells
        context.lineJoin = "round";
        for (const [colour, path] of paths) {
            context.fillStyle = colour;
            context.strokeStyle = colour;
            context.fill(path);
            context.stroke(path);
        }
        if (score) this.drawFloating(score.floating, width, size, colours);
        context.restore();
    }

    private drawFloating(
        cells: number[],
        width: number,
        size: number,
        colours: PlateColours,
    ): void {
        const { context, view } = this;
        const set = new Set(cells);
        const path = borderOf(width, this.grid.height / size, (x, y) => set.has(y * width + x));
        context.scale(size, size);
        context.lineWidth = 2 / (view.scale * size);
        context.strokeStyle = colours.floating;
        context.stroke(path);
        context.scale(1 / size, 1 / size);
    }

    private drawMark({ kind, border, area }: Mark, colours: PlateColours): void {
        const { context, view, grid } = this;
        const colour =
            { 1: colours.void, 2: colours.solid, 3: colours.second }[kind] ?? colours.blob;
        context.save();
        context.strokeStyle = colour;
        if (kind === ELEMENT.VOID) {
            context.fillStyle = rgb(colours.paper);
            context.fill(area);
        }
        if (kind !== ELEMENT.SOLID && kind !== ELEMENT.BLOB) {
            context.save();
            context.clip(area);
            context.lineWidth = 1 / view.scale;
            context.globalAlpha = 0.55;
            const step = HATCH / view.scale;
            const lean = kind === ELEMENT.VOID ? grid.height : -grid.height;
            context.beginPath();
            for (let x = -grid.height; x < grid.width + grid.height; x += step) {
                context.moveTo(x, 0);
                context.lineTo(x + lean, grid.height);
            }
            context.stroke();
            context.restore();
        } else {
            context.globalAlpha = kind === ELEMENT.BLOB ? 0.16 : 0.22;
            context.fillStyle = colour;
            context.fill(area);
            context.globalAlpha = 1;
        }
        context.lineWidth = 1.5 / view.scale;
        context.stroke(border);
        context.restore();
    }

    private drawCursor(colours: PlateColours): void {
        if (!this.cursor) return;
        const { at, size } = this.cursor;
        const { context, view } = this;
        context.lineWidth = 2 / view.scale;
        context.strokeStyle = colours.hand;
        context.beginPath();
        context.arc(at.x, at.y, Math.max(size / 2, 5 / view.scale), 0, 2 * Math.PI);
        context.stroke();
    }
}

/** How many times as large as they are displacements are drawn, so that they are easy to see. */
export function magnificationOf(
    { displacements = new Float64Array() }: DesignScore,
    grid: { width: number; height: number },
): number {
    let furthest = 0;
    for (const value of displacements) {
        if (Math.abs(value) > furthest) furthest = Math.abs(value);
    }
    return furthest > 0 ? (BEND_SHARE * Math.max(grid.width, grid.height)) / furthest : 0;
}

/** "× 12", or nothing where nothing is bent. */
export function magnificationText(look: Look | undefined, grid: SceneFile["grid"]): string {
    if (!look?.score || look.bend === 0) return "";
    const factor = magnificationOf(look.score, grid);
    return factor > 0 ? `× ${Number(factor.toPrecision(2))}` : "";
}

/** Where the corners of cells are when the design is bent; undefined when it is not. */
function placesOf(
    { score, refinement, bend }: Look,
    grid: { width: number; height: number },
): ((x: number, y: number) => [number, number]) | undefined {
    const moved = score?.displacements;
    if (!moved || bend === 0) return undefined;
    const rows = grid.height * refinement + 1;
    const factor = bend * magnificationOf(score, grid);
    const shift = (index: number) => {
        const value = (moved[index] ?? 0) * factor;
        return Number.isFinite(value) ? value : 0;
    };
    return (x, y) => {
        const node = 2 * (x * rows + y);
        return [x / refinement + shift(node), y / refinement + shift(node + 1)];
    };
}

function addQuad(
    path: Path2D,
    place: (x: number, y: number) => [number, number],
    x: number,
    y: number,
) {
    path.moveTo(...place(x, y));
    path.lineTo(...place(x + 1, y));
    path.lineTo(...place(x + 1, y + 1));
    path.lineTo(...place(x, y + 1));
    path.closePath();
}

const SHADES = 24;

/** Energies spread over decades, so the scale is logarithmic: a tenth to ten times the average. */
function cellColours(look: Look, colours: PlateColours): (cell: number) => string {
    const { score, cells, showEnergies } = look;
    const energies = score?.energies;
    if (!energies || !showEnergies) return () => rgb(colours.ink);
    let sum = 0;
    let count = 0;
    cells.forEach((solid, cell) => {
        if (!solid) return;
        sum += energies[cell] ?? 0;
        ++count;
    });
    const average = sum / Math.max(1, count);
    return (cell) => {
        const multiple = (energies[cell] ?? 0) / average;
        const position = (Math.log10(Math.max(1e-9, multiple)) + 1) / 2;
        return rgb(workColour(Math.round(SHADES * position) / SHADES));
    };
}
