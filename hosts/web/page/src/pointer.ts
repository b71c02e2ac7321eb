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

export function followPointers(
    stage: HTMLElement,
    view: View,
    gesture: () => Gesture,
    onView: () => void,
): void {
    const down = new Map<number, Point>();
    let active: number | undefined; // the pointer that draws
    let pans = false;

    const placeOf = (event: MouseEvent): Point => {
        const { left, top } = stage.getBoundingClientRect();
        return { x: event.clientX - left, y: event.clientY - top };
    };

    const pinch = (id: number, to: Point): void => {
        const from = down.get(id);
        const other = [...down].find(([key]) => key !== id)?.[1];
        if (!from || !other) return;
        const before = Math.hypot(from.x - other.x, from.y - other.y);
        const after = Math.hypot(to.x - other.x, to.y - other.y);
        const middle = { x: (to.x + other.x) / 2, y: (to.y + other.y) / 2 };
        const by = { x: (to.x - from.x) / 2, y: (to.y - from.y) / 2 };
        view.zoomAt(middle, after / Math.max(1, before), by);
        onView();
    };

    stage.addEventListener("pointerdown", (event) => {
        if ((event.target as Element).closest("button, a, input") || event.button > 1) return;
        const at = placeOf(event);
        down.set(event.pointerId, at);
        stage.setPointerCapture(event.pointerId);
        if (down.size > 1) {
            if (active !== undefined && !pans) gesture().cancel();
            active = undefined;
        } else {
            active = event.pointerId;
            pans = event.button === 1 || !gesture().press(at, event.pointerType);
        }
    });

    stage.addEventListener("pointermove", (event) => {
        const at = placeOf(event);
        const before = down.get(event.pointerId);
        if (!before) {
            gesture().hover(at, event.pointerType);
        } else if (down.size === 2) {
            pinch(event.pointerId, at);
        } else if (event.pointerId === active && pans) {
            view.zoomAt(at, 1, { x: at.x - before.x, y: at.y - before.y });
            onView();
        } else if (event.pointerId === active) {
            gesture().move(at);
        }
        if (before) down.set(event.pointerId, at);
    });

    const leave = (event: PointerEvent, isCancelled: boolean): void => {
        if (!down.delete(event.pointerId) || event.pointerId !== active) return;
        active = undefined;
        if (pans) return;
        if (isCancelled) gesture().cancel();
        else gesture().release();
    };
    stage.addEventListener("pointerup", (event) => leave(event, false));
    stage.addEventListener("pointercancel", (event) => leave(event, true));
    stage.addEventListener(
        "wheel",
        (event) => {
            event.preventDefault();
            view.zoomAt(placeOf(event), Math.exp(-event.deltaY * 0.0015));
            onView();
        },
        { passive: false },
    );
}
