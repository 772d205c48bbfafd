// Precompiled for src/base, which knows no widgets; no source may rely on it.
#include <QtCore/QtCore>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QPalette>

#include <functional>
#include <memory>
#include <vector>
