"""Which keys of a registry that Wine's own programs wrote are taken for lists."""
import os
import subprocess
import time

from display import Display
from driver import ROOT
from platforms import OnLinux

FIND = os.path.join(ROOT, 'build/linux/tests/find_lists')
PROGRAMS = [r'C:\Program Files\Windows NT\Accessories\wordpad.exe', 'notepad', 'regedit', 'winefile', 'winecfg']


class FoundListsOnLinux(OnLinux):
    def found(self, prefix):
        prefix.end()
        output = subprocess.run([FIND], env={**os.environ, **prefix.environment}, check=True,
                                capture_output=True, text=True).stdout
        return [tuple(line.split('\t')) for line in output.splitlines()]

    def run_for_a_while(self, prefix, program):
        """Opens a program with a text, and closes it as Wine closes programs at its end."""
        prefix.make_file(r'C:\texts\one.txt', b'text')
        with Display() as display:
            environment = {**os.environ, **display.environment, **prefix.environment}
            with subprocess.Popen(['wine', program, r'C:\texts\one.txt'], env=environment) as process:
                time.sleep(4)
                prefix.run('wineboot', '--end-session', '--shutdown', display=display)
                process.wait(60)

    def test_takes_no_key_of_wines_programs_for_another_list(self):
        prefix = self.prefix()
        self.assertEqual(self.found(prefix), [])
        for program in PROGRAMS:
            self.run_for_a_while(prefix, program)
        # WordPad's list is the catalogue's.
        self.assertEqual(self.found(prefix), [])

    def test_finds_a_list_among_what_only_looks_like_one(self):
        prefix = self.prefix()
        tide = r'Software\Quayside\Tidemark\4.2\Recent File List'
        prefix.regedit({tide: {'File1': r'C:\a.txt', 'File2': r'\\srv\pub\b.txt'},
                        r'Software\Quayside\Tidemark\4.2\Search': {'Path1': r'C:\a', 'Path2': r'C:\b'},
                        r'Software\Quayside\Tidemark\4.2\Recent Fonts': {'Font1': 'Sans', 'Font2': 'Mono'}})
        self.assertEqual(self.found(prefix), [('Tidemark', tide[len('Software\\'):])])
