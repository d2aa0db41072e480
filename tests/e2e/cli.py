#!/usr/bin/python3
"""`cli.py PROGRAM`: torvane-cli on copies of a small prefix."""
import codecs
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop()
LIST = 'Graphics/MS Paint'
KEY = 'Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List'
SCHEMA = os.path.join(os.path.dirname(os.path.abspath(__file__)), '../../docs/torvane-cli.schema.json')
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

    def start(self, *arguments):
        return subprocess.Popen([PROGRAM, '--prefix', self.prefix, *arguments],
                                env={'HOME': self.home}, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def call(self, *arguments, status=0):
        run = self.start(*arguments)
        output, errors = run.communicate(timeout=60)
        self.assertEqual(run.returncode, status, (arguments, errors))
        self.assertEqual(bool(errors), status != 0, (arguments, errors))
        return output

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
                 (2, '--prefix', '/none', 'lists')]
        for status, *arguments in cases:
            self.call(*arguments, status=status)
        self.assertEqual(self.stored(), before)

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
