// What the pointer does to the scene, tool by tool.
import { ELEMENT, type SceneFile } from "voxam";
import type { SceneDocument } from "./document.js";
import {
    addLoad,
    brushed,
    moveLoad,
    paint,
    placeOf,
    removeLoad,
    setSupports,
    turnLoad,
    type Fix,
    type Point,
} from "./edits.js";
import type { Signs } from "./signs.js";
import type { View } from "./view.js";

export interface ToolKind {
    name: ToolName;
    label: string;
    key: string;
    hint: string;
    /** What it may do, the usual thing first. */
    options?: readonly ToolOption[];
    /** Whether it has a brush with a size. */
    paints?: boolean;
}

interface ToolOption {
    name: string;
    label: string;
}

export type ToolName = "move" | "load" | "support" | "void" | "solid" | "blob" | "erase";

export const TOOLS: readonly ToolKind[] = [
    { name: "move", label: "Move", key: "1", hint: "Drag an arrow; turn it by its round end" },
    { name: "load", label: "Load", key: "2", hint: "Tap where a new load pulls" },
    {
        name: "support",
        label: "Hold",
        key: "3",
        hint: "Paint the nodes that are held",
        options: [
            { name: "xy", label: "Fixed" },
            { name: "y", label: "Roller, slides sideways" },
            { name: "x", label: "Roller, slides up and down" },
        ],
    },
    {
        name: "void",
        label: "Void",
        key: "4",
        hint: "Keep void: paint where no material may be",
        paints: true,
    },
    {
        name: "solid",
        label: "Solid",
        key: "5",
        hint: "Keep solid: paint where material must be",
        options: [
            { name: "first", label: "Solid" },
            { name: "second", label: "Solid, second kind" },
        ],
        paints: true,
    },
    {
        name: "blob",
        label: "Hole",
        key: "6",
        hint: "Paint a hole that may find its place",
        paints: true,
    },
    {
        name: "erase",
        label: "Erase",
        key: "7",
        hint: "Rub out loads, supports and paint",
        paints: true,
    },
];

/** How near a finger or a mouse has to come, in pixels. */
const REACH = { touch: 30, mouse: 15 };
const BRUSH_SHARE = 0.055; // of the plate's longer side

interface Grip {
    index: number;
    turns: boolean;
    offset: Point;
}

/** A gesture from press to release, in pixels of the stage. */
export class Hand {
    tool: ToolName = "move";
    fix: Fix = "xy";
    solid: typeof ELEMENT.SOLID | typeof ELEMENT.SECOND_SOLID = ELEMENT.SOLID;
    /** Diameter in elements; 0 suits the plate. */
    size = 0;
    private grip: Grip | undefined;
    private lastPlace: Point | undefined;
    /** Supports of one stroke are painted together, so that they join to ranges. */
    private stroke: { scene: SceneFile; places: Point[] } | undefined;

    constructor(
        private readonly scene: SceneDocument,
        private readonly view: View,
        private readonly signs: Signs,
        private readonly complain: (text: string) => void,
    ) {}

    get brushSize(): number {
        if (this.size > 0) return this.size;
        const { width, height } = this.scene.scene.grid;
        return Math.max(2, Math.round(BRUSH_SHARE * Math.max(width, height)));
    }

    /** What is under the pointer: an arrow, or its round end, which turns it. */
    find(at: Point, pointer: string): { index: number; turns: boolean } | undefined {
        const reach = pointer === "touch" ? REACH.touch : REACH.mouse;
        let found: { index: number; turns: boolean } | undefined;
        let nearest = reach;
        for (const { index, tip, tail } of this.signs.arrows) {
            const toTail = Math.hypot(at.x - tail.x, at.y - tail.y) * 1.15;
            const toShaft = distanceToSegment(at, tail, tip);
            const distance = Math.min(toTail, toShaft);
            if (distance >= nearest) continue;
            nearest = distance;
            const isAtTail = Math.hypot(at.x - tail.x, at.y - tail.y) < reach * 0.75;
            found = { index, turns: isAtTail };
        }
        return found;
    }

    /** Returns whether the gesture does something. */
    press(at: Point, pointer: string): boolean {
        const found = this.find(at, pointer);
        this.lastPlace = undefined;
        if (found && (this.tool === "move" || this.tool === "load")) {
            this.take(found, at);
            return true;
        }
        if (this.tool === "move") return false;
        if (this.tool === "erase" && found) {
            this.eraseLoad(found.index);
            return true;
        }
        this.scene.begin();
        this.stroke = { scene: this.scene.scene, places: [] };
        if (this.tool === "load") {
            this.scene.change({ scene: addLoad(this.scene.scene, this.nodeAt(at)) });
            this.take({ index: this.scene.scene.loads.length - 1, turns: false }, at);
            return true;
        }
        this.move(at);
        return true;
    }

