// What the drop-downs of several dialogs offer: fixed items, and names from the drawing.
#pragma once

#include "catalog/NameCatalogues.h"
#include "modules/Pictures.h"

#include <string_view>

namespace vardo {

// Templates that the user edits into an expression. The blanks in "EXPO (Mean)" and "POIS (Mean)" are part of them.
inline constexpr std::string_view kExpressionTemplates[] = {
    "EXPO (Mean)",   "NORM(Mean,StdDev)", "TRIA(Min,Mode,Max)", "UNIF(Min,Max)",   "ERLA(ExpoMean,k)", "GAMM(Beta,Alpha)",
    "JOHN(G,D,L,X)", "POIS (Mean)",       "WEIB(Beta,Alpha)",   "CONT(P1,V1,...)", "DISC(P1,V1,...)",
};

// The attributes that every entity has, and those of them that a model may set.
inline constexpr std::string_view kEntityAttributes[] = {
    "Entity.CreateTime", "Entity.HoldCostRate", "Entity.JobStep",  "Entity.NVACost",  "Entity.NVATime",
    "Entity.OtherCost",  "Entity.OtherTime",    "Entity.Picture",  "Entity.Sequence", "Entity.SerialNumber",
    "Entity.StartTime",  "Entity.Station",      "Entity.TranCost", "Entity.TranTime", "Entity.Type",
    "Entity.VACost",     "Entity.VATime",       "Entity.WaitCost", "Entity.WaitTime",
};
inline constexpr std::string_view kAssignableAttributes[] = {
    "Entity.HoldCostRate", "Entity.JobStep", "Entity.Picture", "Entity.Sequence", "Entity.Station", "Entity.Type",
};

inline constexpr std::string_view kTimeUnits[] = {"Seconds", "Minutes", "Hours", "Days"};

// The names of a catalogue that the drawing holds.
template <NameList list>
void NamesOf(ItemList& items) {
  AddNames(items, list);
}

// The attributes that the drawing defines.
inline void UserAttributes(ItemList& items) { FillAttributeCombo(items, true); }

}  // namespace vardo
