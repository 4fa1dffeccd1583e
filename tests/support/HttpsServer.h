#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/PrivateBus.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

// A certificate authority of the test's own (package openssl), with a certificate for a host that it signed.
class CertificateAuthority {
 public:
  // `host` is what a certificate names: "IP:127.0.0.1", "DNS:quillmeter.example".
  explicit CertificateAuthority(const std::string& host) {
    const std::string key = "-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout ";
    run("openssl req -x509 " + key + "ca.key -out ca.pem -days 2 -subj '/CN=Test authority'");
    run("openssl req -new " + key + "host.key -out host.csr -subj '/CN=host'");
    folder_.write("host.ext", "subjectAltName=" + host + "\n");
    run("openssl x509 -req -in host.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days 2 -extfile host.ext -out "
        "host.pem");
  }
  std::filesystem::path folder() const { return folder_.path(); }
  std::string authority() const { return readFile(folder_.path() / "ca.pem"); }
  void publish(const std::string& manifest) const { folder_.write("stable.json", manifest); }

 private:
  void run(const std::string& command) const {
    if (std::system(("cd '" + folder_.path().string() + "' && " + command + " 2>/dev/null").c_str()) != 0) {
      throw std::runtime_error(command + " failed (package openssl)");
    }
  }

  TemporaryDirectory folder_;
};

// Serves what https_server.py serves, with the certificate of an authority.
class HttpsServer {
 public:
  explicit HttpsServer(const CertificateAuthority& authority, const std::string& port = "0")
      : process_({"/usr/bin/python3", QUILLMETER_TEST_DATA "/../support/https_server.py",
                  (authority.folder() / "host.pem").string(), (authority.folder() / "host.key").string(), port}),
        port_(process_.readLine()) {
    if (port_.empty()) throw std::runtime_error("the HTTPS server did not start (package python3)");
  }
  std::string url(const std::string& path) const { return "https://127.0.0.1:" + port_ + path; }

 private:
  ChildProcess process_;
  std::string port_;
};

}  // namespace quillmeter::test
