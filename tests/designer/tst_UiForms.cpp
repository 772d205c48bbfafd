#include "designer/UiForms.h"
#include "support/TestCase.h"
#include "ui_AllControls.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A host that is installed, and a folder.
struct Application
{
    Application()
        : installation(host)
    {
        fillHost(host);
        modUtils::ReleaseNibrsModule();
        QImage picture(16, 16, QImage::Format_ARGB32);
        picture.fill(QColor(200, 40, 40));
        pictureFile = folder.filePath(QStringLiteral("icon.png"));
        picture.save(pictureFile);
    }
    ~Application() { modUtils::ReleaseNibrsModule(); }
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// What the host was asked since the last time, in its order; but for the theme and its units, for which
    /// a control asks each time that it is laid out.
    QStringList questions()
    {
        modUtils::ReleaseNibrsModule(); // the next one asks for it again
        static const QRegularExpression ofTheLook(u"^(ScaleModeFromUnits|TextBoxColors|ShadeColor)"_s);
        QStringList asked = std::exchange(host.state().log, {});
        asked.removeIf([](const QString& question) { return ofTheLook.match(question).hasMatch(); });
        return asked;
    }

    FakeHost host;
    HostInstallation installation;
    QTemporaryDir folder;
    QString pictureFile;
};

/// The same control made by a bag, on a form of the same size.
struct FromBag
{
    FromBag(const QString& control, const PropertyBag& bag)
    {
        form.resize(640, 480);
        made = publicControls().create(QStringLiteral("TVBoundControls.") + control, &form,
                                       {QStringLiteral("it"), &bag});
        made->setGeometry(10, 10, 500, 100);
    }
    QWidget form;
    UserControl* made;
};

QImage shown(QWidget& form, QWidget& control)
{
    form.show();
    return control.grab().toImage();
}

std::unique_ptr<UserControl> dropped(const QString& control)
{
    const DesignTime designer;
    return std::unique_ptr<UserControl>(
        publicControls().create(QStringLiteral("TVBoundControls.") + control, nullptr, {}));
}

} // namespace

