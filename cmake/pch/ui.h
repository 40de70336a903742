// What most files of the application include, parsed once, over what the engine includes.
#pragma once

#include "core.h"

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <QWidget>

#include <QDBusConnection>
#include <QGeoPositionInfo>
#include <QSqlDatabase>
