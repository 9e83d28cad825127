/* The whole interface of VexaWinIO64.dll. */
#ifndef VEXA_VEXA_H_
#define VEXA_VEXA_H_

#include "adapter.h"
#include "base.h"
#include "battery.h"
#include "firmware_ec.h"
#include "identity.h"
#include "inventory.h"
#include "lifecycle.h"
#include "peripherals.h"
#include "settings.h"
#include "system.h"
#include "thermal.h"
#include "trace.h"
#include "wifi.h"

#endif /* VEXA_VEXA_H_ */
