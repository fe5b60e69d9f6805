#include "addin/Global_Variables.h"

namespace vardo {

IVApplicationPtr visApp;
std::shared_ptr<CEventSink> eventSink;

}  // namespace vardo
