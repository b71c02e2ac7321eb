// Loads and supports over the plate. Loads are reached by Tab and moved by keys.
import type { SceneFile, SceneLoad } from "voxam";
import { svg } from "./dom.js";
import { first, last } from "./edits.js";
import { arrowsOf, supportsPath, type Arrow } from "./shapes.js";
import type { View } from "./view.js";

const MOST_LABELS = 20; // numbers of more arrows cover one another

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

export const describeLoad = (load: SceneLoad, index: number): string =>
    `Load ${index + 1} at ${describePlace(load)}: ${describeForce(load)}`;

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
        this.arrows = arrowsOf(scene, view);
        while (this.loads.length > scene.loads.length) this.loads.pop()?.remove();
        scene.loads.forEach((load, index) => this.drawLoad(load, index));
    }

    focus(index: number): void {
        this.loads[index]?.focus({ preventScroll: true });
    }

    private drawLoad(load: SceneLoad, index: number): void {
        const arrow = this.arrows[index];
        if (!arrow) return;
        const group = (this.loads[index] ??= this.makeLoad(index));
        const { tail, label: place, shaft, head } = arrow;
        const parts = group.children;
        parts[0]?.setAttribute("d", this.spanOf(load));
        for (const i of [1, 2]) parts[i]?.setAttribute("d", shaft);
        for (const i of [3, 4]) parts[i]?.setAttribute("d", head);
        parts[5]?.setAttribute("cx", String(tail.x));
        parts[5]?.setAttribute("cy", String(tail.y));
        const label = parts[6];
        label?.setAttribute("x", String(place.x));
        label?.setAttribute("y", String(place.y));
        const count = this.scene?.loads.length ?? 0;
        const isNumbered = count > 1 && (count <= MOST_LABELS || index === this.selected);
        if (label) label.textContent = isNumbered ? String(index + 1) : "";
        group.setAttribute("class", `load case-${(load.loadCase ?? 0) % 6}`);
        group.setAttribute("aria-label", describeLoad(load, index));
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
        let path = this.supports.firstElementChild;
        if (!path) {
            path = svg("path", { class: "support" });
            this.supports.append(path);
        }
        path.setAttribute("d", supportsPath(scene, this.view));
    }
}
