// Without arguments everything is measured; with any of Google Benchmark's (--benchmark_filter=paste), the operations alone; with
// "window" the drawing window alone.
#include "Measurements.h"

#include <benchmark/benchmark.h>

#include <string_view>

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "window") {
    vardo::MeasureWindow(argc, argv);
    return 0;
  }
  if (argc == 1) {
    vardo::MeasureFiles();
    vardo::MeasureMemory();
    vardo::MeasureWindow(argc, argv);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  vardo::MeasureOperations();
}
