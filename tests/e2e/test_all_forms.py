"""A list of each of the fourteen forms, written with Wine's own tools, edited by each command that
its popup offers, and read back with Wine's own tools."""
import os
import subprocess

import wine
from platforms import OnLinux, UnderWine

HKCU = 'Software\\'
FILES = ('Keep.zip', 'Other.zip', 'Hand.cur', 'Arrow.cur', 'A.ico', 'B.ico', 'Boats.css', 'Print.css',
         'Clock.rc', 'Clock.res', 'Résumé.txt', 'Notes.txt')


class Form:
    """What a list holds at first and what each command leaves of it.

    `place` is its key, or its INI file and section. `rows` is how many rows it shows, `missing` what
    Delete Missing leaves (None for a list without existence test), `chosen` the rows that Delete
    Selected then takes, `selected` what it leaves, `emptied` what Delete All leaves.
    """

    def __init__(self, category, program, place, first, rows, missing, chosen, selected, emptied):
        self.category, self.program, self.place, self.first = category, program, place, first
        self.rows, self.missing, self.chosen = rows, missing, chosen
        self.selected, self.emptied = selected, emptied
        self.kept = rows if missing is None else rows - 1

    def is_ini(self):
        return isinstance(self.place, tuple)


FORMS = [
    Form('Compression', 'Winzip (File)', HKCU + r'Nico Mak Computing\WinZip\filemenu',
         {'filemenu1': r'C:\lists\Keep.zip', 'filemenu2': r'C:\lists\gone.zip',
          'filemenu3': r'C:\lists\Other.zip'}, 3,
         {'filemenu1': r'c:\lists\keep.zip', 'filemenu2': r'c:\lists\other.zip'}, [0],
         {'filemenu1': r'c:\lists\other.zip'}, {}),
    Form('Graphics', 'AX-Cursors 4.5 (Favorites)', HKCU + r'Axialis\AX-Cursors 4.5\FavoriteList',
         {'1': r'My Hand|C:\lists\Hand.cur', '2': r'Lost|C:\lists\gone.cur',
          '3': r'Arrow|C:\lists\Arrow.cur'}, 3,
         {'1': r'My Hand|c:\lists\hand.cur', '2': r'Arrow|c:\lists\arrow.cur'}, [1],
         {'1': r'My Hand|c:\lists\hand.cur'}, {}),
    Form('Audio', 'ASFRecorder', HKCU + r'ASFRecorder\RecentURLList',
         {'URL0': 'http://Video.example/A', 'URL1': 'ftp://Ftp.example/', 'URL2': r'C:\gone'}, 3,
         None, [1],
         {'URL0': 'http://video.example/a', 'URL1': r'c:\gone'}, {}),
    Form('System', '2xExplorer', HKCU + r'ZabaraKatranemia Plc\2xExplorer\FolderCombo History',
         {'0': 'C:\\Lists\\', '1': r'C:\lists\gone', '2': r'C:\Windows', '3': '12'}, 3,
         {'0': r'c:\lists', '1': r'c:\windows'}, [0],
         {'0': r'c:\windows'}, {}),
    Form('Graphics', 'Microangelo Studio', HKCU + r'Impact\Microangelo\Studio\MRU List',
         {'MRU1': r'C:\lists\A.ico,7', 'MRU2': r'C:\lists\gone.ico,1', 'MRU3': r'C:\lists\B.ico,2',
          'MRUCount': '3'}, 3,
         {'MRU1': r'c:\lists\a.ico,1', 'MRU2': r'c:\lists\b.ico,1', 'MRUCount': '2'}, [0],
         {'MRU1': r'c:\lists\b.ico,1', 'MRUCount': '1'}, {'MRUCount': '0'}),
    Form('CSS Editors', 'Topstyle 1.5', HKCU + r'Bradbury\TopStyle\1.5\RecentFiles',
         {r'C:\lists\Boats.css': '2', r'C:\lists\gone.css': '0', r'C:\lists\Print.css': '1'}, 3,
         {r'C:\lists\Boats.css': '2', r'C:\lists\Print.css': '1'}, [0],
         {r'C:\lists\Print.css': '1'}, {}),
    Form('Text Editors', 'ConTEXT (Find History)', HKCU + r'Eden\ConTEXT\FindHistory',
         {'0': 'Boat', '1': 'int  main', '2': r'\bAda\b'}, 3, None, [1],
         {'0': 'Boat', '1': r'\bAda\b'}, {}),
    Form('System', 'RegEdit (Favorites)',
         HKCU + r'Microsoft\Windows\CurrentVersion\Applets\Regedit\Favorites',
         {'Fonts': r'My Computer\HKEY_CURRENT_USER\Fonts', 'Paint': r'My Computer\HKEY_USERS',
          'Run': r'My Computer\HKEY_LOCAL_MACHINE'}, 3, None, [1],
         {'Fonts': r'My Computer\HKEY_CURRENT_USER\Fonts', 'Run': r'My Computer\HKEY_LOCAL_MACHINE'},
         {}),
    Form('System', 'Run', HKCU + r'Microsoft\Windows\CurrentVersion\Explorer\RunMRU',
         {'a': r'notepad\1', 'b': r'C:\lists\1', 'c': r'regedit /s x.reg\1', 'MRUList': 'bca'}, 3,
         None, [1],
         {'A': r'notepad\1', 'B': r'regedit /s x.reg\1', 'MRUList': 'ba'}, {'MRUList': ''}),
    Form('Misc', 'F-Secure SSH Client (Recent Hosts)',
         HKCU + r'F-Secure\F-Secure SSH Client\Recent Host List',
         {'Host1': 'Harbour.example', 'Host2': 'mail.example.net', 'Host3': '192.0.2.17'}, 3,
         None, [0, 2],
         {'Host1': 'mail.example.net'}, {}),
    Form('Programming', 'Symantec Resource Studio',
         (r'C:\windows\rstudio.ini', 'Recent File List'),
         {'File1': r'C:\lists\Clock.rc', 'File2': r'C:\lists\gone.rc', 'File3': r'C:\lists\Clock.res'},
         3, {'File1': r'c:\lists\clock.rc', 'File2': r'c:\lists\clock.res'}, [0],
         {'File1': r'c:\lists\clock.res'}, {}),
    Form('Graphics', 'IrfanView', (r'C:\viewer\i_view32.ini', 'MRUD'),
         {'Dir1': 'C:\\Lists\\', 'Dir2': r'C:\lists\gone', 'Dir3': r'C:\Windows'}, 3,
         {'Dir1': r'c:\lists', 'Dir2': r'c:\windows'}, [1],
         {'Dir1': r'c:\lists'}, {}),
    Form('Programming', 'Resource Hacker', (r'C:\editor\ResHacker.ini', 'MRU List'),
         {'MRU1': r'C:\lists\gone.res', 'MRU2': r'C:\lists\Clock.res', 'MRU3': r'C:\lists\A.ico'}, 3,
         {'MRU1': r'c:\lists\clock.res', 'MRU2': r'c:\lists\a.ico'}, [0],
         {'MRU1': r'c:\lists\a.ico'}, {}),
    Form('Text Editors', 'WinVi', (r'C:\windows\win.ini', "Ramo's WinVi"),
         {'RecentFile0': r'C:\lists\Résumé.txt', 'RecentFile1': r'C:\lists\gone.txt',
          'RecentFile2': r'C:\lists\Notes.txt', 'TabStop': '8'}, 3,
         {'RecentFile0': r'c:\lists\résumé.txt', 'RecentFile1': r'c:\lists\notes.txt',
          'TabStop': '8'}, [1],
         {'RecentFile0': r'c:\lists\résumé.txt', 'TabStop': '8'}, {'TabStop': '8'}),
]


