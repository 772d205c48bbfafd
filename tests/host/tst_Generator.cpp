#include "support/TestCase.h"
class tst_Generator : public tavrin::test::TestCase
{
    Q_OBJECT
};
TAVRIN_TEST_MAIN(tst_Generator)
#include "tst_Generator.moc"
