import type { SceneFile } from "voxam";
import { SceneDocument } from "./document.js";
import { addIcons, byId, html, icon, isDark } from "./dom.js";
import { Drawing, drawnOf, rivalScene } from "./drawing.js";
import { moveLoad, turnLoad, type Point } from "./edits.js";
import { Files } from "./files.js";
import { makeGallery } from "./gallery.js";
import { GridFields } from "./grid-fields.js";
import { Library } from "./library.js";
import { fromFragment } from "./link.js";
import { LoadFields } from "./load-fields.js";
import { Numbers } from "./numbers.js";
import { paintPicture } from "./picture.js";
import { Plate } from "./plate.js";
import { Pointers, type Gesture } from "./pointer.js";
import type { Frame } from "./protocol.js";
import { reachesOf } from "./shapes.js";
import { describeLoad, Signs } from "./signs.js";
import startScene from "./start.json" with { type: "json" };
import { extentOf, mirrorOf } from "./symmetry.js";
import { keepWork, keptWork, type Work } from "./tab.js";
import { ToolOptions } from "./tool-options.js";
import { Hand, TOOLS, type ToolName } from "./tools.js";
import { View } from "./view.js";
import { Views } from "./views.js";
import { adviceOn, sentenceOf } from "./words.js";

const start = startScene as unknown as SceneFile;
const LINK_NAME = "shared-scene.json";

/** What binds the parts of the page to one another. */
class Page {
    private readonly stage = byId("stage");
    private readonly panel = byId("panel");
    private readonly view = new View((view) => reachesOf(this.scene.scene, view));
    private readonly voxam = new Library();
    private readonly scene = new SceneDocument(start);
    private readonly plate = new Plate(byId<HTMLCanvasElement>("plate"), this.view);
    private readonly signs = new Signs(
        byId<SVGSVGElement>("signs"),
        this.view,
        (index, event) => this.moveByKey(index, event),
        (index) => {
            this.signs.selected = index;
            this.loadFields.show();
            this.redraw();
        },
    );
    private readonly hand = new Hand(this.scene, this.view, this.signs, (text) =>
        this.complain(text),
    );
    private pointers: Pointers | undefined;
    private readonly loadFields = new LoadFields(this.scene, this.signs);
    private readonly numbers = new Numbers((text) => this.announce(text));
    private readonly drawing = new Drawing(
        this.voxam,
        this.view,
        this.plate,
        () => this.redraw(),
        (text) => this.announce(text),
    );
    private readonly views = new Views(
        this.voxam,
        this.plate,
        () => this.scene.scene.grid,
        () => this.drawing.isOn,
        () => this.redraw(),
    );
    private readonly toolOptions = new ToolOptions(this.hand);
    private readonly gridFields = new GridFields(this.scene, this.voxam, (text) =>
        this.complain(text),
    );
    private revision = 0;
    private sent: SceneFile | undefined;
    private plateRevision = 0; // of the first message about the plate that is shown
    /** Whether to draw as soon as the library has read the scene, which came with a drawing. */
    private willDraw = false;
    /** Whether the address has a link whose scene is not shown yet. */
    private isReadingLink = false;
    /** Whether the optimiser's design to draw against is of another scene than the one shown. */
    private hasOtherRival = false;
    private isPlaying = true;
    private frame: Frame | undefined;
    private isDrawScheduled = false;
    private keyboardPlace: Point | undefined;
    private invites = true;

    constructor() {
        addIcons(document);
        this.makeTools();
        this.bindLibrary();
        this.bindControls();
        this.bindKeys();
        this.bindStage();
        this.scene.onChange((_, isNew) => this.followScene(isNew));
        new Files(
            this.scene,
            () => this.sceneToShare,
            () => this.drawing.shown,
            this.voxam,
            (text, name) => this.openText(text, name),
            () => this.paintPicture(),
            (text) => this.complain(text),
        );
        makeGallery((text, name) => this.openText(text, name));
        addEventListener("hashchange", () => void this.openLink());
        addEventListener("pagehide", () => this.keepWork());
        document.addEventListener("visibilitychange", () => this.keepWork());
        void this.openFirst();
    }

    // ---- scenes --------------------------------------------------------------------------------

