#include "base/search/SearchPlan.h"
#include "support/TestCase.h"

#include <cmath>

using namespace Qt::StringLiterals;
using namespace tavrin;

using Kind = SearchCondition::Kind;

namespace {

QString written(const SearchConstant& constant)
{
    switch (constant.kind) {
    case SearchConstant::Kind::Text:
        return u'"' + QString::fromStdString(constant.text) + u'"';
    case SearchConstant::Kind::Number:
        return QString::number(constant.number);
    case SearchConstant::Kind::RootAttribute:
        break;
    }
    return u"%1@%2"_s.arg(QString::fromStdString(constant.root), QString::fromStdString(constant.text));
}

QString written(const RecordText& text)
{
    QStringList parts;
    for (const RecordText::Part& part : text.parts) {
        QString one = QString::fromStdString(part.child.empty() ? '"' + part.literal + '"' : part.child);
        if (!part.fold.leavesAll())
            one += u'^';
        parts << one;
    }
    return parts.join(u'+');
}

/// The condition as a short text: folded children bear a caret, children that are compared one by one a star.
QString written(const SearchCondition& condition)
{
    QStringList members;
    for (const SearchCondition& member : condition.members)
        members << written(member);
    const QString left = written(condition.text) + (condition.eachChild ? u"*"_s : QString());
    const QString right = written(condition.constant);
    switch (condition.kind) {
    case Kind::Always:
        return u"always"_s;
    case Kind::Never:
        return u"never"_s;
    case Kind::AllOf:
        return u"all(%1)"_s.arg(members.join(u", "_s));
    case Kind::AnyOf:
        return u"any(%1)"_s.arg(members.join(u", "_s));
    case Kind::NoneOf:
        return u"none(%1)"_s.arg(members.join(u", "_s));
    case Kind::HasChild:
        return u"has "_s + left;
    case Kind::Contains:
        return left + u" holds "_s + right;
    case Kind::BeginsWith:
        return left + u" begins "_s + right;
    case Kind::Equals:
        return left + u" = "_s + right;
    case Kind::Differs:
        return left + u" != "_s + right;
    }
    return {};
}

std::optional<SearchPlan> planOf(const QString& expression)
{
    return SearchPlan::parse(expression.toStdString());
}

SearchCondition conditionOf(const QString& condition)
{
    const auto plan = planOf(u"R["_s + condition + u']');
    return plan ? plan->condition : SearchCondition();
}

} // namespace

