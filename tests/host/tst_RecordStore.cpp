#include "support/TestCase.h"
class tst_RecordStore : public tavrin::test::TestCase
{
    Q_OBJECT
};
TAVRIN_TEST_MAIN(tst_RecordStore)
#include "tst_RecordStore.moc"
