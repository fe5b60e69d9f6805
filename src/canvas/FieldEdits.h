// Edits modules' fields without showing their dialogs: through the same dialogs all the same, with all their checks.
#pragma once

#include "script/AddinSession.h"
#include "script/DialogFiller.h"

#include <vector>

namespace vardo {

// Throws AutomationError with the message by which the dialog refuses a text; nothing is written then.
void FillDialog(AddinSession& session, const SheetRef& module, const std::vector<FieldText>& texts);

}  // namespace vardo