    /** What the tab was left with, or what the address says, or else the start scene. */
    private async openFirst(): Promise<void> {
        const work = keptWork();
        if (work?.fragment === location.hash && (await this.openWork(work))) return;
        if (location.hash === "" || !(await this.openLink())) {
            const { problem } = this;
            this.openScene(start, "bracket.json");
            this.complain(problem);
        }
    }

    private async openWork({ scene, name, drawing, draws }: Work): Promise<boolean> {
        try {
            const densities = drawing ? { densities: drawing } : {};
            const text = JSON.stringify({ ...scene, ...densities });
            const { hash } = location;
            this.openScene(await this.readScene(text, name), name, draws);
            history.replaceState(null, "", location.pathname + location.search + hash);
            this.invites = false;
            return true;
        } catch {
            return false;
        }
    }

    private keepWork(): void {
        if (this.sent === undefined) return;
        const { whole, name, plate } = this.scene.state;
        const drawing = this.drawing.densitiesOf(plate, whole.grid);
        keepWork({
            fragment: this.isReadingLink ? "" : location.hash,
            name,
            scene: whole,
            ...(drawing ? { drawing } : {}),
            draws: this.drawing.isOn,
        });
    }

    /** Returns whether there is a good scene in the link. */
    private async openLink(): Promise<boolean> {
        this.isReadingLink = true;
        try {
            const text = await fromFragment(location.hash);
            if (text === undefined) return false;
            const { hash } = location;
            if (!this.openScene(await this.readScene(text, LINK_NAME), LINK_NAME)) return false;
            history.replaceState(null, "", hash);
            return true;
        } catch (error) {
            // A text that the library refuses has a reason. What else fails is not a scene at all.
            const { message } = error as Error;
            const reason = message.startsWith(LINK_NAME) ? ` (${message})` : "";
            this.complain(`The link is damaged: it contains no scene${reason}.`);
            return false;
        } finally {
            this.isReadingLink = false;
        }
    }

    /** The library reads it: only then it is a scene. */
    private async readScene(text: string, name: string): Promise<SceneFile> {
        const formatted = await this.voxam.ask<string>({ kind: "format", text, name });
        return JSON.parse(formatted) as SceneFile;
    }

    private openText(text: string, name: string): void {
        this.readScene(text, name)
            .then((scene) => this.openScene(scene, name))
            .catch((error: unknown) => this.complain((error as Error).message));
    }

    /** Returns whether there is something to optimise. */
    private openScene(scene: SceneFile, name: string, draws = true): boolean {
        const { densities: _densities, ...problem } = scene;
        const given = drawnOf(scene);
        if (problem.volumeFraction === undefined) {
            if (!given) {
                this.complain(
                    `${name}: this scene has no volumeFraction, so there is nothing to optimise`,
                );
                return false;
            }
            const filled = given.cells.reduce((sum, cell) => sum + cell, 0) / given.cells.length;
            problem.volumeFraction = Math.max(0.01, Number(filled.toFixed(4)));
        }
        // The link in the address is no longer what is shown.
        if (location.hash) history.replaceState(null, "", location.pathname + location.search);
        this.invites = this.sent === undefined;
        this.setMode(false);
        this.signs.selected = 0;
        byId<HTMLInputElement>("move-blob").checked = false;
        this.voxam.send({ kind: "moveBlob", on: false });
        this.willDraw = given !== undefined && draws;
        this.scene.open(problem, name);
        if (given) this.drawing.give(this.scene.state.plate, given);
        return true;
    }

    private followScene(isNew: boolean): void {
        const { scene, whole, kinds } = this.scene.state;
        if (isNew) {
            this.view.setExtent(extentOf(scene));
            this.plate.mirror = mirrorOf(scene);
            this.plate.setPicture(undefined);
            this.plateRevision = this.revision + 1;
            this.views.clear();
            this.views.follow();
            this.numbers.reset();
            this.frame = undefined;
        }
        if (whole !== this.sent) this.sendScene(isNew);
        this.plate.setKinds(scene.grid, kinds);
        this.showScene();
        this.redraw();
    }

    private sendScene(restart: boolean): void {
        this.sent = this.scene.state.whole;
        this.send(this.sent, restart);
        this.complain("");
    }

