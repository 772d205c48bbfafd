"""How the pages of the guide become what Doxygen reads."""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / 'packaging/reference'))
import pages  # noqa: E402

KNOWN = {'docs/a.md', 'docs/b-c.md', 'data/README.md', 'examples/host', 'examples/host/main.cpp'}


def page(text):
    return pages.Page(None, 'docs/a.md', text, KNOWN)


def shown(text):
    return page(text).for_doxygen()


class PageTest(unittest.TestCase):
    def test_headingsBearTheNamesThatAForgeGivesThem(self):
        self.assertEqual(shown('# A\n\n## The `x.y`, and Z\n'),
                         '# A {#page_a}\n\n## The `x.y`, and Z {#page_a-the-xy-and-z}\n')

    def test_aHeadingThatStandsTwiceHasANumber(self):
        self.assertIn('{#page_a-same-1}', shown('# A\n\n## Same\n\n## Same\n'))

    def test_linksLeadToPagesAndToPlacesInThem(self):
        self.assertEqual(shown('[x](b-c.md)'), '[x](@ref page_b_c)')
        self.assertEqual(shown('[x](b-c.md#for-the-host)'), '[x](@ref page_b_c-for-the-host)')
        self.assertEqual(shown('[x](#here)'), '[x](@ref page_a-here)')
        self.assertEqual(shown('[x](../data/README.md)'), '[x](@ref page_data_README)')

    def test_linksLeadToExamplesAndToTheirFiles(self):
        self.assertEqual(shown('[x](../examples/host/)'), '[x](@ref page_examples_host)')
        self.assertEqual(shown('[x](../examples/host/main.cpp)'), '[x](@ref page_examples_host_main_cpp)')

    def test_aLinkToWhatHasNoPageIsItsText(self):
        self.assertEqual(shown('see [the `x`](../CMakeLists.txt).'), 'see the `x`.')

    def test_aLinkToTheNetStays(self):
        self.assertEqual(shown('[x](https://example.org/a)'), '[x](https://example.org/a)')

    def test_aLinkWhoseTextGoesOverTheLineStandsOnOne(self):
        self.assertEqual(shown('[what\nelse](b-c.md)'), '[what else](@ref page_b_c)')

    def test_aLinkBearsNoMarkOfCode(self):
        self.assertEqual(shown('[the `x`](b-c.md)'), '[the x](@ref page_b_c)')

    def test_picturesAreNamedByTheirFolderToo(self):
        one = page('![a](pictures/LatLong/good.png) ![b](pictures/CoverImage/good.png)')
        self.assertEqual(one.for_doxygen(), '![a](LatLong-good.png) ![b](CoverImage-good.png)')
        self.assertEqual(one.pictures, ['docs/pictures/LatLong/good.png', 'docs/pictures/CoverImage/good.png'])

    def test_codeStaysAsItIs(self):
        for code in ('```cpp\n# no [x](b-c.md)\n```\n', '`[](qint32 no)(x)` is `[x](b-c.md)`'):
            self.assertEqual(shown(code), code)

    def test_aBarInCodeOfATableIsABar(self):
        self.assertEqual(shown(r'| `--to a\|<b>` |'), r'| <code>\--to a\|&lt;b&gt;</code> |')

    def test_whatOnlyTheToolsOfTheSourcesReadIsLeftOut(self):
        self.assertEqual(shown('<!-- quote: a b -->\n```cpp\nx;\n```\n'), '```cpp\nx;\n```\n')
        self.assertIn('\na;\nb;\n```', pages.example_page('examples/host', 'T', [('a.cpp', 'a;\n//! [x]\nb;\n')]))

    def test_aClassIsALinkWhereItIsFirstNamed(self):
        one = pages.Page(None, 'docs/a.md', '`Host` and `Host`, `Other`', KNOWN, {'Host'})
        self.assertEqual(one.for_doxygen(), '<code>@ref tavrin::Host "Host"</code> and `Host`, `Other`')

    def test_theFirstSentenceIsWhatAPageIsAbout(self):
        self.assertEqual(page('# A\n\nOne thing,\nand its end. More.\n').first_sentence(), 'One thing, and its end.')


if __name__ == '__main__':
    unittest.main()
