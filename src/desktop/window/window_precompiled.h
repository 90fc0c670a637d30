// The shared headers and those of the window's toolkit, compiled once for the desktop program.
#pragma once

#include "precompiled.h"

#include <QAbstractListModel>
#include <QObject>
#include <QQmlPropertyMap>
#include <QQuickPaintedItem>
#include <QString>
#include <QVariant>
