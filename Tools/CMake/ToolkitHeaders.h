// Precompiled for the floor that uses the toolkit and for its tests. No source includes this file.
#pragma once

#include <QAction>
#include <QComboBox>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QWheelEvent>
#include <QWidget>
