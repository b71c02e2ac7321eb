// Magnitude and direction of the load that was touched last, as fields.
import { describeForce, type Signs } from "./signs.js";
import { byId, html } from "./dom.js";
import type { SceneDocument } from "./document.js";
import { magnitude, removeLoad, setForce } from "./edits.js";

const MAX_FORCE = 1e6;

export class LoadFields {
    private readonly size = html("input", {
        type: "number",
        min: 0,
        max: MAX_FORCE,
        step: "any",
        id: "load-size",
    });
    private readonly angle = html("input", {
        type: "number",
        min: -360,
        max: 360,
        step: 5,
        id: "load-angle",
    });
    private readonly title = html("h2", {});
    private readonly remove = html("button", { class: "quiet" }, "Remove");

    constructor(
        private readonly scene: SceneDocument,
        private readonly signs: Signs,
    ) {
        byId("load-fields").append(
            html("div", { class: "row" }, this.title, this.remove),
            html(
                "div",
                { class: "pair" },
                html("label", { class: "field" }, html("span", {}, "Force"), this.size),
                html("label", { class: "field" }, html("span", {}, "Direction, °"), this.angle),
            ),
        );
        this.size.addEventListener("change", () => this.apply());
        this.angle.addEventListener("change", () => this.apply());
        this.remove.addEventListener("click", () => {
            scene.change({ scene: removeLoad(scene.scene, signs.selected) });
        });
    }

    show(): void {
        const { loads } = this.scene.scene;
        const index = Math.min(this.signs.selected, loads.length - 1);
        const load = loads[index];
        byId("load-fields").hidden = !load;
        if (!load) return;
        const { fx = 0, fy = 0 } = load;
        this.title.textContent = loads.length > 1 ? `Load ${index + 1}` : "Load";
        this.title.title = describeForce(load);
        this.remove.hidden = loads.length < 2;
        if (document.activeElement !== this.size) {
            this.size.value = String(Number(magnitude(load).toPrecision(4)));
        }
        // Counted as on paper: 0 points right, 90 up.
        if (document.activeElement !== this.angle) {
            this.angle.value = String(Math.round((Math.atan2(-fy, fx) * 180) / Math.PI));
        }
    }

    private apply(): void {
        const size = this.size.valueAsNumber;
        const angle = this.angle.valueAsNumber;
        if (!(size > 0 && size <= MAX_FORCE && Number.isFinite(angle))) {
            this.show();
            return;
        }
        const index = Math.min(this.signs.selected, this.scene.scene.loads.length - 1);
        const radians = (-angle * Math.PI) / 180;
        this.scene.change({ scene: setForce(this.scene.scene, index, size, radians) });
    }
}
