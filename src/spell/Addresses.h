#pragma once

#include "spell/WordFinder.h"

namespace tavrin {

/// The first web or mail address at `from` or behind it in a stretch of text without blanks: what begins
/// with a scheme and "://", or with "www."; what has an "@" between letters or digits; and a name that ends
/// in one of the common domains, as in "marlow.gov/records". Its length is 0, and it stands at `end`, when
/// there is none. Looks at each character a fixed number of times at most.
FoundWord findAddress(QStringView text, qsizetype from, qsizetype end);

} // namespace tavrin
