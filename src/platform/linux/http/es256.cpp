#include "platform/linux/http/es256.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/ecdsa.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <array>
#include <memory>

namespace nimbara {

namespace {

constexpr int kNumberBytes = 32;  // of a coordinate on P-256

template <auto release>
struct Releaser {
  template <class T>
  void operator()(T* object) const {
    release(object);
  }
};
using Bio = std::unique_ptr<BIO, Releaser<BIO_free>>;
using Key = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY_free>>;
using DigestContext = std::unique_ptr<EVP_MD_CTX, Releaser<EVP_MD_CTX_free>>;
using Signature = std::unique_ptr<ECDSA_SIG, Releaser<ECDSA_SIG_free>>;

/// A key with a password is refused rather than asked for on the terminal.
int noPassword(char*, int, int, void*) {
  return -1;
}

bool isOnP256(EVP_PKEY* key) {
  std::array<char, 64> group{};
  std::size_t length = 0;
  return EVP_PKEY_get_base_id(key) == EVP_PKEY_EC &&
         EVP_PKEY_get_group_name(key, group.data(), group.size(), &length) == 1 &&
         std::string_view(group.data(), length) == "prime256v1";
}

Key readKey(std::string_view pem) {
  Bio const input(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
  Key key(PEM_read_bio_PrivateKey(input.get(), nullptr, noPassword, nullptr));
  if (key && !isOnP256(key.get())) key.reset();
  ERR_clear_error();
  return key;
}

/// The two numbers of the signature side by side, as JOSE wants them; the library gives them in DER.
std::string rawSignature(std::string const& der) {
  auto const* bytes = reinterpret_cast<unsigned char const*>(der.data());
  Signature const signature(d2i_ECDSA_SIG(nullptr, &bytes, static_cast<long>(der.size())));
  if (!signature) return {};
  std::string raw(std::size_t{2} * kNumberBytes, '\0');
  auto* const out = reinterpret_cast<unsigned char*>(raw.data());
  BN_bn2binpad(ECDSA_SIG_get0_r(signature.get()), out, kNumberBytes);
  BN_bn2binpad(ECDSA_SIG_get0_s(signature.get()), out + kNumberBytes, kNumberBytes);
  return raw;
}

std::string sign(EVP_PKEY* key, std::string_view text) {
  DigestContext const context(EVP_MD_CTX_new());
  auto const* const bytes = reinterpret_cast<unsigned char const*>(text.data());
  std::size_t length = 0;
  if (EVP_DigestSignInit(context.get(), nullptr, EVP_sha256(), nullptr, key) != 1 ||
      EVP_DigestSign(context.get(), nullptr, &length, bytes, text.size()) != 1) {
    return {};
  }
  std::string der(length, '\0');
  if (EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(der.data()), &length, bytes,
                     text.size()) != 1) {
    return {};
  }
  der.resize(length);
  return rawSignature(der);
}

}  // namespace

Result<std::string, std::string> signEs256(std::string_view keyPem, std::string_view text) {
  Key const key = readKey(keyPem);
  if (!key) return std::unexpected("it does not contain an unencrypted P-256 private key in PEM format");
  std::string signature = sign(key.get(), text);
  ERR_clear_error();
  if (signature.empty()) return std::unexpected("its key cannot sign");
  return signature;
}

}  // namespace nimbara