    private send(scene: SceneFile, restart: boolean): void {
        const text = JSON.stringify(scene);
        const revision = ++this.revision;
        this.voxam.send({ kind: "open", revision, text, name: this.scene.name, restart });
    }

    private showScene(): void {
        const { scene } = this.scene;
        byId("scene-title").textContent = scene.title ?? "";
        document.title = scene.title ? `${scene.title} – Voxam` : "Voxam";
        const volume = Math.round(100 * (scene.volumeFraction ?? 0));
        byId<HTMLInputElement>("volume").value = String(volume);
        byId("volume-text").textContent = `${volume} %`;
        byId("blob-row").hidden = !scene.blob;
        const steps = this.drawing.isOn ? this.drawing : this.scene;
        byId<HTMLButtonElement>("undo").disabled = !steps.canUndo;
        byId<HTMLButtonElement>("redo").disabled = !steps.canRedo;
        this.loadFields.show();
        this.gridFields.show();
    }

    // ---- the library ---------------------------------------------------------------------------

    private bindLibrary(): void {
        const { voxam } = this;
        voxam.on("opened", ({ revision, kinds, findings, timeline }) => {
            if (revision !== this.revision || this.drawing.isOn) return;
            this.scene.follow(timeline, kinds);
            this.plate.setKinds(this.scene.scene.grid, kinds);
            const fault = findings.find((finding) => finding.isError);
            if (fault) this.complain(sentenceOf(fault));
            const { willDraw } = this;
            this.willDraw = false;
            if (willDraw) this.setMode(true);
            this.showScene();
            this.redraw();
        });
        voxam.on("frame", ({ frame }) => this.takeFrame(frame));
        voxam.on("state", ({ revision, state }) => {
            if (revision === this.revision) this.numbers.setState(state);
        });
        voxam.on("drawn", ({ revision, score }) => {
            if (revision === this.revision) this.numbers.showDrawn(score);
        });
        voxam.on("stopped", ({ revision, text, resumesAt }) => {
            if (revision !== 0 && revision !== this.revision) return;
            const then = resumesAt
                ? ` The run resumes with the change at iteration ${resumesAt}.`
                : "";
            if (revision === 0) this.numbers.setState("stopped");
            if (!this.drawing.isOn) this.complain(adviceOn(text) + then);
        });
        voxam.on("refused", ({ revision, text }) => {
            if (revision === this.revision) this.complain(text);
        });
    }

    private takeFrame(frame: Frame): void {
        this.voxam.send({ kind: "shown" });
        const { revision } = frame;
        if (revision < this.plateRevision) return; // of a plate that is no more
        const isFirst = this.revision === 1 && this.frame === undefined;
        this.frame = frame;
        this.plate.setPicture(bitmapOf(frame));
        if (revision === this.revision && !this.drawing.isOn) this.followRun(frame);
        this.numbers.show(frame);
        // For measurements, as the place of the plate is for tests.
        this.stage.dataset["revision"] = String(revision);
        this.stage.dataset["time"] = String(frame.time);
        if (isFirst) requestAnimationFrame(() => performance.mark("first structure"));
        this.redraw();
    }

    private followRun({ kinds, timeline }: Frame): void {
        this.scene.follow(timeline, kinds);
        if (kinds) this.plate.setKinds(this.scene.scene.grid, kinds);
        if (timeline.scene !== undefined) this.showScene();
    }

    private get problem(): string {
        return byId("problem").textContent;
    }

    /** Shows what is wrong, or takes it away. */
    private complain(text: string): void {
        const problem = byId("problem");
        problem.textContent = text;
        problem.hidden = text === "";
    }

    // ---- showing -------------------------------------------------------------------------------

    private redraw(): void {
        if (this.isDrawScheduled) return;
        this.isDrawScheduled = true;
        requestAnimationFrame(() => {
            this.isDrawScheduled = false;
            this.plate.draw();
            this.signs.draw(this.scene.scene);
            const { left, top, scale } = this.view;
            this.stage.dataset["place"] = `${left} ${top} ${scale}`;
            this.showInvitation();
        });
    }

    private showInvitation(): void {
        const invitation = byId("invitation");
        const arrow = this.signs.arrows[0];
        invitation.hidden = !this.invites || !arrow || !this.frame || this.drawing.isOn;
        if (invitation.hidden || !arrow) return;
        const { tail } = arrow;
        const right = Math.min(tail.x + 24, this.view.width - 14);
        invitation.style.transform = `translate(${right}px, ${tail.y - 20}px) translate(-100%, -100%)`;
    }

