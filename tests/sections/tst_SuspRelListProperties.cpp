#include "frame/control_frame/PropertyBag.h"
#include "sections/SuspectForm.h"
#include "support/Looks.h"
#include "support/Members.h"

#include <QHeaderView>
#include <QMetaProperty>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FakeHost;
using tavrin::test::keysOf;
using tavrin::test::ownProperties;
using tavrin::test::SuspectForm;

namespace {

const QStringList SavedKeys{u"Enabled"_s, u"OtherCollectionTag"_s, u"OtherItemName"_s, u"OtherItemSeqName"_s};

struct Site
{
    Site()
        : installation(host)
    {
    }
    FakeHost host;
    HostInstallation installation;
};

} // namespace

/// Members, saved properties, layout and the end of `SuspRelList`.
class tst_SuspRelListProperties : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMembersStandInThePublishedOrderAndThereAreNoEvents()
    {
        const QMetaObject& meta = SuspRelList::staticMetaObject;
        QCOMPARE(ownProperties(meta), QStringList({u"hWnd"_s, u"OtherCollectionTag"_s, u"OtherItemName"_s,
                                                   u"OtherItemSeqName"_s, u"Enabled"_s}));
        QCOMPARE(meta.classInfo(meta.indexOfClassInfo("ClassName")).value(), "TVBoundControls.SuspRelList");
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            QVERIFY(meta.method(i).methodType() != QMetaMethod::Signal);
    }

    void aNewSectionIsEnabledAndEmptyAndReportsNothing()
    {
        const Site site;
        const SuspRelList section;
        QVERIFY(section.Enabled());
        QCOMPARE(section.OtherCollectionTag(), QString());
        QCOMPARE(section.OtherItemName(), QString());
        QCOMPARE(section.OtherItemSeqName(), QString());
        QVERIFY(!section.findChild<TipPanel*>()->isHidden());
    }

    void everyPutStoresAndThenReportsItsKey()
    {
        const Site site;
        SuspRelList section;
        QStringList seen;
        connect(&section, &UserControl::PropertyChanged, this, [&](const QString& key) {
            seen << key + u' ' + section.property(key.toLatin1().constData()).toString();
        });
        section.SetOtherCollectionTag(u"A.B"_s);
        section.SetOtherItemName(u"Victim"_s);
        section.SetOtherItemSeqName(u"VictimSeqNo"_s);
        section.SetEnabled(false);
        section.SetEnabled(false); // also when it is the same
        QCOMPARE(seen,
                 QStringList({u"OtherCollectionTag A.B"_s, u"OtherItemName Victim"_s,
                              u"OtherItemSeqName VictimSeqNo"_s, u"Enabled false"_s, u"Enabled false"_s}));
    }

    void enabledIsTheSectionsOwnWhateverItsContainers()
    {
        const Site site;
        QWidget form;
        SuspRelList section(&form);
        form.setEnabled(false);
        QVERIFY(section.Enabled());
        section.SetEnabled(false);
        form.setEnabled(true);
        QVERIFY(!section.Enabled());
        QVERIFY(!section.findChild<ListView*>()->isEnabled());
    }

    void theTipOfADisabledSectionShowsAsTheListBelowIt()
    {
        tavrin::test::Theme theme;
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Disabled, QPalette::Base, QColor(60, 70, 80));
        palette.setColor(QPalette::Active, QPalette::Base, QColor(250, 240, 230));
        QApplication::setPalette(palette);
        SuspectForm form;
        QVERIFY(form.show());
        const auto background = [&] {
            return form.window.grab().toImage().pixelColor(
                form.section->mapTo(&form.window, form.tip->pos()) + QPoint(3, 3));
        };
        QCOMPARE(background(), QColor(250, 240, 230));
        form.section->SetEnabled(false);
        QCOMPARE(background(), QColor(60, 70, 80));
        form.section->SetEnabled(true);
        QCOMPARE(background(), QColor(250, 240, 230));
    }

    void savedPropertiesAreWrittenInTheirOrderAndReadThroughTheirPuts()
    {
        const Site site;
        SuspRelList section;
        section.SetEnabled(false);
        section.SetOtherCollectionTag(u"A.B"_s);
        section.SetOtherItemName(u"Victim"_s);
        section.SetOtherItemSeqName(u"VictimSeqNo"_s);
        PropertyBag bag;
        section.WriteProperties(bag);
        QStringList keys;
        for (const PropertyBag::Entry& entry : bag.entries())
            keys << entry.key;
        QCOMPARE(keys, SavedKeys);
        SuspRelList restored(nullptr, {u"ctl"_s, &bag});
        QVERIFY(!restored.Enabled());
        QCOMPARE(restored.OtherCollectionTag(), u"A.B"_s);
        QCOMPARE(restored.OtherItemName(), u"Victim"_s);
        QCOMPARE(restored.OtherItemSeqName(), u"VictimSeqNo"_s);
        const QSignalSpy changes(&restored, &UserControl::PropertyChanged);
        restored.ReadProperties(bag);
        QCOMPARE(keysOf(changes), SavedKeys);
    }

    void anEmptyBagGivesTheDefaultsAndDefaultsAreNotWritten()
    {
        const Site site;
        const PropertyBag empty;
        SuspRelList section;
        section.SetEnabled(false);
        section.SetOtherItemName(u"Victim"_s);
        section.ReadProperties(empty);
        QVERIFY(section.Enabled());
        QCOMPARE(section.OtherItemName(), QString());
        PropertyBag bag;
        section.WriteProperties(bag);
        QVERIFY(bag.entries().empty());
    }

    void aSavedValueThatCannotBeRestoredGoesToWhoeverRestoresIt()
    {
        const Site site;
        PropertyBag bag;
        bag.WriteProperty(u"Enabled"_s, u"perhaps"_s, QVariant());
        SuspRelList section;
        QVERIFY_EXCEPTION_THROWN(section.ReadProperties(bag), Error);
    }

    void theTableCacheIsMadeOnceAtBirthAndTheDesignerCallsNoHost()
    {
        const Site site;
        SuspRelList section;
        QCOMPARE(site.host.calls(), 1);
        const DesignTime designer;
        const SuspRelList designed(nullptr, {u"ctlVictims"_s, nullptr});
        QCOMPARE(site.host.calls(), 1);
    }

    void theListHasItsFourColumns()
    {
        const Site site;
        const SuspRelList section;
        const auto* list = section.findChild<ListView*>(u"lvwRows"_s);
        QCOMPARE(list->ColumnWidth(u"key"_s), 0.0F);
        QCOMPARE(list->ColumnWidth(u"relationship_value"_s), 0.0F);
        QCOMPARE(list->header()->count(), 2);
        const auto caption = [&](int column) {
            return list->model()->headerData(column, Qt::Horizontal).toString();
        };
        QCOMPARE(caption(0), u"Name"_s);
        QCOMPARE(caption(1), u"Relationship to Suspect"_s);
        QVERIFY(!list->header()->sectionsMovable());
        QCOMPARE(list->selectionBehavior(), QAbstractItemView::SelectRows);
        QVERIFY(!list->accessibleName().isEmpty());
    }

    void theListFillsTheSectionAndTheTipIsCentredBelowItsHeader_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("usual") << QSize(600, 200);
        QTest::newRow("odd") << QSize(401, 123);
        QTest::newRow("narrower than the tip") << QSize(200, 60);
    }
    void theListFillsTheSectionAndTheTipIsCentredBelowItsHeader()
    {
        QFETCH(QSize, size);
        SuspectForm form;
        form.section->resize(size);
        QVERIFY(form.show());
        QCOMPARE(form.list->geometry(), QRect(QPoint(), size));
        const Twips width = toTwips(size.width());
        QCOMPARE(form.list->ColumnWidth(u"name"_s), static_cast<Twips>(0.6 * width));
        QCOMPARE(form.list->ColumnWidth(u"relationship"_s), static_cast<Twips>(0.4 * width));
        QCOMPARE(form.list->ColumnWidth(u"key"_s), 0.0F);
        const Twips line = toTwips(QFontMetrics(form.section->font()).height());
        const Twips height = toTwips(size.height());
        QCOMPARE(form.tip->x(), toPixels(width / 2 - 5355.0F / 2));
        QCOMPARE(form.tip->y(), toPixels((height - line) / 2 + line - 495.0F / 2));
        QCOMPARE(form.tip->size(), QSize(357, 33));
    }

    void anotherFontMovesTheTip()
    {
        SuspectForm form;
        QVERIFY(form.show());
        const int before = form.tip->y();
        QFont large = form.section->font();
        large.setPointSizeF(3 * large.pointSizeF());
        form.section->setFont(large);
        QVERIFY(form.tip->y() > before + 5);
    }

    void aFollowerMayDeleteTheSection()
    {
        SuspectForm form;
        connect(form.section, &UserControl::PropertyChanged, &form.window,
                [&](const QString&) { delete form.section.data(); });
        form.section->SetOtherItemName(u"Other"_s);
        QVERIFY(form.section.isNull());
    }

    void theEndOfTheSectionEndsItsFollowingOfTheParties()
    {
        SuspectForm form;
        form.addThreeVictimsOfWhomTwoAreLinked();
        form.read();
        delete form.section.data();
        form.victims->RemoveCurrent(false);
        QVERIFY(!form.victims->ItemRemoved.hasHandlers());
    }
};

TAVRIN_TEST_MAIN(tst_SuspRelListProperties)
#include "tst_SuspRelListProperties.moc"
