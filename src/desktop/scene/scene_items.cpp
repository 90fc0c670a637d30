#include "desktop/scene/scene_items.h"

#include <QSize>
#include <QVector3D>
#include <cmath>
#include <numbers>
#include <vector>

namespace nimbara {

namespace {

constexpr int kRows = 90;
constexpr int kColumns = 180;
constexpr float kRadius = 100;

struct Vertex {
  float x, y, z;
  float u, v;
};

/// Longitude 0 looks along z, the north pole along y.
std::vector<Vertex> sphereVertices() {
  std::vector<Vertex> vertices;
  vertices.reserve(std::size_t{kRows + 1} * (kColumns + 1));
  for (int row = 0; row <= kRows; ++row) {
    double const v = double(row) / kRows, polar = std::numbers::pi * v;
    for (int column = 0; column <= kColumns; ++column) {
      double const u = double(column) / kColumns, longitude = std::numbers::pi * (2 * u - 1);
      vertices.push_back({static_cast<float>(kRadius * std::sin(polar) * std::sin(longitude)),
                          static_cast<float>(kRadius * std::cos(polar)),
                          static_cast<float>(kRadius * std::sin(polar) * std::cos(longitude)),
                          static_cast<float>(u), static_cast<float>(v)});
    }
  }
  return vertices;
}

std::vector<quint32> sphereTriangles() {
  std::vector<quint32> corners;
  corners.reserve(std::size_t{kRows} * kColumns * 6);
  for (quint32 row = 0; row < kRows; ++row) {
    for (quint32 column = 0; column < kColumns; ++column) {
      quint32 const upper = row * (kColumns + 1) + column, lower = upper + kColumns + 1;
      for (quint32 const corner : {upper, lower, upper + 1, upper + 1, lower, lower + 1})
        corners.push_back(corner);
    }
  }
  return corners;
}

template <class Value>
QByteArray bytesOf(std::vector<Value> const& values) {
  return {reinterpret_cast<char const*>(values.data()),
          static_cast<qsizetype>(values.size() * sizeof(Value))};
}

}  // namespace

void SceneInstances::setSource(QObject* source) {
  if (source_ == source) return;
  if (source_) disconnect(source_, nullptr, this, nullptr);
  source_ = source;
  if (source_) connect(source_, SIGNAL(changed()), this, SLOT(renew()));
  Q_EMIT sourceChanged();
  renew();
}

int SceneInstances::count() const {
  return count_;
}

void SceneInstances::renew() {
  int const before = count_;
  count_ = source_ ? static_cast<int>(source_->property("bytes").toByteArray().size() /
                                      qsizetype(sizeof(InstanceTableEntry)))
                   : 0;
  markDirty();
  if (count_ != before) Q_EMIT countChanged();
}

QByteArray SceneInstances::getInstanceBuffer(int* instanceCount) {
  static_assert(sizeof(InstanceTableEntry) == 80, "the rows are made elsewhere");
  QByteArray bytes = source_ ? source_->property("bytes").toByteArray() : QByteArray();
  if (instanceCount != nullptr)
    *instanceCount = static_cast<int>(bytes.size() / qsizetype(sizeof(InstanceTableEntry)));
  return bytes;
}

void SceneTexture::setSource(QObject* source) {
  if (source_ == source) return;
  if (source_) disconnect(source_, nullptr, this, nullptr);
  source_ = source;
  if (source_) connect(source_, SIGNAL(changed()), this, SLOT(renew()));
  Q_EMIT sourceChanged();
  renew();
}

void SceneTexture::renew() {
  QByteArray const bytes = source_ ? source_->property("bytes").toByteArray() : QByteArray();
  QSize const size = source_ ? source_->property("size").toSize() : QSize();
  if (bytes.isEmpty()) return;
  setSize(size);
  setFormat(RGBA8);
  setHasTransparency(false);
  setTextureData(bytes);
  update();
}

SceneSphere::SceneSphere() {
  setVertexData(bytesOf(sphereVertices()));
  setIndexData(bytesOf(sphereTriangles()));
  setStride(sizeof(Vertex));
  setPrimitiveType(PrimitiveType::Triangles);
  setBounds(QVector3D(-kRadius, -kRadius, -kRadius), QVector3D(kRadius, kRadius, kRadius));
  addAttribute(Attribute::PositionSemantic, offsetof(Vertex, x), Attribute::F32Type);
  addAttribute(Attribute::TexCoord0Semantic, offsetof(Vertex, u), Attribute::F32Type);
  addAttribute(Attribute::IndexSemantic, 0, Attribute::U32Type);
}

}  // namespace nimbara