class tst_SearchPlan : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void conditionsOfTheFamilyAreRead_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("plan");
        const auto row = [](const QString& condition, const QString& plan) {
            QTest::newRow(qPrintable(condition)) << condition << plan;
        };
        row(u"ActiveFlag='True'"_s, u"ActiveFlag* = \"True\""_s);
        row(u"ActiveFlag=1"_s, u"ActiveFlag* = 1"_s);
        row(u"'x' = Name"_s, u"Name* = \"x\""_s);
        row(u" No != 9 "_s, u"No* != 9"_s);
        row(u"No=-5"_s, u"No* = -5"_s);
        row(u"No=- 5."_s, u"No* = -5"_s);
        row(u"No=.5"_s, u"No* = 0.5"_s);
        row(u"No=12.0"_s, u"No* = 12"_s);
        row(u"Name"_s, u"has Name"_s);
        row(u"(Name)"_s, u"has Name"_s);
        row(u"not(Name)"_s, u"none(has Name)"_s);
        row(u"true()"_s, u"always"_s);
        row(u"false ( )"_s, u"never"_s);
        row(u"contains(Name,'a')"_s, u"Name holds \"a\""_s);
        row(u"contains(Name, \"it's\")"_s, u"Name holds \"it's\""_s);
        row(u"starts-with(Name, '')"_s, u"Name begins \"\""_s);
        row(u"contains(translate(Name, 'ab', 'AB'), 'A')"_s, u"Name^ holds \"A\""_s);
        row(u"translate(Name, 'ab', 'AB') = 'A'"_s, u"Name^ = \"A\""_s);
        row(u"translate('abc', 'ab', 'A') = Name"_s, u"Name* = \"Ac\""_s);
        row(u"contains(concat(First, ' ', Last), 'a')"_s, u"First+\" \"+Last holds \"a\""_s);
        row(u"contains(translate(concat(First, 'ab', Last), 'ab', 'AB'), 'A')"_s,
            u"First^+\"AB\"+Last^ holds \"A\""_s);
        row(u"contains(Name, concat('O', \"'\", 'B'))"_s, u"Name holds \"O'B\""_s);
        row(u"contains(Name, /*/@typed)"_s, u"Name holds @typed"_s);
        row(u"Name = / List / @ typed"_s, u"Name* = List@typed"_s);
        row(u"A or B and C"_s, u"any(has A, all(has B, has C))"_s);
        row(u"A and B or C and D"_s, u"any(all(has A, has B), all(has C, has D))"_s);
        row(u"(A or B) and C"_s, u"all(any(has A, has B), has C)"_s);
        row(u"A or B or C"_s, u"any(has A, has B, has C)"_s);
        row(u"A=1 and B!=2"_s, u"all(A* = 1, B* != 2)"_s);
        row(u"and and or or not"_s, u"any(all(has and, has or), has not)"_s);
        row(u"or-else and and-so"_s, u"all(has or-else, has and-so)"_s);
        row(u"a-b.c_1='x'"_s, u"a-b.c_1* = \"x\""_s);
        row(u"Name='\u00e9'"_s, u"Name* = \"\u00e9\""_s);
    }
    void conditionsOfTheFamilyAreRead()
    {
        QFETCH(QString, condition);
        const auto plan = planOf(u"R["_s + condition + u']');
        QVERIFY(plan);
        QTEST(written(plan->condition), "plan");
    }

    void everythingElseIsLeftAlone_data()
    {
        QTest::addColumn<QString>("expression");
        for (const char* expression : {"",
                                       " ",
                                       "R",
                                       "R[",
                                       "R[]",
                                       "R[1]",
                                       "R['x']",
                                       "R[A][B]",
                                       "R[A]/B",
                                       "R[A] | S[B]",
                                       "(R[A])",
                                       "*[A]",
                                       "//R[A]",
                                       "./R[A]",
                                       "../R[A]",
                                       "child::R[A]",
                                       "x:R[A]",
                                       "R[x:A]",
                                       "@R[A]",
                                       "/",
                                       "/[A]",
                                       "R//S[A]",
                                       "R[A][1]",
                                       "R[A",
                                       "R[A]]",
                                       "R[(A]",
                                       "R[A)]",
                                       "R[A B]",
                                       "R[A and]",
                                       "R[or A]",
                                       "R[A ! = 1]",
                                       "R[A ! 1]",
                                       "R[A==1]",
                                       "R[A>1]",
                                       "R[A<=1]",
                                       "R[A+1=2]",
                                       "R[A=1=1]",
                                       "R[A=B]",
                                       "R['a'='a']",
                                       "R[1=1]",
                                       "R[A=1 2]",
                                       "R[A=1.2.3]",
                                       "R[A=.]",
                                       "R[A=1x]",
                                       "R[A=--1]",
                                       "R[A=-'1']",
                                       "R[A=1e3]",
                                       "R[A='x]",
                                       "R[A=\"x']",
                                       "R[A/B]",
                                       "R[A/B='x']",
                                       "R[.='x']",
                                       "R[text()='x']",
                                       "R[@a='x']",
                                       "R[//@a=A]",
                                       "R[A=/*/B]",
                                       "R[A=/*/@a/b]",
                                       "R[A=/*/@xmlns]",
                                       "R[A=/@a]",
                                       "R[/*/@a]",
                                       "R[A='x' or 'y']",
                                       "R[A and 1]",
                                       "R[contains(A)]",
                                       "R[contains(A,'a','b')]",
                                       "R[contains('a', A)]",
                                       "R[contains('a', 'a')]",
                                       "R[contains(A, 1)]",
                                       "R[contains(A, B)]",
                                       "R[contains(A, 'a')=true()]",
                                       "R[starts-with(A,)]",
                                       "R[translate(A,'a','b')]",
                                       "R[translate(A,B,'b')='x']",
                                       "R[translate(A,'a')='x']",
                                       "R[translate(A,'\303\251','e')='x']",
                                       "R[translate(A,'e','\303\251')='x']",
                                       "R[concat(A)='x']",
                                       "R[concat(A, 1)='x']",
                                       "R[concat()='x']",
                                       "R[not()]",
                                       "R[not(A, B)]",
                                       "R[not('x')]",
                                       "R[true(1)]",
                                       "R[last()]",
                                       "R[position()=1]",
                                       "R[count(A)=1]",
                                       "R[string(A)='x']",
                                       "R[number(A)=1]",
                                       "R[normalize-space(A)='x']",
                                       "R[text()]",
                                       "R[node()]",
                                       "R[A['x']]",
                                       "R[$a='x']",
                                       "R[A\303\251='x']",
                                       "R\303\251[A]",
                                       "\303\251R[A]",
                                       "R[A=1] x",
                                       "R[A=(1]"})
            QTest::newRow(expression) << QString::fromUtf8(expression);
    }
    void everythingElseIsLeftAlone()
    {
        QFETCH(QString, expression);
        QVERIFY(!planOf(expression));
    }

    void thePathLeadsFromTheContextToTheRecords_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("fromDocument");
        QTest::addColumn<QString>("parents");
        QTest::newRow("name") << u"R"_s << false << QString();
        QTest::newRow("two") << u"List/R"_s << false << u"List"_s;
        QTest::newRow("three, with blanks") << u" A / * / R "_s << false << u"A *"_s;
        QTest::newRow("from the document") << u"/List/R"_s << true << u"List"_s;
    }
    void thePathLeadsFromTheContextToTheRecords()
    {
        QFETCH(QString, path);
        QFETCH(bool, fromDocument);
        const auto plan = planOf(path + u"[A]"_s);
        QVERIFY(plan);
        QCOMPARE(plan->fromDocument, fromDocument);
        QCOMPARE(plan->record, std::string("R"));
        QStringList parents;
        for (const std::string& parent : plan->parents)
            parents << QString::fromStdString(parent);
        QTEST(parents.join(u' '), "parents");
    }

    void whatMayBeTooDeepForTheEngineIsLeftToIt()
    {
        const auto nested = [](int depth) {
            return u"R["_s + u"("_s.repeated(depth) + u'A' + u")"_s.repeated(depth) + u']';
        };
        QVERIFY(planOf(nested(50)));
        QVERIFY(!planOf(nested(100)));
        QVERIFY(!planOf(nested(100000)));
        const auto chained = [](int members) { return u"R[A"_s + u" or A"_s.repeated(members) + u']'; };
        QVERIFY(planOf(chained(900)));
        QVERIFY(!planOf(chained(1100)));
    }

    void manyUsedValuesInChainsOfChainsAreRead()
    {
        QStringList chains;
        for (int i = 0; i < 20; ++i)
            chains << u"(No != 1"_s + u" and No != 2"_s.repeated(199) + u')';
        QVERIFY(planOf(u"R["_s + chains.join(u" and "_s) + u']'));
    }

    void numbersAreReadAsXPathReadsThem_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number");
        for (const char* text : {"1", " 1 ", "1.0", "01", "\t1\n", "1."})
            QTest::newRow(text) << QString::fromLatin1(text) << 1.0;
        QTest::newRow("-1") << u"-1"_s << -1.0;
        QTest::newRow("-.5") << u"-.5"_s << -0.5;
        QTest::newRow("long") << u"12345678901234567890"_s << 12345678901234567890.0;
        for (const char* text : {"", " ", "x", "1x", "+1", "1e3", "- 1", "--1", ".", "-", "1 2", "0x1", "inf",
                                 "NaN", "1.2.3", "1,5"})
            QTest::newRow(text) << QString::fromLatin1(text) << std::nan("");
    }
    void numbersAreReadAsXPathReadsThem()
    {
        QFETCH(QString, text);
        QFETCH(double, number);
        const double read = xpathNumber(text.toStdString());
        QVERIFY(read == number || (std::isnan(read) && std::isnan(number)));
    }

    void anAttributeOfTheRootIsPutIn()
    {
        const auto value = [](const std::string& root,
                              const std::string& name) -> std::optional<std::string> {
            return name == "typed" && (root.empty() || root == "List") ? std::optional<std::string>("ab")
                                                                       : std::nullopt;
        };
        const auto put = [&](const QString& condition) {
            return written(withAttributes(conditionOf(condition), value));
        };
        QCOMPARE(put(u"contains(A, /*/@typed) or not(A = /List/@typed)"_s),
                 u"any(A holds \"ab\", none(A* = \"ab\"))"_s);
        QCOMPARE(put(u"contains(A, /*/@other)"_s), u"A holds \"\""_s);
        QCOMPARE(put(u"A = /Other/@typed or A != /*/@other"_s), u"any(never, never)"_s);
    }

    void aLongerTypedTextNarrows_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("next");
        QTest::addColumn<bool>("narrows");
        const auto row = [](const QString& before, const QString& next, bool narrows) {
            QTest::newRow(qPrintable(before + u" -> "_s + next)) << before << next << narrows;
        };
        row(u"contains(A,'a')"_s, u"contains(A,'a')"_s, true);
        row(u"contains(A,'a')"_s, u"contains(A,'ab')"_s, true);
        row(u"contains(A,'a')"_s, u"contains(A,'ba')"_s, true);
        row(u"contains(A,'')"_s, u"contains(A,'ba')"_s, true);
        row(u"contains(A,'ab')"_s, u"contains(A,'a')"_s, false);
        row(u"contains(A,'ab')"_s, u"contains(A,'axb')"_s, false);
        row(u"contains(A,'a')"_s, u"contains(B,'ab')"_s, false);
        row(u"contains(A,'a')"_s, u"starts-with(A,'ab')"_s, false);
        row(u"starts-with(A,'a')"_s, u"starts-with(A,'ab')"_s, true);
        row(u"starts-with(A,'a')"_s, u"starts-with(A,'ba')"_s, false);
        row(u"contains(translate(A,'a','b'),'a')"_s, u"contains(translate(A,'a','c'),'a')"_s, false);
        row(u"A='a'"_s, u"A='ab'"_s, false);
        row(u"A='a'"_s, u"A='a'"_s, true);
        row(u"A=1"_s, u"A=2"_s, false);
        row(u"A='a'"_s, u"A!='a'"_s, false);
        row(u"not(contains(A,'a'))"_s, u"not(contains(A,'ab'))"_s, false);
        row(u"not(contains(A,'a'))"_s, u"not(contains(A,'a'))"_s, true);
        row(u"B=1 and (contains(A,'a') or starts-with(C,'a'))"_s,
            u"B=1 and (contains(A,'ab') or starts-with(C,'ab'))"_s, true);
        row(u"B=1 and (contains(A,'a') or starts-with(C,'a'))"_s,
            u"B=2 and (contains(A,'ab') or starts-with(C,'ab'))"_s, false);
        row(u"A or B"_s, u"A and B"_s, false);
        row(u"A or B"_s, u"A or B or C"_s, false);
    }
    void aLongerTypedTextNarrows()
    {
        QFETCH(QString, before);
        QFETCH(QString, next);
        QTEST(narrows(conditionOf(before), conditionOf(next)), "narrows");
    }
};

TAVRIN_TEST_MAIN(tst_SearchPlan)
#include "tst_SearchPlan.moc"
