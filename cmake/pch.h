// Precompiled for every target; no source may rely on it.
#include <QtCore/QtCore>
#include <QtWidgets/QtWidgets>

#include <functional>
#include <memory>
#include <vector>
