// What the palette offers: the masters at hand, with their pictures.
#pragma once

#include "picture/PagePicture.h"

#include <QIcon>
#include <QPalette>
#include <QString>

#include <string>
#include <vector>

namespace vardo {

struct StencilItem {
  std::string name;
  QString prompt;
  QIcon icon;
  double width = 1, height = 1;  // inches
  bool isConnector = false;
};

// The modules, then the connectors, in the stencil's order.
std::vector<StencilItem> StencilItems(double pixelRatio);

}  // namespace vardo
