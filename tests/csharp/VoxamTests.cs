// Tests of hosts/csharp/Voxam.cs against the real library, and against the program given by the
// environment variable VOXAM_PROGRAM. Each public method without arguments is a test; a name on the
// command line runs that one.

using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Text.RegularExpressions;
using System.Threading;
using Voxam;

internal sealed class Failure : Exception
{
    public Failure(string message) : base(message) { }
}

public sealed class VoxamTests
{
    private const int Width = 12;
    private const int Height = 8;

    private static readonly string Scenes = Environment.GetEnvironmentVariable("VOXAM_SCENES");
    private static readonly Load[] Pull = { new Load(Width, Height / 2, 0, 1) };
    private static readonly Support[] Wall = Clamp(Height);

    public void GivesTheNumbersOfTheProgram()
    {
        string table = Path.Combine(Path.GetTempPath(), Path.GetRandomFileName() + ".csv");
        var start = new ProcessStartInfo(
            Environment.GetEnvironmentVariable("VOXAM_PROGRAM"),
            $"optimise \"{Scenes}/optimise-cantilever.json\" --iterations 12 --quiet "
            + $"--history \"{table}\"");
        start.UseShellExecute = false;
        using (Process program = Process.Start(start)) program.WaitForExit();
        List<double[]> rows = File.ReadLines(table).Skip(1).Select(Numbers).ToList();
        File.Delete(table);
        That(rows.Count == 12, "a line for each iteration");
        using (var optimiser = new Optimiser(80, 50, 0.4f, 2, 2))
        {
            optimiser.Update(new Settings { Loads = new[] { new Load(80, 25, 0, 1) },
                                            Supports = Clamp(50) });
            foreach (double[] row in rows)
            {
                Iteration result = optimiser.Iterate();
                Near(result.Compliance, row[1], 1e-6 * row[1]);
                Near(Volume(optimiser), row[2], 1e-6);
                Near(result.Change, row[3], 1e-6);
                const float rounding = 0.01f;
                RuntimeStat times = result.Times;
                That(times.Total + rounding >= times.State + times.Mesh, "the total");
                That(times.State + rounding >= times.Assemble + times.Factorize, "the state");
                That(times.Factorize > 0, "the factorisation takes time");
            }
        }
    }

