export { Analysis, type AnalysisResult } from "./analysis.js";
export * from "./errors.js";
export { compile, type WasmSource } from "./module.js";
export { Game, type GameOptions, type Score } from "./game.js";
export { Optimiser, type Iteration, type OptimiserOptions, type Problem } from "./optimiser.js";
export type { Load, Mask, Plate, Support } from "./records.js";
export { Voxam, type LoadOptions } from "./voxam.js";
export * from "./scene.js";
