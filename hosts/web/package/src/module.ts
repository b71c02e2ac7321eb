// The WebAssembly module: its functions, its memory, and what it asks of its host.
import { ArgumentError, OutOfMemoryError, TrapError, VoxamError } from "./errors.js";

type Pointer = number;
type Native = (a: number, b: number, c: number, d: number) => number;
type Export = (...values: number[]) => number;

/** Where the module comes from: its bytes, a compiled module, or a response of `fetch`. */
export type WasmSource =
    | BufferSource
    | WebAssembly.Module
    | Response
    | PromiseLike<Response>
    | PromiseLike<BufferSource>;

const WASI_BAD_DESCRIPTOR = 8;
const NODE_MODULES = { files: "node:fs/promises" };

async function ownSource(): Promise<WasmSource> {
    const address = new URL("./voxam.wasm", import.meta.url);
    if (address.protocol !== "file:") return fetch(address);
    // Node.js cannot fetch files. The name is not a literal, so that bundlers leave it alone.
    const files = (await import(/* @vite-ignore */ NODE_MODULES.files)) as {
        readFile(path: URL): Promise<Uint8Array<ArrayBuffer>>;
    };
    return files.readFile(address);
}

/** Compiles voxam.wasm for `Voxam.load()`: for instance once for several workers. */
export async function compile(source?: WasmSource): Promise<WebAssembly.Module> {
    const given = await (source ?? ownSource());
    if (given instanceof WebAssembly.Module) return given;
    if (!(given instanceof Response)) return WebAssembly.compile(given);
    if (!given.ok) throw new VoxamError(`${given.url}: the server answered ${given.status}`);
    if (given.headers.get("Content-Type")?.startsWith("application/wasm")) {
        return WebAssembly.compileStreaming(given);
    }
    return WebAssembly.compile(await given.arrayBuffer());
}

/**
 * One instance. Memory that grows replaces the buffer under every view, so views are made anew for
 * each access and never kept.
 */
export class Instance {
    private readonly functions: Record<string, Export | undefined>;
    private readonly memory: WebAssembly.Memory;
    private readonly line: number[] = [];
    private trap: unknown;

    constructor(
        code: WebAssembly.Module,
        private readonly print: (line: string) => void,
    ) {
        const instance = new WebAssembly.Instance(code, this.imports(code));
        this.functions = instance.exports as unknown as typeof this.functions;
        this.memory = instance.exports["memory"] as WebAssembly.Memory;
        this.call("_initialize");
    }

    /** Bytes of memory taken from the system so far. They are not given back. */
    get memorySize(): number {
        return this.memory.buffer.byteLength;
    }

    call(name: string, ...values: number[]): number {
        if (this.trap !== undefined) {
            throw new TrapError("The module has stopped; restart() makes a fresh one", {
                cause: this.trap,
            });
        }
        const target = this.functions[name];
        if (!target) throw new VoxamError(`The module has no function ${name}`);
        try {
            return target(...values);
        } catch (error) {
            this.trap = error;
            throw new TrapError(`The module stopped in ${name}`, { cause: error });
        }
    }

    bytes(pointer: Pointer, length: number): Uint8Array {
        return new Uint8Array(this.memory.buffer, pointer, length);
    }

    floats(pointer: Pointer, length: number): Float32Array {
        return new Float32Array(this.memory.buffer, pointer, length);
    }

    doubles(pointer: Pointer, length: number): Float64Array {
        return new Float64Array(this.memory.buffer, pointer, length);
    }

    /** The text that ends at the first zero byte. */
    text(pointer: Pointer): string {
        const all = new Uint8Array(this.memory.buffer);
        return new TextDecoder().decode(all.subarray(pointer, all.indexOf(0, pointer)));
    }

    allocate(size: number): Pointer {
        const pointer = this.call("malloc", Math.max(1, size));
        if (pointer === 0) throw new OutOfMemoryError(`There is no memory for ${size} bytes`);
        return pointer;
    }

