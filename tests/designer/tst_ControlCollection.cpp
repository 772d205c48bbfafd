#include "component/ClassRegister.h"
#include "designer/UiForms.h"
#include "support/TestCase.h"

#include <QDomDocument>
#include <QPluginLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

using namespace tavrin;
using namespace tavrin::test;

namespace {

/// How far two colours lie apart in lightness.
int contrast(const QColor& a, const QColor& b)
{
    return std::abs(a.lightness() - b.lightness());
}

/// Puts the application's palette back.
struct Theme
{
    explicit Theme(bool dark)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(0x20, 0x20, 0x22) : QColor(0xF4, 0xF4, 0xF4));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
    }
    ~Theme() { QApplication::setPalette(QPalette()); }
    Theme(const Theme&) = delete;
    Theme& operator=(const Theme&) = delete;
};

} // namespace

class tst_ControlCollection : public TestCase
{
    Q_OBJECT

private:
    QPluginLoader m_loader{QStringLiteral(TAVRIN_DESIGNER_PLUGINS "/designer/libTVBoundControlsDesigner.so")};

    QList<QDesignerCustomWidgetInterface*> controls()
    {
        auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(m_loader.instance());
        return collection ? collection->customWidgets() : QList<QDesignerCustomWidgetInterface*>();
    }

    QDesignerCustomWidgetInterface* plugin(const QString& control)
    {
        for (QDesignerCustomWidgetInterface* plugin : controls()) {
            if (plugin->name() == QStringLiteral("tavrin::") + control)
                return plugin;
        }
        return nullptr;
    }

private Q_SLOTS:
    void thePluginOffersEveryPublicControlAndNoOther()
    {
        QStringList offered;
        for (QDesignerCustomWidgetInterface* plugin : controls())
            offered << plugin->name();
        QStringList expected;
        for (const QString& name : controlNames())
            expected << QStringLiteral("tavrin::") + name;
        QVERIFY2(m_loader.isLoaded(), qPrintable(m_loader.errorString()));
        QCOMPARE(offered, expected);
        QCOMPARE(offered.size(), 14);
    }

    void aControlStandsInTheGroupOfItsOwnWithItsTexts_data() { addControlRows(); }
    void aControlStandsInTheGroupOfItsOwnWithItsTexts()
    {
        QFETCH(QString, control);
        QDesignerCustomWidgetInterface* offered = plugin(control);
        QVERIFY(offered);
        QCOMPARE(offered->group(), QStringLiteral("Tavrin Bound User Controls"));
        QCOMPARE(offered->includeFile(), QStringLiteral("<TVBoundControls/%1.h>").arg(control));
        QVERIFY(!offered->isContainer());
        QVERIFY(!offered->toolTip().isEmpty());
        QVERIFY(offered->whatsThis().size() > offered->toolTip().size());
        for (QDesignerCustomWidgetInterface* other : controls())
            QVERIFY(other == offered || other->toolTip() != offered->toolTip());
    }