    public void MasksAndPictureAreRowByRow()
    {
        using (Optimiser optimiser = Good(2, 2))
        {
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall, Void = Mask(2, 1, 3, 1),
                                            Solid = Mask(9, 0), SecondSolid = Mask(5, 6) });
            Compliances(optimiser, 15);
            That(optimiser.PictureWidth == 48 && optimiser.PictureHeight == 32,
                "the picture's size");
            That(optimiser.Picture.Length == 48 * 32, "the picture's length");
            Func<int, int, float> at = (x, y) => optimiser.Picture[(4 * y + 2) * 48 + 4 * x + 2];
            That(at(2, 1) > 0.98 && at(3, 1) > 0.98, "void");
            That(at(9, 0) < 0.02 && at(5, 6) < 0.02, "solid");
        }
    }

    public void TextsSayWhatToDoUntilAnUpdateMendsIt()
    {
        using (Optimiser optimiser = Good())
        {
            double before = optimiser.Iterate().Compliance;
            float[] picture = (float[])optimiser.Picture.Clone();
            foreach (var problem in new Dictionary<string, Settings>
            {
                ["Put a force"] = Problem(s => s.Loads = new[] { new Load(0, 4, 1, 1) }),
                ["Hold it in x"] = Problem(s => s.Supports = new[] { new Support(0, 0) }),
                ["use smaller forces"] = Problem(s => s.Loads = new[] { new Load(Width, 0, 1e9f,
                    0) })
            })
            {
                optimiser.Update(problem.Value);
                That(!optimiser.TryIterate(out _, out string told), problem.Key);
                That(told.Contains(problem.Key), told);
                Throws<ProblemException>(() => optimiser.Iterate(), problem.Key);
                That(optimiser.Picture.SequenceEqual(picture), "the last good picture stays");
            }
            optimiser.Update(Problem());
            That(optimiser.TryIterate(out Iteration result, out string none) && none == null,
                "mended");
            That(result.Compliance < 1.5 * before, "the design goes on");
        }
    }

    public void BlobMovesIsTrackedAndStays()
    {
        bool[] start = Mask(4, 1, 5, 1, 6, 1, 4, 2, 5, 2, 6, 2);
        using (Optimiser optimiser = Good())
        {
            That(optimiser.Blob == null, "no blob");
            optimiser.Update(Problem(s => s.Blob = start));
            That(optimiser.Blob.SequenceEqual(start), "the blob that was sent");
            for (int i = 0; i < 10; ++i) optimiser.Iterate(moveBlob: true);
            bool[] moved = optimiser.Blob;
            That(moved.Count(cell => cell) == 6 && !moved.SequenceEqual(start), "the blob moved");
            optimiser.Update(Problem(s => s.Blob = moved));
            optimiser.Iterate();
            for (int i = 0; i < moved.Length; ++i)
                That(!moved[i] || optimiser.Picture[i] == 1, "a hole where the blob is");
            That(optimiser.Blob.SequenceEqual(moved), "the blob stays");
        }
    }

    public void LoadCasesInUse()
    {
        var loads = new[] { new Load(Width, 0, 0, 1, 0), new Load(Width, Height, 1, 0, 1) };
        var compliances = new List<double>();
        foreach (int[] cases in new[] { new[] { 0 }, new[] { 1 }, null })
            using (var optimiser = new Optimiser(Width, Height, loadCases: 2))
            {
                optimiser.Update(Problem(s => { s.Loads = loads; s.LoadCasesInUse = cases; }));
                compliances.Add(optimiser.Iterate().Compliance);
            }
        Near(compliances[0] + compliances[1], compliances[2], 1e-9 * compliances[2]);
        using (var optimiser = new Optimiser(Width, Height, loadCases: 200))
        {
            Settings last = Problem(s => s.Loads = new[] { new Load(2, 0, 1, 0, 127) });
            Throws<ArgumentException>(() => optimiser.Update(last), "first 128");
            last.LoadCasesInUse = new[] { 127 };
            optimiser.Update(last);
            GoesOn(optimiser);
        }
    }

    public void RestartKeepsOrForgetsTheDesign()
    {
        using (Optimiser optimiser = Good(2, 2))
        {
            double[] first = Compliances(optimiser, 10);
            float[] picture = optimiser.Picture;
            optimiser.Restart(keepDesign: true);
            That(optimiser.Iterate().Compliance < 0.7 * first[0], "the design is kept");
            That(ReferenceEquals(optimiser.Picture, picture), "the picture as well");
            optimiser.Restart(subdivision: 1, meshFactor: 3);
            optimiser.Iterate();
            That(optimiser.Picture.Length == 36 * 24 && optimiser.PictureWidth == 36, "a new size");
            optimiser.Restart(subdivision: 2, meshFactor: 2);
            That(Compliances(optimiser, 10).SequenceEqual(first), "everything begins again");
            Throws<ArgumentException>(() => optimiser.Restart(true, 1), "keeps its detail");
            optimiser.Update(Problem(s => s.Blob = Mask(1, 1)));
            Throws<ArgumentException>(() => optimiser.Restart(meshFactor: 1), "must be equal");
            That(optimiser.MeshFactor == 2, "a refused restart changes nothing");
            GoesOn(optimiser);
        }
    }

    public void RefusesWrongSettingsAndKeepsTheOldOnes()
    {
        var refused = new Dictionary<string, Action<Settings>>
        {
            ["Loads[0].X"] = s => s.Loads = new[] { new Load(13, 0, 1, 0) },
            ["Loads[1].Y"] = s => s.Loads = new[] { Pull[0], new Load(0, -1, 1, 0) },
            ["Loads[0].Fx"] = s => s.Loads = new[] { new Load(0, 0, float.NaN, 0) },
            ["Loads[0].Fy"] = s => s.Loads = new[] { new Load(0, 0, 0, float.PositiveInfinity) },
            ["Loads[0].LoadCase"] = s => s.Loads = new[] { new Load(0, 0, 0, 1, 1) },
            ["Supports[0].Y"] = s => s.Supports = new[] { new Support(0, 9) },
            ["Supports[0].Fix"] = s => s.Supports = new[] { new Support(0, 0, (Directions)4) },
            ["VolumeFraction"] = s => s.VolumeFraction = 0,
            ["Void: 95 entries"] = s => s.Void = new bool[95],
            ["in both Void and SecondSolid"] = s => s.Void = s.SecondSolid = Mask(3, 2),
            ["LoadCasesInUse[1]"] = s => s.LoadCasesInUse = new[] { 0, 1 },
            ["LoadCasesInUse: at least one"] = s => s.LoadCasesInUse = new int[0]
        };
        using (Optimiser optimiser = Good())
        {
            foreach (KeyValuePair<string, Action<Settings>> entry in refused)
            {
                Throws<ArgumentException>(() => optimiser.Update(Problem(entry.Value)), entry.Key);
                GoesOn(optimiser);
            }
            Throws<ArgumentNullException>(() => optimiser.Update(null), "settings");
            foreach (float penalty in new[] { 0, -1, float.NaN, float.PositiveInfinity })
                Throws<ArgumentException>(() => optimiser.Iterate(penalty), "penalty");
        }
    }

    public void RefusesWrongSizesAndLongLists()
    {
        Throws<ArgumentException>(() => new Optimiser(0, 3), "width");
        Throws<ArgumentException>(() => new Optimiser(3, -1), "height");
        TooMuch(() => new Optimiser(100000, 100000), "more than the lib");
        TooMuch(() => new Game(3, 3, null, null, 1 << 30), "more than the lib");
        Throws<ArgumentException>(() => new Optimiser(3, 3, float.NaN), "volumeFraction");
        Throws<ArgumentException>(() => new Optimiser(3, 3, 1, 0), "subdivision");
        TooMuch(() => new Optimiser(3, 3, 1, 1 << 8, 1 << 8), "more cells");
        Action<Optimiser, int, int, string> isRefused = (optimiser, first, end, text) =>
        {
            var settings = new Settings { Solid = new bool[end] };
            for (int i = first; i < end; ++i) settings.Solid[i] = true;
            using (optimiser) Throws<ArgumentException>(() => optimiser.Update(settings), text);
        };
        isRefused(new Optimiser(200, 170), 0, 34000, "34000 elements, the most are");
        isRefused(new Optimiser(40000, 1), 39000, 40000, "cannot be named");
        isRefused(new Optimiser(4, 1, meshFactor: 2), 3, 4, "must be equal");
    }

    public void EstimatesMemoryAsDocumented()
    {
        var row = new Regex(@"^\| (\d+) x (\d+) \| \((\d+), (\d+)\) \| (\d+) MB \| (\d+) MB \|$");
        List<int[]> rows = File.ReadLines(Path.Combine(Scenes, "..", "docs", "hosting.md"))
            .Select(line => row.Match(line)).Where(match => match.Success)
            .Select(match => Enumerable.Range(1, 6)
                .Select(i => int.Parse(match.Groups[i].Value)).ToArray())
            .ToList();
        That(rows.Count > 4, "the table of the documentation");
        foreach (int[] r in rows)
        {
            var plate = new Plate(r[0], r[1], 1);
            Near(plate.MemoryOfOptimiser(r[2], r[3]), 1e6 * r[4], 0.5e6);
            Near(plate.MemoryOfGame(), 1e6 * r[5], 0.5e6);
        }
    }

    public void WhatTheMachineCannotHoldIsRefusedAtOnce()
    {
        That(Memory.Available() > 1e6, "some memory is free");
        Memory.Available = () => 2e8;
        TooMuch(() => new Optimiser(300, 300), "300 x 300 elements");
        TooMuch(() => new Optimiser(50, 50, meshFactor: 64), "factor 64");
        TooMuch(() => new Optimiser(50, 50, loadCases: 3000), "load cases 3000");
        TooMuch(() => new Game(400, 400, Pull, null), "400 x 400");
        using (Optimiser optimiser = Good())
        {
            Memory.Available = () => 0;
            TooMuch(() => optimiser.Restart(false, 2), "need about");
            GoesOn(optimiser);
            optimiser.Restart();  // in the place of the one before
        }
    }

    public void OneAtATimeUntilItIsDisposedOf()
    {
        Optimiser optimiser = Good();
        Throws<InvalidOperationException>(() => new Optimiser(3, 2), "one Optimiser in a process");
        GoesOn(optimiser);
        optimiser.Dispose();
        optimiser.Dispose();
        using (var other = new Optimiser(3, 2))
        {
            optimiser.Dispose();
            Throws<InvalidOperationException>(() => other.Iterate(), "call Update");
            foreach (Action use in new Action[]
            {
                () => optimiser.Iterate(), () => optimiser.Update(Problem()),
                () => optimiser.Restart(), () => optimiser.Blob.ToString()
            })
                Throws<ObjectDisposedException>(use, "Optimiser");
        }
        Load[] pull = { new Load(3, 1, 0, 1) };
        var game = new Game(3, 2, pull, Clamp(2));
        Throws<InvalidOperationException>(() => new Game(3, 2, pull, null),
            "one Game in a process");
        game.Dispose();
        Throws<ObjectDisposedException>(() => game.Solve(new float[6]), "Game");
    }

    public void AForgottenOptimiserMakesRoomForTheNext()
    {
        var thread = new Thread(() => Good(2, 2).Iterate());  // leaves no reference on this stack
        thread.Start();
        thread.Join();
        GC.Collect();
        GC.WaitForPendingFinalizers();
        GC.Collect();
        using (Optimiser optimiser = Good(1, 1))
            That(optimiser.Picture.Length == Width * Height, "a new one of its own size");
    }

    public void WhatAnEarlierLoadOfTheScriptsLeftIsReplaced()
    {
        const int usualId = 0;
        Native._InitVoxamApp(Width, Height, 1, 1, 0.5f, 1, usualId);
        using (Optimiser optimiser = Good(2, 2))
        {
            for (int i = 0; i < optimiser.Picture.Length; ++i) optimiser.Picture[i] = 77;
            optimiser.Iterate();
            That(optimiser.Picture.All(cell => cell < 1.001), "a picture of the new size");
        }
    }

    public void ThreadsWaitForOneAnother()
    {
        using (Optimiser optimiser = Good())
        {
            double[] alone = Compliances(optimiser, 40);
            optimiser.Restart();
            double[] together = Enumerable.Range(0, 40).AsParallel().WithDegreeOfParallelism(4)
                .WithExecutionMode(ParallelExecutionMode.ForceParallelism)
                .Select(_ => optimiser.Iterate().Compliance).ToArray();
            That(together.OrderBy(c => c).SequenceEqual(alone.OrderBy(c => c)),
                "the same iterations");
        }
    }

    public void GameScoresRowByRow()
    {
        // A strip of unit modulus, pulled along x by a unit stress and free to slide along its end:
        // the energy of each of its elements is 1, and that of the others next to nothing.
        var loads = new[] { new Load(6, 2, 0.5f, 0), new Load(6, 3, 0.5f, 0) };
        var supports = new[] { new Support(0, 2), new Support(0, 3, Directions.X) };
        float[] strip = Enumerable.Range(0, 24).Select(i => i / 6 == 2 ? 1f : 0f).ToArray();
        using (var game = new Game(6, 4, loads, supports))
        {
            Near(game.Solve(strip), 6, 0.01);
            for (int i = 0; i < 24; ++i) Near(game.Energies[i], strip[i], 0.01);
        }
    }

    public void AnalysisAnswersRowByRow()
    {
        // The same strip of modulus 2 in the second load case, and an element that touches nothing.
        var loads = new[] { new Load(6, 2, 0.5f, 0, 1), new Load(6, 3, 0.5f, 0, 1) };
        var supports = new[] { new Support(0, 2), new Support(0, 3, Directions.X) };
        double[] strip = Enumerable.Range(0, 24).Select(i => i / 6 == 2 || i == 1 ? 2.0
            : 0).ToArray();
        using (var analysis = new Analysis(6, 4, loads, supports, 2))
        {
            Near(analysis.Solve(strip), 3, 1e-12);
            Near(analysis.Compliances[0], 0, 0);
            for (int i = 0; i < 24; ++i)
            {
                bool held = i / 6 == 2;
                Near(analysis.Energies[24 + i], held ? 0.5 : 0, 1e-12);
                Near(analysis.Stresses[3 * (24 + i)], held ? 1 : 0, 1e-12);
                That(analysis.Loose[i] == (i == 1), "one element is loose");
            }
            for (int x = 0; x <= 6; ++x)
                Near(analysis.Displacements[(((5 + 3) * 7) + x) * 2], 0.5 * x, 1e-12);
            That(double.IsNaN(analysis.Displacements[0]), "no displacement without material");

            Throws<ProblemException>(() => analysis.Solve(new double[24]),
                "no material under the load");
            double[] wrong = strip.ToArray();
            wrong[3] = double.NaN;
            Throws<ArgumentOutOfRangeException>(() => analysis.Solve(wrong), "moduli[3]");
            Near(analysis.Solve(strip), 3, 1e-12);
        }
        TooMuch(() => new Analysis(3, 3, null, null, 1 << 30), "more than the lib");
    }

    public void GameRefusesAndGoesOn()
    {
        float[] solid = Enumerable.Repeat(1f, 6).ToArray();
        Func<float, Support[], Game> pulled = (force, supports) =>
            new Game(3, 2, new[] { new Load(3, 1, 0, force) }, supports);
        using (Game game = pulled(1, new[] { new Support(0, 0) }))
        {
            That(!game.TrySolve(solid, out _), "not held");
            Throws<ProblemException>(() => game.Solve(solid),
                "Hold it in x, in y and against turning");
        }
        using (Game game = pulled(1e-24f, Clamp(2)))
            Throws<ProblemException>(() => game.Solve(solid), "too small");
        Throws<ArgumentException>(() => new Game(3, 2, null, Clamp(2)), "none does work");
        Throws<ArgumentException>(() => pulled(0, Clamp(2)), "none does work");
        var rollers = new[] { new Support(3, 1, Directions.Y) };
        Throws<ArgumentException>(() => pulled(1, rollers), "none does work");
        using (Game game = pulled(1, Clamp(2)))
        {
            Throws<ArgumentException>(() => game.Solve(new float[5]),
                "5 entries, not width * height = 6");
            Throws<ArgumentNullException>(() => game.Solve(null), "densities");
            foreach (float wrong in new[] { -0.1f, 1.1f, float.NaN })
                Throws<ArgumentException>(() => game.Solve(new[] { 1, 1, 1, 1, 1, wrong }),
                    "densities[5]");
            That(game.Solve(solid) > 0, "it goes on");
        }
    }

    /// <summary>For a process of little memory, and so not among the others.</summary>
    private void WantOfMemoryIsAnErrorOfItsOwn()
    {
        Memory.Available = () => double.PositiveInfinity;  // as on a system that does not tell
        Load[] load = { new Load(400, 200, 0, 1) };
        TooMuch(() => new Game(400, 400, load, Clamp(400), 6000), "Not enough memory for 400");
        using (var optimiser = new Optimiser(400, 400, meshFactor: 16))
        {
            optimiser.Update(new Settings { Loads = load, Supports = Clamp(400) });
            TooMuch(() => optimiser.Iterate(), "Not enough memory for 400");
        }
        using (Optimiser small = Good()) GoesOn(small);
    }

    public static int Main(string[] names)
    {
        const BindingFlags all = BindingFlags.Instance | BindingFlags.Public
                                 | BindingFlags.NonPublic | BindingFlags.DeclaredOnly;
        Func<double> available = Memory.Available;
        int failures = 0;
        foreach (MethodInfo test in typeof(VoxamTests).GetMethods(all))
        {
            if (names.Length > 0 ? !names.Contains(test.Name) : !test.IsPublic) continue;
            Memory.Available = available;
            try
            {
                test.Invoke(new VoxamTests(), null);
                Console.WriteLine("passed  " + test.Name);
            }
            catch (TargetInvocationException failure)
            {
                ++failures;
                Console.WriteLine($"FAILED  {test.Name}: {failure.InnerException}");
            }
        }
        return failures;
    }

    private static Support[] Clamp(int height)
    {
        return Enumerable.Range(0, height + 1).Select(y => new Support(0, y)).ToArray();
    }

    /// <summary>A sound problem, but for what is changed.</summary>
    private static Settings Problem(Action<Settings> change = null)
    {
        var settings = new Settings { Loads = Pull, Supports = Wall };
        change?.Invoke(settings);
        return settings;
    }

    /// <summary>An optimiser that has its problem.</summary>
    private static Optimiser Good(int subdivision = 1, int meshFactor = 1)
    {
        var optimiser = new Optimiser(Width, Height, 0.5f, subdivision, meshFactor);
        optimiser.Update(Problem());
        return optimiser;
    }

    private static void GoesOn(Optimiser optimiser)
    {
        That(optimiser.Iterate().Compliance > 0, "it goes on");
    }

    /// <summary>True at the given pairs of x and y.</summary>
    private static bool[] Mask(params int[] cells)
    {
        var mask = new bool[Width * Height];
        for (int k = 0; k < cells.Length; k += 2) mask[cells[k + 1] * Width + cells[k]] = true;
        return mask;
    }

    private static double[] Compliances(Optimiser optimiser, int count)
    {
        return Enumerable.Range(0, count).Select(_ => optimiser.Iterate().Compliance).ToArray();
    }

    private static void TooMuch(Action action, string text)
    {
        Throws<InsufficientMemoryException>(action, text);
    }

    private static double Volume(Optimiser optimiser)
    {
        return 1 - optimiser.Picture.Average(cell => (double)cell);
    }

    private static double[] Numbers(string line)
    {
        return line.Split(',').Select(t => double.Parse(t, CultureInfo.InvariantCulture)).ToArray();
    }

    private static void That(bool holds, string what)
    {
        if (!holds) throw new Failure(what);
    }

    private static void Near(double value, double expected, double tolerance)
    {
        That(Math.Abs(value - expected) <= tolerance, $"{value} is not {expected}");
    }

    private static void Throws<T>(Action action, string text) where T : Exception
    {
        try
        {
            action();
        }
        catch (T expected)
        {
            That(expected.Message.Contains(text), $"\"{text}\" is not in: {expected.Message}");
            return;
        }
        throw new Failure($"no {typeof(T).Name} for {text}");
    }
}
