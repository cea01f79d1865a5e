"""Writes docs/benchmarks.md from what the benchmarks measured:

    python3 scripts/lib/benchmark_page.py ORDINARY.json PEERS.json... -- PACKAGE... >docs/benchmarks.md

The files are Google Benchmark's, of trunnion_bench and of the passes of trunnion_bench_peers in the same run; the
packages are those whose versions matter.
"""
import json
import os
import re
import subprocess
import sys

HEAD = """# Benchmarks

Written by `scripts/bench`; [bench](../bench/README.md) tells how, and how to measure a row of your own.
"""
PEERS_HEAD = """## Beside other libraries

The same work on the same input, in one program, one thread, `-O2`; the results were compared before a figure counted.
All contenders run in turns, at least five rounds in each of three passes over all rows, and the processor time of a
contender's best round counts: what else runs on a machine can slow a row down for longer than its rounds take. A ratio
is our throughput divided by the peer's: above 1 we are faster. **Bold** are the best peer of a row and a ratio that was
not reached. The memory rate counts the bytes that the work has to move at least, and stands beside what the triad
reached.
"""
GROWTH_HEAD = """## Growth

How much longer the same work takes on more data. Linear work takes as many times as long as there is more of it.
"""
ORDINARY_HEAD = """## The library by itself

Processor time, the best of five repetitions. Where an operation was measured in two sizes, Growth has both.
"""


def plain_name(benchmark):
    """The name without what Google Benchmark adds to it."""
    return re.sub(r'/(iterations:\d+|manual_time|repeats:\d+)', '', benchmark['name'])


def best_runs(document, key='cpu_time'):
    """The fastest repetition of every benchmark, in the order of the first ones. Benchmarks that were left out stay."""
    best = {}
    for run in document['benchmarks']:
        if run['run_type'] != 'iteration':
            continue
        name = plain_name(run)
        if name not in best or run.get(key, 0) < best[name].get(key, 0):
            best[name] = run
    return best


def best_of_passes(documents):
    """Of every row of the comparison the first pass, with the best time of each contender in any."""
    passes = [best_runs(document) for document in documents]
    best = passes[0]
    for runs in passes[1:]:
        for name, run in runs.items():
            for key in counters(run, 'seconds: '):
                key = f'seconds: {key}'
                best[name][key] = min(best[name][key], run[key])
            if 'bytes_per_second' in run:
                best[name]['bytes_per_second'] = max(best[name]['bytes_per_second'], run['bytes_per_second'])
    return best


def counters(run, prefix):
    """What follows the prefix in the names of counters, with the values."""
    return {key[len(prefix):]: value for key, value in run.items() if key.startswith(prefix)}


def significant(value):
    """Three digits, without an exponent where that is readable."""
    if value >= 100:
        return f'{value:.0f}'
    return f'{value:#.3g}'.rstrip('.')


def time_text(seconds):
    for unit, size in (('s', 1), ('ms', 1e-3), ('µs', 1e-6)):
        if seconds >= size:
            return f'{significant(seconds / size)} {unit}'
    return f'{significant(seconds * 1e9)} ns'


def count_text(count):
    for unit, size in ((' G', 1e9), (' M', 1e6), (' k', 1e3)):
        if count >= size:
            return f'{significant(count / size)}{unit}'
    return significant(count)


def table(columns, rows):
    lines = [columns, ['---'] * len(columns), *rows]
    return ''.join(f'| {" | ".join(line)} |\n' for line in lines)


def work_and_input(name):
    """The parts of "work/input" or "work/input/size"."""
    parts = name.split('/')
    return parts[0], ', '.join(parts[1:])


def first_line(path, pattern):
    with open(path, encoding='utf-8') as file:
        return next((match.group(1) for match in map(re.compile(pattern).match, file) if match), 'unknown')


