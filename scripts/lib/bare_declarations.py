"""Names public declarations without a comment: python3 scripts/lib/bare_declarations.py HEADER...

A comment covers the lines below it up to the next blank line. A comment that stands alone, with blank lines around,
covers the next group. Constructors, destructors, assignments, names taken over by `using` and overriding operations need
none.
"""
import re
import sys

DECLARATION = re.compile(r'^\s*(?:virtual |static |TRUNNION_API |explicit |inline |constexpr )*[\w:<>,*& ]+[ *&]'
                         r'(?P<name>~?\w+|operator\S+)\s*(?:\(|=|\{)')
SILENT = re.compile(r'\bdefault;|\boverride\b|^namespace |\boperator=\(|^\s*using |^\s*(?:extern )?template|^\s*return |^\s*friend ')


def statements(path):
    """Lines with their numbers; a declaration that goes on over several lines is one."""
    start, held = 0, ''
    for number, line in enumerate(open(path, encoding='utf-8'), 1):
        line = line.rstrip()
        if held:
            held += ' ' + line.strip()
        else:
            start, held = number, line
        if held.count('(') <= held.count(')') or line.strip().startswith('//'):
            yield start, held
            held = ''


def bare_declarations(path):
    """Line numbers and texts of declarations that no comment covers."""
    covered = alone = hidden = False
    class_name = None
    for number, line in statements(path):
        text = line.strip()
        if not text:
            covered, alone = alone and covered, False
            continue
        if text.startswith('//'):
            covered = alone = True
            continue
        alone = False
        name = re.match(r'(?:class|struct) (?:TRUNNION_API )?(\w+)', text)
        class_name = name.group(1) if name else class_name
        if text in ('private:', 'protected:') or text.startswith('namespace trunnion::detail'):
            hidden = True
        if text == 'public:' or line == '};' or text == '} // namespace trunnion::detail':
            hidden = False
        match = DECLARATION.match(line)
        starts = len(line) - len(line.lstrip()) in (0, 4)
        if (match and starts and not hidden and not covered and '//' not in text and not SILENT.search(text)
                and class_name not in (match['name'], match['name'].strip('~'))):
            yield number, text


def main(paths):
    found = [f'{path}:{number}: {text}' for path in paths for number, text in bare_declarations(path)]
    print('\n'.join(found), end='\n' if found else '')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1:]))
