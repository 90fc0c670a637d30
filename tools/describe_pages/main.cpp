// Describes to the toolkit's linter what the window's pages read, so that a misspelt name fails before the
// program runs:
//
//   describe_pages FOLDER      writes FOLDER/NimbaraItems/{qmldir,types.qmltypes} and the like for
//   NimbaraScene
//
// The models are asked themselves. Records, whose names come from their tables at run time, become types of
// their own.
#include "app/state/engine_snapshot.h"
#include "desktop/scene/scene_items.h"
#include "desktop/window/models/desktop_model.h"
#include "desktop/window/page_items.h"

#include <QFile>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQmlPropertyMap>
#include <QSet>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using namespace nimbara;

/// The description as it grows.
class Types {
 public:
  explicit Types(QByteArray module) : module_(std::move(module)) {}

  /// A class, with the objects that an instance holds; `instance` may be null.
  void addClass(QMetaObject const& meta, QByteArray const& exported, bool isSingleton, QObject* instance) {
    QByteArray const name = plain(meta.className());
    if (known_.contains(name)) return;
    known_.insert(name);
    QByteArray body;
    QMetaObject const* const parent = ownClass(meta.superClass()) ? meta.superClass() : nullptr;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
      body += property(name, meta.property(i), instance);
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) body += method(meta.method(i));
    write(name, parent != nullptr ? plain(parent->className()) : base(meta), exported, isSingleton, body);
    if (parent != nullptr) addClass(*parent, {}, false, nullptr);
  }

  QByteArray text() const { return "import QtQuick.tooling 1.2\nModule {\n" + components_ + "}\n"; }

 private:
  static QByteArray plain(QByteArray name) {
    name.replace("nimbara::", "");
    return name;
  }
  static bool ownClass(QMetaObject const* meta) {
    return meta != nullptr && QByteArray(meta->className()).startsWith("nimbara::");
  }
  static QByteArray base(QMetaObject const& meta) { return meta.superClass()->className(); }

  QByteArray property(QByteArray const& owner, QMetaProperty const& property, QObject* instance) {
    QByteArray type = plain(property.typeName());
    bool const isPointer = type.endsWith('*');
    if (isPointer) type.chop(1);
    QObject* const held =
        instance != nullptr && isPointer ? property.read(instance).value<QObject*>() : nullptr;
    if (auto* const record = qobject_cast<RecordModel*>(held)) {
      type = owner + "_" + property.name();
      addRecord(type, *record);
    } else if (held != nullptr && ownClass(held->metaObject())) {
      addClass(*held->metaObject(), {}, false, held);
    }
    return "        Property { name: \"" + QByteArray(property.name()) + "\"; type: \"" + type + "\"" +
           (isPointer ? "; isPointer: true" : "") + (property.isWritable() ? "" : "; isReadonly: true") +
           (property.hasNotifySignal() ? "; notify: \"" + property.notifySignal().name() + "\"" : "") +
           " }\n";
  }

  static QByteArray method(QMetaMethod const& method) {
    bool const isSignal = method.methodType() == QMetaMethod::Signal;
    if (!isSignal && method.methodType() != QMetaMethod::Method) return {};
    QByteArray text = QByteArray("        ") + (isSignal ? "Signal" : "Method") + " {\n            name: \"" +
                      method.name() + "\"\n";
    QByteArray returned = plain(method.typeName());
    if (!isSignal && returned != "void") {
      if (returned.endsWith('*')) returned.chop(1);
      text += "            type: \"" + returned + "\"\n";
    }
    for (int i = 0; i < method.parameterCount(); ++i) {
      text += "            Parameter { name: \"" + method.parameterNames().at(i) + "\"; type: \"" +
              plain(method.parameterTypeName(i)) + "\" }\n";
    }
    return text + "        }\n";
  }

  void addRecord(QByteArray const& name, RecordModel const& record) {
    QByteArray body;
    for (QString const& key : record.keys()) {
      body += "        Property { name: \"" + key.toUtf8() + "\"; type: \"" + record.value(key).typeName() +
              "\"; isReadonly: true }\n";
    }
    write(name, "QObject", {}, false, body);
  }

  void write(QByteArray const& name, QByteArray const& prototype, QByteArray const& exported,
             bool isSingleton, QByteArray const& body) {
    components_ += "    Component {\n        name: \"" + name +
                   "\"\n        accessSemantics: \"reference\"\n" + "        prototype: \"" + prototype +
                   "\"\n";
    if (!exported.isEmpty()) {
      components_ += "        exports: [\"" + module_ + "/" + exported + " 1.0\"]\n" +
                     "        exportMetaObjectRevisions: [256]\n";
    }
    if (isSingleton) components_ += "        isCreatable: false\n        isSingleton: true\n";
    components_ += body + "    }\n";
  }

  QByteArray module_;
  QByteArray components_;
  QSet<QByteArray> known_;
};

bool save(std::filesystem::path const& path, QByteArray const& bytes) {
  QFile file(QString::fromStdString(path.string()));
  return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

bool writeModule(std::filesystem::path const& folder, char const* name, char const* base,
                 QByteArray const& types) {
  std::error_code error;
  std::filesystem::create_directories(folder / name, error);
  return save(folder / name / "qmldir",
              QByteArray("module ") + name + "\ntypeinfo types.qmltypes\ndepends " + base + "\n") &&
         save(folder / name / "types.qmltypes", types);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: describe_pages FOLDER\n", stderr);
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication const application(count, arguments);
  DesktopModel model({Wording(), {}, [] { return Instant(); }, {}}, {});
  model.show(std::make_shared<EngineSnapshot>());

  Types types("NimbaraItems");
  types.addClass(DesktopModel::staticMetaObject, "App", true, &model);
  for (PageItem const& item : pageItems()) types.addClass(*item.meta, item.name, false, nullptr);

  Types scene("NimbaraScene");
  scene.addClass(SceneInstances::staticMetaObject, "SceneInstances", false, nullptr);
  scene.addClass(SceneTexture::staticMetaObject, "SceneTexture", false, nullptr);
  scene.addClass(SceneSphere::staticMetaObject, "SceneSphere", false, nullptr);
  std::filesystem::path const folder = arguments[1];
  bool const isWritten = writeModule(folder, "NimbaraItems", "QtQuick", types.text()) &&
                         writeModule(folder, "NimbaraScene", "QtQuick3D", scene.text());
  if (!isWritten) std::fputs("describe_pages: the folder cannot be written\n", stderr);
  return isWritten ? 0 : 1;
}
