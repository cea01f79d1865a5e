"""Calls the library from Python through its flat functions, which need no C++.

    python3 flat_calls.py LIBRARY DIRECTORY

Writes a data file into a new directory, reads it back, lists the directories and removes them. DIRECTORY is a drive
path, such as C:\\tmp\\trunnion; on a system without drives, C: is the root of all directories.
"""
import ctypes
import sys

TEXT_SIZE = 16


def load(path):
    """The library with the arguments of its flat functions declared; every one returns 1 for success."""
    library = ctypes.CDLL(path)
    text, integer = ctypes.c_char_p, ctypes.c_int
    arguments = {
        'OpenFileVB': [text, text],
        'SetVersionNumVB': [integer],
        'GetVersionNumVB': [ctypes.POINTER(integer)],
        'OutputDVB': [integer],
        'InputDVB': [ctypes.POINTER(integer)],
        'OutputShortDVB': [ctypes.c_short],
        'InputShortDVB': [ctypes.POINTER(ctypes.c_short)],
        'OutputFloatVB': [ctypes.c_float],
        'InputFloatVB': [ctypes.POINTER(ctypes.c_float)],
        'OutputSVB': [text, integer],
        'InputSVB': [text, integer],
        'FinishSaveVB': [],
        'CloseFileVB': [],
        'slFindSubFoldersVB': [text, text, integer],
        'slCreateDirRecursivelyVB': [text],
        'slRemoveDirRecursivelyVB': [text],
    }
    for name, types in arguments.items():
        getattr(library, name).argtypes = types
    return library


def check(result):
    if result != 1:
        raise OSError('the library reports a failure')


def write_file(library, path):
    check(library.OpenFileVB(path, b'wb'))  # makes the directories of the path, too
    check(library.SetVersionNumVB(100))
    check(library.OutputDVB(-70000))
    check(library.OutputShortDVB(-3))
    check(library.OutputFloatVB(0.25))
    check(library.OutputSVB(b'spindle', -1))
    check(library.FinishSaveVB())
    check(library.CloseFileVB())


def read_value(function, kind):
    value = kind()
    check(function(ctypes.byref(value)))
    return value.value


def read_text(library):
    """A text comes filled up with blanks to the size of the buffer, and without a terminator."""
    buffer = ctypes.create_string_buffer(TEXT_SIZE)
    check(library.InputSVB(buffer, TEXT_SIZE))
    return buffer.raw.decode().rstrip()


def read_file(library, path):
    check(library.OpenFileVB(path, b'rb'))
    values = [
        read_value(library.GetVersionNumVB, ctypes.c_int),
        read_value(library.InputDVB, ctypes.c_int),
        read_value(library.InputShortDVB, ctypes.c_short),
        read_value(library.InputFloatVB, ctypes.c_float),
        read_text(library),
    ]
    check(library.CloseFileVB())
    return values


def sub_folders(library, directory):
    buffer = ctypes.create_string_buffer(260)
    check(library.slFindSubFoldersVB(directory, buffer, len(buffer)))
    return sorted(name for name in buffer.raw.decode().rstrip().split(';') if name)


def main():
    library = load(sys.argv[1])
    top = sys.argv[2].encode() + b'\\flat_calls'
    path = top + b'\\data\\values.dat'
    write_file(library, path)
    version, integer, short, real, text = read_file(library, path)
    print(f'version {version}: {integer}, {short}, {real}, "{text}"')
    check(library.slCreateDirRecursivelyVB(top + b'\\more'))
    print('folders:', ' '.join(sub_folders(library, top)))
    check(library.slRemoveDirRecursivelyVB(top))
    print('after removal it', 'opens' if library.OpenFileVB(path, b'rb') else 'does not open')


if __name__ == '__main__':
    main()
