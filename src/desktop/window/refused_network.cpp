#include "desktop/window/refused_network.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace nimbara {

namespace {

class Refusing final : public QNetworkAccessManager {
 public:
  using QNetworkAccessManager::QNetworkAccessManager;

 protected:
  /// An address that nobody knows how to ask.
  QNetworkReply* createRequest(Operation operation, QNetworkRequest const& request,
                               QIODevice* sent) override {
    QNetworkRequest refused(request);
    refused.setUrl(QUrl(QStringLiteral("refused:network")));
    return QNetworkAccessManager::createRequest(operation, refused, sent);
  }
};

}  // namespace

QNetworkAccessManager* RefusedNetwork::create(QObject* parent) {
  return new Refusing(parent);
}

}  // namespace nimbara
