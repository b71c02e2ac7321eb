// What the page and the thread of the library say to each other.
import type { Finding, SceneScore, TimelineState } from "voxam";

/** To the library. */
export type Request =
    | { kind: "library"; code: WebAssembly.Module }
    | { kind: "open"; revision: number; text: string; name: string; restart: boolean }
    | { kind: "play"; on: boolean }
    | { kind: "moveBlob"; on: boolean }
    | { kind: "shown" }
    | { kind: "view"; refinement: number }
    | { kind: "reference"; refinement: number }
    | ({ kind: "score"; number: number } & DrawnCells)
    | (Question & { number: number });

/** To the library, with an answer. A scene in a question does not become the one that runs. */
export type Question =
    | { kind: "outline"; drawing?: DrawnCells }
    | { kind: "format"; text: string; name: string }
    | { kind: "resize"; text: string; name: string; width: number; height: number };

/** A drawing: 1 solid, 0 void, row by row. */
export interface DrawnCells {
    cells: Uint8Array;
    /** Cells per edge of an element. */
    refinement: number;
}

export type RunState = "forming" | "settled" | "paused" | "stopped";

/** From the library. */
export type Report =
    | ({ kind: "opened"; revision: number; findings: Finding[]; kinds: Uint8Array } & Played)
    | { kind: "refused"; revision: number; text: string }
    | { kind: "frame"; frame: Frame }
    | { kind: "view"; score: DesignScore }
    | { kind: "stopped"; revision: number; text: string; resumesAt?: number }
    | { kind: "state"; revision: number; state: RunState }
    /** What a settled design is in black and white. */
    | { kind: "drawn"; revision: number; score: DesignScore }
    /** The optimiser's design to compare with, or the reason why there is none. */
    | { kind: "reference"; score: DesignScore | undefined; reason: string }
    | { kind: "score"; number: number; score: DesignScore }
    | { kind: "answer"; number: number; value: unknown; error?: string };

interface Played {
    timeline: TimelineState;
}

export interface Frame extends Played {
    revision: number;
    iteration: number;
    picture: Uint8Array;
    /** Of the picture. */
    columns: number;
    compliance: number;
    change: number;
    volume: number;
    /** Milliseconds that the library took. */
    time: number;
    /** When they have changed: where the blob is, or what the timeline made of them. */
    kinds?: Uint8Array;
}

export interface DesignScore extends SceneScore {
    /** The first of the reasons why it is not supported. */
    problem: string;
}
