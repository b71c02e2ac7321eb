// What the library and the checks of a scene report, in the words of the page.
import type { Finding } from "voxam";

/** From the keys of a scene file. Longer texts come before their parts. */
const WORDS: readonly (readonly [string | RegExp, string])[] = [
    ["inside the elements that passive.void keeps void", "inside what is kept void"],
    ["passive.void separates it", "what is kept void separates it"],
    [/passive\.void\b:?/, "the elements that are kept void:"],
    [/passive\.solid\b:?/, "the elements that are kept solid:"],
    [/passive\.secondSolid\b:?/, "the elements that are kept solid, second kind:"],
    [/set subdivision and meshFactor to (\d)/, "choose Detail $1 × $1 under Grid"],
    [/, and set meshFactor to (\d)/, ", and choose Detail $1 × $1 under Grid"],
    [/lower meshFactor or subdivision/, "choose less Detail under Grid"],
    [/; keep the elements at this load solid: .*/, "; keep the elements at this load solid"],
    ["volumeFraction", "share of material"],
    ["loadCasesInUse", "the load cases in use"],
];

/** What a finding is about, where its text alone does not say so. */
const SUBJECTS: Record<string, string> = {
    grid: "Grid: ",
    meshFactor: "Detail: ",
    subdivision: "Detail: ",
    compliance: "In black and white: ",
    design: "In black and white: ",
};

export function inWords(text: string): string {
    return WORDS.reduce((words, [key, word]) => words.replace(key, word), text);
}

/** A finding as a sentence. Loads and supports are counted from 1, as on the plate. */
export function sentenceOf({ key, text }: Pick<Finding, "key" | "text">): string {
    const [, list, index] = /^(loads|supports)\[(\d+)\]/.exec(key) ?? [];
    const subject = list
        ? `${list === "loads" ? "Load" : "Support"} ${Number(index) + 1}: `
        : (SUBJECTS[key] ?? "");
    // Both say what they are about.
    const words = inWords(text).replace(/^as drawn,? /, subject.startsWith("In") ? "" : "$&");
    const sentence = subject + words;
    return `${sentence.charAt(0).toUpperCase()}${sentence.slice(1)}.`;
}

/** A refusal of the reader, "bracket.json: meshFactor: ...", of a scene that the page made itself. */
export function refusalInWords(text: string): string {
    const [, key, reason] = /^[^:]*\.json: ([\w[\].]+): (.*)$/s.exec(text) ?? [];
    return key !== undefined && reason !== undefined ? sentenceOf({ key, text: reason }) : text;
}

/** What to do about a text of the library: the advice that all hosts give. */
const ADVICE: Record<string, string> = {
    "Change load / support":
        "The equations cannot be solved: the plate is not held, or memory ran out. Hold it in x, " +
        "in y and against turning, or use a smaller grid.",
    "Change load/support":
        "The loads push the plate away. Hold it in x, in y and against turning, or use smaller " +
        "forces. If the design is torn, start afresh.",
    "Load cannot be on top of support":
        "The loads do no work. Put a force on a node that is not held, in a load case that is in " +
        "use.",
};

export const adviceOn = (text: string): string => ADVICE[text] ?? text;
