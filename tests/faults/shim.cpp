// Preloaded into the program: the n-th call of one kind that it makes of the C library fails.
//   ZELVO_FAULT=KIND:N  open, write, flush, close or allocate; N from 1, 0 fails none
//   ZELVO_FAULT_MARK    file that is made when the call has failed; with N = 0 it gets the count of
//                       the calls at the end
// Counting begins with the opening of the first file: what a library takes when it is loaded is not
// the program's.
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

enum Kind { NONE, OPEN, WRITE, FLUSH, CLOSE, ALLOCATE };
constexpr const char* NAMES[] = {"", "open:", "write:", "flush:", "close:", "allocate:"};

Kind wanted = NONE;
long fails = 0, seen = 0;
bool counting = false;

[[gnu::constructor]] void read_wish() {
  const char* wish = std::getenv("ZELVO_FAULT");
  for (int k = OPEN; wish != nullptr && k <= ALLOCATE; ++k)
    if (std::strncmp(wish, NAMES[k], std::strlen(NAMES[k])) == 0) {
      wanted = static_cast<Kind>(k);
      fails = std::atol(wish + std::strlen(NAMES[k]));
    }
}

void mark(const char* text) {
  const int file = ::open(std::getenv("ZELVO_FAULT_MARK"), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (::write(file, text, std::strlen(text)) < 0) std::_Exit(99);
  ::close(file);
}

[[gnu::destructor]] void tell_count() {
  if (wanted == NONE || fails != 0) return;
  char text[24];
  std::snprintf(text, sizeof text, "%ld", seen);
  mark(text);
}

// Whether this call is the one that fails.
bool strikes(Kind kind, int error) {
  counting = counting || kind == OPEN;
  if (kind != wanted || !counting || ++seen != fails) return false;
  mark("");
  errno = error;
  return true;
}

template <class F>
F* real(const char* name) {
  return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

std::FILE* fopen(const char* name, const char* mode) {
  static auto* const next = real<std::FILE*(const char*, const char*)>("fopen");
  return strikes(OPEN, EACCES) ? nullptr : next(name, mode);
}
std::FILE* fopen64(const char* name, const char* mode) { return fopen(name, mode); }

std::size_t fwrite(const void* data, std::size_t size, std::size_t n, std::FILE* file) {
  static auto* const next =
      real<std::size_t(const void*, std::size_t, std::size_t, std::FILE*)>("fwrite");
  const bool messages = file == stderr || n == 0;
  return !messages && strikes(WRITE, ENOSPC) ? 0 : next(data, size, n, file);
}

int fflush(std::FILE* file) {
  static auto* const next = real<int(std::FILE*)>("fflush");
  return strikes(FLUSH, EIO) ? EOF : next(file);
}

int fclose(std::FILE* file) {
  static auto* const next = real<int(std::FILE*)>("fclose");
  const bool failing = strikes(CLOSE, EIO);
  const int result = next(file);
  if (failing) errno = EIO;
  return failing ? EOF : result;
}

void* malloc(std::size_t n) { return strikes(ALLOCATE, ENOMEM) ? nullptr : __libc_malloc(n); }
void* calloc(std::size_t n, std::size_t size) {
  return strikes(ALLOCATE, ENOMEM) ? nullptr : __libc_calloc(n, size);
}
void* realloc(void* p, std::size_t n) {
  return strikes(ALLOCATE, ENOMEM) ? nullptr : __libc_realloc(p, n);
}
void* aligned_alloc(std::size_t alignment, std::size_t n) {
  return strikes(ALLOCATE, ENOMEM) ? nullptr : __libc_memalign(alignment, n);
}
void* memalign(std::size_t alignment, std::size_t n) { return aligned_alloc(alignment, n); }
int posix_memalign(void** p, std::size_t alignment, std::size_t n) {
  if (strikes(ALLOCATE, ENOMEM)) return ENOMEM;
  *p = __libc_memalign(alignment, n);
  return *p == nullptr ? ENOMEM : 0;
}

}  // extern "C"
