#include "support/paths.h"

namespace nimbara::test {

char const* const kFixtures = NIMBARA_FIXTURES;
char const* const kProgram = NIMBARA_PROGRAM;
char const* const kForeignModules = NIMBARA_FOREIGN_MODULES;
char const* const kPictures = NIMBARA_PICTURES;

}  // namespace nimbara::test
