// Prints a cantilever that formed in 60 iterations.
import { Voxam } from "voxam";

const [width, height] = [60, 30];
const voxam = await Voxam.load();
const optimiser = voxam.optimiser({ width, height, volumeFraction: 0.4 });
optimiser.update({
    loads: [{ x: width, y: height / 2, fy: 1 }],
    supports: Array.from({ length: height + 1 }, (_, y) => ({ x: 0, y })),
});
let last;
for (let i = 0; i < 60; ++i) last = optimiser.iterate();

for (let y = 0; y < height; y += 2) {
    const row = optimiser.picture.subarray(y * width, (y + 1) * width);
    console.log(Array.from(row, (value) => (value < 0.5 ? "#" : ".")).join(""));
}
console.log(`compliance ${last.compliance.toFixed(2)}, volume ${last.volume.toFixed(2)}`);
