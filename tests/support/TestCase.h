#pragma once

#include <QObject>
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

private Q_SLOTS:
    virtual void init();
    virtual void cleanup();
};

/// Runs a test case on Qt's offscreen platform.
int run(TestCase& testCase, int argc, char** argv);

} // namespace tavrin::test

#define TAVRIN_TEST_MAIN(Case)                                                                               \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        Case testCase;                                                                                       \
        return tavrin::test::run(testCase, argc, argv);                                                      \
    }
