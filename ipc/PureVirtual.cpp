#include <cstdio>
#include <cstdlib>

/*
 * What a pure virtual function's entry in a virtual table points to. The interfaces' tables, with those that
 * are in use while an object is made, have thousands of them. With a function of the library's own they are
 * relative relocations, which take next to no room and no look-up; the C++ library's own function would be 24
 * bytes and a look-up each.
 */
extern "C" [[noreturn, gnu::visibility("hidden")]] void __cxa_pure_virtual() {
  std::fputs("libvesk_client: pure virtual method called\n", stderr);
  std::abort();
}