    void theIconIsReadableInLightAndDark_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<bool>("dark");
        for (const QString& name : controlNames()) {
            QTest::newRow(qPrintable(name + QStringLiteral(" light"))) << name << false;
            QTest::newRow(qPrintable(name + QStringLiteral(" dark"))) << name << true;
        }
    }
    void theIconIsReadableInLightAndDark()
    {
        QFETCH(QString, control);
        QFETCH(bool, dark);
        const Theme theme(dark);
        const QColor ground = QApplication::palette().color(QPalette::Window);
        const QImage drawn = plugin(control)->icon().pixmap(QSize(22, 22)).toImage();
        QCOMPARE(drawn.size(), QSize(22, 22));
        int clear = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                const QColor color = drawn.pixelColor(x, y);
                clear += color.alpha() > 150 && contrast(color, ground) > 60 ? 1 : 0;
            }
        }
        QVERIFY2(clear > 25, qPrintable(QStringLiteral("%1 clear points").arg(clear)));
        QCOMPARE(drawn.pixelColor(0, 0).alpha(), 0);
    }

    void noTwoIconsAreAlike()
    {
        QList<QImage> icons;
        for (QDesignerCustomWidgetInterface* plugin : controls()) {
            const QImage icon = plugin->icon().pixmap(QSize(22, 22)).toImage();
            QVERIFY2(!icons.contains(icon), qPrintable(plugin->name()));
            icons << icon;
        }
    }

    void aDroppedControlHasTheSizeThatItsConstructorGives_data() { addControlRows(); }
    void aDroppedControlHasTheSizeThatItsConstructorGives()
    {
        QFETCH(QString, control);
        QSize size;
        {
            const DesignTime designer;
            const std::unique_ptr<UserControl> fresh(
                publicControls().create(QStringLiteral("TVBoundControls.") + control, nullptr, {}));
            size = fresh->size();
        }
        QVERIFY(size.width() > 20 && size.height() > 10);
        QDomDocument document;
        QVERIFY(document.setContent(plugin(control)->domXml()));
        const QDomElement widget = document.documentElement().firstChildElement(QStringLiteral("widget"));
        QCOMPARE(document.documentElement().attribute(QStringLiteral("displayname")), control);
        QCOMPARE(widget.attribute(QStringLiteral("class")), QStringLiteral("tavrin::") + control);
        const QDomElement rect = widget.firstChildElement().firstChildElement(QStringLiteral("rect"));
        QCOMPARE(rect.firstChildElement(QStringLiteral("width")).text().toInt(), size.width());
        QCOMPARE(rect.firstChildElement(QStringLiteral("height")).text().toInt(), size.height());
    }

    void aDroppedControlHasTheWrittenSize_data()
    {
        // In twips; 0 where the font decides.
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("TavrinDropdown") << QStringLiteral("TavrinDropdown") << 3073 << 0;
        QTest::newRow("TavrinSpellcheck") << QStringLiteral("TavrinSpellcheck") << 480 << 480;
        QTest::newRow("MultiValue") << QStringLiteral("MultiValue") << 2475 << 1620 + 435;
        QTest::newRow("LatLong") << QStringLiteral("LatLong") << 0 << 720 + 1395;
    }
    void aDroppedControlHasTheWrittenSize()
    {
        QFETCH(QString, control);
        QFETCH(int, width);
        QFETCH(int, height);
        QDomDocument document;
        QVERIFY(document.setContent(plugin(control)->domXml()));
        const QDomElement rect = document.elementsByTagName(QStringLiteral("rect")).at(0).toElement();
        const auto pixels = [&rect](const char* side) {
            return rect.firstChildElement(QLatin1String(side)).text().toInt();
        };
        if (width > 0)
            QCOMPARE(pixels("width"), qRound(width / 15.0));
        if (height > 0)
            QCOMPARE(pixels("height"), qRound(height / 15.0));
    }

    void aControlLivesInTheDesignerWithoutAHostAndWithoutAWarning_data() { addControlRows(); }
    void aControlLivesInTheDesignerWithoutAHostAndWithoutAWarning()
    {
        QFETCH(QString, control);
        QWidget form;
        std::unique_ptr<UserControl> made;
        {
            const DesignTime designer;
            made.reset(publicControls().create(QStringLiteral("TVBoundControls.") + control, &form, {}));
        }
        made->setObjectName(QStringLiteral("named"));
        for (const SavedProperty& property : made->savedProperties()) {
            if (property.kind == PropertyKind::Long)
                made->setProperty(property.key.toLatin1().constData(), 302);
            if (property.kind == PropertyKind::Boolean)
                made->setProperty(property.key.toLatin1().constData(), !property.get().toBool());
        }
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        made->resize(made->size() + QSize(20, 20));
        form.setFont(QFont(QStringLiteral("DejaVu Serif"), 14));
        QVERIFY(!made->grab().isNull());
    }
};

TAVRIN_TEST_MAIN(tst_ControlCollection)
#include "tst_ControlCollection.moc"
