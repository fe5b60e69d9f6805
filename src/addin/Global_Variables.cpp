#include "addin/Global_Variables.h"

namespace vardo {

IVApplicationPtr visApp;
IVEventSinkPtr eventSink;

}  // namespace vardo
