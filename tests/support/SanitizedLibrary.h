#pragma once

#include <QProcessEnvironment>

namespace tavrin::test {

/// What a program that is not sanitized needs to load a sanitized library: the sanitizer's own runtime,
/// before all others. Its own leaks are nobody's business here.
inline void letLoadSanitizedLibrary(QProcessEnvironment& environment)
{
#ifdef TAVRIN_ASAN_RUNTIME
    const QString options = QStringLiteral("ASAN_OPTIONS");
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(TAVRIN_ASAN_RUNTIME));
    environment.insert(options, environment.value(options) + QStringLiteral(":detect_leaks=0"));
#else
    Q_UNUSED(environment)
#endif
}

} // namespace tavrin::test
