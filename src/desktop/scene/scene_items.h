// What the globe's scene is made of: the earth's shape, its surface, and tables of instances. They read bytes
// from objects of the window by the names of their properties ("bytes", "size", signal "changed") and compute
// nothing about the world. Part of a module of its own, so that a window without the globe loads no renderer.
#pragma once

#include <QPointer>
#include <QtQuick3D/QQuick3DGeometry>
#include <QtQuick3D/QQuick3DInstancing>
#include <QtQuick3D/QQuick3DTextureData>

namespace nimbara {

/// A table whose rows are those of the renderer.
class SceneInstances : public QQuick3DInstancing {
  Q_OBJECT
  Q_PROPERTY(QObject* source READ source WRITE setSource NOTIFY sourceChanged)
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  QObject* source() const { return source_; }
  void setSource(QObject* source);
  int count() const;

 Q_SIGNALS:
  void sourceChanged();
  void countChanged();

 protected:
  QByteArray getInstanceBuffer(int* instanceCount) override;

 private:
  Q_SLOT void renew();

  QPointer<QObject> source_;
  int count_ = 0;
};

/// An RGBA picture.
class SceneTexture : public QQuick3DTextureData {
  Q_OBJECT
  Q_PROPERTY(QObject* source READ source WRITE setSource NOTIFY sourceChanged)

 public:
  QObject* source() const { return source_; }
  void setSource(QObject* source);

 Q_SIGNALS:
  void sourceChanged();

 private:
  Q_SLOT void renew();

  QPointer<QObject> source_;
};

/// A sphere of a hundred units whose surface is a map from 180° west to 180° east.
class SceneSphere : public QQuick3DGeometry {
  Q_OBJECT

 public:
  SceneSphere();
};

}  // namespace nimbara
