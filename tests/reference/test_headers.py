"""How headers become what Doxygen reads."""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / 'packaging/reference'))
import headers  # noqa: E402


def shown(body, access='public'):
    """The lines that Doxygen gets of a class with this body."""
    lines = [f'    {line}' if line else '' for line in body.split('\n')]
    text = '\n'.join(['namespace tavrin {', '', '/// A class.', 'class TAVRIN_EXPORT Some : public Base', '{',
                      f'{access}:', *lines, '};', '', '} // namespace tavrin', ''])
    out = headers.Header().read(text)[1]
    body = out[out.index(f'{access}:'.replace('private', 'public')) + 1:]
    return [line.strip() for line in body if line.strip()][:-2]


class HeaderTest(unittest.TestCase):
    def test_getterAndSetterShareTheCommentAboveThem(self):
        self.assertEqual(shown('/// A colour.\nColor Back() const;\nvoid SetBack(Color color);'),
                         ['/// A colour.', 'Color Back() const;', '/// A colour.', 'void SetBack(Color color);'])

    def test_aBlankLineEndsTheRunThatSharesAComment(self):
        self.assertEqual(shown('/// A colour.\nColor Back() const;\n\nint Other() const;'),
                         ['/// A colour.', 'Color Back() const;', 'int Other() const;'])

    def test_aCommentBehindADeclarationIsItsOwn(self):
        self.assertEqual(shown('/// First.\nint a;\nint b; ///< second'),
                         ['/// First.', 'int a;', 'int b; ///< second'])

    def test_anOverrideInsideARunKeepsTheTextOfItsBase(self):
        self.assertEqual(shown('/// Raises.\nvoid Remove() override;\nint Count() const override;'),
                         ['/// Raises.', 'void Remove() override;', 'int Count() const override;'])

    def test_theSetterOfAnOverriddenGetterSharesItsComment(self):
        self.assertEqual(shown('/// Own state.\nbool Enabled() const override;\nvoid SetEnabled(bool on) override;'),
                         ['/// Own state.', 'bool Enabled() const override;',
                          '/// Own state.', 'void SetEnabled(bool on) override;'])

    def test_aFunctionOverSeveralLinesIsOneDeclaration(self):
        self.assertEqual(shown('/// Makes.\nint make(int a,\n         int b)\n{\n    return a;\n}\nint other();'),
                         ['/// Makes.', 'int make(int a,', 'int b)', '{', 'return a;', '}', '/// Makes.',
                          'int other();'])

    def test_macrosAndMarksAreLeftOut(self):
        self.assertEqual(shown('Q_OBJECT\nQ_PROPERTY(int A READ A)\n\n/// Does.\nQ_INVOKABLE void Do();'),
                         ['/// Does.', 'void Do();'])

    def test_whatEveryClassHasIsLeftOutUnlessAnybodySaysAnythingOfIt(self):
        self.assertEqual(shown('Some();\nSome(const Some&) = delete;\nSome& operator=(const Some& other);\n'
                               '~Some() override;\nbool operator==(const Some&) const;'), [])
        self.assertEqual(shown('/// Black.\nSome() = default;'), ['/// Black.', 'Some() = default;'])

    def test_aCommentForTheLibrarysDevelopersLeavesItsRunOut(self):
        self.assertEqual(shown('// By name.\nvoid putValue(int value);\n\n/// Adds.\nvoid Add();'),
                         ['/// Adds.', 'void Add();'])

    def test_overridesOfQtsFunctionsAndProtectedOnesNeedNoText(self):
        self.assertEqual(shown('QSize sizeHint() const override;'), [])
        self.assertEqual(shown('void UserControl_Resize() override;', 'protected'), [])

    def test_privatePartsAreLeftOutButForTheContractThatAHostCalls(self):
        self.assertEqual(shown('/// Keeps.\nint m_value;\nvoid other();', 'private'), [])
        self.assertEqual(shown('/// Reads.\nvoid BoundSection_ReadData(const Ptr& record) override;', 'private'),
                         ['/// Reads.', 'void ReadData(const Ptr& record);'])

    def test_whatAHeaderSaysOfItselfIsTheFilesDescription(self):
        header = '#include <a>\n\n// Services.\n//\n// More.\n\nnamespace tavrin {\n}\n'
        text = headers.for_doxygen(header, 'A.h', 'Controls')
        self.assertIn(' * Services.\n *\n * More.\n', text)

    def test_anIndentedExampleIsCodeOfItsLanguage(self):
        text = headers.with_code('/// Use:\n///\n///     int a;\n///\n///     b();\n/// End.\n', '///')
        self.assertEqual(text, '/// Use:\n///\n/// @code{.cpp}\n/// int a;\n///\n/// b();\n/// @endcode\n/// End.\n')
        self.assertIn('@code{.json}', headers.with_code('///     { "a": 1 }\n', '///'))


if __name__ == '__main__':
    unittest.main()
