// Scenes that describe one half of a plate: the other half is shown beside it.
import type { SceneFile } from "voxam";

/** A rectangle in elements. */
export interface Extent {
    left: number;
    top: number;
    right: number;
    bottom: number;
}

type Plate = Pick<SceneFile, "grid" | "symmetry">;

/** The plate, with the mirrored half. */
export function extentOf({ grid: { width, height }, symmetry }: Plate): Extent {
    return {
        left: symmetry === "left" ? -width : 0,
        top: symmetry === "top" ? -height : 0,
        right: symmetry === "right" ? 2 * width : width,
        bottom: symmetry === "bottom" ? 2 * height : height,
    };
}

/** As a canvas takes it: where the other half of a place is. */
export type Mirror = [number, number, number, number, number, number];

export function mirrorOf({ grid: { width, height }, symmetry }: Plate): Mirror | undefined {
    if (symmetry === "left") return [-1, 0, 0, 1, 0, 0];
    if (symmetry === "right") return [-1, 0, 0, 1, 2 * width, 0];
    if (symmetry === "top") return [1, 0, 0, -1, 0, 0];
    if (symmetry === "bottom") return [1, 0, 0, -1, 0, 2 * height];
    return undefined;
}

/** Whether nodes lie on the plane of symmetry. The other half has no sign of its own there. */
export function isOnPlane({ grid, symmetry }: Plate, x: number, y: number): boolean {
    if (symmetry === "left" || symmetry === "right")
        return x === (symmetry === "left" ? 0 : grid.width);
    if (symmetry === "top" || symmetry === "bottom")
        return y === (symmetry === "top" ? 0 : grid.height);
    return false;
}
