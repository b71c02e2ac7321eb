// The library as a whole: one module, and what it makes.
import { VoxamError } from "./errors.js";
import { Analysis } from "./analysis.js";
import { Game, type GameOptions } from "./game.js";
import { compile, Instance, type WasmSource } from "./module.js";
import { Scenes } from "./scene.js";
import { Optimiser, type OptimiserOptions } from "./optimiser.js";

export interface LoadOptions {
    /** The module; `voxam.wasm` beside this file if left out. */
    wasm?: WasmSource;
    /** Gets the lines that the library prints, such as its version; none is shown if left out. */
    print?: (line: string) => void;
}

/** The library, running in a module of its own. Several may live side by side. */
export class Voxam {
    private instance: Instance;
    private readonly alive = new Map<string, object>();

    private constructor(
        private readonly code: WebAssembly.Module,
        private readonly print: (line: string) => void,
    ) {
        this.instance = new Instance(code, print);
    }

    /** Fetches and compiles the module. */
    static async load(options: LoadOptions = {}): Promise<Voxam> {
        const code = await compile(options.wasm);
        return new Voxam(code, options.print ?? (() => undefined));
    }

    /** Bytes of memory taken so far. They are given back when the object is collected. */
    get memorySize(): number {
        return this.instance.memorySize;
    }

    /** Bytes of it that are in use. */
    get allocatedBytes(): number {
        return this.instance.call("voxamAllocatedBytes");
    }

    /** Makes an optimiser with a uniform design. Close it before you make another. */
    optimiser(options: OptimiserOptions): Optimiser {
        return this.make("optimiser", (close) => new Optimiser(this.instance, options, close));
    }

    /** Makes a game, which scores designs. Close it before you make another. */
    game(options: GameOptions): Game {
        return this.make("game", (close) => new Game(this.instance, options, close));
    }

    /** Makes an analysis, which computes how designs bend. Close it before you make another. */
    analysis(options: GameOptions): Analysis {
        return this.make("analysis", (close) => new Analysis(this.instance, options, close));
    }

    /**
     * Reads, runs and scores scene files. A run uses the library's only optimiser, so close your own
     * Optimiser first.
     */
    scenes(): Scenes {
        return new Scenes(this.instance);
    }

    /**
     * Throws the module away, with all that it made, and starts a fresh one: after a TrapError, or to
     * give memory back. It does not compile again.
     */
    restart(): void {
        this.alive.clear();
        this.instance = new Instance(this.code, this.print);
    }

    private make<T extends object>(kind: string, create: (onClose: () => void) => T): T {
        if (this.alive.has(kind)) throw new VoxamError(`Close the ${kind} before you make another`);
        const { instance } = this;
        const made = create(() => {
            if (instance === this.instance) this.alive.delete(kind);
        });
        this.alive.set(kind, made);
        return made;
    }
}
