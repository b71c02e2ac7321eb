// What the tools do to a scene. Scenes are never changed, but replaced.
import { ELEMENT, type SceneArea, type SceneFile, type SceneLoad, type Span } from "voxam";

export interface Point {
    x: number;
    y: number;
}

export type Fix = "x" | "y" | "xy";

/** What an edit makes of a scene; without kinds they stay. */
export interface Edit {
    scene: SceneFile;
    kinds?: Uint8Array;
}

/**
 * The scene to save after an edit of the scene that is shown. A setting goes to where it comes
 * from: to the last of the changes made that names it, or else to the scene itself.
 */
export function withEdit(
    whole: SceneFile,
    changes: number,
    before: SceneFile,
    after: SceneFile,
): SceneFile {
    const timeline = [...(whole.timeline ?? [])];
    const result: SceneFile = { ...whole };
    const keys = new Set([...Object.keys(before), ...Object.keys(after)]) as Set<keyof SceneFile>;
    for (const key of keys) {
        if (before[key] === after[key] || key === "timeline") continue;
        let origin = changes - 1;
        while (origin >= 0 && !(key in (timeline[origin] ?? {}))) --origin;
        const change = timeline[origin];
        if (change) timeline[origin] = { ...change, [key]: after[key] ?? EMPTY[key] };
        else Object.assign(result, { [key]: after[key] });
    }
    return whole.timeline ? { ...result, timeline } : result;
}

/** What a change of the timeline says where the scene says nothing. */
const EMPTY: Partial<Record<keyof SceneFile, unknown>> = { passive: {}, blob: [] };

export const first = (span: Span): number => (typeof span === "number" ? span : span[0]);
export const last = (span: Span): number => (typeof span === "number" ? span : span[1]);
const shifted = (span: Span, by: number): Span =>
    typeof span === "number" ? span + by : [span[0] + by, span[1] + by];
const spanOf = (from: number, to: number): Span => (from === to ? from : [from, to]);

/** In the middle of its nodes. */
export function placeOf(load: { x: Span; y: Span }): Point {
    return { x: (first(load.x) + last(load.x)) / 2, y: (first(load.y) + last(load.y)) / 2 };
}

export function withLoad(scene: SceneFile, index: number, change: Partial<SceneLoad>): SceneFile {
    const loads = scene.loads.map((load, i) => (i === index ? { ...load, ...change } : load));
    return { ...scene, loads };
}

/** Moves a load by whole nodes, as far as the plate reaches. */
export function moveLoad(scene: SceneFile, index: number, by: Point): SceneFile {
    const load = scene.loads[index];
    if (!load) return scene;
    const within = (step: number, span: Span, size: number) =>
        Math.max(-first(span), Math.min(size - last(span), Math.round(step)));
    const dx = within(by.x, load.x, scene.grid.width);
    const dy = within(by.y, load.y, scene.grid.height);
    if (dx === 0 && dy === 0) return scene;
    return withLoad(scene, index, { x: shifted(load.x, dx), y: shifted(load.y, dy) });
}

export const magnitude = ({ fx = 0, fy = 0 }: SceneLoad): number => Math.hypot(fx, fy);

const rounded = (value: number): number => Number(value.toPrecision(6));

/** Turns a load, its magnitude kept, into a direction in radians from x towards y. */
export function turnLoad(scene: SceneFile, index: number, angle: number): SceneFile {
    const load = scene.loads[index];
    if (!load) return scene;
    return setForce(scene, index, magnitude(load) || 1, angle);
}

export function setForce(scene: SceneFile, index: number, size: number, angle: number): SceneFile {
    const fx = rounded(size * Math.cos(angle));
    const fy = rounded(size * Math.sin(angle));
    const tiny = size * 1e-6;
    return withLoad(scene, index, {
        fx: Math.abs(fx) < tiny ? 0 : fx,
        fy: Math.abs(fy) < tiny ? 0 : fy,
    });
}

export function addLoad(scene: SceneFile, { x, y }: Point): SceneFile {
    return { ...scene, loads: [...scene.loads, { x, y, fy: 1 }] };
}

export function removeLoad(scene: SceneFile, index: number): SceneFile {
    return { ...scene, loads: scene.loads.filter((_, i) => i !== index) };
}

