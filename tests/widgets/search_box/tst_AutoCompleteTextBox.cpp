#include "support/TestCase.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using tavrin::AutoCompleteTextBox;
using tavrin::Color;
using Stage = tavrin::test::SearchStage<>;
namespace SystemColor = tavrin::SystemColor;

namespace {

const Color Hint = Color::rgb(10, 120, 30);

QColor hintOf(const AutoCompleteTextBox& box)
{
    return box.palette().color(QPalette::PlaceholderText);
}

} // namespace

/// How the box without a border looks.
class tst_AutoCompleteTextBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itHasNoFrameAndIsAsHighAsALine()
    {
        Stage stage;
        QVERIFY(!stage.box->hasFrame());
        QCOMPARE(stage.box->textMargins(), QMargins());
        QCOMPARE(stage.box->sizeHint().height(), stage.box->fontMetrics().height());
        QCOMPARE(stage.box->minimumSizeHint(), QSize(0, 0));
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(20);
        stage.box->SetFont(font);
        QCOMPARE(stage.box->sizeHint().height(), stage.box->fontMetrics().height());
        stage.box->SetPlaceholder(u"Search"_s);
        QCOMPARE(stage.box->Placeholder(), u"Search"_s);
        QCOMPARE(stage.box->placeholderText(), u"Search"_s);
    }

    void theHintKeepsItsColourWhateverElseIsColoured()
    {
        Stage stage;
        stage.box->SetPlaceholderColor(Hint);
        QCOMPARE(stage.box->PlaceholderColor(), Hint);
        QCOMPARE(hintOf(*stage.box), QColor(10, 120, 30));
        stage.box->SetBackColor(Color::rgb(1, 2, 3));
        QCOMPARE(hintOf(*stage.box), QColor(10, 120, 30));
        stage.box->SetForeColor(Color::rgb(200, 2, 3));
        QCOMPARE(hintOf(*stage.box), QColor(10, 120, 30));
        QCOMPARE(stage.box->palette().color(QPalette::Base), QColor(1, 2, 3));
        QCOMPARE(stage.box->palette().color(QPalette::Text), QColor(200, 2, 3));
        stage.box->SetBackColor(SystemColor::WindowBackground);
        stage.box->SetForeColor(SystemColor::WindowText);
        QCOMPARE(hintOf(*stage.box), QColor(10, 120, 30));
        stage.box->setEnabled(false);
        QCOMPARE(hintOf(*stage.box), QColor(10, 120, 30));
    }

    void theHintFollowsTheApplicationsPalette_data()
    {
        QTest::addColumn<Color>("color");
        QTest::newRow("plain") << Hint;
        QTest::newRow("of the system") << Color(SystemColor::GreyText);
        QTest::newRow("another of the system") << Color(SystemColor::WindowText);
    }
    void theHintFollowsTheApplicationsPalette()
    {
        QFETCH(Color, color);
        Stage stage;
        stage.box->SetPlaceholderColor(color);
        stage.box->SetForeColor(Color::rgb(200, 2, 3));
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&] { QApplication::setPalette(before); });
        QPalette dark = before;
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            dark.setColor(group, QPalette::Base, QColor(20, 21, 22));
            dark.setColor(group, QPalette::Text, QColor(220, 221, 222));
            dark.setColor(group, QPalette::WindowText, QColor(230, 231, 232));
            dark.setColor(group, QPalette::PlaceholderText, QColor(90, 91, 92));
        }
        dark.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 121, 122));
        dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(130, 131, 132));
        QApplication::setPalette(dark);
        QTRY_COMPARE(stage.box->palette().color(QPalette::Base), QColor(20, 21, 22));
        QCOMPARE(hintOf(*stage.box), color.resolve(dark));
        QCOMPARE(stage.box->palette().color(QPalette::Text), QColor(200, 2, 3));
        QApplication::setPalette(before);
        QTRY_COMPARE(stage.box->palette().color(QPalette::Base), before.color(QPalette::Base));
        QCOMPARE(hintOf(*stage.box), color.resolve(before));
    }
};

TAVRIN_TEST_MAIN(tst_AutoCompleteTextBox)
#include "tst_AutoCompleteTextBox.moc"