def output_of(*command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    return result.stdout.strip()


def machine(document, memory_rates, packages):
    context = document['context']
    gigabytes = int(first_line('/proc/meminfo', r'MemTotal:\s+(\d+)')) / 1024 ** 2
    versions = output_of('dpkg-query', '--show', '--showformat', '${Package} ${Version}, ', *packages).rstrip(', ')
    caches = ', '.join(f'L{cache["level"]} {cache["type"].lower()} {cache["size"] // 1024} KiB'
                       for cache in context['caches'])
    rows = [['Processor', first_line('/proc/cpuinfo', r'model name\s*:\s*(.*)')],
            ['Cores', f'{os.cpu_count()}, at {context["mhz_per_cpu"] / 1000:.1f} GHz'],
            ['Caches', caches],
            ['Memory', f'{gigabytes:.1f} GiB'],
            *([what, f'{rate / 1e9:.1f} GB/s'] for what, rate in memory_rates),
            ['Load at the start', ', '.join(f'{load:.2f}' for load in context['load_avg'])],
            ['Date', context['date'][:10]],
            ['System', first_line('/etc/os-release', r'PRETTY_NAME="(.*)"')],
            ['Compiler', output_of('c++', '--version').split('\n')[0]],
            ['Peers', versions]]
    return '## Machine\n\n' + table(['', ''], rows)


def memory_rates(peers):
    """Names and rates of the rows that measure the machine; the triad is the first."""
    names = {'memory/triad': 'Memory, triad in order', 'memory/fresh': 'Memory, fresh pages'}
    return [(text, peers[name]['bytes_per_second']) for name, text in names.items() if name in peers]


def peer_rows(name, run, triad):
    """The lines of one row of the comparison: one for each peer."""
    work, given = work_and_input(name)
    if run.get('error_occurred'):
        return [[work, given, run['error_message'], '', '', '', '', '', '']]
    ours = run['seconds: Trunnion']
    ((unit, items),) = counters(run, 'items: ').items()
    rate = items * run.get('bytes per item', 0) / ours
    moved = f'{rate / 1e9:.1f} of {triad / 1e9:.1f} GB/s' if rate else ''
    lead = [work, given, time_text(ours), f'{count_text(items / ours)} {unit}', moved]
    seconds = counters(run, 'seconds: ')
    del seconds['Trunnion']
    fastest = min(seconds, key=seconds.get)
    lines = []
    for peer, time in seconds.items():
        ratio = time / ours
        reach = run.get(f'to reach: {peer}', 0)
        ratio_text = f'{ratio:.2f}'
        lines.append([*lead, f'**{peer}**' if peer == fastest else peer, time_text(time),
                      f'**{ratio_text}**' if ratio < reach else ratio_text, f'{reach:g}' if reach else ''])
        lead = [''] * len(lead)
    return lines


def comparison(peers):
    triad = memory_rates(peers)[0][1]
    rows = {name: run for name, run in peers.items() if not name.startswith('memory/')}
    lines = [line for name, run in rows.items() for line in peer_rows(name, run, triad)]
    columns = ['Work', 'Input', 'Time', 'Items a second', 'Memory', 'Peer', 'Its time', 'Ratio', 'To reach']
    notes = {}
    for name, run in rows.items():
        if run.get('label'):
            notes.setdefault((work_and_input(name)[0], run['label']), None)
    return PEERS_HEAD + '\n' + table(columns, lines) + '\n' + ''.join(f'- {work}: {note}.\n' for work, note in notes)


def sized_runs(runs, seconds_of):
    """By name without the size, what was measured in more than one size: size, seconds, greatest growth or 0."""
    groups = {}
    for name, run in runs.items():
        base, _, size = name.rpartition('/')
        if size.isdigit() and not run.get('error_occurred'):
            items = next(iter(counters(run, 'items').values()), int(size))
            groups.setdefault(base, []).append((items, seconds_of(run), run.get('growth limit', 0)))
    return {base: sorted(group) for base, group in groups.items() if max(group)[0] > min(group)[0]}


def growth(ordinary, peers):
    groups = {**sized_runs(ordinary, ordinary_seconds), **sized_runs(peers, lambda run: run['seconds: Trunnion'])}
    lines = []
    for name, group in groups.items():
        (items, seconds, _), (more_items, more_seconds, limit) = group[0], group[-1]
        factor = f'{more_seconds / seconds:.1f}'
        lines.append([name.replace('/', ', '), f'{count_text(items)} to {count_text(more_items)}',
                      f'{more_items / items:.1f}', f'**{factor}**' if 0 < limit < more_seconds / seconds else factor,
                      f'{limit:g}' if limit else ''])
    return GROWTH_HEAD + '\n' + table(['Work', 'Items', 'Times the items', 'Times the time', 'At most'], lines)


def ordinary_seconds(run):
    return run['cpu_time'] * {'ns': 1e-9, 'us': 1e-6, 'ms': 1e-3, 's': 1}[run['time_unit']]


def ordinary_table(ordinary):
    lines = []
    for name, run in ordinary.items():
        seconds = ordinary_seconds(run)
        items = run['items']
        lines.append([name, count_text(items), time_text(seconds), time_text(seconds / items),
                      count_text(items / seconds)])
    columns = ['Operation', 'Items', 'Time', 'An item', 'Items a second']
    return ORDINARY_HEAD + '\n' + table(columns, lines)


def load(path):
    with open(path, encoding='utf-8') as file:
        return json.load(file)


def main(ordinary_path, *others):
    end = others.index('--')
    documents = [load(path) for path in others[:end]]
    ordinary = best_runs(load(ordinary_path))
    peers = best_of_passes(documents)
    print('\n'.join([HEAD, machine(documents[0], memory_rates(peers), others[end + 1:]), comparison(peers),
                     growth(ordinary, peers), ordinary_table(ordinary)]), end='')


if __name__ == '__main__':
    main(*sys.argv[1:])
