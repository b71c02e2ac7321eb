// The shapes of loads and supports, in pixels of a view: paths for the page and for pictures.
import type { SceneFile, SceneLoad } from "voxam";
import { first, last, magnitude, placeOf, type Point } from "./edits.js";
import type { Reach, View } from "./view.js";

const LONGEST = 74;
const SHORTEST = 34;
const SPACING = 13; // between the marks of a support
const LABEL_DISTANCE = 17; // from the tail of an arrow to its number
const LABEL_SIZE = 8;
const TAIL_SIZE = 8;

export interface Arrow {
    index: number;
    tip: Point;
    tail: Point;
    label: Point;
    /** Paths. */
    shaft: string;
    head: string;
}

type Size = Pick<View, "width">;

/** From the tip to the tail. */
function tailOf(load: SceneLoad, largest: number, view: Size): Point {
    const { fx = 0, fy = 0 } = load;
    const size = magnitude(load);
    const small = view.width < 600 ? 0.78 : 1;
    const length = small * (SHORTEST + (LONGEST - SHORTEST) * Math.sqrt(size / largest));
    const [dx, dy] = size > 0 ? [fx / size, fy / size] : [0, 1];
    return { x: -dx * length, y: -dy * length };
}

const largestOf = ({ loads }: SceneFile): number => Math.max(1e-12, ...loads.map(magnitude));

export function arrowsOf(scene: SceneFile, view: View): Arrow[] {
    const largest = largestOf(scene);
    return scene.loads.map((load, index) => {
        const tip = view.toScreen(placeOf(load));
        const away = tailOf(load, largest, view);
        const tail = { x: tip.x + away.x, y: tip.y + away.y };
        const length = Math.hypot(away.x, away.y);
        const [ux, uy] = [-away.x / length, -away.y / length];
        const neck = { x: tip.x - 15 * ux, y: tip.y - 15 * uy };
        return {
            index,
            tip,
            tail,
            label: { x: tail.x - ux * LABEL_DISTANCE, y: tail.y - uy * LABEL_DISTANCE + 4 },
            shaft: `M${tail.x} ${tail.y}L${neck.x} ${neck.y}`,
            head:
                `M${tip.x} ${tip.y}L${neck.x - 7 * uy} ${neck.y + 7 * ux}` +
                `L${neck.x + 7 * uy} ${neck.y - 7 * ux}Z`,
        };
    });
}

/** How far arrows and their numbers stand out from the plate. */
export function reachesOf(scene: SceneFile, view: Size): Reach[] {
    const largest = largestOf(scene);
    const beyond = scene.loads.length > 1 ? LABEL_DISTANCE : 0;
    const half = beyond > 0 ? LABEL_SIZE : TAIL_SIZE;
    return scene.loads.flatMap((load) => {
        const tail = tailOf(load, largest, view);
        const stretch = 1 + beyond / Math.hypot(tail.x, tail.y);
        const [dx, dy] = [tail.x * stretch, tail.y * stretch];
        return [-half, half].map((by) => ({ ...placeOf(load), dx: dx + by, dy: dy + by }));
    });
}

/** Triangles and rollers. `isWanted` leaves out nodes. */
export function supportsPath(
    scene: SceneFile,
    view: View,
    isWanted: (x: number, y: number) => boolean = () => true,
): string {
    const shapes: string[] = [];
    for (const { x, y, fix } of scene.supports) {
        for (const py of spread(first(y), last(y), view.scale)) {
            for (const px of spread(first(x), last(x), view.scale)) {
                if (!isWanted(px, py)) continue;
                const isUpright = first(y) < last(y);
                shapes.push(
                    markOf(view.toScreen({ x: px, y: py }), fix, px, py, isUpright, scene.grid),
                );
            }
        }
    }
    return shapes.join("");
}

/** Even places along nodes: between nodes where they are far apart, so that no gap is wider. */
function spread(from: number, to: number, scale: number): number[] {
    if (from === to) return [from];
    const most = Math.max(1, Math.round(((to - from) * scale) / SPACING));
    const count = Math.min(to - from, most);
    return Array.from({ length: count + 1 }, (_, i) => from + ((to - from) * i) / count);
}

/** A triangle whose tip is at the node, standing outside of the plate where the node is at its edge. */
function markOf(
    at: Point,
    fix: string,
    x: number,
    y: number,
    isUpright: boolean,
    { width, height }: SceneFile["grid"],
): string {
    const isAtSide = (x === 0 || x === width) && (isUpright || (y > 0 && y < height));
    const isSide = fix === "x" || (fix === "xy" && isAtSide);
    let [ux, uy] = isSide ? [x === width ? 1 : -1, 0] : [0, y === 0 && fix !== "x" ? -1 : 1];
    if (fix === "y") [ux, uy] = [0, y === 0 ? -1 : 1];
    const base = { x: at.x + 9 * ux, y: at.y + 9 * uy };
    const [sx, sy] = [5.5 * uy, 5.5 * ux];
    const triangle =
        `M${at.x} ${at.y}L${base.x + sx} ${base.y + sy}` + `L${base.x - sx} ${base.y - sy}Z`;
    if (fix === "xy") return triangle;
    // A roller stands on a line, along which it may move.
    const foot = { x: at.x + 12.5 * ux, y: at.y + 12.5 * uy };
    return `${triangle}M${foot.x + sx} ${foot.y + sy}L${foot.x - sx} ${foot.y - sy}`;
}
