// Voxam for C#: two-dimensional structural topology optimisation. Copy this file into a project,
// and put the shared library (libvoxam.so) where the runtime finds it: beside the program, in the
// plug-in folder of an engine, or in a directory that LD_LIBRARY_PATH names. C# 7, no unsafe code.
//
// A plate is width x height square elements. x counts columns from the left, y rows from the top;
// nodes are the corners of the elements, (0, 0) to (width, height). A positive Fx pulls to the
// right, a positive Fy downwards. Every array is row by row from the top: element (x, y) is at [y *
// width + x].
//
//     using (var optimiser = new Voxam.Optimiser(60, 40, volumeFraction: 0.4f))
//     {
//         optimiser.Update(new Voxam.Settings { Loads = loads, Supports = supports });
//         for (int i = 0; i < 50; ++i) compliance = optimiser.Iterate().Compliance;
//         Show(optimiser.Picture);
//     }
//
// There can be one Optimiser, one Analysis and one Game in a process at a time, and for that one
// copy of this file: where several assemblies need it, let one have it and the others refer to that
// one. Calls from several threads wait for one another. Wrong arguments are exceptions derived from
// ArgumentException and change nothing; what only the library can find, such as a plate that
// nothing holds, is a ProblemException.

using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

namespace Voxam
{
    /// <summary>
    /// A force on a node, in a load case. Scale forces so that the largest is about 1: a compliance
    /// goes with the square of the force, and those above 1e15 and below 1e-10 are taken for a
    /// problem.
    /// </summary>
    public struct Load
    {
        public int X;
        public int Y;
        public float Fx;
        public float Fy;
        public int LoadCase;

        public Load(int x, int y, float fx, float fy, int loadCase = 0)
        {
            X = x;
            Y = y;
            Fx = fx;
            Fy = fy;
            LoadCase = loadCase;
        }
    }

    [Flags]
    public enum Directions
    {
        X = 1,
        Y = 2,
        XY = X | Y
    }

    /// <summary>Holds a node in x, in y or in both directions.</summary>
    public struct Support
    {
        public int X;
        public int Y;
        public Directions Fix;

        public Support(int x, int y, Directions fix = Directions.XY)
        {
            X = x;
            Y = y;
            Fix = fix;
        }
    }

    /// <summary>
    /// The problem of an optimiser. What is left null means none, but for VolumeFraction and
    /// LoadCasesInUse. Masks have width * height entries, row by row, and need a MeshFactor that is
    /// equal to Subdivision.
    /// </summary>
    public sealed class Settings
    {
        public IReadOnlyList<Load> Loads { get; set; }
        public IReadOnlyList<Support> Supports { get; set; }

        /// <summary>Material to use, above 0 and up to 1; null for the one in force.</summary>
        public float? VolumeFraction { get; set; }

        /// <summary>Load cases to optimise for; null for all.</summary>
        public IReadOnlyList<int> LoadCasesInUse { get; set; }

        /// <summary>Elements that stay empty.</summary>
        public bool[] Void { get; set; }

        /// <summary>Elements that stay solid.</summary>
        public bool[] Solid { get; set; }

        /// <summary>Elements that stay solid, for hosts that tell two kinds apart.</summary>
        public bool[] SecondSolid { get; set; }

        /// <summary>
        /// Elements of a hole that an iteration moves if it is told to. An update puts the hole
        /// here: to leave it where it is, give the optimiser's Blob.
        /// </summary>
        public bool[] Blob { get; set; }
    }

    /// <summary>Where the time of an iteration went, in milliseconds.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct RuntimeStat
    {
        public float Total;
        public float Update;
        public float State;
        public float Assemble;
        public float Factorize;
        public float Solve;
        public float Sensitivity;
        public float Mesh;
    }

    /// <summary>What an iteration came to, beside the picture.</summary>
    public struct Iteration
    {
        /// <summary>Of the design before the iteration, not of the picture; smaller is stiffer.
        /// </summary>
        public double Compliance;

        /// <summary>The largest change of a density, 0 to 1.</summary>
        public double Change;

        public RuntimeStat Times;
    }

    /// <summary>What can go wrong beside wrong arguments and want of memory.</summary>
    public class VoxamException : Exception
    {
        public VoxamException(string message, Exception cause = null) : base(message, cause) { }
    }

    /// <summary>Something is wrong with loads or supports: fix them and update.</summary>
    public sealed class ProblemException : VoxamException
    {
        public ProblemException(string message) : base(message) { }
    }

    /// <summary>
    /// Looks for the stiffest design that can be made of a given amount of material: create it,
    /// Update it with the problem, and Iterate, for instance once a frame. Most of the shape is
    /// there after 20 to 50 iterations. Change the problem by further updates, while the design
    /// goes on.
    /// </summary>
    public sealed class Optimiser : IDisposable
    {
        private const int TextLength = 256;
        private const int RestartId = 0;

        private static readonly Living<Optimiser> living = new Living<Optimiser>();

        private readonly Plate plate;
        private readonly byte[] text = new byte[TextLength];
        private readonly int[] blobCells;
        private Records sent;
        private float volumeFraction;

