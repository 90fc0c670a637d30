// The part of the JSON library that reads whole documents. Its second interface, twice as long as all of
// this, is left out by the guard of its header: it costs each source 1.7 s of compiling, and nobody here uses
// it.
#pragma once

#define SIMDJSON_BUILTIN_H
#include <simdjson.h>
