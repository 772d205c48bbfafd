#include "support/TestCase.h"
class tst_ReferenceHost : public tavrin::test::TestCase
{
    Q_OBJECT
};
TAVRIN_TEST_MAIN(tst_ReferenceHost)
#include "tst_ReferenceHost.moc"
