// The pictures that every drawing offers for its entities.
#pragma once

#include <string_view>

namespace vardo {

inline constexpr std::string_view kPictures[] = {
    "Picture.Airplane",    "Picture.Green Ball", "Picture.Blue Page",   "Picture.Telephone",  "Picture.Blue Ball",
    "Picture.Yellow Page", "Picture.Email",      "Picture.Yellow Ball", "Picture.Bike",       "Picture.Report",
    "Picture.Van",         "Picture.Widget",     "Picture.Envelope",    "Picture.Fax",        "Picture.Truck",
    "Picture.Letter",      "Picture.Box",        "Picture.Woman",       "Picture.Package",    "Picture.Man",
    "Picture.Diskette",    "Picture.Boat",       "Picture.Red Page",    "Picture.Green Page", "Picture.Red Ball",
};

}  // namespace vardo
