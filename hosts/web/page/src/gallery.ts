// The scenes that come with Voxam, with the pictures that are kept beside them.
import type { SceneFile } from "voxam";
import { byId, html } from "./dom.js";

const scenes = import.meta.glob<string>(
    [
        "../../../../scenes/*.json",
        // What is no scene, or has nothing to optimise.
        "!../../../../scenes/{scene.schema,arch,bridge,cantilever,hole,minimal,unsupported}.json",
    ],
    {
        query: "?raw",
        import: "default",
        eager: true,
    },
);
const pictures = import.meta.glob<string>("../../../../scenes/gallery/*.png", {
    query: "?url",
    import: "default",
    eager: true,
});

export function makeGallery(open: (text: string, name: string) => void): void {
    const dialog = byId<HTMLDialogElement>("gallery");
    const list = byId("gallery-list");
    for (const [path, picture] of Object.entries(pictures)) {
        const scenePath = path.replace("/gallery/", "/").replace(".png", ".json");
        const text = scenes[scenePath];
        if (text === undefined) continue;
        const { title = "", description = "" } = JSON.parse(text) as SceneFile;
        const entry = html(
            "button",
            { class: "exhibit" },
            html("img", { src: picture, alt: "", loading: "lazy" }),
            html("strong", {}, title),
            html("span", {}, description),
        );
        entry.addEventListener("click", () => {
            dialog.close();
            open(text, scenePath.split("/").at(-1) ?? "scene.json");
        });
        list.append(html("li", {}, entry));
    }
    byId("gallery-button").addEventListener("click", () => dialog.showModal());
}
