#pragma once

namespace tavrin::testing {
}

namespace tavrin::test {

// What stands in for a host and a desktop, under the name that the tests' own helpers have.
using namespace tavrin::testing;

} // namespace tavrin::test
