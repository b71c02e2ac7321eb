// Where the plate lies on the screen. Lengths on the plate are in elements.
import type { Point } from "./edits.js";
import type { Extent } from "./symmetry.js";

const MAX_ZOOM = 24;
const EDGE = 12; // pixels between a sign and the edge of the stage
const MOST_MARGIN = 0.3; // of the stage, at each side

/** A place on the plate, and a distance from it in pixels, that the stage has to show. */
export interface Reach extends Point {
    dx: number;
    dy: number;
}

interface Margin {
    left: number;
    right: number;
    top: number;
    bottom: number;
}

export class View {
    /** Pixels per element. */
    scale = 1;
    /** Pixels from the corner of the stage to that of the plate. */
    left = 0;
    top = 0;
    width = 1;
    height = 1;
    private zoom = 1;
    private centre: Point = { x: 0, y: 0 };
    private extent: Extent = { left: 0, top: 0, right: 1, bottom: 1 };
    private margin: Margin = { left: 0, right: 0, top: 0, bottom: 0 };

    /** `reaches` are the ends of the signs around the plate, for which there is room. */
    constructor(private readonly reaches: (view: View) => Reach[]) {}

    setStage(width: number, height: number): void {
        this.width = Math.max(1, width);
        this.height = Math.max(1, height);
        this.makeRoom();
        this.place();
    }

    /** The plate and what belongs to it. */
    setExtent(extent: Extent): void {
        this.extent = extent;
        this.fit();
    }

    fit(): void {
        this.zoom = 1;
        this.makeRoom();
        this.place();
    }

    toPlate(screen: Point): Point {
        return { x: (screen.x - this.left) / this.scale, y: (screen.y - this.top) / this.scale };
    }

    toScreen(plate: Point): Point {
        return { x: this.left + plate.x * this.scale, y: this.top + plate.y * this.scale };
    }

    /** Zooms about a place of the screen that stays, and moves the plate with it. */
    zoomAt(screen: Point, factor: number, by: Point = { x: 0, y: 0 }): void {
        const place = this.toPlate({ x: screen.x - by.x, y: screen.y - by.y });
        this.zoom = Math.min(MAX_ZOOM, Math.max(1, this.zoom * factor));
        const scale = this.fittedScale() * this.zoom;
        this.centre = {
            x: place.x - (screen.x - this.middle.x) / scale,
            y: place.y - (screen.y - this.middle.y) / scale,
        };
        this.place();
    }

    /** Signs stand out by pixels, so that more margin makes a smaller plate and moves them. */
    private makeRoom(): void {
        const isSmall = this.width < 600;
        const side = isSmall ? 26 : 64;
        const [top, bottom] = isSmall ? [62, 34] : [84, 56];
        const margin: Margin = { left: side, right: side, top, bottom };
        this.margin = margin;
        const most = { x: MOST_MARGIN * this.width, y: MOST_MARGIN * this.height };
        for (let round = 0; round < 8; ++round) {
            const scale = this.fittedScale();
            const x = this.middle.x - this.extentMiddle.x * scale;
            const y = this.middle.y - this.extentMiddle.y * scale;
            const ends = this.reaches(this).map((reach) => ({
                x: x + reach.x * scale + reach.dx,
                y: y + reach.y * scale + reach.dy,
            }));
            const xs = ends.map((end) => end.x);
            const ys = ends.map((end) => end.y);
            const grown = (size: number, by: number, most: number) =>
                Math.max(size, Math.min(most, size + by));
            margin.left = grown(margin.left, EDGE - Math.min(...xs), most.x);
            margin.right = grown(margin.right, Math.max(...xs) + EDGE - this.width, most.x);
            margin.top = grown(margin.top, EDGE - Math.min(...ys), most.y);
            margin.bottom = grown(margin.bottom, Math.max(...ys) + EDGE - this.height, most.y);
        }
    }

    private get middle(): Point {
        const { left, right, top, bottom } = this.margin;
        return { x: (this.width + left - right) / 2, y: (this.height + top - bottom) / 2 };
    }

    private get extentMiddle(): Point {
        const { left, right, top, bottom } = this.extent;
        return { x: (left + right) / 2, y: (top + bottom) / 2 };
    }

    private fittedScale(): number {
        const { margin, extent } = this;
        return Math.max(
            0.5,
            Math.min(
                (this.width - margin.left - margin.right) / (extent.right - extent.left),
                (this.height - margin.top - margin.bottom) / (extent.bottom - extent.top),
            ),
        );
    }

    private place(): void {
        // Some of the plate stays in sight.
        const { left, right, top, bottom } = this.extent;
        this.centre.x = Math.max(left, Math.min(right, this.centre.x));
        this.centre.y = Math.max(top, Math.min(bottom, this.centre.y));
        if (this.zoom === 1) this.centre = this.extentMiddle;
        this.scale = this.fittedScale() * this.zoom;
        this.left = this.middle.x - this.centre.x * this.scale;
        this.top = this.middle.y - this.centre.y * this.scale;
    }
}
