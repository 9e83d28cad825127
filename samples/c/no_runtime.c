/* The charge as the program's exit code; without a C library, so that any linker can link it. */
#include <vexa/vexa.h>

int start(void) {
  if (InitializeWinIo() != 1) return 255;
  uint32_t percent = BatteryHealthyTable_Rsoc();
  ShutdownWinIo();
  return percent > 100 ? 254 : (int)percent;
}
