"""The window under real keys and a real mouse: one thing after the other, menus where they belong,
nodes and panes that say where there is something to do."""
import os
import signal

from driver import Rectangle
from platforms import OnLinux, UnderWine

CATEGORY = 'Text Editors'
KEY = r'Software\RogSoft\NotePad+\Recent Files'
FILES = {f'File{n}': f'C:\\gone\\{n}.txt' for n in range(1, 6)}
#: The key without the second of them.
REST = {f'File{n}': f'c:\\gone\\{m}.txt' for n, m in enumerate((1, 3, 4, 5), 1)}


def darkest(picture, area):
    """The darkest pixel of an area, 0 for black to 255."""
    rows = (picture.row(y, area.left, area.right) for y in range(area.top, area.bottom))
    return min(max(row[i:i + 3]) for row in rows for i in range(0, len(row), 4))


class Window:
    """The theme; the variations name the platform."""

    def test_keys_and_clicks_are_served_in_their_order(self):
        prefix = self.prefix()
        prefix.regedit({KEY: FILES})
        with self.torvane(prefix) as program:
            programs = program.tree[CATEGORY]
            place = programs.index('Notepad+')
            program.choose(CATEGORY, programs[place - 1])
            program.choose(CATEGORY, programs[0])
            # As fast as they come: down to the list, into it, to its second row, and delete that.
            program.screen.xdo('key', '--delay', 0, *['Down'] * place, 'Tab', 'Down', 'Down', 'Delete')
            program.screen.rest()
            left = program.screen.xdo('getmouselocation')
            menu = self.new_window(program, lambda: program.screen.xdo('key', 'shift+F10'))
            self.assertEqual(program.screen.xdo('getmouselocation'), left, 'the mouse stays')
            self.assertEqual(len(program.screen.menu_lines(menu)), 4, 'with Undo Delete')
            program.screen.key('Escape')
            for key in ('F10', 'alt+v', 'alt+h'):
                before = program.display.look_when_still()
                after = program.screen.key(key)
                self.assertNotEqual(before.pixels, after.pixels, key)
                program.screen.key('Escape')
                program.screen.key('Escape')
        self.assertEqual(prefix.reg_query(KEY), {**REST, 'RecentFiles': '4'})
        prefix.end()

    def test_popup_belongs_to_the_click_however_late_it_comes(self):
        prefix = self.prefix()
        prefix.regedit({KEY: FILES})
        with self.torvane(prefix) as program:
            program.choose(CATEGORY, 'Notepad+')
            rows = program.rows(5)
            x, y = (round(number) for number in rows[1])

            def click_while_busy():
                os.kill(program.process.pid, signal.SIGSTOP)
                program.screen.xdo('mousemove', x, y, 'click', 3, 'sleep', 0.1,
                                   'mousemove', x + 150, round(rows[4][1]))
                os.kill(program.process.pid, signal.SIGCONT)
            menu = self.new_window(program, click_while_busy)
            corner = program.screen.place(menu)
            self.assertLess(abs(corner.left - x) + abs(corner.top - y), 12)
            program.screen.click(*program.screen.menu_lines(menu)[0])
        self.assertEqual(prefix.reg_query(KEY), {**REST, 'RecentFiles': '4'})
        prefix.end()

    def test_tells_where_there_is_something(self):
        prefix = self.prefix()
        prefix.regedit({KEY: FILES})
        with self.torvane(prefix) as program:
            area = program.list_area
            middle = Rectangle(area.left, area.top + area.height // 3, area.width, area.height // 3)

            def ink_of(category):
                y = round(program.tree_first + list(program.tree).index(category) * program.tree_pitch)
                row = Rectangle(program.tree_area.left + 40, y - 4, 60, 9)
                return darkest(program.display.look_when_still(), row)

            program.choose('Audio')
            program.choose('XML Editors')
            self.assertLess(darkest(program.display.look_when_still(), middle), 200, 'it invites')
            full, empty = ink_of(CATEGORY), ink_of('Audio')
            self.assertLess(full + 40, empty, 'a category without lists is dimmed')
            program.choose(CATEGORY, 'Notepad+')
            self.assertGreater(darkest(program.display.look_when_still(), middle), 230)
            program.delete_all(5)
            self.assertLess(darkest(program.display.look_when_still(), middle), 200, 'nothing stored')
            program.choose('XML Editors')
            self.assertEqual(ink_of(CATEGORY), empty, 'nor is there a list now')

    @staticmethod
    def new_window(program, action):
        """The window that an action brings up, a menu."""
        before = program.screen.top_windows()
        action()
        found = program.display.wait(lambda: program.screen.top_windows() - before, 'a menu', 20)
        return found.pop()


class WindowOnLinux(Window, OnLinux):
    pass


class WindowUnderWine(Window, UnderWine):
    pass
