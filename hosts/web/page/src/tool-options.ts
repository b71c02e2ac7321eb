// What the chosen tool may do, and the size of its brush.
import { ELEMENT } from "voxam";
import { byId, html } from "./dom.js";
import type { Fix } from "./edits.js";
import { TOOLS, type Hand, type ToolName } from "./tools.js";

const MAX_BRUSH = 20; // elements

export class ToolOptions {
    private readonly root = byId("tool-options");

    constructor(private readonly hand: Hand) {}

    show(name: ToolName): void {
        const tool = TOOLS.find((candidate) => candidate.name === name);
        this.root.replaceChildren();
        this.root.hidden = !tool?.options && !tool?.paints;
        if (!tool || this.root.hidden) return;
        this.root.append(html("h2", {}, tool.label));
        for (const option of tool.options ?? []) {
            const chosen = name === "support" ? this.hand.fix : this.solidName;
            const box = html("input", { type: "radio", name: "tool-option", value: option.name });
            box.checked = option.name === chosen;
            box.addEventListener("change", () => this.choose(name, option.name));
            this.root.append(html("label", { class: "check" }, box, ` ${option.label}`));
        }
        if (tool.paints) this.root.append(this.makeBrush());
    }

    private get solidName(): string {
        return this.hand.solid === ELEMENT.SOLID ? "first" : "second";
    }

    private choose(tool: ToolName, option: string): void {
        if (tool === "support") this.hand.fix = option as Fix;
        else this.hand.solid = option === "first" ? ELEMENT.SOLID : ELEMENT.SECOND_SOLID;
    }

    private makeBrush(): HTMLElement {
        const { hand } = this;
        const size = html("output", {});
        const brush = html("input", { type: "range", min: 1, max: MAX_BRUSH, step: 1 });
        brush.value = String(hand.brushSize);
        const showSize = () => (size.textContent = `${brush.value} wide`);
        brush.addEventListener("input", () => {
            hand.size = brush.valueAsNumber;
            showSize();
        });
        showSize();
        const title = html("span", { class: "row" }, html("span", {}, "Brush"), size);
        return html("label", { class: "field" }, title, brush);
    }
}
