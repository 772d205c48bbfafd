#include "attachments/section/Attachments.h"
#include "base/values/Font.h"
#include "base/values/Variant.h"
#include "component/ClassMembers.h"
#include "component/ClassRegister.h"
#include "frame/host_contracts/Contracts.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"

#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include <memory>

using namespace Qt::StringLiterals;
using tavrin::ClassMember;
using tavrin::membersOf;
using tavrin::PublicClass;
using tavrin::publicClasses;
using tavrin::publicControls;
using tavrin::SavedProperties;
using tavrin::SavedProperty;
using tavrin::UserControl;

namespace {

/// A look at what controls save, which only their frame sees.
class SavedLook : public UserControl
{
public:
    static SavedProperties of(UserControl& control) { return (control.*&SavedLook::savedProperties)(); }
};

QString describe(const ClassMember& member)
{
    switch (member.kind) {
    case ClassMember::Property:
        return u"property %1 As %2%3"_s.arg(member.name, member.type,
                                            member.isReadOnly ? u", read-only"_s : QString());
    case ClassMember::Operation:
        return u"operation %1(%2)%3"_s.arg(member.name, member.parameters,
                                           member.type.isEmpty() ? QString() : u" As "_s + member.type);
    case ClassMember::Event:
        break;
    }
    return u"event %1(%2)"_s.arg(member.name, member.parameters);
}

QString membersText()
{
    QStringList lines;
    for (const PublicClass& one : publicClasses()) {
        lines << u"%1 %2"_s.arg(one.name,
                                QStringList({one.defaultInterface, one.eventInterface, one.contract})
                                    .filter(QRegularExpression(u"."_s))
                                    .join(u' '));
        for (const ClassMember& member : membersOf(*one.meta))
            lines << u"  "_s + describe(member);
    }
    return lines.join(u'\n') + u'\n';
}

QString describe(tavrin::PropertyKind kind)
{
    switch (kind) {
    case tavrin::PropertyKind::Boolean:
        return u"Boolean"_s;
    case tavrin::PropertyKind::Long:
        return u"Long"_s;
    case tavrin::PropertyKind::Text:
        return u"String"_s;
    case tavrin::PropertyKind::Variant:
        return u"Variant"_s;
    case tavrin::PropertyKind::Color:
        return u"Color"_s;
    case tavrin::PropertyKind::Font:
        return u"Font"_s;
    case tavrin::PropertyKind::Picture:
        break;
    }
    return u"Picture"_s;
}

/// Which font hangs on the workstation; whose it is does not.
QString describe(const tavrin::Font& font, UserControl& control)
{
    if (font.toQFont() == control.ambient().Font()->toQFont())
        return u"Ambient.Font"_s;
    return font.toQFont() == tavrin::Font().toQFont() ? u"a new font"_s : u"a font of its own"_s;
}

QString describe(const QVariant& value, UserControl& control)
{
    if (value.typeId() == qMetaTypeId<tavrin::FontPtr>())
        return describe(*value.value<tavrin::FontPtr>(), control);
    if (tavrin::IsEmpty(value))
        return u"empty"_s; // which a saved form says in the same way as Null
    tavrin::PropertyBag bag;
    bag.WriteProperty(u"value"_s, value, u"another"_s);
    const QJsonObject json = bag.toJson();
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact)).mid(9).chopped(1);
}

QString savedPropertiesText()
{
    tavrin::test::FakeHost host;
    const tavrin::HostInstallation installation(host);
    QWidget container;
    container.setFont(QFont(u"DejaVu Serif"_s, 23)); // no new font is like it
    QStringList lines;
    for (const PublicClass& one : publicClasses()) {
        UserControl* control = publicControls().create(one.name, &container, {u"control"_s});
        lines << one.name;
        for (const SavedProperty& property : SavedLook::of(*control)) {
            QString line = u"  %1 = %2, %3"_s.arg(property.key, describe(property.defaultValue, *control),
                                                  describe(property.kind));
            if (!property.writtenKey.isEmpty())
                line += u", written as "_s + property.writtenKey;
            if (!property.olderKey.isEmpty())
                line += u", once "_s + property.olderKey;
            lines << line;
        }
    }
    return lines.join(u'\n') + u'\n';
}

} // namespace

/// What the library publishes, against lists that say it in words. TAVRIN_WRITE_LISTS=1 tests_component
/// ClassRegister writes these anew; what has changed then shows as a difference to read.
class tst_ClassRegister : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPublicControlIsRegisteredUnderItsClassName()
    {
        QStringList names;
        for (const PublicClass& one : publicClasses()) {
            names << one.name;
            QCOMPARE(one.name,
                     u"TVBoundControls."_s + QString::fromLatin1(one.meta->className()).section(u':', -1));
            QCOMPARE(one.defaultInterface, u'_' + one.name.section(u'.', 1));
            QCOMPARE(tavrin::findPublicClass(one.name), &one);
        }
        QCOMPARE(names.size(), 14);
        QCOMPARE(publicControls().classNames(), names);
        QCOMPARE(tavrin::findPublicClass(u"TVBoundControls.Nothing"_s), nullptr);
    }

    void aClassHasAnEventInterfaceExactlyWhenItHasEvents()
    {
        for (const PublicClass& one : publicClasses()) {
            bool hasEvents = false;
            for (const ClassMember& member : membersOf(*one.meta))
                hasEvents = hasEvents || member.kind == ClassMember::Event;
            QCOMPARE(one.eventInterface, hasEvents ? u"__"_s + one.name.section(u'.', 1) : QString());
        }
    }

    void theContractIsTheOneThatTheControlHas()
    {
        tavrin::test::FakeHost host;
        const tavrin::HostInstallation installation(host);
        for (const PublicClass& one : publicClasses()) {
            const std::unique_ptr<UserControl> control(publicControls().create(one.name, nullptr, {}));
            const QString contract = dynamic_cast<tavrin::TavrinControl*>(control.get())  ? u"TavrinControl"_s
                                     : dynamic_cast<tavrin::BoundControl*>(control.get()) ? u"BoundControl"_s
                                     : dynamic_cast<tavrin::BoundSection*>(control.get()) ? u"BoundSection"_s
                                                                                          : QString();
            QCOMPARE(one.contract, contract);
            QCOMPARE(control->metaObject(), one.meta);
        }
    }

    void theMembersAreTheWrittenOnes() { compare(membersText(), u"members.txt"_s); }

    void theSavedPropertiesAreTheWrittenOnes() { compare(savedPropertiesText(), u"saved_properties.txt"_s); }

private:
    static void compare(const QString& text, const QString& name)
    {
        QFile file(QStringLiteral(TAVRIN_TESTS) + u"/component/"_s + name);
        if (qEnvironmentVariableIsSet("TAVRIN_WRITE_LISTS")) {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text.toUtf8());
            return;
        }
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
        QCOMPARE(text.split(u'\n'), QString::fromUtf8(file.readAll()).split(u'\n'));
    }
};

TAVRIN_TEST_MAIN(tst_ClassRegister)
#include "tst_ClassRegister.moc"
