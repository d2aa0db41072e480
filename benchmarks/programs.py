#!/usr/bin/python3
"""Measures whole programs and writes what it measured as JSON.

programs.py FOLDER: FOLDER gets programs.json, {name: seconds or calls}. The programs are those of the
linux and windows builds. The work of one process natively is its processor time; what waits for files
or works with Wine's server goes by the clock. Of several runs the best counts.
"""
import json
import os
import resource
import shutil
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(ROOT, 'tests/e2e'))

import wine  # noqa: E402

FOLDER = os.path.abspath(sys.argv[1])
NATIVE = os.path.join(ROOT, 'build/linux')
WINDOWS = os.path.join(ROOT, 'build/windows')
PAINT = r'Software\Microsoft\Windows\CurrentVersion\Applets\Paint\Recent File List'
LIST = 'Graphics/MS Paint'
CALLS = os.path.join(FOLDER, 'calls')


def make_prefix(name, hive, files=()):
    """A small prefix whose user.reg has the given keys, and files on drive C."""
    folder = os.path.join(FOLDER, name)
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder + '/drive_c/windows/system32')
    os.makedirs(folder + '/dosdevices')
    os.symlink('../drive_c', folder + '/dosdevices/c:')
    wine.write_hive(folder + '/user.reg', hive)
    wine.write_hive(folder + '/system.reg', {})
    for file in files:
        host = folder + '/drive_c/' + file[3:].replace('\\', '/')
        os.makedirs(os.path.dirname(host), exist_ok=True)
        open(host, 'wb').close()
    return folder


def entries(paths):
    return {f'File{number}': path for number, path in enumerate(paths, 1)}


def run(prefix, *words, **environment):
    """Runs torvane-cli; gives its seconds by the clock and of the processor."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begin = time.monotonic()
    subprocess.run([NATIVE + '/torvane-cli', '--prefix', prefix, *words], check=True,
                   env={**os.environ, **environment}, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL)
    clock = time.monotonic() - begin
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return clock, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def lists_of_a_large_hive():
    keys = {}
    for number in range(20 * 2**20 // 260):
        keys[f'Software\\Classes\\CLSID\\{{{number:012}}}\\InProcServer32'] = {
            '': f'C:\\windows\\system32\\library{number}.dll', 'ThreadingModel': 'Both', 'Version': 255,
            'Path': f'C:\\windows\\system32\\caf{number}'}
    prefix = make_prefix('large', keys)
    return min(run(prefix, 'lists', '--all')[1] for _ in range(5))


def clean_every_list():
    """The lists of the catalogue, those in INI files too, with 50 of 100 files each."""
    files = [f'C:\\Data\\Here {number}.txt' for number in range(50)]
    paths = [path for number in range(50) for path in (files[number], f'C:\\Data\\Gone {number}.txt')]
    keys, sections = {}, {}
    with open(os.path.join(ROOT, 'resources/catalogue'), encoding='ascii') as catalogue:
        rows = [line.strip().split('=', 1)[1].split(',') for line in catalogue if '=' in line]
    for _, location, kind, section, prefix, first, *_ in rows:
        numbers = [str(number).zfill(len(first)) for number in
                   range(int(first) if first.isdigit() else 1, 101)]
        name = '' if prefix == '*' else prefix
        values = {name + number: path for number, path in zip(numbers, paths)}
        if section == '*':
            keys['Software\\' + location] = values
        else:
            sections.setdefault(location, []).append((section, values))
    best = None
    for _ in range(3):
        folder = make_prefix('every', keys, files)
        for location, parts in sections.items():
            with open(f'{folder}/drive_c/windows/{os.path.basename(location)}', 'w',
                      encoding='ascii') as ini:
                for section, values in parts:
                    ini.write(f'[{section}]\n')
                    ini.writelines(f'{name}={text}\n' for name, text in values.items())
        seconds = run(folder, 'clean', '--missing')[0]
        best = seconds if best is None else min(best, seconds)
    return best


def slow(paths, here):
    """Seconds and calls of showing a list where each call below its drive takes a millisecond: drive C
    where the files are there, else D, which leads nowhere, or a server."""
    prefix = make_prefix('slow', {PAINT: entries(paths)}, paths if here else ())
    gone = os.path.join(FOLDER, 'gone')
    os.symlink(gone, prefix + '/dosdevices/d:')
    folders = ([prefix + '/dosdevices/c:', prefix + '/drive_c'] if here else
               [prefix + '/dosdevices/d:', prefix + '/dosdevices/unc', gone])
    seconds = min(run(prefix, 'show', LIST, SLOW_FOLDERS='|'.join(folders), SLOW_CALLS=CALLS,
                      LD_PRELOAD=NATIVE + '/benchmarks/libslow_files.so')[0] for _ in range(2))
    with open(CALLS, encoding='ascii') as file:
        return seconds, int(file.read())


def under_wine(results):
    program = WINDOWS + '/benchmarks/lists_under_wine.exe'
    runner = [sys.executable, os.path.join(ROOT, 'tests/e2e/wine.py'), 'bench', 'wine', program]

    def lines(*command):
        output = subprocess.run(command, capture_output=True, text=True, check=True).stdout
        return [float(line) for line in output.split()]

    (results['wine_read_value'],) = lines('taskset', '1', *runner, 'read')
    results['wine_found_file'], results['wine_missing_window'] = lines(*runner, 'files')

    prefix = wine.fresh('bench-peers')
    prefix.regedit({'Software\\TorvaneTest\\List': entries(
        f'http://site{n % 97}.example/folder/page{n}.html' for n in range(1, 10001))})
    key = 'HKCU\\Software\\TorvaneTest\\List'
    for name, command in (('wine_reg_query', ('reg', 'query', key)),
                          ('wine_regedit_export', ('regedit', '/E', 'C:\\list.reg', key.replace(
                              'HKCU', 'HKEY_CURRENT_USER'))),
                          ('wine_reg_delete', ('reg', 'delete', key, '/va', '/f'))):
        begin = time.monotonic()
        prefix.run('wine', *command)
        results[name] = time.monotonic() - begin
    prefix.end()


def main():
    results = {'cli_lists': lists_of_a_large_hive(), 'cli_clean': clean_every_list()}
    one = [f'C:\\Shared Folder\\Document {n}.txt' for n in range(200)]
    each = [f'C:\\Shared Folder\\Part {n}\\Document.txt' for n in range(200)]
    results['slow_one_folder'], _ = slow(one, True)
    results['slow_each_folder'], _ = slow(each, True)
    _, results['slow_dead_drive'] = slow([f'D:\\Shared Folder\\Part {n}.txt' for n in range(200)], False)
    _, results['slow_dead_server'] = slow([rf'\\server\share\Part {n}.txt' for n in range(200)], False)
    under_wine(results)
    with open(os.path.join(FOLDER, 'programs.json'), 'w', encoding='utf-8') as file:
        json.dump(results, file, indent=2)


main()
