// The scene that is edited, and what undo brings back.
import type { SceneFile } from "voxam";

export interface State {
    readonly scene: SceneFile;
    /** What each element is, row by row; see ELEMENT of the package. */
    readonly kinds: Uint8Array;
}

export type Listener = (state: State, isNewScene: boolean) => void;

const MAX_STEPS = 200;

/** Edits between begin() and end() are one step of undo. */
export class SceneDocument {
    name = "scene.json";
    private past: State[] = [];
    private future: State[] = [];
    private before: State | undefined;
    private readonly listeners: Listener[] = [];

    constructor(private current: State) {}

    get state(): State {
        return this.current;
    }

    get scene(): SceneFile {
        return this.current.scene;
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

    open(scene: SceneFile, name: string): void {
        this.name = name;
        this.past = [];
        this.future = [];
        this.before = undefined;
        const { width, height } = scene.grid;
        this.show({ scene, kinds: new Uint8Array(width * height) }, true);
    }

    /** Of the scene as it stands: the reader knows them, not the page. */
    setKinds(scene: SceneFile, kinds: Uint8Array): void {
        if (this.current.scene === scene) this.current = { scene, kinds };
    }

    /** Takes over what a timeline made of the scene. That is no step of undo. */
    adopt(state: State): void {
        this.current = state;
    }

    begin(): void {
        this.before ??= this.current;
    }

    change(next: Partial<State>): void {
        const isStep = this.before === undefined;
        if (isStep) this.begin();
        this.show({ ...this.current, ...next }, false);
        if (isStep) this.end();
    }

    end(): void {
        if (this.before && this.before !== this.current) {
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
        if (before && before !== this.current) this.show(before, false);
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
        this.show(state, false);
    }

    private show(state: State, isNewScene: boolean): void {
        this.current = state;
        this.notify(isNewScene);
    }

    private notify(isNewScene: boolean): void {
        for (const listener of this.listeners) listener(this.current, isNewScene);
    }
}
