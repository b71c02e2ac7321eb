// A picture of the plate as a file: all of it, with its loads and supports, on paper.
import type { SceneFile, SceneSupport, Span } from "voxam";
import { printSigns } from "./colours.js";
import { first, last } from "./edits.js";
import { Plate, type Bitmap, type Look } from "./plate.js";
import { arrowsOf, reachesOf, supportsPath, type Arrow } from "./shapes.js";
import { extentOf, isOnPlane, mirrorOf } from "./symmetry.js";
import { View } from "./view.js";

const LONGER_SIDE = 1200; // pixels of the plate
const MARGIN = 160; // for both sides together, more than signs usually need

export interface Content {
    scene: SceneFile;
    kinds: Uint8Array;
    bitmap: Bitmap | undefined;
    look: Look | undefined;
}

export function paintPicture({ scene, kinds, bitmap, look }: Content): HTMLCanvasElement {
    const picture = document.createElement("canvas");
    const extent = extentOf(scene);
    const [width, height] = [extent.right - extent.left, extent.bottom - extent.top];
    const scale = LONGER_SIDE / Math.max(width, height);
    const view = new View(() => reachesOf(scene, { width: LONGER_SIDE }));
    view.setStage(Math.round(width * scale) + MARGIN, Math.round(height * scale) + MARGIN);
    view.setExtent(extent);
    const plate = new Plate(picture, view, true);
    plate.setPicture(bitmap);
    plate.look = look;
    plate.mirror = mirrorOf(scene);
    plate.setKinds(scene.grid, kinds);
    plate.draw();
    const context = picture.getContext("2d");
    if (context) paintSigns(context, scene, view);
    return picture;
}

const liesOnPlane = (scene: SceneFile, { x, y }: { x: Span; y: Span }): boolean =>
    [first, last].every((end) => isOnPlane(scene, end(x), end(y)));

/** A whole plate is not held across its plane of symmetry. */
function standsForPlane(scene: SceneFile, support: SceneSupport): boolean {
    const across = scene.symmetry === "left" || scene.symmetry === "right" ? "x" : "y";
    return support.fix === across && liesOnPlane(scene, support);
}

function paintSigns(context: CanvasRenderingContext2D, scene: SceneFile, view: View): void {
    const arrows = arrowsOf(scene, view);
    const mirror = mirrorOf(scene);
    if (mirror) {
        // On the plane the sign of the other half is the same one.
        const others = arrows.filter(({ index }) => {
            const load = scene.loads[index];
            return load && !liesOnPlane(scene, load);
        });
        const supports = supportsPath(scene, view, (x, y) => !isOnPlane(scene, x, y));
        context.setTransform(view.scale, 0, 0, view.scale, view.left, view.top);
        context.transform(...mirror);
        context.scale(1 / view.scale, 1 / view.scale);
        context.translate(-view.left, -view.top);
        paint(context, scene, others, supports);
    }
    context.setTransform(1, 0, 0, 1, 0, 0);
    const supports = scene.supports.filter((support) => !standsForPlane(scene, support));
    paint(context, scene, arrows, supportsPath({ ...scene, supports }, view));
    if (scene.loads.length < 2) return;
    context.font = "600 15px system-ui, sans-serif";
    context.textAlign = "center";
    for (const { index, label } of arrows) {
        context.fillStyle = colourOf(scene, index);
        context.fillText(String(index + 1), label.x, label.y);
    }
}

const colourOf = ({ loads }: SceneFile, index: number): string =>
    printSigns.cases[(loads[index]?.loadCase ?? 0) % printSigns.cases.length] ?? "";

function paint(
    context: CanvasRenderingContext2D,
    scene: SceneFile,
    arrows: Arrow[],
    supports: string,
): void {
    context.fillStyle = context.strokeStyle = printSigns.support;
    context.lineWidth = 1.2;
    context.fill(new Path2D(supports));
    context.stroke(new Path2D(supports));
    context.lineCap = "round";
    for (const { index, shaft, head } of arrows) {
        context.lineWidth = 9;
        context.strokeStyle = printSigns.rim;
        context.stroke(new Path2D(shaft));
        context.lineWidth = 4;
        context.strokeStyle = context.fillStyle = colourOf(scene, index);
        context.stroke(new Path2D(shaft));
        context.fill(new Path2D(head));
    }
}
