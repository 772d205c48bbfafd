#include "support/TestCase.h"

// Stands by itself, so that programs with a main function of their own can link what supports tests.
int main(int argc, char** argv)
{
    return tavrin::test::TestUnit::runNamed(argc, argv);
}
