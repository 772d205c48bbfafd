#pragma once

#include <QLoggingCategory>

/// The developer's trace: development builds print it, others do not even build its text. The person never
/// sees it.
#ifdef TAVRIN_TRACE
Q_DECLARE_LOGGING_CATEGORY(tavrinTrace)
#define TAVRIN_TRACE_LINE(text) qCDebug(tavrinTrace).noquote() << (text)
#else
#define TAVRIN_TRACE_LINE(text) static_cast<void>(0)
#endif
