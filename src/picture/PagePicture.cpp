#include "picture/PagePicture.h"

#include "document/Drawing.h"
#include "picture/PageBuilder.h"

namespace vardo::picture {

PagePicture PictureOf(Drawing& drawing, DrawingPage& page) {
  PagePicture picture;
  PageBuilder builder(drawing);
  builder.Begin(page, picture);
  for (const DrawingShape* shape : page.TopLevel()) builder.Add(*shape);
  return picture;
}

}  // namespace vardo::picture
