// Replays the calls that the Python package made for a scene, and prints what each came to: a line
// for each iteration. Pictures go to a file, as floats.
using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using Voxam;

internal static class ReplayedCalls
{
    private static string[] Fields(string line, string name)
    {
        return line.Split(' ').Single(part => part.StartsWith(name + "=", StringComparison.Ordinal))
            .Substring(name.Length + 1).Split(new[] { ',' }, StringSplitOptions.RemoveEmptyEntries);
    }

    private static float[] Numbers(string line, string name)
    {
        return Fields(line, name).Select(t => (float)double.Parse(t, CultureInfo.InvariantCulture))
            .ToArray();
    }

    private static int[] Integers(string line, string name)
    {
        return Fields(line, name).Select(t => int.Parse(t, CultureInfo.InvariantCulture)).ToArray();
    }

    private static bool[] Mask(string line, string name)
    {
        string[] cells = Fields(line, name);
        return cells.Length == 0 ? null : cells[0].Select(cell => cell == '1').ToArray();
    }

    private static Settings SettingsOf(string line)
    {
        float[] l = Numbers(line, "loads");
        int[] s = Integers(line, "supports");
        return new Settings
        {
            Loads = Enumerable.Range(0, l.Length / 5).Select(i => 5 * i)
                .Select(i => new Load((int)l[i], (int)l[i + 1], l[i + 2], l[i + 3], (int)l[i + 4]))
                .ToArray(),
            Supports = Enumerable.Range(0, s.Length / 3).Select(i => 3 * i)
                .Select(i => new Support(s[i], s[i + 1], (Directions)s[i + 2])).ToArray(),
            VolumeFraction = Numbers(line, "volume")[0],
            LoadCasesInUse = Integers(line, "cases"),
            Void = Mask(line, "void"),
            Solid = Mask(line, "solid"),
            SecondSolid = Mask(line, "second"),
            Blob = Mask(line, "blob")
        };
    }

    private static int? Given(int number) { return number == 0 ? null : (int?)number; }

    private static void Iterate(Optimiser optimiser, string line, Stream pictures)
    {
        bool moves = Integers(line, "moves")[0] == 1;
        float penalty = Numbers(line, "penalty")[0];
        if (!optimiser.TryIterate(out Iteration done, out string problem, penalty, moves))
        {
            Console.WriteLine("refused " + problem);
            return;
        }
        Console.WriteLine("{0:x} {1:x}", BitConverter.DoubleToInt64Bits(done.Compliance),
                          BitConverter.DoubleToInt64Bits(done.Change));
        var bytes = new byte[sizeof(float) * optimiser.Picture.Length];
        Buffer.BlockCopy(optimiser.Picture, 0, bytes, 0, bytes.Length);
        pictures.Write(bytes, 0, bytes.Length);
    }

    public static void Main(string[] files)
    {
        Optimiser optimiser = null;
        using (Stream pictures = File.Create(files[1]))
        {
            foreach (string line in File.ReadLines(files[0]))
            {
                try
                {
                    int[] detail = line.Contains("detail=") ? Integers(line, "detail") : null;
                    if (line.StartsWith("create", StringComparison.Ordinal))
                    {
                        optimiser?.Dispose();
                        optimiser = new Optimiser(detail[0], detail[1], Numbers(line, "volume")[0],
                                                  detail[2], detail[3], detail[4]);
                    }
                    else if (line.StartsWith("restart", StringComparison.Ordinal))
                        optimiser.Restart(SettingsOf(line), detail[0] == 1, Given(detail[1]),
                                          Given(detail[2]));
                    else if (line.StartsWith("update", StringComparison.Ordinal))
                        optimiser.Update(SettingsOf(line));
                    else
                        Iterate(optimiser, line, pictures);
                }
                catch (ArgumentException error)
                {
                    Console.WriteLine("wrong " + error.Message.Split('\n')[0]);
                }
            }
        }
        optimiser?.Dispose();
    }
}
