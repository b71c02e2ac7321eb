// Loads and supports over the plate. Loads are reached by Tab and moved by keys.
import type { SceneFile, SceneLoad } from "voxam";
import { svg } from "./dom.js";
import { first, last, magnitude, placeOf, type Point } from "./edits.js";
import type { View } from "./view.js";

const LONGEST = 74;
const SHORTEST = 34;
const SPACING = 13; // pixels between the marks of a support

export interface Arrow {
    index: number;
    tip: Point;
    tail: Point;
}

/** "1.5 down and to the right". */
export function describeForce({ fx = 0, fy = 0 }: SceneLoad): string {
    const size = Number(Math.hypot(fx, fy).toPrecision(3));
    const slant = Math.min(Math.abs(fx), Math.abs(fy)) > 0.02 * size;
    const vertical = fy > 0 ? "down" : "up";
    const horizontal = fx > 0 ? "right" : "left";
    if (size === 0) return "no force";
    if (slant) return `${size} ${vertical} and to the ${horizontal}`;
    return `${size} ${Math.abs(fy) > Math.abs(fx) ? vertical : `to the ${horizontal}`}`;
}

const describePlace = ({ x, y }: SceneLoad): string =>
    [["x", x] as const, ["y", y] as const]
        .map(([axis, span]) => `${axis} ${typeof span === "number" ? span : span.join(" to ")}`)
        .join(", ");

export class Signs {
    arrows: Arrow[] = [];
    /** The load that was touched last. */
    selected = 0;
    private scene: SceneFile | undefined;
    private readonly supports = svg("g", { class: "supports" });
    private readonly loads: SVGElement[] = [];

    constructor(
        private readonly root: SVGSVGElement,
        private readonly view: View,
        private readonly onKey: (index: number, event: KeyboardEvent) => void,
        private readonly onFocus: (index: number) => void,
    ) {
        root.append(this.supports);
    }

    draw(scene: SceneFile): void {
        const { view } = this;
        this.root.setAttribute("viewBox", `0 0 ${view.width} ${view.height}`);
        this.scene = scene;
        this.drawSupports(scene);
        const largest = Math.max(1e-12, ...scene.loads.map(magnitude));
        this.arrows = scene.loads.map((load, index) => this.arrowOf(load, index, largest));
        while (this.loads.length > scene.loads.length) this.loads.pop()?.remove();
        scene.loads.forEach((load, index) => this.drawLoad(load, index));
    }

    focus(index: number): void {
        this.loads[index]?.focus({ preventScroll: true });
    }

    private arrowOf(load: SceneLoad, index: number, largest: number): Arrow {
        const { fx = 0, fy = 0 } = load;
        const size = magnitude(load);
        const tip = this.view.toScreen(placeOf(load));
        const small = this.view.width < 600 ? 0.78 : 1;
        const length = small * (SHORTEST + (LONGEST - SHORTEST) * Math.sqrt(size / largest));
        const [dx, dy] = size > 0 ? [fx / size, fy / size] : [0, 1];
        return { index, tip, tail: { x: tip.x - dx * length, y: tip.y - dy * length } };
    }

    private drawLoad(load: SceneLoad, index: number): void {
        const arrow = this.arrows[index];
        if (!arrow) return;
        const group = (this.loads[index] ??= this.makeLoad(index));
        const { tip, tail } = arrow;
        const length = Math.hypot(tip.x - tail.x, tip.y - tail.y);
        const [ux, uy] = [(tip.x - tail.x) / length, (tip.y - tail.y) / length];
        const neck = { x: tip.x - 15 * ux, y: tip.y - 15 * uy };
        const head =
            `M${tip.x} ${tip.y}L${neck.x - 7 * uy} ${neck.y + 7 * ux}` +
            `L${neck.x + 7 * uy} ${neck.y - 7 * ux}Z`;
        const parts = group.children;
        parts[0]?.setAttribute("d", this.spanOf(load));
        for (const i of [1, 2]) {
            parts[i]?.setAttribute("d", `M${tail.x} ${tail.y}L${neck.x} ${neck.y}`);
        }
        for (const i of [3, 4]) parts[i]?.setAttribute("d", head);
        parts[5]?.setAttribute("cx", String(tail.x));
        parts[5]?.setAttribute("cy", String(tail.y));
        const label = parts[6];
        label?.setAttribute("x", String(tail.x - ux * 17));
        label?.setAttribute("y", String(tail.y - uy * 17 + 4));
        const isMany = (this.scene?.loads.length ?? 0) > 1;
        if (label) label.textContent = isMany ? String(index + 1) : "";
        group.setAttribute("class", `load case-${(load.loadCase ?? 0) % 6}`);
        group.setAttribute(
            "aria-label",
            `Load ${index + 1} at ${describePlace(load)}: ${describeForce(load)}`,
        );
    }

    /** A line along the nodes of a load that has more than one. */
    private spanOf({ x, y }: SceneLoad): string {
        if (typeof x === "number" && typeof y === "number") return "";
        const from = this.view.toScreen({ x: first(x), y: first(y) });
        const to = this.view.toScreen({ x: last(x), y: last(y) });
        return `M${from.x} ${from.y}L${to.x} ${to.y}`;
    }

    private makeLoad(index: number): SVGElement {
        const group = svg(
            "g",
            { tabindex: 0, role: "button", "aria-roledescription": "load", "data-load": index },
            svg("path", { class: "span" }),
            svg("path", { class: "rim" }),
            svg("path", { class: "shaft" }),
            svg("path", { class: "rim head" }),
            svg("path", { class: "head" }),
            svg("circle", { class: "tail", r: 6.5 }),
            svg("text", { "text-anchor": "middle" }),
        );
        group.addEventListener("keydown", (event) => this.onKey(index, event));
        group.addEventListener("focus", () => this.onFocus(index));
        this.root.append(group);
        return group;
    }

    private drawSupports(scene: SceneFile): void {
        const shapes: string[] = [];
        for (const { x, y, fix } of scene.supports) {
            const step = Math.max(1, Math.ceil(SPACING / this.view.scale));
            for (const py of spread(first(y), last(y), step)) {
                for (const px of spread(first(x), last(x), step)) {
                    const isUpright = first(y) < last(y);
                    const at = this.view.toScreen({ x: px, y: py });
                    shapes.push(markOf(at, fix, px, py, isUpright, scene.grid));
                }
            }
        }
        let path = this.supports.firstElementChild;
        if (!path) {
            path = svg("path", { class: "support" });
            this.supports.append(path);
        }
        path.setAttribute("d", shapes.join(""));
    }
}

function spread(from: number, to: number, step: number): number[] {
    const count = Math.max(1, Math.round((to - from) / step));
    if (from === to) return [from];
    return Array.from({ length: count + 1 }, (_, i) =>
        Math.round(from + ((to - from) * i) / count),
    );
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
