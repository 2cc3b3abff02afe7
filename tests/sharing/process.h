#pragma once

#ifndef _WIN32

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

#include "host/non_copyable.h"

namespace tavrix::sharing {

/// Whether the long runs were asked for.
inline bool Long() {
  const char* wanted = std::getenv("TAVRIX_LONG");
  return wanted != nullptr && std::string(wanted) == "yes";
}

/// A process that runs `work` with a place to tell what it has done, line by line.
class Process : private host::NonCopyable {
 public:
  explicit Process(const std::function<void(int)>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      close(ends[0]);
      int status = 1;
      try {
        work(ends[1]);
        status = 0;
      } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
      }
      _exit(status);
    }
    close(ends[1]);
    out_ = ends[0];
  }
  ~Process() {
    Kill();
    close(out_);
  }
  void Kill() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    (void)Wait();
  }
  /// Its exit status; -1 when it was killed.
  int Wait() {
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// Waits until the process has told something.
  void Await() {
    char first = 0;
    if (read(out_, &first, 1) == 1) told_ += first;
  }
  /// All that it tells until it ends.
  const std::string& ReadAll() {
    std::array<char, 4096> part{};
    for (ssize_t got = 0; (got = read(out_, part.data(), part.size())) > 0;) {
      told_.append(part.data(), static_cast<std::size_t>(got));
    }
    return told_;
  }

 private:
  pid_t child_ = -1;
  int out_ = -1;
  std::string told_;
};

}  // namespace tavrix::sharing

#endif