/** Rectangles that cover the places of a grid where `isIn` holds, each once. */
export function rectangles(
    width: number,
    height: number,
    isIn: (x: number, y: number) => boolean,
): { x: Span; y: Span }[] {
    const open = new Map<string, { from: number; to: number; top: number }>();
    const done: { x: Span; y: Span }[] = [];
    for (let y = 0; y <= height; ++y) {
        const runs = new Set<string>();
        for (let x = 0; y < height && x < width; ++x) {
            if (!isIn(x, y)) continue;
            const from = x;
            while (x + 1 < width && isIn(x + 1, y)) ++x;
            const key = `${from} ${x}`;
            runs.add(key);
            if (!open.has(key)) open.set(key, { from, to: x, top: y });
        }
        for (const [key, run] of open) {
            if (runs.has(key)) continue;
            done.push({ x: spanOf(run.from, run.to), y: spanOf(run.top, y - 1) });
            open.delete(key);
        }
    }
    return done;
}

/** Holds or frees nodes. Supports that are not touched stay as they were written. */
export function setSupports(scene: SceneFile, nodes: Point[], fix: Fix | undefined): SceneFile {
    const { width, height } = scene.grid;
    const columns = width + 1;
    const touched = new Set(nodes.map(({ x, y }) => y * columns + x));
    const kept: typeof scene.supports = [];
    const fixes = new Map<number, Fix>();
    let isChanged = fix !== undefined;
    for (const support of scene.supports) {
        const own: number[] = [];
        for (let y = first(support.y); y <= last(support.y); ++y) {
            for (let x = first(support.x); x <= last(support.x); ++x) own.push(y * columns + x);
        }
        if (own.some((node) => touched.has(node))) {
            isChanged = true;
            for (const node of own) fixes.set(node, merged(fixes.get(node), support.fix));
        } else {
            kept.push(support);
        }
    }
    if (!isChanged) return scene;
    for (const node of touched) {
        if (fix) fixes.set(node, fix);
        else fixes.delete(node);
    }
    for (const kind of ["xy", "x", "y"] as const) {
        const isIn = (x: number, y: number) => fixes.get(y * columns + x) === kind;
        for (const area of rectangles(columns, height + 1, isIn)) kept.push({ ...area, fix: kind });
    }
    return { ...scene, supports: kept };
}

function merged(one: Fix | undefined, other: Fix): Fix {
    return one === undefined || one === other ? other : "xy";
}

/** Elements that a round brush covers, its diameter in elements. */
export function brushed(
    grid: { width: number; height: number },
    at: Point,
    size: number,
): number[] {
    const cells: number[] = [];
    const reach = size / 2;
    const middle = size % 2 ? { x: Math.floor(at.x) + 0.5, y: Math.floor(at.y) + 0.5 } : at;
    for (let y = Math.floor(middle.y - reach); y <= middle.y + reach; ++y) {
        for (let x = Math.floor(middle.x - reach); x <= middle.x + reach; ++x) {
            if (x < 0 || y < 0 || x >= grid.width || y >= grid.height) continue;
            const distance = Math.hypot(x + 0.5 - middle.x, y + 0.5 - middle.y);
            if (distance <= reach) cells.push(y * grid.width + x);
        }
    }
    return cells;
}

function areasOf(kinds: Uint8Array, width: number, test: (kind: number) => boolean): SceneArea[] {
    return rectangles(width, kinds.length / width, (x, y) => test(kinds[y * width + x] ?? 0));
}

/** Makes elements what `kind` says: one of ELEMENT. */
export function paint(
    { scene, kinds }: Required<Edit>,
    elements: number[],
    kind: number,
): Required<Edit> {
    const next = kinds.slice();
    for (const element of elements) next[element] = kind;
    if (next.every((value, i) => value === kinds[i])) return { scene, kinds };
    const { width } = scene.grid;
    const { passive: _passive, blob: _blob, ...rest } = scene;
    const areas = (wanted: number) => areasOf(next, width, (value) => value % 4 === wanted);
    const passive = {
        void: areas(ELEMENT.VOID),
        solid: areas(ELEMENT.SOLID),
        secondSolid: areas(ELEMENT.SECOND_SOLID),
    };
    const blob = areasOf(next, width, (value) => value >= ELEMENT.BLOB);
    const named = Object.entries(passive).filter(([, list]) => list.length > 0);
    return {
        scene: {
            ...rest,
            ...(named.length ? { passive: Object.fromEntries(named) } : {}),
            ...(blob.length ? { blob } : {}),
        },
        kinds: next,
    };
}
