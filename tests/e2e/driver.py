"""Drives a running Torvane with mouse and keyboard, on Linux and under Wine alike.

Nothing here knows how high a row or a menu item is in which style. Where things are is measured on
the screen: two pictures of a list with different rows selected differ in exactly these rows, and a
menu's items are the lines of text in it.
"""
import collections
import os
import re
import signal
import subprocess
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def read_catalogue():
    """Category to its programs, in the order of the tree."""
    tree = {}
    with open(os.path.join(ROOT, 'resources/catalogue'), encoding='ascii') as file:
        for line in file.read().rstrip('\0').splitlines():
            if line.startswith('['):
                tree[line[1:-1]] = programs = []
            elif line:
                programs.append(line.split('=', 1)[1].split(',')[0])
    return tree


def runs(flags):
    """First and last index of each run of true flags."""
    found, start = [], None
    for index, flag in enumerate([*flags, False]):
        if flag and start is None:
            start = index
        elif not flag and start is not None:
            found.append((start, index - 1))
            start = None
    return found


class Rectangle:
    def __init__(self, left, top, width, height):
        self.left, self.top, self.width, self.height = left, top, width, height
        self.right, self.bottom = left + width, top + height


def changed_rows(before, after, area):
    """The runs of pixel rows of an area in which two pictures differ."""
    return [(area.top + first, area.top + last) for first, last in
            runs(before.row(y, area.left, area.right) != after.row(y, area.left, area.right)
                 for y in range(area.top, area.bottom))]


def ink(picture, y, left, right):
    """Whether each pixel of a piece of a row differs from the one at its right end."""
    row = picture.row(y, left, right)
    return [row[i:i + 4] != row[-4:] for i in range(0, len(row), 4)]


class Screen:
    """Mouse, keyboard and windows of a display. Where a text cursor blinks, the screen never comes to
    rest, and each step waits a fixed time."""

    def __init__(self, display, blinking=False):
        self.display = display
        self.blinking = blinking
        self.last_place, self.last_time = None, 0

    def rest(self):
        if not self.blinking:
            return self.display.look_when_still()
        time.sleep(0.8)
        return self.display.look()

    def xdo(self, *arguments):
        return self.display.run('xdotool', *map(str, arguments))

    def click(self, x, y, button=1, count=1, held=None):
        place = (round(x), round(y))
        # Two clicks at one place within half a second would make a double click.
        if place == self.last_place:
            time.sleep(max(0, self.last_time + 0.7 - time.monotonic()))
        steps = ['mousemove', *place, 'sleep', 0.05, 'click', '--repeat', count, '--delay', 80, button]
        self.xdo(*(['keydown', held, *steps, 'keyup', held] if held else steps))
        self.last_place, self.last_time = place, time.monotonic()
        return self.rest()

    def key(self, *names):
        self.xdo('key', *names)
        return self.rest()

    def place(self, window):
        """Where a window's client area is on the screen."""
        text = self.display.run('xwininfo', '-id', str(window))
        numbers = [re.search(name + r':\s+(-?\d+)', text) for name in
                   ('Absolute upper-left X', 'Absolute upper-left Y', 'Width', 'Height')]
        return Rectangle(*(int(number[1]) for number in numbers)) if all(numbers) else None

    def top_windows(self):
        """The windows directly on the screen that can be seen, frames and popups alike."""
        return set(self.xdo('search', '--onlyvisible', '--maxdepth', 1, '--name', '').split())

    def named(self, pattern):
        """The visible windows whose title matches a pattern."""
        return self.xdo('search', '--onlyvisible', '--name', pattern).split()

    def title(self, window):
        return self.xdo('getwindowname', window).strip()

    def menu_lines(self, window):
        """The places of the items of an open menu: the middle of each line of text, top down."""
        area = self.place(window)
        picture = self.display.look_when_still()
        inner = range(area.top + 2, area.bottom - 2)
        flags = [any(ink(picture, y, area.left + 4, area.right - 4)) for y in inner]
        # A separator is a line or two of pixels, a text is higher.
        lines = [(first, last) for first, last in runs(flags) if last - first >= 4]
        return [(area.left + area.width / 2, inner[0] + (first + last) / 2)
                for first, last in lines]


