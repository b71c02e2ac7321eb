// Where the plate lies on the screen. Lengths on the plate are in elements.
import type { Point } from "./edits.js";

const MAX_ZOOM = 24;

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
    private grid = { width: 1, height: 1 };

    setStage(width: number, height: number): void {
        this.width = Math.max(1, width);
        this.height = Math.max(1, height);
        this.place();
    }

    setGrid(grid: { width: number; height: number }): void {
        this.grid = grid;
        this.fit();
    }

    fit(): void {
        this.zoom = 1;
        this.centre = { x: this.grid.width / 2, y: this.grid.height / 2 };
        this.place();
    }

    get isFitted(): boolean {
        return this.zoom === 1;
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

    /** Room for the signs around a plate that fills the stage. */
    private get margin(): { x: number; top: number; bottom: number } {
        const isSmall = this.width < 600;
        return { x: isSmall ? 26 : 64, top: isSmall ? 62 : 84, bottom: isSmall ? 34 : 56 };
    }

    private get middle(): Point {
        const { top, bottom } = this.margin;
        return { x: this.width / 2, y: (this.height + top - bottom) / 2 };
    }

    private fittedScale(): number {
        const { x, top, bottom } = this.margin;
        return Math.max(
            0.5,
            Math.min(
                (this.width - 2 * x) / this.grid.width,
                (this.height - top - bottom) / this.grid.height,
            ),
        );
    }

    private place(): void {
        // Some of the plate stays in sight.
        const { width, height } = this.grid;
        this.centre.x = Math.max(0, Math.min(width, this.centre.x));
        this.centre.y = Math.max(0, Math.min(height, this.centre.y));
        if (this.zoom === 1) this.centre = { x: width / 2, y: height / 2 };
        this.scale = this.fittedScale() * this.zoom;
        this.left = this.middle.x - this.centre.x * this.scale;
        this.top = this.middle.y - this.centre.y * this.scale;
    }
}
