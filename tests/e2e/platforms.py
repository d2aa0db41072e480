"""The two Torvanes under test: the Linux program on a Wine prefix, and torvane.exe under Wine."""
import contextlib
import glob
import os
import unittest

import wine
from display import Display
from driver import ROOT, Torvane


class Platform(unittest.TestCase):
    """The base of the tests, which run the same on both platforms. A subclass says how the program
    is started on a prefix and where it keeps what it knows of INI folders."""

    def prefix(self, mark=''):
        """A fresh prefix of this test's own; one with another mark is another."""
        return wine.fresh(self.id().rsplit('.', 1)[-1] + '-' + self.name + mark)

    def store_ini_folders(self, prefix, folders):
        """Puts down where INI files lie, as a run would have in which the user was asked."""
        own = 'Software\\Halvex\\Torvane'
        self.store_settings(prefix, {
            own: {'State': 0, 'Main Height': 7125, 'Main Width': 9960, 'Main Top': 0, 'Main Left': 0},
            own + '\\Paths': folders})

    @contextlib.contextmanager
    def torvane(self, prefix):
        """The running program on a screen of its own; closed at the end, when it must give 0."""
        prefix.end()
        with Display() as display:
            program = Torvane(display, self.command(), prefix.environment)
            try:
                yield program
                self.assertEqual(program.close(), 0)
                prefix.end()
            except BaseException:
                display.look().save(os.path.join(wine.BUILD, 'e2e', self.id() + '.png'))
                raise
            finally:
                program.kill()


class OnLinux(Platform):
    name = 'linux'

    def command(self):
        return [os.path.join(ROOT, 'build/linux/torvane')]

    def store_settings(self, prefix, settings):
        wine.write_hive(os.path.join(prefix.folder, 'torvane.reg'), settings)


class UnderWine(Platform):
    name = 'windows'

    def command(self):
        return ['wine', os.path.join(ROOT, 'build/windows/torvane.exe')]

    def store_settings(self, prefix, settings):
        prefix.regedit(settings)


def temporary_files(prefix):
    """The names of the files that Torvane has in the prefix's temporary folders."""
    folders = glob.glob(os.path.join(prefix.folder, 'drive_c/users/*/Temp'))
    folders += glob.glob(os.path.join(prefix.folder, 'drive_c/users/*/AppData/Local/Temp'))
    folders.append(os.path.join(prefix.folder, 'drive_c/windows/temp'))
    return sorted(os.path.basename(path) for folder in folders
                  for path in glob.glob(os.path.join(folder, 'TV*')))
