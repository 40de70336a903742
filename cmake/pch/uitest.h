// What most tests of the application include, parsed once.
#pragma once

#include "ui.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
