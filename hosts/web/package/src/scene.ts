import { ArgumentError, VoxamError } from "./errors.js";
import { requireLength, requireWhole, type Instance } from "./module.js";

const MAX_SIDE = 1000; // elements

/** A whole number, or an inclusive range of them. */
export type Span = number | [number, number];

export interface SceneLoad {
    x: Span;
    y: Span;
    fx?: number;
    fy?: number;
    loadCase?: number;
}

export interface SceneSupport {
    x: Span;
    y: Span;
    fix: "x" | "y" | "xy";
}

/** Elements: a rectangle, or a disc or ring where there is a radius. */
export interface SceneArea {
    x: number | [number, number];
    y: number | [number, number];
    radius?: number | [number, number];
}

export interface SceneLoadCase {
    /** On one line, at most 40 characters. */
    name?: string;
    /** Of its compliance in every sum over load cases, 0.001 to 1000; 1 if left out. */
    weight?: number;
}

/** A scene file, as docs/scenes.md describes it. */
export interface SceneFile {
    title?: string;
    description?: string;
    grid: { width: number; height: number };
    loads: SceneLoad[];
    supports: SceneSupport[];
    volumeFraction?: number;
    subdivision?: number;
    meshFactor?: number;
    iterations?: number;
    penalty?: number;
    passive?: { void?: SceneArea[]; solid?: SceneArea[]; secondSolid?: SceneArea[] } | string[];
    blob?: SceneArea[];
    /** The edge that is the plane of symmetry of a plate of which the scene describes one half. */
    symmetry?: "left" | "right" | "top" | "bottom";
    /** Edge of an element in millimetres; 1 if left out. */
    elementSize?: number;
    /** Their number, or a list of them. */
    loadCases?: number | SceneLoadCase[];
    loadCasesInUse?: number[];
    timeline?: SceneChange[];
    densities?: unknown;
}

/** Keys of a scene that are replaced before an iteration. */
export type SceneChange = Partial<Omit<SceneFile, "timeline">> & {
    iteration: number;
    restart?: unknown;
};

/** Something that a person should know about a scene or a design. */
export interface Finding {
    /** An error makes a run pointless. */
    isError: boolean;
    /** Of the scene file, such as `loads[2]`; or `design`, `compliance`. */
    key: string;
    text: string;
    place?: { ofNodes: boolean; x: [number, number]; y: [number, number] };
}

export interface OpenedScene {
    /** The same scene in the usual form, as a file contains it. */
    text: string;
    findings: Finding[];
    /** What each element is, row by row from the top: see ELEMENT. */
    kinds: Uint8Array;
}

/** What an element of a scene is; BLOB is added to the others. */
export const ELEMENT = { FREE: 0, VOID: 1, SOLID: 2, SECOND_SOLID: 3, BLOB: 4 } as const;

/** How far a run has played the timeline of its scene. */
export interface TimelineState {
    /** Changes of the timeline that were made. */
    changes: number;
    /** The scene in force, if this call changed it. */
    scene?: string;
}

export interface RunStep extends TimelineState {
    iteration: number;
    /** Why there is no new design; empty if there is one, and only then the numbers are valid. */
    message: string;
    /** After a message: the iteration at which iterate() resumes. Undefined if only an edit helps. */
    resumesAt?: number;
    compliance: number;
    change: number;
    volume: number;
    /** Of the picture. */
    columns: number;
    /** Milliseconds. */
    time: number;
}

export interface SceneScore {
    supported: boolean;
    /** Of the design without its floating parts, when it is supported. */
    compliance: number;
    volume: number;
    /** Number of cells of the design. */
    cells: number;
    /** Cells of parts that nothing holds. */
    floating: number[];
    /** Why the design is not supported. */
    problems: Finding[];
    /** Of a run's design: what `voxam optimise` warns about. */
    warnings: Finding[];
    /** The design that was scored, and each cell's share of the compliance: row by row. */
    design: Float32Array;
    energies: Float32Array | undefined;
    /**
     * x and y of each node, column by column, in the load case in which the design gives way most.
     * NaN where there is no material.
     */
    displacements: Float64Array | undefined;
}

export interface Contour {
    hole: boolean;
    /** x and y of each corner, in millimetres; y points down. */
    corners: number[];
}

/** Where the material of a plate ends. Of a scene with a symmetry it is the whole plate. */
export interface Outline {
    /** Of the plate, in millimetres. */
    width: number;
    height: number;
    contours: Contour[];
}

/**
 * Scenes, read, checked and run by the code of the program `voxam`. A module has one scene, and one
 * run, at a time; a run takes the place of an Optimiser.
 */
export class Scenes {
    private width = 0;
    private height = 0;
    private cells = 0; // of the design

    /** Called by Voxam.scenes(). */
    constructor(private readonly instance: Instance) {}

