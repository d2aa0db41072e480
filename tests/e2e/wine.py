#!/usr/bin/python3
"""Real Wine prefixes for the tests: made once, copied for each test, filled and read with Wine's own
tools.

As a command, `wine.py NAME COMMAND...` runs a command on a fresh prefix and a screen of their own.
"""
import os
import re
import shutil
import subprocess
import sys

from display import Display
from driver import ROOT

BUILD = os.path.join(ROOT, 'build')
ENVIRONMENT = {'WINEDEBUG': '-all', 'WINEARCH': 'win64',
               # Neither the Mono and Gecko installers nor entries in the desktop's menu.
               'WINEDLLOVERRIDES': 'mscoree,mshtml=;winemenubuilder.exe=d'}
#: What Wine's console tools write to a pipe in.
CONSOLE = 'cp437'


def template():
    """A prefix as wineboot leaves it, kept under build/."""
    version = subprocess.run(['wine', '--version'], capture_output=True, text=True, check=True,
                             env={**os.environ, **ENVIRONMENT}).stdout
    folder = os.path.join(BUILD, 'wine-prefix-template')
    stamp = os.path.join(folder, '.made-by')
    if not os.path.exists(stamp) or open(stamp, encoding='utf-8').read() != version:
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(BUILD, exist_ok=True)
        prefix = Prefix(folder)
        prefix.run('wineboot', '-i')
        prefix.end()
        with open(stamp, 'w', encoding='utf-8') as file:
            file.write(version)
    return folder


def copy_file(source, target):
    """Wine's libraries and fonts, which nobody changes, are linked; all else is copied."""
    if '/drive_c/windows/' in os.path.dirname(source) + '/' and \
            os.path.basename(os.path.dirname(source)) != 'windows':
        os.link(source, target)
    else:
        shutil.copy2(source, target)


def fresh(name):
    """A new prefix of its own for a test, under build/e2e."""
    folder = os.path.join(BUILD, 'e2e', name)
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(template(), folder, symlinks=True, copy_function=copy_file)
    return Prefix(folder)


def read_hive(path):
    """The texts and numbers in a hive of Wine's: {key: {value: data}}, in the order of the file."""
    def plain(text):
        text = re.sub(r'\\x([0-9a-f]{1,4})', lambda match: chr(int(match[1], 16)), text)
        return re.sub(r'\\(.)', r'\1', text)

    keys, values = {}, {}
    with open(path, encoding='ascii') as file:
        for line in file:
            if match := re.match(r'\[(.*)\] \d+$', line):
                values = keys[plain(match[1])] = {}
            elif match := re.match(r'(?:"((?:[^"\\]|\\.)*)"|@)=(?:"(.*)"|dword:(\w+))$', line):
                values[plain(match[1] or '')] = (plain(match[2]) if match[3] is None
                                                 else int(match[3], 16))
    return keys


def line(name, data):
    """A value as hives and files for regedit have it."""
    def quoted(text):
        return '"' + text.replace('\\', '\\\\').replace('"', '\\"') + '"'

    data = f'dword:{data:08x}' if isinstance(data, int) else quoted(data)
    return (quoted(name) if name else '@') + '=' + data


def write_hive(path, keys):
    """Makes a hive in Wine's format of {key: {value: text or number}}."""
    lines = ['WINE REGISTRY Version 2', ';; All keys relative to '
             'REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000', '', '#arch=win64']
    for key, values in keys.items():
        head = key.replace('\\', '\\\\')
        lines += ['', f'[{head}] 1054450800'] + [line(*value) for value in values.items()]
    with open(path, 'w', encoding='ascii') as file:
        file.write('\n'.join(lines) + '\n')


