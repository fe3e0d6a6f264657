#include <cstdio>
#include <cstdlib>

/* The target of the entries for pure virtual functions, of which the interfaces' virtual tables
 * have thousands. A function of this library makes them relative relocations; the C++ library's own
 * would cost 24 bytes and a symbol look-up each. */
extern "C" [[noreturn, gnu::visibility("hidden")]] void __cxa_pure_virtual() {
  std::fputs("libvesk_client: pure virtual method called\n", stderr);
  std::abort();
}