    free(pointer: Pointer): void {
        if (this.trap === undefined) this.call("free", pointer);
    }

    /** A copy in the module's memory. The caller frees it. */
    copyIn(values: ArrayBufferView): Pointer {
        const pointer = this.allocate(values.byteLength);
        this.bytes(pointer, values.byteLength).set(
            new Uint8Array(values.buffer, values.byteOffset, values.byteLength),
        );
        return pointer;
    }

    /** Hands copies of arrays to `use`, null for what is missing, and frees them afterwards. */
    withCopies<T>(
        arrays: readonly (ArrayBufferView | undefined)[],
        use: (...pointers: Pointer[]) => T,
    ): T {
        const pointers: Pointer[] = [];
        try {
            for (const array of arrays) pointers.push(array ? this.copyIn(array) : 0);
            return use(...pointers);
        } finally {
            for (const pointer of pointers) if (pointer) this.free(pointer);
        }
    }

    // The module has no files and no clock of the day: all it may do is print.
    private imports(code: WebAssembly.Module): WebAssembly.Imports {
        const known: Record<string, Native> = {
            fd_write: (_file, vectors, count, written) => this.write(vectors, count, written),
            emscripten_notify_memory_growth: () => 0,
            clock_time_get: (_clock, _precision, result) => this.tellTime(result),
            proc_exit: (status) => {
                throw new VoxamError(`The module ended with status ${status}`);
            },
        };
        const imports: Record<string, Record<string, Native>> = {};
        for (const { module, name } of WebAssembly.Module.imports(code)) {
            (imports[module] ??= {})[name] = known[name] ?? (() => WASI_BAD_DESCRIPTOR);
        }
        return imports;
    }

    private write(vectors: Pointer, count: number, written: Pointer): number {
        const view = new DataView(this.memory.buffer);
        let total = 0;
        for (let i = 0; i < count; ++i) {
            const start = view.getUint32(vectors + 8 * i, true);
            const length = view.getUint32(vectors + 8 * i + 4, true);
            for (const byte of this.bytes(start, length)) this.printByte(byte);
            total += length;
        }
        view.setUint32(written, total, true);
        return 0;
    }

    private printByte(byte: number): void {
        if (byte !== 10) {
            this.line.push(byte);
            return;
        }
        this.print(new TextDecoder().decode(new Uint8Array(this.line)));
        this.line.length = 0;
    }

    private tellTime(result: Pointer): number {
        const nanoseconds = BigInt(Math.round(performance.now() * 1e6));
        new DataView(this.memory.buffer).setBigUint64(result, nanoseconds, true);
        return 0;
    }
}

/** Throws ArgumentError unless `value` is a whole number from `least` to `most`. */
export function requireWhole(name: string, value: number, least: number, most: number): void {
    if (!Number.isInteger(value) || value < least || value > most) {
        throw new ArgumentError(`${name}: ${value} is not a whole number from ${least} to ${most}`);
    }
}

/** Throws ArgumentError unless `value` is a number from `least` to `most`. */
export function requireNumber(name: string, value: number, least: number, most: number): void {
    if (!(typeof value === "number" && value >= least && value <= most)) {
        throw new ArgumentError(`${name}: ${value} is not a number from ${least} to ${most}`);
    }
}

/** Throws ArgumentError unless `value` is above 0 and at most 1. */
export function requireFraction(name: string, value: number): void {
    if (!(typeof value === "number" && value > 0 && value <= 1)) {
        throw new ArgumentError(`${name}: ${value} must be above 0 and at most 1`);
    }
}

/** Throws ArgumentError unless an array has this many entries. */
export function requireLength(name: string, array: ArrayLike<unknown>, length: number): void {
    if (array.length !== length) {
        throw new ArgumentError(`${name}: ${array.length} entries, but there must be ${length}`);
    }
}
