// The numbers of a run, in words where they matter, and their course.
import { byId, svg } from "./dom.js";
import type { DesignScore, Frame, RunState } from "./protocol.js";
import { sentenceOf } from "./words.js";

const STATES: Record<RunState, string> = {
    forming: "Forming",
    settled: "Settled",
    paused: "Paused",
    stopped: "Stopped",
};

const MOST_POINTS = 150;
const WIDTH = 240;
const HEIGHT = 56;

const digits = (value: number): string =>
    value >= 1e6 || (value < 0.01 && value > 0)
        ? value.toExponential(2)
        : value.toLocaleString("en", { maximumSignificantDigits: 4 });

export class Numbers {
    private readonly course: number[] = [];
    private state: RunState | undefined;
    private latest: Frame | undefined;

    constructor(private readonly announce: (text: string) => void) {}

    show(frame: Frame): void {
        this.latest = frame;
        this.course.push(frame.compliance);
        if (this.course.length > MOST_POINTS) this.course.shift();
        byId("compliance").textContent = digits(frame.compliance);
        this.clearDrawn();
        byId("filled").textContent = `${(100 * frame.volume).toFixed(1)} %`;
        byId("iteration").textContent = String(frame.iteration);
        this.drawCourse();
    }

    /** What the design is worth in black and white, as the program reports it at its end. */
    showDrawn({ supported, compliance, warnings }: DesignScore): void {
        if (supported) {
            byId("compliance-note").textContent = `${digits(compliance)} in black and white`;
        }
        const text = warnings.map(sentenceOf).join(" ");
        byId("warnings").textContent = text;
        byId("warnings").hidden = text === "";
        if (text) this.announce(text);
    }

    private clearDrawn(): void {
        byId("compliance-note").textContent = "smaller is stiffer";
        byId("warnings").hidden = true;
    }

    setState(state: RunState): void {
        const label = byId("state");
        label.textContent = STATES[state];
        label.dataset["state"] = state;
        if (state === this.state) return;
        this.state = state;
        const { latest } = this;
        if (state === "settled" && latest) {
            const filled = `${Math.round(100 * latest.volume)} per cent filled`;
            this.announce(`Settled. Compliance ${digits(latest.compliance)}, ${filled}.`);
        } else if (state === "paused") {
            this.announce("Paused.");
        }
    }

    reset(): void {
        this.course.length = 0;
        this.latest = undefined;
        this.clearDrawn();
        for (const id of ["compliance", "filled", "iteration"]) byId(id).textContent = "–";
        this.drawCourse();
    }

    /** On a logarithmic scale, since the first designs are softer by a factor. */
    private drawCourse(): void {
        const root = byId<SVGSVGElement>("course");
        root.setAttribute("viewBox", `0 0 ${WIDTH} ${HEIGHT}`);
        root.setAttribute("preserveAspectRatio", "none");
        const logs = this.course.filter((value) => value > 0).map(Math.log);
        const low = Math.min(...logs);
        const high = Math.max(low + 0.05, ...logs);
        const points = logs.map((value, i) => {
            const x = (i / Math.max(MOST_POINTS / 3, logs.length - 1)) * WIDTH;
            const y = 4 + (HEIGHT - 8) * (1 - (value - low) / (high - low));
            return `${x.toFixed(1)} ${y.toFixed(1)}`;
        });
        const line = root.firstElementChild ?? root.appendChild(svg("path"));
        line.setAttribute("d", points.length > 1 ? `M${points.join("L")}` : "");
    }
}
