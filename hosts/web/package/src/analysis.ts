import { OutOfMemoryError, ProblemError, VoxamError } from "./errors.js";
import { requireLength, requireNumber, requireWhole, type Instance } from "./module.js";
import { loadRecords, requirePlate, supportRecords, toColumns, toRows } from "./records.js";
import type { GameOptions } from "./game.js";
import type { Plate } from "./records.js";

export interface AnalysisResult {
    /** One for each load case, and their sum. */
    compliances: Float64Array;
    compliance: number;
    /**
     * x and y of each node, column by column, the load cases one after the other. NaN where there is
     * no material.
     */
    displacements: Float64Array;
    /** Each element's share of the compliance, all load cases together, row by row. */
    energies: Float32Array;
    /** 1 for material that is free to move and was left out, row by row. */
    loose: Uint8Array;
}

const STATUS = { SOLVED: 0, LOOSE_PART: 1, OUT_OF_MEMORY: 5 };
const MESSAGE = 256;

/** Analyses designs in double precision. A module has one analysis at a time. */
export class Analysis {
    private readonly plate: Plate;
    private readonly cases: number;
    private isClosed = false;

    /** Called by Voxam.analysis(). */
    constructor(
        private readonly instance: Instance,
        options: GameOptions,
        private readonly onClose: () => void,
    ) {
        const { width, height, loadCases = 1 } = options;
        requirePlate(options);
        requireWhole("loadCases", loadCases, 1, 127);
        this.plate = { width, height };
        this.cases = loadCases;
        const loads = loadRecords(options.loads, options, loadCases);
        const supports = supportRecords(options.supports, options);
        instance.withCopies([loads, supports], (loadData = 0, supportData = 0) =>
            instance.call(
                "_InitVoxamAnalysis",
                ...[width, height, loads.length / 5, loadData],
                ...[supports.length / 5, supportData, loadCases],
            ),
        );
    }

    /** Young's modulus of each element, row by row from the top; where it is 0 there is nothing. */
    solve(moduli: ArrayLike<number>): AnalysisResult {
        if (this.isClosed) throw new VoxamError("This analysis is closed");
        const { instance, plate, cases } = this;
        const count = plate.width * plate.height;
        const freedoms = 2 * (plate.width + 1) * (plate.height + 1);
        requireLength("moduli", moduli, count);
        for (let i = 0; i < count; ++i) requireNumber(`moduli[${i}]`, moduli[i] ?? NaN, 0, 1e300);
        const sizes = [
            8 * count,
            8 * cases,
            8 * cases * freedoms,
            8 * cases * count,
            count,
            MESSAGE,
        ];
        const buffer = instance.allocate(sizes.reduce((sum, size) => sum + size, 0));
        try {
            let next = buffer;
            const places = sizes.map((size) => (next += size) - size);
            const [input = 0, compliance = 0, displacement = 0, energy = 0, loose = 0, text = 0] =
                places;
            toColumns(moduli, plate, instance.doubles(input, count));
            const status = instance.call(
                "_SolveVoxamAnalysis",
                ...[input, MESSAGE, text, compliance, displacement, energy, 0, loose],
            );
            this.requireResult(status, instance.text(text));
            const compliances = instance.doubles(compliance, cases).slice();
            return {
                compliances,
                compliance: compliances.reduce((sum, value) => sum + value, 0),
                displacements: instance.doubles(displacement, cases * freedoms).slice(),
                energies: this.energies(instance.doubles(energy, cases * count)),
                loose: toRows(instance.bytes(loose, count), plate, new Uint8Array(count)),
            };
        } finally {
            instance.free(buffer);
        }
    }

    close(): void {
        if (this.isClosed) return;
        this.isClosed = true;
        this.instance.call("_DestroyVoxamAnalysis");
        this.onClose();
    }

    private requireResult(status: number, text: string): void {
        if (status === STATUS.SOLVED || status === STATUS.LOOSE_PART) return;
        if (status === STATUS.OUT_OF_MEMORY) throw new OutOfMemoryError(text);
        throw new ProblemError(text);
    }

    private energies(shares: Float64Array): Float32Array {
        const count = this.plate.width * this.plate.height;
        const sums = new Float64Array(count);
        shares.forEach((share, i) => (sums[i % count] = (sums[i % count] ?? 0) + share));
        return toRows(sums, this.plate, new Float32Array(count));
    }
}
