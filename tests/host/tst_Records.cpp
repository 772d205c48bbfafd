#include "support/TestCase.h"
class tst_Records : public tavrin::test::TestCase
{
    Q_OBJECT
};
TAVRIN_TEST_MAIN(tst_Records)
#include "tst_Records.moc"
