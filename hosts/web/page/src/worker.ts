// The thread of the library. It computes while the page shows, and never more than two frames ahead.
import { TrapError, Voxam, type SceneFile, type SceneScore, type Scenes } from "voxam";
import type { DesignScore, Question, Report, Request } from "./protocol.js";

const FRAMES_AHEAD = 2;
const CALM_CHANGE = 0.004;
const CALM_ITERATIONS = 8;
const LEAST_ITERATIONS = 25;
/** Scores take longer than a frame: they wait until the hand rests. */
const SCORE_DELAY = 400;

type Opening = Extract<Request, { kind: "open" }>;
type Drawing = Extract<Request, { kind: "score" }>;

const post = (report: Report, transfer: Transferable[] = []) =>
    self.postMessage(report, { transfer });

class LibraryThread {
    private opening: Opening | undefined;
    private drawing: Drawing | undefined;
    private scene: SceneFile | undefined;
    private revision = 0;
    private playing = true;
    private movesBlob = false;
    private framesAhead = 0;
    private iteration = 0;
    private edited = 0; // the iteration after which the scene was edited
    private calm = 0;
    private resting = true;
    private viewDetail = 0; // above 0: each design is scored too
    private referenceDetail = 0; // above 0: the optimiser's design is wanted as a rival
    private scoreTimer = 0;
    private readonly channel = new MessageChannel();
    private isScheduled = false;

    private scenes: Scenes;

    constructor(private readonly voxam: Voxam) {
        this.scenes = voxam.scenes();
        this.channel.port1.onmessage = () => {
            this.isScheduled = false;
            this.turn();
        };
    }

    receive(request: Request): void {
        switch (request.kind) {
            case "open":
                this.opening = {
                    ...request,
                    restart: request.restart || (this.opening?.restart ?? false),
                };
                break;
            case "play":
                this.playing = request.on;
                break;
            case "moveBlob":
                this.movesBlob = request.on;
                this.wake();
                break;
            case "shown":
                this.framesAhead = Math.max(0, this.framesAhead - 1);
                break;
            case "reference":
                this.referenceDetail = request.refinement;
                break;
            case "score":
                this.drawing = request;
                break;
            case "view":
                this.viewDetail = request.refinement;
                if (this.resting) this.postView();
                break;
            case "outline":
            case "format":
            case "resize":
                this.answer(request);
                break;
        }
        this.schedule();
    }

    /** One piece of work; messages come in between. */
    private turn(): void {
        if (this.opening) {
            this.openScene(this.opening);
        } else if (this.drawing) {
            this.scoreDrawing(this.drawing);
        } else if (this.referenceDetail > 0) {
            if (this.resting) this.scoreReference();
            else this.step();
        } else if (this.playing && !this.resting && this.framesAhead < FRAMES_AHEAD) {
            this.step();
        } else {
            return;
        }
        this.schedule();
    }

    private schedule(): void {
        if (this.isScheduled) return;
        this.isScheduled = true;
        this.channel.port2.postMessage(null);
    }

    private wake(): void {
        this.edited = this.iteration;
        this.calm = 0;
        this.resting = this.scene?.volumeFraction === undefined;
        clearTimeout(this.scoreTimer);
    }

    private openScene({ text, name, revision, restart }: Opening): void {
        this.opening = undefined;
        try {
            const opened = this.scenes.open(text, name);
            const { findings } = opened;
            this.scene = JSON.parse(opened.text) as SceneFile;
            this.revision = revision;
            const fault = findings.find((finding) => finding.isError);
            if (fault) {
                this.resting = true;
                const timeline = { changes: 0 };
                post({ kind: "opened", revision, findings, kinds: opened.kinds, timeline });
                post({ kind: "stopped", revision, text: fault.text });
                return;
            }
            const timeline = restart ? this.scenes.start() : this.scenes.follow();
            post({ kind: "opened", revision, findings, kinds: this.scenes.kinds(), timeline });
            if (restart) {
                this.framesAhead = 0;
                this.iteration = 0;
            }
            this.wake();
        } catch (error) {
            this.resting = true;
            post({ kind: "refused", revision, text: this.failure(error) });
        }
    }