        /// <summary>Starts with a uniform design.</summary>
        /// <param name="width">Elements in x.</param>
        /// <param name="height">Elements in y.</param>
        /// <param name="volumeFraction">Material to use, above 0 and up to 1.</param>
        /// <param name="subdivision">Cells of the design per edge of an element, for more detail.
        /// Up to 4 serve well; beyond, the design falls apart into dots.</param>
        /// <param name="meshFactor">Cells of the picture per edge of such a cell.</param>
        /// <param name="loadCases">Number of load cases.</param>
        public Optimiser(int width, int height, float volumeFraction = 0.5f, int subdivision = 1,
                         int meshFactor = 1, int loadCases = 1)
        {
            plate = new Plate(width, height, loadCases);
            this.volumeFraction = Check.Fraction(volumeFraction, nameof(volumeFraction));
            CheckRefinement(subdivision, meshFactor);
            blobCells = new int[plate.Elements];
            Picture = NewPicture(subdivision, meshFactor);
            Subdivision = subdivision;
            MeshFactor = meshFactor;
            lock (Native.Gate)
            {
                living.Claim(this, Native._DestroyVoxamApp);
                Create();
            }
        }

        public int Width => plate.Width;
        public int Height => plate.Height;
        public int LoadCases => plate.LoadCases;
        public float VolumeFraction => volumeFraction;
        public int Subdivision { get; private set; }
        public int MeshFactor { get; private set; }
        public int PictureWidth => plate.Width * Subdivision * MeshFactor;
        public int PictureHeight => plate.Height * Subdivision * MeshFactor;

        /// <summary>
        /// The design of the last good iteration, row by row: 0 is solid, 1 is void. Iterations
        /// write into this array; a restart at another detail replaces it.
        /// </summary>
        public float[] Picture { get; private set; }

        /// <summary>Where the blob is now, row by row, in a new array; null if there is
        /// none.</summary>
        public bool[] Blob
        {
            get
            {
                lock (Native.Gate)
                {
                    living.CheckAlive(this);
                    return sent == null ? null : plate.MaskOf(sent.Blob);
                }
            }
        }

        /// <summary>
        /// Sends the whole problem, any time between iterations. The design goes on from where it
        /// is.
        /// </summary>
        public void Update(Settings settings)
        {
            Records records = RecordsOf(settings);
            lock (Native.Gate)
            {
                living.CheckAlive(this);
                CheckPlacement(records, Subdivision, MeshFactor);
                sent = records;
                volumeFraction = records.VolumeFraction ?? volumeFraction;
                Send();
            }
        }

        /// <summary>
        /// Runs one iteration, and then moves the blob if it is to move. Throws ProblemException
        /// if the plate cannot be optimised as it is: call Update with a fixed problem, and the
        /// design stays.
        /// </summary>
        /// <param name="penalty">Exponent that makes half-filled cells a poor use of
        /// material.</param>
        /// <param name="moveBlob">Whether the blob moves.</param>
        public Iteration Iterate(float penalty = 3, bool moveBlob = false)
        {
            if (!TryIterate(out Iteration result, out string problem, penalty, moveBlob))
                throw new ProblemException(problem);
            return result;
        }

        /// <summary>
        /// The same, but a problem with loads or supports is a text to be shown, and no exception:
        /// returns whether the iteration was good. Picture stays as it is when it was not.
        /// </summary>
        public bool TryIterate(out Iteration result, out string problem, float penalty = 3,
                               bool moveBlob = false)
        {
            if (!(penalty > 0) || float.IsInfinity(penalty))
                throw new ArgumentOutOfRangeException(nameof(penalty), penalty,
                                                      "must be above 0 and finite");
            result = new Iteration();
            lock (Native.Gate)
            {
                living.CheckAlive(this);
                if (sent == null)
                    throw new InvalidOperationException(
                        "Nothing to optimise yet: call Update first.");
                if (moveBlob)
                {
                    blobCells[0] = -1;
                    result.Compliance = Native._IterateVoxamAppWithBlob(
                        TextLength, text, Picture, ref result.Change, ref result.Times, blobCells,
                        penalty);
                    if (blobCells[0] >= 0) TrackBlob();
                }
                else
                {
                    result.Compliance = Native._IterateVoxamApp(
                        TextLength, text, Picture, ref result.Change, ref result.Times, penalty);
                }
                problem = text[0] == 0 ? null : Advice(Native.TextOf(text));
            }
            return problem == null;
        }

        /// <summary>
        /// Begins again with the problem of the last update, from a uniform design and, if given,
        /// at another detail. With keepDesign only the library's schedule of iterations begins
        /// again.
        /// </summary>
        public void Restart(bool keepDesign = false, int? subdivision = null,
                            int? meshFactor = null)
        {
            Restart((Records)null, keepDesign, subdivision, meshFactor);
        }

        /// <summary>
        /// A restart with another problem in one step. Its masks go with the new detail; those
        /// before went with the old one.
        /// </summary>
        public void Restart(Settings settings, bool keepDesign = false, int? subdivision = null,
                            int? meshFactor = null)
        {
            Restart(RecordsOf(settings), keepDesign, subdivision, meshFactor);
        }

        private void Restart(Records records, bool keepDesign, int? subdivision, int? meshFactor)
        {
            if (keepDesign && (subdivision.HasValue || meshFactor.HasValue))
                throw new ArgumentException("A design that is kept keeps its detail.");
            lock (Native.Gate)
            {
                living.CheckAlive(this);
                int newSubdivision = subdivision ?? Subdivision;
                int newMeshFactor = meshFactor ?? MeshFactor;
                if (!keepDesign) CheckRefinement(newSubdivision, newMeshFactor);
                Records next = records ?? sent;
                if (next != null) CheckPlacement(next, newSubdivision, newMeshFactor);
                if (newSubdivision != Subdivision || newMeshFactor != MeshFactor)
                    Picture = NewPicture(newSubdivision, newMeshFactor);
                Subdivision = newSubdivision;
                MeshFactor = newMeshFactor;
                sent = next;
                volumeFraction = records?.VolumeFraction ?? volumeFraction;
                if (!keepDesign) Native._DestroyVoxamApp();
                Create();
                if (sent != null) Send();
            }
        }

