"""Reads a compressed data file in plain Python, without the library.

    python3 read_data_file.py FILE          what the file is made of
    python3 read_data_file.py FILE KINDS    its values, one on a line

The file holds no kinds of its own. KINDS has a letter for each value: d integer, h short (the low 16 bits of an
integer), f float, s string with its length in front, c byte, C curve; and for each list: I integers, R floats, P points,
N nodes, T triangles, Q quads. The last letter repeats to the end of the file. Of a list the counts are printed, then a
line for each slot that is live. A mesh of nodes and triangles is read with NT. The form of the file is told in
docs/formats.md.
"""
import struct
import sys
import zlib

CLEAR, END, FIRST_ENTRY, LAST_ENTRY = 256, 257, 258, 4095
DELETED_INT, DELETED_REAL = -2147483647, struct.unpack('<f', bytes.fromhex('6b0b5edd'))[0]
LIVE_TAG = 31
# Letter: what a slot holds. Items have a tag in front, slots of plain lists do not.
SLOTS = {'I': struct.Struct('<i'), 'R': struct.Struct('<f'), 'P': struct.Struct('<3f')}
ITEMS = {'N': struct.Struct('<b6f'), 'T': struct.Struct('<b3i3fb'), 'Q': struct.Struct('<b4i3fb')}
CURVE, OLD_CURVE = struct.Struct('<2i25f'), struct.Struct('<2i19f')
FIRST_CURVE_VERSION = 820  # the first whose curves have five coordinates in a point
SYMBOLS = [bytes([value]) for value in range(256)] + [b'', b'']


class Damaged(Exception):
    """The bytes are no such file."""


class Codes:
    """The codes of a block, packed from the least significant bit upward."""

    def __init__(self, packed):
        self.packed, self.position, self.held, self.bits = packed, 0, 0, 0

    def take(self, width):
        while self.bits < width:
            if self.position == len(self.packed):
                raise Damaged('the codes end early')
            self.held |= self.packed[self.position] << self.bits
            self.position += 1
            self.bits += 8
        code = self.held & ((1 << width) - 1)
        self.held >>= width
        self.bits -= width
        return code

    def finish(self):
        if self.position != len(self.packed) or self.held != 0:
            raise Damaged('there is something behind the end code')


def strings(codes):
    """The strings of the codes, one behind the other."""
    if codes.take(9) != CLEAR:
        raise Damaged('a block begins with a clear code')
    entries, width, previous = list(SYMBOLS), 9, b''
    while (code := codes.take(width)) != END:
        if code == CLEAR:
            entries, width, previous = list(SYMBOLS), 9, b''
            continue
        if code < len(entries):
            string = entries[code]
        elif code == len(entries) and previous:
            string = previous + previous[:1]  # the very entry that this code makes
        else:
            raise Damaged('a code without an entry')
        if previous:
            if len(entries) > LAST_ENTRY:
                raise Damaged('more entries than codes')
            entries.append(previous + string[:1])
            width += len(entries) in (512, 1024, 2048)
        previous = string
        yield string
    codes.finish()


def decode_block(block):
    """The bytes that a block stands for."""
    if len(block) < 12:
        raise Damaged('a block ends in its head')
    decoded_length, packed_length, checksum = struct.unpack_from('<III', block)
    if packed_length != len(block):
        raise Damaged('a block is not as long as it says')
    decoded = bytearray()
    for string in strings(Codes(block[12:])):
        decoded += string
        if len(decoded) > decoded_length:
            raise Damaged('a block holds more than it says')
    if len(decoded) != decoded_length or zlib.crc32(decoded) != checksum:
        raise Damaged('a block holds something else than it says')
    return bytes(decoded)


def read_blocks(content):
    """The version number of a file and its blocks, decoded."""
    if len(content) < 8:
        raise Damaged('the file ends before its first block')
    version, = struct.unpack_from('<i', content)
    blocks, position = [], 4
    while position < len(content):
        if position + 4 > len(content):
            raise Damaged('the file ends in a length')
        length, = struct.unpack_from('<i', content, position)
        position += 4
        if not 0 <= length <= len(content) - position:
            raise Damaged('the file ends in a block')
        blocks.append(decode_block(content[position:position + length]))
        position += length
    return version, blocks


