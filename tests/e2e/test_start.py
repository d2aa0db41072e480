"""Starts that can't go well."""
import subprocess

from display import Display
from platforms import OnLinux, UnderWine, temporary_files


class Start:
    """The theme; the variations name the platform, and say how to spoil the temporary folder."""

    def test_unusable_temporary_folder_ends_with_a_box_and_status_1(self):
        prefix = self.prefix()
        environment = self.spoil(prefix)
        prefix.end()
        with Display() as display:
            program = subprocess.Popen(self.command(), stdin=subprocess.DEVNULL, env={
                **display.environment, **prefix.environment, **environment})
            try:
                find = ('xdotool', 'search', '--onlyvisible', '--name', '^Torvane$')
                display.wait(lambda: display.run(*find), 'the box')
                display.look_when_still()
                display.run('xdotool', 'key', 'Return')
                self.assertEqual(program.wait(60), 1)
            finally:
                program.kill()
        prefix.end()
        self.assertEqual(temporary_files(prefix), [])


class StartOnLinux(Start, OnLinux):
    def spoil(self, _):
        return {'TMPDIR': '/proc'}


class StartUnderWine(Start, UnderWine):
    def spoil(self, prefix):
        for name in ('TEMP', 'TMP'):
            prefix.reg_add('Environment', name, 'C:\\windows\\win.ini')
        return {}
