// Elementary functions whose results are the same bits on every machine: nothing but + - * / and the exact sqrt goes into them,
// and the library is compiled without contraction. The C library's differ between systems, and between processors on one system.
#pragma once

namespace vardo {

// The natural logarithm of a positive finite number.
double Log(double x);
// The decimal one; exact for powers of ten.
double Log10(double x);
// Infinity when the result is too large, 0 when it is too small.
double Exp(double x);
// x to the power of y. Whole exponents up to 64 are multiplied out; for others x is positive, or 0 with y > 0.
// Relative error: 2^-52 times the logarithm of the result.
double Pow(double x, double y);
double Arctangent(double x);

// The quantile of the standard normal distribution, 0 < p < 1.
double InverseNormal(double p);
// The quantile of Student's distribution, 0 < p < 1, for a whole number of degrees of freedom from 1.
double InverseStudent(double p, long degrees);

// The nearest whole number, halves up. Adding .5 and rounding down would take .49999999999999994 for 1.
double RoundHalfUp(double x);

}  // namespace vardo
