// The locator that the server has taken the place of.
#ifndef NOTEBOOK_FIRMWARE_UPSTREAM_H_
#define NOTEBOOK_FIRMWARE_UPSTREAM_H_

#include <wbemcli.h>

#include <string>

#include "com.h"

namespace firmware {

// Path of the system's own locator server.
std::wstring UpstreamPath();

// A new locator of the system's own.
HRESULT NewUpstreamLocator(IWbemLocator** locator);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_UPSTREAM_H_
