"""Several prefixes: the window that asks, what the main window says of the choice, and the way back."""
import contextlib
import os
import shutil
import subprocess

import wine
from display import Display
from driver import Screen
from platforms import OnLinux


class PrefixChoiceOnLinux(OnLinux):
    def setUp(self):
        self.home = os.path.join(wine.BUILD, 'e2e', 'choice-home')
        shutil.rmtree(self.home, ignore_errors=True)
        self.make('.wine')
        bottle = self.make('.local/share/bottles/bottles/Office-1')
        with open(os.path.join(bottle, 'bottle.yml'), 'w', encoding='utf-8') as file:
            file.write('Name: Büro\n')
        self.make('.local/share/wineprefixes/tides')
        self.make('.hidden/ledger/pfx')

    def make(self, folder):
        path = os.path.join(self.home, folder)
        os.makedirs(os.path.join(path, 'drive_c/windows'))
        wine.write_hive(os.path.join(path, 'user.reg'), {
            'Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RunMRU': {
                'a': 'notepad\\1', 'MRUList': 'a'}})
        return path

    @contextlib.contextmanager
    def started(self, picture, *arguments, **variables):
        """The screen, on which the program runs; it must end with 0."""
        environment = {name: text for name, text in os.environ.items()
                       if not name.startswith('XDG_') and name != 'WINEPREFIX'}
        with Display() as display:
            program = subprocess.Popen([*self.command(), *arguments], stdin=subprocess.DEVNULL,
                                       env={**environment, **display.environment,
                                            'HOME': self.home, **variables})
            try:
                yield Screen(display, blinking=True)
                self.assertEqual(program.wait(30), 0)
            finally:
                display.look().save(os.path.join(wine.BUILD, 'e2e', picture + '.png'))
                program.kill()
                program.wait()

    @staticmethod
    def window(screen, title):
        """Waits for a window with this title, to which the keys go then."""
        found = screen.display.wait(lambda: screen.named(f'^{title}$'), title)
        screen.xdo('windowactivate', '--sync', found[0])
        screen.rest()

    def test_asks_says_which_and_comes_back(self):
        choice = 'Torvane – Choose a Wine prefix'
        with self.started('choice') as screen:
            self.window(screen, choice)
            screen.xdo('type', 'bottl')
            screen.key('Return')
            self.window(screen, 'Torvane – Bottles: Büro')
            screen.key('ctrl+o')
            self.window(screen, choice)
            screen.key('alt+a')
            self.window(screen, 'The folder of a Wine prefix')
            screen.xdo('type', os.path.join(self.home, '.hidden/ledger'))
            screen.key('Return')
            self.window(screen, 'Torvane – .*ledger.*')
            screen.key('ctrl+o')
            self.window(screen, choice)
            screen.xdo('type', 'tides')
            screen.key('Return')
            self.window(screen, 'Torvane – .*tides')
            screen.key('alt+F4')

        with self.started('choice-again') as screen:
            self.window(screen, choice)
            screen.key('Return')
            self.window(screen, 'Torvane – .*tides')
            screen.key('alt+F4')

        with self.started('choice-named', '--prefix', os.path.join(self.home, '.wine')) as screen:
            self.window(screen, r'Torvane – Wine: \.wine')
            screen.key('alt+F4')