    /** Returns whether it did: a scene needs a load. */
    eraseLoad(index: number): boolean {
        const { scene } = this.scene;
        if (scene.loads.length < 2) {
            this.complain("This is the only load, and a plate needs one. Add another one first.");
            return false;
        }
        this.scene.change({ scene: removeLoad(scene, index) });
        return true;
    }

    move(at: Point): void {
        if (this.grip) {
            this.drag(this.grip, at);
            return;
        }
        if (!this.stroke) return;
        const place = this.view.toPlate(at);
        const from = this.lastPlace ?? place;
        const steps = Math.max(1, Math.ceil(Math.hypot(place.x - from.x, place.y - from.y)));
        const places = Array.from({ length: steps }, (_, i) => ({
            x: from.x + ((place.x - from.x) * (i + 1)) / steps,
            y: from.y + ((place.y - from.y) * (i + 1)) / steps,
        }));
        this.lastPlace = place;
        this.apply(places);
    }

    release(): void {
        this.grip = undefined;
        this.stroke = undefined;
        this.scene.end();
    }

    cancel(): void {
        this.grip = undefined;
        this.stroke = undefined;
        this.scene.cancel();
    }

    /** Uses the tool at places of the plate. */
    apply(places: Point[]): void {
        const { state } = this.scene;
        const { grid } = state.scene;
        const elements = places.flatMap((place) => brushed(grid, place, this.brushSize));
        if (this.tool === "support") {
            const { scene, places: earlier } = this.stroke ?? { scene: state.scene, places: [] };
            earlier.push(...places);
            this.scene.change({ scene: this.held(scene, earlier, this.fix) });
        }
        if (this.tool === "void") this.scene.change(paint(state, elements, ELEMENT.VOID));
        else if (this.tool === "solid") this.scene.change(paint(state, elements, this.solid));
        else if (this.tool === "blob") this.scene.change(paint(state, elements, ELEMENT.BLOB));
        else if (this.tool === "erase") {
            const painted = paint(state, elements, ELEMENT.FREE);
            this.scene.change(painted);
            this.scene.change({ scene: this.held(this.scene.scene, places, undefined) });
        }
    }

    nodeAt(at: Point): Point {
        return this.nearestNode(this.view.toPlate(at));
    }

    private held(scene: SceneFile, places: Point[], fix: Fix | undefined): SceneFile {
        const reach = fix ? 0 : this.brushSize / 2;
        const nodes = places.flatMap((place) => this.nodesAround(place, reach));
        return setSupports(scene, nodes, fix);
    }

    private nodesAround(place: Point, reach: number): Point[] {
        const nearest = this.nearestNode(place);
        const { width, height } = this.scene.scene.grid;
        const nodes: Point[] = [];
        for (let y = Math.ceil(nearest.y - reach); y <= nearest.y + reach; ++y) {
            for (let x = Math.ceil(nearest.x - reach); x <= nearest.x + reach; ++x) {
                if (x >= 0 && y >= 0 && x <= width && y <= height) nodes.push({ x, y });
            }
        }
        return nodes;
    }

    private nearestNode({ x, y }: Point): Point {
        const { width, height } = this.scene.scene.grid;
        return {
            x: Math.max(0, Math.min(width, Math.round(x))),
            y: Math.max(0, Math.min(height, Math.round(y))),
        };
    }

    private take({ index, turns }: { index: number; turns: boolean }, at: Point): void {
        const load = this.scene.scene.loads[index];
        const arrow = this.signs.arrows[index];
        if (!load) return;
        this.scene.begin();
        const tip = arrow?.tip ?? at;
        this.grip = { index, turns, offset: { x: at.x - tip.x, y: at.y - tip.y } };
        this.signs.selected = index;
    }

    private drag({ index, turns, offset }: Grip, at: Point): void {
        const { scene } = this.scene;
        const load = scene.loads[index];
        if (!load) return;
        const place = placeOf(load);
        if (turns) {
            const tip = this.view.toScreen(place);
            const angle = Math.atan2(tip.y - at.y, tip.x - at.x);
            const step = Math.PI / 36;
            this.scene.change({ scene: turnLoad(scene, index, Math.round(angle / step) * step) });
            return;
        }
        const wanted = this.view.toPlate({ x: at.x - offset.x, y: at.y - offset.y });
        const moved = moveLoad(scene, index, { x: wanted.x - place.x, y: wanted.y - place.y });
        if (moved !== scene) this.scene.change({ scene: moved });
    }
}

function distanceToSegment(at: Point, from: Point, to: Point): number {
    const [dx, dy] = [to.x - from.x, to.y - from.y];
    const length = dx * dx + dy * dy || 1;
    const share = ((at.x - from.x) * dx + (at.y - from.y) * dy) / length;
    const t = Math.max(0, Math.min(1, share));
    return Math.hypot(at.x - from.x - t * dx, at.y - from.y - t * dy);
}
