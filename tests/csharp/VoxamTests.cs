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

    private static readonly Load[] Pull = { new Load(Width, Height / 2, 0, 1) };
    private static readonly Support[] Wall = Clamp(Height);

    public void GivesTheCompliancesOfTheProgram()
    {
        string table = Path.GetTempFileName();
        string scene = Path.Combine(Environment.GetEnvironmentVariable("VOXAM_SCENES"),
                                    "optimise-cantilever.json");
        var start = new ProcessStartInfo(
            Environment.GetEnvironmentVariable("VOXAM_PROGRAM"),
            $"optimise \"{scene}\" --iterations 12 --history \"{table}\"");
        start.UseShellExecute = false;
        start.RedirectStandardOutput = true;
        using (Process program = Process.Start(start))
        {
            program.StandardOutput.ReadToEnd();
            program.WaitForExit();
            That(program.ExitCode == 0, "the program runs");
        }
        List<double[]> rows = File.ReadLines(table).Skip(1).Select(Numbers).ToList();
        That(rows.Count == 12, "a line for each iteration");
        using (var optimiser = new Optimiser(80, 50, 0.4f, 2, 2))
        {
            optimiser.Update(new Settings { Loads = new[] { new Load(80, 25, 0, 1) },
                                            Supports = Clamp(50) });
            foreach (double[] row in rows)
            {
                Near(optimiser.Iterate().Compliance, row[1], 1e-6 * row[1]);
                Near(1 - optimiser.Picture.Average(cell => (double)cell), row[2], 1e-6);
            }
        }
        File.Delete(table);
    }

    public void MasksAndPictureAreRowByRow()
    {
        using (Optimiser optimiser = Good(2, 2))
        {
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall, Void = Mask(2, 1, 3, 1),
                                            Solid = Mask(9, 0), SecondSolid = Mask(5, 6) });
            for (int i = 0; i < 15; ++i) optimiser.Iterate();
            That(optimiser.PictureWidth == 48 && optimiser.PictureHeight == 32, "the picture's size");
            That(optimiser.Picture.Length == 48 * 32, "the picture's length");
            foreach (int[] cell in new[] { new[] { 2, 1, 1 }, new[] { 3, 1, 1 }, new[] { 9, 0, 0 },
                                           new[] { 5, 6, 0 } })
                Near(optimiser.Picture[(4 * cell[1] + 2) * 48 + 4 * cell[0] + 2], cell[2], 0.02);
        }
    }

    public void TellsWhatHappened()
    {
        using (Optimiser optimiser = Good())
        {
            Iteration first = optimiser.Iterate();
            Iteration last = first;
            for (int i = 0; i < 20; ++i) last = optimiser.Iterate();
            That(last.Compliance < 0.8 * first.Compliance, "it becomes stiffer");
            That(first.Change > 0 && first.Change <= 1, "the design changes");
            const float rounding = 0.01f;
            That(last.Times.Total + rounding >= last.Times.State + last.Times.Mesh, "the total");
            That(last.Times.State + rounding >= last.Times.Assemble + last.Times.Factorize, "the state");
            That(last.Times.Factorize > 0, "the factorisation takes time");
        }
    }

    public void TextsSayWhatToDoUntilAnUpdateMendsIt()
    {
        using (Optimiser optimiser = Good())
        {
            double before = optimiser.Iterate().Compliance;
            float[] picture = (float[])optimiser.Picture.Clone();
            foreach (var settings in new Dictionary<string, Settings>
            {
                ["Put a force"] = new Settings { Loads = new[] { new Load(0, 4, 1, 1) }, Supports = Wall },
                ["no work"] = new Settings { Supports = Wall },
                ["Hold it in x"] = new Settings { Loads = Pull, Supports = new[] { new Support(0, 0) } },
                ["scale the forces"] = new Settings { Loads = new[] { new Load(Width, 0, 1e9f, 0) },
                                                      Supports = Wall }
            })
            {
                optimiser.Update(settings.Value);
                That(!optimiser.TryIterate(out _, out string problem), settings.Key);
                That(problem.Contains(settings.Key), problem);
                Throws<ProblemException>(() => optimiser.Iterate(), settings.Key);
                That(optimiser.Picture.SequenceEqual(picture), "the last good picture stays");
            }
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall });
            That(optimiser.TryIterate(out Iteration result, out string none) && none == null, "mended");
            That(result.Compliance < 1.5 * before, "the design goes on");
        }
    }

    public void BlobMovesIsTrackedAndStays()
    {
        bool[] start = Mask(4, 1, 5, 1, 6, 1, 4, 2, 5, 2, 6, 2);
        using (Optimiser optimiser = Good())
        {
            That(optimiser.Blob == null, "no blob");
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall, Blob = start });
            That(optimiser.Blob.SequenceEqual(start), "the blob that was sent");
            for (int i = 0; i < 10; ++i) optimiser.Iterate(moveBlob: true);
            bool[] moved = optimiser.Blob;
            That(moved.Count(cell => cell) == 6 && !moved.SequenceEqual(start), "the blob moved");
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall, Blob = moved });
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
        foreach (int[] cases in new[] { new[] { 0 }, new[] { 1 }, new[] { 0, 1 }, null })
            using (var optimiser = new Optimiser(Width, Height, loadCases: 2))
            {
                optimiser.Update(new Settings { Loads = loads, Supports = Wall, LoadCasesInUse = cases });
                compliances.Add(optimiser.Iterate().Compliance);
            }
        Near(compliances[0] + compliances[1], compliances[2], 1e-9 * compliances[2]);
        That(compliances[2] == compliances[3], "all cases if none is named");
        using (var optimiser = new Optimiser(2, 2, loadCases: 200))
        {
            var settings = new Settings { Loads = new[] { new Load(2, 0, 1, 0, 127) },
                                          Supports = Clamp(2) };
            Throws<ArgumentException>(() => optimiser.Update(settings), "first 128");
            settings.LoadCasesInUse = new[] { 127 };
            optimiser.Update(settings);
            That(optimiser.Iterate().Compliance > 0, "the last load case that can be used");
        }
    }

    public void VolumeFractionStaysUntilItIsNamed()
    {
        var volumes = new List<double>();
        foreach (float? again in new float?[] { 0.3f, null })
            using (var optimiser = new Optimiser(Width, Height, 0.6f))
            {
                var settings = new Settings { Loads = Pull, Supports = Wall, VolumeFraction = 0.3f };
                optimiser.Update(settings);
                optimiser.Iterate();
                settings.VolumeFraction = again;
                optimiser.Update(settings);
                Compliances(optimiser, 15);
                volumes.Add(1 - optimiser.Picture.Average(cell => (double)cell));
            }
        That(volumes[0] == volumes[1] && volumes[0] < 0.4, "the volume that was named last");
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
            optimiser.Update(new Settings { Loads = Pull, Supports = Wall, Blob = Mask(1, 1) });
            Throws<ArgumentException>(() => optimiser.Restart(meshFactor: 1), "have to be equal");
            That(optimiser.MeshFactor == 2 && optimiser.Iterate().Compliance > 0, "it goes on");
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
                var settings = new Settings { Loads = Pull, Supports = Wall };
                entry.Value(settings);
                Throws<ArgumentException>(() => optimiser.Update(settings), entry.Key);
                That(optimiser.Iterate().Compliance > 0, "it goes on");
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
        Throws<InsufficientMemoryException>(() => new Optimiser(100000, 100000), "more than the lib");
        Throws<InsufficientMemoryException>(() => new Game(3, 3, null, null, 1 << 30), "more than the");
        Throws<ArgumentException>(() => new Optimiser(3, 3, float.NaN), "volumeFraction");
        Throws<ArgumentException>(() => new Optimiser(3, 3, 1, 0), "subdivision");
        Throws<InsufficientMemoryException>(() => new Optimiser(3, 3, 1, 1 << 8, 1 << 8), "more cells");
        using (var optimiser = new Optimiser(200, 170))
        {
            var settings = new Settings { Void = Enumerable.Repeat(true, 34000).ToArray() };
            Throws<ArgumentException>(() => optimiser.Update(settings), "34000 elements, the most are");
        }
        using (var optimiser = new Optimiser(40000, 1, meshFactor: 2))
        {
            var settings = new Settings { Solid = new bool[40000] };
            settings.Solid[39000] = true;
            Throws<ArgumentException>(() => optimiser.Update(settings), "cannot be named");
            settings.Solid[39000] = false;
            settings.Solid[5] = true;
            Throws<ArgumentException>(() => optimiser.Update(settings), "have to be equal");
        }
    }

    public void EstimatesMemoryAsDocumented()
    {
        string scenes = Environment.GetEnvironmentVariable("VOXAM_SCENES");
        var row = new Regex(@"^\| (\d+) x (\d+) \| \((\d+), (\d+)\) \| (\d+) MB \| (\d+) MB \|$");
        List<int[]> rows = File.ReadLines(Path.Combine(scenes, "..", "docs", "hosting.md"))
            .Select(line => row.Match(line)).Where(match => match.Success)
            .Select(match => Enumerable.Range(1, 6).Select(i => int.Parse(match.Groups[i].Value)).ToArray())
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
        Func<double> real = Memory.Available;
        That(real() > 1e6, "some memory is free");
        Memory.Available = () => 2e8;
        try
        {
            Throws<InsufficientMemoryException>(() => new Optimiser(300, 300), "300 x 300 elements");
            Throws<InsufficientMemoryException>(() => new Optimiser(50, 50, meshFactor: 16), "factor 16");
            Throws<InsufficientMemoryException>(() => new Optimiser(50, 50, loadCases: 3000), "load cases 3000");
            Throws<InsufficientMemoryException>(() => new Game(400, 400, Pull, null), "400 x 400");
            using (Optimiser optimiser = Good())
            {
                Memory.Available = () => 0;
                Throws<InsufficientMemoryException>(() => optimiser.Restart(false, 2), "need about");
                That(optimiser.Iterate().Compliance > 0, "it goes on");
                optimiser.Restart();  // in the place of the one before
            }
        }
        finally
        {
            Memory.Available = real;
        }
    }

    public void OneAtATimeUntilItIsDisposedOf()
    {
        Optimiser optimiser = Good();
        Throws<InvalidOperationException>(() => new Optimiser(3, 2), "one Optimiser in a process");
        That(optimiser.Iterate().Compliance > 0, "the one that lives goes on");
        optimiser.Dispose();
        optimiser.Dispose();
        using (var other = new Optimiser(3, 2))
        {
            optimiser.Dispose();
            Throws<InvalidOperationException>(() => other.Iterate(), "call Update");
            Throws<ObjectDisposedException>(() => optimiser.Iterate(), "Optimiser");
            Throws<ObjectDisposedException>(() => optimiser.Update(new Settings()), "Optimiser");
            Throws<ObjectDisposedException>(() => optimiser.Restart(), "Optimiser");
            Throws<ObjectDisposedException>(() => optimiser.Blob.ToString(), "Optimiser");
        }
        Load[] pull = { new Load(3, 1, 0, 1) };
        var game = new Game(3, 2, pull, Clamp(2));
        Throws<InvalidOperationException>(() => new Game(3, 2, pull, null), "one Game in a process");
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
            That(optimiser.Iterate().Compliance > 0 && optimiser.Picture.Length == Width * Height,
                 "a new one of its own size");
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
            var together = new List<double>();
            List<Thread> threads = Enumerable.Range(0, 4).Select(_ => new Thread(() =>
            {
                for (int i = 0; i < 10; ++i)
                {
                    double compliance = optimiser.Iterate().Compliance;
                    lock (together) together.Add(compliance);
                }
            })).ToList();
            threads.ForEach(thread => thread.Start());
            threads.ForEach(thread => thread.Join());
            That(together.OrderBy(c => c).SequenceEqual(alone.OrderBy(c => c)), "the same iterations");
        }
    }

    public void GameScoresRowByRow()
    {
        // A strip pulled along x: the row that carries the load has the energy.
        var loads = new[] { new Load(6, 2, 0.5f, 0), new Load(6, 3, 0.5f, 0) };
        var densities = new float[24];
        for (int x = 0; x < 6; ++x) densities[2 * 6 + x] = 1;
        using (var game = new Game(6, 4, loads, Clamp(4)))
        {
            Near(game.Solve(densities), 6, 0.3);  // force squared x length / area
            for (int i = 0; i < 24; ++i)
                That(i / 6 == 2 ? game.Energies[i] > 0.5 : game.Energies[i] < 1e-3, "energy " + i);
        }
    }

    public void ASlidingEdgeLeavesAUniformStress()
    {
        // Unit stress along x, unit modulus: the compliance is the area.
        List<Load> loads = Enumerable.Range(0, 5).Select(
            y => new Load(6, y, y % 4 == 0 ? 0.5f : 1, 0)).ToList();
        List<Support> supports = Enumerable.Range(0, 5).Select(
            y => new Support(0, y, y == 0 ? Directions.XY : Directions.X)).ToList();
        using (var game = new Game(6, 4, loads, supports))
        {
            Near(game.Solve(Enumerable.Repeat(1f, 24).ToArray()), 24, 1e-3);
            foreach (float energy in game.Energies) Near(energy, 1, 1e-4);
        }
    }

    public void GameRefusesAndGoesOn()
    {
        float[] solid = Enumerable.Repeat(1f, 6).ToArray();
        using (var game = new Game(3, 2, new[] { new Load(3, 1, 0, 1) }, new[] { new Support(0, 0) }))
        {
            That(!game.TrySolve(solid, out _), "not held");
            Throws<ProblemException>(() => game.Solve(solid), "Hold it in x, in y and against turning");
        }
        using (var game = new Game(3, 2, new[] { new Load(3, 1, 0, 1) }, Clamp(2)))
        {
            Throws<ArgumentException>(() => game.Solve(new float[5]), "5 entries, not width * height = 6");
            Throws<ArgumentNullException>(() => game.Solve(null), "densities");
            foreach (float wrong in new[] { -0.1f, 1.1f, float.NaN })
                Throws<ArgumentException>(() => game.Solve(new[] { 1, 1, 1, 1, 1, wrong }), "densities[5]");
            That(game.Solve(solid) > 0, "it goes on");
        }
        foreach (Load[] idle in new[] { null, new Load[0], new[] { new Load(3, 1, 0, 0) },
                                        new[] { new Load(0, 1, 1, 1) } })
            Throws<ArgumentException>(() => new Game(3, 2, idle, Clamp(2)), "none does work");
        var forces = new Dictionary<float, string> { [1e-24f] = "too small", [1e19f] = "scale the" };
        foreach (KeyValuePair<float, string> force in forces)
            using (var game = new Game(3, 2, new[] { new Load(3, 1, 0, force.Key) }, Clamp(2)))
                Throws<ProblemException>(() => game.Solve(solid), force.Value);
    }

    /// <summary>For a process of little memory, and so not among the others.</summary>
    private void WantOfMemoryIsAnErrorOfItsOwn()
    {
        Memory.Available = () => double.PositiveInfinity;  // as on a system that does not tell
        Load[] load = { new Load(400, 200, 0, 1) };
        Throws<InsufficientMemoryException>(() => new Game(400, 400, load, Clamp(400), 6000), "Not eno");
        using (var optimiser = new Optimiser(400, 400, meshFactor: 16))
        {
            optimiser.Update(new Settings { Loads = load, Supports = Clamp(400) });
            Throws<InsufficientMemoryException>(() => optimiser.Iterate(), "Not enough memory for 400");
        }
        using (Optimiser small = Good()) That(small.Iterate().Compliance > 0, "a smaller one");
    }

    public static int Main(string[] names)
    {
        const BindingFlags all = BindingFlags.Instance | BindingFlags.Public | BindingFlags.NonPublic
                                 | BindingFlags.DeclaredOnly;
        int failures = 0;
        foreach (MethodInfo test in typeof(VoxamTests).GetMethods(all))
        {
            if (names.Length > 0 ? !names.Contains(test.Name) : !test.IsPublic) continue;
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

    /// <summary>An optimiser that has its problem.</summary>
    private static Optimiser Good(int subdivision = 1, int meshFactor = 1)
    {
        var optimiser = new Optimiser(Width, Height, 0.5f, subdivision, meshFactor);
        optimiser.Update(new Settings { Loads = Pull, Supports = Wall });
        return optimiser;
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
