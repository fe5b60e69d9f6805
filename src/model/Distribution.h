// The distributions that expressions draw from, and what their parameters may be.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vardo {

// In the order in which the functions of expressions list them.
enum class Distribution : std::uint8_t {
  Expo,  // mean
  Norm,  // mean, standard deviation
  Tria,  // minimum, mode, maximum
  Unif,  // minimum, maximum
  Erla,  // mean of each phase, number of phases
  Gamm,  // scale, shape
  Weib,  // scale, shape
  Logn,  // mean and standard deviation of the variable itself
  Beta,  // on 0..1
  Pois,  // mean
  John,  // G, D, L, X: bounded, on X..X+L
  Disc,  // cumulative probabilities, each with its value
  Cont,  // the same, and linear between the values
};

// What is wrong with parameters, as the end of a sentence; empty when they are good.
std::string_view ComplaintOf(Distribution distribution, std::span<const double> parameters);

}  // namespace vardo