    /** Reads a scene. Throws ArgumentError, with file, key and reason, if it is not a good one. */
    open(text: string, name = "scene.json"): OpenedScene {
        const reply = this.instance.withCopies(
            [new TextEncoder().encode(`${text}\0`), new TextEncoder().encode(`${name}\0`)],
            (...texts) =>
                this.reply<{ scene: string; findings: Finding[] }>(
                    "voxamOpenScene",
                    ArgumentError,
                    ...texts,
                ),
        );
        const { grid } = JSON.parse(reply.scene) as SceneFile;
        this.width = grid.width;
        this.height = grid.height;
        return { text: reply.scene, findings: reply.findings, kinds: this.kinds() };
    }

    /**
     * The text of the scene that is open, on another grid. Everything keeps its place on the plate.
     * If both sides change by the same factor, the plate keeps its size in millimetres.
     */
    resized(width: number, height: number): string {
        requireWhole("width", width, 1, MAX_SIDE);
        requireWhole("height", height, 1, MAX_SIDE);
        return this.reply<{ scene: string }>("voxamResizeScene", VoxamError, width, height).scene;
    }

    /** Starts to optimise the scene that is open, from a uniform design. */
    start(): TimelineState {
        return this.reply("voxamStartRun", VoxamError);
    }

    /** Sends the scene that is open to the run. The design goes on if plate and detail are the same. */
    follow(): TimelineState {
        return this.reply("voxamFollowScene", VoxamError);
    }

    iterate(movesBlob = false): RunStep {
        const step = this.reply<RunStep>("voxamIterateRun", VoxamError, movesBlob ? 1 : 0);
        const { columns } = step;
        if (step.message === "") this.cells = (columns * columns * this.height) / this.width;
        return step;
    }

    /** The run's design: densities from 0 (void) to 1 (solid), row by row from the top. */
    material(): Float32Array | undefined {
        const pointer = this.instance.call("voxamRunMaterial");
        return pointer ? this.instance.floats(pointer, this.cells).slice() : undefined;
    }

    /** The same in bytes, 0 void to 255 solid, to show. */
    picture(): Uint8Array | undefined {
        const pointer = this.instance.call("voxamRunMaterial");
        if (!pointer) return undefined;
        const densities = this.instance.floats(pointer, this.cells);
        const picture = new Uint8Array(this.cells);
        for (let i = 0; i < picture.length; ++i) picture[i] = 255 * (densities[i] ?? 0) + 0.5;
        return picture;
    }

    /** What each element is now, the blob where it has moved to. */
    kinds(): Uint8Array {
        const pointer = this.instance.call("voxamElementKinds");
        return this.instance.bytes(pointer, this.width * this.height).slice();
    }

    /** The outline of the run's design. */
    outline(): Outline {
        return this.reply("voxamRunOutline", VoxamError);
    }

    /** The outline of a drawing, which is the same as scoreDrawing() takes. */
    outlineOfDrawing(cells: Uint8Array, refinement: number): Outline {
        return this.withDrawing(cells, refinement, (pointer) =>
            this.reply("voxamDrawingOutline", VoxamError, pointer, refinement),
        );
    }

    /** Scores the run's design in black and white, as `voxam optimise` does at its end. */
    scoreRun(refinement = 0): SceneScore {
        requireWhole("refinement", refinement, 0, 16);
        return this.score("voxamScoreRun", refinement);
    }

    /** Scores a drawing of `refinement` cells per edge of an element, 1 solid, 0 void, row by row. */
    scoreDrawing(cells: Uint8Array, refinement: number): SceneScore {
        return this.withDrawing(cells, refinement, (pointer) =>
            this.score("voxamScoreDrawing", pointer, refinement),
        );
    }

    private withDrawing<T>(cells: Uint8Array, refinement: number, use: (pointer: number) => T): T {
        requireWhole("refinement", refinement, 1, 16);
        requireLength("cells", cells, this.width * this.height * refinement ** 2);
        return this.instance.withCopies([cells], (pointer = 0) => use(pointer));
    }

    private score(name: string, ...values: number[]): SceneScore {
        const reply = this.reply<SceneScore>(name, VoxamError, ...values);
        const floats = (source: string) => {
            const pointer = this.instance.call(source);
            return pointer ? this.instance.floats(pointer, reply.cells).slice() : undefined;
        };
        const design = floats("voxamScoredDesign") ?? new Float32Array();
        const energies = floats("voxamScoredEnergies");
        return { ...reply, design, energies, displacements: this.displacements(reply.cells) };
    }

    private displacements(cells: number): Float64Array | undefined {
        const pointer = this.instance.call("voxamScoredDisplacements");
        if (!pointer) return undefined;
        const detail = Math.round(Math.sqrt(cells / (this.width * this.height)));
        const nodes = (this.width * detail + 1) * (this.height * detail + 1);
        return this.instance.doubles(pointer, 2 * nodes).slice();
    }

    private reply<T extends object>(
        name: string,
        Failure: new (text: string) => Error,
        ...values: number[]
    ): T {
        const pointer = this.instance.call(name, ...values);
        const reply = JSON.parse(this.instance.text(pointer)) as T & { error?: string };
        if (reply.error !== undefined) throw new Failure(reply.error);
        return reply;
    }
}
