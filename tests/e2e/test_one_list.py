"""One list from Wine's registry editor through Torvane and back: the road that every user takes."""
import subprocess

from driver import ROOT
from platforms import OnLinux, UnderWine, temporary_files

KEY = r'Software\RogSoft\NotePad+\Recent Files'
BESIDE = r'Software\Microsoft\Windows\CurrentVersion\Applets\Paint\Recent File List'
SETTINGS = r'Software\Halvex\Torvane'


def put_lists_in(prefix):
    for name in ('One', 'Two Words', 'Café', 'Last'):
        prefix.make_file(f'C:\\lists\\{name}.txt')
    prefix.regedit({KEY: {'File1': r'C:\lists\One.txt', 'File2': r'C:\lists\gone.txt',
                          'File3': r'C:\lists\Two Words.txt', 'File4': r'C:\lists\Café.txt',
                          'File5': r'Q:\lists\gone.txt', 'RecentFiles': '6'},
                    BESIDE: {'File1': r'C:\lists\gone.bmp'}})
    prefix.reg_add(KEY, 'File6', r'C:\lists\Last.txt')


def edit(program):
    program.choose('Text Editors', 'Notepad+')
    program.delete_missing(6)
    program.delete_selected(4, [0, 2])


SURVIVORS = {'File1': r'c:\lists\two words.txt', 'File2': r'c:\lists\last.txt', 'RecentFiles': '2'}


class OneListOnLinux(OnLinux):
    def test_deletes_and_touches_nothing_else(self):
        prefix = self.prefix()
        put_lists_in(prefix)
        prefix.end()
        before = prefix.hive_but(KEY)
        with self.torvane(prefix) as program:
            edit(program)
        self.assertEqual(prefix.hive_but(KEY), before)
        self.assertEqual(prefix.reg_query(KEY), SURVIVORS)
        self.assertEqual(prefix.reg_query(BESIDE), {'File1': r'C:\lists\gone.bmp'})
        prefix.end()

    def test_looking_changes_no_byte_of_the_hives(self):
        prefix = self.prefix()
        put_lists_in(prefix)
        prefix.end()
        hives = {name: self.read(prefix, name) for name in ('user.reg', 'system.reg', 'userdef.reg')}
        with self.torvane(prefix) as program:
            program.choose('Text Editors', 'Notepad+')
            program.choose('Graphics', 'MS Paint')
        for name, content in hives.items():
            self.assertEqual(self.read(prefix, name), content, name)

    def test_saves_the_hives_that_wine_wrote_to_the_byte(self):
        prefix = self.prefix()
        put_lists_in(prefix)
        prefix.end()
        for name in ('user.reg', 'system.reg', 'userdef.reg'):
            subprocess.run([f'{ROOT}/build/linux/tests/save_hive', f'{prefix.folder}/{name}',
                            f'{prefix.folder}/copy.reg'], check=True)
            self.assertEqual(self.read(prefix, 'copy.reg'), self.read(prefix, name), name)

    def test_refuses_while_wine_runs(self):
        prefix = self.prefix()
        put_lists_in(prefix)
        prefix.end()
        before = self.read(prefix, 'user.reg')
        with self.torvane(prefix) as program:
            program.choose('Text Editors', 'Notepad+')
            prefix.run('wineserver', '-p600')
            windows = program.screen.top_windows()
            program.delete_missing(6)
            program.display.wait(lambda: program.screen.top_windows() - windows, 'the refusal')
            program.confirm()
            # What was refused isn't there to be taken back.
            program.deletions.clear()
            self.assertEqual(self.read(prefix, 'user.reg'), before)
            prefix.run('wineserver', '-k')
            prefix.end()
            program.choose('Text Editors', 'Notepad+')
            program.delete_missing(6)
        self.assertEqual(prefix.reg_query(KEY)['RecentFiles'], '4')
        prefix.end()

    @staticmethod
    def read(prefix, name):
        with open(f'{prefix.folder}/{name}', 'rb') as file:
            return file.read()


class OneListUnderWine(UnderWine):
    def test_deletes_and_touches_nothing_else(self):
        prefix = self.prefix()
        put_lists_in(prefix)
        with self.torvane(prefix) as program:
            files = temporary_files(prefix)
            self.assertEqual([name[-8:] for name in files], ['.tmp.ico'] * 5, files)
            edit(program)
        self.assertEqual(temporary_files(prefix), [])
        self.assertEqual(prefix.reg_query(KEY), SURVIVORS)
        self.assertEqual(prefix.reg_query(BESIDE), {'File1': r'C:\lists\gone.bmp'})
        settings = prefix.reg_query(SETTINGS)
        self.assertEqual(settings['State'], 0)
        self.assertGreaterEqual(settings['Main Width'], 8160)
        self.assertGreaterEqual(settings['Main Height'], 4905)
        prefix.end()
