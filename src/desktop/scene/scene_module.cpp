#include "desktop/scene/scene_module.h"

#include "desktop/scene/scene_items.h"

#include <QtQml>

namespace {

void registerTypes() {
  using namespace nimbara;
  qmlRegisterType<SceneInstances>("NimbaraScene", 1, 0, "SceneInstances");
  qmlRegisterType<SceneTexture>("NimbaraScene", 1, 0, "SceneTexture");
  qmlRegisterType<SceneSphere>("NimbaraScene", 1, 0, "SceneSphere");
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] extern nimbara::SceneModule const nimbaraSceneModule;

nimbara::SceneModule const nimbaraSceneModule{&registerTypes};
}
