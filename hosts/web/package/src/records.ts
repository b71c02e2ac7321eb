// Loads, supports and elements as the library's records.
import { ArgumentError } from "./errors.js";
import { requireLength, requireNumber, requireWhole } from "./module.js";

/** A force on one node. Positive `fx` points right, positive `fy` down. */
export interface Load {
    /** Node, from 0 to the plate's width. */
    x: number;
    /** Node, from 0 (top) to the plate's height. */
    y: number;
    fx?: number;
    fy?: number;
    /** From 0. */
    loadCase?: number;
}

/** A node that is held. */
export interface Support {
    x: number;
    y: number;
    /** The directions that are held; both if left out. */
    fix?: "x" | "y" | "xy";
}

/** A plate of `width` by `height` elements. Its nodes run from 0 to width and from 0 to height. */
export interface Plate {
    width: number;
    height: number;
}

/** One byte for each element, row by row from the top. Any value but 0 selects the element. */
export type Mask = ArrayLike<number>;

export const MAX_SIDE = 32000;

const MAX_CELLS = 32767;
const MAX_FORCE = 1e15;
const RECORD = 5;

export function requirePlate({ width, height }: Plate): void {
    requireWhole("width", width, 1, MAX_SIDE);
    requireWhole("height", height, 1, MAX_SIDE);
}

function requireNode(name: string, node: { x: number; y: number }, plate: Plate): void {
    requireWhole(`${name}.x`, node.x, 0, plate.width);
    requireWhole(`${name}.y`, node.y, 0, plate.height);
}

export function loadRecords(loads: readonly Load[], plate: Plate, cases: number): Float32Array {
    const records = new Float32Array(RECORD * loads.length);
    loads.forEach((load, i) => {
        const { x, y, fx = 0, fy = 0, loadCase = 0 } = load;
        requireNode(`loads[${i}]`, load, plate);
        requireNumber(`loads[${i}].fx`, fx, -MAX_FORCE, MAX_FORCE);
        requireNumber(`loads[${i}].fy`, fy, -MAX_FORCE, MAX_FORCE);
        requireWhole(`loads[${i}].loadCase`, loadCase, 0, cases - 1);
        records.set([x, y, fx, fy, loadCase], RECORD * i);
    });
    return records;
}

export function supportRecords(supports: readonly Support[], plate: Plate): Float32Array {
    const records: number[] = [];
    supports.forEach((support, i) => {
        const { x, y, fix = "xy" } = support;
        requireNode(`supports[${i}]`, support, plate);
        if (!["x", "y", "xy"].includes(fix)) {
            throw new ArgumentError(`supports[${i}].fix: "${fix}" is not x, y or xy`);
        }
        for (const direction of fix) records.push(x, y, direction === "x" ? 0 : 1, 0, 0);
    });
    return Float32Array.from(records);
}

/** Places of the elements of a mask: x and y of each. */
function cellsOf(name: string, mask: Mask | undefined, { width, height }: Plate): number[] {
    const cells: number[] = [];
    if (!mask) return cells;
    requireLength(name, mask, width * height);
    for (let i = 0; i < mask.length; ++i) {
        if (mask[i]) cells.push(i % width, Math.floor(i / width));
    }
    if (cells.length > 2 * MAX_CELLS) {
        throw new ArgumentError(`${name}: ${cells.length / 2} elements, at most ${MAX_CELLS}`);
    }
    return cells;
}

export function passiveRecords(
    plate: Plate,
    masks: readonly [Mask | undefined, Mask | undefined, Mask | undefined],
): Int16Array {
    const names = ["void", "solid", "secondSolid"];
    const lists = masks.map((mask, i) => cellsOf(names[i] ?? "", mask, plate));
    const records = Int16Array.from([...lists.map((list) => list.length / 2), ...lists.flat()]);
    const taken = new Set<number>();
    for (let i = 3; i < records.length; i += 2) {
        const element = (records[i + 1] ?? 0) * plate.width + (records[i] ?? 0);
        if (taken.has(element)) {
            throw new ArgumentError(`(${records[i]}, ${records[i + 1]}) is in two of the masks`);
        }
        taken.add(element);
    }
    return records;
}

export function blobRecords(plate: Plate, mask: Mask | undefined): Int16Array | undefined {
    const cells = cellsOf("blob", mask, plate);
    return cells.length ? Int16Array.from([cells.length / 2, ...cells]) : undefined;
}

/** From rows to columns, the element order of the library. */
export function toColumns(
    values: ArrayLike<number>,
    plate: Plate,
    out: Float32Array | Float64Array,
) {
    const { width, height } = plate;
    for (let y = 0; y < height; ++y) {
        for (let x = 0; x < width; ++x) out[x * height + y] = values[y * width + x] ?? NaN;
    }
    return out;
}

/** From columns, the element order of the library, to rows. */
export function toRows<T extends Float32Array | Uint8Array>(
    columns: ArrayLike<number>,
    { width, height }: Plate,
    out: T,
): T {
    for (let x = 0; x < width; ++x) {
        for (let y = 0; y < height; ++y) out[y * width + x] = columns[x * height + y] ?? NaN;
    }
    return out;
}
