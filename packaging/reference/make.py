#!/usr/bin/env -S python3 -X utf8
"""make.py SOURCES BUILD DOXYGEN: the reference from the installed headers and the pages of docs/, in BUILD/html.

What Doxygen reads lies in BUILD/reference, by BUILD/reference/Doxyfile; its warnings are in warnings.txt there.
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

import headers
import pages

EXAMPLES = {
    'examples/first': 'A first program',
    'examples/host': 'A host of your own',
    'examples/testing': 'Tests of a form and of a host',
    'examples/c': 'A control in a program in C',
    'examples/python': 'A control in a program in Python',
}
FIRST_PAGES = [f'docs/{name}.md' for name in
               ('README', 'host-guide', 'reference-host', 'component', 'designer', 'pickers')]


def components(sources):
    """The component of each public header, by the header's name."""
    lines = (sources / 'src/public_headers.txt').read_text().splitlines()
    return {Path(header).name: component for component, header in
            (line.split() for line in lines if line and not line.startswith('#'))}


def write_headers(sources, build, to):
    installed = build / 'include/TVBoundControls'
    to.mkdir(parents=True)
    for name, component in components(sources).items():
        if name == 'Export.h':
            continue  # macros only, which no program names
        page = sources / 'docs' / f'{Path(name).stem}.md'
        reference = pages.name_of(f'docs/{page.name}') if page.exists() else None
        text = (installed / name).read_text()
        staged = headers.c_for_doxygen(text) if name == 'TVBoundControls.h' else \
            headers.for_doxygen(text, name, component, reference)
        (to / name).write_text(staged)


def classes_of(folder):
    """The classes of the headers, but for those whose name a property bears too: pages mean that."""
    text = '\n'.join(header.read_text() for header in folder.iterdir())
    names = set(re.findall(r'^(?:class|struct) (\w+)', text, re.M))
    return {name for name in names if not re.search(rf'\b{name}\(\)', text) and not name.startswith('Tv')}


def examples_of(folder):
    return [file for file in sorted(folder.iterdir()) if file.is_file() and not file.name.startswith('.')]


def place(path):
    """Where a page stands: what a developer reads first, then what tells of more."""
    return FIRST_PAGES.index(path) if path in FIRST_PAGES else len(FIRST_PAGES), path


def write_page(page, to, controls):
    """Writes a page, and the pictures that it names."""
    stem = Path(page.path).stem
    if stem in controls:
        page.below_title = f'\n\nClass tavrin::{stem}, header TVBoundControls/{stem}.h.'
    file = to / f'{pages.name_of(page.path)}.md'
    file.write_text(page.for_doxygen())
    for picture in page.pictures:
        shutil.copyfile(page.sources / picture, to.parent / 'pictures' / pages.picture_of(picture))
    return file


def write_folder(to, name, title, parts):
    file = to / f'{name}.md'
    file.write_text(pages.folder_page(name, title, parts))
    return file


def write_examples(sources, to):
    unnamed = {f'examples/{folder.name}' for folder in (sources / 'examples').iterdir()} - EXAMPLES.keys()
    if unnamed:
        sys.exit(f'No title in {__file__}: {", ".join(sorted(unnamed))}')
    out, parts = [], []
    for folder, title in EXAMPLES.items():
        texts = [(file.name, file.read_text()) for file in examples_of(sources / folder)]
        out.append(to / f'{pages.name_of(folder)}.md')
        out[-1].write_text(pages.example_page(folder, title, texts))
        parts.append((pages.name_of(folder), title, ''))
    return [write_folder(to, 'page_examples', 'Examples', parts), *out]


def write_pages(sources, to):
    """Writes the pages; returns their files in the order in which the tree shows them."""
    files = [*(sources / 'docs').glob('*.md'), sources / 'data/README.md']
    paths = sorted((str(file.relative_to(sources)) for file in files), key=place)
    known = set(paths)
    for folder in EXAMPLES:
        known |= {folder, *(f'{folder}/{file.name}' for file in examples_of(sources / folder))}
    controls = {Path(header).stem for header in components(sources)}
    classes = classes_of(to.parent / 'headers/TVBoundControls')
    read = [pages.Page(sources, path, (sources / path).read_text(), known, classes - {Path(path).stem})
            for path in paths]
    first = [page for page in read if page.path in FIRST_PAGES]
    of_controls = [page for page in read if Path(page.path).stem in controls]
    others = [page for page in read if page not in first and page not in of_controls]
    parts = [(pages.name_of(page.path), Path(page.path).stem, page.first_sentence()) for page in of_controls]

    def write(some):
        return [write_page(page, to, controls) for page in some]

    return [*write(first), write_folder(to, 'page_controls', 'The controls', parts), *write(of_controls),
            *write_examples(sources, to), *write(others)]


def run_doxygen(folder, doxygen, inputs):
    settings = [(folder / 'Doxyfile').read_text()]
    settings += [f'INPUT += {path.relative_to(folder)}' for path in inputs]
    settings += [f'USE_MDFILE_AS_MAINPAGE = {inputs[0].relative_to(folder)}']
    done = subprocess.run([doxygen, '-'], input='\n'.join(settings), text=True, cwd=folder, check=False,
                          stdout=subprocess.DEVNULL)
    print((folder / 'warnings.txt').read_text(), end='', file=sys.stderr)
    return done.returncode


def main():
    sources, build, doxygen = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
    folder = build / 'reference'
    for name in ('headers', 'pages', 'pictures', 'html'):
        shutil.rmtree(folder / name, ignore_errors=True)
    write_headers(sources, build, folder / 'headers/TVBoundControls')
    for name in ('pages', 'pictures'):
        (folder / name).mkdir()
    inputs = write_pages(sources, folder / 'pages')
    shutil.copyfile(sources / 'packaging/reference/namespaces.dox', folder / 'pages/namespaces.dox')
    failed = run_doxygen(folder, doxygen, [*inputs, folder / 'pages/namespaces.dox', folder / 'headers'])
    if failed:
        return failed
    for leftover in (folder / 'html').glob('*.md5'):
        leftover.unlink()
    shutil.rmtree(build / 'html', ignore_errors=True)
    (folder / 'html').rename(build / 'html')
    return 0


if __name__ == '__main__':
    sys.exit(main())
