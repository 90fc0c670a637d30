// What nearly every test includes, compiled once. Tests still name what they use.
#pragma once

#include "../src/precompiled.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>
