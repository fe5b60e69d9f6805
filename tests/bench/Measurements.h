// What vardo-bench measures.
#pragma once

namespace vardo {

// Prints how much time and memory opening and saving large drawings takes, beside a yardstick.
void MeasureFiles();

// Prints what 200 000 operations in one session leave in memory, beside what the drawing takes.
void MeasureMemory();

// Runs the registered benchmarks of operations and prints a line for each: its time at every size, and how the time grows from
// one size to the next.
void MeasureOperations();

// Prints how long the drawing window takes to paint and to follow the mouse on large pages. argv outlives the call.
void MeasureWindow(int argc, char** argv);

}  // namespace vardo
