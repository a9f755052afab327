#include "support/http_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <system_error>

namespace quillon::test {
namespace {

struct Listener {
  int socket;
  int port;
};

Listener listenOnFreePort() {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* name = reinterpret_cast<sockaddr*>(&address);
  if (listener < 0 || ::bind(listener, name, length) != 0 || ::listen(listener, 16) != 0 ||
      ::getsockname(listener, name, &length) != 0) {
    throw std::system_error(errno, std::generic_category(), "listening on the loopback interface");
  }
  return {listener, ntohs(address.sin_port)};
}

std::string urlOfPort(int port) { return "http://127.0.0.1:" + std::to_string(port); }

void sendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return;  // the client has gone
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

std::string headOf(const HttpAnswer& answer) {
  std::string head = "HTTP/1.1 " + std::to_string(answer.status) + " Answer\r\n";
  for (const auto& [name, value] : answer.headers) head.append(name + ": " + value + "\r\n");
  if (answer.status != 204) {
    const std::size_t more = answer.ending == HttpAnswer::Ending::StopsMidway ? 1 : 0;
    head += "Content-Length: " + std::to_string(answer.body.size() + more) + "\r\n";
  }
  return head + "Connection: close\r\n\r\n";
}

}  // namespace

HttpAnswer redirectTo(const std::string& location, int status) {
  HttpAnswer answer;
  answer.status = status;
  answer.headers.emplace_back("Location", location);
  return answer;
}

HttpServer::HttpServer(std::vector<HttpAnswer> answers) : answers_(std::move(answers)) {
  std::reverse(answers_.begin(), answers_.end());
  const Listener made = listenOnFreePort();
  listener_ = made.socket;
  port_ = made.port;
  if (::pipe2(stop_, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  thread_ = std::thread([this] { serve(); });
}

HttpServer::~HttpServer() {
  ::close(stop_[1]);
  thread_.join();
  ::close(stop_[0]);
  ::close(listener_);
  for (const int connection : silent_) ::close(connection);
}

void HttpServer::answerWith(std::vector<HttpAnswer> answers) {
  const std::lock_guard lock(mutex_);
  answers_ = std::move(answers);
  std::reverse(answers_.begin(), answers_.end());
  requests_.clear();
}

std::string HttpServer::url(std::string_view path) const { return urlOfPort(port_).append(path); }

std::vector<std::string> HttpServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void HttpServer::serve() {
  while (true) {
    std::array<pollfd, 2> waiting{pollfd{listener_, POLLIN, 0}, pollfd{stop_[0], POLLIN, 0}};
    if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR) return;
    if (waiting[1].revents != 0) return;
    if (waiting[0].revents == 0) continue;
    const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection >= 0) handle(connection);
  }
}

void HttpServer::handle(int connection) {
  std::string request;
  while (request.find("\r\n\r\n") == std::string::npos) {
    std::array<pollfd, 2> waiting{pollfd{connection, POLLIN, 0}, pollfd{stop_[0], POLLIN, 0}};
    std::array<char, 4096> buffer;
    if (::poll(waiting.data(), waiting.size(), -1) < 0 || waiting[1].revents != 0) break;
    const ssize_t got = ::recv(connection, buffer.data(), buffer.size(), 0);
    if (got <= 0) break;
    request.append(buffer.data(), static_cast<std::size_t>(got));
  }
  HttpAnswer answer;
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    if (!answers_.empty()) answer = answers_.back();
    if (answers_.size() > 1) answers_.pop_back();
  }
  if (answer.ending != HttpAnswer::Ending::NeverAnswers) {
    sendAll(connection, headOf(answer));
    sendAll(connection, answer.body);
  }
  if (answer.ending == HttpAnswer::Ending::Whole) {
    ::close(connection);
  } else {
    silent_.push_back(connection);
  }
}

std::string urlThatRefuses() {
  const Listener made = listenOnFreePort();
  ::close(made.socket);
  return urlOfPort(made.port) + "/";
}

TlsServer::TlsServer(const std::string& body) {
  writeText(dir_ / "answer",
            "HTTP/1.0 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\n"
            "Content-Length: " +
                std::to_string(body.size()) + "\r\n\r\n" + body);
  const std::string make =
      "cd '" + dir_.path().string() +
      "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2"
      " -keyout key.pem -out certificate.pem -subj /CN=localhost"
      " -addext subjectAltName=DNS:localhost,IP:127.0.0.1 >/dev/null 2>&1";
  if (std::system(make.c_str()) == 0) start();
}

// The program says "ACCEPT address:port" as soon as it listens.
void TlsServer::start() {
  int output[2];
  if (::pipe2(output, O_CLOEXEC) != 0) return;
  output_ = output[0];
  const std::string directory = dir_.path().string();
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(output[1], STDOUT_FILENO);
    const int null = ::open("/dev/null", O_RDWR);
    ::dup2(null, STDIN_FILENO);
    ::dup2(null, STDERR_FILENO);
    if (::chdir(directory.c_str()) != 0) ::_exit(126);
    ::execlp("openssl", "openssl", "s_server", "-accept", "127.0.0.1:0", "-cert", "certificate.pem",
             "-key", "key.pem", "-HTTP", nullptr);
    ::_exit(127);
  }
  ::close(output[1]);
  std::string said;
  std::array<char, 256> buffer;
  while (process_ > 0) {
    pollfd waiting{output_, POLLIN, 0};
    constexpr int kLongestStartMilliseconds = 20000;
    if (::poll(&waiting, 1, kLongestStartMilliseconds) <= 0) break;
    const ssize_t got = ::read(output_, buffer.data(), buffer.size());
    if (got <= 0) break;
    said.append(buffer.data(), static_cast<std::size_t>(got));
    const std::size_t accept = said.find("ACCEPT ");
    const std::size_t end = accept == std::string::npos ? accept : said.find('\n', accept);
    if (end == std::string::npos) continue;
    port_ = std::atoi(said.c_str() + said.rfind(':', end) + 1);
    break;
  }
}

TlsServer::~TlsServer() {
  if (output_ >= 0) ::close(output_);
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

std::string TlsServer::url() const {
  return "https://localhost:" + std::to_string(port_) + "/answer";
}

}  // namespace quillon::test
