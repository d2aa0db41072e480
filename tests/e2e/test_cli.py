"""torvane-cli on both platforms: lists that Wine's tools wrote, and what they read afterwards."""
import json
import os
import subprocess
import tempfile

from driver import ROOT
from platforms import OnLinux, UnderWine

PAINT = r'Software\Microsoft\Windows\CurrentVersion\Applets\Paint\Recent File List'
TIDE = r'Software\Quayside\Tidemark\4.2\Recent File List'
ODD = '''Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\\''' + PAINT + ''']
@="C:\\\\default.bmp"
"File1"="C:\\\\\u0141\u00f3d\u017a\\\\\u65e5\u672c \U0001F3A8.bmp"
"File2"=""
"a\\\\b\\"c"="\\"q\\" \\\\ ;x=[y]"
"\u00fcber [k]"="tab\tin it"
"=;@"=hex:
"bytes"=hex:''' + ','.join(f'{n % 256:02x}' for n in range(300)) + '''
"none"=hex(0):01,02
"expand"=hex(2):25,00,54,00,45,00,4d,00,50,00,25,00,00,00
"no end"=hex(1):41,00,42,00
"odd size"=hex(1):41,00,42
"line end"=hex(1):41,00,0a,00,42,00,00,00
"two ends"=hex(1):41,00,00,00,00,00
"link"=hex(6):41,00
"multi"=hex(7):41,00,00,00,42,00,00,00,00,00
"big"=hex(5):01,02,03,04
"number"=dword:89abcdef
"short number"=hex(4):01,02
"long number"=hex(b):01,02,03,04,05,06,07,08
"of no type"=hex(12345):01,02
"high type"=hex(ffff0010):03
'''


class Commands:
    """The same for both platforms, which say how the program is started on a prefix."""

    def start(self, prefix, *arguments):
        """The running program, whose output files take: what Wine leaves running holds pipes open."""
        files = [tempfile.TemporaryFile(), tempfile.TemporaryFile()]
        run = subprocess.Popen(self.cli(prefix) + list(arguments), stdin=subprocess.DEVNULL, stdout=files[0],
                               stderr=files[1], env={**os.environ, **prefix.environment})
        return run, files

    def call(self, prefix, *arguments, status=0):
        prefix.end()
        run, files = self.start(prefix, *arguments)
        run.wait(120)
        for file in files:
            file.seek(0)
        output, errors = (file.read() for file in files)
        for file in files:
            file.close()
        self.assertEqual(run.returncode, status, (arguments, errors))
        self.assertNotIn(b'\r', output)
        return output.decode('utf-8')

    def json(self, prefix, *arguments):
        return json.loads(self.call(prefix, '--json', *arguments))

    def test_shows_and_deletes_what_reg_add_made(self):
        prefix = self.prefix()
        prefix.make_file(r'C:\texts\Here.txt')
        unicode = 'C:\\texts\\\u0141\u00f3d\u017a \u65e5\u672c.txt'
        for key, names in ((PAINT, [unicode, r'C:\texts\Here.txt', r'C:\Gone.bmp']),
                           (TIDE, [r'C:\gone.tid', r'C:\texts\here.txt', r'D:\far.tid'])):
            for number, name in enumerate(names, 1):
                prefix.reg_add(key, f'File{number}', name)
        self.assertEqual(self.json(prefix, 'lists'), [
            {'name': 'Graphics/MS Paint', 'entries': 3, 'missing': 2},
            {'name': 'Also Found/Tidemark', 'entries': 3, 'missing': 1}])
        entries = self.json(prefix, 'show', 'also found/TIDEMARK')['entries']
        self.assertEqual([(e['text'], e['missing'], e['unreachable']) for e in entries], [
            (r'c:\gone.tid', True, False), (r'c:\texts\here.txt', False, False), (r'd:\far.tid', False, True)])
        self.assertIn(unicode.lower().rsplit('\\', 1)[1], self.call(prefix, 'show', 'Graphics/MS Paint'))
        self.assertEqual(self.json(prefix, 'delete', 'Graphics/MS Paint', '--entry', unicode.upper()),
                         {'deleted': [{'list': 'Graphics/MS Paint', 'text': unicode.lower()}], 'kept': []})
        self.assertEqual(prefix.reg_query(PAINT), {'File1': r'c:\texts\here.txt', 'File2': r'c:\gone.bmp'})
        backup = os.path.join(prefix.folder, 'drive_c/before.reg')
        self.assertEqual(self.json(prefix, 'clean', '--missing', '--keep', '*.bmp', '--backup', self.path(backup)),
                         {'deleted': [{'list': 'Also Found/Tidemark', 'text': r'c:\gone.tid'}],
                          'kept': [{'list': 'Graphics/MS Paint', 'text': r'c:\gone.bmp'},
                                   {'list': 'Also Found/Tidemark', 'text': r'd:\far.tid'}]})
        after = {'File1': r'C:\texts\here.txt', 'File2': r'D:\far.tid'}
        self.assertEqual(prefix.reg_query(TIDE), after)
        self.call(prefix, 'delete', 'Also Found/Tidemark', '--entry', r'c:\gone.tid', status=4)
        prefix.run('wine', 'regedit', r'C:\before.reg')
        self.assertEqual(prefix.reg_query(TIDE)['File1'], r'C:\gone.tid')
        self.call(prefix, 'delete', 'Graphics/MS Paint', '--all')
        self.assertEqual(prefix.reg_query(PAINT), {})
        self.assertRegex(self.call(prefix, '--version'), r'^Torvane \d+\.\d+\.\d+\n$')

    def test_exports_what_regedit_imports_to_the_byte(self):
        source, target = self.prefix(), self.prefix('-target')
        source.make_file(r'C:\odd.reg', ODD.replace('\n', '\r\n').encode('utf-16'))
        source.run('wine', 'regedit', r'C:\odd.reg')
        exported = os.path.join(source.folder, 'drive_c/lists.reg')
        self.call(source, 'export', 'Graphics/MS Paint', '--output', self.path(exported))
        with open(exported, 'rb') as file:
            target.make_file(r'C:\lists.reg', file.read())
        target.run('wine', 'regedit', r'C:\lists.reg')
        wanted = source.key_lines(PAINT)
        self.assertEqual(len([line for line in wanted if line.startswith((b'"', b'@'))]), 21)
        self.assertEqual(target.key_lines(PAINT), wanted)

    def test_two_schedules_at_once_lose_nothing(self):
        prefix = self.prefix()
        prefix.regedit({TIDE: {f'File{n}': f'C:\\{n}.tid' for n in range(1, 50)}})
        prefix.end()
        runs = [self.start(prefix, 'delete', 'Also Found/Tidemark', '--match', f'c:\\{n}?.tid') for n in range(1, 4)]
        for run, files in runs:
            self.assertEqual(run.wait(120), 0)
            for file in files:
                file.close()
        prefix.end()
        left = [*range(1, 10), *range(40, 50)]
        self.assertEqual(prefix.reg_query(TIDE), {f'File{at}': f'C:\\{n}.tid' for at, n in enumerate(left, 1)})


class CommandsOnLinux(Commands, OnLinux):
    def cli(self, prefix):
        return [os.path.join(ROOT, 'build/linux/torvane-cli'), '--prefix', prefix.folder]

    def path(self, host):
        return host


class CommandsUnderWine(Commands, UnderWine):
    def cli(self, prefix):
        return ['wine', os.path.join(ROOT, 'build/windows/torvane-cli.exe')]

    def path(self, host):
        return 'Z:' + host.replace('/', '\\')
