"""Turns the pages of the guide into what Doxygen reads.

Doxygen finds neither headings by the names that a forge gives them, nor pictures by more than their file's name. So
each heading gets a name of its own, links lead to these names, and pictures are named by their folder too. Examples
become pages as well; a link to a file that is no page becomes its text.
"""

import html
import re
from pathlib import PurePosixPath

FENCE = re.compile(r'^( *)(```|~~~).*?^\1\2 *$', re.S | re.M)
HEADING = re.compile(r'^(#{1,6}) +(.+?) *$', re.M)
CODE_OR_LINK = re.compile(r'(?P<code>`+)(?!`)(?:(?!\n\n).)*?(?<!`)(?P=code)(?!`)|'
                          r'(?P<picture>!?)\[(?P<text>(?:`[^`]*`|[^\]`])*)\]\((?P<target>[^)\s]+)\)', re.S)
COMMENT = re.compile(r'^<!--.*?-->\n', re.S | re.M)
MARK = re.compile(r'^ *(?://!|#!|/\*!) \[/?[\w-]+\].*\n', re.M)  # of lines that documents quote
LANGUAGES = {'.h': 'cpp', '.cpp': 'cpp', '.c': 'c', '.py': 'python', '.json': 'json', '.sql': 'sql'}


def name_of(path):
    """The name of the page of a file or folder of the sources, as in "docs/AgencyPicker.md"."""
    path = PurePosixPath(path)
    stem = path.with_suffix('') if path.suffix == '.md' else path
    parts = [part for part in stem.parts if part != 'docs']
    return 'page_' + re.sub(r'\W', '_', '_'.join(parts))


def slug_of(heading):
    """The name that a forge gives a heading."""
    return re.sub(r'[^\w\- ]', '', heading.replace('`', '').lower()).replace(' ', '-')


def picture_of(path):
    """The name of a picture in the reference: "docs/pictures/LatLong/good.png" is "LatLong-good.png"."""
    return '-'.join(PurePosixPath(path).parts[-2:])


def resolved(page, target):
    """The path from the top of the sources that a page's link leads to."""
    parts = []
    for part in (*PurePosixPath(page).parent.parts, *PurePosixPath(target).parts):
        if part == '..' and parts:
            parts.pop()
        elif part != '.':
            parts.append(part)
    return '/'.join(parts)


class Page:
    def __init__(self, sources, path, text, known, classes=()):
        self.sources = sources
        self.path = path
        self.text = text
        self.known = known  # the files and folders that have pages
        self.classes = set(classes)  # those that the page may lead to, each where it is first named
        self.below_title = ''
        self.pictures = []
        self.slugs = {}

    def first_sentence(self):
        """What the page is about: the first words below its title."""
        about = re.search(r'^# .*\n\n((?:.+\n)+)', self.text)
        return re.split(r'(?<=\.)\s', about[1], 1)[0].replace('\n', ' ').strip() if about else ''

    def for_doxygen(self):
        out, end = [], 0
        for fence in FENCE.finditer(self.text):
            out += [self.prose(self.text[end:fence.start()]), fence[0]]
            end = fence.end()
        return ''.join([*out, self.prose(self.text[end:])])

    def prose(self, text):
        text = COMMENT.sub('', text)
        return CODE_OR_LINK.sub(self.link, HEADING.sub(self.heading, text))

    def heading(self, match):
        slug = slug_of(match[2])
        count = self.slugs.get(slug, -1) + 1
        self.slugs[slug] = count
        name = name_of(self.path)
        if len(match[1]) == 1:
            return f'{match[1]} {match[2]} {{#{name}}}{self.below_title}'
        name += f'-{slug}-{count}' if count else f'-{slug}'
        return f'{match[1]} {match[2]} {{#{name}}}'

    def code(self, text):
        content = text.strip('`')
        if content in self.classes:
            self.classes.remove(content)
            return f'<code>@ref tavrin::{content} "{content}"</code>'
        if r'\|' not in text:
            return text
        content = html.escape(content, False).replace('--', r'\--')  # Doxygen takes a bar in code as it stands
        return f'<code>{content}</code>'

    def link(self, match):
        picture, text, target = match['picture'], match['text'], match['target']
        if match['code']:
            return self.code(match[0])
        if re.match(r'[a-z]+:', target):
            return match[0]
        text = ' '.join(text.split())  # Doxygen ends it with the line
        named = text.replace('`', '')  # and knows no code in it
        file, _, slug = target.partition('#')
        path = resolved(self.path, file) if file else self.path
        if picture or path.endswith('.png'):
            self.pictures.append(path)
            return f'{picture}[{text}]({picture_of(path)})'
        if path.rstrip('/') not in self.known:
            return text
        name = name_of(path.rstrip('/'))
        return f'[{named}](@ref {name}-{slug})' if slug else f'[{named}](@ref {name})'


def folder_page(name, title, parts):
    """A page that leads to others, which stand below it; `parts` are their names, titles and first sentences."""
    lines = [f'- @subpage {part} "{text}"{": " if about else ""}{about}' for part, text, about in parts]
    return '\n'.join([f'# {title} {{#{name}}}\n', *lines, ''])


def example_page(folder, title, files):
    """A page with the files of an example; `files` are their names and texts."""
    out = [f'# {title} {{#{name_of(folder)}}}\n']
    for name, text in files:
        language = LANGUAGES.get(PurePosixPath(name).suffix, 'txt')
        code = MARK.sub('', text).rstrip()
        out.append(f'## {name} {{#{name_of(f"{folder}/{name}")}}}\n\n```{language}\n{code}\n```\n')
    return '\n'.join(out)
