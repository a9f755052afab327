// Servers for tests of HTTP: one that gives the answers it is told to, and one behind TLS. Both
// listen on a free port of the loopback interface until they are destroyed.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "support/temp_dir.h"

namespace quillon::test {

struct HttpAnswer {
  enum class Ending {
    Whole,         // the connection is closed after the answer
    NeverAnswers,  // the request is read and the connection stays open in silence
    StopsMidway,   // the declared length is one byte more than what comes; then silence
  };

  int status = 200;
  // Content-Length and Connection are added.
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;  // sent byte by byte as it stands
  Ending ending = Ending::Whole;
};

// A redirect to a location.
HttpAnswer redirectTo(const std::string& location, int status = 302);

class HttpServer {
 public:
  // One answer for each request in the order of their coming; the last one serves all that follow.
  explicit HttpServer(std::vector<HttpAnswer> answers = {HttpAnswer{}});
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Starts a new list of answers; what was recorded is forgotten.
  void answerWith(std::vector<HttpAnswer> answers);
  // "http://127.0.0.1:port" and the path.
  [[nodiscard]] std::string url(std::string_view path = "/") const;
  [[nodiscard]] int port() const { return port_; }
  // Each request so far, from its first line to the empty line behind its headers.
  [[nodiscard]] std::vector<std::string> requests() const;

 private:
  void serve();
  void handle(int connection);

  int listener_ = -1;
  int stop_[2] = {-1, -1};
  int port_ = 0;
  mutable std::mutex mutex_;
  std::vector<HttpAnswer> answers_;
  std::vector<std::string> requests_;
  std::vector<int> silent_;
  std::thread thread_;
};

// "http://127.0.0.1:port/" of a port that nobody listens on.
std::string urlThatRefuses();

// Serves one answer over TLS with a certificate of its own for "localhost", through the program
// openssl.
class TlsServer {
 public:
  explicit TlsServer(const std::string& body);
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  // False when openssl is not installed or did not start.
  [[nodiscard]] bool runs() const { return port_ != 0; }
  [[nodiscard]] std::string url() const;
  // The certificate, for a client that is to trust it.
  [[nodiscard]] std::string certificateFile() const { return (dir_ / "certificate.pem").string(); }

 private:
  void start();

  TempDir dir_;
  pid_t process_ = -1;
  int output_ = -1;  // open as long as the program may write to it
  int port_ = 0;
};

}  // namespace quillon::test