class Lists:
    """The fourteen lists in one prefix."""

    def __init__(self, prefix):
        self.prefix = prefix
        self.tool = os.path.join(wine.BUILD, 'e2e', 'profile.exe')
        subprocess.run(['x86_64-w64-mingw32-g++-posix', '-static', '-o', self.tool,
                        os.path.join(os.path.dirname(os.path.abspath(__file__)), 'profile.cpp')],
                       check=True)

    def write(self):
        for name in FILES:
            self.prefix.make_file('C:\\lists\\' + name)
        for file in ('C:\\viewer\\i_view32.ini', 'C:\\editor\\ResHacker.ini'):
            self.prefix.make_file(file, b'; kept\r\n[Window]\r\nLeft=10\r\n')
        self.prefix.regedit({form.place: form.first for form in FORMS if not form.is_ini()})
        for form in FORMS:
            for key, text in form.first.items() if form.is_ini() else ():
                self.prefix.run('wine', self.tool, *form.place, key, text)

    def read(self, form):
        if not form.is_ini():
            return self.prefix.reg_query(form.place)
        output = self.prefix.run('wine', self.tool, *form.place, encoding='cp1252')
        return dict(line.split('=', 1) for line in output.splitlines())


class AllForms:
    """The theme; the variations name the platform."""

    def test_every_command_on_every_form(self):
        prefix = self.prefix()
        lists = Lists(prefix)
        lists.write()
        self.store_ini_folders(prefix, {'IrfanView': 'C:\\viewer\\', 'Resource Hacker': 'C:\\editor\\'})

        self.each(prefix, [form for form in FORMS if form.missing is not None],
                  lambda program, form: program.delete_missing(form.rows))
        self.check(lists, lambda form: form.first if form.missing is None else form.missing)

        self.each(prefix, FORMS,
                  lambda program, form: program.delete_selected(form.kept, form.chosen))
        self.check(lists, lambda form: form.selected)

        self.each(prefix, FORMS,
                  lambda program, form: program.delete_all(form.kept - len(form.chosen)))
        self.check(lists, lambda form: form.emptied)
        for file in ('viewer/i_view32.ini', 'editor/ResHacker.ini'):
            with open(f'{prefix.folder}/drive_c/{file}', 'rb') as content:
                self.assertTrue(content.read().startswith(b'; kept\r\n[Window]\r\nLeft=10\r\n'), file)

    def each(self, prefix, forms, command):
        """Runs Torvane once and gives a command on each list."""
        with self.torvane(prefix) as program:
            for form in forms:
                program.choose(form.category, form.program)
                command(program, form)
                if form.program == 'Run':
                    program.confirm()

    def check(self, lists, expected):
        for form in FORMS:
            with self.subTest(program=form.program):
                self.assertEqual(lists.read(form), expected(form))


class AllFormsOnLinux(AllForms, OnLinux):
    pass


class AllFormsUnderWine(AllForms, UnderWine):
    pass
