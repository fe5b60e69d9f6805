// Without arguments everything is measured; with any of Google Benchmark's (--benchmark_filter=paste), the operations alone.
#include "Measurements.h"

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
  if (argc == 1) {
    vardo::MeasureFiles();
    vardo::MeasureMemory();
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  vardo::MeasureOperations();
}
