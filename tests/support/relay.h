#pragma once

#ifndef _WIN32

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/non_copyable.h"

namespace tavrix::test {

/// Stands between a program and its server, and falls silent as one does whose machine hangs: the
/// connections stay open, new ones are accepted, and nothing comes any more.
class Relay : private host::NonCopyable {
 public:
  /// For the server of a connection string with "Server=127.0.0.1" and "Port=" in it.
  explicit Relay(const std::string& place);
  /// Ends all its connections.
  ~Relay();

  /// The connection string as it goes through here.
  [[nodiscard]] std::string Place() const;
  void FallSilent() { silent_ = true; }
  /// As soon as the program sends `word`; the server still gets it when `pass_on` says so.
  void FallSilentAt(const std::string& word, bool pass_on);
  /// When the server has sent so many bytes from now on.
  void FallSilentAfter(int bytes) { bytes_left_ = bytes; }
  /// New connections get none: the relay says that the server has none to offer.
  void RefuseEncryption() { refuses_encryption_ = true; }
  /// New connections work again; those that fell silent stay so.
  void Speak();

 private:
  struct Pair {
    int program = -1;
    int server = -1;
    bool silent = false;
    void Close() const;
  };

  void Serve();
  void Accept();
  /// False when either side has closed.
  bool Pass(Pair& pair);
  bool FromProgram(Pair& pair);
  bool FromServer(Pair& pair);

  std::string place_;
  int server_port_ = 0;
  int port_ = 0;
  int listener_ = -1;
  std::vector<Pair> pairs_;
  std::atomic<bool> silent_ = false;
  std::atomic<int> bytes_left_ = -1;  ///< -1: no end
  std::atomic<bool> refuses_encryption_ = false;
  std::atomic<bool> ending_ = false;
  std::mutex mutex_;
  std::string word_;
  bool pass_on_ = false;
  std::thread thread_;
};

}  // namespace tavrix::test

#endif
