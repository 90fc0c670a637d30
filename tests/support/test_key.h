// Private keys that are made again in every run.
#pragma once

#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <string>
#include <string_view>

namespace nimbara::test {

/// A private key made for the test, and its text.
struct TestKey {
  explicit TestKey(char const* type = "EC", char const* curve = "P-256")
      : key(std::string_view(type) == "EC" ? EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", curve)
                                           : EVP_PKEY_Q_keygen(nullptr, nullptr, type)) {}
  ~TestKey() { EVP_PKEY_free(key); }
  TestKey(TestKey const&) = delete;
  TestKey& operator=(TestKey const&) = delete;

  std::string pem(std::string password = "") const {
    BIO* const out = BIO_new(BIO_s_mem());
    PEM_write_bio_PrivateKey(out, key, password.empty() ? nullptr : EVP_aes_128_cbc(), nullptr, 0, nullptr,
                             password.empty() ? nullptr : password.data());
    char* data = nullptr;
    long const length = BIO_get_mem_data(out, &data);
    std::string text(data, static_cast<std::size_t>(length));
    BIO_free(out);
    return text;
  }

  EVP_PKEY* key;
};

}  // namespace nimbara::test
