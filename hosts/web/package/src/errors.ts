/** Base of what this package throws, apart from wrong arguments. */
export class VoxamError extends Error {
    override name = "VoxamError";
}

/** An argument that the library must not see: wrong type, size or range. Nothing has changed. */
export class ArgumentError extends RangeError {
    override name = "ArgumentError";
}

/** The problem cannot be solved as it stands. The message says why; an update can put it right. */
export class ProblemError extends VoxamError {
    override name = "ProblemError";
}

/** Memory does not suffice for the sizes. */
export class OutOfMemoryError extends VoxamError {
    override name = "OutOfMemoryError";
}

/**
 * The module stopped in the middle of a call and cannot be used any more. `Voxam.restart()` makes a
 * fresh one; objects of the old one stay unusable.
 */
export class TrapError extends VoxamError {
    override name = "TrapError";
}