        /// <summary>Frees what it holds. An optimiser that is forgotten holds its memory until the
        /// next one is created.</summary>
        public void Dispose()
        {
            living.Release(this, Native._DestroyVoxamApp);
        }

        private Records RecordsOf(Settings settings)
        {
            if (settings == null) throw new ArgumentNullException(nameof(settings));
            float? wanted = settings.VolumeFraction;
            if (wanted.HasValue) Check.Fraction(wanted.Value, nameof(Settings.VolumeFraction));
            return new Records
            {
                Loads = plate.RecordsOf(settings.Loads),
                Supports = plate.RecordsOf(settings.Supports),
                VolumeFraction = wanted,
                Passive = plate.Cells((nameof(Settings.Void), settings.Void),
                                      (nameof(Settings.Solid), settings.Solid),
                                      (nameof(Settings.SecondSolid), settings.SecondSolid)),
                Blob = plate.Cells((nameof(Settings.Blob), settings.Blob)),
                LoadCases = plate.LoadCasesInUse(settings.LoadCasesInUse)
            };
        }

        private float[] NewPicture(int subdivision, int meshFactor)
        {
            int refinement = subdivision * meshFactor;
            var cells = new float[plate.Elements * refinement * refinement];
            for (int i = 0; i < cells.Length; ++i) cells[i] = 1;
            return cells;
        }

        // The library keeps an optimiser of the same size and id, and then its detail as well:
        // where a design must not be kept, there is none any more.
        private void Create()
        {
            Native._InitVoxamApp(plate.Width, plate.Height, Subdivision, MeshFactor, volumeFraction,
                                 plate.LoadCases, RestartId);
        }

        private void Send()
        {
            Native._UpdateVoxamApp(sent.Loads.Length / Plate.Record, sent.Loads,
                                   sent.Supports.Length / Plate.Record, sent.Supports,
                                   volumeFraction,
                                   sent.Passive, sent.LoadCases.Length, sent.LoadCases, sent.Blob);
        }

        private void TrackBlob()
        {
            bool[] mask = Array.ConvertAll(blobCells, cell => cell != 0);
            sent.Blob = plate.Cells((nameof(Settings.Blob), mask));
        }

        private string Advice(string found)
        {
            switch (found)
            {
                case "Change load / support":
                    return found + ": The equations cannot be solved: the plate is not held, or "
                        + "memory ran out. Hold it in x, in y and against turning, or use a "
                        + "smaller grid.";
                case "Change load/support":
                    return found
                        + ": The loads push the plate away. Hold it in x, in y and against "
                        + "turning, or use smaller forces. If the design is torn, start afresh.";
                case "Load cannot be on top of support":
                    return found
                        + ": The loads do no work. Put a force on a node that is not held, "
                        + "in a load case that is in use.";
            }
            if (found.StartsWith("No optimiser", StringComparison.Ordinal)
                || found == "std::bad_alloc")
                throw new InsufficientMemoryException(
                    $"Not enough memory for {Width} x {Height} elements with subdivision "
                    + $"{Subdivision} and mesh factor {MeshFactor}: create a smaller optimiser.");
            throw new VoxamException(found
                + ": dispose of this optimiser and create a smaller one.");
        }

        private void CheckRefinement(int subdivision, int meshFactor)
        {
            Check.Range(subdivision, 1, int.MaxValue, nameof(subdivision));
            Check.Range(meshFactor, 1, int.MaxValue, nameof(meshFactor));
            double scale = (double)subdivision * meshFactor;
            if (plate.Elements * scale * scale > int.MaxValue)
                throw new InsufficientMemoryException(
                    $"Subdivision {subdivision} and mesh factor {meshFactor} make a picture of "
                    + $"more cells than the library can number, which is {int.MaxValue}: lower "
                    + "them.");
            double held = Picture == null ? 0 : plate.MemoryOfOptimiser(Subdivision, MeshFactor);
            plate.CheckMemory(plate.MemoryOfOptimiser(subdivision, meshFactor),
                              $"subdivision {subdivision}, mesh factor {meshFactor}, ", held);
        }

        private static void CheckPlacement(Records records, int subdivision, int meshFactor)
        {
            if (subdivision == meshFactor || !records.HaveCells) return;
            throw new ArgumentException(
                $"Subdivision ({subdivision}) and mesh factor ({meshFactor}) must be equal if "
                + "there are passive elements or a blob; set the mesh factor to "
                + $"{subdivision}.");
        }

        private sealed class Records
        {
            public float[] Loads;
            public float[] Supports;
            public float? VolumeFraction;  // null for the one in force
            public short[] Passive;
            public short[] Blob;
            public sbyte[] LoadCases;  // char is signed for the library

            public bool HaveCells => Passive.Length > 3 || Blob.Length > 1;
        }
    }

    /// <summary>
    /// Computes what a design is worth, in double precision and accurately for any slenderness: the
    /// compliance, the displacements, the energies and the stresses. All results are arrays of this
    /// object, into which the next TrySolve writes.
    /// </summary>
    public sealed class Analysis : IDisposable
    {
        private const int OutOfMemory = 5;  // the number in voxam.h
        private const int LoosePart = 1;    // the last number with results

