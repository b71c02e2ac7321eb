// Colours of the plate. Load cases and kinds of elements also differ by hatching, outline or number.
import { isDark } from "./dom.js";

type Rgb = readonly [number, number, number];

export interface PlateColours {
    paper: Rgb;
    ink: Rgb;
    edge: string;
    hand: string;
    void: string;
    solid: string;
    second: string;
    blob: string;
    floating: string;
}

const LIGHT: PlateColours = {
    paper: [250, 249, 245],
    ink: [38, 46, 58],
    edge: "#b9b5a9",
    hand: "#c2410c",
    void: "#b45309",
    solid: "#15803d",
    second: "#a21caf",
    blob: "#0369a1",
    floating: "#dc2626",
};

const DARK: PlateColours = {
    paper: [24, 28, 35],
    ink: [226, 222, 210],
    edge: "#4a525f",
    hand: "#fb923c",
    void: "#f59e0b",
    solid: "#22a861",
    second: "#e879f9",
    blob: "#38bdf8",
    floating: "#f87171",
};

/** Files contain the light colours. Those of the signs are the same as in style.css. */
export const printColours = LIGHT;
export const printSigns = {
    support: "#33576b",
    rim: "#fbfaf7",
    cases: ["#c2410c", "#1d5fb8", "#15803d", "#8b2fb0", "#a16207", "#be185d"],
};

export const plateColours = (): PlateColours => (isDark() ? DARK : LIGHT);

/** Light grey through orange to dark red: its lightness falls evenly, so it reads without hue too. */
const WORK: readonly Rgb[] = [
    [214, 211, 205],
    [241, 194, 136],
    [230, 126, 62],
    [190, 56, 40],
    [110, 18, 38],
];

/** The colour of material whose share of the work is `position`, 0 (idle) to 1 (works hard). */
export function workColour(position: number): Rgb {
    const place = Math.max(0, Math.min(1, position)) * (WORK.length - 1);
    const index = Math.min(WORK.length - 2, Math.floor(place));
    const from = WORK[index] ?? [0, 0, 0];
    const to = WORK[index + 1] ?? from;
    const mix = (i: 0 | 1 | 2) => Math.round(from[i] + (to[i] - from[i]) * (place - index));
    return [mix(0), mix(1), mix(2)];
}

export const rgb = ([red, green, blue]: Rgb): string => `rgb(${red} ${green} ${blue})`;

/** Little-endian pixels for 256 densities, with a steeper edge than the densities have. */
export function inkTable({ paper, ink }: PlateColours): Uint32Array {
    const table = new Uint32Array(256);
    for (let value = 0; value < 256; ++value) {
        const t = Math.max(0, Math.min(1, (value / 255 - 0.5) * 1.8 + 0.5));
        const share = t * t * (3 - 2 * t);
        const mix = (i: 0 | 1 | 2) => Math.round(paper[i] + (ink[i] - paper[i]) * share);
        table[value] = (255 << 24) | (mix(2) << 16) | (mix(1) << 8) | mix(0);
    }
    return table;
}
