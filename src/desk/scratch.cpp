#include "desk/scratch.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/failures.h"

namespace zelvo {

namespace {

volatile std::sig_atomic_t signal_received = 0;

void note_signal(int number) { signal_received = number; }

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

void default_signals() {
  for (const int s : SIGNALS)
    if (std::signal(s, SIG_DFL) == SIG_IGN) std::signal(s, SIG_IGN);
}

Scratch::Scratch(const std::filesystem::path& inside) {
  std::string name = (inside / ".zelvo-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw FileFailure{name, std::strerror(errno)};
  path = name;
}

Scratch::~Scratch() {
  // A second signal may interrupt a call that removes.
  std::error_code error;
  for (int tries = 0; tries < 3 && std::filesystem::exists(path, error); ++tries)
    std::filesystem::remove_all(path, error);
}

void write_file(const std::filesystem::path& path, const std::string& content) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
  if (file == nullptr) throw FileFailure{path.string(), std::strerror(errno)};
  const bool written = std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  const int error = errno;
  if (!written || std::fclose(file.release()) != 0)
    throw FileFailure{path.string(), std::strerror(written ? errno : error)};
}

void move_file(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0)
    throw FileFailure{to.string(), std::strerror(errno)};
}

void spare_input(const std::filesystem::path& input, const std::filesystem::path& output) {
  std::error_code missing;
  if (std::filesystem::equivalent(input, output, missing))
    throw FileFailure{output.string(), "is the input itself"};
}

Capture::Capture() {
  std::fflush(stdout);
  saved = dup(STDOUT_FILENO);
  kept = std::tmpfile();
  if (saved < 0 || kept == nullptr) throw FileFailure{"a temporary file", std::strerror(errno)};
  shown = fdopen(dup(saved), "w");
  dup2(fileno(kept), STDOUT_FILENO);
}

Capture::~Capture() {
  std::fflush(stdout);
  dup2(saved, STDOUT_FILENO);
  close(saved);
  std::fclose(shown);
  std::fclose(kept);
}

std::string Capture::text() {
  std::fflush(stdout);
  std::rewind(kept);
  std::string content;
  char block[1 << 12];
  std::size_t got;
  while ((got = std::fread(block, 1, sizeof block, kept)) > 0) content.append(block, got);
  return content;
}

// No SA_RESTART: a signal ends waiting for another process.
Interrupts::Interrupts() {
  signal_received = 0;
  struct sigaction action {
  }, before{};
  action.sa_handler = note_signal;
  for (const int s : SIGNALS) {
    sigaction(s, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(s, &action, nullptr);
  }
}

Interrupts::~Interrupts() { default_signals(); }

int Interrupts::signal() { return signal_received; }

void stop_if_interrupted() {
  if (signal_received != 0) throw Interrupted{signal_received};
}

}  // namespace zelvo