    private paintPicture(): HTMLCanvasElement {
        const { scene, kinds } = this.scene.state;
        const bitmap = this.frame && bitmapOf(this.frame);
        return paintPicture({ scene, kinds, bitmap, look: this.plate.look });
    }

    private announce(text: string): void {
        byId("announcement").textContent = text;
    }

    // ---- controls ------------------------------------------------------------------------------

    private makeTools(): void {
        const bar = byId("tools");
        for (const { name, label, key, hint } of TOOLS) {
            const button = html("button", {
                "data-tool": name,
                "aria-pressed": String(name === "move"),
                "aria-keyshortcuts": key,
                title: `${hint} (${key})`,
            });
            button.append(icon(name), html("span", {}, label));
            button.addEventListener("click", () => this.setTool(name));
            bar.append(button);
        }
        for (const [name, label] of [
            ["pencil", "Draw"],
            ["erase", "Rub out"],
        ] as const) {
            const button = html("button", {
                "data-draw": name,
                "aria-pressed": name === "pencil" ? "true" : "false",
                hidden: "",
            });
            button.append(icon(name), html("span", {}, label));
            button.addEventListener("click", () => this.setDrawTool(name === "erase"));
            bar.append(button);
        }
    }

    private setTool(name: ToolName): void {
        this.hand.tool = name;
        for (const button of document.querySelectorAll<HTMLElement>("#tools [data-tool]")) {
            button.setAttribute("aria-pressed", String(button.dataset["tool"] === name));
        }
        this.stage.dataset["tool"] = name;
        this.toolOptions.show(name);
        this.panel.scrollTop = 0;
        this.plate.cursor = undefined;
        this.redraw();
    }

    private setDrawTool(erases: boolean): void {
        this.drawing.erasing = erases;
        for (const button of document.querySelectorAll<HTMLElement>("#tools [data-draw]")) {
            button.setAttribute(
                "aria-pressed",
                String((button.dataset["draw"] === "erase") === erases),
            );
        }
    }

    private setMode(draws: boolean): void {
        byId("mode-optimise").setAttribute("aria-pressed", String(!draws));
        byId("mode-draw").setAttribute("aria-pressed", String(draws));
        byId("optimise-panel").hidden = draws;
        byId("draw-panel").hidden = !draws;
        for (const button of document.querySelectorAll<HTMLElement>("#tools [data-tool]"))
            button.hidden = draws;
        for (const button of document.querySelectorAll<HTMLElement>("#tools [data-draw]"))
            button.hidden = !draws;
        document.body.classList.toggle("draws", draws);
        this.panel.scrollTop = 0;
        if (draws === this.drawing.isOn) return;
        if (draws) this.startDrawing();
        else this.stopDrawing();
        this.showScene();
        this.redraw();
    }

    private startDrawing(): void {
        this.invites = false;
        const { scene, kinds, plate } = this.scene.state;
        const rival = rivalScene(scene);
        this.hasOtherRival = rival !== scene;
        if (this.hasOtherRival) this.send(rival, false);
        this.complain("");
        this.views.clear();
        this.setDrawTool(false);
        this.drawing.start(scene, kinds, plate);
    }

    private stopDrawing(): void {
        this.drawing.stop();
        this.sendScene(false);
        if (this.hasOtherRival) {
            this.numbers.reset();
            this.plateRevision = this.revision;
        }
        this.views.follow();
    }

    /** What a link or a file says: in drawing mode the drawing as well. */
    private get sceneToShare(): SceneFile {
        if (!this.drawing.isOn) return this.scene.state.whole;
        const { scene, plate } = this.scene.state;
        const { timeline: _timeline, ...problem } = scene;
        return { ...problem, densities: this.drawing.densitiesOf(plate, scene.grid) };
    }

    private setPlaying(plays: boolean): void {
        this.isPlaying = plays;
        this.voxam.send({ kind: "play", on: plays });
        const button = byId("pause");
        button.dataset["icon"] = plays ? "pause" : "play";
        button.setAttribute("aria-label", plays ? "Pause" : "Go on");
        addIcons(button.parentElement ?? document);
    }

