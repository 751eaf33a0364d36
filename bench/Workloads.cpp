#include "bench/Workloads.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tessaly {

void addWorkload(const std::string &name, int repetitions,
                 const std::function<void(benchmark::State &)> &work)
{
    benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State &state) { work(state); })
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void addPlainWorkload(const std::string &name, int repetitions, const std::function<void()> &work)
{
    addWorkload(name, repetitions, [work](benchmark::State &state) {
        for (auto _ : state) {
            work();
        }
    });
}

void WorkloadTimes::measure()
{
    std::string program = "figures";
    std::string interleaved = "--benchmark_enable_random_interleaving=true";
    std::array<char *, 3> arguments{program.data(), interleaved.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments.data());
    benchmark::RunSpecifiedBenchmarks(this);
}

double WorkloadTimes::best(const std::string &workload) const
{
    const std::vector<double> &times = m_times.at(workload);
    return *std::min_element(times.begin(), times.end());
}

double WorkloadTimes::median(const std::string &workload) const
{
    std::vector<double> times = m_times.at(workload);
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

void WorkloadTimes::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.run_type == Run::RT_Iteration) {
            m_times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
        }
    }
}

} // namespace tessaly
