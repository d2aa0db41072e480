#!/usr/bin/python3
"""`cli.py PROGRAM`: torvane-cli on copies of a small prefix."""
import codecs
import contextlib
import json
import os
import pty
import re
import resource
import select
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv.pop())
LIST = 'Graphics/MS Paint'
KEY = 'Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List'
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '../..')
SCHEMA = os.path.join(ROOT, 'docs/torvane-cli.schema.json')
FILES = ['C:\\Here.bmp', 'C:\\gone.bmp', 'C:\\also gone.bmp', 'E:\\far.bmp', '\\\\server\\share\\\u017e.bmp']


def read(path):
    with open(path, 'rb') as file:
        return file.read()


def fits(value, rule, definitions):
    """Whether a value is what a rule of the schema says, as far as the schema's rules go."""
    if '$ref' in rule:
        rule = definitions[rule['$ref'].rsplit('/', 1)[1]]
    kinds = {'string': str, 'integer': int, 'boolean': bool, 'array': list, 'object': dict}
    if type(value) is not kinds[rule['type']]:
        return False
    if rule['type'] == 'array':
        return all(fits(item, rule['items'], definitions) for item in value)
    if rule['type'] == 'object':
        return list(value) == rule['required'] and all(
            fits(value[name], field, definitions) for name, field in rule['properties'].items())
    return True


