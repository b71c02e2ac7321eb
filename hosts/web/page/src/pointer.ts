// Pointers of all kinds: one draws or drags, two zoom and move the plate.
import type { Point } from "./edits.js";
import type { View } from "./view.js";

export interface Gesture {
    /** Returns whether it takes the gesture; otherwise a drag moves the plate. */
    press(at: Point, pointer: string): boolean;
    move(at: Point): void;
    release(): void;
    /** A second finger came: what began was no stroke. */
    cancel(): void;
    hover(at: Point, pointer: string): void;
}

const ZOOM_BY_WHEEL = 0.0015; // by pixel

export class Pointers {
    private readonly down = new Map<number, Point>();
    private active: number | undefined; // the pointer that draws
    private pans = false;

    constructor(
        private readonly stage: HTMLElement,
        private readonly view: View,
        private readonly gesture: () => Gesture,
        private readonly onView: () => void,
    ) {
        stage.addEventListener("pointerdown", (event) => this.press(event));
        stage.addEventListener("pointermove", (event) => this.move(event));
        stage.addEventListener("pointerup", (event) => this.leave(event, false));
        stage.addEventListener("pointercancel", (event) => this.leave(event, true));
        stage.addEventListener("wheel", (event) => this.turnWheel(event), { passive: false });
    }

    /** Takes back what is being drawn or dragged. */
    cancel(): void {
        const isDrawing = this.active !== undefined && !this.pans;
        this.active = undefined;
        if (isDrawing) this.gesture().cancel();
    }

    private press(event: PointerEvent): void {
        if ((event.target as Element).closest("button, a, input") || event.button > 1) return;
        const at = this.placeOf(event);
        this.down.set(event.pointerId, at);
        this.stage.setPointerCapture(event.pointerId);
        if (this.down.size > 1) {
            if (this.active !== undefined && !this.pans) this.gesture().cancel();
            this.active = undefined;
        } else {
            this.active = event.pointerId;
            this.pans = event.button === 1 || !this.gesture().press(at, event.pointerType);
        }
    }

    private move(event: PointerEvent): void {
        const at = this.placeOf(event);
        const before = this.down.get(event.pointerId);
        if (!before) {
            this.gesture().hover(at, event.pointerType);
            return;
        }
        if (this.down.size === 2) {
            this.pinch(event.pointerId, before, at);
        } else if (event.pointerId === this.active && this.pans) {
            this.view.zoomAt(at, 1, { x: at.x - before.x, y: at.y - before.y });
            this.onView();
        } else if (event.pointerId === this.active) {
            this.gesture().move(at);
        }
        this.down.set(event.pointerId, at);
    }

    private leave(event: PointerEvent, isCancelled: boolean): void {
        if (!this.down.delete(event.pointerId) || event.pointerId !== this.active) return;
        this.active = undefined;
        if (this.pans) return;
        if (isCancelled) this.gesture().cancel();
        else this.gesture().release();
    }

    private pinch(id: number, from: Point, to: Point): void {
        const other = [...this.down].find(([key]) => key !== id)?.[1];
        if (!other) return;
        const before = Math.hypot(from.x - other.x, from.y - other.y);
        const after = Math.hypot(to.x - other.x, to.y - other.y);
        const middle = { x: (to.x + other.x) / 2, y: (to.y + other.y) / 2 };
        const by = { x: (to.x - from.x) / 2, y: (to.y - from.y) / 2 };
        this.view.zoomAt(middle, after / Math.max(1, before), by);
        this.onView();
    }

    private turnWheel(event: WheelEvent): void {
        event.preventDefault();
        this.view.zoomAt(this.placeOf(event), Math.exp(-event.deltaY * ZOOM_BY_WHEEL));
        this.onView();
    }

    private placeOf(event: MouseEvent): Point {
        const { left, top } = this.stage.getBoundingClientRect();
        return { x: event.clientX - left, y: event.clientY - top };
    }
}
