"""Turns a public header into what Doxygen reads.

One comment of the headers documents all declarations up to the next blank line: a getter and its setter, a colour and
another. Here each of them gets it. What tells a reader nothing is left out: private parts, macros, what is deleted or
copied, Qt's own functions, and properties, whose getters and setters stand there already. The contract that a control
implements in private becomes the functions that a host calls.
"""

import re

SCOPE = re.compile(r'(template\s*<.*>\s*)?(class|struct|namespace)\b[^;]*{$', re.S)
ACCESS = re.compile(r'(public|protected|private|Q_SIGNALS):$')
CONTRACT = re.compile(r'virtual |\b(?:TavrinControl|BoundControl|BoundSection)_(?=[A-Z])| (?:override|final)\b')
QT_FUNCTION = re.compile(r'\b(\w*[eE]vent|eventFilter|sizeHint|minimumSizeHint|focusNextPrevChild|what)\(')
MACRO_LINE = re.compile(r'Q_(OBJECT|CLASSINFO|PROPERTY|DECLARE_METATYPE)\b')
MARKS = re.compile(r'\b(TAVRIN_EXPORT|Q_INVOKABLE) |\[\[nodiscard\]\] ')


class Declaration:
    def __init__(self, text, comment, follows, aside, access):
        self.text = text
        self.comment = comment  # its own, or the one that it shares
        self.follows = follows  # the name of the first declaration under the same comment
        self.aside = aside  # stands under a comment for the developers of the library
        self.access = access

    def is_left_out(self):
        own = self.comment and not self.follows
        text = ' '.join(without_texts(self.text).split())
        if self.access == 'private':
            return not (own and re.search(r'\b(TavrinControl|BoundControl|BoundSection)_\w+\(', text))
        if MACRO_LINE.match(text) or 'Q_DECL_HIDDEN' in text or text == 'std::unique_ptr<Private> d;':
            return True
        if re.match(r'(class|struct|friend (class|struct)) [\w:]+;$', text) or re.match(r'using \w+::\w+;$', text):
            return True
        if own:
            return False
        is_override = bool(re.search(r'\b(override|final)\b', text))
        if self.aside or is_override and (self.access == 'protected' or QT_FUNCTION.search(text)):
            return True
        return is_special(text)

    def lines(self):
        text = MARKS.sub('', self.text)
        comment = self.comment
        if self.access == 'private':
            text = CONTRACT.sub('', text)
        elif self.follows and re.search(r'\b(override|final)\b', text) and f' Set{self.follows}(' not in text:
            comment = []  # the base's, which says more than that of a function above that is not its getter
        return [*comment, *text.split('\n'), '']


def is_special(text):
    """What every class has: destructor, copying, moving, a constructor without arguments, operators."""
    constructor = re.match(r'(?:explicit |constexpr )*(\w+)\((.*?)\)', text)
    if text.startswith('virtual ~') or text.startswith('~') or '= delete' in text or re.search(r'\boperator\W', text):
        return True
    return bool(constructor) and re.fullmatch(rf'|(const )?{constructor[1]}&&?( other)?', constructor[2]) is not None


def name_of(text):
    return re.search(r'(\w+)\W*?(?:[({=;]|$)', text)[1]


def without_texts(line):
    return re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])*\'|//[^\n]*', '', line)


def is_complete(text):
    code = '\n'.join(without_texts(line) for line in text.split('\n')).strip()
    depth = sum(code.count(c) for c in '({[') - sum(code.count(c) for c in ')}]')
    return depth == 0 and (code.endswith((';', '}')) or bool(MACRO_LINE.match(code)))


class Scope:
    def __init__(self, access, hidden=False):
        self.access = access
        self.hidden = hidden