class Cli(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home, self.prefix = folder.name, folder.name + '/prefix'
        os.makedirs(self.prefix + '/drive_c/windows/system32')
        os.makedirs(self.prefix + '/dosdevices')
        os.symlink('../drive_c', self.prefix + '/dosdevices/c:')
        open(self.prefix + '/drive_c/here.bmp', 'wb').close()
        self.store({KEY: FILES})

    def store(self, lists):
        def text(data):
            return ''.join('\\\\' if c == '\\' else c if c < '\x7f' else f'\\x{ord(c):x}' for c in data)
        lines = ['WINE REGISTRY Version 2', '', '#arch=win64']
        for key, files in lists.items():
            lines += ['', f'[{text(key)}] 1']
            lines += [f'"File{n}"="{text(name)}"' for n, name in enumerate(files, 1)]
        for name, content in (('user', lines), ('system', lines[:3])):
            with open(f'{self.prefix}/{name}.reg', 'w', encoding='ascii') as file:
                file.write('\n'.join(content) + '\n')

    def stored(self):
        with open(self.prefix + '/user.reg', encoding='ascii') as file:
            return re.findall(r'^"File\d+"="(.*)"$', file.read(), re.MULTILINE)

    def start(self, *arguments, **options):
        options = {'stdout': subprocess.PIPE, 'stderr': subprocess.PIPE, 'env': {}, **options}
        options['env'] = {'HOME': self.home, **options['env']}
        return subprocess.Popen([PROGRAM, '--prefix', self.prefix, *arguments],
                                stdin=subprocess.DEVNULL, **options)

    def call(self, *arguments, status=0, **options):
        run = self.start(*arguments, **options)
        output, self.errors = run.communicate(timeout=60)
        self.assertEqual(run.returncode, status, (arguments, self.errors))
        self.assertEqual(bool(self.errors), status != 0, (arguments, self.errors))
        return output

    def on_terminal(self, *arguments, **variables):
        """All that a call shows on a terminal."""
        ours, theirs = pty.openpty()
        run = self.start(*arguments, stdout=theirs, stderr=theirs, env=variables)
        os.close(theirs)
        shown = b''
        with contextlib.suppress(OSError):
            while part := os.read(ours, 65536):
                shown += part
        os.close(ours)
        self.assertEqual(run.wait(60), 0)
        return shown

    def everything(self):
        """What there is in the home and the prefix, with its times and bytes."""
        found = {}
        for folder, names, files in os.walk(self.home):
            for name in ['.', *names, *files]:
                path = os.path.join(folder, name)
                status = os.lstat(path)
                found[path] = (status.st_mode, status.st_mtime_ns, status.st_ctime_ns,
                               read(path) if name in files and not os.path.islink(path) else b'')
        return found

    @contextlib.contextmanager
    def wineserver(self):
        """What there is while Wine runs on the prefix: a locked file in the server's folder."""
        place = os.stat(self.prefix)
        folder = f'/tmp/.wine-{os.getuid()}/server-{place.st_dev:x}-{place.st_ino:x}'
        os.makedirs(folder, mode=0o700, exist_ok=True)
        server = ('import fcntl, time; file = open("lock", "w"); fcntl.lockf(file, fcntl.LOCK_EX); '
                  'print(flush=True); time.sleep(60)')
        with subprocess.Popen([sys.executable, '-c', server], cwd=folder, stdout=subprocess.PIPE) as run:
            run.stdout.readline()
            yield
            run.kill()
        shutil.rmtree(folder)

    def json(self, kind, *arguments):
        value = json.loads(self.call('--json', *arguments))
        with open(SCHEMA, encoding='utf-8') as file:
            definitions = json.load(file)['$defs']
        self.assertTrue(fits(value, definitions[kind], definitions), value)
        return value

    def test_shows_what_is_missing_and_what_cannot_be_told(self):
        self.assertEqual(self.json('lists', 'lists'), [{'name': LIST, 'entries': 5, 'missing': 2}])
        self.assertGreater(len(self.json('lists', 'lists', '--all')), 90)
        entries = self.json('show', 'show', LIST.upper())['entries']
        self.assertEqual([(e['text'], e['missing'], e['unreachable']) for e in entries], [
            ('c:\\here.bmp', False, False), ('c:\\gone.bmp', True, False),
            ('c:\\also gone.bmp', True, False), ('e:\\far.bmp', False, True),
            ('\\\\server\\share\\\u017e.bmp', False, True)])
        self.assertEqual(self.json('prefixes', 'prefixes'), [])
        self.assertNotIn(b'\x1b', self.call('show', LIST))

    def test_deletes_what_was_asked_for_and_says_so(self):
        cases = [
            (['--missing'], [0, 3, 4], [3, 4]),
            (['--missing', '--unreachable', '--keep', '*ALSO*'], [0, 2], [2]),
            (['--all', '--keep', 'c:\\*.bmp'], [0, 1, 2], [0, 1, 2]),
            (['--entry', 'c:\\GONE.bmp', 'E:\\FAR.BMP'], [0, 2, 4], []),
            (['--match', '*gone.b??'], [0, 3, 4], []),
            (['--match', 'gone'], [0, 1, 2, 3, 4], []),
        ]
        lower = [name.lower() for name in FILES]
        for which, stay, kept in cases:
            self.store({KEY: FILES})
            before = self.stored()
            rest = {n for n in range(5) if n not in stay}
            for words in (['--dry-run'], []):
                report = self.json('deletion', 'delete', LIST, *which, *words)
                self.assertEqual({e['text'] for e in report['deleted']}, {lower[n] for n in rest}, which)
                self.assertEqual([e['text'] for e in report['kept']], [lower[n] for n in kept], which)
                if words:
                    self.assertEqual(self.stored(), before)
            self.assertEqual([name.lower() for name in self.stored()],
                             [before[n].lower() for n in stay], which)

    def test_cleans_all_lists_and_backs_them_up_first(self):
        backup = self.home + '/before.reg'
        before = self.stored()
        self.assertEqual(self.json('deletion', 'clean', '--missing', '--category', 'Audio')['deleted'], [])
        self.assertEqual(self.stored(), before)
        report = self.json('deletion', 'clean', '--missing', '--backup', backup)
        self.assertEqual([e['list'] for e in report['deleted']], [LIST, LIST])
        data = read(backup)
        self.assertEqual(data[:2], codecs.BOM_UTF16_LE)
        lines = data.decode('utf-16').split('\r\n')
        self.assertEqual(lines[:4], ['Windows Registry Editor Version 5.00', '',
                                     f'[HKEY_CURRENT_USER\\{KEY}]', '"File1"="C:\\\\Here.bmp"'])
        after = self.stored()
        self.call('delete', LIST, '--all', '--backup', backup, status=1)
        self.assertEqual((self.stored(), read(backup)), (after, data))

    def test_says_by_its_status_what_was_wrong(self):
        before = self.stored()
        cases = [(4, 'show', 'Graphics/None'), (4, 'delete', LIST, '--entry', 'c:\\none'),
                 (4, 'clean', '--missing', '--category', 'None'), (2, 'delete', LIST),
                 (2, 'delete', LIST, '--all', '--missing'), (2, 'clean'), (2,), (2, 'x'),
                 (4, 'delete', LIST, '--entry', '[c:\\gone.bmp]'), (4, 'show', ''),
                 (4, 'export', LIST, 'Graphics/None'), (2, 'clean', '--missing', '--backup', ''),
                 (1, 'show', 'Graphics/IrfanView'), (1, 'export', 'Text Editors/WinVi')]
        for status, *arguments in cases:
            self.call(*arguments, status=status)
            self.assertEqual(self.errors.count(b'\n'), 1, self.errors)
        for prefix in '', '/none':
            run = subprocess.run([PROGRAM, '--prefix', prefix, 'clean', '--missing'], check=False,
                                 env={'HOME': self.home, 'WINEPREFIX': self.prefix}, capture_output=True)
            self.assertEqual((run.returncode, run.stderr.count(b'\n')), (2, 1))
        self.assertEqual(self.stored(), before)

    def test_reads_and_rehearses_without_a_trace(self):
        before = self.everything()
        for arguments in (['lists', '--all'], ['show', LIST], ['show', 'Graphics/IrfanView'], ['prefixes'],
                          ['delete', LIST, '--all', '--dry-run', '--backup', self.home + '/x.reg'],
                          ['clean', '--missing', '--dry-run']):
            self.start(*arguments).communicate(timeout=60)
            self.assertEqual(self.everything(), before, arguments)

    def test_refuses_to_change_what_wine_holds(self):
        before = self.stored()
        with self.wineserver():
            self.call('show', LIST)
            self.call('delete', LIST, '--all', '--dry-run')
            self.call('delete', LIST, '--all', status=3)
            self.call('clean', '--missing', '--backup', self.home + '/x.reg', status=3)
            self.assertFalse(os.path.exists(self.home + '/x.reg'))
            self.assertEqual(self.stored(), before)
        self.call('delete', LIST, '--all')

    def test_says_which_list_a_failed_write_left_as_it_was(self):
        """A file may grow to a few kilobytes: less than the hive, and more than the INI file."""
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (3000, 3000))

        self.store({KEY: [f'C:\\{n}.bmp' for n in range(200)]})
        hive = read(self.prefix + '/user.reg')
        ini = self.prefix + '/drive_c/windows/win.ini'
        with open(ini, 'w', encoding='ascii') as file:
            file.write("[Ramo's WinVi]\nRecentFile0=c:\\gone.c\nRecentFile1=c:\\here.bmp\n")
        for arguments in (['delete', LIST, '--entry', 'c:\\7.bmp'],
                          ['delete', LIST, '--entry', 'c:\\7.bmp', '--backup', self.home + '/x.reg']):
            self.call(*arguments, status=1, preexec_fn=limit)
            self.assertFalse(os.path.exists(self.home + '/x.reg'))
            self.assertEqual(read(self.prefix + '/user.reg'), hive)
        # So much stays that the hive is still too large.
        report = json.loads(self.call('--json', 'clean', '--missing', '--keep', 'c:\\??*.bmp',
                                      status=1, preexec_fn=limit))
        self.assertEqual([e['list'] for e in report['deleted']], ['Text Editors/WinVi'])
        self.assertIn(b'user.reg', self.errors)
        self.assertIn(LIST.encode() + b': unchanged', self.errors)
        self.assertEqual(read(self.prefix + '/user.reg'), hive)
        self.assertEqual(read(ini), b"[Ramo's WinVi]\nRecentFile0=c:\\here.bmp\n")
        os.chmod(self.prefix, 0o555)
        self.call('delete', LIST, '--all', status=1)
        self.assertIn(b"user.reg can't be written", self.errors)
        os.chmod(self.prefix, 0o755)
        self.assertEqual(read(self.prefix + '/user.reg'), hive)

    def test_takes_the_answer_where_an_ini_file_lies(self):
        name, ini = 'Graphics/IrfanView', self.prefix + '/drive_c/view/i_view32.ini'
        os.makedirs(os.path.dirname(ini))
        with open(ini, 'w', encoding='ascii') as file:
            file.write('[MRUD]\r\nDir1=C:\\none\r\nDir2=C:\\view\r\n')
        self.call('show', name, status=1)
        self.assertIn(b'--ini-folder', self.errors)
        self.assertNotIn(name, self.call('lists').decode())
        self.call('show', name, '--ini-folder', 'C:\\nowhere', status=1)
        entries = self.json('show', 'show', name, '--ini-folder', 'c:\\VIEW')['entries']
        self.assertEqual([(e['text'], e['missing']) for e in entries], [('c:\\none', True), ('c:\\view', False)])
        self.json('deletion', 'delete', name, '--missing', '--backup', self.home + '/x.reg')
        self.assertEqual(read(ini), b'[MRUD]\r\nDir1=c:\\view\r\n')
        self.assertIn('Dir1=C:\\none', read(self.home + '/x.reg.ini').decode('utf-16'))

    def test_keeps_its_status_when_nobody_reads_on(self):
        ours, theirs = os.pipe()
        os.close(ours)
        self.call('lists', '--all', stdout=theirs)
        os.close(theirs)
        with open('/dev/full', 'wb') as full:
            for arguments in (['lists'], ['--help'], ['--json', 'show', LIST]):
                self.call(*arguments, status=1, stdout=full)
        # The output doesn't land in the file that is opened first.
        self.call('delete', LIST, '--missing', status=1, preexec_fn=lambda: os.close(1))
        self.assertEqual(len(self.stored()), 3)
        self.assertEqual(read(self.prefix + '/user.reg').count(b'deleted'), 0)

    def test_shows_colours_and_progress_on_a_terminal(self):
        self.assertIn(b'\x1b[31mmissing', self.on_terminal('show', LIST))
        self.assertNotIn(b'\x1b', self.on_terminal('show', LIST, NO_COLOR='1'))
        self.store({f'Software\\Quayside\\P{n}\\Recent File List': [f'C:\\{n}\\{i}' for i in range(100)]
                    for n in range(400)})
        self.assertNotIn(b' of ', self.call('lists'))
        ours, theirs = pty.openpty()
        run = self.start('lists', stderr=theirs)
        # Little by little, so that a fast machine takes its time as well.
        while run.poll() is None:
            run.send_signal(signal.SIGSTOP)
            time.sleep(0.1)
            run.send_signal(signal.SIGCONT)
            time.sleep(0.001)
            if os.read(ours, 65536) if self.has_more(ours) else b'':
                break
        else:
            self.fail('no progress was shown')
        os.close(theirs)
        run.communicate(timeout=60)

    @staticmethod
    def has_more(descriptor):
        return bool(select.select([descriptor], [], [], 0)[0])

    def test_gives_the_examples_of_its_help(self):
        shutil.rmtree(self.prefix)
        shutil.copytree(ROOT + '/samples/prefix', self.prefix)
        os.makedirs(self.prefix + '/dosdevices')
        os.symlink('../drive_c', self.prefix + '/dosdevices/c:')
        text = self.call('--help').decode().replace('\\\n', '')
        examples = [shlex.split(line) for line in text.splitlines() if line.startswith('  torvane-cli --prefix')]
        self.assertEqual([e[3] for e in examples], ['lists', 'show', 'delete', 'clean', 'export'])
        for example in examples:
            run = subprocess.run([PROGRAM, '--prefix', self.prefix, *example[3:]], cwd=self.home, check=False,
                                 capture_output=True, env={'HOME': self.home})
            self.assertEqual((run.returncode, run.stderr), (0, b''), example)
            self.assertGreater(run.stdout.count(b'\n') + os.path.exists(self.home + '/lists.reg'), 0, example)

    def test_lists_the_users_own_and_tells_of_wrong_rows_in_a_line(self):
        folder = self.home + '/.config/torvane'
        os.makedirs(folder)
        with open(folder + '/lists.ini', 'w', encoding='utf-8') as file:
            file.write('[Ha/fen]\n1=Kai,Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List,'
                       '0,*,File,1,*,*,*\n2=Kai,Q,99,*,File,1,*,*,*\n')
        run = self.start('--json', 'lists')
        output, errors = run.communicate(timeout=60)
        self.assertEqual([row['name'] for row in json.loads(output)], [LIST, 'Ha/fen/Kai'])
        self.assertEqual((run.returncode, errors.count(b'\n')), (0, 1))
        self.assertIn(b"line 3: '99' is no type of list", errors)

    def test_two_runs_at_once_lose_nothing(self):
        names = [f'C:\\{n}.bmp' for n in range(40)]
        self.store({KEY: names})
        runs = [self.start('delete', LIST, '--match', f'c:\\{n}?.bmp') for n in range(4)]
        for run in runs:
            run.communicate(timeout=60)
            self.assertEqual(run.returncode, 0)
        self.assertEqual([name.lower() for name in self.stored()],
                         [name.lower().replace('\\', '\\\\') for name in names[:10]])


unittest.main()
