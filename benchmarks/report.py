#!/usr/bin/python3
"""Prints what was measured beside what it should be, and keeps it as JSON.

report.py FOLDER EXECUTABLE: FOLDER holds benchmarks.json of Google Benchmark and the texts
native and wine with one time in seconds, and start with that of Torvane and of an empty window;
EXECUTABLE is torvane.exe.

The work of one process is compared by processor time, so that a busy machine or disk doesn't count;
what two processes do together, by the clock. Of several runs the best counts.
"""
import json
import os
import sys

FOLDER, EXECUTABLE = sys.argv[1:]


def best(name, figure='cpu_time'):
    """The smallest figure of a benchmark's repetitions, times in seconds."""
    units = {'ns': 1e-9, 'us': 1e-6, 'ms': 1e-3, 's': 1}
    runs = [run for run in MEASURED if run['name'].split('/repeats')[0].startswith(name)
            and run.get('run_type') == 'iteration']
    if not runs or any('error_occurred' in run for run in runs):
        sys.exit(f'{name} failed')
    scale = units[runs[0]['time_unit']] if figure.endswith('_time') else 1
    return min(run[figure] for run in runs) * scale


def seconds(name):
    """The times in a text, one a line."""
    with open(os.path.join(FOLDER, name), encoding='utf-8') as file:
        return [float(line) for line in file]


def rows():
    """What, the measured figure, its unit, the target, and whether more is better."""
    small, large = (best(f'ReadAndRewrite/{n}') / n for n in (1000, 100000))
    yield 'list of 100,000: growth of the time per entry over 1,000', large / small, 'x', 1.3, False
    yield 'list of 1,000: read and rewrite, an entry', small * 1e6, 'us', 10, False
    yield 'list of 100,000: read and rewrite, an entry', large * 1e6, 'us', 10, False
    yield 'list of 8,000: faster than under Wine', seconds('wine')[0] / seconds('native')[0], 'x', 50, True
    yield ('hive of 50 MB: rewrite of a key over read, parse and write',
           best('RewriteOneKey') / best('PlainReadParseWrite'), 'x', 2, False)
    yield 'hive of 50 MB: load', 50 * 1.048576 / best('LoadHive'), 'MB/s', 150, True
    yield 'hive of 50 MB: memory over the file', best('LoadHive', 'memory_per_file'), 'x', 3, False
    yield 'hive of 20 MB with 10,000 keys: find the lists', best('FindLists') * 1e3, 'ms', 20, False
    torvane, empty = seconds('start')
    yield 'start over an empty window with tree and list', torvane / empty, 'x', 1.5, False
    yield 'list window: fill with 100,000 rows', best('FillListWindow'), 's', 1, False
    yield 'list window: a step of scrolling', best('ScrollListWindow') * 1e3, 'ms', 16, False
    yield 'torvane.exe', os.path.getsize(EXECUTABLE) / 2**20, 'MB', 2, False


with open(os.path.join(FOLDER, 'benchmarks.json'), encoding='utf-8') as source:
    MEASURED = json.load(source)['benchmarks']

results = []
for what, figure, unit, target, more in rows():
    met = figure >= target if more else figure <= target
    results.append({'what': what, 'measured': figure, 'unit': unit, 'target': target,
                    'at': 'least' if more else 'most', 'met': met})
    print(f'{what:60} {figure:8.2f} {unit:5} at {"least" if more else "most "} {target:<5g}'
          f' {"met" if met else "MISSED"}')
with open(os.path.join(FOLDER, 'numbers.json'), 'w', encoding='utf-8') as kept:
    json.dump(results, kept, indent=2)
sys.exit(not all(result['met'] for result in results))