class Prefix:
    def __init__(self, folder):
        self.folder = folder
        home = os.path.join(BUILD, 'e2e', 'home')
        os.makedirs(home, exist_ok=True)
        # A home of its own: Wine links the user's folders to it.
        self.environment = {**ENVIRONMENT, 'WINEPREFIX': folder, 'HOME': home,
                            'XDG_DATA_HOME': os.path.join(home, 'share'),
                            'XDG_CONFIG_HOME': os.path.join(home, 'config'),
                            # Wine finds its server there: two places would be two servers.
                            'TMPDIR': '/tmp'}

    def run(self, *command, display=None, encoding=CONSOLE):
        """What one of Wine's commands prints; an error where it fails."""
        for _ in range(3):
            status, output = self.run_once(command, display, encoding)
            # A server that is about to end drops a program which comes in that moment, before it has
            # done anything; the next try meets a new server. A program itself says why it failed.
            if not status or not (output.startswith('wine client error:0:') or not output.strip()):
                break
        if status:
            raise RuntimeError(f'{" ".join(command)}: status {status}\n{output}')
        return output

    def run_once(self, command, display, encoding):
        """The status of a command and what it printed."""
        environment = {**os.environ, **(display.environment if display else {}),
                       **self.environment}
        # What Wine leaves running in the background holds the pipe open, so a file takes the output.
        log = os.path.join(BUILD, 'e2e', 'wine.log')
        os.makedirs(os.path.dirname(log), exist_ok=True)
        with open(log, 'wb') as file:
            status = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, stdout=file,
                                    stderr=subprocess.STDOUT, check=False, timeout=300).returncode
        with open(log, 'rb') as file:
            return status, file.read().decode(encoding)

    def end(self):
        """Waits until Wine has ended on this prefix and written its registry."""
        try:
            self.run('wineserver', '-w')
        except subprocess.TimeoutExpired:
            self.run('wineserver', '-k')
            raise

    def host(self, path):
        """The host's path of a path on drive C."""
        return os.path.join(self.folder, 'drive_c', path[3:].replace('\\', '/'))

    def make_file(self, path, content=b''):
        host = self.host(path)
        os.makedirs(os.path.dirname(host), exist_ok=True)
        with open(host, 'wb') as file:
            file.write(content)

    def regedit(self, lists, root='HKEY_CURRENT_USER'):
        """Imports {key below the root: {value: text or number}} with Wine's regedit."""
        lines = ['Windows Registry Editor Version 5.00']
        for key, values in lists.items():
            lines += ['', f'[{root}\\{key}]'] + [line(*value) for value in values.items()]
        self.make_file('C:\\lists.reg', ('\r\n'.join(lines) + '\r\n').encode('utf-16'))
        self.run('wine', 'regedit', 'C:\\lists.reg')

    def reg_add(self, key, name, text):
        self.run('wine', 'reg', 'add', 'HKCU\\' + key, '/v', name, '/d', text, '/f')

    def reg_query(self, key):
        """The values of a key below HKEY_CURRENT_USER, as `wine reg query` prints them."""
        text = self.run('wine', 'reg', 'query', 'HKCU\\' + key)
        found = re.findall(r'^    (.+?)    (REG_\w+)    (.*?)\r?$', text, re.MULTILINE)
        return {name: int(data, 16) if kind == 'REG_DWORD' else data for name, kind, data in found}

    def key_lines(self, key):
        """The lines of a key in user.reg, without its times."""
        self.end()
        with open(os.path.join(self.folder, 'user.reg'), 'rb') as file:
            data = file.read()
        start = data.index(b'[' + key.replace('\\', '\\\\').encode('ascii') + b']')
        lines = data[start:].split(b'\n\n', 1)[0].split(b'\n')[1:]
        return [line for line in lines if not line.startswith(b'#time=')]

    def hive_but(self, key):
        """The bytes of user.reg without the lines of one key."""
        with open(os.path.join(self.folder, 'user.reg'), 'rb') as file:
            data = file.read()
        head = b'[' + key.replace('\\', '\\\\').encode('ascii') + b']'
        start = data.lower().find(head.lower())
        if start < 0:
            raise RuntimeError(f'user.reg has no key {key}')
        stop = data.find(b'\n[', start)
        return data[:start], data[stop + 1:] if stop >= 0 else b''


def main():
    prefix = fresh(sys.argv[1])
    with Display() as display:
        status = subprocess.run(sys.argv[2:], stdin=subprocess.DEVNULL, check=False,
                                env={**display.environment, **prefix.environment}).returncode
        prefix.end()
    return status


if __name__ == '__main__':
    sys.exit(main())
