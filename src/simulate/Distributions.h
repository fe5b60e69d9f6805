// Draws from the distributions of expressions.
#pragma once

#include "model/Distribution.h"
#include "simulate/Streams.h"

#include <span>

namespace vardo {

// The parameters are good ones (ComplaintOf). What is a single inversion takes one number of the stream; the others are long
// draws.
double Draw(Distribution distribution, std::span<const double> parameters, Stream& stream);

}  // namespace vardo