class Header:
    """Reads a header line by line. A blank line ends the run that shares a comment."""

    def __init__(self):
        self.out = []
        self.about = []  # what the file says of itself
        self.scopes = [Scope('public')]
        self.end_run()

    def end_run(self):
        self.comment, self.follows, self.aside, self.in_comment = [], '', False, False

    def read(self, text):
        gathered = ''
        for line in map(str.rstrip, text.split('\n')):
            if not gathered and self.takes_line(line.strip(), line):
                continue
            gathered += '\n' + line if gathered else line
            if SCOPE.match(without_texts(gathered).strip()):
                self.open_scope(gathered)
                gathered = ''
            elif is_complete(gathered):
                self.add(gathered)
                gathered = ''
        return self.about, self.out

    def takes_line(self, bare, line):
        """Deals with a line that no declaration is made of."""
        if bare.startswith('//'):
            self.add_comment(bare, line)
            return True
        if not bare and self.in_comment and self.aside and len(self.scopes) == 1:
            self.about = self.comment
        if bare.startswith('#include <TVBoundControls/') or bare.startswith('#include "'):
            self.out.append(bare)
        is_access = ACCESS.fullmatch(bare)
        if is_access:
            self.scopes[-1].access = bare[:-1]
            if not self.scopes[-1].hidden:
                self.out.append(line.replace('private:', 'public:'))
        is_end = bare.startswith('}')
        if is_end and not self.scopes.pop().hidden:
            self.out += [line, '']
        if is_access or is_end or not bare or bare.startswith('#'):
            self.end_run()
            return True
        return False

    def add_comment(self, bare, line):
        if not self.in_comment:
            self.end_run()
            self.in_comment = True
            self.aside = not bare.startswith('///')
        self.comment.append(line)

    def open_scope(self, text):
        name = ' '.join(text.split())
        if name == 'namespace tavrin {' and self.comment:
            self.about, self.comment = self.comment, []
        hidden = self.scopes[-1].hidden or self.scopes[-1].access == 'private'
        if not hidden:
            self.out += [*([] if self.aside else self.comment), *MARKS.sub('', text).split('\n')]
        self.scopes.append(Scope('private' if re.match(r'(template.*> )?class ', name) else 'public', hidden))
        self.end_run()

    def add(self, text):
        has_own = self.follows and '///<' in text
        comment = [] if self.aside or has_own else self.comment
        declaration = Declaration(text, comment, self.follows, self.aside, self.scopes[-1].access)
        if not self.scopes[-1].hidden and not declaration.is_left_out():
            self.out += declaration.lines()
        self.follows, self.in_comment = self.follows or name_of(text), False


def with_code(text, mark):
    """Marks the examples in comments, which are indented, as code of their language. `mark` begins each line."""
    def marked(match):
        lines = match[0].split('\n')[:-1]
        language = 'json' if lines[0].lstrip(' /*')[:1] in '{[' else 'cpp'
        start = lines[0][:lines[0].index(mark) + len(mark)]
        code = [start + line[len(start) + 4:] if len(line) > len(start) else line for line in lines]
        return '\n'.join([f'{start} @code{{.{language}}}', *code, f'{start} @endcode', ''])

    empty = rf'^ *{re.escape(mark)}'
    code = rf'{empty} {{5}}'
    return re.sub(rf'(?:{code}.*\n(?:{empty}\n(?={code}))*)+', marked, text, flags=re.M)


def for_doxygen(text, name, component, page=None):
    """The header as Doxygen reads it. `page` names the page of the guide about the class of the header's name."""
    about, lines = Header().read(text)
    about = [re.sub(r'^\s*///? ?', '', line) for line in about]
    head = ['/**', f' * @file {name}', ' *', *[f' * {line}'.rstrip() for line in about],
            ' *', f' * Of the component `{component}`.', ' */']
    text = '\n'.join([*head, *lines])
    if page:
        stem = name.removesuffix('.h')
        link = f'///\n/// The page @ref {page} "{stem}" shows it, and tells all of it.\n'
        text = re.sub(rf'^class {stem}\b[^;]*?$', lambda match: link + match[0], text, count=1, flags=re.M)
    return with_code(text + '\n', '///')


def c_for_doxygen(text):
    """The header in C bears Doxygen's comments itself; only its own macros are no reader's concern."""
    flags = re.S | re.M
    text = re.sub(r'^#if defined\(_WIN32\)\n#define TV_EXPORT.*?#endif\n', '', text, flags=flags)
    text = re.sub(r'^#ifndef TVBOUNDCONTROLS_H\n#define TVBOUNDCONTROLS_H\n(.*)^#endif\n$', r'\1', text, flags=flags)
    return with_code(text.replace('TV_EXPORT ', ''), ' *')