def printed(numbers):
    return ' '.join(str(number) if isinstance(number, int) else f'{number:.9g}' for number in numbers)


class List:
    """The slots of a list: how many there are and, by number, what is in those that are live."""

    def __init__(self, bound, live):
        self.bound, self.live = bound, live

    def __str__(self):
        lines = [f'list of {self.bound}, {len(self.live)} live']
        lines += [f'{slot}: ' + printed(held) for slot, held in self.live.items()]
        return '\n'.join(lines)


class Values:
    """Takes values from blocks; each stands in one block as a whole."""

    def __init__(self, blocks, version=FIRST_CURVE_VERSION):
        self.blocks, self.position = [block for block in blocks if block], 0
        self.curve = CURVE if version >= FIRST_CURVE_VERSION else OLD_CURVE

    def left(self):
        return sum(map(len, self.blocks)) - self.position

    def is_at_end(self):
        return not self.blocks

    def bytes(self, size):
        if size == 0:
            return b''
        if not self.blocks or size > len(self.blocks[0]) - self.position:
            raise Damaged('a value runs over the end of its block')
        taken = self.blocks[0][self.position:self.position + size]
        self.position += size
        if self.position == len(self.blocks[0]):
            del self.blocks[0]
            self.position = 0
        return taken

    def record(self, form):
        """The values of a record, which may begin in one block and end in another."""
        taken = b''
        while len(taken) < form.size:
            if not self.blocks:
                raise Damaged('the file ends in a record')
            taken += self.bytes(min(form.size - len(taken), len(self.blocks[0]) - self.position))
        return form.unpack(taken)

    def count(self, size):
        """The number of slots of a list, which the rest of the file can hold."""
        bound = self.one('d')
        if not 0 <= bound <= self.left() // size:
            raise Damaged('a list claims more slots than the file can hold')
        return bound

    def slots(self, form):
        bound = self.count(form.size)
        if self.one('d') < 0:
            raise Damaged('a list has a negative number of live slots')
        marker = DELETED_REAL if 'f' in form.format else DELETED_INT
        held = form.iter_unpack(self.bytes(bound * form.size))
        return List(bound, {slot: members for slot, members in enumerate(held) if members[0] != marker})

    def items(self, form):
        bound = self.count(form.size)
        held = [self.record(form) for _ in range(bound)]
        return List(bound, {slot: item[1:] for slot, item in enumerate(held) if item[0] == LIVE_TAG})

    def one(self, kind):
        if kind in SLOTS:
            return self.slots(SLOTS[kind])
        if kind in ITEMS:
            return self.items(ITEMS[kind])
        if kind == 'C':
            return self.record(self.curve)
        if kind == 'c':
            return self.bytes(1)[0]
        if kind == 's':
            length = self.one('d')
            if length < 0:
                raise Damaged('a string of negative length')
            return self.bytes(length)
        if kind == 'h':
            return struct.unpack('<h', self.bytes(4)[:2])[0]
        return struct.unpack('<f' if kind == 'f' else '<i', self.bytes(4))[0]

    def all(self, kinds):
        """Every value, by the kinds; the last one repeats."""
        taken = []
        while not self.is_at_end():
            taken.append(self.one(kinds[min(len(taken), len(kinds) - 1)]))
        return taken


def text(value):
    if isinstance(value, bytes):
        return value.decode('gbk', 'replace')
    return printed(value) if isinstance(value, tuple) else str(value)


def main():
    path, kinds = (sys.argv[1:] + [''])[:2]
    with open(path, 'rb') as file:
        version, blocks = read_blocks(file.read())
    if kinds:
        for value in Values(blocks, version).all(kinds):
            print(text(value))
    else:
        print('version', version)
        for number, block in enumerate(blocks):
            print(f'block {number}: {len(block)} bytes, begins with {block[:16].hex(" ")}')


if __name__ == '__main__':
    if len(sys.argv) not in (2, 3) or not set(sys.argv[2:3] and sys.argv[2]) <= set('dhfscC').union(SLOTS, ITEMS):
        sys.exit('usage: read_data_file.py FILE [KINDS], with KINDS of the letters dhfscCIRPNTQ')
    try:
        main()
    except Damaged as reason:
        sys.exit(f'damaged: {reason}')
    except OSError as error:
        sys.exit(f'{error.filename}: {error.strerror}')
