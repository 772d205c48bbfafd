#include "component/ClassRegister.h"
#include "designer/ControlMenu.h"
#include "frame/control_frame/Ambient.h"
#include "support/TestCase.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::designer::ControlMenu;

namespace {

std::unique_ptr<UserControl> dropped(const QString& control)
{
    const DesignTime designer;
    return std::unique_ptr<UserControl>(
        publicControls().create(u"TVBoundControls."_s + control, nullptr, {}));
}

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

/// What the designer offers for a control on a machine whose data lie in a folder of the test's.
class tst_ControlMenu : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QByteArray m_home;
    QByteArray m_machine;

    bool install(const QByteArray& tables) const
    {
        QFile file(m_folder.filePath(u"TVBoundControls/tables.csv"_s));
        return QDir(m_folder.path()).mkpath(u"TVBoundControls"_s) && file.open(QIODevice::WriteOnly) &&
               file.write(tables) == tables.size();
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_home = qgetenv("XDG_DATA_HOME");
        m_machine = qgetenv("XDG_DATA_DIRS");
        qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
        qputenv("XDG_DATA_DIRS", m_folder.path().toLocal8Bit());
    }
    void cleanupTestCase()
    {
        qputenv("XDG_DATA_HOME", m_home);
        qputenv("XDG_DATA_DIRS", m_machine);
    }

    void aDoubleClickChoosesATableOnceTheHostHasNamedThem_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<bool>("hasTable");
        QTest::newRow("AutoCompleteField") << u"AutoCompleteField"_s << true;
        QTest::newRow("TavrinDropdown") << u"TavrinDropdown"_s << true;
        QTest::newRow("AgencyPicker") << u"AgencyPicker"_s << false;
    }
    void aDoubleClickChoosesATableOnceTheHostHasNamedThem()
    {
        QFETCH(QString, control);
        QFETCH(bool, hasTable);
        const auto uninstall = qScopeGuard([this] { QDir(m_folder.path()).removeRecursively(); });
        const std::unique_ptr<UserControl> made = dropped(control);
        const ControlMenu menu(*made, nullptr);
        // The designer asks for it whether it has asked for the menu before or not.
        QCOMPARE(menu.preferredEditAction(), nullptr);
        QVERIFY(install("TableNo,Name\n302,Weapon\n"));
        QAction* action = menu.preferredEditAction();
        QCOMPARE(action != nullptr, hasTable);
        if (action)
            QCOMPARE(action->text(), u"Choose Code Table..."_s);
        QVERIFY(install("TableNo,Name\n"));
        QCOMPARE(menu.preferredEditAction(), nullptr);
    }

    void theMenuOffersATableOnceTheHostHasNamedThem()
    {
        const auto uninstall = qScopeGuard([this] { QDir(m_folder.path()).removeRecursively(); });
        const std::unique_ptr<UserControl> made = dropped(u"TavrinDropdown"_s);
        const ControlMenu menu(*made, nullptr);
        const auto offersTable = [&menu] {
            for (const QAction* action : menu.taskActions()) {
                if (action->isVisible() && action->text() == u"Choose Code Table..."_s)
                    return true;
            }
            return false;
        };
        QVERIFY(!offersTable());
        QVERIFY(install("TableNo,Name\n302,Weapon\n"));
        const QAction* byDoubleClick = menu.preferredEditAction();
        QVERIFY(byDoubleClick && byDoubleClick->isEnabled());
        QVERIFY(offersTable());
    }

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