    private bindControls(): void {
        const volume = byId<HTMLInputElement>("volume");
        const onVolume = () => {
            this.scene.begin();
            this.scene.change({
                scene: { ...this.scene.scene, volumeFraction: volume.valueAsNumber / 100 },
            });
        };
        volume.addEventListener("input", onVolume);
        volume.addEventListener("change", () => this.scene.end());
        byId("mode-optimise").addEventListener("click", () => this.setMode(false));
        byId("mode-draw").addEventListener("click", () => this.setMode(true));
        byId("undo").addEventListener("click", () => this.undo());
        byId("redo").addEventListener("click", () => this.redo());
        byId("pause").addEventListener("click", () => this.setPlaying(!this.isPlaying));
        byId("restart").addEventListener("click", () => this.sendScene(true));
        this.toolOptions.show(this.hand.tool);
        byId("fit").addEventListener("click", () => {
            this.view.fit();
            this.redraw();
        });
        byId("move-blob").addEventListener("change", (event) => {
            const { checked } = event.target as HTMLInputElement;
            this.voxam.send({ kind: "moveBlob", on: checked });
        });
        for (const dialog of document.querySelectorAll("dialog")) {
            dialog.querySelector(".close")?.addEventListener("click", () => dialog.close());
            dialog.addEventListener("click", (event) => {
                if (event.target === dialog) dialog.close();
            });
        }
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
            this.plate.changeColours();
            document.documentElement.dataset["dark"] = String(isDark());
            this.redraw();
        });
    }

    private undo(): void {
        if (this.drawing.isOn) this.drawing.undo();
        else this.scene.undo();
        this.showScene();
    }

    private redo(): void {
        if (this.drawing.isOn) this.drawing.redo();
        else this.scene.redo();
        this.showScene();
    }

    // ---- keys ----------------------------------------------------------------------------------

    private bindKeys(): void {
        document.addEventListener("keydown", (event) => {
            const target = event.target as HTMLElement;
            if (target.closest("dialog, [role=menu], input[type=number], input[readonly]")) return;
            const command = event.ctrlKey || event.metaKey;
            const key = event.key.toLowerCase();
            // In a list letters and digits choose an entry.
            if (!command && target.closest("select")) return;
            if (command && key === "z" && !event.shiftKey) this.undo();
            else if (command && (key === "y" || (key === "z" && event.shiftKey))) this.redo();
            else if (command || event.altKey) return;
            else if (key === " ") {
                if (target.closest("button, a, input, summary, [role=button]")) return;
                this.setPlaying(!this.isPlaying);
            } else if (key === "escape") this.pointers?.cancel();
            else if (key === "f") byId("fit").click();
            else {
                const tool = TOOLS.find((candidate) => candidate.key === key);
                if (!tool || this.drawing.isOn) return;
                this.setTool(tool.name);
            }
            event.preventDefault();
        });
        const canvas = byId("plate");
        canvas.addEventListener("keydown", (event) => this.useByKey(event));
        canvas.addEventListener("blur", () => {
            this.plate.cursor = undefined;
            this.redraw();
        });
    }

    /** The keyboard's cursor on the plate. */
    private useByKey(event: KeyboardEvent): void {
        const { grid } = this.scene.scene;
        const step = event.shiftKey ? 5 : 1;
        const steps: Record<string, [number, number]> = {
            ArrowLeft: [-step, 0],
            ArrowRight: [step, 0],
            ArrowUp: [0, -step],
            ArrowDown: [0, step],
        };
        const by = steps[event.key];
        const place = (this.keyboardPlace ??= { x: grid.width / 2, y: grid.height / 2 });
        if (by) {
            place.x = Math.max(0, Math.min(grid.width, Math.round(place.x + by[0])));
            place.y = Math.max(0, Math.min(grid.height, Math.round(place.y + by[1])));
            this.announce(`x ${place.x}, y ${place.y}`);
        } else if (event.key === "Enter") {
            this.useTool(place);
        } else {
            return;
        }
        event.preventDefault();
        const size = this.drawing.isOn ? this.drawing.brushSize : this.hand.brushSize;
        this.plate.cursor = { at: place, size };
        this.redraw();
    }

    private useTool(place: Point): void {
        if (this.drawing.isOn) {
            this.drawing.stamp(place, this.drawing.erasing);
        } else if (this.hand.tool === "load") {
            if (this.hand.press(this.view.toScreen(place), "key")) this.hand.release();
        } else {
            this.scene.begin();
            this.hand.apply([place]);
            this.scene.end();
        }
        this.showScene();
    }

    private moveByKey(index: number, event: KeyboardEvent): void {
        if (this.drawing.isOn) return;
        const isErasing = this.hand.tool === "erase" && ["Enter", " "].includes(event.key);
        if (isErasing || ["Delete", "Backspace"].includes(event.key)) {
            event.preventDefault();
            this.removeByKey(index);
            return;
        }
        const { scene } = this.scene;
        const step = event.shiftKey ? 5 : 1;
        const steps: Record<string, Point> = {
            ArrowLeft: { x: -step, y: 0 },
            ArrowRight: { x: step, y: 0 },
            ArrowUp: { x: 0, y: -step },
            ArrowDown: { x: 0, y: step },
        };
        const by = steps[event.key];
        const { fx = 0, fy = 0 } = scene.loads[index] ?? {};
        const turn = { "[": -1, "]": 1 }[event.key];
        let next: SceneFile | undefined;
        if (by) next = moveLoad(scene, index, by);
        else if (turn) next = turnLoad(scene, index, Math.atan2(fy, fx) + (turn * Math.PI) / 12);
        else return;
        event.preventDefault();
        this.invites = false;
        if (next !== scene) this.scene.change({ scene: next });
        const load = next.loads[index];
        if (load) this.announce(describeLoad(load, index));
    }

    private removeByKey(index: number): void {
        if (!this.hand.eraseLoad(index)) return;
        this.announce(`Load ${index + 1} removed.`);
        this.signs.draw(this.scene.scene);
        this.signs.focus(Math.min(index, this.scene.scene.loads.length - 1));
    }

    // ---- the stage -----------------------------------------------------------------------------

    private bindStage(): void {
        const hand: Gesture = {
            press: (at, pointer) => {
                this.invites = false;
                this.complain("");
                return this.hand.press(at, pointer);
            },
            move: (at) => this.hand.move(at),
            release: () => this.hand.release(),
            cancel: () => this.hand.cancel(),
            hover: (at, pointer) => this.hover(at, pointer),
        };
        const pencil: Gesture = {
            press: (at) => this.drawing.press(at),
            move: (at) => {
                this.drawing.move(at);
                this.showCursor(at, this.drawing.brushSize);
            },
            release: () => {
                this.drawing.release();
                this.showScene();
            },
            cancel: () => this.drawing.cancel(),
            hover: (at) => this.showCursor(at, this.drawing.brushSize),
        };
        const gesture = () => (this.drawing.isOn ? pencil : hand);
        this.pointers = new Pointers(this.stage, this.view, gesture, () => this.redraw());
        this.stage.addEventListener("pointerleave", () => {
            this.plate.cursor = undefined;
            this.redraw();
        });
        const resize = () => {
            this.view.setStage(this.stage.clientWidth, this.stage.clientHeight);
            this.redraw();
        };
        new ResizeObserver(resize).observe(this.stage);
        resize();
    }

    private hover(at: Point, pointer: string): void {
        const { tool } = this.hand;
        const found = this.hand.find(at, pointer);
        const isOnArrow = found && (tool === "move" || tool === "load" || tool === "erase");
        this.stage.dataset["over"] = isOnArrow ? (found.turns ? "tail" : "arrow") : "";
        const paints = ["void", "solid", "blob", "erase"].includes(tool);
        if (paints && !isOnArrow) this.showCursor(at, this.hand.brushSize);
        else if (this.plate.cursor) this.showCursor(undefined, 0);
    }

    private showCursor(at: Point | undefined, size: number): void {
        this.plate.cursor = at ? { at: this.view.toPlate(at), size } : undefined;
        this.redraw();
    }
}

const bitmapOf = ({ picture, columns }: Frame) => ({
    cells: picture,
    width: columns,
    height: picture.length / columns,
});

new Page();

if ("serviceWorker" in navigator && import.meta.env.PROD) {
    void navigator.serviceWorker.register("./service-worker.js");
}
