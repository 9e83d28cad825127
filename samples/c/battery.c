/* The battery's charge in a few lines of C. */
#include <stdio.h>
#include <vexa/vexa.h>

int main(void) {
  if (InitializeWinIo() != 1) {
    fputs("the library is not ready\n", stderr);
    return 1;
  }
  /* 0 also means that the EC has no healthy table, so its version comes first. */
  uint32_t version = BatteryHealthyTable_ReadVersion();
  uint32_t percent = BatteryHealthyTable_Rsoc();
  int known = version != 0 && version != VEXA_NO_ANSWER && percent != VEXA_NO_ANSWER;
  if (known) {
    printf("%u %%\n", percent);
  } else {
    puts("unknown");
  }
  ShutdownWinIo();
  return known ? 0 : 2;
}
