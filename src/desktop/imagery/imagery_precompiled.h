// What most sources of this folder begin with.
#pragma once

#include <QImage>
#include <QPainter>
#include <optional>
#include <string>
#include <vector>
