// What most tests include, parsed once.
#pragma once

#include "core.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
