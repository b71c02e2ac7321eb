// The scene that is edited, and what undo brings back.
import type { SceneFile, TimelineState } from "voxam";
import { withEdit, type Edit } from "./edits.js";

export interface State {
    /** What is shown and edited: the scene after the changes of its timeline that were made. */
    readonly scene: SceneFile;
    /** The scene as it is saved, with its timeline. */
    readonly whole: SceneFile;
    /** What each element is, row by row; see ELEMENT of the package. */
    readonly kinds: Uint8Array;
    /** Of its file. */
    readonly name: string;
    /** The same for all edits of a plate; another plate has another. */
    readonly plate: number;
}

export type Listener = (state: State, isNewScene: boolean) => void;

const MAX_STEPS = 200;

/** Edits between begin() and end() are one step of undo. */
export class SceneDocument {
    private current: State;
    private lastPlate = 0;
    private changes = 0; // of the timeline that were made
    private past: State[] = [];
    private future: State[] = [];
    private before: State | undefined;
    private isOpen = false;
    private readonly listeners: Listener[] = [];

    constructor(scene: SceneFile) {
        this.current = this.freshState(scene, "scene.json");
    }

    get state(): State {
        return this.current;
    }

    get scene(): SceneFile {
        return this.current.scene;
    }

    get name(): string {
        return this.current.name;
    }

    get canUndo(): boolean {
        return this.past.length > 0;
    }

    get canRedo(): boolean {
        return this.future.length > 0;
    }

    onChange(listener: Listener): void {
        this.listeners.push(listener);
    }

    /** Another plate takes the place of this one, which undo brings back unless nobody has seen it. */
    open(scene: SceneFile, name: string): void {
        this.before = this.isOpen ? this.current : undefined;
        this.isOpen = true;
        this.changes = 0;
        this.show(this.freshState(scene, name), true);
        this.end();
    }

    /** Takes over how far the run has played the timeline. That is no step of undo. */
    follow({ changes, scene }: TimelineState, kinds: Uint8Array | undefined): void {
        const { current } = this;
        const isBack = changes < this.changes && scene === undefined;
        this.changes = changes;
        const seen = scene === undefined ? undefined : (JSON.parse(scene) as SceneFile);
        this.current = {
            ...current,
            scene: seen ?? (isBack ? current.whole : current.scene),
            kinds: kinds ?? current.kinds,
        };
    }

    begin(): void {
        this.before ??= this.current;
    }

    change(edit: Edit): void {
        const isStep = this.before === undefined;
        if (isStep) this.begin();
        const { scene, whole } = this.current;
        const next = { ...edit, whole: withEdit(whole, this.changes, scene, edit.scene) };
        this.show({ ...this.current, ...next }, false);
        if (isStep) this.end();
    }

    end(): void {
        if (this.before && this.before.whole !== this.current.whole) {
            this.past.push(this.before);
            if (this.past.length > MAX_STEPS) this.past.shift();
            this.future = [];
        }
        this.before = undefined;
        this.notify(false);
    }

    /** Takes back what happened since begin(). */
    cancel(): void {
        const { before } = this;
        this.before = undefined;
        if (before && before.whole !== this.current.whole) this.show(before, false);
    }

    undo(): void {
        this.step(this.past, this.future);
    }

    redo(): void {
        this.step(this.future, this.past);
    }

    private step(from: State[], to: State[]): void {
        const state = from.pop();
        if (!state) return;
        to.push(this.current);
        const isOther = state.plate !== this.current.plate;
        if (isOther) this.changes = 0; // its run starts again
        this.show(isOther ? { ...state, scene: state.whole } : state, isOther);
    }

    private show(state: State, isNewScene: boolean): void {
        this.current = state;
        this.notify(isNewScene);
    }

    private notify(isNewScene: boolean): void {
        for (const listener of this.listeners) listener(this.current, isNewScene);
    }

    private freshState(scene: SceneFile, name: string): State {
        const { width, height } = scene.grid;
        const kinds = new Uint8Array(width * height);
        return { scene, whole: scene, kinds, name, plate: ++this.lastPlate };
    }
}
