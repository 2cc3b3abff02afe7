#include "support/relay.h"

#ifndef _WIN32

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace tavrix::test {

namespace {

constexpr int kMilliseconds = 5;  // between two looks at the connections

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int Socket() {
  const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0) throw std::runtime_error("socket");
  return made;
}

bool Readable(int socket) {
  pollfd look = {.fd = socket, .events = POLLIN, .revents = 0};
  return poll(&look, 1, 0) > 0;
}

using Block = std::array<char, 16384>;

bool SendAll(int to, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

}  // namespace

Relay::Relay(const std::string& place) : place_(place), listener_(Socket()) {
  const std::size_t at = place.find("Port=");
  if (at == std::string::npos) throw std::runtime_error("no port in " + place);
  server_port_ = std::stoi(place.substr(at + 5));
  sockaddr_in address = Loopback(0);
  socklen_t length = sizeof address;
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, general, length) != 0 || listen(listener_, 16) != 0 ||
      getsockname(listener_, general, &length) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

Relay::~Relay() {
  ending_ = true;
  thread_.join();
  for (const Pair& pair : pairs_) pair.Close();
  close(listener_);
}

std::string Relay::Place() const {
  const std::string port = "Port=" + std::to_string(server_port_);
  std::string place = place_;
  return place.replace(place.find(port), port.size(), "Port=" + std::to_string(port_));
}

void Relay::FallSilentAt(const std::string& word, bool pass_on) {
  const std::scoped_lock lock(mutex_);
  word_ = word;
  pass_on_ = pass_on;
}

void Relay::Speak() {
  FallSilentAt({}, false);
  bytes_left_ = -1;
  silent_ = false;
}

void Relay::Pair::Close() const {
  close(program);
  if (server >= 0) close(server);
}

void Relay::Serve() {
  while (!ending_) {
    std::vector<pollfd> looks = {{.fd = listener_, .events = POLLIN, .revents = 0}};
    for (const Pair& pair : pairs_) {
      if (pair.silent) continue;
      looks.push_back({.fd = pair.program, .events = POLLIN, .revents = 0});
      looks.push_back({.fd = pair.server, .events = POLLIN, .revents = 0});
    }
    poll(looks.data(), looks.size(), kMilliseconds);
    if (Readable(listener_)) Accept();
    std::erase_if(pairs_, [&](Pair& pair) {
      pair.silent = pair.silent || silent_;
      if (pair.silent || Pass(pair)) return false;
      pair.Close();
      return true;
    });
  }
}

void Relay::Accept() {
  Pair pair = {.program = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC), .silent = silent_};
  if (!pair.silent) {
    pair.server = Socket();
    const sockaddr_in address = Loopback(server_port_);
    if (connect(pair.server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      return pair.Close();
    }
  }
  pairs_.push_back(pair);
}

bool Relay::Pass(Pair& pair) {
  if (Readable(pair.program) && !FromProgram(pair)) return false;
  return pair.silent || !Readable(pair.server) || FromServer(pair);
}

bool Relay::FromProgram(Pair& pair) {
  Block block{};
  const ssize_t count = recv(pair.program, block.data(), block.size(), 0);
  if (count <= 0) return false;
  const std::string_view bytes(block.data(), static_cast<std::size_t>(count));
  constexpr std::string_view kEncryptionWanted("\0\0\0\10\4\322\26\57", 8);
  if (refuses_encryption_ && bytes == kEncryptionWanted) return SendAll(pair.program, "N");
  const std::scoped_lock lock(mutex_);
  const bool met = !word_.empty() && bytes.find(word_) != std::string_view::npos;
  if (met) pair.silent = silent_ = true;
  return (met && !pass_on_) || SendAll(pair.server, bytes);
}

bool Relay::FromServer(Pair& pair) {
  Block block{};
  const ssize_t count = recv(pair.server, block.data(), block.size(), 0);
  if (count <= 0) return false;
  std::string_view bytes(block.data(), static_cast<std::size_t>(count));
  if (bytes_left_ >= 0) {
    bytes = bytes.substr(0, static_cast<std::size_t>(bytes_left_.load()));
    bytes_left_ -= static_cast<int>(bytes.size());
    if (bytes_left_ == 0) pair.silent = silent_ = true;
  }
  return SendAll(pair.program, bytes);
}

}  // namespace tavrix::test

#endif