        private static readonly Living<Analysis> living = new Living<Analysis>();

        private readonly Plate plate;
        private readonly double[] moduliColumns;  // the library counts elements column by column
        private readonly double[] displacementColumns;
        private readonly double[] energyColumns;
        private readonly double[] stressColumns;
        private readonly byte[] looseColumns;
        private readonly byte[] text = new byte[256];

        /// <summary>Takes a plate of width x height elements.</summary>
        public Analysis(int width, int height, IReadOnlyList<Load> loads,
                        IReadOnlyList<Support> supports, int loadCases = 1)
        {
            plate = new Plate(width, height, loadCases);
            float[] loadRecords = plate.RecordsOf(loads);
            float[] supportRecords = plate.RecordsOf(supports);
            plate.CheckMemory(plate.MemoryOfAnalysis(), "");
            try
            {
                int nodes = checked((width + 1) * (height + 1) * loadCases);
                int elements = checked(plate.Elements * loadCases);
                moduliColumns = new double[plate.Elements];
                looseColumns = new byte[plate.Elements];
                displacementColumns = new double[checked(2 * nodes)];
                energyColumns = new double[elements];
                stressColumns = new double[checked(3 * elements)];
                Loose = new bool[plate.Elements];
                Compliances = new double[loadCases];
                Displacements = new double[displacementColumns.Length];
                Energies = new double[elements];
                Stresses = new double[stressColumns.Length];
            }
            catch (Exception cause) when (cause is OutOfMemoryException
                || cause is OverflowException)
            {
                throw TooLarge();
            }
            lock (Native.Gate)
            {
                living.Claim(this, Native._DestroyVoxamAnalysis);
                Native._InitVoxamAnalysis(width, height, loadRecords.Length / Plate.Record,
                                          loadRecords, supportRecords.Length / Plate.Record,
                                          supportRecords, loadCases);
            }
        }

        public int Width => plate.Width;
        public int Height => plate.Height;

        /// <summary>Force times displacement of each load case.</summary>
        public double[] Compliances { get; }

        /// <summary>The displacement of node (x, y) in load case k and direction d, 0 (x) or 1 (y),
        /// is at [((k * (height + 1) + y) * (width + 1) + x) * 2 + d]. NaN at nodes without
        /// material.</summary>
        public double[] Displacements { get; }

        /// <summary>Each element's share of the compliance, which is twice its strain energy: that
        /// of element (x, y) in load case k is at [(k * height + y) * width + x].</summary>
        public double[] Energies { get; }

        /// <summary>The stress in x (0), the stress in y (1) and the shear stress (2) at the centre
        /// of element (x, y) in load case k are at [((k * height + y) * width + x) * 3] and the
        /// next two places. Tension is positive.</summary>
        public double[] Stresses { get; }

        /// <summary>For each element, row by row, whether its material is free to move. After a
        /// solution this material was left out, because no load acts on it.</summary>
        public bool[] Loose { get; }

        /// <summary>Returns the compliance of a design, summed over the load cases; smaller is
        /// stiffer. Throws ProblemException when it cannot be analysed; the next call starts
        /// clean.</summary>
        /// <param name="moduli">width * height Young's moduli, row by row; 0 means that there is no
        /// element.</param>
        public double Solve(double[] moduli)
        {
            if (!TrySolve(moduli, out string problem)) throw new ProblemException(problem + ".");
            double sum = 0;
            foreach (double compliance in Compliances) sum += compliance;
            return sum;
        }

        /// <summary>The same without a ProblemException: returns whether there are results, and
        /// else the problem. Without results only Loose is written.</summary>
        public bool TrySolve(double[] moduli, out string problem)
        {
            plate.CheckLength(moduli, nameof(moduli));
            for (int i = 0; i < moduli.Length; ++i)
                if (!(moduli[i] >= 0 && moduli[i] <= double.MaxValue))
                    throw new ArgumentOutOfRangeException($"{nameof(moduli)}[{i}]", moduli[i],
                                                          "must be a finite number from 0");
            lock (Native.Gate)
            {
                living.CheckAlive(this);
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                        moduliColumns[x * Height + y] = moduli[y * Width + x];
                int status = Native._SolveVoxamAnalysis(
                    moduliColumns, text.Length, text, Compliances, displacementColumns,
                    energyColumns,
                    stressColumns, looseColumns);
                if (status == OutOfMemory) throw TooLarge();
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                        Loose[y * Width + x] = looseColumns[x * Height + y] != 0;
                problem = status <= LoosePart ? "" : Native.TextOf(text);
                if (status > LoosePart) return false;
            }
            CopyToRows(displacementColumns, Displacements, Width + 1, Height + 1, 2);
            CopyToRows(energyColumns, Energies, Width, Height, 1);
            CopyToRows(stressColumns, Stresses, Width, Height, 3);
            return true;
        }

        /// <summary>Frees what it holds.</summary>
        public void Dispose()
        {
            living.Release(this, Native._DestroyVoxamAnalysis);
        }

        // Of each load case, grids of `values` numbers a place.
        private void CopyToRows(double[] columns, double[] rows, int width, int height, int values)
        {
            for (int first = 0; first < rows.Length; first += width * height * values)
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x)
                        Array.Copy(columns, first + (x * height + y) * values, rows,
                                   first + (y * width + x) * values, values);
        }

