// Outlines of the material as files. Lengths are millimetres.
import type { Contour, Outline } from "voxam";

const short = (value: number): string => String(Number(value.toFixed(4)));

/** The corners of a contour, as pairs. */
function* cornersOf({ corners }: Contour): Generator<[number, number]> {
    for (let i = 0; i + 1 < corners.length; i += 2) yield [corners[i] ?? 0, corners[i + 1] ?? 0];
}

export function toSvg({ width, height, contours }: Outline): string {
    const path = contours
        .map((contour) => {
            const corners = [...cornersOf(contour)].map(([x, y]) => `${short(x)} ${short(y)}`);
            return `M${corners.join("L")}Z`;
        })
        .join("");
    return (
        `<svg xmlns="http://www.w3.org/2000/svg" width="${width}mm" height="${height}mm" ` +
        `viewBox="0 0 ${width} ${height}"><path fill-rule="evenodd" d="${path}"/></svg>\n`
    );
}

/** Closed polylines of R12, which every drawing program reads; y points up. */
export function toDxf({ height, contours }: Outline): string {
    const lines: (string | number)[] = [0, "SECTION", 2, "ENTITIES"];
    for (const contour of contours) {
        const layer = contour.hole ? "holes" : "outline";
        lines.push(0, "POLYLINE", 8, layer, 66, 1, 10, 0, 20, 0, 30, 0, 70, 1);
        for (const [x, y] of cornersOf(contour)) {
            lines.push(0, "VERTEX", 8, layer, 10, short(x), 20, short(height - y), 30, 0);
        }
        lines.push(0, "SEQEND", 8, layer);
    }
    lines.push(0, "ENDSEC", 0, "EOF");
    return `${lines.join("\r\n")}\r\n`;
}