    private step(): void {
        const { revision } = this;
        try {
            const result = this.scenes.iterate(this.movesBlob);
            if (result.message !== "") {
                const { message: text, resumesAt } = result;
                this.resting = resumesAt === undefined;
                post({ kind: "stopped", revision, text, ...(resumesAt ? { resumesAt } : {}) });
                return;
            }
            this.iteration = result.iteration;
            const picture = this.scenes.picture() ?? new Uint8Array();
            const { iteration, compliance, change, volume, columns, time, changes, scene } = result;
            const numbers = { iteration, compliance, change, volume, time };
            const timeline = { changes, ...(scene === undefined ? {} : { scene }) };
            const frame = { ...numbers, revision, picture, columns, timeline };
            const isElsewhere = this.movesBlob || scene !== undefined;
            const kinds = isElsewhere ? { kinds: this.scenes.kinds() } : {};
            this.postView();
            post({ kind: "frame", frame: { ...frame, ...kinds } }, [picture.buffer]);
            ++this.framesAhead;
            this.calm = change < CALM_CHANGE ? this.calm + 1 : 0;
            if (this.isSettled()) this.rest();
        } catch (error) {
            this.resting = true;
            post({ kind: "stopped", revision, text: this.failure(error) });
        }
    }

    /** What went wrong, as a text. A module that has trapped is replaced by a fresh one. */
    private failure(error: unknown): string {
        if (!(error instanceof TrapError)) return messageOf(error);
        this.voxam.restart();
        this.scenes = this.voxam.scenes();
        return "The library failed and was started again. Change the scene to go on.";
    }

    private postView(): void {
        if (this.viewDetail === 0 || this.referenceDetail > 0) return;
        try {
            post({ kind: "view", score: told(this.scenes.scoreRun(this.viewDetail)) });
        } catch {
            // There is no design yet.
        }
    }

    private isSettled(): boolean {
        const { iterations = 100, timeline = [] } = this.scene ?? {};
        const since = this.iteration - this.edited;
        if (since >= iterations) return true;
        if (timeline.length > 0 || this.movesBlob) return false;
        return since >= LEAST_ITERATIONS && this.calm >= CALM_ITERATIONS;
    }

    private rest(): void {
        this.resting = true;
        const { revision } = this;
        post({ kind: "settled", revision, compliance: undefined });
        this.scoreTimer = self.setTimeout(() => {
            if (!this.resting || revision !== this.revision || this.referenceDetail > 0) return;
            const score = this.scenes.scoreRun();
            if (score.supported) post({ kind: "settled", revision, compliance: score.compliance });
        }, SCORE_DELAY);
    }

    private scoreReference(): void {
        const detail = this.referenceDetail;
        this.referenceDetail = 0;
        clearTimeout(this.scoreTimer);
        try {
            post({ kind: "reference", score: told(this.scenes.scoreRun(detail)) });
        } catch (error) {
            post({ kind: "stopped", revision: this.revision, text: this.failure(error) });
        }
    }

    private scoreDrawing({ number, cells, refinement }: Drawing): void {
        this.drawing = undefined;
        try {
            post({
                kind: "score",
                number,
                score: told(this.scenes.scoreDrawing(cells, refinement)),
            });
        } catch (error) {
            post({ kind: "stopped", revision: this.revision, text: this.failure(error) });
        }
    }

    private answer(request: Question & { number: number }): void {
        const { number } = request;
        try {
            post({ kind: "answer", number, value: this.answerTo(request) });
        } catch (error) {
            post({ kind: "answer", number, value: undefined, error: messageOf(error) });
        }
    }

    private answerTo(question: Question): unknown {
        if (question.kind === "outline") return this.scenes.outline();
        const current = this.scene; // which stays open
        try {
            const { text } = this.scenes.open(question.text, question.name);
            if (question.kind === "format") return text;
            return this.scenes.resized(question.width, question.height);
        } finally {
            if (current) this.scenes.open(JSON.stringify(current), question.name);
        }
    }
}

/** The first problem as a sentence: of a scene's file a player knows nothing. */
function told(score: SceneScore): DesignScore {
    const { key = "", text = "" } = score.problems[0] ?? {};
    const index = /^loads\[(\d+)\]$/.exec(key)?.[1];
    const subject = index === undefined ? "" : `Load ${Number(index) + 1} `;
    return { ...score, problem: subject + text };
}

function messageOf(error: unknown): string {
    return error instanceof Error ? error.message : String(error);
}

let thread: LibraryThread | undefined;
const early: Request[] = [];

async function start(code: WebAssembly.Module): Promise<void> {
    thread = new LibraryThread(await Voxam.load({ wasm: code }));
    for (const request of early) thread.receive(request);
}

self.onmessage = ({ data }: MessageEvent<Request>) => {
    if (data.kind !== "library") {
        if (thread) thread.receive(data);
        else early.push(data);
        return;
    }
    start(data.code).catch((error: unknown) => {
        const text = `The library cannot start: ${messageOf(error)}`;
        post({ kind: "stopped", revision: 0, text });
    });
};
