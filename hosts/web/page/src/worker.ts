// The thread of the library. It computes while the page shows, and never more than two frames ahead.
import { Voxam, type SceneFile, type SceneScore, type Scenes } from "voxam";
import wasmAddress from "voxam/voxam.wasm?url";
import type { DesignScore, Report, Request } from "./protocol.js";

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
    private since = 0; // iterations since the last edit
    private calm = 0;
    private resting = true;
    private referenceDetail = 0; // above 0: the optimiser's design is wanted as a rival
    private scoreTimer = 0;
    private readonly channel = new MessageChannel();
    private isScheduled = false;

    constructor(private readonly scenes: Scenes) {
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
            case "outline":
                this.answer(request.number, () => this.scenes.outline());
                break;
            case "format":
                this.answer(request.number, () => this.formatted(request.text, request.name));
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
        this.since = 0;
        this.calm = 0;
        this.resting = this.scene?.volumeFraction === undefined;
        clearTimeout(this.scoreTimer);
    }

    private openScene({ text, name, revision, restart }: Opening): void {
        this.opening = undefined;
        try {
            const opened = this.scenes.open(text, name);
            this.scene = JSON.parse(opened.text) as SceneFile;
            this.revision = revision;
            post({ kind: "opened", revision, ...opened });
            const fault = opened.findings.find((finding) => finding.isError);
            if (fault) {
                this.resting = true;
                post({ kind: "stopped", revision, text: fault.text });
                return;
            }
            if (restart) this.scenes.start();
            else this.scenes.follow();
            if (restart) this.framesAhead = 0;
            this.wake();
        } catch (error) {
            this.resting = true;
            post({ kind: "refused", revision, text: messageOf(error) });
        }
    }

    private step(): void {
        const { revision } = this;
        try {
            const result = this.scenes.iterate(this.movesBlob);
            if (result.message !== "") {
                this.resting = true;
                post({ kind: "stopped", revision, text: result.message });
                return;
            }
            const picture = this.scenes.picture() ?? new Uint8Array();
            const { iteration, compliance, change, volume, columns, time, scene } = result;
            const numbers = { iteration, compliance, change, volume, time };
            const frame = { ...numbers, revision, picture, columns };
            const isElsewhere = this.movesBlob || scene !== undefined;
            const kinds = isElsewhere ? { kinds: this.scenes.kinds() } : {};
            const news = scene === undefined ? {} : { scene };
            post({ kind: "frame", frame: { ...frame, ...kinds, ...news } }, [picture.buffer]);
            ++this.framesAhead;
            ++this.since;
            this.calm = change < CALM_CHANGE ? this.calm + 1 : 0;
            if (this.isSettled()) this.rest();
        } catch (error) {
            this.resting = true;
            post({ kind: "stopped", revision, text: messageOf(error) });
        }
    }

    private isSettled(): boolean {
        const { iterations = 100, timeline = [] } = this.scene ?? {};
        if (this.since >= iterations) return true;
        if (timeline.length > 0 || this.movesBlob) return false;
        return this.since >= LEAST_ITERATIONS && this.calm >= CALM_ITERATIONS;
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
            post({ kind: "stopped", revision: this.revision, text: messageOf(error) });
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
            post({ kind: "stopped", revision: this.revision, text: messageOf(error) });
        }
    }

    private formatted(text: string, name: string): unknown {
        const current = this.scene; // which stays open
        const formatted = this.scenes.open(text, name).text;
        if (current) this.scenes.open(JSON.stringify(current), name);
        return formatted;
    }

    private answer(number: number, work: () => unknown): void {
        try {
            post({ kind: "answer", number, value: work() });
        } catch (error) {
            post({ kind: "answer", number, value: undefined, error: messageOf(error) });
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

const early: Request[] = [];
self.onmessage = ({ data }: MessageEvent<Request>) => early.push(data);
try {
    const thread = new LibraryThread((await Voxam.load({ wasm: fetch(wasmAddress) })).scenes());
    self.onmessage = ({ data }: MessageEvent<Request>) => thread.receive(data);
    post({ kind: "ready" });
    for (const request of early) thread.receive(request);
} catch (error) {
    post({ kind: "stopped", revision: 0, text: `The library cannot start: ${messageOf(error)}` });
}
