// The thread of the library. It computes while the page shows, and never more than two frames ahead.
import { TrapError, Voxam, type SceneFile, type SceneScore, type Scenes } from "voxam";
import type { DesignScore, Question, Report, Request, RunState } from "./protocol.js";
import { sentenceOf } from "./words.js";

const FRAMES_AHEAD = 2;
const CALM_CHANGE = 0.004;
const CALM_ITERATIONS = 8;
const LEAST_ITERATIONS = 25;
/** Scores take longer than a frame: they wait until the hand rests. */
const SCORE_DELAY = 400;
/** Of findings that a size brings about. */
const GRID_KEYS = ["grid", "subdivision", "meshFactor"];

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
    private reason = ""; // why the run stopped, until an edit
    private mustRestart = false; // the scene that the module runs is not the one that is open
    private reported = "";
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
                if (this.movesBlob !== request.on && this.reason === "") this.wake();
                this.movesBlob = request.on;
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

    private turn(): void {
        const hasWorked = this.work();
        this.reportState();
        if (hasWorked) this.schedule();
    }

    /** One piece of work; messages come in between. Returns whether there may be more. */
    private work(): boolean {
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
            return false;
        }
        return true;
    }

    private get state(): RunState {
        if (this.reason !== "") return "stopped";
        if (!this.playing) return "paused";
        return this.resting ? "settled" : "forming";
    }

    private reportState(): void {
        const { revision, state } = this;
        const report = `${revision} ${state}`;
        if (revision === 0 || report === this.reported) return;
        this.reported = report;
        post({ kind: "state", revision, state });
    }

    /** No edit, no further iteration. */
    private stop(reason: string): void {
        this.resting = true;
        this.reason = reason;
        clearTimeout(this.scoreTimer);
    }

    private schedule(): void {
        if (this.isScheduled) return;
        this.isScheduled = true;
        this.channel.port2.postMessage(null);
    }

    private wake(): void {
        this.edited = this.iteration;
        this.calm = 0;
        this.reason = "";
        this.resting = this.scene?.volumeFraction === undefined;
        clearTimeout(this.scoreTimer);
    }

    private openScene({ text, name, revision, restart }: Opening): void {
        this.opening = undefined;
        this.revision = revision;
        this.mustRestart ||= restart;
        try {
            const opened = this.scenes.open(text, name);
            const { findings } = opened;
            this.scene = JSON.parse(opened.text) as SceneFile;
            const fault = findings.find((finding) => finding.isError);
            if (fault) {
                const timeline = { changes: 0 };
                post({ kind: "opened", revision, findings, kinds: opened.kinds, timeline });
                this.stop(sentenceOf(fault));
                return;
            }
            const timeline = this.mustRestart ? this.scenes.start() : this.scenes.follow();
            post({ kind: "opened", revision, findings, kinds: this.scenes.kinds(), timeline });
            if (this.mustRestart) {
                this.framesAhead = 0;
                this.iteration = 0;
                this.mustRestart = false;
            }
            this.wake();
        } catch (error) {
            this.stop(this.failure(error));
            post({ kind: "refused", revision, text: this.reason });
        }
    }

    private step(): void {
        const { revision } = this;
        try {
            const result = this.scenes.iterate(this.movesBlob);
            if (result.message !== "") {
                const { message: text, resumesAt } = result;
                if (resumesAt === undefined) this.stop(text);
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
            this.stop(this.failure(error));
            post({ kind: "stopped", revision, text: this.reason });
        }
    }

    /** What went wrong, as a text. A module that has trapped is replaced by a fresh one. */
    private failure(error: unknown): string {
        if (!(error instanceof TrapError)) return messageOf(error);
        this.voxam.restart();
        this.scenes = this.voxam.scenes();
        this.mustRestart = true;
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
        this.scoreTimer = self.setTimeout(() => {
            if (!this.resting || revision !== this.revision || this.referenceDetail > 0) return;
            try {
                post({ kind: "drawn", revision, score: told(this.scenes.scoreRun()) });
            } catch (error) {
                post({ kind: "refused", revision, text: this.failure(error) });
            }
        }, SCORE_DELAY);
    }

    private scoreReference(): void {
        const detail = this.referenceDetail;
        this.referenceDetail = 0;
        clearTimeout(this.scoreTimer);
        try {
            if (this.reason !== "") throw new Error(this.reason);
            const score = told(this.scenes.scoreRun(detail));
            post({ kind: "reference", score, reason: score.problem });
        } catch (error) {
            post({ kind: "reference", score: undefined, reason: this.failure(error) });
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
            post({ kind: "refused", revision: this.revision, text: this.failure(error) });
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
        if (question.kind === "outline") {
            const { drawing } = question;
            if (!drawing) return this.scenes.outline();
            return this.scenes.outlineOfDrawing(drawing.cells, drawing.refinement);
        }
        const current = this.scene; // which stays open
        try {
            const { text } = this.scenes.open(question.text, question.name);
            if (question.kind === "format") return text;
            return this.resized(question);
        } finally {
            if (current) this.scenes.open(JSON.stringify(current), question.name);
        }
    }

    /** The scene on another grid, if it can run there. */
    private resized({ width, height, name }: Extract<Question, { kind: "resize" }>): string {
        const { text, findings } = this.scenes.open(this.scenes.resized(width, height), name);
        const fault = findings.find(({ isError, key }) => isError && GRID_KEYS.includes(key));
        if (fault) throw new Error(`${name}: ${fault.key}: ${fault.text}`);
        return text;
    }
}

function told(score: SceneScore): DesignScore {
    const [problem] = score.problems;
    return { ...score, problem: problem ? sentenceOf(problem) : "" };
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
