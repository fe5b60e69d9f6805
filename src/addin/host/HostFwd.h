// The names of the host's objects, and how references to them are handed about.
//
// A reference is a shared_ptr: it keeps the caller's handle alive, never the thing in the drawing. An operation on an object
// that the drawing no longer has throws HostError(kHostObjectGone).
#pragma once

#include <memory>

namespace vardo {

class IVApplication;
class IVWindow;
class IVSelection;
class IVDocument;
class IVPages;
class IVPage;
class IVShapes;
class IVShape;
class IVCell;
class IVMasters;
class IVMaster;
class IVEventList;
class IVEvent;
class IVEventSink;
class IVUIObject;
class IVMenuSets;
class IVMenuSet;
class IVMenus;
class IVMenu;
class IVMenuItems;
class IVMenuItem;

using IVApplicationPtr = std::shared_ptr<IVApplication>;
using IVWindowPtr = std::shared_ptr<IVWindow>;
using IVSelectionPtr = std::shared_ptr<IVSelection>;
using IVDocumentPtr = std::shared_ptr<IVDocument>;
using IVPagesPtr = std::shared_ptr<IVPages>;
using IVPagePtr = std::shared_ptr<IVPage>;
using IVShapesPtr = std::shared_ptr<IVShapes>;
using IVShapePtr = std::shared_ptr<IVShape>;
using IVCellPtr = std::shared_ptr<IVCell>;
using IVMastersPtr = std::shared_ptr<IVMasters>;
using IVMasterPtr = std::shared_ptr<IVMaster>;
using IVEventListPtr = std::shared_ptr<IVEventList>;
using IVEventPtr = std::shared_ptr<IVEvent>;
using IVEventSinkPtr = std::shared_ptr<IVEventSink>;
using IVUIObjectPtr = std::shared_ptr<IVUIObject>;
using IVMenuSetsPtr = std::shared_ptr<IVMenuSets>;
using IVMenuSetPtr = std::shared_ptr<IVMenuSet>;
using IVMenusPtr = std::shared_ptr<IVMenus>;
using IVMenuPtr = std::shared_ptr<IVMenu>;
using IVMenuItemsPtr = std::shared_ptr<IVMenuItems>;
using IVMenuItemPtr = std::shared_ptr<IVMenuItem>;

}  // namespace vardo
