#pragma once

#include "support/Fakes.h"

#include <QObject>
#include <QString>
#include <QTest>

namespace tavrin::test {

/// Base of all test cases: any warning of Qt that a test does not announce with `QTest::ignoreMessage`
/// fails it, and so does a top-level window that a test leaves behind.
class TestCase : public QObject
{
    Q_OBJECT

protected:
    /// For test cases with an `init` of their own, which must call it.
    static void failOnUnexpectedWarnings();

protected Q_SLOTS:
    virtual void init();
    virtual void cleanup();
};

/// Runs a test case on Qt's offscreen platform.
int run(TestCase& testCase, int argc, char** argv);

/// The tests of one unit. A program holds those of several and runs the one that its first argument names.
class TestUnit
{
public:
    using Main = int (*)(int argc, char** argv);

    /// `testCase` is "tst_" and the name of the unit; `main` gets the arguments behind that name.
    TestUnit(const char* testCase, Main main);

    /// Runs the unit that is named on the command line, or tells which there are.
    static int runNamed(int argc, char** argv);
    /// The name of the one that runs, which a test that starts its program again passes on as its first
    /// argument.
    static QString running();
};

} // namespace tavrin::test

/// Makes `main` start the tests of a unit, for those that also start themselves as another program.
#define TAVRIN_TEST_UNIT(Case, main) static const tavrin::test::TestUnit unitOf_##Case(#Case, main);

#define TAVRIN_TEST_MAIN(Case)                                                                               \
    static int main_##Case(int argc, char** argv)                                                            \
    {                                                                                                        \
        Case testCase;                                                                                       \
        return tavrin::test::run(testCase, argc, argv);                                                      \
    }                                                                                                        \
    TAVRIN_TEST_UNIT(Case, main_##Case)
