// What a tab keeps of its work while it shows another page, or is loaded again.
import type { SceneFile } from "voxam";

const KEY = "voxam-tab";

export interface Work {
    /** Of the address: a link that is opened afterwards comes first. */
    fragment: string;
    name: string;
    scene: SceneFile;
    /** Rows of the drawing, if there is one. */
    drawing?: string[];
    /** Whether the drawing was shown. */
    draws: boolean;
}

export function keepWork(work: Work): void {
    try {
        sessionStorage.setItem(KEY, JSON.stringify(work));
    } catch {
        // The browser keeps nothing, or the scene is too large for it.
    }
}

export function keptWork(): Work | undefined {
    try {
        const text = sessionStorage.getItem(KEY);
        return text === null ? undefined : (JSON.parse(text) as Work);
    } catch {
        return undefined;
    }
}
