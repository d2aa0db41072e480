#!/usr/bin/python3
"""Prints what was measured beside what it should be, and keeps it as JSON.

report.py FOLDER WINDOWS: FOLDER holds benchmarks.json of Google Benchmark, programs.json of programs.py,
the texts native and wine with one time in seconds each, and start and start-large with that of Torvane
and of an empty window; WINDOWS has torvane.exe and torvane-cli.exe. Gives 1 where a target is missed.

The work of one process is compared by processor time, so that a busy machine or disk doesn't count;
what several processes do together, and what waits for a disk, by the clock. Of several runs the best
counts.
"""
import json
import os
import sys

FOLDER, WINDOWS = sys.argv[1:]
MB = 2**20


def best(name, figure='cpu_time'):
    """The smallest figure of a benchmark's repetitions, times in seconds."""
    units = {'ns': 1e-9, 'us': 1e-6, 'ms': 1e-3, 's': 1}
    runs = [run for run in MEASURED if run['name'].startswith(name + '/')
            and run.get('run_type') == 'iteration']
    if not runs or any('error_occurred' in run for run in runs):
        sys.exit(f'{name} failed')
    scale = units[runs[0]['time_unit']] if figure.endswith('_time') else 1
    return min(run[figure] for run in runs) * scale


def seconds(name):
    """The times in a text, one a line."""
    with open(os.path.join(FOLDER, name), encoding='utf-8') as file:
        return [float(line) for line in file]


def start(name):
    torvane, empty = seconds(name)
    return torvane / empty


def megabytes(name):
    return os.path.getsize(os.path.join(WINDOWS, name)) / MB


def rows():
    """What, the measured figure, its unit, the target (None for a figure without one), and whether more
    is better."""
    small, large = (best(f'ReadAndRewrite/{n}') / n for n in (1000, 100000))
    yield 'list of 100,000: growth of the time per entry over 1,000', large / small, 'x', 1.3, False
    yield 'list of 1,000: read and rewrite, an entry', small * 1e6, 'us', 10, False
    yield 'list of 100,000: read and rewrite, an entry', large * 1e6, 'us', 10, False
    for depth in (2, 5, 7):
        yield (f'list of 100,000, 10,000 files {depth} folders deep: fill over URLs and a look',
               best(f'FillFileList/{depth}') / (best('FillUrls') + best(f'LookAtFiles/{depth}')),
               'x', 1.5, False)
    yield 'a single value of 1 MB', max(best(f'FillOneValue/{n}') for n in range(9)), 's', 0.1, False
    yield 'a value read', best('ReadValues') / 1e4 * 1e6, 'us', 0.3, False
    yield 'under Wine, on one core: a value read', RUNS['wine_read_value'] * 1e6, 'us', 5, False
    yield ('list of 10,000: rewrite of every second entry over parse, write and fsync',
           best('RewriteList', 'real_time') / best('ParseAndWrite', 'real_time'), 'x', 2, False)
    yield '1 ms a call: 200 entries of one folder', RUNS['slow_one_folder'], 's', 0.4, False
    yield '1 ms a call: 200 entries of 200 folders', RUNS['slow_each_folder'], 's', 2, False
    yield '200 entries on a dead drive', RUNS['slow_dead_drive'], 'calls', 1, False
    yield '200 entries on a dead server', RUNS['slow_dead_server'], 'calls', 1, False
    yield 'under Wine: a file found in a folder of 10,000', RUNS['wine_found_file'] * 1e3, 'ms', 0.1, False
    yield 'under Wine: 20,000 missing files in the window', RUNS['wine_missing_window'], 's', 3, False
    yield 'start over an empty window, 10,000 temporary files', start('start'), 'x', 1.3, False
    yield 'start over an empty window, user.reg of 20 MB', start('start-large'), 'x', 1.5, False
    yield 'which of the 97 lists have entries', best('LookForLists') * 1e3, 'ms', 3, False
    yield 'hive of 20 MB with 10,000 keys: find the lists', best('FindLists') * 1e3, 'ms', 20, False
    yield 'list window: fill with 100,000 rows', best('FillListWindow'), 's', 0.2, False
    yield 'list window: memory a row', best('FillListWindow', 'bytes_per_row'), 'bytes', 420, False
    yield 'list window: a step of scrolling', best('ScrollListWindow') * 1e3, 'ms', 16, False
    load = 50 * MB / best('LoadHive')
    yield 'hive of 50 MB: load', load / 1e6, 'MB/s', 400, True
    yield 'hive of 50 MB: memory over the file', best('LoadHive', 'memory_per_file'), 'x', 1.4, False
    yield ('hive of 50 MB: rewrite of a key over read, parse and write',
           best('RewriteOneKey') / best('PlainReadParseWrite'), 'x', 1, False)
    size = os.path.getsize(os.path.join(FOLDER, 'large/user.reg'))
    yield 'torvane-cli lists, hive of 20 MB: over reading it', RUNS['cli_lists'] / (size / load), 'x', 2, False
    yield 'torvane-cli clean --missing, 97 lists of 100 entries', RUNS['cli_clean'], 's', 1, False
    yield 'torvane.exe', megabytes('torvane.exe'), 'MB', 2, False
    yield 'torvane-cli.exe', megabytes('torvane-cli.exe'), 'MB', 2, False
    yield ('list of 8,000: native, faster than under Wine', seconds('wine')[0] / seconds('native')[0], 'x',
           None, True)
    for what, name in (('wine reg query', 'wine_reg_query'), ('wine regedit /E', 'wine_regedit_export'),
                       ('wine reg delete /va', 'wine_reg_delete')):
        yield f'list of 10,000: {what}', RUNS[name], 's', None, False


with open(os.path.join(FOLDER, 'benchmarks.json'), encoding='utf-8') as source:
    MEASURED = json.load(source)['benchmarks']
with open(os.path.join(FOLDER, 'programs.json'), encoding='utf-8') as source:
    RUNS = json.load(source)

results = []
for what, figure, unit, target, more in rows():
    met = None if target is None else figure >= target if more else figure <= target
    results.append({'what': what, 'measured': figure, 'unit': unit, 'target': target,
                    'at': 'least' if more else 'most', 'met': met})
    wanted = '' if met is None else (f'at {"least" if more else "most "} {target:<5g}'
                                     f' {"met" if met else "MISSED"}')
    print(f'{what:78} {figure:8.2f} {unit:5} {wanted}'.rstrip())
with open(os.path.join(FOLDER, 'numbers.json'), 'w', encoding='utf-8') as kept:
    json.dump(results, kept, indent=2)
sys.exit(any(result['met'] is False for result in results))
