// What the page and the thread of the library say to each other.
import type { Finding, SceneScore } from "voxam";

/** To the library. */
export type Request =
    | { kind: "open"; revision: number; text: string; name: string; restart: boolean }
    | { kind: "play"; on: boolean }
    | { kind: "moveBlob"; on: boolean }
    | { kind: "shown" }
    | { kind: "reference"; refinement: number }
    | { kind: "score"; number: number; cells: Uint8Array; refinement: number }
    | { kind: "outline"; number: number }
    | { kind: "format"; number: number; text: string; name: string };

/** From the library. */
export type Report =
    | { kind: "ready" }
    | { kind: "opened"; revision: number; text: string; findings: Finding[]; kinds: Uint8Array }
    | { kind: "refused"; revision: number; text: string }
    | { kind: "frame"; frame: Frame }
    | { kind: "stopped"; revision: number; text: string }
    | { kind: "settled"; revision: number; compliance: number | undefined }
    | { kind: "reference"; score: DesignScore }
    | { kind: "score"; number: number; score: DesignScore }
    | { kind: "answer"; number: number; value: unknown; error?: string };

export interface Frame {
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
    /** Where the blob is, when it moves. */
    kinds?: Uint8Array;
    /** The scene in force, when its timeline has changed it. */
    scene?: string;
}

export interface DesignScore extends SceneScore {
    /** The first of the reasons why it is not supported. */
    problem: string;
}
