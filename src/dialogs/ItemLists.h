// Fixed drop-down lists that several dialogs share.
#pragma once

#include <string_view>

namespace vardo {

// Templates that the user edits into an expression. The blanks in "EXPO (Mean)" and "POIS (Mean)" are part of them.
inline constexpr std::string_view kExpressionTemplates[] = {
    "EXPO (Mean)",   "NORM(Mean,StdDev)", "TRIA(Min,Mode,Max)", "UNIF(Min,Max)",   "ERLA(ExpoMean,k)", "GAMM(Beta,Alpha)",
    "JOHN(G,D,L,X)", "POIS (Mean)",       "WEIB(Beta,Alpha)",   "CONT(P1,V1,...)", "DISC(P1,V1,...)",
};

}  // namespace vardo
