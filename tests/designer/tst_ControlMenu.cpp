#include "component/ClassRegister.h"
#include "designer/ControlMenu.h"
#include "designer/UiForms.h"
#include "support/TestCase.h"

#include <QAction>
#include <QMenu>

using namespace tavrin;
using namespace tavrin::designer;
using namespace tavrin::test;

namespace {

/// What is marked in one of the menus of system colours.
QStringList marked(const ControlMenu& menu, const QString& text)
{
    QStringList texts;
    for (const QAction* action : menu.taskActions()) {
        if (action->text() != text)
            continue;
        for (const QAction* color : action->menu()->actions()) {
            if (color->isChecked())
                texts << color->text();
        }
    }
    return texts;
}

} // namespace

/// What the designer's menu of a control offers.
class tst_ControlMenu : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSystemColourThatIsSetIsMarked()
    {
        const DesignTime designer;
        const std::unique_ptr<UserControl> control(
            publicControls().create(QStringLiteral("TVBoundControls.EmployeePicker"), nullptr, {}));
        const ControlMenu menu(*control, nullptr);
        const QString back = QStringLiteral("BackColor From System");
        const QString fore = QStringLiteral("ForeColor From System");
        control->setProperty("ForeColor", QVariant::fromValue(Color(SystemColor::GreyText)));
        control->setProperty("BackColor", QVariant::fromValue(Color(SystemColor::ButtonFace)));
        QCOMPARE(marked(menu, back), QStringList(QStringLiteral("Button Face")));
        QCOMPARE(marked(menu, fore), QStringList(QStringLiteral("Gray Text")));
        control->setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        QCOMPARE(marked(menu, back), QStringList());
        QCOMPARE(marked(menu, fore), QStringList(QStringLiteral("Gray Text")));
    }
};

TAVRIN_TEST_MAIN(tst_ControlMenu)
#include "tst_ControlMenu.moc"
