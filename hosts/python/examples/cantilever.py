import matplotlib.pyplot as plt
import voxam

load = voxam.Load(x=60, y=20, fy=1)
wall = [voxam.Support(x=0, y=y) for y in range(41)]
with voxam.Optimiser(60, 40, volume_fraction=0.4, subdivision=2, mesh_factor=2) as optimiser:
    optimiser.update([load], wall)
    for _ in range(50):
        result = optimiser.iterate()
plt.imshow(result.picture, cmap="gray")
plt.title(f"compliance {result.compliance:.1f}, volume {result.volume:.0%}")
if plt.get_backend().lower() == "agg":
    plt.savefig("cantilever.png")
    print("There is no display: the picture is in cantilever.png")
plt.show()
