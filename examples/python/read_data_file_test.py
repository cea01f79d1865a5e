"""Holds read_data_file.py and docs/formats.md against files of the library.

    python3 read_data_file_test.py LIBRARY LIST_WRITER
"""
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unittest

import flat_calls
import read_data_file

FORMATS = pathlib.Path(__file__).parents[2] / 'docs' / 'formats.md'
READER = pathlib.Path(read_data_file.__file__)
library = flat_calls.load(sys.argv.pop(1))
list_writer = sys.argv.pop(1)
WRITERS = {
    'd': library.OutputDVB,
    'h': library.OutputShortDVB,
    'f': library.OutputFloatVB,
    's': lambda text: library.OutputSVB(text, len(text)) if text else library.OutputSVB(None, 0),
}


def written(kinds, values, version=7):
    """The bytes of the library's file of these values."""
    with tempfile.TemporaryDirectory() as directory:
        path = os.path.join(directory, 'file')
        flat_calls.check(library.OpenFileVB(path.encode(), b'wb'))
        flat_calls.check(library.SetVersionNumVB(version))
        for place, value in enumerate(values):
            flat_calls.check(WRITERS[kinds[min(place, len(kinds) - 1)]](value))
        flat_calls.check(library.FinishSaveVB())
        flat_calls.check(library.CloseFileVB())
        with open(path, 'rb') as file:
            return file.read()


def read(content, kinds):
    version, blocks = read_data_file.read_blocks(content)
    return version, read_data_file.Values(blocks).all(kinds)


def run_reader(*arguments):
    """Exit status, output and complaint of the program."""
    run = subprocess.run([sys.executable, '-B', READER, *arguments], capture_output=True, text=True)
    return run.returncode, run.stdout, run.stderr


class ReadDataFile(unittest.TestCase):
    def test_values_come_back(self):
        chance = random.Random(1)
        cases = {
            'each kind': ('dhfss', [-70000, -3, 0.25, b'spindle', b'']),
            'one value': ('d', [1]),
            'runs': ('s', [b'a' * 100000]),
            'few symbols': ('s', [bytes(chance.choices(b'ab', k=50000))]),
            'all symbols': ('d', [chance.randrange(-2**31, 2**31) for _ in range(20000)]),
            # Around the entries where codes widen or the table is full.
            **{f'{count} integers': ('d', [chance.randrange(2**31) for _ in range(count)])
               for count in (*range(60, 68), *range(188, 196), *range(444, 452), *range(956, 964))},
        }
        for name, (kinds, values) in cases.items():
            with self.subTest(name):
                self.assertEqual(read(written(kinds, values, -5), kinds), (-5, values))

    def test_blocks_follow_each_other(self):
        content = written('d', [1, 2]) + written('d', [3])[4:]
        self.assertEqual(read(content, 'd'), (7, [1, 2, 3]))

    def test_the_documented_bytes_are_those_of_the_library(self):
        lines = re.findall(r'^    ((?:[0-9a-f]{2} )+) {2,}', FORMATS.read_text(encoding='utf-8'), re.MULTILINE)
        documented = bytes.fromhex(''.join(lines))
        self.assertEqual(documented, written('ds', [-2, b'aaaa'], 100))

    def test_lists_come_back(self):
        expected = """spindle
list of 4, 3 live
0: 5
2: 7
3: 8
list of 2, 2 live
0: 0.100000001
1: -2.5
list of 2, 1 live
1: 1 2 3
list of 3, 3 live
0: 0 0.5 -1 0 0 1
1: 1 0.5 -1 0 0 1
2: 2 0.5 -1 0 0 1
list of 2, 1 live
1: -2147483647 -2147483647 -2147483647 0 0 1 1
list of 1, 1 live
0: 3 2 1 0 0 0 0 0
1 143 0 0 0 0 0 1 2 3 0 0 4 5 6 0 0 0 0 0 0 0 0 0 0 0 0.25
"""
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, 'lists')
            subprocess.run([list_writer, path], check=True)
            self.assertEqual(run_reader(path, 'sIRPNTQC'), (0, expected, ''))
            _, output, _ = run_reader(path)
            self.assertRegex(output, r'^version 5002\nblock 0: .*\nblock 1: .*\n$')

    def test_old_curves_have_three_coordinates(self):
        values = [1, 143, *map(float, range(19))]
        _, blocks = read_data_file.read_blocks(written('ddf', values))
        self.assertEqual(read_data_file.Values(blocks, 819).all('C'), [tuple(values)])
        self.assertRaises(read_data_file.Damaged, read_data_file.Values(blocks, 820).all, 'C')

    def test_complaints_are_one_line(self):
        lists = written('d', [1000, 1000, 1])  # claims 1000 slots and holds one
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, 'file')
            for content, kinds, mention in (
                    (b'', 'd', 'ends before'), (lists[:-1], 'd', 'ends in a block'), (lists, 'I', 'claims'),
                    (lists, 'N', 'claims'), (lists, 'dddd', None), (written('d', [-1]), 'N', 'claims'),
                    (written('d', [0, -1]), 'R', 'negative'), (written('d', [9]), 's', 'runs over'),
                    (lists, 'C', 'ends in a record'), (lists, 'x', 'usage')):
                with open(path, 'wb') as file:
                    file.write(content)
                status, output, complaint = run_reader(path, kinds)
                with self.subTest(mention):
                    if mention is None:
                        self.assertEqual((status, output, complaint), (0, '1000\n1000\n1\n', ''))
                    else:
                        self.assertEqual((status, output), (1, ''))
                        self.assertRegex(complaint, f'^[^\n]*{mention}[^\n]*\n$')
            status, _, complaint = run_reader(path + ' of nobody')
            self.assertRegex(complaint, r'^[^\n]*No such file[^\n]*\n$')

    def test_damaged_files_are_refused(self):
        content = written('ds', [5, b'tool holder, tool holder'])
        for length in range(len(content)):
            # Version and nothing is a file cut short; every other cut shows in a block.
            self.assertRaises(read_data_file.Damaged, read_data_file.read_blocks, content[:length])
        for place in range(4, len(content)):  # any version is a version
            changed = bytearray(content)
            changed[place] ^= 0x10
            self.assertRaises(read_data_file.Damaged, read_data_file.read_blocks, bytes(changed))


if __name__ == '__main__':
    unittest.main()
