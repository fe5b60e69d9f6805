// The pages that Process shapes of the type Submodel have of their own.
//   A Process names its page in Prop.VardoSubPage; the page names the one its Process stands on in Prop.VardoParentPage. Pages
//   are those of the active document. Everything here throws what the host throws.
#pragma once

#include "addin/host/HostFwd.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The parent that the next new page is given; cleared as soon as it has been written.
extern std::string PendingParentPage;

// Names are compared exactly.
bool PageExists(std::string_view name);

// The page name for a Process named `name` whose page now is currentPage (may be empty): the name and " (Submodel)". A name of
// more than 20 characters is cut to 18 and given the number of pages that start alike, so that no page name is longer than 31; a
// page that is the Process's already keeps its name.
std::string SubmodelPageName(std::string_view name, std::string_view currentPage);

// Shows the submodel page of a Process shape; makes and links it first when there is none. A page that cannot be finished is
// deleted again.
void OpenSubmodelPage(const IVShapePtr& process);

// Shows the page that a submodel's Process stands on. When there is none of the name that the submodel's page gives, it is the
// one with the Process that names this page; nothing happens where there is none either, or on any other page.
void ShowParentPage(const IVPagePtr& page);

// Deletes the submodel pages of the Process shapes on a page, and theirs before them. The page itself stays, also where links
// lead back to it.
void DeleteSubmodelPages(const IVPagePtr& page);

// The submodel pages, of those that exist, of the Process shapes on a page, those in groups included.
std::vector<std::string> SubmodelPagesOf(const IVPagePtr& page);

// The page that a Process names as its submodel's, in full: a page's name may have the list's delimiter in it. Empty for none,
// also when the Process has no such property.
std::string SubmodelPageOf(const IVShapePtr& process);

// The Processes that go and come with a shape: the shape itself, or those in a group, at any depth.
std::vector<IVShapePtr> ProcessesOf(const IVShapePtr& shape);

// A copied Process does not claim the submodel page of its original.
void GiveUpSubmodelPage(const IVShapePtr& process);
// The same for all that has come with a shape and is registered by now, where another Process names the page as well.
void GiveUpPagesOfOthers(const IVShapePtr& added);

// A sentence that says why the submodel page of a Process cannot go by the Process's new name; none when it can, or there is no
// such page.
std::optional<std::string> WhySubmodelPageStays(const IVShapePtr& process, std::string_view newName);

// Gives a renamed Process's submodel page the new name, the Process the link to it, and the pages further in theirs to their
// parent. When the page cannot be renamed the links stay too.
void RenameSubmodelPage(const IVShapePtr& process, std::string_view newName);

}  // namespace vardo
