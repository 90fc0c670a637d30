#include "support/loopback_server.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara::test {

namespace {

constexpr std::size_t kLongestRequest = 64 << 10;

struct KeyDeleter {
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
struct CertificateDeleter {
  void operator()(X509* certificate) const { X509_free(certificate); }
};
struct ContextDeleter {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using Key = std::unique_ptr<EVP_PKEY, KeyDeleter>;
using Certificate = std::unique_ptr<X509, CertificateDeleter>;

/// Valid for 127.0.0.1 and signed by nobody but itself.
Certificate selfSigned(EVP_PKEY* key) {
  Certificate certificate(X509_new());
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_set_pubkey(certificate.get(), key);
  X509_set_version(certificate.get(), 2);
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<unsigned char const*>("loopback"), -1,
                             -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  X509_EXTENSION* const alternative =
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
  X509_add_ext(certificate.get(), alternative, -1);
  X509_EXTENSION_free(alternative);
  X509_sign(certificate.get(), key, EVP_sha256());
  return certificate;
}

std::string pemOf(X509* certificate) {
  BIO* const memory = BIO_new(BIO_s_mem());
  PEM_write_bio_X509(memory, certificate);
  char* data = nullptr;
  auto const length = BIO_get_mem_data(memory, &data);
  std::string pem(data, static_cast<std::size_t>(length));
  BIO_free(memory);
  return pem;
}

}  // namespace

struct LoopbackServer::Tls {
  Tls()
      : key(EVP_EC_gen("P-256")),
        certificate(selfSigned(key.get())),
        context(SSL_CTX_new(TLS_server_method())) {
    SSL_CTX_use_certificate(context.get(), certificate.get());
    SSL_CTX_use_PrivateKey(context.get(), key.get());
  }

  Key key;
  Certificate certificate;
  std::unique_ptr<SSL_CTX, ContextDeleter> context;
};

bool Connection::waitReadable() const {
  pollfd files[] = {{socket_, POLLIN, 0}, {ending_, POLLIN, 0}};
  return poll(files, 2, -1) > 0 && files[1].revents == 0;
}

std::string Connection::readRequest() {
  std::string request;
  char buffer[4096];
  while (request.find("\r\n\r\n") == std::string::npos && request.size() < kLongestRequest) {
    bool const waiting = tls_ != nullptr && SSL_pending(static_cast<SSL*>(tls_)) > 0;
    if (!waiting && !waitReadable()) return {};
    auto const count = tls_ != nullptr ? SSL_read(static_cast<SSL*>(tls_), buffer, sizeof buffer)
                                       : recv(socket_, buffer, sizeof buffer, 0);
    if (count <= 0) return {};
    request.append(buffer, static_cast<std::size_t>(count));
  }
  return request;
}

void Connection::write(std::string_view bytes) {
  while (!bytes.empty()) {
    auto const count = tls_ != nullptr
                           ? SSL_write(static_cast<SSL*>(tls_), bytes.data(), static_cast<int>(bytes.size()))
                           : send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void Connection::waitForEnd() {
  char byte = 0;
  while (waitReadable() && recv(socket_, &byte, 1, 0) > 0) {
  }
}

LoopbackServer::LoopbackServer(Handler handler, bool tls) : handler_(std::move(handler)) {
  if (tls) {
    tls_ = std::make_unique<Tls>();
    certificate_ = pemOf(tls_->certificate.get());
  }
  ending_ = eventfd(0, EFD_CLOEXEC);
  listen();
  thread_ = std::jthread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
  eventfd_write(ending_, 1);
  thread_.join();
  close(listener_);
  close(ending_);
}

void LoopbackServer::listen() {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  bool const listening = listener_ >= 0 &&
                         bind(listener_, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                         ::listen(listener_, 16) == 0;
  if (!listening) throw std::runtime_error("no port on 127.0.0.1");
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
  port_ = ntohs(address.sin_port);
}

void LoopbackServer::serve() {
  while (true) {
    pollfd files[] = {{listener_, POLLIN, 0}, {ending_, POLLIN, 0}};
    if (poll(files, 2, -1) < 0 || files[1].revents != 0) return;
    int const socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    {
      std::lock_guard const lock(mutex_);
      ++connections_;
    }
    SSL* const session = tls_ ? SSL_new(tls_->context.get()) : nullptr;
    if (session != nullptr) SSL_set_fd(session, socket);
    if (session == nullptr || SSL_accept(session) == 1) {
      Connection connection(socket, ending_, session);
      handler_(connection);
    }
    if (session != nullptr) SSL_free(session);
    close(socket);
  }
}

std::string LoopbackServer::url(std::string_view path) const {
  return (tls_ ? "https" : "http") + std::string("://127.0.0.1:") + std::to_string(port_) + std::string(path);
}

int LoopbackServer::connections() const {
  std::lock_guard const lock(mutex_);
  return connections_;
}

LoopbackServer::Handler LoopbackServer::always(std::string answer) {
  return [answer = std::move(answer)](Connection& connection) {
    while (!connection.readRequest().empty()) connection.write(answer);
  };
}

std::string httpAnswer(std::string_view body, std::string_view headers, std::string_view status) {
  return "HTTP/1.1 " + std::string(status) + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         std::string(headers) + "\r\n" + std::string(body);
}

}  // namespace nimbara::test
