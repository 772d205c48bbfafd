#include "base/xml/SearchCases.h"
#include "support/TestCase.h"

#include <QRandomGenerator>

#include <random>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr int Documents = 1500;
constexpr int ExpressionsOfEach = 20;
constexpr int LeastPlanned = 80; // of a hundred

/// The seed of this run, or the one that TAVRIN_SEED names.
unsigned seedOfRun()
{
    bool isSet = false;
    const unsigned set = qEnvironmentVariable("TAVRIN_SEED").toUInt(&isSet);
    return isSet ? set : QRandomGenerator::global()->generate();
}

} // namespace

/// Generated expressions over generated documents, against the engine's own evaluation.
class tst_XmlSearchRandom : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        const unsigned seed = seedOfRun();
        qInfo("TAVRIN_SEED=%u", seed);
        m_random.seed(seed);
        m_planned = m_compared = m_found = 0;
    }

    void everyExpressionSelectsWhatTheEngineSelects()
    {
        SearchCases cases([this](unsigned count) { return below(count); });
        for (int i = 0; i < Documents; ++i) {
            XmlDocument document = documentOf(cases);
            for (int k = 0; k < ExpressionsOfEach; ++k) {
                const bool fromRoot = below(2) == 0;
                const XmlNode context = fromRoot ? document.documentElement() : XmlNode();
                const QString expression = cases.expression(fromRoot);
                compare(document, context, expression);
                if (below(8) == 0)
                    compare(document, context, cases.damaged(expression), false);
                if (QTest::currentTestFailed())
                    return;
                if (below(6) == 0)
                    cases.change(document.documentElement());
            }
        }
        QVERIFY2(m_planned * 100 >= m_compared * LeastPlanned,
                 qPrintable(u"%1 of %2 planned"_s.arg(m_planned).arg(m_compared)));
        QVERIFY2(m_found * 100 >= m_compared * 20,
                 qPrintable(u"%1 of %2 found"_s.arg(m_found).arg(m_compared)));
    }

    void aTextThatIsTypedKeyByKeyFindsWhatTheEngineFinds()
    {
        SearchCases cases([this](unsigned count) { return below(count); });
        for (int i = 0; i < Documents / 5; ++i) {
            XmlDocument document = documentOf(cases);
            const XmlDocument clone = document.cloneNode(true);
            QString typed;
            QString restriction = cases.condition(1);
            for (int k = 0; k < ExpressionsOfEach; ++k) {
                const unsigned key = below(12);
                if (key == 0)
                    typed.clear();
                else if (key == 1)
                    typed.chop(1);
                else if (key == 2)
                    restriction = cases.condition(1);
                else if (key == 3)
                    cases.change(document.documentElement()); // which the clone does not see
                else
                    typed += u"aAbx1 \u00e9'"[below(8)];
                const XmlDocument& searched = below(3) == 0 ? clone : document;
                compare(searched, searched.documentElement(), cases.search(typed, restriction));
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

private:
    unsigned below(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    XmlDocument documentOf(SearchCases& cases)
    {
        XmlDocument document;
        const QString text = cases.document();
        try {
            document.loadXML(text);
        } catch (const Error& error) {
            qFatal("%s: %s", qPrintable(error.Description), qPrintable(text));
        }
        return document;
    }

    /// A null context stands for the document.
    void compare(const XmlDocument& document, const XmlNode& context, const QString& expression,
                 bool counts = true)
    {
        const XmlNode from = context.isNull() ? documentNode(document) : context;
        const QString wrong = difference(from, expression);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        if (!counts)
            return;
        ++m_compared;
        m_planned += isPlanned(expression) ? 1 : 0;
        m_found += from.selectNodes(expression).empty() ? 0 : 1;
    }

    static XmlNode documentNode(const XmlDocument& document) { return document.selectSingleNode(u"/"_s); }

    std::mt19937 m_random;
    int m_planned = 0;
    int m_compared = 0;
    int m_found = 0;
};

TAVRIN_TEST_MAIN(tst_XmlSearchRandom)
#include "tst_XmlSearchRandom.moc"
