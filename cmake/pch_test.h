// Precompiled for every test program; no source may rely on it.
#include "pch.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
