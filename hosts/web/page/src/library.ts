// The library as the page sees it: a thread that answers when it has something to say.
import { compile } from "voxam";
import wasmAddress from "voxam/voxam.wasm?url";
import type { Question, Report, Request } from "./protocol.js";

export type ReportOf<Kind extends Report["kind"]> = Extract<Report, { kind: Kind }>;

export class Library {
    private readonly worker = new Worker(new URL("./worker.ts", import.meta.url), {
        type: "module",
        name: "voxam",
    });
    private readonly handlers: { [Kind in Report["kind"]]?: (report: never) => void } = {};
    private readonly waiting = new Map<
        number,
        { resolve: (value: unknown) => void; reject: (reason: Error) => void }
    >();
    private lastNumber = 0;

    constructor() {
        this.worker.onmessage = ({ data }: MessageEvent<Report>) => this.receive(data);
        // Compiled while the thread starts: it would ask for the module later.
        compile(fetch(wasmAddress)).then(
            (code) => this.send({ kind: "library", code }),
            (error: unknown) => {
                const text = `The library cannot start: ${(error as Error).message}`;
                this.receive({ kind: "stopped", revision: 0, text });
            },
        );
    }

    on<Kind extends Report["kind"]>(kind: Kind, handler: (report: ReportOf<Kind>) => void): void {
        this.handlers[kind] = handler;
    }

    send(request: Request, transfer: Transferable[] = []): void {
        this.worker.postMessage(request, transfer);
    }

    /** Sends a question and waits for its answer. */
    ask<T>(question: Question): Promise<T> {
        const number = ++this.lastNumber;
        return new Promise<T>((resolve, reject) => {
            this.waiting.set(number, { resolve: (value) => resolve(value as T), reject });
            this.send({ ...question, number });
        });
    }

    private receive(report: Report): void {
        if (report.kind === "answer") {
            const waiting = this.waiting.get(report.number);
            this.waiting.delete(report.number);
            if (report.error !== undefined) waiting?.reject(new Error(report.error));
            else waiting?.resolve(report.value);
            return;
        }
        (this.handlers[report.kind] as ((report: Report) => void) | undefined)?.(report);
    }
}
