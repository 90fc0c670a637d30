// What nearly every test of the window includes, compiled once: the toolkit wants position-independent code,
// which the other tests' precompiled header has not.
#pragma once

#include "../precompiled.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