class Torvane:
    """The running program and its main window."""

    #: Wide and high enough to show the tree with any one category open.
    SIZE = (1160, 900)

    def __init__(self, display, command, environment):
        self.screen = Screen(display)
        self.display = display
        self.tree = read_catalogue()
        self.open_category = None
        self.chosen = None
        self.list_rows = None
        self.deletions = collections.Counter()
        self.process = subprocess.Popen(command, env={**display.environment, **environment},
                                        stdin=subprocess.DEVNULL, start_new_session=True)
        try:
            self.window = display.wait(self._find_window, "Torvane's window", 60)
            # Only a window that has its frame is done with its own size.
            display.look_when_still()
            self.resize(*self.SIZE)
            self._measure_tree()
        except BaseException:
            display.look().save(os.path.join(ROOT, 'build/e2e/start-failed.png'))
            self.kill()
            raise

    def _find_window(self):
        """The main window: the splash has the name too, but is smaller."""
        if self.process.poll() is not None:
            raise RuntimeError(f'the program ended at once with {self.process.returncode}')
        for window in self.screen.named('^Torvane$'):
            place = self.screen.place(window)
            if place and place.width >= 480 and place.height >= 300:
                return window
        return None

    def resize(self, width, height):
        self.screen.xdo('windowactivate', self.window)
        self.screen.xdo('windowmove', self.window, 20, 40)
        self.screen.xdo('windowsize', self.window, width, height)

        def arranged():
            place = self.screen.place(self.window)
            return place.width == width and place.height == height and place
        self.place = self.display.wait(arranged, 'the window to take its size')
        self.display.look_when_still()
        # The tree has about three tenths of the width, the list the rest; what is looked at keeps
        # away from the bar between them, the scroll bars and the status bar.
        place = self.place
        top, rows = place.top + 15, place.height - 60
        self.tree_area = Rectangle(place.left + 2, top, int(place.width * 0.27), rows)
        left = place.left + int(place.width * 0.35)
        self.list_area = Rectangle(left, top, place.right - 30 - left, rows)
        self.status_area = Rectangle(place.left + 2, place.bottom - 20, place.width // 2, 18)

    def _measure_tree(self):
        area = self.tree_area
        self.screen.click(area.left + 60, area.bottom - 5)
        # Home alone may choose nothing where nothing has been chosen yet.
        first = self.screen.key('End', 'Home')
        # Behind the catalogue's categories others may stand.
        self.screen.key('Down')
        last = self.screen.key('Down')
        rows = changed_rows(first, last, area)
        if len(rows) < 2:
            raise RuntimeError('the keys Home and Down move no selection in the tree')
        self.tree_pitch = (rows[-1][0] - rows[0][0]) / 2
        self.tree_first = (rows[0][0] + rows[0][1]) / 2

    def _tree_row(self, index):
        """A place on the text of a visible row of the tree."""
        y = self.tree_first + index * self.tree_pitch
        picture = self.display.look_when_still()
        area = self.tree_area
        columns = [any(column) for column in zip(*(
            ink(picture, round(y) + offset, area.left, area.right) for offset in range(-3, 4)))]
        text = max(index for index, marked in enumerate(columns) if marked)
        return area.left + text - 8, y

    def choose(self, category, program=None):
        """Selects a category, or a program of it, with the mouse."""
        categories = list(self.tree)
        row = categories.index(category)
        if program is None:
            self._close_category()
            self.chosen = None
            return self.screen.click(*self._tree_row(row))
        if self.open_category != category:
            self._close_category()
            before = self.display.look_when_still()
            after = self.screen.click(*self._tree_row(row), count=2)
            if row + 1 < len(categories) and not changed_rows(before, after, self.tree_area):
                raise RuntimeError(f'a double click on {category} opens nothing')
            self.open_category = category
        before = self.display.look_when_still()
        after = self.screen.click(*self._tree_row(row + 1 + self.tree[category].index(program)))
        if (category, program) != self.chosen and not changed_rows(before, after, self.status_area):
            raise RuntimeError(f'a click on {program} changes nothing in the status bar')
        self.chosen = (category, program)
        return after

    def _close_category(self):
        if self.open_category:
            row = list(self.tree).index(self.open_category)
            self.screen.click(*self._tree_row(row), count=2)
            self.open_category = None

    def rows(self, count):
        """The places of the list's rows, of which there are so many. Where the first is and how far
        they are apart is measured once, on the first list with several rows."""
        if not self.list_rows:
            area = self.list_area
            plain = self.screen.click(area.left + 40, area.bottom - 5)
            # A key that moves the focus nowhere selects nothing, but Space always does.
            first = changed_rows(plain, self.screen.key('End', 'Home', 'space'), area)
            last = changed_rows(plain, self.screen.key('Home', 'End', 'space'), area)
            if not first or not last:
                raise RuntimeError('the list shows no rows')
            top, pitch = first[0], (last[-1][0] - first[0][0]) / max(count - 1, 1)
            measured = ((top[0] + top[1]) / 2, pitch)
            if count == 1:
                return [(area.left, measured[0])]
            if not 12 <= pitch <= 60:
                raise RuntimeError(f"the list doesn't show {count} rows, {pitch} pixels high")
            self.list_rows = measured
        middle, pitch = self.list_rows
        return [(self.list_area.left, middle + index * pitch) for index in range(count)]

    def popup(self, place):
        """Right-clicks at a place; gives the places of the menu's items, top down."""
        before = self.screen.top_windows()
        self.screen.click(*place, button=3)
        menu = self.display.wait(lambda: self.screen.top_windows() - before, 'the popup menu', 20)
        if len(menu) != 1:
            raise RuntimeError(f'{len(menu)} windows came up with the right click')
        return self.screen.menu_lines(menu.pop())

    def command(self, place, item):
        """Right-clicks at a place and chooses one of the popup's last items."""
        items = ['Delete Selected', 'Delete Missing', 'Delete All']
        if self.deletions[self.chosen]:
            items.append('Undo Delete')
        lines = self.popup(place)
        if len(lines) - len(items) not in (0, 1):
            raise RuntimeError(f'the popup menu has {len(lines)} items')
        self.screen.click(*lines[items.index(item) - len(items)])
        self.deletions[self.chosen] += -1 if item == 'Undo Delete' else 1

    def undo_by_mouse(self, count):
        self.command(self.rows(count)[0], 'Undo Delete')

    def undo_by_key(self):
        self.screen.key('ctrl+z')
        self.deletions[self.chosen] -= 1

    def delete_missing(self, count):
        self.command(self.rows(count)[0], 'Delete Missing')

    def delete_all(self, count):
        self.command(self.rows(count)[0], 'Delete All')

    def delete_selected(self, count, chosen):
        """Selects rows by their 0-based numbers with Ctrl held, and deletes them."""
        places = self.rows(count)
        self.screen.click(*places[chosen[0]])
        for row in chosen[1:]:
            self.screen.click(*places[row], held='ctrl')
        self.command(places[chosen[-1]], 'Delete Selected')

    def confirm(self):
        """Closes a message box with Enter."""
        self.screen.key('Return')

    def save_picture(self, path):
        """The window with its frame, as a PNG file."""
        place = self.place
        self.display.look_when_still().save(path, place.left - 1, place.top - 20,
                                            place.width + 2, place.height + 22)

    def close(self):
        """Closes the window as the window manager's key does; gives the program's status."""
        self.screen.xdo('windowactivate', self.window)
        self.screen.key('alt+F4')
        try:
            return self.process.wait(60)
        except subprocess.TimeoutExpired:
            self.kill()
            raise

    def kill(self):
        if self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
