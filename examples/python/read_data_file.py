"""Reads a compressed data file in plain Python, without the library.

    python3 read_data_file.py FILE          what the file is made of
    python3 read_data_file.py FILE KINDS    its values, one on a line

The file holds no kinds of its own. KINDS has a letter for each value: d integer, h short (the low 16 bits of an
integer), f float, s string with its length in front, c byte; the last letter repeats to the end of the file. The form of
the file is told in docs/formats.md.
"""
import struct
import sys
import zlib

CLEAR, END, FIRST_ENTRY, LAST_ENTRY = 256, 257, 258, 4095
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


class Values:
    """Takes values from blocks; each stands in one block as a whole."""

    def __init__(self, blocks):
        self.blocks, self.position = [block for block in blocks if block], 0

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

    def one(self, kind):
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


def main():
    with open(sys.argv[1], 'rb') as file:
        version, blocks = read_blocks(file.read())
    if len(sys.argv) > 2:
        for value in Values(blocks).all(sys.argv[2]):
            print(value.decode('gbk', 'replace') if isinstance(value, bytes) else value)
    else:
        print('version', version)
        for number, block in enumerate(blocks):
            print(f'block {number}: {len(block)} bytes, begins with {block[:16].hex(" ")}')


if __name__ == '__main__':
    try:
        main()
    except Damaged as reason:
        sys.exit(f'damaged: {reason}')
