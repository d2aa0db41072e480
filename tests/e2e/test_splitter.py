"""The bar between tree and list under a real mouse, in pixels."""
from driver import ink, runs
from platforms import OnLinux, UnderWine


class Bar:
    """The bar of a running program, seen between the frames of the empty panes, a pixel wide each."""

    def __init__(self, program):
        self.program, self.screen = program, program.screen

    def edges(self):
        """Its left edge and the list's frame, from the left of the window."""
        place = self.program.place
        lines = runs(ink(self.screen.rest(), place.bottom - 100, place.left + 10, place.right - 10))
        return lines[0][0] + 11, lines[-1][1] + 10

    def drag(self, distance, *after):
        """Takes the bar by its left edge and moves it in two steps; tells where it is then."""
        place = self.program.place
        x, y = place.left + self.edges()[0], place.bottom - 200
        self.screen.xdo('mousemove', x, y, 'sleep', 0.1, 'mousedown', 1)
        for step in (distance // 2, distance):
            self.screen.xdo('mousemove', max(x + step, 0), y, 'sleep', 0.1)
        if after:
            self.screen.xdo(*after)
        return self.edges()


class Splitter:
    """The theme; the variations name the platform."""

    def test_follows_the_mouse_and_keeps_its_proportion(self):
        with self.torvane(self.prefix()) as program:
            bar, full = Bar(program), program.SIZE[0]
            left, right = bar.edges()
            self.assertEqual(bar.drag(80), (left + 80, right + 80), 'the panes follow the mouse')
            program.screen.key('Escape')
            self.assertEqual(bar.edges(), (left, right), 'Escape')
            program.screen.xdo('mouseup', 1, 'mousemove_relative', 40, 0)
            self.assertEqual(bar.edges(), (left, right), 'a release after Escape')

            self.assertEqual(bar.drag(150, 'mouseup', 1), (left + 150, right + 150))
            for width, height in ((870, 700), (1215, 640), program.SIZE):
                program.resize(width, height)
                split = round((left + 150) / full * width)
                self.assertEqual(bar.edges(), (split, split + right - left), width)

            least = bar.drag(-800, 'mouseup', 1)[0]
            most = bar.drag(1150, 'mouseup', 1)[1]
            self.assertGreater(least, 20, 'the least width of a pane')
            self.assertEqual(most, full - least)


class SplitterOnLinux(Splitter, OnLinux):
    pass


class SplitterUnderWine(Splitter, UnderWine):
    pass
