// A scene in the fragment of an address: compressed, and in the letters that addresses may have.

const PREFIX = "#s=";
/** Characters. A longer text is not a scene: damaged links can expand without limit. */
const MAX_TEXT = 4_000_000;

async function through(
    bytes: Uint8Array<ArrayBuffer>,
    stream: ReadableWritablePair<Uint8Array, BufferSource>,
    most = Infinity,
): Promise<Uint8Array<ArrayBuffer>> {
    const reader = new Blob([bytes]).stream().pipeThrough(stream).getReader();
    const chunks: Uint8Array<ArrayBuffer>[] = [];
    let size = 0;
    for (let part = await reader.read(); !part.done; part = await reader.read()) {
        size += part.value.length;
        if (size > most) throw new Error("the scene is too large");
        chunks.push(new Uint8Array(part.value));
    }
    return new Uint8Array(await new Blob(chunks).arrayBuffer());
}

export async function toFragment(text: string): Promise<string> {
    const compressed = await through(
        new TextEncoder().encode(text),
        new CompressionStream("deflate-raw"),
    );
    const letters = btoa(Array.from(compressed, (byte) => String.fromCharCode(byte)).join(""));
    return PREFIX + letters.replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "");
}

/** The scene of a fragment; undefined where there is none. Throws when it is damaged. */
export async function fromFragment(fragment: string): Promise<string | undefined> {
    if (!fragment.startsWith(PREFIX)) return undefined;
    const letters = fragment.slice(PREFIX.length).replaceAll("-", "+").replaceAll("_", "/");
    const bytes = Uint8Array.from(atob(letters), (letter) => letter.charCodeAt(0));
    const plain = await through(bytes, new DecompressionStream("deflate-raw"), MAX_TEXT);
    return new TextDecoder().decode(plain);
}
