// What the pages may fetch: nothing. Whatever names an address, a page or a text from outside, gets an error.
#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace nimbara {

class RefusedNetwork final : public QQmlNetworkAccessManagerFactory {
 public:
  QNetworkAccessManager* create(QObject* parent) override;
};

}  // namespace nimbara
