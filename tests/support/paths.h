// Where the tests find what lies outside of their program. In a source of its own, so that no other is
// compiled with the paths of one build tree.
#pragma once

namespace nimbara::test {

extern char const* const kFixtures;  ///< tests/fixtures
extern char const* const
    kProgram;  ///< the command line's program, beside which the others and the modules lie
extern char const* const kForeignModules;  ///< modules of another version
extern char const* const kPictures;        ///< where pictures of pages are left for people to look at

}  // namespace nimbara::test
