#include "support/TestCase.h"
class tst_SampleData : public tavrin::test::TestCase
{
    Q_OBJECT
};
TAVRIN_TEST_MAIN(tst_SampleData)
#include "tst_SampleData.moc"
