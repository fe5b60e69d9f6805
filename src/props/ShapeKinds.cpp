#include "props/ShapeKinds.h"

#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"

namespace vardo {

std::string MasterNameOf(const IVShapePtr& shape) {
  const IVMasterPtr master = shape->Master();
  return master ? master->Name() : "";
}

}  // namespace vardo