        private Exception TooLarge()
        {
            return new InsufficientMemoryException(
                $"Not enough memory for {Width} x {Height} elements: make the plate smaller.");
        }
    }

    /// <summary>
    /// Scores designs that somebody else made, for a plate with its loads and supports, quickly and
    /// in single precision. The score is wrong by a relative error of about 3.6e-8 * solid elements
    /// * compliance for a force of 1, or less; this is valid while it is below 0.1. So the score is
    /// accurate to 1 % while solid elements times compliance is below 3e5. From 3e6 on it may be
    /// any number, too high or too low. Use Analysis to judge a design.
    /// </summary>
    public sealed class Game : IDisposable
    {
        private const float FailedScore = float.MaxValue;

        private static readonly Living<Game> living = new Living<Game>();

        private readonly Plate plate;
        private readonly float[] densityColumns;  // the library counts elements column by column
        private readonly float[] energyColumns;

        /// <summary>Takes a plate of width x height elements, and at least one load that does work.
        /// </summary>
        public Game(int width, int height, IReadOnlyList<Load> loads,
            IReadOnlyList<Support> supports,
                    int loadCases = 1)
        {
            plate = new Plate(width, height, loadCases);
            float[] loadRecords = plate.RecordsOf(loads);
            float[] supportRecords = plate.RecordsOf(supports);
            plate.CheckWork(loadRecords, supportRecords);
            plate.CheckMemory(plate.MemoryOfGame(), "");
            densityColumns = new float[plate.Elements];
            energyColumns = new float[plate.Elements];
            Energies = new float[plate.Elements];
            lock (Native.Gate)
            {
                living.Claim(this, Native._DestroyVoxamGame);
                Native._InitVoxamGame(width, height, 1, 1, loadRecords.Length / Plate.Record,
                                      loadRecords, supportRecords.Length / Plate.Record,
                                      supportRecords, loadCases);
                // Without densities the call fails, and sets the energies only if there is a
                // solver.
                energyColumns[0] = -1;
                Native._SolveVoxamGame(null, energyColumns);
            }
            if (energyColumns[0] == 0) return;
            Dispose();
            throw new InsufficientMemoryException(
                $"Not enough memory for {width} x {height} elements: make the plate smaller.");
        }

        public int Width => plate.Width;
        public int Height => plate.Height;

        /// <summary>Each element's share of the last compliance, row by row; 0 after a design
        /// without score. Solving writes into this array.</summary>
        public float[] Energies { get; }

        /// <summary>
        /// Returns the compliance of a design, over all load cases; smaller is stiffer. Throws
        /// ProblemException when the plate cannot be solved; the next call starts clean.
        /// </summary>
        /// <param name="densities">width * height numbers from 0 (void) to 1 (solid), row by row.
        /// Compare designs whose densities are near 0 and 1.</param>
        public double Solve(float[] densities)
        {
            if (TrySolve(densities, out double compliance)) return compliance;
            throw new ProblemException(
                compliance == 0
                    ? "The loads do no work, because they cancel out or are too small. Scale "
                      + "the forces to about 1."
                    : "The plate cannot be solved. Hold it in x, in y and against turning, "
                      + "scale the forces to about 1, and join or remove parts that touch "
                      + "nothing: on plates of "
                      + "some 500 elements and more they have no score.");
        }

        /// <summary>The same without an exception: returns whether there is a score. Where the
        /// loads do no work the compliance is 0, and where the plate cannot be solved
        /// float.MaxValue or more.</summary>
        public bool TrySolve(float[] densities, out double compliance)
        {
            plate.CheckLength(densities, nameof(densities));
            for (int i = 0; i < densities.Length; ++i)
                if (!(densities[i] >= 0 && densities[i] <= 1))
                    throw new ArgumentOutOfRangeException($"{nameof(densities)}[{i}]", densities[i],
                                                          "must be from 0 (void) to 1 (solid)");
            lock (Native.Gate)
            {
                living.CheckAlive(this);
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                        densityColumns[x * Height + y] = densities[y * Width + x];
                compliance = Native._SolveVoxamGame(densityColumns, energyColumns);
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                        Energies[y * Width + x] = energyColumns[x * Height + y];
            }
            return compliance > 0 && compliance < FailedScore;
        }

        /// <summary>Frees what it holds. A game that is forgotten holds its memory until the next
        /// one is created.</summary>
        public void Dispose()
        {
            living.Release(this, Native._DestroyVoxamGame);
        }
    }

    /// <summary>The one solver of a kind that lives. Without finalizers: the native solver of an
    /// object that was forgotten gives way to the next one.</summary>
    internal sealed class Living<T> where T : class
    {
        private WeakReference<T> current;

        /// <summary>What a previous life of this code left in the library, as when an engine
        /// reloads its scripts, is destroyed too: the library might keep it, with other
        /// sizes.</summary>
        public void Claim(T owner, Action destroy)
        {
            if (current != null && current.TryGetTarget(out _))
                throw new InvalidOperationException(
                    $"There can be one {typeof(T).Name} in a process: dispose of the other one "
                    + "first.");
            try
            {
                destroy();
            }
            catch (Exception failure) when (failure is DllNotFoundException
                                            || failure is EntryPointNotFoundException)
            {
                throw new VoxamException(Remedy(AppDomain.CurrentDomain.BaseDirectory), failure);
            }
            current = new WeakReference<T>(owner);
        }

        private static string Remedy(string folder)
        {
            string library = Path.Combine(folder, "libvoxam.so");
            string bundled = Path.Combine(folder, "voxam", "libvoxam.so.1");
            if (File.Exists(library))
                return $"The Voxam library {library} cannot be loaded: it is not a library for "
                    + "this processor, or lacks a library that it needs. ldd shows which.";
            if (File.Exists(bundled))
                return $"The Voxam library cannot be found. Copy {bundled} to {library}.";
            return "The Voxam library cannot be found. Put it as libvoxam.so into "
                + $"{folder}, into the plug-in folder of the engine, or into a directory that "
                + "LD_LIBRARY_PATH names.";
        }

        public void CheckAlive(T user)
        {
            if (!Owns(user))
                throw new ObjectDisposedException(typeof(T).Name, "Create another one to go on.");
        }

        public void Release(T user, Action destroy)
        {
            lock (Native.Gate)
            {
                if (!Owns(user)) return;
                current = null;
                destroy();
            }
        }

        private bool Owns(T user)
        {
            return current != null && current.TryGetTarget(out T owner)
                && ReferenceEquals(owner, user);
        }
    }

    /// <summary>Sizes that the library can take, and its records of what is said about a
    /// plate.</summary>
    internal sealed class Plate
    {
        public const int Record = 5;  // floats of a load or a support

        private const int MostLoadCasesInUse = 128;

        // Measured, in bytes; docs/hosting.md explains the estimate, which all hosts of the library
        // share.
        private const double BytesOfProgram = 15e6;
        private const double BytesOfDesignCell = 120;
        private const double BytesOfPictureCell = 40;
        private const double BytesOfNode = 1000;
        // Times the logarithm of the number of nodes.
        private const double BytesOfNodeInFactor = 110;
        private const double BytesOfNodeInLoadCase = 32;
        // With both copies of the results.
        private const double BytesOfNodeInAnalysedLoadCase = 180;
        private const double ShareOfGame = 0.9;                    // of an analysis too

        public readonly int Width;
        public readonly int Height;
        public readonly int LoadCases;

        public Plate(int width, int height, int loadCases)
        {
            Check.Range(width, 1, int.MaxValue - 1, nameof(width));
            Check.Range(height, 1, int.MaxValue - 1, nameof(height));
            Check.Range(loadCases, 1, int.MaxValue, nameof(loadCases));
            if (2.0 * (width + 1.0) * (height + 1.0) * loadCases > int.MaxValue)
                throw new InsufficientMemoryException(
                    $"{width} x {height} elements with {loadCases} load cases are more than the "
                    + "library can number: lower width, height or loadCases.");
            Width = width;
            Height = height;
            LoadCases = loadCases;
        }

        public int Elements => Width * Height;

        /// <summary>About how many bytes an optimiser takes.</summary>
        public double MemoryOfOptimiser(int subdivision, int meshFactor)
        {
            double design = (double)Elements * subdivision * subdivision;
            double picture = design * meshFactor * meshFactor;
            return BytesOfProgram + BytesOfDesignCell * design + BytesOfPictureCell * picture
                + Equations + MemoryOfLoadCases;
        }

        /// <summary>About how many bytes a game takes.</summary>
        public double MemoryOfGame()
        {
            return BytesOfProgram + ShareOfGame * Equations + MemoryOfLoadCases;
        }

        /// <summary>About how many bytes an analysis takes with its results.</summary>
        public double MemoryOfAnalysis()
        {
            return BytesOfProgram + ShareOfGame * Equations
                + Nodes * BytesOfNodeInAnalysedLoadCase * LoadCases;
        }

        private double Nodes => (Width + 1.0) * (Height + 1.0);
        private double Equations =>
            Nodes * (BytesOfNode + BytesOfNodeInFactor * Math.Log(Nodes, 2));
        private double MemoryOfLoadCases => Nodes * BytesOfNodeInLoadCase * LoadCases;

        /// <summary>Refuses what would end the process, because systems promise more memory than
        /// they have.</summary>
        /// <param name="held">What is given back before.</param>
        public void CheckMemory(double needed, string refinement, double held = 0)
        {
            double free = Memory.Available() + held;
            if (needed > free)
                throw new InsufficientMemoryException(
                    $"{Width} x {Height} elements with {refinement}load cases {LoadCases} need "
                    + $"about {needed / 1e9:G2} GB, and {free / 1e9:G2} GB are free: lower one of "
                    + "these.");
        }

        /// <summary>Refuses loads that do no work: every design would score 0, as if none could be
        /// better.
        /// </summary>
        public void CheckWork(float[] loads, float[] supports)
        {
            var held = new HashSet<(float, float, float)>();
            for (int i = 0; i < supports.Length; i += Record)
                held.Add((supports[i], supports[i + 1], supports[i + 2]));
            for (int i = 0; i < loads.Length; i += Record)
                for (int direction = 0; direction < 2; ++direction)
                    if (loads[i + 2 + direction] != 0
                        && !held.Contains((loads[i], loads[i + 1], direction)))
                        return;
            throw new ArgumentException(
                "Loads: none does work, so there is nothing to score: give at least one a "
                + "force, Fx or Fy, that acts where no support holds its node.");
        }

        public float[] RecordsOf(IReadOnlyList<Load> loads)
        {
            var records = new float[Record * (loads?.Count ?? 0)];
            for (int i = 0; i < records.Length / Record; ++i)
            {
                Load load = loads[i];
                string name = $"Loads[{i}]";
                CheckNode(load.X, load.Y, name);
                Check.Finite(load.Fx, name + ".Fx");
                Check.Finite(load.Fy, name + ".Fy");
                Check.Range(load.LoadCase, 0, LoadCases - 1, name + ".LoadCase");
                records[Record * i] = load.X;
                records[Record * i + 1] = load.Y;
                records[Record * i + 2] = load.Fx;
                records[Record * i + 3] = load.Fy;
                records[Record * i + 4] = load.LoadCase;
            }
            return records;
        }

        public float[] RecordsOf(IReadOnlyList<Support> supports)
        {
            var records = new List<float>();
            for (int i = 0; i < (supports?.Count ?? 0); ++i)
            {
                Support support = supports[i];
                string name = $"Supports[{i}]";
                CheckNode(support.X, support.Y, name);
                Check.Range((int)support.Fix, (int)Directions.X, (int)Directions.XY, name + ".Fix");
                if ((support.Fix & Directions.X) != 0)
                    records.AddRange(new float[] { support.X, support.Y, 0, 0, 0 });
                if ((support.Fix & Directions.Y) != 0)
                    records.AddRange(new float[] { support.X, support.Y, 1, 0, 0 });
            }
            return records.ToArray();
        }

        /// <summary>The library's record of lists of elements: the counts, and then the x and y of
        /// each. No element may be in two of the masks; null has none.</summary>
        public short[] Cells(params (string Name, bool[] Mask)[] lists)
        {
            var records = new List<short>(new short[lists.Length]);
            var owner = new string[Elements];
            for (int list = 0; list < lists.Length; ++list)
            {
                string name = lists[list].Name;
                bool[] mask = lists[list].Mask;
                if (mask == null) continue;
                CheckLength(mask, name);
                int before = records.Count;
                for (int i = 0; i < mask.Length; ++i)
                {
                    if (!mask[i]) continue;
                    if (owner[i] != null)
                        throw new ArgumentException(
                            $"Element ({i % Width}, {i / Width}) is in both {owner[i]} and "
                            + $"{name}.");
                    owner[i] = name;
                    AddCell(records, i, name);
                }
                int count = (records.Count - before) / 2;
                if (count > short.MaxValue)
                    throw new ArgumentException(
                        $"{name}: {count} elements, the most are {short.MaxValue}.");
                records[list] = (short)count;
            }
            return records.ToArray();
        }

        private void AddCell(List<short> records, int element, string name)
        {
            int x = element % Width;
            int y = element / Width;
            if (x > short.MaxValue || y > short.MaxValue)
                throw new ArgumentException(
                    $"{name}: element ({x}, {y}) cannot be named, {short.MaxValue} is the largest "
                    + "coordinate.");
            records.Add((short)x);
            records.Add((short)y);
        }

        /// <summary>The mask of a record of one list; null if the list is empty.</summary>
        public bool[] MaskOf(short[] record)
        {
            if (record[0] == 0) return null;
            var mask = new bool[Elements];
            for (int k = 1; k < record.Length; k += 2)
                mask[record[k + 1] * Width + record[k]] = true;
            return mask;
        }

        public sbyte[] LoadCasesInUse(IReadOnlyList<int> inUse)
        {
            if (inUse == null && LoadCases > MostLoadCasesInUse)
                throw new ArgumentException(
                    $"LoadCasesInUse: name them, of {LoadCases} load cases only the first "
                    + $"{MostLoadCasesInUse} can be used.");
            if (inUse != null && inUse.Count == 0)
                throw new ArgumentException(
                    "LoadCasesInUse: at least one is needed, or null for all.");
            var cases = new sbyte[inUse?.Count ?? LoadCases];
            for (int i = 0; i < cases.Length; ++i)
            {
                int number = inUse == null ? i : inUse[i];
                Check.Range(number, 0, Math.Min(LoadCases, MostLoadCasesInUse) - 1,
                            $"LoadCasesInUse[{i}]");
                cases[i] = (sbyte)number;
            }
            return cases;
        }

        public void CheckLength(Array array, string name)
        {
            if (array == null) throw new ArgumentNullException(name);
            if (array.Length != Elements)
                throw new ArgumentException(
                    $"{name}: {array.Length} entries, not width * height = {Elements}.");
        }

        private void CheckNode(int x, int y, string name)
        {
            Check.Range(x, 0, Width, name + ".X");
            Check.Range(y, 0, Height, name + ".Y");
        }
    }

    internal static class Memory
    {
        /// <summary>Bytes that the machine can give away; without end where it does not
        /// tell.</summary>
        public static Func<double> Available = Read;

        // Addresses for the stacks and heaps of the library's threads, and for the BLAS's buffers.
        private const double BytesOfThreads = 135e6;

        /// <summary>The least of what the machine has free, what the limit of addresses (ulimit -v)
        /// leaves, and what the cgroups (containers) of the process leave.</summary>
        private static double Read()
        {
            double left = 1024 * Number("/proc/meminfo", "MemAvailable:");
            double addresses = Number("/proc/self/limits", "Max address space");
            if (!double.IsInfinity(addresses))
                left = Math.Min(left, addresses - BytesOfThreads
                                          - 1024 * Number("/proc/self/status", "VmSize:"));
            foreach (string line in Lines("/proc/self/cgroup"))
            {
                string[] parts = line.Split(new[] { ':' }, 3);
                if (parts.Length < 3) continue;
                if (parts[0] == "0")
                    left = Math.Min(left, LeftOfGroup("/sys/fs/cgroup", parts[2], "memory.max",
                                                      "memory.current", "inactive_file "));
                else if (Array.IndexOf(parts[1].Split(','), "memory") >= 0)
                    left = Math.Min(left, LeftOfGroup(
                        "/sys/fs/cgroup/memory", parts[2], "memory.limit_in_bytes",
                        "memory.usage_in_bytes", "total_inactive_file "));
            }
            return Math.Max(0, left);
        }

        /// <summary>What a cgroup and those around it leave. Caches of files count as free. A
        /// container may see its own group as the root, though the path names the host's.</summary>
        private static double LeftOfGroup(string root, string path, string limit, string usage,
                                          string cache)
        {
            double left = double.PositiveInfinity;
            string folder = root;
            foreach (string name in ("/" + path.Trim('/')).Split('/'))
            {
                if (name != "") folder += "/" + name;
                double most = Number(folder + "/" + limit, "");
                if (double.IsInfinity(most)) continue;
                double cached = Number(folder + "/memory.stat", cache);
                double taken = Number(folder + "/" + usage, "");
                if (double.IsInfinity(taken)) taken = 0;
                if (!double.IsInfinity(cached)) taken -= cached;
                left = Math.Min(left, most - Math.Max(0, taken));
            }
            return left;
        }

        private static IEnumerable<string> Lines(string file)
        {
            try
            {
                return File.ReadAllLines(file);
            }
            catch (Exception failure) when (failure is IOException
                                            || failure is UnauthorizedAccessException)
            {
                return new string[0];  // another system
            }
        }

        /// <summary>The first number of the line that begins with the key; without end if there is
        /// none.
        /// </summary>
        private static double Number(string file, string key)
        {
            foreach (string line in Lines(file))
            {
                if (!line.StartsWith(key, StringComparison.Ordinal)) continue;
                string word = line.Substring(key.Length).TrimStart().Split(' ')[0];
                if (double.TryParse(word, NumberStyles.None, CultureInfo.InvariantCulture,
                                    out double number))
                    return number;
            }
            return double.PositiveInfinity;
        }
    }

    internal static class Check
    {
        public static void Range(int value, int least, int most, string name)
        {
            if (value < least || value > most)
                throw new ArgumentOutOfRangeException(name, value,
                    $"must be from {least} to {most}");
        }

        public static void Finite(float value, string name)
        {
            if (float.IsNaN(value) || float.IsInfinity(value))
                throw new ArgumentOutOfRangeException(name, value, "must be a finite number");
        }

        public static float Fraction(float value, string name)
        {
            if (!(value > 0 && value <= 1))
                throw new ArgumentOutOfRangeException(name, value, "must be above 0 and up to 1");
            return value;
        }
    }

    /// <summary>
    /// The functions of voxam.h. Arrays of these types are pinned during a call and not copied, and
    /// the library keeps no pointer to them.
    /// </summary>
    internal static class Native
    {
        /// <summary>Held during every call: the library takes no lock itself.</summary>
        public static readonly object Gate = new object();

        /// <summary>The text that the library wrote to a buffer.</summary>
        public static string TextOf(byte[] buffer)
        {
            int length = Array.IndexOf(buffer, (byte)0);
            return Encoding.UTF8.GetString(buffer, 0, length < 0 ? buffer.Length : length);
        }

        // The runtime adds prefix and ending of the platform. Where the library is linked into the
        // program, as on iOS, this is "__Internal".
        private const string Library = "voxam";
        private const CallingConvention C = CallingConvention.Cdecl;

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _InitVoxamApp(int textureWidth, int textureHeight,
            int subdivision,
                                                int meshFactor, float volumeFraction,
                                                int numLoadCases, int restartId);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _UpdateVoxamApp(int loadCount, float[] loadData, int supportCount,
                                                  float[] supportData, float volumeFraction,
                                                  short[] passiveData, int loadCaseCount,
                                                  sbyte[] loadCaseIndices, short[] blobData);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern double _IterateVoxamApp(
            int messageLength, [In, Out] byte[] messageBuffer,
                                                     [In, Out] float[] output, ref double change,
                                                     ref RuntimeStat stat, float penalty);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern double _IterateVoxamAppWithBlob(
            int messageLength, [In, Out] byte[] messageBuffer, [In, Out] float[] output,
            ref double change, ref RuntimeStat stat, [In, Out] int[] blobResult, float penalty);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _DestroyVoxamApp();

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _InitVoxamGame(int nelx, int nely, int ndopt, int ndvis,
                                                 int loadCount, float[] loadData, int supportCount,
                                                 float[] supportData, int numberOfLoadCases);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern double _SolveVoxamGame(
            float[] densities, [In, Out] float[] elementValues);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _DestroyVoxamGame();

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _InitVoxamAnalysis(int nelx, int nely, int loadCount,
                                                     float[] loadData, int supportCount,
                                                     float[] supportData, int numberOfLoadCases);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern int _SolveVoxamAnalysis(
            double[] moduli, int messageLength, [In, Out] byte[] messageBuffer,
            [In, Out] double[] compliances, [In, Out] double[] displacements,
            [In, Out] double[] energies, [In, Out] double[] stresses,
            [In, Out] byte[] looseElements);

        [DllImport(Library, CallingConvention = C, ExactSpelling = true)]
        public static extern void _DestroyVoxamAnalysis();
    }
}
