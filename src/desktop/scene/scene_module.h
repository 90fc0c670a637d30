// What the module of the scene in three dimensions offers to the window that loads it. Both are built
// together; there is no other user.
#pragma once

namespace nimbara {

struct SceneModule {
  /// Makes the types of "NimbaraScene" known to the pages' language. On the window's thread.
  void (*registerTypes)();
};

inline constexpr char kSceneModuleSymbol[] = "nimbaraSceneModule";
inline constexpr char kSceneModuleFile[] = "nimbara-scene.so";

}  // namespace nimbara
