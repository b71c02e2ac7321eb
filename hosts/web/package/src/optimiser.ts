import { OutOfMemoryError, ProblemError, VoxamError } from "./errors.js";
import { requireFraction, requireNumber, requireWhole, type Instance } from "./module.js";
import {
    blobRecords,
    loadRecords,
    MAX_SIDE,
    passiveRecords,
    requirePlate,
    supportRecords,
    type Load,
    type Mask,
    type Plate,
    type Support,
} from "./records.js";

export interface OptimiserOptions extends Plate {
    /** Material of the starting design, above 0 and up to 1. */
    volumeFraction: number;
    /** Cells of the design per edge of an element; 1 if left out. */
    subdivision?: number;
    /** Cells of the picture per edge of a cell of the design; 1 if left out. */
    meshFactor?: number;
    loadCases?: number;
}

/** The whole problem. An update replaces all of it: what you leave out is removed. */
export interface Problem {
    loads: readonly Load[];
    supports: readonly Support[];
    /** Material to use, above 0 and up to 1; the last one if left out. */
    volumeFraction?: number;
    /** Elements that stay void. Passive elements and the blob need meshFactor = subdivision. */
    void?: Mask;
    solid?: Mask;
    secondSolid?: Mask;
    /** Load cases that count; all if left out. */
    loadCasesInUse?: readonly number[];
    blob?: Mask;
}

export interface Iteration {
    /** Of the design that the iteration started from. */
    compliance: number;
    /** Largest change of a density. */
    change: number;
    /** Material of the picture, 0 to 1. */
    volume: number;
    /** Milliseconds. */
    time: number;
}

const MESSAGE = 256;
const STATISTICS = 32; // eight floats

/** The optimiser. A module has one at a time. */
export class Optimiser {
    /** Columns of the picture. */
    readonly pictureWidth: number;
    readonly pictureHeight: number;
    /**
     * The design after the last iteration that succeeded, row by row from the top: 0 is solid and 1
     * is void, as in the C library. The same array for as long as the optimiser lives.
     */
    readonly picture: Float32Array;
    /** Where the blob is: 1 for each of its elements, row by row from the top. */
    readonly blob: Uint8Array;

    private readonly plate: Plate;
    private readonly cases: number;
    private readonly buffer: number;
    private readonly blobBuffer: number;
    private volumeFraction: number;
    private isTold = false;
    private isClosed = false;

    /** Called by Voxam.optimiser(). */
    constructor(
        private readonly instance: Instance,
        options: OptimiserOptions,
        private readonly onClose: () => void,
    ) {
        const { width, height, volumeFraction, subdivision = 1, meshFactor = 1 } = options;
        this.cases = options.loadCases ?? 1;
        requirePlate(options);
        requireFraction("volumeFraction", volumeFraction);
        requireWhole("subdivision", subdivision, 1, 64);
        requireWhole("meshFactor", meshFactor, 1, 64);
        requireWhole("loadCases", this.cases, 1, 127);
        const refinement = subdivision * meshFactor;
        requireWhole("columns of the picture", width * refinement, 1, MAX_SIDE);
        requireWhole("rows of the picture", height * refinement, 1, MAX_SIDE);
        this.plate = { width, height };
        this.volumeFraction = volumeFraction;
        this.pictureWidth = width * refinement;
        this.pictureHeight = height * refinement;
        this.picture = new Float32Array(this.pictureWidth * this.pictureHeight);
        this.blob = new Uint8Array(width * height);
        this.buffer = instance.allocate(MESSAGE + STATISTICS + 8 + this.picture.byteLength);
        this.blobBuffer = instance.allocate(4 * this.blob.length);
        instance.call("_DestroyVoxamApp");
        instance.call(
            "_InitVoxamApp",
            ...[width, height, subdivision, meshFactor, volumeFraction, this.cases, 1],
        );
    }

    /** Sends the problem. The design goes on from where it is. */
    update(problem: Problem): void {
        this.requireOpen();
        const { plate, cases } = this;
        const { volumeFraction = this.volumeFraction } = problem;
        const inUse = problem.loadCasesInUse ?? Array.from({ length: cases }, (_, i) => i);
        requireFraction("volumeFraction", volumeFraction);
        inUse.forEach((index, i) => requireWhole(`loadCasesInUse[${i}]`, index, 0, cases - 1));
        const loads = loadRecords(problem.loads, plate, cases);
        const supports = supportRecords(problem.supports, plate);
        const passive = passiveRecords(plate, [problem.void, problem.solid, problem.secondSolid]);
        const blob = blobRecords(plate, problem.blob);
        this.instance.withCopies(
            [loads, supports, passive, Int8Array.from(inUse), blob],
            (loadData = 0, supportData = 0, passiveData = 0, cases = 0, blobData = 0) =>
                this.instance.call(
                    "_UpdateVoxamApp",
                    ...[loads.length / 5, loadData, supports.length / 5, supportData],
                    ...[volumeFraction, passiveData, inUse.length, cases, blobData],
                ),
        );
        this.volumeFraction = volumeFraction;
        this.isTold = true;
    }

    /**
     * Runs one iteration. Throws ProblemError, and leaves the picture alone, when the plate cannot be
     * solved; update() with another problem goes on from there.
     */
    iterate({ penalty = 3, movesBlob = false } = {}): Iteration {
        this.requireOpen();
        requireNumber("penalty", penalty, 0, 100);
        if (!this.isTold) throw new VoxamError("update() must come before the first iteration");
        const statistics = this.buffer + MESSAGE;
        const change = statistics + STATISTICS;
        const output = change + 8;
        const compliance = movesBlob
            ? this.instance.call(
                  "_IterateVoxamAppWithBlob",
                  ...[MESSAGE, this.buffer, output, change, statistics, this.blobBuffer, penalty],
              )
            : this.instance.call(
                  "_IterateVoxamApp",
                  ...[MESSAGE, this.buffer, output, change, statistics, penalty],
              );
        this.throwMessage();
        this.picture.set(this.instance.floats(output, this.picture.length));
        if (movesBlob) this.fetchBlob();
        return {
            compliance,
            change: this.instance.doubles(change, 1)[0] ?? NaN,
            volume: 1 - this.picture.reduce((sum, value) => sum + value, 0) / this.picture.length,
            time: this.instance.floats(statistics, 1)[0] ?? NaN,
        };
    }

    /** Releases the library's optimiser, so that another can be made. */
    close(): void {
        if (this.isClosed) return;
        this.isClosed = true;
        this.instance.call("_DestroyVoxamApp");
        this.instance.free(this.buffer);
        this.instance.free(this.blobBuffer);
        this.onClose();
    }

    private throwMessage(): void {
        const message = this.instance.text(this.buffer);
        if (message === "") return;
        if (/^No optimiser|alloc/.test(message)) throw new OutOfMemoryError(message);
        throw new ProblemError(message);
    }

    private fetchBlob(): void {
        const mask = this.instance.bytes(this.blobBuffer, 4 * this.blob.length);
        for (let i = 0; i < this.blob.length; ++i) this.blob[i] = mask[4 * i] ?? 0;
    }

    private requireOpen(): void {
        if (this.isClosed) throw new VoxamError("This optimiser is closed");
    }
}
