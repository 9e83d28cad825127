// Asks the settings' exports and changes settings through them.
#ifndef CLIENT_SETTINGS_CALLS_H_
#define CLIENT_SETTINGS_CALLS_H_

#include "client/ask.h"
#include "client/change.h"

namespace vexahealth {

// Asks every row. InitializeWinIo is not needed, for the calls below neither.
[[nodiscard]] SettingAnswers AskSettings(const Context& context);

// Asks what decides about the change, makes it unless that forbids it or it is a dry run, and asks again. After an
// accepted charge limit the setting file is written too where the application folder exists; the library itself does
// that for the quiet fan.
[[nodiscard]] ChangeFacts CarryOut(const ChangeRequest& request, const Context& context);

}  // namespace vexahealth

#endif  // CLIENT_SETTINGS_CALLS_H_
