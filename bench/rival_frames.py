"""Seconds a picture of a scene that turns: rival_frames.py FILE moving|rest WIDTH HEIGHT. For pvpython."""

import sys
import time

from paraview.simple import *

file, pace, width, height = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
source = OpenDataFile(file)
view = CreateView("RenderView")
view.ViewSize = [width, height]
view.OrientationAxesVisibility = 0
settings = GetSettingsProxy("RenderViewSettings")
settings.DepthPeeling = 1
settings.MaximumNumberOfPeels = 8
display = Show(source, view)
if file.endswith(".vti"):
    display.SetRepresentationType("Volume")
    ColorBy(display, ("POINTS", source.PointData.GetArray(0).Name))
    display.RescaleTransferFunctionToDataRange()
else:
    display.SetRepresentationType("Surface")
    display.Opacity = 0.4
ResetCamera(view)
camera = GetActiveCamera()
camera.Elevation(-60)
camera.Roll(0)


def draw():
    camera.Azimuth(0.57)
    view.SMProxy.InteractiveRender() if pace == "moving" else view.SMProxy.StillRender()


for _ in range(3):
    draw()
count = 30 if pace == "moving" else 8
start = time.perf_counter()
for _ in range(count):
    draw()
print((time.perf_counter() - start) / count)
