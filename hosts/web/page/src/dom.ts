// Helpers for the document.
const SVG = "http://www.w3.org/2000/svg";

type Attributes = Record<string, string | number>;

export function byId<T extends Element = HTMLElement>(id: string): T {
    const element = document.getElementById(id);
    if (!element) throw new Error(`The page has no element #${id}`);
    return element as unknown as T;
}

export function svg(name: string, attributes: Attributes = {}, ...children: Element[]): SVGElement {
    const element = document.createElementNS(SVG, name);
    for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, String(value));
    element.append(...children);
    return element;
}

export function html<K extends keyof HTMLElementTagNameMap>(
    name: K,
    attributes: Attributes = {},
    ...children: (Node | string)[]
): HTMLElementTagNameMap[K] {
    const element = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, String(value));
    element.append(...children);
    return element;
}

/** Paths on a square of 24. */
const ICONS: Record<string, string> = {
    move: "M6 3l12 9-6 1.5L9.500 19z",
    load: "M12 3v15M6.500 12.500L12 18l5.500-5.500M5 21.500h14",
    support: "M12 5l6.500 11h-13zM4 20h16",
    void: "M5 5h14v14H5zM5 13l8-8M5 19L19 5M11 19l8-8",
    solid: "M5 5h14v14H5z",
    erase: "M4 15l9-9 6 6-7 7H8zM8.500 10.500l6 6M12 19h8",
    blob: "M12 4a8 8 0 1 0 .01 0z",
    pencil: "M4 20l1-5L16 4l4 4L9 19z",
    grid: "M4 4h7v7H4zM13 4h7v7h-7zM4 13h7v7H4zM13 13h7v7h-7z",
    link: "M10 14a4 4 0 0 0 6 .500l3-3a4 4 0 0 0-6-6l-1.500 1.500M14 10a4 4 0 0 0-6-.500l-3 3a4 4 0 0 0 6 6l1.500-1.500",
    file: "M6 3h8l4 4v14H6zM14 3v4h4",
    question: "M9 9a3 3 0 1 1 4.500 2.600c-1 .700-1.500 1.200-1.500 2.400M12 17.500v.500",
    undo: "M8 5L4 9l4 4M4 9h10a5 5 0 0 1 0 10h-4",
    redo: "M16 5l4 4-4 4M20 9H10a5 5 0 0 0 0 10h4",
    pause: "M8 5v14M16 5v14",
    play: "M7 5l11 7-11 7z",
    fit: "M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5",
    close: "M6 6l12 12M18 6L6 18",
    restart: "M5 12a7 7 0 1 1 2 5M5 20v-4h4",
    minus: "M5 12h14",
};

export function icon(name: string): SVGElement {
    const drawing = svg("svg", { viewBox: "0 0 24 24", class: `icon icon-${name}` });
    drawing.setAttribute("aria-hidden", "true");
    drawing.append(svg("path", { d: ICONS[name] ?? "" }));
    return drawing;
}

/** Puts icons into the elements that ask for one. */
export function addIcons(root: ParentNode): void {
    for (const element of root.querySelectorAll<HTMLElement>("[data-icon]")) {
        element.querySelector("svg.icon")?.remove();
        element.prepend(icon(element.dataset["icon"] ?? ""));
    }
}

export const prefersLessMotion = (): boolean =>
    matchMedia("(prefers-reduced-motion: reduce)").matches;

export const isDark = (): boolean => matchMedia("(prefers-color-scheme: dark)").matches;

/** Keeps a number for later visits, where the browser lets a page keep anything. */
export function remember(key: string, value: number): void {
    try {
        localStorage.setItem(key, String(value));
    } catch {
        // It is forgotten.
    }
}

/** What was kept; 0 where there is nothing. */
export function recall(key: string): number {
    try {
        return Number(localStorage.getItem(key) ?? 0);
    } catch {
        return 0;
    }
}
