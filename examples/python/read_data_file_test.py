"""Holds read_data_file.py and docs/formats.md against files of the library: python3 read_data_file_test.py LIBRARY"""
import os
import pathlib
import random
import re
import sys
import tempfile
import unittest

import flat_calls
import read_data_file

FORMATS = pathlib.Path(__file__).parents[2] / 'docs' / 'formats.md'
library = flat_calls.load(sys.argv.pop(1))
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
