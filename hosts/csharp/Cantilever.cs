// Lets a bracket form that is clamped at the left and loaded at the right, prints it, and scores
// what was printed.
//
//     mcs Voxam.cs Cantilever.cs -out:cantilever.exe && mono cantilever.exe

using System;
using System.Collections.Generic;
using System.Linq;
using Voxam;

internal static class Cantilever
{
    private const int Width = 48;
    private const int Height = 20;

    private static int Main()
    {
        var loads = new[] { new Load(Width, Height / 2, fx: 0, fy: 1) };
        var wall = Enumerable.Range(0, Height + 1).Select(y => new Support(0, y)).ToList();
        try
        {
            Score(Form(loads, wall), loads, wall);
            return 0;
        }
        catch (VoxamException failure)
        {
            Console.Error.WriteLine(failure.Message);
            return 1;
        }
    }

    /// <summary>Returns the densities of the design, in black and white.</summary>
    private static float[] Form(IReadOnlyList<Load> loads, IReadOnlyList<Support> supports)
    {
        using (var optimiser = new Optimiser(Width, Height, volumeFraction: 0.45f))
        {
            optimiser.Update(new Settings { Loads = loads, Supports = supports });
            for (int i = 1; i <= 60; ++i)
            {
                Iteration iteration = optimiser.Iterate();
                if (i % 10 == 0)
                    Console.WriteLine($"iteration {i}: compliance {iteration.Compliance:F1}, "
                                      + $"change {iteration.Change:F3}");
            }
            // In a picture 0 is solid, among densities 1 is.
            return Array.ConvertAll(optimiser.Picture, cell => cell < 0.5f ? 1f : 0f);
        }
    }

    private static void Score(float[] densities, IReadOnlyList<Load> loads,
                              IReadOnlyList<Support> supports)
    {
        for (int y = 0; y < Height; ++y)
            Console.WriteLine(string.Concat(Enumerable.Range(0, Width).Select(
                x => densities[y * Width + x] > 0 ? '#' : '.')));
        using (var game = new Game(Width, Height, loads, supports))
            Console.WriteLine($"compliance as printed {game.Solve(densities):F1}, "
                              + $"volume {densities.Average():P0}");
    }
}