class tst_UiForms : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFormWithEverySavedPropertyIsThatOfABag_data() { addControlRows(); }
    void aFormWithEverySavedPropertyIsThatOfABag()
    {
        QFETCH(QString, control);
        Application application;
        PropertyBag bag;
        QString properties;
        const std::unique_ptr<UserControl> fresh = dropped(control);
        for (const SavedProperty& property : fresh->savedProperties()) {
            const OtherValue other = otherValue(*fresh, property, application.pictureFile);
            bag.WriteProperty(property.key, other.bag, QVariant());
            properties += uiProperty(property.key, other.ui);
        }
        FromBag restored(control, bag);
        const QStringList askedByBag = application.questions();
        // As the designer saves it: the place comes behind what the control may take its size from.
        const std::unique_ptr<QWidget> form = loadByQt(uiForm(uiControl(control, properties)));
        QVERIFY(form);
        auto* loaded = form->findChild<UserControl*>(QStringLiteral("it"));
        QVERIFY(loaded);
        QVERIFY(loaded->ambient().UserMode());
        QCOMPARE(loaded->typeName(), control);
        const QStringList asked = application.questions();
        QCOMPARE(savedState(*loaded), savedState(*restored.made));
        QCOMPARE(asked, askedByBag);
        QCOMPARE(shown(*form, *loaded), shown(restored.form, *restored.made));
    }

    void aFormWithWhatTheDesignerSavesOfADroppedControlIsThatOfItsBag_data() { addControlRows(); }
    void aFormWithWhatTheDesignerSavesOfADroppedControlIsThatOfItsBag()
    {
        QFETCH(QString, control);
        Application application;
        PropertyBag bag;
        dropped(control)->WriteProperties(bag);
        QString properties;
        if (control == QLatin1String("AgencyPicker"))
            properties = uiProperty(QStringLiteral("ListAllAgencies"), QStringLiteral("<bool>false</bool>"));
        if (control == QLatin1String("AutoCompleteField"))
            properties = uiProperty(QStringLiteral("TableNo"), QStringLiteral("<number>0</number>"));
        FromBag restored(control, bag);
        const QStringList askedByBag = application.questions();
        const std::unique_ptr<QWidget> form = loadByQt(uiForm(uiControl(control, properties)));
        QVERIFY(form);
        auto* loaded = form->findChild<UserControl*>(QStringLiteral("it"));
        QVERIFY(loaded);
        QStringList expected = askedByBag;
        if (control == "AutoCompleteField"_L1) // a bag loads it for the inactive values once more
            expected.remove(0, 2);
        if (control == "NibrsOffensePicker"_L1) // a bag puts Null, for which it looks among the codes
            expected.removeLast();
        QCOMPARE(application.questions(), expected);
        QCOMPARE(shown(*form, *loaded), shown(restored.form, *restored.made));
        // The flat pickers have the theme's colours from the beginning when new, and once they show when
        // restored.
        QCOMPARE(savedState(*loaded), savedState(*restored.made));
    }

    void aFontThatTheFormDoesNotHoldIsThatOfTheBag_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QFont>("ofForm");
        for (const QString& name : controlNames()) {
            for (const SavedProperty& property : dropped(name)->savedProperties()) {
                if (property.kind != PropertyKind::Font)
                    continue;
                QTest::addRow("%s", qPrintable(name)) << name << QFont();
                QTest::addRow("%s on a form with a font", qPrintable(name))
                    << name << QFont(u"DejaVu Serif"_s, 18);
            }
        }
    }
    void aFontThatTheFormDoesNotHoldIsThatOfTheBag()
    {
        QFETCH(QString, control);
        QFETCH(QFont, ofForm);
        Application application;
        QWidget designed;
        PropertyBag bag;
        {
            const DesignTime designer;
            designed.setFont(ofForm);
            publicControls().create(u"TVBoundControls."_s + control, &designed, {})->WriteProperties(bag);
        }
        QWidget restored;
        restored.setFont(ofForm);
        auto* ofBag = publicControls().create(u"TVBoundControls."_s + control, &restored, {u"it"_s, &bag});
        QByteArray xml = uiForm(uiControl(control, {}));
        if (ofForm != QFont())
            xml.replace("<property name=\"geometry\"><rect><x>0",
                        "<property name=\"font\"><font><family>DejaVu Serif</family><pointsize>18</pointsize>"
                        "</font></property><property name=\"geometry\"><rect><x>0");
        const std::unique_ptr<QWidget> form = loadByQt(xml);
        const auto fontOf = [](const QObject* made) {
            return made->property("Font").value<FontPtr>()->toQFont();
        };
        QCOMPARE(fontOf(form->findChild<UserControl*>(u"it"_s)), fontOf(ofBag));
    }

    void aCompiledFormIsTheLoadedOne_data() { addControlRows(); }
    void aCompiledFormIsTheLoadedOne()
    {
        QFETCH(QString, control);
        Application application;
        // Where a compiled form looks for its pictures.
        const auto back = qScopeGuard([before = QDir::currentPath()] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(QStringLiteral(TAVRIN_FORMS)));
        QWidget compiled;
        Ui::AllControls ui;
        ui.setupUi(&compiled);
        QFile file(QStringLiteral(TAVRIN_FORMS "/AllControls.ui"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const std::unique_ptr<QWidget> loaded = loadByQt(file.readAll(), QStringLiteral(TAVRIN_FORMS));
        QVERIFY(loaded);
        const QString name = control.left(1).toLower() + control.mid(1);
        auto* ofCompiled = compiled.findChild<UserControl*>(name);
        auto* ofLoaded = loaded->findChild<UserControl*>(name);
        QVERIFY(ofCompiled && ofLoaded);
        QCOMPARE(ofCompiled->typeName(), control);
        QCOMPARE(savedState(*ofCompiled), savedState(*ofLoaded));
        compiled.show(); // until then a control need not have the size that it gives itself
        loaded->show();
        QCOMPARE(ofCompiled->geometry(), ofLoaded->geometry());
        // A control of the form has what the form says, and not what it began with.
        if (control != QLatin1String("MultiValue") && !ofCompiled->savedProperties().empty())
            QVERIFY(savedState(*ofCompiled) != savedState(*dropped(control)));
        if (control == QLatin1String("TavrinDropdown"))
            QCOMPARE(ofCompiled->property("Icon").value<QImage>().pixelColor(8, 8), QColor(200, 40, 40));
    }

    void aCompiledFormPutsThePropertiesInTheOrderOfTheForm_data() { addControlRows(); }
    void aCompiledFormPutsThePropertiesInTheOrderOfTheForm()
    {
        QFETCH(QString, control);
        const QString name = control.left(1).toLower() + control.mid(1);
        QFile form(QStringLiteral(TAVRIN_FORMS "/AllControls.ui"));
        QFile code(QStringLiteral(TAVRIN_COMPILED_FORM));
        QVERIFY(form.open(QIODevice::ReadOnly) && code.open(QIODevice::ReadOnly));
        const QString ofForm =
            QString::fromUtf8(form.readAll()).section(name, 1).section(u"</widget>"_s, 0, 0);
        const auto found = [](const QString& text, const QString& pattern) {
            QStringList names;
            QRegularExpressionMatchIterator matches = QRegularExpression(pattern).globalMatch(text);
            while (matches.hasNext())
                names << matches.next().captured(1);
            return names;
        };
        QCOMPARE(found(QString::fromUtf8(code.readAll()), name + u"->setProperty\\(\"(\\w+)\""_s),
                 found(ofForm, u"<property name=\"([A-Z]\\w*)\""_s));
    }

    void whatAPersonHasChosenStaysWhenTheLanguageChanges_data() { addControlRows(); }
    void whatAPersonHasChosenStaysWhenTheLanguageChanges()
    {
        QFETCH(QString, control);
        Application application;
        QWidget compiled;
        Ui::AllControls ui;
        ui.setupUi(&compiled);
        auto* made = compiled.findChild<UserControl*>(control.left(1).toLower() + control.mid(1));
        QVERIFY(made);
        for (const SavedProperty& property : made->savedProperties()) {
            if (property.kind == PropertyKind::Text)
                made->setProperty(property.key.toLatin1().constData(), QStringLiteral("chosen"));
            if (property.kind == PropertyKind::Variant)
                made->setProperty(property.key.toLatin1().constData(), Null());
        }
        const QByteArray chosen = savedState(*made);
        ui.retranslateUi(&compiled);
        ui.retranslateUi(&compiled);
        QCOMPARE(savedState(*made), chosen);
    }

    void aSystemColorTravelsAsItsNumber()
    {
        Application application;
        const std::unique_ptr<QWidget> form = loadByQt(uiForm(uiControl(
            QStringLiteral("EmployeePicker"),
            uiProperty(QStringLiteral("BackColor"), QStringLiteral("<number>-2147483633</number>")))));
        QCOMPARE(
            form->findChild<UserControl*>(QStringLiteral("it"))->property("BackColor").value<Color>().value(),
            SystemColor::ButtonFace.value());
    }
};

TAVRIN_TEST_MAIN(tst_UiForms)
#include "tst_UiForms.moc"
