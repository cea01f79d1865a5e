"""Holds what a library exports against what its headers mark with TRUNNION_API: all of it, and nothing else.

    exports.py HEADER_ROOT NM [NM_OPTION...] LIBRARY

LIBRARY is a shared library (its dynamic symbols, NM_OPTION -D) or the import library of a DLL.
"""

import pathlib
import re
import subprocess
import sys


# Names that some linkers give to the ends of sections in every shared library.
LINKER_NAMES = {'__bss_start', '_edata', '_end', '_init', '_fini'}


def marked_names(root):
    """Names of the marked classes and functions, and of the functions that Basic programs call."""
    marked, basic = set(), set()
    for header in pathlib.Path(root).rglob('*.h'):
        if header.name == 'export.h':
            continue
        text = re.sub(r'//.*', '', header.read_text(encoding='utf-8'))
        marked.update(re.findall(r'\b(?:class|struct) TRUNNION_API (\w+)', text))
        marked.update(re.findall(r'\bTRUNNION_API [^;({]*?(operator[^\s(]+|\w+)\(', text))
        basic.update(re.findall(r'\bTRUNNION_BASIC_CALL\s+(\w+)\(', text))
    return marked, basic


def exported_names(nm, library):
    """The exported names as the linker knows them. An import library has each behind "__imp_"."""
    lines = subprocess.run([*nm, '--defined-only', library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    names = {line.split()[-1] for line in lines if len(line.split()) > 1} - LINKER_NAMES
    imported = {name.removeprefix('__imp_') for name in names if name.startswith('__imp_')}
    return imported or names


def owner(name):
    """The class or function that an exported name belongs to, without namespaces and template arguments."""
    name = re.sub(r'^(vtable|typeinfo|typeinfo name) for |^\w+ (?=trunnion::)', '', name) # or a result's type
    found = re.match(r'(?:trunnion::)?(?:detail::)?(operator[^\s(]+|\w+)', name)
    return found.group(1) if found else name


def main(root, *nm_and_library):
    *nm, library = nm_and_library
    marked, basic = marked_names(root)
    names = exported_names(nm, library)
    plain = subprocess.run(['c++filt'], input='\n'.join(sorted(names)), check=True, capture_output=True,
                           text=True).stdout.splitlines()
    # Every shared library carries the instantiations of the standard library that it uses.
    own = [name for name in plain if not re.match(r'[\w ]*\b(std|__gnu_cxx)::', name)]
    arguments = {word for name in own for word in re.findall(r'<trunnion::detail::(\w+)>', name)}
    exported = {owner(name) for name in own} | arguments
    wrong = {
        'marked but not exported': marked - exported,
        'exported but not marked': {name for name in own if owner(name) not in marked},
        'not exported under its plain name': basic - names,
    }
    for what, found in wrong.items():
        for name in sorted(found):
            print(f'{what}: {name}')
    if not basic or any(wrong.values()):
        sys.exit(1)
    print(f'{len(names)} names of {len(marked)} functions and classes')


if __name__ == '__main__':
    main(*sys.argv[1:])
