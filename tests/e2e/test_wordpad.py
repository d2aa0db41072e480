"""A program that owns a list: Wine's WordPad writes it, Torvane edits it, WordPad takes it again."""
import contextlib
import os
import subprocess

from display import Display
from driver import Screen
from platforms import OnLinux, UnderWine

PROGRAM = r'C:\Program Files\Windows NT\Accessories\wordpad.exe'
KEY = r'Software\Microsoft\Windows\CurrentVersion\Applets\Wordpad\Recent File List'


class WordPad:
    """A running WordPad on a screen of its own."""

    def __init__(self, display, prefix, *files):
        self.screen = Screen(display, blinking=True)
        self.process = subprocess.Popen(['wine', PROGRAM, *files],
                                        env={**display.environment, **prefix.environment})
        self.window = display.wait(lambda: self.screen.named('Wordpad'), 'WordPad')[0]
        self.screen.rest()

    def open_recent(self, number):
        """Chooses an entry of the File menu by its number; gives the window's title then."""
        self.screen.xdo('windowactivate', self.window)
        self.screen.key('alt+f')
        self.screen.key(str(number))
        self.screen.key('Escape', 'Escape')
        return self.screen.title(self.window)

    def close(self):
        # A program that is still starting may not have the keyboard yet and lose the key.
        for _ in range(6):
            self.screen.xdo('windowactivate', self.window)
            self.screen.key('alt+F4')
            with contextlib.suppress(subprocess.TimeoutExpired):
                return self.process.wait(10)
        raise RuntimeError("WordPad doesn't close")


@contextlib.contextmanager
def wordpad(prefix, *files):
    with Display() as display:
        program = WordPad(display, prefix, *files)
        try:
            yield program
            program.close()
            prefix.end()
        finally:
            program.process.kill()
            program.process.wait()


class OwnedList:
    """The theme; the variations name the platform."""

    def test_wordpad_takes_the_edited_list(self):
        prefix = self.prefix()
        paths = [f'C:\\texts\\{name}.txt' for name in ('one', 'two', 'three', 'four')]
        for path in paths:
            prefix.make_file(path, b'text')
            with wordpad(prefix, path):
                pass
        written = {f'File{number}': path for number, path in enumerate(reversed(paths), 1)}
        self.assertEqual(prefix.reg_query(KEY), written)
        os.remove(prefix.host(paths[3]))

        with self.torvane(prefix) as program:
            program.choose('Text Editors', 'Wordpad')
            program.delete_missing(4)
            program.delete_selected(3, [1])
            program.undo_by_key()
            program.undo_by_mouse(3)
        self.assertEqual(prefix.reg_query(KEY), written)

        with self.torvane(prefix) as program:
            program.choose('Text Editors', 'Wordpad')
            program.delete_missing(4)
            program.delete_selected(3, [1])
        self.assertEqual(prefix.reg_query(KEY), {'File1': r'c:\texts\three.txt', 'File2': r'c:\texts\one.txt'})

        with wordpad(prefix) as program:
            self.assertEqual(program.open_recent(3), 'Document - Wine Wordpad')
            self.assertEqual(program.open_recent(1), 'three.txt - Wine Wordpad')
            self.assertEqual(program.open_recent(2), 'one.txt - Wine Wordpad')
        prefix.end()


class OwnedListOnLinux(OwnedList, OnLinux):
    pass


class OwnedListUnderWine(OwnedList, UnderWine):
    pass
