#include <stdio.h>

#include <vesk/vesk_client.h>

int main(void) {
  const int result = binder_make_call(0, "100");
  printf("binder_make_call without a connection: %d\n", result);
  return result == -1 ? 0 : 1;
}
