import { OutOfMemoryError, ProblemError, VoxamError } from "./errors.js";
import { requireLength, requireNumber, requireWhole, type Instance } from "./module.js";
import {
    loadRecords,
    requirePlate,
    supportRecords,
    toColumns,
    toRows,
    type Load,
    type Plate,
    type Support,
} from "./records.js";

export interface GameOptions extends Plate {
    loads: readonly Load[];
    supports: readonly Support[];
    loadCases?: number;
}

export interface Score {
    /** Summed over the load cases; smaller is stiffer. */
    compliance: number;
    /** Each element's share of it, row by row from the top. */
    energies: Float32Array;
}

const UNSOLVABLE = 3.4028234663852886e38;

/** Scores designs. A module has one game at a time. */
export class Game {
    private readonly plate: Plate;
    private readonly buffer: number;
    private isClosed = false;

    /** Called by Voxam.game(). */
    constructor(
        private readonly instance: Instance,
        options: GameOptions,
        private readonly onClose: () => void,
    ) {
        const { width, height, loadCases = 1 } = options;
        requirePlate(options);
        requireWhole("loadCases", loadCases, 1, 127);
        this.plate = { width, height };
        const loads = loadRecords(options.loads, options, loadCases);
        const supports = supportRecords(options.supports, options);
        this.buffer = instance.allocate(8 * width * height);
        instance.withCopies([loads, supports], (loadData = 0, supportData = 0) =>
            instance.call(
                "_InitVoxamGame",
                ...[width, height, 1, 1, loads.length / 5, loadData],
                ...[supports.length / 5, supportData, loadCases],
            ),
        );
    }

    /** Scores densities from 0 (void) to 1 (solid), row by row from the top. */
    solve(densities: ArrayLike<number>): Score {
        if (this.isClosed) throw new VoxamError("This game is closed");
        const { width, height } = this.plate;
        const count = width * height;
        requireLength("densities", densities, count);
        for (let i = 0; i < count; ++i) requireNumber(`densities[${i}]`, densities[i] ?? NaN, 0, 1);
        const results = this.buffer + 4 * count;
        toColumns(densities, this.plate, this.instance.floats(this.buffer, count));
        this.instance.floats(results, count).fill(NaN);
        const compliance = this.instance.call("_SolveVoxamGame", this.buffer, results);
        const values = this.instance.floats(results, count);
        if (compliance >= UNSOLVABLE) {
            if (Number.isNaN(values[0])) throw new OutOfMemoryError("The plate is too large");
            throw new ProblemError(
                "The plate cannot be solved: its supports leave it free to move",
            );
        }
        return { compliance, energies: toRows(values, this.plate, new Float32Array(count)) };
    }

    close(): void {
        if (this.isClosed) return;
        this.isClosed = true;
        this.instance.call("_DestroyVoxamGame");
        this.instance.free(this.buffer);
        this.onClose();
    }
}
